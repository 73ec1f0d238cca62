#pragma once

#include "content/Command.h"
#include "content/NodeFileParams.h"
#include "content/TreeRules.h"

#include <span>

/// The commands of the book tree in one table: ids, what a person reads, when each is offered, and what it
/// does. They arrive from the tree's own context menu, and from the main frame's menus and toolbar.
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
inline constexpr int c_nCustomTitles = 32939;
/// Creating content of a kind that is known beforehand.
inline constexpr int c_nCreateEditorPage = 32874;
inline constexpr int c_nCreateExternalEditor = 32875;
inline constexpr int c_nCreateExternalFile = 32876;
inline constexpr int c_nCreateExternalLink = 32877;
inline constexpr int c_nCreateVideo = 32878;
inline constexpr int c_nCreateCourseware = 32879;
inline constexpr int c_nCreateSite = 32880;
inline constexpr int c_nCreateFolder = 32881;
inline constexpr int c_nCreateInSiteLink = 32917;

/// What a command id does.
enum class EAction {
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
    CustomTitles,
};

struct Row : CommandRow {
    EAction Action = EAction::None;
    /// What a command that creates content presets.
    EContentKind Kind = EContentKind::None;
};

std::span<const Row> All();
/// Null for an id that is none of the tree's.
const Row* Find(int nCommand);
/// None for such an id.
EAction ActionOf(int nCommand);

/// Whether the rule of a command holds. A disabled id that arrives all the same meets
/// IsActionAllowed alone.
bool IsEnabled(int nCommand, const TreeSelection& selection, bool bEditorShowing);

/// Whether the action does anything for this line; where not, it ends in silence.
bool IsActionAllowed(EAction action, ETreeLine line);

/// The two context menus (130): of the root, and of every other node.
inline constexpr QStringView c_strRootMenu = u"教师名栏目";
inline constexpr QStringView c_strNodeMenu = u"普通栏目";
/// Their entries, 0 for a separator.
std::span<const int> RootMenu();
std::span<const int> NodeMenu();

/// The menu of content kinds (301).
std::span<const int> KindMenu();

} // namespace TreeCommand
