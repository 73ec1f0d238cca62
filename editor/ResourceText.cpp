#include "editor/ResourceText.h"

#include "foundation/CodePage.h"
#include "foundation/FolderWalk.h"
#include "foundation/Paths.h"
#include "foundation/Random.h"
#include "foundation/Text.h"
#include "foundation/Urls.h"

namespace ResourceText {

using namespace Torvane::File;

namespace {

constexpr QChar c_backslash = u'\\';
constexpr QLatin1StringView c_resUrl("res/");
/// Where letters wait while a text passes through the lower-casing conversion.
constexpr char16_t c_nPrivateBase = 0xE000;

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

bool HasName(const QStringList& names, const QString& strName) {
    for (const QString& strOther : names) {
        if (EqualsIgnoringCase(strOther, strName))
            return true;
    }
    return false;
}

QString WithSlashes(QString strPath) {
    return strPath.replace(c_backslash, u'/');
}

/// "…\N13" of "…\N13\res\".
QString PageFolder(const PageFolders& folders) {
    return ParentFolder(WithoutBackslash(folders.strResFolder));
}

/// A resource that is to be copied or fetched into the page's folder.
void PlanCopy(const PageFolders& folders, const QStringList* pNames, ResourceCopy& out) {
    out.bCopy = true;
    out.strName = MakeResourceName(BareName(out.strSource), folders.strResFolder, pNames);
    // The folder ends with a backslash already; the doubled one is read as one.
    out.strDest = folders.strResFolder + c_backslash + out.strName;
    out.strUrl = c_resUrl + out.strName;
}

void PlanResources(const QStringList& sources, const PageFolders& folders, QStringList& names,
                   QList<ResourceCopy>& copies, QList<Replacement>& replacements) {
    for (const QString& strSource : sources) {
        ResourceCopy copy;
        if (strSource.isEmpty() || !PlanResource(strSource, folders, &names, copy) || copy.strUrl.isEmpty())
            continue;
        replacements.append({strSource, copy.strUrl, copies.size()});
        names.append(copy.strName);
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

QString MakeResourceName(const QString& strSource, const QString& strFolder, const QStringList* pNames) {
    const QString strExtension = CodePage::Cut(Extension(strSource), c_nMaxPathBytes);
    QString strName = MakeUniqueName(strExtension, strFolder);
    if (pNames == nullptr)
        return strName;
    const QString strBase = AddBackslash(strFolder);
    bool bTaken = true;
    while (bTaken) {
        // Looked at anew on every pass, so that the loop ends. The name that comes out is looked at as well:
        // two resources under one name would be one picture shown in place of the other.
        bTaken = HasName(*pNames, strName);
        const qsizetype nDot = strName.lastIndexOf(u'.');
        strName = (nDot < 0 ? strName : strName.left(nDot)) + u'[' + QString::number(NextRandom()) + u']' +
                  strExtension;
        bTaken = bTaken || HasName(*pNames, strName) || GetPathKind(strBase + strName) != EPathKind::Nothing;
    }
    return strName;
}

bool PlanResource(const QString& strSource, const PageFolders& folders, const QStringList* pNames,
                  ResourceCopy& out) {
    out = ResourceCopy();
    if (LowerAscii(strSource.left(7)) == QLatin1StringView("http://")) {
        out.bRemote = true;
        out.strSource = strSource;
        PlanCopy(folders, pNames, out);
        return true;
    }
    out.strSource = FileUrlToPath(strSource);
    out.strOpenPath = PathAsSpelled(strSource);
    if (!IsFile(out.strOpenPath))
        out.strOpenPath = out.strSource;
    if (!IsFile(out.strOpenPath))
        return false;
    if (IsPathUnder(folders.strResFolder, out.strSource, c_backslash)) {
        out.strName = BareName(out.strSource);
        out.strDest = out.strSource;
        out.strUrl = WithSlashes(RelativeTail(PageFolder(folders), out.strSource, c_backslash));
        return true;
    }
    PlanCopy(folders, pNames, out);
    return true;
}

QList<Replacement> PlanReplacements(const References& references, const PageFolders& folders,
                                    QList<ResourceCopy>& copies) {
    QList<Replacement> replacements;
    QStringList names;
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

QString ApplyReplacements(QString strHtml, const QList<Replacement>& replacements) {
    for (const Replacement& replacement : replacements)
        strHtml.replace(replacement.strFrom, replacement.strTo);
    return strHtml;
}

QString ProcessResources(const QString& strHtml, const References& references, const PageFolders& folders,
                         QList<ResourceCopy>& copies) {
    return ApplyReplacements(strHtml, PlanReplacements(references, folders, copies));
}

QStringList FindGarbage(const QString& strHtml, const QString& strResFolder) {
    struct CNames : IFileVisitor {
        QStringList List;
        void Visit(const QString&, const FindRecord& record) override {
            if (!record.bFolder)
                List.append(record.strName);
        }
    } names;
    WalkFolder(strResFolder, &names, nullptr, nullptr, false, nullptr, false);
    // A link is lower-cased by rule and a surface may write escapes: the file behind such a reference is no
    // garbage, and what is deleted here is gone for good.
    const QString strDecoded = FileUrlToPath(QStringLiteral("file:///") + strHtml);
    QStringList garbage;
    for (const QString& strName : std::as_const(names.List)) {
        if (!strHtml.contains(strName) && !strDecoded.contains(LowerAscii(strName)))
            garbage.append(strName);
    }
    return garbage;
}

} // namespace ResourceText
