#include "companions/fetch/Download.h"

#include "companions/fetch/FileFaults.h"
#include "foundation/CodePage.h"
#include "foundation/Proxy.h"

#include <QFile>
#include <QLocale>

#include <curl/curl.h>

#include <algorithm>
#include <memory>

namespace {

constexpr int c_nWaitMilliseconds = 100;
// One that sends a byte now and then counts as silent.
constexpr long c_nLeastBytesPerSecond = 64;
constexpr long c_nOk = 200;
constexpr long c_nGone[] = {404, 410};

struct EasyDeleter {
    void operator()(CURL* p) const { curl_easy_cleanup(p); }
};
struct MultiDeleter {
    void operator()(CURLM* p) const { curl_multi_cleanup(p); }
};

struct Address {
    /// Scheme, host and port with a "/" behind them.
    QByteArray Server;
    QByteArray Scheme;
    QByteArray Host;
    /// What the request line names.
    QByteArray Target;
};

/// The library gets the server alone: it would escape or refuse a target with blanks and bytes above 127.
Address SplitAddress(const QByteArray& address) {
    const auto refuse = [&address]() {
        return Torvane::CRunException(FetchText::c_strBadAddress.arg(CodePage::Decode(address)));
    };
    const auto breaksLine = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; };
    const qsizetype nHost = address.indexOf("://") + 3;
    const QByteArray scheme = address.first(std::max<qsizetype>(nHost, 3) - 3).toLower();
    if ((scheme != "http" && scheme != "https") || std::any_of(address.begin(), address.end(), breaksLine))
        throw refuse();
    qsizetype nEnd = nHost;
    while (nEnd < address.size() && address[nEnd] != '/' && address[nEnd] != '?')
        ++nEnd;
    // Name and password of an address are sent nowhere.
    const QByteArray authority = address.sliced(nHost, nEnd - nHost);
    Address parts;
    const QByteArray host = authority.mid(authority.lastIndexOf('@') + 1);
    parts.Server = scheme + "://" + host + '/';
    parts.Scheme = scheme;
    parts.Target = address.sliced(nEnd);
    if (!parts.Target.startsWith('/'))
        parts.Target.prepend('/');

    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url(curl_url(), &curl_url_cleanup);
    char* szHost = nullptr;
    if (!url || curl_url_set(url.get(), CURLUPART_URL, parts.Server.constData(), 0) != CURLUE_OK ||
        curl_url_get(url.get(), CURLUPART_HOST, &szHost, 0) != CURLUE_OK)
        throw refuse();
    parts.Host = szHost;
    curl_free(szHost);
    return parts;
}

/// One download: what the library's calls back share.
class CDownload {
public:
    CDownload(const QString& strFile, FetchProgress& progress, const DownloadLimits& limits)
        : m_file(strFile), m_progress(progress), m_limits(limits) {
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
            ThrowFileFault(m_file);
    }

