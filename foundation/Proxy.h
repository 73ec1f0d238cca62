#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace Torvane::Net {

/// The proxy that the environment names for this host, or an empty text. Hosts of this machine never have
/// one.
QByteArray ProxyFor(QByteArrayView host);

} // namespace Torvane::Net
