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

bool IsFileAddress(const QString& strText) {
    return strText.startsWith("file:"_L1, Qt::CaseInsensitive);
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

/// Longer than any path. Who looks further for one in a text looks in vain, and long.
constexpr qsizetype c_nMaxPath = 1024;

/// Where the path of a reference ends, looked for from nFrom on.
qsizetype EndOfPath(const QString& strReference, qsizetype nFrom) {
    while (nFrom < strReference.size() && strReference[nFrom] != u'#' && strReference[nFrom] != u'?')
        ++nFrom;
    return nFrom;
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
    // Streams among them: a player that is installed takes them.
    static const QStringList schemes = {u"http:"_s, u"https:"_s, u"ftp:"_s,  u"mailto:"_s, u"mms:"_s,
                                        u"mmst:"_s, u"rtsp:"_s,  u"rtmp:"_s, u"tel:"_s};
    return schemes.contains(LowerAscii(strAddress.left(SchemeLength(strAddress))));
}

QString EscapedAddress(const QString& strAddress) {
    static const QString strForbidden = u" \"<>`{}|\\^"_s;
    QString strResult;
    for (const QChar c : strAddress) {
        if (c.unicode() < 0x20 || strForbidden.contains(c))
            strResult += EncodeAddress(c);
        else
            strResult += c;
    }
    return strResult;
}

CReferences::CReferences(const CSourceTree& tree, const QString& strResourceFolder)
    : m_tree(tree), m_fragments(tree),
      m_strResourceFolder(Torvane::File::WithoutBackslash(strResourceFolder)) {}

std::optional<QString> CReferences::BelowResources(const QString& strPath) const {
    QString strBack = QString(strPath).replace(u'/', u'\\');
    while (strBack.startsWith(u'\\'))
        strBack.remove(0, 1);
    if (!Torvane::File::IsPathUnder(m_strResourceFolder, strBack, u'\\'))
        return std::nullopt;
    return strBack.mid(m_strResourceFolder.size() + 1).replace(u'\\', u'/');
}

CReferences::Target CReferences::FindTarget(const QString& strName) const {
    const QString strFile = m_tree.FindFile(strName);
    if (!strFile.isEmpty())
        return {strFile, m_tree.OutputName(strFile)};
    return {{}, m_folderPages.value(LowerAscii(CSourceTree::Join({}, strName)))};
}

std::optional<CReferences::Target> CReferences::TargetOf(const QString& strPath,
                                                         const QString& strFolder) const {
    const bool bFile = IsFileAddress(strPath);
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
        const Target target = FindTarget(*strName);
        if (!target.Page.isEmpty())
            return target;
    }
    return Target();
}

CReferences::Parts CReferences::SplitAt(const QString& strReference, qsizetype nEndOfPath) {
    const QString strTail = strReference.mid(nEndOfPath);
    const qsizetype nHash = strTail.indexOf(u'#');
    return nHash < 0 ? Parts{strReference.left(nEndOfPath), strTail, {}}
                     : Parts{strReference.left(nEndOfPath), strTail.left(nHash), strTail.mid(nHash)};
}

/// A name may hold what ends a path: links to it are written without escapes by rule, and only the files can
/// tell.
std::optional<CReferences::Target> CReferences::Find(const QString& strReference, const QString& strFolder,
                                                     Parts& parts) const {
    qsizetype nEnd = EndOfPath(strReference, 0);
    parts = SplitAt(strReference, nEnd);
    std::optional<Target> target = TargetOf(parts.Path, strFolder);
    while (target && target->Page.isEmpty() && nEnd < qMin(strReference.size(), c_nMaxPath)) {
        nEnd = EndOfPath(strReference, nEnd + 1);
        const Parts longer = SplitAt(strReference, nEnd);
        target = TargetOf(longer.Path, strFolder);
        if (target && !target->Page.isEmpty())
            parts = longer;
    }
    return target;
}

/// Text that already leads there, however it is escaped, stays as its author wrote it.
bool CReferences::LeadsThere(const QString& strPath, const QString& strSiteFolder, const QString& strPage) {
    const QString strPlain = QString::fromUtf8(QByteArray::fromPercentEncoding(strPath.toUtf8()));
    return EndOfPath(strPath, 0) == strPath.size() && !strPath.contains(u'\\') &&
           SchemeLength(strPath) == 0 && !IsDrivePath(strPath) &&
           CSourceTree::Join(strSiteFolder, strPlain) == strPage;
}

