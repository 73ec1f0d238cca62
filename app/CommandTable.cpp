#include "app/CommandTable.h"

#include <algorithm>
#include <array>

namespace Commands {

namespace {

constexpr std::array c_commands{
    Command{c_nNewCourse, u"新建课程(&N)...", u"新建课程", u"新建课程", u"Ctrl+N", EEnabled::Always},
    Command{c_nOpenCourse, u"打开课程(&O)...", u"打开课程", u"打开课程", u"Ctrl+O", EEnabled::Always},
    Command{c_nSetTemplate, u"设置模板(&T)", u"", u"设置模板", u"", EEnabled::CourseOpen},
    Command{32935, u"下载模板(&D)...", u"", u"下载模板", u"", EEnabled::NotYet},
    Command{c_nCompile, u"合成(&C)", u"合成", u"合成课程网站", u"", EEnabled::CourseOpen},
    Command{32941, u"导出Word文件(&E)...", u"", u"导出Word文件", u"", EEnabled::NotYet},
    Command{c_nExit, u"退出(&X)", u"", u"退出", u"", EEnabled::Always},
    Command{c_nEditContent, u"编辑栏目文件(&E)", u"编辑内容", u"编辑栏目文件", u"", EEnabled::Tree},
    Command{32939, u"设置自定义标题...", u"自定义名称", u"设置自定义标题", u"", EEnabled::NotYet},
    Command{c_nToolBar, u"工具栏(&T)", u"", u"显示或隐藏工具栏", u"", EEnabled::Always},
    Command{c_nStatusBar, u"状态栏(&S)", u"", u"显示或隐藏状态栏", u"", EEnabled::Always},
    Command{c_nOverallPreview, u"预览(&P)", u"", u"总体效果预览", u"", EEnabled::CourseOpen},
    Command{c_nChangePassword, u"修改密码(&P)...", u"", u"修改密码", u"", EEnabled::CourseOpen},
    Command{c_nServerAddress, u"服务器设置(&S)...", u"", u"服务器设置", u"", EEnabled::Always},
    Command{c_nOptions, u"选项(&O)...", u"", u"选项", u"", EEnabled::Always},
    Command{c_nAbout, u"关于Vorel(&A)...", u"", u"关于Vorel", u"", EEnabled::Always},
    Command{c_nSave, u"保存", u"", u"保存(Ctrl + S))", u"Ctrl+S", EEnabled::View},
    Command{c_nRename, u"编辑栏目标题", u"", u"编辑栏目标题", u"F2", EEnabled::Tree},
    Command{32869, u"添加单个（或多个）栏目", u"", u"添加单个（或多个）栏目", u"", EEnabled::Tree},
    Command{32870, u"添加单个（或多个）子栏目", u"", u"添加单个（或多个）子栏目", u"", EEnabled::Tree},
    Command{32816, u"栏目上移", u"", u"栏目上移", u"", EEnabled::Tree},
    Command{32817, u"栏目下移", u"", u"栏目下移", u"", EEnabled::Tree},
    Command{32814, u"创建栏目文件", u"", u"创建栏目文件", u"", EEnabled::Tree},
    Command{32919, u"清空栏目内容", u"", u"清空栏目内容", u"", EEnabled::Tree},
    Command{32774, u"删除栏目", u"", u"删除栏目", u"", EEnabled::Tree},
};

constexpr std::array c_toolBar{c_nNewCourse, c_nOpenCourse, c_nCompile, 0, c_nEditContent, 32939};

} // namespace

const Command* Find(int nId) {
    const auto found = std::ranges::find(c_commands, nId, &Command::nId);
    return found == c_commands.end() ? nullptr : &*found;
}

const QList<Menu>& MainMenu() {
    static const QList<Menu> menus{
        {u"文件(&F)",
         {c_nNewCourse, c_nOpenCourse, 0, c_nSetTemplate, 32935, 0, c_nCompile, 32941, 0,
          c_nRecentPlaceholder, 0, c_nExit}},
        // Behind the fixed entries: what shapes the tree, for whoever works without the context menu.
        {u"编辑(&E)",
         {c_nEditContent, 0, 32939, 0, 32869, 32870, c_nRename, 32816, 32817, 0, 32814, 32919, 0, 32774}},
        {u"查看(&V)", {c_nToolBar, c_nStatusBar, 0, c_nOverallPreview}},
        {u"工具(&T)", {c_nChangePassword, c_nServerAddress, 0, c_nOptions}},
        {u"帮助(&H)", {c_nAbout}},
    };
    return menus;
}

std::span<const int> ToolBar() {
    return c_toolBar;
}

bool IsEnabled(const Command& command, const State& state) {
    switch (command.Enabled) {
    case EEnabled::Always:
        return true;
    case EEnabled::CourseOpen:
        return state.bCourseOpen;
    case EEnabled::Tree:
        return state.bCourseOpen && !state.bEditorShowing && state.bTreeSaysYes;
    case EEnabled::View:
        return state.bViewSaysYes;
    case EEnabled::NotYet:
        return false;
    }
    return false;
}

} // namespace Commands
