#include "content/ViewKind.h"

#include "foundation/Paths.h"
#include "foundation/Text.h"

namespace {

const QString c_strBrowserExtensions =
    QStringLiteral(".gif.jpg.jpeg.png.swf.html.htm.txt.mht.asf.asx.wmv.avi.mpg.mpeg.rm.ra.ram.rmvb");

} // namespace

bool IsBrowserFile(const QString& strExtension) {
    return c_strBrowserExtensions.contains(LowerAscii(strExtension));
}

EViewKind KindView(qint32 nType, const QString& strExtension) {
    switch (nType) {
    case NodeType::c_nEditorPage:
    case NodeType::c_nSite:
    case NodeType::c_nExternalLink:
    case NodeType::c_nCourseware:
    case NodeType::c_nInSiteLink:
        return EViewKind::ShowContent;
    case NodeType::c_nExternalFile:
        return IsBrowserFile(strExtension) ? EViewKind::ShowContent : EViewKind::ToolButtons;
    case NodeType::c_nVideo:
        return EViewKind::ToolButtons;
    default:
        return EViewKind::Nothing;
    }
}

EViewKind KindView(const CBookNode& node) {
    // Only an external file's view hangs on its path, so only there the store is asked.
    const bool bByExtension = node.GetType() == NodeType::c_nExternalFile;
    return KindView(node.GetType(),
                    bByExtension ? Torvane::File::Extension(node.GetContentPath()) : QString());
}

EViewKind KindOfSelection(const CBookNode& node, bool bHasChildren) {
    const bool bListed = bHasChildren ? !node.HasContent() : node.GetId() == c_nRootNodeId;
    return bListed ? EViewKind::ChildrenList : KindView(node);
}
