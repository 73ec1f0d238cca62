#pragma once

#include "course/BookDatabase.h"

#include <QString>
#include <QStringList>

#include <functional>

/// The rules of the book tree's commands, apart from its window.

/// What a line of the tree stands for. School and course are headings above the root, and no nodes.
enum class ETreeLine { None, School, Course, Root, Node };

/// No line, or a heading.
bool IsHeadItem(ETreeLine line);
/// A line that no command moves, renames or deletes: a heading or the root.
bool IsFixedItem(ETreeLine line);

/// The ids under which the tree's commands arrive: from the tree's own context menu, and from the main
/// frame's menus and toolbar.
namespace TreeCommand {
inline constexpr int c_nAddNode = 32772;
inline constexpr int c_nAddNodeInTree = 32910;
inline constexpr int c_nAddChild = 32773;
inline constexpr int c_nAddChildInTree = 32909;
inline constexpr int c_nAddMany = 32869;
inline constexpr int c_nAddManyChildren = 32870;
inline constexpr int c_nDelete = 32774;
inline constexpr int c_nDeleteInTree = 32911;
inline constexpr int c_nRename = 32775;
inline constexpr int c_nRenameInTree = 32912;
inline constexpr int c_nCreateContent = 32814;
inline constexpr int c_nCreateContentInTree = 32913;
inline constexpr int c_nEditContent = 32815;
inline constexpr int c_nEditContentInTree = 32914;
inline constexpr int c_nMoveUp = 32816;
inline constexpr int c_nMoveUpInTree = 32915;
inline constexpr int c_nMoveDown = 32817;
inline constexpr int c_nMoveDownInTree = 32916;
inline constexpr int c_nClearContent = 32919;
inline constexpr int c_nClearContentInTree = 32918;
inline constexpr int c_nExport = 32932;
inline constexpr int c_nImport = 32933;
inline constexpr int c_nSetOpenType = 32934;
/// Creating content of a kind that is known beforehand.
inline constexpr int c_nCreateEditorPage = 32874;
inline constexpr int c_nCreateFirstKind = 32874;
inline constexpr int c_nCreateLastKind = 32881;
inline constexpr int c_nCreateInSiteLink = 32917;
} // namespace TreeCommand

/// What a command id does.
enum class ETreeAction {
    None,
    AddNode,
    AddChild,
    AddMany,
    AddManyChildren,
    Delete,
    Rename,
    CreateContent,
    EditContent,
    MoveUp,
    MoveDown,
    ClearContent,
    Export,
    Import,
    SetOpenType,
};

/// None for an id that is none of the tree's.
ETreeAction TreeActionOf(int nCommand);

/// What the rules look at: the selected line, and its node's type where it is a node.
struct TreeSelection {
    ETreeLine Line = ETreeLine::None;
    qint32 Type = NodeType::c_nEmpty;
};

/// Whether a command is offered. The frame's commands that change the node being edited are off while the
/// editor shows. A disabled id that arrives all the same is refused by its action.
bool IsTreeCommandEnabled(int nCommand, const TreeSelection& selection, bool bEditorShowing);

/// Whether the action does anything for this line; where not, it ends in silence.
bool IsActionAllowed(ETreeAction action, ETreeLine line);

/// Answers whether a title is taken among the siblings in question.
using TitleTaken = std::function<bool(const QString&)>;

/// "新建栏目", or with the first number from 2 on that is free.
QString NewTitle(const TitleTaken& taken);

/// The titles of an input for several nodes: split at commas of either width, trimmed, empty ones left out.
QStringList SplitTitles(const QString& strInput);

/// The warning that keeps a title of such an input from being made; empty when it may be. The length comes
/// first, the clash second.
QString CheckNewTitle(const QString& strTitle, const TitleTaken& taken);

struct RenameCheck {
    /// The title is to be stored.
    bool bStore = false;
    /// What to warn of; empty for nothing.
    QString strWarning;
};

/// The checks of a changed title against the siblings other than the node itself. The clash comes first, the
/// length second. A cancelled edit is an empty text.
RenameCheck CheckRename(const QString& strNew, const QString& strPresent, const TitleTaken& taken);

/// The list of titles in the confirmation of a deletion.
QString DeletionListText(const QList<NodeHeader>& descendants);
