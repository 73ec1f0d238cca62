#include "office/OutputFile.h"

#include <QFile>
#include <QStorageInfo>

namespace Torvane::Office {
namespace {

// A volume with less free can't take the next page.
constexpr qint64 c_nLeastFree = 256 * 1024;

} // namespace

std::optional<QByteArray> ReadWhole(const QString& strPath, qint64 nMaxBytes) {
    QFile file(strPath);
    if (!file.open(QIODevice::ReadOnly) || file.size() > nMaxBytes)
        return std::nullopt;
    return file.read(nMaxBytes);
}

bool WriteBytes(const QString& strPath, const QByteArray& bytes) {
    QFile file(strPath);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

bool HasRoom(const QString& strFolder, qint64 nBytes) {
    const QStorageInfo volume(strFolder);
    return !volume.isValid() || volume.bytesAvailable() >= nBytes + c_nLeastFree;
}

} // namespace Torvane::Office
