#pragma once

#include <QByteArray>
#include <QString>

/// A file of the course, whole. Throws Torvane::CRunException with a message.
QByteArray ReadSourceFile(const QString& strNativePath);
