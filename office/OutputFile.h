#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Files of a conversion's folder. Paths are native.
namespace Torvane::Office {

/// How much text of the converter is read at most: more than a page that a browser still shows well. The tree
/// of a page takes some twenty times its bytes.
constexpr qint64 c_nMaxTextBytes = qint64{32} << 20;

/// The whole file. Nothing when it can't be read or has more than nMaxBytes.
std::optional<QByteArray> ReadWhole(const QString& strPath, qint64 nMaxBytes = c_nMaxTextBytes);

/// False when not all of it could be written.
bool WriteBytes(const QString& strPath, const QByteArray& bytes);

/// Whether the volume of the folder takes that many bytes, and a page more. A place that doesn't exist can't
/// be told to be full.
bool HasRoom(const QString& strFolder, qint64 nBytes = 0);

} // namespace Torvane::Office
