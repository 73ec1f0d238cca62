#include "foundation/TextFile.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/Texts.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

#include <cerrno>

using Torvane::File::CFileException;

QString JoinLines(QString strText) {
    strText.replace(QLatin1StringView("\r\n"), QLatin1StringView("\n"));
    if (strText.endsWith(u'\n'))
        strText.chop(1);
    return strText;
}

QString ReadTextFile(const QString& strPath) {
    try {
        return JoinLines(CodePage::Decode(ReadFileBytes(strPath)));
    } catch (const CFileException&) {
        return {};
    }
}

bool WriteTextFile(const QString& strPath, const QString& strText) {
    try {
        ReplaceFile(strPath, CodePage::Encode(strText).replace("\n", "\r\n"));
        return true;
    } catch (const CFileException&) {
        return false;
    }
}

QByteArray ReadFileBytes(const QString& strPath, qint64 nMaxBytes) {
    QByteArray bytes;
    const QString strCut = CodePage::Cut(strPath, Torvane::File::c_nMaxPathBytes);
    if (const int nError = Platform::ReadFileBytes(Platform::NativeBytes(strCut), bytes, nMaxBytes))
        throw CFileException(FileText::c_strCannotOpen, strPath, nError);
    if (bytes.size() > c_nMaxWholeFile)
        throw CFileException(FileText::c_strCannotOpen, strPath, EFBIG);
    return bytes;
}

void ReplaceFile(const QString& strPath, const QByteArray& bytes) {
    if (CodePage::ByteLength(strPath) > Torvane::File::c_nMaxPathBytes)
        throw CFileException(FileText::c_strCannotOpen, strPath, ENAMETOOLONG);
    if (const int nError = Platform::ReplaceFileBytes(Platform::NativeBytes(strPath), bytes))
        throw CFileException(FileText::c_strCannotOpen, strPath, nError);
}
