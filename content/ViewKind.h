#pragma once

#include "content/BookNode.h"

/// The right-hand views, by the number that ShowNodeView takes.
enum class EViewKind {
    ShowContent = 0,
    Editor = 1,
    ChildrenList = 2,
    ToolButtons = 3,
    VideoPreview = 4,
    Nothing = 5,
    Prompt = 6,
    Empty = 7,
};

/// Codes of the prompt view.
namespace PromptCode {
inline constexpr int c_nNewWindow = 1;
inline constexpr int c_nExternalEditor = 2;
inline constexpr int c_nRecorder = 3;
} // namespace PromptCode

/// Codes of the content view.
namespace ContentCode {
/// A file that the browser doesn't show is asked for: it is saved where the person says, as browsers do.
inline constexpr int c_nDownload = 1;
} // namespace ContentCode

/// True when the extension, dot included, occurs anywhere in the list of extensions that the browser shows: a
/// substring test, which the empty extension passes.
bool IsBrowserFile(const QString& strExtension);

/// The view for a node of this type whose content path has this extension.
EViewKind KindView(qint32 nType, const QString& strExtension);

/// The view that shows a node when it is not being edited. Throws Torvane::CRunException when the store can't
/// be read.
EViewKind KindView(const CBookNode& node);

/// The view for a selected node, by whether its item has children.
EViewKind KindOfSelection(const CBookNode& node, bool bHasChildren);

/// Switches the right-hand pane. The main frame implements it; tree and views ask it.
class INodeViewHost {
public:
    virtual ~INodeViewHost() = default;
    /// Asks the present view for leave first; false, with nothing changed, when it refuses.
    virtual bool ShowNodeView(EViewKind kind, CBookNode* pNode, int nParam = 0) = 0;
    /// False when the present view refuses to be left.
    virtual bool LeaveCurrentView(bool bCanCancel) = 0;
    virtual bool IsEditorShowing() const = 0;
    /// Whether the present view shows the node; then it is still there, whatever its pointer.
    virtual bool IsShowing(const CBookNode* pNode) const = 0;
    /// Selects the node in the tree, opening the tree down to it.
    virtual void SelectNode(qint32 nId) = 0;
    /// Runs a command by its id, as a menu would.
    virtual void RunCommand(int nId) = 0;
};
