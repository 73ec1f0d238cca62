#pragma once

#include <QString>

/// Whether an argument is a whole path in backslash form: it begins with a drive or names a share. A native
/// name may have a colon behind its first letter too.
bool IsStoredPath(const QString& strArgument);

/// The project file of a companion's argument, native or in backslash form, in backslash form.
QString ReadProjectArgument(const QString& strArgument);
