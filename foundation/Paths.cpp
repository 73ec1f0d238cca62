#include "foundation/Paths.h"

#include "foundation/CodePage.h"
#include "foundation/Random.h"
#include "foundation/Text.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

#include <QDateTime>

#include <algorithm>
#include <array>
#include <vector>

namespace Torvane::File {
namespace {

bool IsFolderWithoutEntries(const QString& strPath) {
    Platform::CFolder folder;
    std::vector<Platform::CFolderEntry> entries;
    return folder.Open(Platform::NativeBytes(strPath)) != 0 || folder.List(entries) != 0 || entries.empty();
}

constexpr std::array c_addressHeads{u"http://", u"https://", u"ftp://", u"gopher://", u"mailto:",
                                    u"news:",   u"telnet:",  u"wais:",  u"file://"};

QString TailBelow(const QString& strBase, const QString& strPath, QChar cSeparator) {
    if (!IsPathUnder(strBase, strPath, cSeparator))
        return {};
    return strPath.mid(strBase.endsWith(cSeparator) ? strBase.size() : strBase.size() + 1);
}

/// Reckoned once a minute: whoever names thousands of files would else ask for the zone of each.
QString TimeStem() {
    static thread_local qint64 nMinute = -1;
    static thread_local QString strStem;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (const qint64 nNow = now.toSecsSinceEpoch() / 60; nNow != nMinute) {
        nMinute = nNow;
        const QDateTime local = now.toLocalTime();
        strStem = QString::asprintf("%d", local.date().year()) + local.toString(QStringLiteral("MMddhhmm"));
    }
    return strStem;
}

} // namespace

bool IsPathTooLong(QStringView path, QStringView more) {
    // Most paths are far from it, which shows without encoding them: no unit takes more than four bytes.
    qsizetype nMost = 0;
    for (const QStringView part : {path, more}) {
        for (const QChar c : part)
            nMost += c.unicode() < 0x80 ? 1 : 4;
    }
    return nMost > c_nMaxPathBytes &&
           CodePage::ByteLength(path) + CodePage::ByteLength(more) > c_nMaxPathBytes;
}

EPathKind GetPathKind(const QString& strPath) {
    QString str = CodePage::Cut(strPath, c_nMaxPathBytes);
    TrimTrailingChar(str, u'\\');
    if (str.isEmpty() || str.endsWith(u'\\'))
        return EPathKind::Nothing;
    // The root of a drive is found by what it holds.
    if (str.endsWith(u':'))
        return IsFolderWithoutEntries(str) ? EPathKind::Nothing : EPathKind::Folder;
    Platform::CFileState state;
    if (Platform::GetFileState(Platform::NativeBytes(str), state) != 0)
        return EPathKind::Nothing;
    return state.bFolder ? EPathKind::Folder : EPathKind::File;
}

bool IsFile(const QString& strPath) {
    QString str = CodePage::Cut(strPath, c_nMaxPathBytes);
    TrimTrailingChar(str, u'\\');
    Platform::CFileState state;
    return !str.isEmpty() && Platform::GetFileState(Platform::NativeBytes(str), state) == 0 &&
           state.bPlainFile;
}

bool IsFolder(const QString& strPath) {
    return GetPathKind(strPath) == EPathKind::Folder;
}

bool IsAbsolute(const QString& strPath) {
    return strPath.startsWith(QLatin1String("\\\\")) ||
           (strPath.size() >= 3 && strPath.at(1) == u':' && strPath.at(2) == u'\\');
}

bool IsFolderEmpty(const QString& strPath) {
    return IsFolderWithoutEntries(CodePage::Cut(strPath, c_nMaxPathBytes));
}

qsizetype FindLastChar(const QString& strText, QChar c, qsizetype nStart) {
    if (strText.isEmpty() || c.isNull())
        return -1;
    return strText.lastIndexOf(c, nStart < 0 ? -1 : std::min(nStart, strText.size() - 1));
}

const char* FindBytes(const char* pStart, const char* pEnd, QByteArrayView bytes) {
    const char* pFound = std::search(pStart, pEnd, bytes.begin(), bytes.end());
    return pFound == pEnd ? nullptr : pFound;
}

int TrimTrailingChar(QString& strText, QChar c) {
    if (!strText.endsWith(c))
        return 0;
    strText.chop(1);
    return 1;
}

QString AddBackslash(const QString& strPath) {
    return strPath.endsWith(u'\\') ? strPath : strPath + u'\\';
}

QString WithoutBackslash(const QString& strPath) {
    return strPath.endsWith(u'\\') ? strPath.chopped(1) : strPath;
}

QString FolderForm(const QString& strPath, bool bBackslash) {
    return bBackslash ? AddBackslash(strPath) : WithoutBackslash(strPath);
}

QString BareName(const QString& strPath) {
    return strPath.mid(strPath.lastIndexOf(u'\\') + 1);
}

QString ParentFolder(const QString& strPath) {
    return strPath.left(std::max<qsizetype>(strPath.lastIndexOf(u'\\'), 0));
}

QString Extension(const QString& strPath) {
    const QString strName = BareName(strPath);
    const qsizetype n = strName.lastIndexOf(u'.');
    return n < 0 ? QString() : strName.mid(n);
}

bool IsHtmlFile(const QString& strPath) {
    const QString strExtension = LowerAscii(Extension(strPath));
    return strExtension == QLatin1String(".htm") || strExtension == QLatin1String(".html");
}

QString FileTitle(const QString& strPath) {
    const QString strName = BareName(strPath);
    const qsizetype n = strName.lastIndexOf(u'.');
    return n < 0 ? strName : strName.left(n);
}

bool IsPathUnder(const QString& strBase, const QString& strPath, QChar cSeparator) {
    if (!EqualsIgnoringCase(QStringView(strPath).left(strBase.size()), strBase))
        return false;
    return strBase.endsWith(cSeparator) ||
           (strPath.size() > strBase.size() && strPath[strBase.size()] == cSeparator);
}

QString RelativeTail(const QString& strBase, const QString& strPath, QChar cSeparator) {
    return CodePage::Cut(TailBelow(strBase, strPath, cSeparator), c_nMaxPathBytes);
}

QString NameInEmptyFolder(const QString& strName) {
    const QString strStem = FileTitle(strName);
    return (strStem.isEmpty() ? TimeStem() : strStem) + Extension(strName);
}

QString MakeUniqueName(const QString& strName, const QString& strFolder) {
    const QString strRoot = AddBackslash(strFolder);
    const QString strExtension = Extension(strName);
    QString strUnique = NameInEmptyFolder(strName);
    const QString strStem = strUnique.chopped(strExtension.size());
    const auto bytesBeyond = [&](const QString& str) {
        return CodePage::ByteLength(strRoot) + CodePage::ByteLength(str) - c_nMaxPathBytes;
    };
    // A folder that has taken every random suffix gets the next higher number.
    constexpr int c_nRandomTries = 1000;
    for (int nTry = 0;; ++nTry) {
        // Of a name too long for a path it can't be told whether it is free, and trying on would never end.
        // Whatever writes there refuses it with its own message.
        if (bytesBeyond(strUnique) > 0 || GetPathKind(strRoot + strUnique) == EPathKind::Nothing)
            return strUnique;
        const int nSuffix = nTry < c_nRandomTries ? NextRandom() : nTry - c_nRandomTries;
        const QString strTail = u'[' + QString::number(nSuffix) + u']' + strExtension;
        const qsizetype nBeyond = bytesBeyond(strStem + strTail);
        strUnique =
            CodePage::Cut(strStem, CodePage::ByteLength(strStem) - std::max<qsizetype>(nBeyond, 0)) + strTail;
    }
}

QString ResolveAgainstBase(const QString& strSourceRoot, const QString& strTargetRoot,
                           const QString& strFound) {
    QString strRest = TailBelow(strSourceRoot, strFound, u'\\');
    if (IsWholeAddress(strRest))
        return strRest;
    strRest.replace(u'/', u'\\');
    QString strBase = ParentFolder(strTargetRoot);
    qsizetype nAt = 0;
    while (nAt < strRest.size() && (strRest[nAt] == u'.' || strRest[nAt] == u'\\')) {
        const QStringView rest = QStringView(strRest).mid(nAt);
        if (rest.startsWith(QLatin1String("..\\"))) {
            strBase = ParentFolder(strBase);
            nAt += 3;
        } else {
            nAt += rest.startsWith(QLatin1String(".\\")) ? 2 : 1;
        }
    }
    return strBase + u'\\' + strRest.mid(nAt);
}

bool IsWholeAddress(const QString& strText) {
    return std::any_of(c_addressHeads.begin(), c_addressHeads.end(), [&](const char16_t* szHead) {
        const QStringView head(szHead);
        return EqualsIgnoringCase(QStringView(strText).left(head.size()), head);
    });
}

} // namespace Torvane::File
