#pragma once

#include <QByteArray>
#include <QString>

/// The one place that knows how a stored path becomes a path of this machine.
///
/// In memory and in stored data a path has the backslash form, "Z:\home\li\课程". On a platform without
/// drives the root folder is drive Z. The native form of the same path is "/home/li/课程". A person sees and
/// types the native form.
namespace Platform {

/// The native form of a backslash path, for a system call. A component that does not exist as it stands is
/// looked up once more ignoring the case of ASCII letters, component by component, since links and addresses
/// are lower-cased by rule; what is not found either way keeps its spelling. A drive that this machine does
/// not have gives a path at which nothing can exist. A path already in native form (it begins with "/") is
/// taken too.
QString ToNative(const QString& strPath);

/// The bytes of ToNative, as the system's file calls take them.
QByteArray NativeBytes(const QString& strPath);

/// As ToNative, without looking at the disk: the spelling stays. For creating.
QString ToNativeExact(const QString& strPath);

/// What a person sees: the native form in its own spelling, or a path of another machine as it stands.
QString ToShown(const QString& strPath);

/// The backslash form of a native path; a path already in backslash form comes back as it stands.
QString FromNative(const QString& strNative);

} // namespace Platform
