#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace Torvane::Net {

struct Proxy {
    /// Empty when there is none.
    QByteArray Address;
    /// Whether the request line names the whole address, and not only what stands behind the host.
    bool bTakesWholeAddress = false;
};

/// The proxy that the environment names for a host, by the scheme ("http" or "https") it is asked with. Hosts
/// of this machine never have one.
Proxy ProxyFor(QByteArrayView scheme, QByteArrayView host);

} // namespace Torvane::Net
