#pragma once

#include <QByteArray>

/// Moving finished folders into their place. Paths are native bytes; every call answers the system's error
/// code, 0 for success.
namespace Platform {

/// Renames within one volume; what already stands at the new name is not replaced.
int MovePath(const QByteArray& from, const QByteArray& to);

/// Exchanges what stands at two paths of one volume, in one step: nobody ever finds either of them missing.
/// EINVAL or ENOSYS on a volume that has no such step; nothing has changed then.
int ExchangePaths(const QByteArray& one, const QByteArray& other);

/// Waits until everything written to the path's volume would outlive a power cut.
int FlushVolume(const QByteArray& path);

} // namespace Platform