    void Run(const QByteArray& address) {
        // What an earlier download received is no part of this one.
        m_progress.nReceived = 0;
        m_progress.nTotal = 0;
        const Address parts = SplitAddress(address);
        Prepare(parts);
        const CURLcode code = Drive();
        if (m_progress.bCancelled)
            throw CFetchCancelled();
        Judge(code);
        m_file.close();
        if (m_file.error() != QFileDevice::NoError)
            ThrowFileFault(m_file);
    }

private:
    void Prepare(const Address& parts) {
        if (!m_easy || !m_multi)
            throw Torvane::CRunException(
                FetchText::c_strUnexpected.arg(QString::fromUtf8(curl_easy_strerror(CURLE_FAILED_INIT))));
        CURL* pEasy = m_easy.get();
        const Torvane::Net::Proxy proxy = Torvane::Net::ProxyFor(parts.Scheme, parts.Host);
        const QByteArray target =
            proxy.bTakesWholeAddress ? parts.Server.chopped(1) + parts.Target : parts.Target;
        curl_easy_setopt(pEasy, CURLOPT_URL, parts.Server.constData());
        curl_easy_setopt(pEasy, CURLOPT_REQUEST_TARGET, target.constData());
        curl_easy_setopt(pEasy, CURLOPT_PROXY, proxy.Address.constData());
        curl_easy_setopt(pEasy, CURLOPT_PROTOCOLS_STR, "http,https");
        curl_easy_setopt(pEasy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
        curl_easy_setopt(pEasy, CURLOPT_USERAGENT, "VorelFetch");
        curl_easy_setopt(pEasy, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(pEasy, CURLOPT_QUICK_EXIT, 1L);
        curl_easy_setopt(pEasy, CURLOPT_CONNECTTIMEOUT, m_limits.nConnectSeconds);
        curl_easy_setopt(pEasy, CURLOPT_LOW_SPEED_LIMIT, c_nLeastBytesPerSecond);
        curl_easy_setopt(pEasy, CURLOPT_LOW_SPEED_TIME, m_limits.nSilentSeconds);
        curl_easy_setopt(pEasy, CURLOPT_WRITEFUNCTION, &CDownload::Take);
        curl_easy_setopt(pEasy, CURLOPT_WRITEDATA, this);
    }

    static size_t Take(const char* pData, size_t nSize, size_t nCount, void* pUser) noexcept {
        return static_cast<CDownload*>(pUser)->TakeBlock(pData, static_cast<qint64>(nSize * nCount))
                   ? nSize * nCount
                   : 0;
    }
    bool TakeBlock(const char* pData, qint64 nBytes) {
        curl_off_t nTotal = -1;
        curl_easy_getinfo(m_easy.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &nTotal);
        const qint64 nReceived = m_progress.nReceived + nBytes;
        m_bTooLarge = std::max<qint64>(nReceived, nTotal) > m_limits.nMaxBytes;
        if (Status() != c_nOk || m_bTooLarge || m_progress.bCancelled)
            return false;
        m_bDiskFault = !Write(pData, nBytes);
        m_progress.nTotal = std::max<qint64>(nTotal, 0);
        m_progress.nReceived = nReceived;
        m_progress.Stage = FetchProgress::EStage::Receiving;
        return !m_bDiskFault;
    }

    /// A disk that fills up takes a part first, and says why with the rest.
    bool Write(const char* pData, qint64 nBytes) {
        while (nBytes > 0) {
            const qint64 nWritten = m_file.write(pData, nBytes);
            if (nWritten <= 0)
                return false;
            pData += nWritten;
            nBytes -= nWritten;
        }
        return true;
    }

    CURLcode Drive() {
        curl_multi_add_handle(m_multi.get(), m_easy.get());
        CURLcode code = CURLE_ABORTED_BY_CALLBACK;
        int nRunning = 1;
        while (!m_progress.bCancelled && curl_multi_perform(m_multi.get(), &nRunning) == CURLM_OK &&
               nRunning > 0)
            curl_multi_poll(m_multi.get(), nullptr, 0, c_nWaitMilliseconds, nullptr);
        int nLeft = 0;
        if (const CURLMsg* pMessage = curl_multi_info_read(m_multi.get(), &nLeft))
            code = pMessage->data.result;
        curl_multi_remove_handle(m_multi.get(), m_easy.get());
        return code;
    }

    long Status() const {
        long nStatus = 0;
        curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &nStatus);
        return nStatus;
    }

    void Judge(CURLcode code) {
        const long nStatus = Status();
        if (nStatus != 0 && nStatus != c_nOk) {
            const bool bGone =
                std::find(std::begin(c_nGone), std::end(c_nGone), nStatus) != std::end(c_nGone);
            throw Torvane::CRunException(
                (bGone ? FetchText::c_strNotFound : FetchText::c_strHttpStatus).arg(nStatus));
        }
        if (m_bTooLarge)
            throw Torvane::CRunException(FetchText::c_strTooLarge.arg(
                QLocale::c().formattedDataSize(m_limits.nMaxBytes, 0, QLocale::DataSizeTraditionalFormat)));
        if (m_bDiskFault)
            ThrowFileFault(m_file);
        if (code != CURLE_OK)
            throw Torvane::CRunException(FaultText(code));
    }

    static QString FaultText(CURLcode code) {
        switch (code) {
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_RESOLVE_PROXY:
            return FetchText::c_strHostUnknown;
        case CURLE_COULDNT_CONNECT:
            return FetchText::c_strNoConnection;
        case CURLE_OPERATION_TIMEDOUT:
            return FetchText::c_strTimedOut;
        case CURLE_GOT_NOTHING:
        case CURLE_RECV_ERROR:
        case CURLE_SEND_ERROR:
        case CURLE_PARTIAL_FILE:
            return FetchText::c_strConnectionLost;
        case CURLE_WEIRD_SERVER_REPLY:
        case CURLE_UNSUPPORTED_PROTOCOL:
            return FetchText::c_strBadReply;
        default:
            return FetchText::c_strUnexpected.arg(QString::fromUtf8(curl_easy_strerror(code)));
        }
    }

    QFile m_file;
    FetchProgress& m_progress;
    const DownloadLimits& m_limits;
    std::unique_ptr<CURL, EasyDeleter> m_easy{curl_easy_init()};
    std::unique_ptr<CURLM, MultiDeleter> m_multi{curl_multi_init()};
    bool m_bTooLarge = false;
    bool m_bDiskFault = false;
};

} // namespace

void Download(const QByteArray& address, const QString& strFile, FetchProgress& progress,
              const DownloadLimits& limits) {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    static_cast<void>(initialised);
    CDownload(strFile, progress, limits).Run(address);
}
