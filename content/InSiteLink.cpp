#include "content/InSiteLink.h"

#include "content/BookNode.h"
#include "content/Texts.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "foundation/Urls.h"
#include "office/OfficeFiles.h"
#include "platform/base/NativePath.h"

namespace InSiteLink {

using namespace Torvane::File;

namespace {

constexpr QLatin1StringView c_strBlank("about:blank");
constexpr QLatin1StringView c_strFile("file://");
constexpr QLatin1StringView c_strFramePage("frame.htm");
constexpr QLatin1StringView c_strWrapperPage("torvaneframe.htm");

FileAndFragment ContentOf(const CBookNode& node, const QString& strPath) {
    return node.GetType() == NodeType::c_nInSiteLink ? SplitLink(strPath, IsFile)
                                                     : FileAndFragment{strPath, {}};
}

bool IsUrl(const QString& strText) {
    return strText.contains(QLatin1StringView("://"));
}

/// An address of the web may well name a file in its query.
bool IsLocal(const QString& strLink) {
    return IsUrl(strLink) ? LowerAscii(strLink).startsWith(c_strFile)
                          : IsAbsolute(strLink) && IsLocalRef(strLink);
}

/// Of what a course holds only a link leads to the web, and only one that names no file.
bool LeadsToWeb(const CBookNode& node, const QString& strUrl) {
    const bool bLink =
        node.GetType() == NodeType::c_nExternalLink || node.GetType() == NodeType::c_nInSiteLink;
    return bLink && !LowerAscii(strUrl).startsWith(c_strFile);
}

/// The presentation's own frame page behind the page that the program made for it.
QString FramePageBehind(const QString& strPath) {
    const QString strFolder = ParentFolder(strPath);
    const QString strFrame = strFolder + u'\\' + c_strFramePage;
    const bool bWrapper = IsHtmlFile(strPath) && LowerAscii(BareName(strPath)) == c_strWrapperPage;
    return bWrapper && Torvane::Office::IsPptFrameFolder(strFolder) && IsFile(strFrame) ? strFrame : strPath;
}

/// What the surface shows besides pages. Of any other file it would make a download.
bool IsShownAsItIs(const QString& strPath) {
    static const QStringList s_extensions{QStringLiteral(".gif"), QStringLiteral(".jpg"),
                                          QStringLiteral(".jpeg"), QStringLiteral(".png"),
                                          QStringLiteral(".txt")};
    return s_extensions.contains(LowerAscii(Extension(strPath)));
}

/// Splits a place before its first "#".
qsizetype EndOfFile(const QString& strPlace) {
    const qsizetype nHash = strPlace.indexOf(u'#');
    return nHash > 0 ? nHash : strPlace.size();
}

} // namespace

Preview PreviewOf(const CBookNode& node) {
    const QString strContent = node.GetContentPath();
    if (!node.HasContent() || strContent.isEmpty())
        return {{}, ContentText::c_strNoPageInside, c_strBlank, false};
    if (IsUrl(strContent))
        return {strContent, {}, strContent, LeadsToWeb(node, strContent)};
    auto [strFile, strFragment] = ContentOf(node, strContent);
    if (node.GetType() == NodeType::c_nExternalFile)
        strFile = FramePageBehind(strFile);
    const QString strTarget = PathToFileUrl(strFile) + strFragment;
    if (IsHtmlFile(strFile))
        return {strTarget, {}, PathToDocumentUrl(strFile) + strFragment, false};
    if (IsShownAsItIs(strFile))
        return {strTarget, {}, strFile, false};
    return {{}, ContentText::c_strFileNotPreviewed, strFile, false};
}

qint32 NodeOf(const QString& strLink, const QString& strNodeResourceFolder) {
    const QString strBelow = StoredPath(strLink, strNodeResourceFolder);
    const qsizetype nFolder = strBelow.indexOf(u'\\');
    bool bNumber = false;
    const qint32 nId = strBelow.left(qMax(nFolder, qsizetype{0})).mid(1).toInt(&bNumber);
    return bNumber && strBelow.startsWith(u'n') ? nId : -1;
}

Preview PreviewAt(const CBookNode& node, const QString& strLink) {
    const qsizetype nEnd = EndOfFile(strLink);
    const QString strPath = FramePageBehind(FileUrlToPath(strLink.left(nEnd)));
    if (!strLink.startsWith(c_strFile) || !IsHtmlFile(strPath) || !IsFile(strPath))
        return PreviewOf(node);
    const QString strFragment = strLink.mid(nEnd);
    return {PathToFileUrl(strPath) + strFragment, {}, PathToDocumentUrl(strPath) + strFragment, false};
}

Address AddressOf(const CBookNode& node) {
    const QString strContent = node.GetContentPath();
    if (IsUrl(strContent))
        return {strContent, LeadsToWeb(node, strContent)};
    // Of mail and news, and as people write them: without the mark by which addresses are known.
    if (node.GetType() == NodeType::c_nExternalLink && !IsFile(strContent))
        return {node.GetStoredPath(), false};
    const auto [strFile, strFragment] = ContentOf(node, strContent);
    return {strFragment.isEmpty() ? strContent : PathToFileUrl(strFile) + strFragment, false};
}

QString PlaceOf(const QString& strUrl, const QString& strSlideUrl) {
    // A frame that has not loaded yet stands nowhere.
    if (!strSlideUrl.startsWith(c_strFile))
        return strUrl;
    const qsizetype nHash = strUrl.lastIndexOf(u'#');
    return (nHash < 0 ? strUrl : strUrl.left(nHash)) + u'#' + BareName(strSlideUrl);
}

QString PathOf(const QString& strPlace) {
    if (!strPlace.startsWith(c_strFile))
        return {};
    QString strPath = strPlace.left(EndOfFile(strPlace)).mid(c_strFile.size());
    return strPath.replace(QLatin1StringView("%23"), QLatin1StringView("#"))
        .replace(QLatin1StringView("%25"), QLatin1StringView("%"));
}

QString ShownPlace(const QString& strPlace) {
    if (!strPlace.startsWith(c_strFile))
        return IsUrl(strPlace) || strPlace == c_strBlank ? strPlace : Platform::ToNativeExact(strPlace);
    return c_strFile + Platform::ToNativeExact(PathOf(strPlace)) + strPlace.mid(EndOfFile(strPlace));
}

QString TypedPlace(const QString& strShown) {
    if (strShown.startsWith(u'/'))
        return Platform::FromNative(strShown);
    const QString strPath = strShown.mid(c_strFile.size());
    // "file:///Z:/…" is an address already.
    if (!strShown.startsWith(c_strFile) || !strPath.startsWith(u'/') || strPath.indexOf(u':') == 2)
        return strShown;
    const qsizetype nEnd = EndOfFile(strPath);
    return PathToDocumentUrl(Platform::FromNative(strPath.left(nEnd))) + strPath.mid(nEnd);
}

std::optional<QString> LinkTo(const QString& strPlace, const QString& strNodeResourceFolder) {
    if (strPlace.isEmpty() || strPlace == c_strBlank)
        return std::nullopt;
    QString strLink = strPlace;
    if (strLink.startsWith(c_strFile)) {
        const QString strPath = FileUrlToPath(strLink.left(EndOfFile(strLink)));
        const QString strFolder = ParentFolder(strPath);
        // A page beside the nodes has no place in them: the link would lead nowhere.
        if (!IsPathUnder(strNodeResourceFolder, strPath, u'\\'))
            return std::nullopt;
        if (BareName(strPath) == c_strFramePage && Torvane::Office::IsPptFrameFolder(strFolder) &&
            IsFile(strFolder + u'\\' + c_strWrapperPage))
            strLink.replace(c_strFramePage, c_strWrapperPage);
    } else if (IsLocal(strLink) && !IsPathUnder(strNodeResourceFolder, strLink, u'\\')) {
        return std::nullopt;
    }
    return strLink;
}

QString StoredPath(const QString& strLink, const QString& strNodeResourceFolder) {
    if (!IsLocal(strLink))
        return strLink;
    return MakeRelativeUrl(strLink, strNodeResourceFolder).replace(u'/', u'\\');
}

QString PageReference(const QString& strLink, const QString& strNodeResourceFolder) {
    if (!IsLocal(strLink))
        return strLink;
    return QStringLiteral("../") + MakeRelativeUrl(strLink, strNodeResourceFolder);
}

} // namespace InSiteLink
