#include "editor/EditorCommands.h"

#include <algorithm>

namespace EditorCommands {

namespace {

using enum EFamily;

constexpr Command c_commands[] = {
    {32779, Toggle, u"加粗", u"Bold.bmp", u"bold"},
    {32780, Toggle, u"倾斜", u"Italic.bmp", u"italic"},
    {32781, Toggle, u"下划线", u"UnderLine.bmp", u"underline"},
    {Id::c_nForeColor, Colour, u"字体颜色", u"FontColor.bmp", u"ForeColor"},
    {Id::c_nBackColor, Colour, u"背景颜色", u"BgColor.bmp", u"BackColor"},
    {Id::c_nFontBox, Box, u"字体", u"Empty.bmp", u"fontname"},
    {Id::c_nSizeBox, Box, u"字号", u"Empty.bmp", u"fontsize"},
    {32787, Toggle, u"居左", u"LeftAlign.bmp", u"justifyleft"},
    {32788, Toggle, u"居中", u"CenterAlign.bmp", u"justifycenter"},
    {32789, Toggle, u"居右", u"RightAlign.bmp", u"justifyright"},
    {32829, Toggle, u"编号", u"NumList.bmp", u"insertorderedlist"},
    {32830, Toggle, u"项目符号", u"BulList.bmp", u"insertunorderedlist"},
    {32831, Plain, u"减少缩进量", u"DeIndent.bmp", u"outdent"},
    {32832, Plain, u"增加缩进量", u"InIndent.bmp", u"indent"},
    {32833, Toggle, u"上标", u"Sup.bmp", u"superscript"},
    {32834, Toggle, u"下标", u"Sub.bmp", u"subscript"},

    {Id::c_nImage, Own, u"插入图片", u"InsertImg.bmp", u""},
    {Id::c_nFlash, Own, u"插入Flash", u"InsertFlash.bmp", u""},
    {Id::c_nMedia, Own, u"插入媒体文件", u"InsertMedia.bmp", u""},
    {Id::c_nOtherFile, Own, u"插入其他文件链接", u"InsertOtherFile.bmp", u""},
    {Id::c_nTable, Own, u"插入表格", u"InsertTable.bmp", u""},
    {Id::c_nEditTable, Own, u"修改表格", u"EditTable.bmp", u""},
    {32839, Plain, u"插入文字框", u"InsertInput.bmp", u"InsertInputText"},
    {32840, Plain, u"插入文字区", u"InsertTextArea.bmp", u"InsertTextArea"},
    {32841, Plain, u"插入单选钮", u"InsertRadio.bmp", u"InsertInputRadio"},
    {32842, Plain, u"插入复选框", u"InsertCheckBox.bmp", u"InsertInputCheckbox"},
    {32843, Plain, u"插入按钮", u"InsertButton.bmp", u"InsertButton"},
    {Id::c_nMarquee, Own, u"插入滚动文字", u"InsertMarquee.bmp", u""},
    {32845, Plain, u"插入水平线", u"InsertHR.bmp", u"InsertHorizontalRule"},
    {Id::c_nLineBreak, Own, u"插入回车", u"InsertBR.bmp", u""},
    {32847, Plain, u"插入段落", u"InsertP.bmp", u"InsertParagraph"},
    {Id::c_nLink, Link, u"超级链接", u"InsertWebLink.bmp", u"CreateLink"},
    {Id::c_nUnlink, Link, u"取消链接", u"UnLink.bmp", u"UnLink", {}, {}, ENeed::Link},
    {Id::c_nFloatingHelp, Own, u"添加浮动帮助", u"InsertAnchor.bmp", u""},
    {Id::c_nHelpMark, Own, u"添加帮助文本", u"InsertHelp.bmp", u""},
    {Id::c_nInSiteLink, Own, u"添加站内链接", u"", u""},

    {32795, Plain, u"剪切", u"Cut.bmp", u"Cut", {}, {}, ENeed::Selection},
    {32793, Plain, u"拷贝", u"Copy.bmp", u"Copy", {}, {}, ENeed::Selection},
    {32796, Plain, u"粘贴", u"Paste.bmp", u"Paste"},
    {32820, Plain, u"删除", u"Delete.bmp", u"Delete"},
    {32821, Plain, u"撤销", u"Undo.bmp", u"Undo", {}, {}, ENeed::StepBehind},
    {32822, Plain, u"重复", u"Redo.bmp", u"Redo", {}, {}, ENeed::StepAhead},
    {32823, Plain, u"全选", u"SelectAll.bmp", u"SelectAll"},
    {32824, Plain, u"取消选中", u"UnSelect.bmp", u"UnSelect", {}, {}, ENeed::Selection},
    {Id::c_nSetTemplate, Page, u"设置模板", u"SetTemplate.bmp", u"", u"设置模板"},
    {Id::c_nClearContent, Page, u"清空内容", u"EmptyTemplate.bmp", u"", u"清空内容"},
    {Id::c_nClearGarbage, Page, u"清垃圾资源", u"ClearGarbage.bmp", u"", u"清垃圾资源"},
    {Id::c_nSave, Page, u"保存(Ctrl + S)", u"Save.bmp", u"", u"保存", u"保存(Ctrl + S))"},
    {Id::c_nQuit, Page, u"退出", u"Quit.bmp", u"", u"退出"},
};

constexpr int c_formatBar[] = {32779, 32780, 32781, 0,     32782, 32784, 0,     32785, 32786, 0,     32787,
                               32788, 32789, 0,     32829, 32830, 0,     32831, 32832, 0,     32833, 32834};
constexpr int c_insertBar[] = {32790, 32791, 32792, 32836, 0,     32837, 32838, 0,
                               32839, 32840, 32841, 32842, 32843, 0,     32844, 32845,
                               32846, 32847, 0,     32848, 32849, 32850, 0,     32851};
constexpr int c_editBar[] = {32795, 32793, 32796, 32820, 0,     32821, 32822, 0,    32823,
                             32824, 0,     32871, 32908, 32940, 0,     32825, 32826};
constexpr int c_pageMenu[] = {32821, 32822, 0, 32795, 32793, 32796, 32820, 0, 32823};

// Two names are cut or hold a tab, and some values write the tab as an entity: pages carry these values.
constexpr BoxRow c_fonts[] = {
    {u"宋体", u"宋体"},
    {u"黑体", u"黑体"},
    {u"楷体", u"楷体_GB2312"},
    {u"仿宋", u"仿宋_GB2312"},
    {u"隶书", u"隶书"},
    {u"幼圆", u"幼圆"},
    {u"新宋体", u"新宋体"},
    {u"细明体", u"细明体"},
    {u"Arial", u"Arial"},
    {u"Arial Blac", u"Arial Blac"},
    {u"Arial Narrow", u"Arial Narrow"},
    {u"Bradley Hand ITC", u"Bradley Hand&#9;ITC"},
    {u"Brush Script MT", u"Brush Script&#9;MT"},
    {u"Century Gothic", u"Century Gothic"},
    {u"Comic Sans MS", u"Comic Sans MS"},
    {u"Courier", u"Courier"},
    {u"Courier\tNew", u"Courier\tNew"},
    {u"MS Sans Serif", u"MS Sans Serif"},
    {u"Script", u"Script"},
    {u"System", u"System"},
    {u"Times New Roman", u"Times New Roman"},
    {u"Viner Hand ITC", u"Viner Hand ITC"},
    {u"Verdana", u"Verdana"},
    {u"Wide Latin", u"Wide&#9;Latin"},
    {u"Wingdings", u"Wingdings"},
};
constexpr BoxRow c_sizes[] = {{u"一号", u"7"}, {u"二号", u"6"}, {u"三号", u"5"}, {u"四号", u"4"},
                              {u"五号", u"3"}, {u"六号", u"2"}, {u"七号", u"1"}};

} // namespace

std::span<const Command> All() {
    return c_commands;
}

const Command* Find(int nId) {
    const auto* pFound = std::ranges::find(c_commands, nId, &Command::nId);
    return pFound == std::end(c_commands) ? nullptr : pFound;
}

std::span<const int> FormatBar() {
    return c_formatBar;
}

std::span<const int> InsertBar() {
    return c_insertBar;
}

std::span<const int> EditBar() {
    return c_editBar;
}

std::span<const int> PageMenu() {
    return c_pageMenu;
}

std::span<const BoxRow> Fonts() {
    return c_fonts;
}

std::span<const BoxRow> Sizes() {
    return c_sizes;
}

bool IsAllowed(int nId, EMode mode) {
    const Command* pCommand = Find(nId);
    if (pCommand == nullptr)
        return false;
    return mode == EMode::Design || (mode == EMode::Source && pCommand->Family == EFamily::Page);
}

bool IsOffered(int nId, EMode mode, const SAtCaret& atCaret) {
    if (!IsAllowed(nId, mode))
        return false;
    switch (Find(nId)->Need) {
    case ENeed::Nothing:
        return true;
    case ENeed::StepBehind:
        return atCaret.bStepBehind;
    case ENeed::StepAhead:
        return atCaret.bStepAhead;
    case ENeed::Selection:
        return atCaret.bSelection;
    case ENeed::Link:
        return atCaret.bLink;
    }
    return false;
}

} // namespace EditorCommands