CReferences::Result CReferences::Rewrite(const QString& strReference, const Place& place) const {
    const QString strTrimmed = strReference.trimmed();
    Parts parts = SplitAt(strTrimmed, EndOfPath(strTrimmed, 0));
    std::optional<Target> target = Target{place.Source, {}};
    if (!parts.Path.isEmpty())
        target = Find(strTrimmed, place.SourceFolder, parts);
    else if (!parts.Query.isEmpty())
        return {};
    if (!target)
        return {};
    if (!parts.Path.isEmpty() && target->Page.isEmpty())
        return {EFound::Missing, {}, parts.Path};
    QString strPath = parts.Path;
    if (!strPath.isEmpty() && !LeadsThere(strPath, place.SiteFolder, target->Page))
        strPath = RelativeAddress(place.SiteFolder, target->Page);
    const CFragments::Result fragment = m_fragments.Spelled(target->Source, parts.Fragment);
    const QString strDead = fragment.IsDead ? strPath + parts.Fragment : QString();
    const bool bReadOther = !parts.Fragment.isEmpty() && target->Source != place.Source;
    const bool bStray = !parts.Path.isEmpty() && !target->Source.isEmpty() && !IsPublished(target->Source);
    Result result = {EFound::Unchanged,
                     {},
                     strDead,
                     bReadOther ? target->Source : QString(),
                     bStray ? target->Source : QString()};
    if (strPath != parts.Path || fragment.Text != parts.Fragment) {
        result.Found = EFound::Rewritten;
        result.Text = strPath + parts.Query + fragment.Text;
    }
    return result;
}

std::optional<CReferences::Place> CReferences::WithBase(const QString& strBase, const Place& place) const {
    if (strBase.isEmpty())
        return place;
    const QString strPath = strBase.left(EndOfPath(strBase, 0)).replace(u'\\', u'/');
    if (IsFileAddress(strPath) || IsDrivePath(strPath))
        return WithBaseOnDisk(strPath, place);
    if (SchemeLength(strPath) > 0 || strPath.startsWith(u'/'))
        return std::nullopt;
    const QString strBelow = FolderOf(strPath);
    const QString strSource = CSourceTree::Join(place.SourceFolder, strBelow);
    const QString strSite = CSourceTree::Join(place.SiteFolder, strBelow);
    if (strSource.isNull() || strSite.isNull())
        return std::nullopt;
    // The folder of all nodes is not in the tree; from one that is gone paths may lead back to what is there.
    const QString strFound = m_tree.FindFolder(strSource);
    const QString strReal = strFound.isEmpty() ? strSource : strFound;
    if (strReal == strSource || strSource != strSite)
        return Place{strReal, strSite, place.Source};
    // What a server does not find in that letter case it does not find at all.
    const QString strMended = RelativeAddress(place.SiteFolder, strReal + u"/x"_s).chopped(1);
    return Place{strReal, strReal, place.Source, strMended + strBase.mid(strPath.lastIndexOf(u'/') + 1)};
}

/// No reader has the author's disk. In the course's own folder such a base means the folder of that name, and
/// elsewhere the page is read as if it had none.
CReferences::Place CReferences::WithBaseOnDisk(const QString& strPath, const Place& place) const {
    const QStringList readings = Readings(IsFileAddress(strPath) ? strPath.mid(5) : strPath);
    for (const QString& strReading : readings) {
        const std::optional<QString> strBelow = BelowResources(strReading);
        const QString strFolder = strBelow ? m_tree.FindFolder(FolderOf(*strBelow)) : QString();
        if (!strFolder.isEmpty())
            return {strFolder, strFolder, place.Source,
                    u"./"_s + RelativeAddress(place.SiteFolder, strFolder + u"/x"_s).chopped(1)};
    }
    return {place.SourceFolder, place.SiteFolder, place.Source, u"./"_s};
}

QString CReferences::FindStored(const QString& strPath) const {
    QString strName = QString(strPath).replace(u'\\', u'/');
    const QStringList readings = Readings(strName);
    for (const QString& strReading : readings) {
        const QString strFile = m_tree.FindFile(strReading);
        if (!strFile.isEmpty())
            return strFile;
    }
    const std::optional<QString> strBelow = BelowResources(IsFileAddress(strPath) ? strPath.mid(5) : strPath);
    return strBelow ? m_tree.FindFile(*strBelow) : QString();
}
