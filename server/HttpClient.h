#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <functional>

namespace Torvane::Net {

enum class EHttpMethod { Get = 1, PostForm = 2, PostMultipart = 3, Head = 4 };

struct CHttpParameter {
    enum class EKind { Text = 1, File = 2 };
    QByteArray strName;
    EKind Kind = EKind::Text;
    QByteArray strValue;
    QByteArray FileData;
    QByteArray strFileName;
};

/// Fetches one URL a call, synchronously, HTTP/1.0, and keeps the raw response headers and the whole body
/// until the next call. URLs and headers are raw bytes in the code page: nothing is encoded, ordered or
/// normalised anew.
class CHttpClient {
public:
    CHttpClient();
    ~CHttpClient();
    CHttpClient(const CHttpClient&) = delete;
    CHttpClient& operator=(const CHttpClient&) = delete;

    /// Called every few milliseconds while a request waits; false gives the request up, which throws
    /// CCancelledException. Whoever blocks the interface thread keeps its windows painted here.
    using WaitStep = std::function<bool()>;
    void SetWaitStep(WaitStep step);

    void AddParameter(const CHttpParameter& parameter);
    void ClearParameters();

    /// The body's length in bytes, for Head the content length. Throws CHttpClientException, and
    /// Torvane::CRunException for a URL that is none. A status from 200 to 400 is a success; redirects are
    /// not followed. A server that says nothing for a minute, or sends more than 64 MB, fails.
    qint64 Request(QByteArrayView url, EHttpMethod method, QByteArrayView agent, qint32 nRangeStart = 0,
                   qint32 nRangeLength = 0);

    /// Status line and headers with CR LF line ends, up to 1,023 bytes.
    QByteArray GetRawHeaders() const;
    QByteArray GetBody() const;

private:
    WaitStep m_waitStep;
    QByteArray m_headers;
    QByteArray m_body;
    QList<CHttpParameter> m_parameters;
};

} // namespace Torvane::Net
