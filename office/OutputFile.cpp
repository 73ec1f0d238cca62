#include "office/OutputFile.h"

#include <QFile>

namespace Torvane::Office {

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

} // namespace Torvane::Office
