#include "editor/Download.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/TextFile.h"
#include "server/HttpClient.h"
#include "server/HttpMessage.h"

#include <QElapsedTimer>
#include <QUrl>

using namespace Torvane::Net;

namespace {

constexpr int c_nMaxRedirections = 5;
constexpr qint64 c_nTimeLimitMs = 60'000;

/// What stands in for a picture that isn't to be had: a page to log in on, or one that says it is gone.
bool IsWebPage(const QByteArray& headers, const QByteArray& body) {
    const QByteArray type = HeaderValue(headers, "Content-Type").value_or(QByteArray()).toLower();
    if (type.startsWith("text/html") || type.startsWith("application/xhtml"))
        return true;
    constexpr qsizetype c_nLooked = 1024;
    QByteArray begin = body.first(qMin(body.size(), c_nLooked)).toLower();
    if (begin.startsWith("\xEF\xBB\xBF"))
        begin.remove(0, 3);
    begin = begin.trimmed();
    return begin.startsWith("<html") || begin.startsWith("<!doctype html");
}

} // namespace

bool DownloadUrlToFile(const QString& strUrl, const QString& strPath, const std::function<bool()>& goOn) {
    QElapsedTimer timer;
    timer.start();
    try {
        CHttpClient client;
        client.SetWaitStep([&] { return goOn() && timer.elapsed() < c_nTimeLimitMs; });
        QByteArray url = CodePage::Encode(strUrl);
        for (int nRequest = 0; nRequest <= c_nMaxRedirections; ++nRequest) {
            client.Request(url, EHttpMethod::Get, "Vorel");
            const int nStatus = ParseStatus(client.GetRawHeaders());
            if (nStatus >= 200 && nStatus < 300) {
                if (client.GetBody().isEmpty() || IsWebPage(client.GetRawHeaders(), client.GetBody()))
                    return false;
                ReplaceFile(strPath, client.GetBody());
                return true;
            }
            const QByteArray location =
                HeaderValue(client.GetRawHeaders(), "Location").value_or(QByteArray());
            if (nStatus < 300 || nStatus >= 400 || location.isEmpty())
                return false;
            url = QUrl::fromEncoded(url).resolved(QUrl::fromEncoded(location)).toEncoded();
        }
    } catch (const Torvane::CRunException&) {
        return false;
    }
    return false;
}
