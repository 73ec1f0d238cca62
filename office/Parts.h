#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

namespace Torvane::Office {

/// A page or a file beside it from office/parts, with each "%NAME%" replaced by what the map holds for it.
/// What is put in is not looked through again.
QByteArray Part(const QString& strName, const QMap<QByteArray, QByteArray>& values = {});

} // namespace Torvane::Office
