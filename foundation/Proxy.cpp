#include "foundation/Proxy.h"

#include <QByteArrayList>

namespace Torvane::Net {

QByteArray ProxyFor(QByteArrayView host) {
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
    // "HTTP_PROXY" in capitals is not looked at, since a web server's scripts get it from a request.
    for (const char* szVariable : {"http_proxy", "all_proxy", "ALL_PROXY"}) {
        const QByteArray proxy = qgetenv(szVariable);
        if (!proxy.isEmpty())
            return proxy;
    }
    return {};
}

} // namespace Torvane::Net
