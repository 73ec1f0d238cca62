#pragma once

#include <QString>

class QFileDevice;

/// Throws Torvane::CRunException with what a person should know of a failed write: a full disk and a missing
/// permission are told plainly, the rest in the system's words. Native paths.
[[noreturn]] void ThrowFileFault(const QString& strPath, int nSystemError);
[[noreturn]] void ThrowFileFault(const QFileDevice& file);
