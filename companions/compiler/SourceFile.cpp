#include "companions/compiler/SourceFile.h"

#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "platform/base/FileCalls.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

using namespace Qt::StringLiterals;

bool IsPageFile(const QString& strName) {
    const QString strExtension = LowerAscii(Torvane::File::Extension(strName));
    return strExtension == ".htm"_L1 || strExtension == ".html"_L1 || strExtension == ".xhtml"_L1 ||
           strExtension == ".xht"_L1 || strExtension == ".shtml"_L1;
}

std::optional<QByteArray> ReadSourceText(const QString& strNativePath) {
    if (QFileInfo(strNativePath).size() > c_nMaxSourceText)
        return std::nullopt;
    QByteArray bytes;
    if (const int nError = Platform::ReadFileBytes(QFile::encodeName(strNativePath), bytes, c_nMaxSourceText))
        throw Torvane::CRunException(
            CompilerText::c_strCannotRead.arg(strNativePath, Platform::SystemErrorText(nError)));
    return bytes;
}

void CheckReadable(const QString& strNativePath, const QString& strMissing) {
    QByteArray begin;
    const int nError = Platform::ReadFileBytes(QFile::encodeName(strNativePath), begin, 1);
    if (nError == EACCES || nError == EPERM || nError == EIO)
        throw Torvane::CRunException(
            CompilerText::c_strCannotRead.arg(strNativePath, Platform::SystemErrorText(nError)));
    if (nError != 0)
        throw Torvane::CRunException(strMissing.arg(strNativePath));
}

std::unique_lock<std::recursive_mutex> LockIfLarge(qint64 nBytes) {
    static std::recursive_mutex mutex;
    return nBytes < c_nLargePage ? std::unique_lock<std::recursive_mutex>() : std::unique_lock(mutex);
}
