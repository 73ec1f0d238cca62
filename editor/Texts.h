#pragma once

#include <QString>

/// What the editor and the display views say, to the letter.
namespace EditorTexts {

// Titles of boxes other than the four usual forms.
inline const QString c_strTip = QStringLiteral("提示");
inline const QString c_strError = QStringLiteral("错误");
inline const QString c_strSuccess = QStringLiteral("成功");
inline const QString c_strFailure = QStringLiteral("失败");
inline const QString c_strWarning = QStringLiteral("警告");

// Loading and saving a page.
inline const QString c_strDesignModeFailed = QStringLiteral("启动编辑模式失败!");
inline const QString c_strNoContent = QStringLiteral("获得编辑器内容失败！");
inline const QString c_strTooLong = QStringLiteral("字段太长！");
inline const QString c_strNoImages = QStringLiteral("获取图片路径失败!");
inline const QString c_strNoEmbeds = QStringLiteral("获取嵌入资源路径失败!");
inline const QString c_strNoLinks = QStringLiteral("获取链接路径失败!");
inline const QString c_strResourcesFailed = QStringLiteral("处理编辑器外部资源失败！");
inline const QString c_strAskSave = QStringLiteral("该文件内容已改变，您需要保存已修改的内容吗？");
inline const QString c_strSaving = QStringLiteral("正在保存...");
inline const QString c_strCopying = QStringLiteral("正在复制：%1");
inline const QString c_strFetching = QStringLiteral("正在下载：%1");
inline const QString c_strSaveCancelled =
    QStringLiteral("您取消了保存，网页没有写入，您的修改仍在编辑器中。");
inline const QString c_strSaveFailed = QStringLiteral("保存文件失败！");
inline const QString c_strPageTooLarge =
    QStringLiteral("该栏目的网页太大，无法在编辑器中打开，网页保持原样。\n系统建议您拆分成较小的页面。");
inline const QString c_strSourceTooLong =
    QStringLiteral("对不起，您填写的内容过长，无法编辑源文件。\n系统建议您拆分成较小的页面。");
inline const QString c_strWriteBackFailed = QStringLiteral("更新编辑器源码失败！！");
inline const QString c_strNotCopied =
    QStringLiteral("以下文件没有复制到课程中，网页仍然引用它们原来的位置：\n%1");
inline const QString c_strTooLongPath = QStringLiteral("%1（文件名或路径太长）");

// Pages that are kept while they are edited.
inline const QString c_strAskKept =
    QStringLiteral("上次编辑栏目“%1”时程序没有正常结束，%2 保留下了尚未保存的内容。\n"
                   "您要打开该栏目，继续编辑这些内容吗？\n\n"
                   "选“是”，内容放回编辑器，由您检查后保存；选“否”，放弃这些内容。");
inline const QString c_strKeptPageChanged =
    QStringLiteral("\n\n注意：此后该栏目的网页又改动过，保存时将被这些内容替换。");
inline const QString c_strKeptNodeGone =
    QStringLiteral("栏目“%1”已不存在，或者不再是网页。%2 保留下的未保存内容已另存为：\n%3");
inline const QString c_strKeptNodesGone = QStringLiteral(
    "有 %1 份保留下的未保存内容，其栏目已不存在，或者不再是网页。这些内容已另存到：\n%2\n\n%3");
inline const QString c_strKeptLine = QStringLiteral("%1（%2）");
inline const QString c_strMoreLines = QStringLiteral("……");
inline const QString c_strKeptTooLong =
    QStringLiteral("栏目“%1”于 %2 保留下的未保存内容过长，无法放回编辑器，已另存为：\n%3");
inline const QString c_strRescueFolder = QStringLiteral("未保存的网页");
inline const QString c_strKeepFailed =
    QStringLiteral("正在编辑的内容无法自动保留，如果断电或者程序意外结束，未保存的内容会丢失，"
                   "请您及时保存。\n\n%1");
inline const QString c_strPageRecovered =
    QStringLiteral("显示网页的组件意外停止，已重新启动，正在编辑的内容已经恢复。\n"
                   "最后几秒的改动可能没有包括在内，请您检查后保存。");
inline const QString c_strPreviewLost = QStringLiteral("显示网页的组件意外停止，请您重新预览。");
inline const QString c_strPageInSource = QStringLiteral("显示网页的组件意外停止，没有能够重新启动。\n"
                                                        "正在编辑的内容已放在“源文件”中，您可以在那里保存。");

// Pasting.
inline const QString c_strPicturesFailed =
    QStringLiteral("有图片没有能够粘贴到网页中，其余内容已经粘贴。\n\n%1");
inline const QString c_strPictureFailed = QStringLiteral("图片没有能够粘贴到网页中。\n\n%1");
inline const QString c_strPictureGone = QStringLiteral("找不到图片，或者网页不能显示：%1");
inline const QString c_strPicturesTooLarge = QStringLiteral("图片太大，或者太多。");
inline const QString c_strPasteTooLong =
    QStringLiteral("剪贴板中的内容过长，没有粘贴。\n系统建议您分几次粘贴，或者拆分成较小的页面。");
inline const QString c_strPastedAsText =
    QStringLiteral("剪贴板中的内容过长，或者过于复杂，已经只粘贴其中的文字，没有格式和图片。\n"
                   "如果需要格式和图片，请您分几次粘贴。");
inline const QString c_strFilesLeftOut =
    QStringLiteral("有 %1 项没有粘贴，它们是文件夹，已经不存在，或者路径太长：\n%2");
inline const QString c_strPasting = QStringLiteral("正在粘贴...");
inline const QString c_strPasteCancelled = QStringLiteral("您取消了粘贴，网页没有改变。");
inline const QString c_strPasteLate =
    QStringLiteral("粘贴的内容较多，网页还在处理。\n请您等内容出现以后再继续编辑和保存。");
inline const QString c_strPasteFailed = QStringLiteral("粘贴失败，请您重试!");

// Inserting.
inline const QString c_strInsertFailed = QStringLiteral("没有能够插入，网页没有改变。");
inline const QString c_strInsertLate =
    QStringLiteral("网页还在处理刚才插入的内容。\n请您等内容出现以后再继续编辑和保存。");
inline const QString c_strFileTooDeep = QStringLiteral("没有能够插入，文件名或路径太长：\n%1\n\n"
                                                       "请您把文件移到上层的文件夹中，或者缩短它的名称。");

// Commands of the page.
inline const QString c_strAskTemplate = QStringLiteral("重新设置模板将丢失已有的内容，您继续吗？");
inline const QString c_strTemplateFilter = QStringLiteral("模板文件(.%1)|*.%1||");
inline const QString c_strTemplateExtension = QStringLiteral("htm");
inline const QString c_strBadTemplate = QStringLiteral("对不起，您选择的模板不合法，请您重新选择!");
inline const QString c_strAskClear = QStringLiteral("您确定清空已有内容吗？");
inline const QString c_strClearFailed = QStringLiteral("写入内容失败!");
inline const QString c_strGarbageCleared = QStringLiteral("清除垃圾资源文件成功");
inline const QString c_strGarbageFailed = QStringLiteral("清除垃圾资源文件失败");

// File dialogs of the inserting commands. The tabs and blanks before a bar are part of the text.
inline const QString c_strImageFilter =
    QStringLiteral("所有图片文件(*.gif;*.png;*.jpg;*.jpeg;*.bmp;*.ico;*.emf;*.wmf)|"
                   "*.gif;*.png;*.jpg;*.jpeg;*.bmp;*.ico;*.emf;*.wmf\t\t\t\t\t\t|GIF 文件(*.gif)|*.gif|"
                   "JPEG 文件(*.jpg,*.jpeg)|*.jpg;*.jpeg|BMP 文件(*.bmp)|*.bmp\t\t\t\t\t\t|"
                   "PNG 文件(*.png)|*.png|所有文件(*.*)|*.*||");
inline const QString c_strFlashFilter = QStringLiteral("*.swf|*.swf||");
inline const QString c_strMediaFilter = QStringLiteral(
    "所有视频文件(*.avi;*.asf;*.wmv;*.mpg;*.mpeg)|*.avi;*.asf;*.wmv;*.mpg;*.mpeg        \t\t\t\t|"
    "*.avi|*.avi|*.asf;*.wmv|*.asf;*.wmv|*.mpg;*.mpeg|*.mpg;*.mpeg|所有文件(*.*)|*.*||");
inline const QString c_strOtherFileFilter =
    QStringLiteral("全部文件 (*.*)|*.*|WORD文件 (*.doc)|*.doc|PowerPoint文件 (*.ppt)|*.ppt|"
                   "Excel文件 (*.xls)|*.xls||");

// Small dialogs of the inserting commands.
inline const QString c_strInputTitle = QStringLiteral("输入信息");
inline const QString c_strAskMarquee = QStringLiteral("请您输入滚动文字");
inline const QString c_strAskFloatingHelp = QStringLiteral("请输入帮助的内容");
inline const QString c_strAskHelp = QStringLiteral("请您输入帮助内容");
inline const QString c_strNoSelection = QStringLiteral("对不起，请您先选中一段内容！");
inline const QString c_strNoTable = QStringLiteral("请您先选中一个表格！");
inline const QString c_strTableFailed = QStringLiteral("表格修改失败, 请您检查参数是否合法！");
inline const QString c_strTableLate =
    QStringLiteral("网页还在修改表格。\n请您等修改出现以后再继续编辑和保存。");
inline const QString c_strTableTooLarge =
    QStringLiteral("表格太大：%1 行 × %2 列。一个表格最多 %3 个单元格，请您减少行数或者列数。");
inline const QString c_strTableTitle = QStringLiteral("表格属性");
inline const QString c_strTableGroup = QStringLiteral("请您输入表格参数");
inline const QString c_strTableRows = QStringLiteral("行数(&R)");
inline const QString c_strTableColumns = QStringLiteral("列数(&C)");
inline const QString c_strTableWidth = QStringLiteral("表格宽度(&W)");
inline const QString c_strTableBorder = QStringLiteral("表格边框(&B)");
inline const QString c_strTableSpacing = QStringLiteral("单元格间隔(&S)");
inline const QString c_strTablePadding = QStringLiteral("单元格间距(&P)");
inline const QString c_strTableBorderColour = QStringLiteral("边框颜色(&D)");
inline const QString c_strTableBackground = QStringLiteral("背景颜色(&G)");
inline const QString c_strPickColour = QStringLiteral("选择%1");

// Toolbars.
inline const QString c_strMore = QStringLiteral("更多按钮");

// Tabs.
inline const QString c_strDesignTab = QStringLiteral("设计");
inline const QString c_strSourceTab = QStringLiteral("源文件");
inline const QString c_strPreviewTab = QStringLiteral("预览");

// Display views.
inline const QString c_strChildColumn = QStringLiteral("子栏目");
inline const QString c_strTypeColumn = QStringLiteral("类型");
inline const QString c_strFolderNode = QStringLiteral("<目录栏目>");
inline const QString c_strEmptyNode = QStringLiteral("<空栏目>");
inline const QString c_strNoContentPrompt =
    QStringLiteral("栏目暂无内容，点击“创建栏目文件”按钮创建栏目内容");
inline const QString c_strCreateContent = QStringLiteral("创建栏目文件(&C)");
inline const QString c_strRefresh = QStringLiteral("刷新显示(&R)");
inline const QString c_strPromptNewWindow =
    QStringLiteral("请您在浏览结束后,关闭打开的新窗口, (对于打开的全屏窗口，请使用Alt + F4关闭)");
inline const QString c_strPromptExternal =
    QStringLiteral("现在正在使用外部编辑器编辑内容, 请您在编辑结束后关闭窗口并点击“刷新显示”按钮查看内容。");
inline const QString c_strPromptRecorder =
    QStringLiteral("现在正在启动视频课件制作工具制作视频。 请您在制作结束后,关闭窗口。");
// The view of a file that no browser shows.
inline const QString c_strKindLabel = QStringLiteral("类  型：");
inline const QString c_strFileNameLabel = QStringLiteral("文件名：");
inline const QString c_strCommentLabel = QStringLiteral("说  明：");
inline const QString c_strDownload = QStringLiteral("下载(&D)");
inline const QString c_strEdit = QStringLiteral("编辑(&E)");
inline const QString c_strToHtml = QStringLiteral("转化为HTML(&H)");
inline const QString c_strVideo = QStringLiteral("视频");
inline const QString c_strPreviewVideo = QStringLiteral("预览(&V)");
inline const QString c_strRecordAgain = QStringLiteral("重录(&E)");
inline const QString c_strNoPlayerForPreview =
    QStringLiteral("系统检测到您的计算机没有安装Windows Media Player 9, 无法预览视频。");
inline const QString c_strNoEncoderForRecording =
    QStringLiteral("系统检测到您的计算机没有安装Windows Media Encoder 9, 无法启动视频制作工具。\n "
                   "请您安装后再次运行。");
inline const QString c_strNoPlayerForRecording =
    QStringLiteral("系统检测到您的计算机没有安装Windows Media Player 9, 无法启动视频制作工具。\n "
                   "请您安装后再次运行。");
inline const QString c_strUnknownKind = QStringLiteral("%1 文件");
inline const QString c_strDownloadTitle = QStringLiteral("下载");
inline const QString c_strSavingAsHtml = QStringLiteral("正在另存为HTML页...");
inline const QString c_strNoFileName = QStringLiteral("获取文件名失败！");
inline const QString c_strNotConverted = QStringLiteral("另存为HTML失败！");
inline const QString c_strNotCreated = QStringLiteral("创建栏目文件失败！");

inline const QString c_strContent = QStringLiteral("内容");
inline const QString c_strOpenOutside = QStringLiteral("在系统浏览器中打开：%1");
inline const QString c_strOpenAddress = QStringLiteral("用其他程序打开：%1");
inline const QString c_strWriteMail = QStringLiteral("在邮件程序中写信：%1");
inline const QString c_strOpenOfPage = QStringLiteral("网页要打开文件：%1");

} // namespace EditorTexts
