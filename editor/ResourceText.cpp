#include "editor/ResourceText.h"

#include "foundation/CodePage.h"
#include "foundation/FolderWalk.h"
#include "foundation/Paths.h"
#include "foundation/Random.h"
#include "foundation/Text.h"
#include "foundation/Urls.h"
#include "platform/base/NativePath.h"

#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <bitset>
#include <utility>

namespace ResourceText {

using namespace Torvane::File;

namespace {

constexpr QChar c_backslash = u'\\';
constexpr QLatin1StringView c_resUrl("res/");
constexpr QLatin1StringView c_fileUrl("file:///");
constexpr QLatin1StringView c_dataUrl("data:");
/// Where letters wait while a text passes through the lower-casing conversion.
constexpr char16_t c_nPrivateBase = 0xE000;

/// The file that the surface shows for a reference: every escape taken back once. Empty where the reference
/// is none to a file alone.
QString PathAsShown(const QString& strReference) {
    if (!LowerAscii(strReference.left(c_fileUrl.size())).startsWith(c_fileUrl) ||
        strReference.contains(u'?') || strReference.contains(u'#'))
        return {};
    QString strPath = QUrl::fromPercentEncoding(strReference.sliced(c_fileUrl.size()).toUtf8());
    return strPath.replace(u'/', c_backslash);
}

/// A local reference as a path in its own spelling. The conversion itself lower-cases, so upper-case letters
/// pass through it as private characters; those of the scheme and of an escape's second digit are left to it.
QString PathAsSpelled(const QString& strReference) {
    QString strText = strReference;
    const qsizetype nScheme = strText.indexOf(QLatin1StringView("://"));
    for (qsizetype n = qMax<qsizetype>(nScheme, 0); n < strText.size(); ++n) {
        const char16_t c = strText.at(n).unicode();
        const bool bEscapeDigit = n >= 2 && strText.at(n - 2) == u'%';
        if (c >= u'A' && c <= u'Z' && !bEscapeDigit)
            strText[n] = QChar(static_cast<char16_t>(c_nPrivateBase + c));
    }
    strText = FileUrlToPath(strText);
    for (QChar& c : strText) {
        if (c.unicode() >= c_nPrivateBase + u'A' && c.unicode() <= c_nPrivateBase + u'Z')
            c = QChar(static_cast<char16_t>(c.unicode() - c_nPrivateBase));
    }
    return strText;
}

/// The file to open for a reference; empty when there is none.
QString FindSource(const QString& strReference) {
    // A picture that is its own text may be megabytes of it.
    if (LowerAscii(strReference.left(c_dataUrl.size())) == c_dataUrl)
        return {};
    for (QString (*const read)(const QString&) : {&PathAsShown, &PathAsSpelled, &FileUrlToPath}) {
        const QString strPath = read(strReference);
        if (IsFile(strPath))
            return strPath;
    }
    return {};
}

/// The native path of a file that shows and whose path is too long for everything else; empty for any other
/// reference.
QString TooLongPath(const QString& strReference) {
    if (LowerAscii(strReference.left(c_fileUrl.size())) != c_fileUrl)
        return {};
    for (QString (*const read)(const QString&) : {&PathAsShown, &PathAsSpelled}) {
        const QString strPath = read(strReference);
        const QString strNative = IsPathTooLong(strPath) ? Platform::ToNative(strPath) : QString();
        if (QFileInfo(strNative).isFile())
            return strNative;
    }
    return {};
}

/// Of a file in the resource folder. Three characters would make another file's name of it in a reference.
QString UrlOfTail(QString strPath) {
    strPath.replace(u'%', QLatin1StringView("%25"));
    strPath.replace(u'#', QLatin1StringView("%23"));
    strPath.replace(u'?', QLatin1StringView("%3F"));
    return strPath.replace(c_backslash, u'/');
}

/// A query or fragment behind a web picture's extension is no part of it, and in a file's name it would be
/// taken for a query or fragment again.
QString NameExtension(const QString& strSource) {
    const QString strExtension = CodePage::Cut(Extension(strSource), c_nMaxPathBytes);
    const auto isEnd = [](QChar c) { return c == u'?' || c == u'#' || c == u'%'; };
    return strExtension.left(std::find_if(strExtension.begin(), strExtension.end(), isEnd) -
                             strExtension.begin());
}

/// The bare names of all that stands in a folder but its folders.
QStringList FilesIn(const QString& strFolder) {
    struct CNames : IFileVisitor {
        QStringList List;
        void Visit(const QString&, const FindRecord& record) override {
            if (!record.bFolder)
                List.append(record.strName);
        }
    } names;
    WalkFolder(strFolder, &names, nullptr, nullptr, false, nullptr, false);
    return names.List;
}

/// Which of the names stand in the text, found in one reading by what they begin with.
QSet<QString> NamesIn(QStringView text, const QStringList& names) {
    if (names.isEmpty())
        return {};
    constexpr int c_nLetters = 256;
    qsizetype nKey = names.first().size();
    for (const QString& strName : names)
        nKey = std::min(nKey, strName.size());
    QMultiHash<QStringView, QString> byKey;
    std::bitset<c_nLetters> firsts;
    for (const QString& strName : names) {
        byKey.insert(QStringView(strName).left(nKey), strName);
        firsts.set(strName.front().unicode() % c_nLetters);
    }
    QSet<QString> found;
    for (qsizetype n = 0; n + nKey <= text.size(); ++n) {
        if (!firsts[text[n].unicode() % c_nLetters])
            continue;
        const auto [begin, end] = std::as_const(byKey).equal_range(text.sliced(n, nKey));
        for (auto it = begin; it != end; ++it) {
            if (text.sliced(n).startsWith(*it))
                found.insert(*it);
        }
    }
    return found;
}

/// "…\N13" of "…\N13\res\".
QString PageFolder(const PageFolders& folders) {
    return ParentFolder(WithoutBackslash(folders.strResFolder));
}

/// A resource that is to be copied or fetched into the page's folder.
void PlanCopy(const PageFolders& folders, CResourceNames* pNames, ResourceCopy& out) {
    out.bCopy = true;
    out.strName = MakeResourceName(BareName(out.strSource), folders.strResFolder, pNames);
    // The folder ends with a backslash already; the doubled one is read as one.
    out.strDest = folders.strResFolder + c_backslash + out.strName;
    out.strUrl = c_resUrl + out.strName;
}

/// The changes of one reference: as it is reported, and as an attribute in the text spells it.
void AppendChanges(const QString& strSource, const QString& strTo, qsizetype nCopy,
                   QList<Replacement>& replacements) {
    replacements.append({strSource, strTo, nCopy});
    if (strSource.contains(u'&'))
        replacements.append({QString(strSource).replace(u'&', QLatin1StringView("&amp;")), strTo, nCopy});
}

void PlanResources(const QStringList& sources, const PageFolders& folders, CResourceNames& names,
                   QList<ResourceCopy>& copies, QList<Replacement>& replacements) {
    for (const QString& strSource : sources) {
        ResourceCopy copy;
        if (strSource.isEmpty() || !PlanResource(strSource, folders, &names, copy) || copy.strUrl.isEmpty())
            continue;
        AppendChanges(strSource, copy.strUrl, copies.size(), replacements);
        copies.append(copy);
    }
}

QString LocalLink(const QString& strLower, const PageFolders& folders) {
    if (IsPathUnder(folders.strResFolder, FileUrlToPath(strLower), c_backslash))
        return MakeRelativeUrl(strLower, PageFolder(folders));
    return QStringLiteral("../") + MakeRelativeUrl(strLower, folders.strNodeResourceFolder);
}

/// The document's URL in the spelling in which the surface writes it into links within the page.
QString DocumentUrlInLinks(QString strUrl) {
    static const struct {
        QLatin1StringView strFrom, strTo;
    } changes[] = {
        {QLatin1StringView("file://"), QLatin1StringView("file:///")},
        {QLatin1StringView("\\"), QLatin1StringView("/")},
        {QLatin1StringView(" "), QLatin1StringView("%20")},
        {QLatin1StringView("^"), QLatin1StringView("%5E")},
        {QLatin1StringView("&"), QLatin1StringView("%26")},
        {QLatin1StringView("["), QLatin1StringView("%5B")},
        {QLatin1StringView("]"), QLatin1StringView("%5D")},
        {QLatin1StringView("{"), QLatin1StringView("%7B")},
        {QLatin1StringView("}"), QLatin1StringView("%7D")},
    };
    for (const auto& change : changes)
        strUrl.replace(change.strFrom, change.strTo);
    return strUrl;
}

} // namespace

QString ResFolderOfPage(const QString& strPagePath) {
    return ParentFolder(strPagePath) + QStringLiteral("\\res\\");
}

QString CResourceNames::Make(const QString& strSource) {
    if (!m_taken) {
        m_taken.emplace();
        const QStringList files = FilesIn(m_strFolder);
        for (const QString& strFile : files)
            m_taken->insert(LowerAscii(strFile));
    }
    const QString strExtension = NameExtension(strSource);
    if (!m_stems.contains(strExtension))
        m_stems.insert(strExtension, FileTitle(MakeUniqueName(strExtension, m_strFolder)));
    QString strName = m_stems.value(strExtension) + strExtension;
    // The name that comes out is looked at as well: two resources under one name would be one picture shown
    // in place of the other. It grows with each pass, so that one comes that is free.
    do {
        strName.chop(strExtension.size());
        strName += u'[' + QString::number(NextRandom()) + u']' + strExtension;
    } while (m_taken->contains(LowerAscii(strName)));
    m_taken->insert(LowerAscii(strName));
    return strName;
}

QString MakeResourceName(const QString& strSource, const QString& strFolder, CResourceNames* pNames) {
    return pNames != nullptr ? pNames->Make(strSource) : MakeUniqueName(NameExtension(strSource), strFolder);
}

bool PlanResource(const QString& strSource, const PageFolders& folders, CResourceNames* pNames,
                  ResourceCopy& out) {
    out = ResourceCopy();
    if (LowerAscii(strSource.left(7)) == QLatin1StringView("http://")) {
        out.bRemote = true;
        out.strSource = strSource;
        PlanCopy(folders, pNames, out);
        return true;
    }
    out.strOpenPath = FindSource(strSource);
    if (out.strOpenPath.isEmpty())
        return false;
    out.strSource = LowerAscii(out.strOpenPath);
    if (IsPathUnder(folders.strResFolder, out.strSource, c_backslash)) {
        out.strName = BareName(out.strSource);
        out.strDest = out.strSource;
        out.strUrl = UrlOfTail(RelativeTail(PageFolder(folders), out.strSource, c_backslash));
        return true;
    }
    PlanCopy(folders, pNames, out);
    return true;
}

QList<Replacement> PlanReplacements(const References& references, const PageFolders& folders,
                                    QList<ResourceCopy>& copies) {
    QList<Replacement> replacements;
    CResourceNames names(folders.strResFolder);
    PlanResources(references.Images, folders, names, copies, replacements);
    PlanResources(references.Embeds, folders, names, copies, replacements);
    for (const QString& strAnchor : references.Anchors) {
        const QString strLower = LowerAscii(strAnchor);
        if (strLower.contains(QLatin1StringView("file:///")))
            replacements.append({strAnchor, LocalLink(strLower, folders)});
    }
    if (!references.strDocumentUrl.isEmpty())
        replacements.append({DocumentUrlInLinks(references.strDocumentUrl) + u'#', QStringLiteral("#")});
    return replacements;
}

void LeaveOutUnnamed(const QString& strHtml, QList<Replacement>& replacements, QList<ResourceCopy>& copies) {
    const QList<bool> occurring = FindOccurring(strHtml, replacements);
    QSet<qsizetype> named;
    for (qsizetype n = 0; n < replacements.size(); ++n) {
        if (occurring.at(n))
            named.insert(replacements.at(n).nCopy);
    }
    replacements.removeIf([&](const Replacement& r) { return r.nCopy >= 0 && !named.contains(r.nCopy); });
    for (qsizetype n = 0; n < copies.size(); ++n)
        copies[n].bCopy = copies.at(n).bCopy && named.contains(n);
}

QStringList FindTooLong(const QString& strHtml, const References& references) {
    QStringList paths;
    QList<Replacement> changes;
    for (const QString& strSource : references.Images + references.Embeds) {
        const QString strPath = TooLongPath(strSource);
        if (strPath.isEmpty())
            continue;
        AppendChanges(strSource, strPath, paths.size(), changes);
        paths.append(strPath);
    }
    const QList<bool> occurring = FindOccurring(strHtml, changes);
    QStringList named;
    for (qsizetype n = 0; n < changes.size(); ++n) {
        if (occurring.at(n))
            named.append(changes.at(n).strTo);
    }
    named.removeDuplicates();
    return named;
}

QString ProcessResources(const QString& strHtml, const References& references, const PageFolders& folders,
                         QList<ResourceCopy>& copies) {
    return ApplyReplacements(strHtml, PlanReplacements(references, folders, copies));
}

QStringList FindGarbage(const QString& strHtml, const QString& strResFolder) {
    const QStringList names = FilesIn(strResFolder);
    // A link is lower-cased by rule and a surface may write escapes: the file behind such a reference is no
    // garbage, and what is deleted here is gone for good.
    QString strPlain = strHtml;
    strPlain.replace(QLatin1StringView("&amp;"), QLatin1StringView("&"));
    QStringList lower;
    for (const QString& strName : names)
        lower.append(LowerAscii(strName));
    const QSet<QString> found = NamesIn(strHtml, names);
    const QSet<QString> foundLower = NamesIn(FileUrlToPath(c_fileUrl + strPlain), lower) +
                                     NamesIn(LowerAscii(QUrl::fromPercentEncoding(strPlain.toUtf8())), lower);
    QStringList garbage;
    for (const QString& strName : names) {
        if (!found.contains(strName) && !foundLower.contains(LowerAscii(strName)))
            garbage.append(strName);
    }
    return garbage;
}

} // namespace ResourceText
