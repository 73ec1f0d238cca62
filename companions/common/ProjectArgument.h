#pragma once

#include <QString>

/// The project file of a companion's argument, native or in backslash form, in backslash form.
QString ReadProjectArgument(const QString& strArgument);
