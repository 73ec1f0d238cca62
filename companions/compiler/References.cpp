#include "companions/compiler/References.h"

#include "foundation/CodePage.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"

using namespace Qt::StringLiterals;

namespace {

/// Length of the scheme with its colon; 0 for none. One letter alone is a drive.
qsizetype SchemeLength(const QString& strText) {
    for (qsizetype i = 0; i < strText.size(); ++i) {
        const char16_t c = strText[i].unicode();
        const bool bLetter = (c | 0x20) >= u'a' && (c | 0x20) <= u'z';
        const bool bOther = (c >= u'0' && c <= u'9') || c == u'+' || c == u'-' || c == u'.';
        if (c == u':')
            return i > 1 ? i + 1 : 0;
        if (!bLetter && (i == 0 || !bOther))
            return 0;
    }
    return 0;
}

bool IsDrivePath(const QString& strText) {
    return strText.size() > 2 && strText[1] == u':' && (strText[2] == u'\\' || strText[2] == u'/') &&
           strText[0].unicode() < 128 && strText[0].isLetter();
}

/// The readings of a path with "%" escapes, the likeliest first: old browsers escaped the code page's bytes,
/// and the editor escapes a blank twice.
QStringList Readings(const QString& strPath) {
    if (!strPath.contains(u'%'))
        return {strPath};
    QStringList list;
    const QByteArray bytes = QByteArray::fromPercentEncoding(strPath.toUtf8());
    const QString strUtf8 = QString::fromUtf8(bytes);
    // Both: bytes of the code page may by chance be well-formed UTF-8.
    list.append(strUtf8);
    list.append(CodePage::Decode(QByteArray::fromPercentEncoding(CodePage::Encode(strPath))));
    if (strUtf8.contains(u'%'))
        list.append(QString::fromUtf8(QByteArray::fromPercentEncoding(bytes)));
    list.append(strPath);
    return list;
}

struct Parts {
    QString Path;
    QString Tail;
};

Parts SplitTail(const QString& strReference) {
    for (qsizetype i = 0; i < strReference.size(); ++i) {
        if (strReference[i] == u'#' || strReference[i] == u'?')
            return {strReference.left(i), strReference.mid(i)};
    }
    return {strReference, QString()};
}

} // namespace

QString FolderOf(const QString& strName) {
    return strName.left(qMax(strName.lastIndexOf(u'/'), qsizetype(0)));
}

QString EncodeAddress(const QString& strPath) {
    static const QString strEscaped = u"%#? \"<>`{}[]^|\\:"_s;
    QString strResult;
    for (const QChar c : strPath) {
        if (c.unicode() < 0x20 || strEscaped.contains(c))
            strResult +=
                QLatin1Char('%') + QString::number(c.unicode(), 16).toUpper().rightJustified(2, u'0');
        else
            strResult += c;
    }
    return strResult;
}

QString RelativeAddress(const QString& strFromFolder, const QString& strToFile) {
    const QStringList from = strFromFolder.split(u'/', Qt::SkipEmptyParts);
    const QStringList to = strToFile.split(u'/', Qt::SkipEmptyParts);
    qsizetype nCommon = 0;
    while (nCommon < from.size() && nCommon + 1 < to.size() && from[nCommon] == to[nCommon])
        ++nCommon;
    return u"../"_s.repeated(from.size() - nCommon) + EncodeAddress(to.mid(nCommon).join(u'/'));
}

bool IsOutsideAddress(const QString& strAddress) {
    static const QStringList schemes = {u"http:"_s, u"https:"_s, u"ftp:"_s, u"mailto:"_s};
    return schemes.contains(LowerAscii(strAddress.left(SchemeLength(strAddress))));
}

CReferences::CReferences(const CSourceTree& tree, const QString& strResourceFolder)
    : m_tree(tree), m_strResourceFolder(Torvane::File::WithoutBackslash(strResourceFolder)) {}

std::optional<QString> CReferences::BelowResources(const QString& strPath) const {
    QString strBack = QString(strPath).replace(u'/', u'\\');
    while (strBack.startsWith(u'\\'))
        strBack.remove(0, 1);
    if (!Torvane::File::IsPathUnder(m_strResourceFolder, strBack, u'\\'))
        return std::nullopt;
    return strBack.mid(m_strResourceFolder.size() + 1).replace(u'\\', u'/');
}

QString CReferences::FindTarget(const QString& strName) const {
    const QString strFile = m_tree.FindFile(strName);
    if (!strFile.isEmpty()) {
        const auto page = m_pages.constFind(strFile);
        return page != m_pages.constEnd() ? *page : m_tree.OutputName(strFile);
    }
    return m_folderPages.value(m_tree.FindFolder(strName));
}

std::optional<QString> CReferences::TargetOf(const QString& strPath, const QString& strFolder) const {
    const bool bFile = LowerAscii(strPath).startsWith("file:"_L1);
    if (!bFile && !IsDrivePath(strPath) && SchemeLength(strPath) > 0)
        return std::nullopt;
    if (!bFile && (strPath.startsWith(u'/') || strPath.startsWith(u'\\')))
        return std::nullopt;
    const bool bAbsolute = bFile || IsDrivePath(strPath);
    const QStringList readings = Readings(bFile ? strPath.mid(5) : strPath);
    for (const QString& strReading : readings) {
        const QString strSlashes = QString(strReading).replace(u'\\', u'/');
        const std::optional<QString> strName =
            bAbsolute ? BelowResources(strReading) : CSourceTree::Join(strFolder, strSlashes);
        if (!strName || strName->isEmpty())
            continue;
        const QString strTarget = FindTarget(*strName);
        if (!strTarget.isEmpty())
            return strTarget;
    }
    return QString();
}

CReferences::Result CReferences::Rewrite(const QString& strReference, const Place& place) const {
    const Parts parts = SplitTail(strReference.trimmed());
    if (parts.Path.isEmpty())
        return {};
    const std::optional<QString> strTarget = TargetOf(parts.Path, place.SourceFolder);
    if (!strTarget)
        return {};
    if (strTarget->isEmpty())
        return {EFound::Missing, parts.Path};
    // Text that already leads there, however it is escaped, stays as its author wrote it.
    if (!parts.Path.contains(u'\\') && SchemeLength(parts.Path) == 0 && !IsDrivePath(parts.Path) &&
        CSourceTree::Join(place.SiteFolder, QString::fromUtf8(QByteArray::fromPercentEncoding(
                                                parts.Path.toUtf8()))) == *strTarget)
        return {};
    return {EFound::Rewritten, RelativeAddress(place.SiteFolder, *strTarget) + parts.Tail};
}

QString CReferences::FindStored(const QString& strPath) const {
    QString strName = QString(strPath).replace(u'\\', u'/');
    const QStringList readings = Readings(strName);
    for (const QString& strReading : readings) {
        const QString strFile = m_tree.FindFile(strReading);
        if (!strFile.isEmpty())
            return strFile;
    }
    const std::optional<QString> strBelow =
        BelowResources(LowerAscii(strPath).startsWith("file:"_L1) ? strPath.mid(5) : strPath);
    return strBelow ? m_tree.FindFile(*strBelow) : QString();
}
