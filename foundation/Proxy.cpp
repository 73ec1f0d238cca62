#include "foundation/Proxy.h"

#include <QByteArrayList>

namespace Torvane::Net {

Proxy ProxyFor(QByteArrayView scheme, QByteArrayView host) {
    const QByteArray name = host.toByteArray().toLower();
    if (name == "localhost" || name.startsWith("127.") || name == "[::1]")
        return {};
    QByteArray excepted = qgetenv("no_proxy");
    if (excepted.isEmpty())
        excepted = qgetenv("NO_PROXY");
    const QByteArrayList entries = excepted.toLower().split(',');
    for (const QByteArray& entry : entries) {
        QByteArray domain = entry.trimmed();
        if (domain == "*")
            return {};
        if (domain.startsWith('.'))
            domain.remove(0, 1);
        if (!domain.isEmpty() && (name == domain || name.endsWith(QByteArray('.' + domain))))
            return {};
    }
    const bool bPlain = scheme == "http";
    // "HTTP_PROXY" in capitals is not looked at, since a web server's scripts get it from a request.
    const QByteArrayList variables =
        bPlain ? QByteArrayList{"http_proxy", "all_proxy", "ALL_PROXY"}
               : QByteArrayList{"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"};
    for (const QByteArray& variable : variables) {
        const QByteArray proxy = qgetenv(variable.constData());
        // A tunnel, or what only hands bytes on, doesn't read the request.
        if (!proxy.isEmpty())
            return {proxy, bPlain && !proxy.toLower().startsWith("socks")};
    }
    return {};
}

} // namespace Torvane::Net
