#include "server/HttpClient.h"

#include "foundation/Exceptions.h"
#include "foundation/Random.h"
#include "server/HttpMessage.h"
#include "server/HttpTransfer.h"
#include "server/Texts.h"

namespace Torvane::Net {

namespace {

constexpr qsizetype c_nMaxRawHeaders = 1023;
// A HEAD reply is asked for one header only, so its block may be longer.
constexpr qsizetype c_nMaxHeadHeaders = qsizetype{64} * 1024;
constexpr int c_nFirstSuccess = 200;
constexpr int c_nLastSuccess = 400;

} // namespace

CHttpClient::CHttpClient() = default;
CHttpClient::~CHttpClient() = default;

void CHttpClient::SetWaitStep(WaitStep step) {
    m_waitStep = std::move(step);
}
void CHttpClient::AddParameter(const CHttpParameter& parameter) {
    m_parameters.append(parameter);
}
void CHttpClient::ClearParameters() {
    m_parameters.clear();
}

qint64 CHttpClient::Request(QByteArrayView url, EHttpMethod method, QByteArrayView agent, qint32 nRangeStart,
                            qint32 nRangeLength) {
    m_headers.clear();
    m_body.clear();
    TransferRequest request;
    request.Url = SplitUrl(url);
    request.strAgent = agent.toByteArray();
    request.nMaxHeaders = c_nMaxRawHeaders;
    switch (method) {
    case EHttpMethod::Get:
        request.Headers << "Accept:*/*";
        if (nRangeStart >= 0 && nRangeLength > 0) {
            const qint64 nLast = qint64{nRangeStart} + nRangeLength - 1;
            request.Headers << "Range: bytes=" + QByteArray::number(nRangeStart) + '-' +
                                   QByteArray::number(nLast);
        }
        break;
    case EHttpMethod::PostForm:
        request.bPost = true;
        request.Headers << "Accept:*/*"
                        << "Content-Type: application/x-www-form-urlencoded";
        request.Body = BuildFormBody(m_parameters);
        break;
    case EHttpMethod::PostMultipart: {
        request.bPost = true;
        const QByteArray boundary = ChooseBoundary(m_parameters, &NextRandom);
        // The parameter is the whole delimiter, dashes included: the receiving script reads it as sent.
        request.Headers << "Content-Type: multipart/form-data; boundary=--" + boundary;
        request.Body = BuildMultipartBody(m_parameters, boundary);
        break;
    }
    case EHttpMethod::Head:
        request.bHead = true;
        request.nMaxHeaders = c_nMaxHeadHeaders;
        break;
    }

    const TransferReply reply = RunTransfer(request, m_waitStep);
    if (method == EHttpMethod::Head) {
        const qint64 nLength = ParseContentLength(reply.Headers);
        if (nLength < 0)
            throw CHttpClientException(ServerText::c_strHeaderMissing);
        return nLength;
    }
    m_headers = reply.Headers;
    m_body = reply.Body;
    const int nStatus = ParseStatus(m_headers);
    if (nStatus < c_nFirstSuccess || nStatus > c_nLastSuccess)
        throw CHttpClientException(ServerText::c_strHttpStatus.arg(nStatus));
    return m_body.size();
}

QByteArray CHttpClient::GetRawHeaders() const {
    const qsizetype nEnd = m_headers.indexOf('\0');
    return nEnd < 0 ? m_headers : m_headers.first(nEnd);
}

QByteArray CHttpClient::GetBody() const {
    return m_body;
}

} // namespace Torvane::Net
