#include "foundation/TextFile.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

#include <cerrno>
#include <limits>

using Torvane::File::CFileException;

namespace {

CFileException CannotOpen(const QString& strPath, int nError) {
    return CFileException(QStringLiteral("无法打开文件 %1 ！").arg(Platform::ToShown(strPath)), nError);
}

} // namespace

QString ReadTextFile(const QString& strPath) {
    QByteArray bytes;
    const QString strCut = CodePage::Cut(strPath, Torvane::File::c_nMaxPathBytes);
    if (Platform::ReadFileBytes(Platform::ToNative(strCut).toUtf8(), bytes,
                                std::numeric_limits<qint64>::max()) != 0)
        return {};
    bytes.replace("\r\n", "\n");
    if (bytes.endsWith('\n'))
        bytes.chop(1);
    return CodePage::Decode(bytes);
}

bool WriteTextFile(const QString& strPath, const QString& strText) {
    try {
        ReplaceFile(strPath, CodePage::Encode(strText).replace("\n", "\r\n"));
        return true;
    } catch (const CFileException&) {
        return false;
    }
}

QByteArray ReadFileBytes(const QString& strPath) {
    QByteArray bytes;
    const QString strCut = CodePage::Cut(strPath, Torvane::File::c_nMaxPathBytes);
    if (const int nError = Platform::ReadFileBytes(Platform::ToNative(strCut).toUtf8(), bytes,
                                                   std::numeric_limits<qint64>::max()))
        throw CannotOpen(strPath, nError);
    return bytes;
}

void ReplaceFile(const QString& strPath, const QByteArray& bytes) {
    if (CodePage::ByteLength(strPath) > Torvane::File::c_nMaxPathBytes)
        throw CannotOpen(strPath, ENAMETOOLONG);
    if (const int nError = Platform::ReplaceFileBytes(Platform::ToNative(strPath).toUtf8(), bytes))
        throw CannotOpen(strPath, nError);
}
