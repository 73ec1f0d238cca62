#include "content/TreeCommands.h"

#include <algorithm>
#include <array>

namespace TreeCommand {

namespace {

using enum ECommandRule;

constexpr std::array c_rows{
    Row{{c_nAddNode, u"添加栏目", u"添加栏目", BelowRoot}, EAction::AddNode},
    Row{{c_nAddNodeInTree, u"添加栏目", u"添加栏目", BelowRoot}, EAction::AddNode},
    Row{{c_nAddChild, u"添加子栏目", u"添加子栏目", Node}, EAction::AddChild},
    Row{{c_nAddChildInTree, u"添加子栏目", u"添加子栏目", Node}, EAction::AddChild},
    Row{{c_nDeleteInTree, u"删除栏目", u"删除栏目", BelowRoot, true}, EAction::Delete},
    Row{{c_nRenameInTree, u"编辑栏目标题", u"编辑栏目标题", BelowRoot}, EAction::Rename},
    Row{{c_nCreateContentInTree, u"创建栏目文件", u"创建栏目文件", Node}, EAction::CreateContent},
    Row{{c_nEditContentInTree, u"编辑栏目文件", u"编辑栏目文件", ContentNoLink}, EAction::EditContent},
    Row{{c_nMoveUpInTree, u"栏目上移", u"栏目上移", BelowRoot}, EAction::MoveUp},
    Row{{c_nMoveDownInTree, u"栏目下移", u"栏目下移", BelowRoot}, EAction::MoveDown},
    Row{{c_nClearContentInTree, u"清空栏目内容", u"清空栏目内容", Content, true}, EAction::ClearContent},
    // People know the export by this hint, whatever it says.
    Row{{c_nExport, u"导出(&X)", u"导入该栏目及其所有子栏目", Node}, EAction::Export},
    Row{{c_nImport, u"导入(&I)", u"导入栏目内容", Node}, EAction::Import},
    Row{{c_nSetOpenType, u"设置打开类型...", u"设置打开类型", Content}, EAction::SetOpenType},
    Row{{c_nCustomTitles, u"设置自定义标题...", u"设置自定义标题", CourseOpen}, EAction::CustomTitles},

    Row{{c_nAddMany, u"添加单个（或多个）栏目", u"添加单个（或多个）栏目", BelowRoot, true},
        EAction::AddMany},
    Row{{c_nAddManyChildren, u"添加单个（或多个）子栏目", u"添加单个（或多个）子栏目", Node, true},
        EAction::AddManyChildren},
    Row{{c_nDelete, u"删除栏目", u"删除栏目", BelowRoot, true}, EAction::Delete},
    Row{{c_nRename, u"编辑栏目标题", u"编辑栏目标题", BelowRoot, true}, EAction::Rename},
    Row{{c_nCreateContent, u"创建栏目文件", u"创建栏目文件", BelowRoot, true}, EAction::CreateContent},
    Row{{c_nEditContent, u"编辑栏目文件(&E)", u"编辑栏目文件", PageOrFile, true}, EAction::EditContent},
    Row{{c_nMoveUp, u"栏目上移", u"栏目上移", BelowRoot, true}, EAction::MoveUp},
    Row{{c_nMoveDown, u"栏目下移", u"栏目下移", BelowRoot, true}, EAction::MoveDown},
    Row{{c_nClearContent, u"清空栏目内容", u"清空栏目内容", PageOrFile, true}, EAction::ClearContent},

    Row{{c_nCreateEditorPage, u"内部编辑器(&I)", u"使用内建的HTML编辑器编辑", Always},
        EAction::CreateContent,
        EContentKind::EditorPage},
    Row{{c_nCreateExternalEditor, u"外部编辑器(&N)", u"创建指定类型的空外部文件", Always},
        EAction::CreateContent,
        EContentKind::ExternalEditor},
    Row{{c_nCreateExternalFile, u"外部文件(&O)", u"插入您已编辑好的外部文件", Always},
        EAction::CreateContent,
        EContentKind::ExternalFile},
    Row{{c_nCreateExternalLink, u"外部链接(&L)", u"添加链接，指向外部网站", Always},
        EAction::CreateContent,
        EContentKind::ExternalLink},
    Row{{c_nCreateVideo, u"新建视频(&V)", u"录制PowerPoint授课实况", Always},
        EAction::CreateContent,
        EContentKind::Video},
    Row{{c_nCreateCourseware, u"导入奥思(&A)", u"导入由“方正奥思”导出的网页", Always},
        EAction::CreateContent,
        EContentKind::Courseware},
    Row{{c_nCreateSite, u"导入站点(&S)", u"导入一组网页，及其相关资源", Always},
        EAction::CreateContent,
        EContentKind::Site},
    Row{{c_nCreateFolder, u"导入目录(&D)", u"导入整个目录，按照目录结构创建栏目", Always},
        EAction::CreateContent,
        EContentKind::Folder},
    Row{{c_nCreateInSiteLink, u"站内链接(&R)", u"设置指向站内其他栏目内容的链接", Always},
        EAction::CreateContent,
        EContentKind::InSiteLink},
};

// Behind export and import: what shapes the tree, at the place where it is worked on.
constexpr std::array c_rootMenu{c_nExport, c_nImport, 0, c_nAddChildInTree};
constexpr std::array c_nodeMenu{
    c_nEditContentInTree, c_nExport,       c_nImport,         0, c_nAddNodeInTree,      c_nAddChildInTree,
    c_nRenameInTree,      c_nMoveUpInTree, c_nMoveDownInTree, 0, c_nClearContentInTree, c_nSetOpenType,
    c_nDeleteInTree};
constexpr std::array c_kindMenu{c_nCreateEditorPage,   c_nCreateExternalEditor, c_nCreateExternalFile,
                                c_nCreateExternalLink, c_nCreateVideo,          c_nCreateCourseware,
                                c_nCreateSite,         c_nCreateFolder,         c_nCreateInSiteLink};

bool Holds(ECommandRule rule, const TreeSelection& selection) {
    const bool bNode = !IsHeadItem(selection.Line);
    const bool bContent = bNode && selection.Type != NodeType::c_nEmpty;
    switch (rule) {
    case Always:
        return true;
    case Node:
        return bNode;
    case BelowRoot:
        return !IsFixedItem(selection.Line);
    case PageOrFile:
        return !IsFixedItem(selection.Line) &&
               (selection.Type == NodeType::c_nEditorPage || selection.Type == NodeType::c_nExternalFile);
    case Content:
        return bContent;
    case ContentNoLink:
        return bContent && selection.Type != NodeType::c_nExternalLink;
    case CourseOpen:
        return selection.bCourseOpen;
    case Design:
    case DesignOrSource:
        return false;
    }
    return false;
}

} // namespace

std::span<const Row> All() {
    return c_rows;
}

const Row* Find(int nCommand) {
    const auto* pFound = std::ranges::find(c_rows, nCommand, &Row::nId);
    return pFound == c_rows.end() ? nullptr : pFound;
}

EAction ActionOf(int nCommand) {
    const Row* pRow = Find(nCommand);
    return pRow == nullptr ? EAction::None : pRow->Action;
}

bool IsEnabled(int nCommand, const TreeSelection& selection, bool bEditorShowing) {
    const Row* pRow = Find(nCommand);
    return pRow != nullptr && !(bEditorShowing && pRow->bOffWhileEditing) && Holds(pRow->Rule, selection);
}

bool IsActionAllowed(EAction action, ETreeLine line) {
    switch (action) {
    case EAction::None:
        return false;
    case EAction::CustomTitles:
        return true;
    case EAction::AddChild:
    case EAction::AddManyChildren:
    case EAction::CreateContent:
    case EAction::EditContent:
    case EAction::ClearContent:
    case EAction::Export:
    case EAction::Import:
        return !IsHeadItem(line);
    case EAction::AddNode:
    case EAction::AddMany:
    case EAction::Delete:
    case EAction::Rename:
    case EAction::MoveUp:
    case EAction::MoveDown:
    case EAction::SetOpenType:
        return !IsFixedItem(line);
    }
    return false;
}

std::span<const int> RootMenu() {
    return c_rootMenu;
}

std::span<const int> NodeMenu() {
    return c_nodeMenu;
}

std::span<const int> KindMenu() {
    return c_kindMenu;
}

} // namespace TreeCommand
