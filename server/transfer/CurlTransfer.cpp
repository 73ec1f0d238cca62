#include "server/HttpTransfer.h"

#include "foundation/Proxy.h"
#include "server/Texts.h"

#include <curl/curl.h>

#include <memory>

namespace Torvane::Net {

namespace {

// A course server answers within seconds. A silent one would hold the interface thread for ever.
constexpr long c_nConnectSeconds = 30;
constexpr long c_nSilentSeconds = 60;
// Nor may one that sends a byte now and then.
constexpr long c_nLeastBytesPerSecond = 64;
constexpr long c_nLongestSeconds = 600;
constexpr int c_nWaitMilliseconds = 20;
constexpr qsizetype c_nMaxAllHeaders = qsizetype{128} * 1024;
// A body lives in memory as a whole.
constexpr qsizetype c_nMaxBody = qsizetype{64} * 1024 * 1024;

struct EasyDeleter {
    void operator()(CURL* p) const { curl_easy_cleanup(p); }
};
struct MultiDeleter {
    void operator()(CURLM* p) const { curl_multi_cleanup(p); }
};
struct ListDeleter {
    void operator()(curl_slist* p) const { curl_slist_free_all(p); }
};
using EasyHandle = std::unique_ptr<CURL, EasyDeleter>;
using MultiHandle = std::unique_ptr<CURLM, MultiDeleter>;
using HeaderList = std::unique_ptr<curl_slist, ListDeleter>;

struct ReplyInProgress {
    TransferReply& Reply;
    qsizetype nMaxHeaders = 0;
    /// Of all blocks, the interim ones too.
    qsizetype nAllHeaders = 0;
    bool bHeadersTooLong = false;
    bool bBodyTooLong = false;
};

size_t TakeHeader(const char* pData, size_t nSize, size_t nCount, void* pUser) noexcept {
    auto& progress = *static_cast<ReplyInProgress*>(pUser);
    QByteArrayView line(pData, static_cast<qsizetype>(nSize * nCount));
    // After an interim reply the one that counts begins.
    if (progress.Reply.bHeadersEnded && line.startsWith("HTTP/")) {
        progress.Reply.Headers.clear();
        progress.Reply.bHeadersEnded = false;
    }
    progress.nAllHeaders += line.size();
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    progress.Reply.bHeadersEnded = progress.Reply.bHeadersEnded || line.isEmpty();
    if (!line.isEmpty())
        progress.Reply.Headers.append(line).append("\r\n");
    progress.bHeadersTooLong =
        progress.Reply.Headers.size() > progress.nMaxHeaders || progress.nAllHeaders > c_nMaxAllHeaders;
    return progress.bHeadersTooLong ? 0 : nSize * nCount;
}

size_t TakeBody(const char* pData, size_t nSize, size_t nCount, void* pUser) noexcept {
    auto& progress = *static_cast<ReplyInProgress*>(pUser);
    const auto nBytes = static_cast<qsizetype>(nSize) * static_cast<qsizetype>(nCount);
    if (progress.Reply.Body.size() + nBytes > c_nMaxBody) {
        progress.bBodyTooLong = true;
        return 0;
    }
    progress.Reply.Body.append(pData, nBytes);
    return nSize * nCount;
}

QString ErrorText(CURLcode code, const ReplyInProgress& progress) {
    if (progress.bHeadersTooLong)
        return ServerText::c_strHeadersTooLong;
    if (progress.bBodyTooLong)
        return ServerText::c_strBodyTooLong;
    // The library's word for a single line that never ends.
    if (code == CURLE_OUT_OF_MEMORY && !progress.Reply.bHeadersEnded)
        return ServerText::c_strHeadersTooLong;
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_URL_MALFORMAT:
        return ServerText::c_strHostUnknown;
    case CURLE_COULDNT_CONNECT:
        return ServerText::c_strNoConnection;
    case CURLE_OPERATION_TIMEDOUT:
        return ServerText::c_strTimedOut;
    case CURLE_GOT_NOTHING:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_PARTIAL_FILE:
        return ServerText::c_strConnectionLost;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL:
        return ServerText::c_strBadReply;
    default:
        return QString::fromUtf8(curl_easy_strerror(code));
    }
}

HeaderList MakeHeaders(const TransferRequest& request) {
    // A name with nothing behind the colon keeps the library from adding that header.
    QByteArrayList lines = request.Headers;
    lines << "Connection: Keep-Alive"
          << "Expect:"
          << "Proxy-Connection:";
    HeaderList list;
    for (const QByteArray& line : lines) {
        curl_slist* pLonger = curl_slist_append(list.get(), line.constData());
        if (pLonger == nullptr)
            return {};
        static_cast<void>(list.release());
        list.reset(pLonger);
    }
    return list;
}

void SetAddress(CURL* pEasy, const TransferRequest& request) {
    const HttpUrl& url = request.Url;
    const QByteArray server = url.strScheme + "://" + url.strHost + ':' + QByteArray::number(url.nPort) + '/';
    const Proxy proxy = ProxyFor(url.strScheme, url.strHost);
    // The library would escape or refuse blanks and bytes above 127: the target goes out as it stands.
    const QByteArray target = proxy.bTakesWholeAddress ? server.chopped(1) + url.strPath : url.strPath;
    curl_easy_setopt(pEasy, CURLOPT_URL, server.constData());
    curl_easy_setopt(pEasy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(pEasy, CURLOPT_REQUEST_TARGET, target.constData());
    curl_easy_setopt(pEasy, CURLOPT_PROXY, proxy.Address.constData());
    curl_easy_setopt(pEasy, CURLOPT_PROTOCOLS_STR, "http,https");
}

void SetRequest(CURL* pEasy, const TransferRequest& request, const curl_slist* pHeaders) {
    SetAddress(pEasy, request);
    curl_easy_setopt(pEasy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_0));
    // A reply without a status line is taken as a body alone.
    curl_easy_setopt(pEasy, CURLOPT_HTTP09_ALLOWED, 1L);
    curl_easy_setopt(pEasy, CURLOPT_USERAGENT, request.strAgent.constData());
    curl_easy_setopt(pEasy, CURLOPT_HTTPHEADER, pHeaders);
    if (request.bHead)
        curl_easy_setopt(pEasy, CURLOPT_NOBODY, 1L);
    if (request.bPost) {
        curl_easy_setopt(pEasy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.Body.size()));
        curl_easy_setopt(pEasy, CURLOPT_COPYPOSTFIELDS, request.Body.constData());
    }
    curl_easy_setopt(pEasy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(pEasy, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(pEasy, CURLOPT_CONNECTTIMEOUT, c_nConnectSeconds);
    curl_easy_setopt(pEasy, CURLOPT_TIMEOUT, c_nLongestSeconds);
    curl_easy_setopt(pEasy, CURLOPT_LOW_SPEED_LIMIT, c_nLeastBytesPerSecond);
    curl_easy_setopt(pEasy, CURLOPT_LOW_SPEED_TIME, c_nSilentSeconds);
}

/// Runs the handle to its end in short waits.
CURLcode Drive(CURLM* pMulti, const CHttpClient::WaitStep& waitStep) {
    for (;;) {
        int nRunning = 0;
        if (curl_multi_perform(pMulti, &nRunning) != CURLM_OK)
            return CURLE_FAILED_INIT;
        int nLeft = 0;
        if (const CURLMsg* pMessage = curl_multi_info_read(pMulti, &nLeft))
            return pMessage->data.result;
        if (nRunning == 0)
            return CURLE_FAILED_INIT;
        curl_multi_poll(pMulti, nullptr, 0, c_nWaitMilliseconds, nullptr);
        if (waitStep && !waitStep())
            return CURLE_ABORTED_BY_CALLBACK;
    }
}

QString Transfer(const TransferRequest& request, const CHttpClient::WaitStep& waitStep,
                 TransferReply& reply) {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (request.Url.strHost.isEmpty())
        return ServerText::c_strHostUnknown;
    const HeaderList headers = MakeHeaders(request);
    const EasyHandle easy(curl_easy_init());
    const MultiHandle multi(curl_multi_init());
    if (initialised != CURLE_OK || !headers || !easy || !multi)
        return QString::fromUtf8(curl_easy_strerror(CURLE_FAILED_INIT));

    ReplyInProgress progress{reply, request.nMaxHeaders};
    SetRequest(easy.get(), request, headers.get());
    curl_easy_setopt(easy.get(), CURLOPT_HEADERFUNCTION, &TakeHeader);
    curl_easy_setopt(easy.get(), CURLOPT_HEADERDATA, &progress);
    curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, &TakeBody);
    curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &progress);

    struct CMember {
        CMember(CURLM* pM, CURL* pE) : pMulti(pM), pEasy(pE) { curl_multi_add_handle(pMulti, pEasy); }
        ~CMember() { curl_multi_remove_handle(pMulti, pEasy); }
        CMember(const CMember&) = delete;
        CMember& operator=(const CMember&) = delete;
        CURLM* pMulti;
        CURL* pEasy;
    } const member(multi.get(), easy.get());

    const CURLcode code = Drive(multi.get(), waitStep);
    if (code == CURLE_ABORTED_BY_CALLBACK) {
        reply = {};
        return ServerText::c_strGivenUp;
    }
    return code == CURLE_OK ? QString() : ErrorText(code, progress);
}

} // namespace

} // namespace Torvane::Net

extern "C" Q_DECL_EXPORT void VorelRunTransfer(const Torvane::Net::TransferRequest& request,
                                               const Torvane::Net::CHttpClient::WaitStep& waitStep,
                                               Torvane::Net::TransferReply& reply, QString& strError) {
    strError = Torvane::Net::Transfer(request, waitStep, reply);
}
