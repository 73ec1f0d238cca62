#include "app/CommandTable.h"

#include "app/Texts.h"
#include "content/TreeCommands.h"
#include "editor/EditorCommands.h"

#include <algorithm>
#include <array>
#include <vector>

namespace Commands {

namespace {

using enum ECommandRule;

constexpr std::array c_own{
    CommandRow{c_nNewCourse, u"新建课程(&N)...", u"新建课程", Always},
    CommandRow{c_nOpenCourse, u"打开课程(&O)...", u"打开课程", Always},
    CommandRow{c_nSetTemplate, u"设置模板(&T)", u"设置模板", CourseOpen},
    CommandRow{c_nDownloadTemplate, u"下载模板(&D)...", u"下载模板", Always},
    CommandRow{c_nCompile, u"合成(&C)", u"合成课程网站", CourseOpen},
    CommandRow{c_nCompileHtml, u"合成HTML格式(&H)", u"合成HTML格式", CourseOpen},
    CommandRow{c_nCompileClassroom, u"合成Ondrel格式(&S)", u"合成Ondrel格式", CourseOpen},
    CommandRow{c_nExportWord, u"导出Word文件(&E)...", u"导出Word文件", CourseOpen},
    CommandRow{c_nFirstRecent, u"", u"打开最近的课程", Always},
    CommandRow{c_nFirstRecent + 1, u"", u"打开最近的课程", Always},
    CommandRow{c_nFirstRecent + 2, u"", u"打开最近的课程", Always},
    CommandRow{c_nLastRecent, u"", u"打开最近的课程", Always},
    CommandRow{c_nExit, u"退出(&X)", u"退出", Always},
    CommandRow{c_nToolBar, u"工具栏(&T)", u"显示或隐藏工具栏", Always},
    CommandRow{c_nStatusBar, u"状态栏(&S)", u"显示或隐藏状态栏", Always},
    CommandRow{c_nOverallPreview, u"预览(&P)", u"总体效果预览", CourseOpen},
    CommandRow{c_nChangePassword, u"修改密码(&P)...", u"修改密码", CourseOpen},
    CommandRow{c_nServerAddress, u"服务器设置(&S)...", u"服务器设置", Always},
    CommandRow{c_nOptions, u"选项(&O)...", u"选项", Always},
    CommandRow{c_nAbout, u"关于Vorel(&A)...", u"关于Vorel", Always},
    CommandRow{c_nNextPane, u"下一窗格", u"转到下一窗格", Always},
    CommandRow{c_nPreviousPane, u"上一窗格", u"转到上一窗格", Always},
};

constexpr Accelerator c_accelerators[] = {
    {u"Ctrl+N", c_nNewCourse},       {u"Ctrl+O", c_nOpenCourse}, {u"Ctrl+S", EditorCommands::Id::c_nSave},
    {u"F2", TreeCommand::c_nRename}, {u"F6", c_nNextPane},       {u"Shift+F6", c_nPreviousPane},
};

struct Button {
    int nId;
    QStringView strText;
};
constexpr Button c_buttons[] = {
    {c_nNewCourse, u"新建课程"},
    {c_nOpenCourse, u"打开课程"},
    {c_nCompile, u"合成"},
    {TreeCommand::c_nEditContent, u"编辑内容"},
    {TreeCommand::c_nCustomTitles, u"自定义名称"},
};
constexpr std::array c_toolBar{
    c_nNewCourse, c_nOpenCourse, c_nCompile, 0, TreeCommand::c_nEditContent, TreeCommand::c_nCustomTitles,
};

Command Join(const CommandRow& row, EOwner owner) {
    const auto* pKeys = std::ranges::find(c_accelerators, row.nId, &Accelerator::nId);
    const auto* pButton = std::ranges::find(c_buttons, row.nId, &Button::nId);
    return {row, owner, pButton == std::end(c_buttons) ? QStringView() : pButton->strText,
            pKeys == std::end(c_accelerators) ? QStringView() : pKeys->strKeys};
}

Command OfEditor(const EditorCommands::Command& row) {
    const bool bPage = row.Family == EditorCommands::EFamily::Page;
    Command command = Join({row.nId, row.strTooltip, row.strHint.isEmpty() ? row.strTooltip : row.strHint,
                            bPage ? DesignOrSource : Design},
                           EOwner::Editor);
    command.strButton = row.strLabel;
    return command;
}

std::vector<Command> JoinAll() {
    std::vector<Command> all;
    for (const CommandRow& row : c_own)
        all.push_back(Join(row, EOwner::Application));
    for (const TreeCommand::Row& row : TreeCommand::All())
        all.push_back(Join(row, EOwner::Tree));
    for (const EditorCommands::Command& row : EditorCommands::All())
        all.push_back(OfEditor(row));
    return all;
}

QList<int> ListOf(std::span<const int> ids) {
    return {ids.begin(), ids.end()};
}

} // namespace

std::span<const Command> All() {
    static const std::vector<Command> all = JoinAll();
    return all;
}

const Command* Find(int nId) {
    const auto found = std::ranges::find(All(), nId, &Command::nId);
    return found == All().end() ? nullptr : &*found;
}

const QList<Menu>& MainMenu() {
    using namespace TreeCommand;
    static const QList<Menu> menus{
        {u"文件(&F)",
         {c_nNewCourse, c_nOpenCourse, 0, c_nSetTemplate, c_nDownloadTemplate, 0, c_nCompile, c_nExportWord,
          0, c_nRecentPlaceholder, 0, c_nExit}},
        // Behind the fixed entries: what shapes the tree, for whoever works without the context menu.
        {u"编辑(&E)",
         {c_nEditContent, 0, c_nCustomTitles, 0, c_nAddMany, c_nAddManyChildren, c_nRename, c_nMoveUp,
          c_nMoveDown, 0, c_nCreateContent, c_nClearContent, 0, c_nDelete}},
        {u"查看(&V)", {c_nToolBar, c_nStatusBar, 0, c_nOverallPreview}},
        {u"工具(&T)", {c_nChangePassword, c_nServerAddress, 0, c_nOptions}},
        {u"帮助(&H)", {c_nAbout}},
    };
    return menus;
}

std::span<const int> ToolBar() {
    return c_toolBar;
}

const QList<DropDown>& DropDowns() {
    // The button of the compiler runs its command and shows no arrow.
    static const QList<DropDown> dropDowns{
        {c_nCompile, 352, false, {c_nCompileHtml, c_nCompileClassroom}},
        {TreeCommand::c_nCreateContent, 301, true, ListOf(TreeCommand::KindMenu())},
    };
    return dropDowns;
}

const DropDown* DropDownOf(int nButton) {
    const auto found = std::ranges::find(DropDowns(), nButton, &DropDown::nButton);
    return found == DropDowns().end() ? nullptr : &*found;
}

QList<int> ItemsOf(const DropDown& dropDown, bool bVideo) {
    QList<int> items = dropDown.Items;
    if (!bVideo)
        items.removeAll(TreeCommand::c_nCreateVideo);
    return items;
}

std::span<const Accelerator> Accelerators() {
    return c_accelerators;
}

QList<Place> Places() {
    QList<Place> places;
    for (const Menu& menu : MainMenu())
        places.append({QStringLiteral("menu ") + menu.strTitle.toString(), menu.Items});
    places.append({QStringLiteral("toolbar"), ListOf(ToolBar())});
    for (const DropDown& dropDown : DropDowns())
        places.append({QStringLiteral("menu %1").arg(dropDown.nMenu), dropDown.Items});
    const QString strTree = QStringLiteral("tree ");
    places.append({strTree + TreeCommand::c_strRootMenu, ListOf(TreeCommand::RootMenu())});
    places.append({strTree + TreeCommand::c_strNodeMenu, ListOf(TreeCommand::NodeMenu())});
    places.append({QStringLiteral("editor bar 1"), ListOf(EditorCommands::FormatBar())});
    places.append({QStringLiteral("editor bar 2"), ListOf(EditorCommands::InsertBar())});
    places.append({QStringLiteral("editor bar 3"), ListOf(EditorCommands::EditBar())});
    return places;
}

bool IsEnabled(const Command& command, const State& state) {
    switch (command.Owner) {
    case EOwner::Tree:
        return state.bTreeSaysYes;
    case EOwner::Editor:
        return state.bViewSaysYes;
    case EOwner::Application:
        break;
    }
    return command.Rule == Always || state.bCourseOpen;
}

} // namespace Commands
