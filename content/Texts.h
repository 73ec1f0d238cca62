#pragma once

#include <QString>

/// What the node floor says to people. %1, %2 are filled with QString::arg.
namespace ContentText {

using namespace Qt::StringLiterals;

// The tree's questions before something is lost or changes its look.
/// A node with content gets its first child.
inline const QString c_strChildBelowContent = u"本栏目已经拥有内容，当您为本栏目添加了下级栏目（子栏目）后，"
                                              u"系统默认的自动显示下级栏目功能将被自动关闭，"
                                              u"您的用户将只能通过树型目录访问本栏目的子栏目。"
                                              u"如果您以后希望恢复系统提供的自动显示下级栏目功能，"
                                              u"请选择\"编辑\"菜单中的\"清空栏目内容\"功能。"_s;
/// A node with children gets content.
inline const QString c_strContentAboveChildren = u"本栏目已经拥有下级栏目（子栏目），当您为本栏目输入内容后，"
                                                 u"系统默认的自动显示下级栏目功能将被自动关闭，"
                                                 u"您的用户将只能通过树型目录访问本栏目的子栏目。"
                                                 u"如果您以后希望恢复系统提供的自动显示下级栏目功能，"
                                                 u"请选择\"编辑\"菜单中的\"清空栏目内容\"功能。"_s;
inline const QString c_strOverwriteContent = u"该栏目已有内容，再次创建将覆盖已有内容，您要继续吗？"_s;
inline const QString c_strClearContent = u"清空栏目内容后，栏目现有内容将无法恢复，您确定继续吗？"_s;
inline const QString c_strDelete = u"删除栏目将不可恢复，您确认删除吗？"_s;

// The dialog that lists what a deletion takes along.
inline const QString c_strConfirmDeleteTitle = u"确认删除"_s;
inline const QString c_strConfirmDelete = u"该栏目及以下子栏目有内容,删除后，将不可恢复，您确定继续吗？"_s;
inline const QString c_strNoDescendants = u"<该栏目没有有内容的子栏目>"_s;
/// What a reader of the screen says of the list.
inline const QString c_strDeletedTitles = u"将被删除的子栏目"_s;

// Titles.
inline const QString c_strNewTitle = u"新建栏目"_s;
inline const QString c_strTitleDialog = u"输入栏目标题"_s;
inline const QString c_strTitlePrompt =
    u"请您输入栏目标题。如果想创建多个栏目，输入所有栏目的标题，并使用“，”分割，"
    u"例如“第一章，第二章，第三章”(&T)"_s;
inline const QString c_strNewTitleTooLong = u"栏目名称最多为%1个字符, \"%2\"超出了限制，无法创建。"_s;
inline const QString c_strNewTitleTaken = u"父栏目下已有名为\"%1\"的栏目存在。"_s;
inline const QString c_strTitleTaken = u"对不起，父栏目下已有同名栏目存在！"_s;
inline const QString c_strTitleTooLong = u"对不起，栏目名称最大为%1个字符！"_s;
inline const QString c_strTitleNotStored = u"数据库操作失败！可能是父栏目下有同名栏目存在！"_s;

inline const QString c_strDropTitleTaken = u"父栏目下已有同名栏目存在！"_s;

// What a long step shows.
inline const QString c_strAdding = u"正在添加栏目..."_s;
inline const QString c_strDeleting = u"正在删除栏目..."_s;

// Subtrees that leave and come in. One name of the step serves both ways.
inline const QString c_strTransferTitle = u"导入目录"_s;
inline const QString c_strPickExportFolder = u"请您选择导出目录"_s;
inline const QString c_strPickImportFolder = u"请您选择导入目录"_s;
inline const QString c_strExportReading = u"正在分析导出栏目信息"_s;
inline const QString c_strExporting = u"正在导出栏目\"%1\""_s;
inline const QString c_strExported = u"\"%1\"及其所有子栏目已成功导出至%2"_s;
inline const QString c_strImportChecking = u"正在分析文件夹合法性..."_s;
inline const QString c_strImportReading = u"正在分析导入信息..."_s;
inline const QString c_strImporting = u"正在导入栏目\"%1\""_s;
inline const QString c_strCancelled = u"用户取消了操作！"_s;
inline const QString c_strFilesNotExported = u"拷贝资源文件失败！"_s;
inline const QString c_strStoreNotRead = u"读取数据库失败！"_s;
inline const QString c_strIndexNotWritten = u"记录导出信息失败！"_s;
inline const QString c_strNoImportFolder = u"指定的文件夹不存在！"_s;
inline const QString c_strNoIndex = u"指定的文件夹不合法！"_s;
inline const QString c_strIndexNotRead = u"打开栏目信息文件失败！"_s;
inline const QString c_strNotImported = u"数据库操作失败！"_s;
/// Lines with too few fields, or numbers that lead nowhere or round and round.
inline const QString c_strNodeInfoDamaged = u"栏目信息文件已损坏，无法导入！"_s;
inline const QString c_strPathLeadsOut = u"栏目信息文件中的路径\"%1\"不合法，无法导入！"_s;

// A node's content is made.
inline const QString c_strCreateTitle = u"创建栏目文件"_s;
inline const QString c_strCreating = u"正在创建栏目\"%1\"的内容..."_s;
inline const QString c_strAskSaveAsWebPage =
    u"%1是一个Office文件，为加快显示速度，系统推荐您将其转化为Web页引入。"
    u"您确定将其转化为Web页吗?"_s;
/// Files of a kind of their own, and the folder beside a web page. Of an Office file too, that is one.
inline const QString c_strFileNotConverted = u"另存为HTML时发生异常!"_s;
inline const QString c_strNoFileName = u"获取文件名失败!"_s;
inline const QString c_strFileNotCopied = u"拷贝文件出错!"_s;
inline const QString c_strPageNotCopied = u"拷贝文件失败!"_s;
inline const QString c_strFolderNotCopied = u"拷贝文件夹失败!"_s;
/// Empty files to begin with.
inline const QString c_strTemplateNotConverted = u"另存为HTML失败！"_s;
inline const QString c_strNoTemplateName = u"获取文件名失败！"_s;
inline const QString c_strTemplateNotCopied = u"拷贝文件失败！"_s;
/// Sites and courseware.
inline const QString c_strNoSiteName = u"获取文件名失败！"_s;
inline const QString c_strSiteNotCopied = u"拷贝文件夹失败！"_s;
inline const QString c_strHomePageNotFound = u"查找首页失败！"_s;
/// Lectures.
inline const QString c_strNoRecorder = u"启动视频录制工具失败！"_s;
inline const QString c_strNoPlayer =
    u"系统检测到您的计算机没有安装Windows Media Player 9, 无法启动视频制作工具。"_s;
inline const QString c_strNoEncoder =
    u"系统检测到您的计算机没有安装Windows Media Encoder 9, 无法启动视频制作工具。"_s;
inline const QString c_strVideoFolderNotMade = u"创建文件夹失败！"_s;
inline const QString c_strVideoNotMade = u"创建视频失败！"_s;
/// Below any failure behind the recording.
inline const QString c_strRecordingKept =
    u"%1\n\n已录制的内容保留在\n%2\n再次为本栏目录制视频时可以继续使用。"_s;
inline const QString c_strUseKeptRecording =
    u"上次为本栏目录制的视频还没有保存到栏目中：\n%1\n\n您要使用它吗？（选择“否”将重新录制，上次的录制仍然保留。）"_s;
inline const QString c_strDeleteKeptRecording =
    u"新的视频已保存到栏目中。上次没有使用的录制仍然保留在：\n%1\n\n您要删除上次的录制吗？（选择“取消”将继续保留。）"_s;
/// What stands below such a message where more is known.
inline const QString c_strDiskFull = u"磁盘空间不足，请您清理磁盘后重试。"_s;
inline const QString c_strPathTooLong = u"文件名或路径太长。"_s;
inline const QString c_strNoAccess = u"没有访问权限。"_s;
inline const QString c_strConversionTooLong = u"转换时间太长，已停止。"_s;
inline const QString c_strNoConverter =
    u"系统没有检测到转换Office文件所需的程序。请您安装以下软件包后重试：\n"
    u"libreoffice-writer-nogui\nlibreoffice-calc-nogui\nlibreoffice-impress-nogui\npoppler-utils"_s;
inline const QString c_strFileNotOpened =
    u"无法打开文件%1，请您检查文件是否存在、是否安装了编辑该文件的程序。"_s;

// Files and folders become nodes.
inline const QString c_strImportingPath = u"正在导入\n%1"_s;
inline const QString c_strImportTitleTaken = u"已有名为%1的节点存在，该文件导入失败！"_s;
inline const QString c_strFolderNotRead = u"无法读取文件夹%1，导入失败！"_s;
inline const QString c_strNotAllImported = u"以下%1个文件或文件夹未能完整导入：\n%2"_s;
/// Why one was not.
inline const QString c_strNameNoText = u"文件名无法识别。"_s;
inline const QString c_strNotRead = u"无法读取。"_s;
/// Also of the copies of other things.
inline const QString c_strNotAllCopied =
    u"以下%1个文件或文件夹未能拷贝，请您检查它们的名称能否识别、链接是否有效：\n%2"_s;
inline const QString c_strNotCopied = u"名称无法识别或链接无效。"_s;
inline const QString c_strHidden = u"隐藏文件。"_s;

// The dialogs of the open type, whose texts stand in the order of its values, and of the custom titles.
inline const QString c_strOpenTypeDialog = u"设置打开类型"_s;
inline const QString c_strOpenTypes[] = {u"不打开新窗口(&T)"_s, u"新窗口普通(&N)"_s, u"新窗口最大化(&M)"_s,
                                         u"新窗口全屏(&F)"_s};
inline const QString c_strCustomTitlesDialog = u"自定义标题"_s;

// The dialog of in-site links.
inline const QString c_strInSiteLinkDialog = u"设置站内链接"_s;
inline const QString c_strInSiteLinkPrompt =
    u"请您选择站内栏目，如果想设置指向HTML页内的链接，请您点击相应的页内链接"_s;
inline const QString c_strInSiteLocation = u"文件位置"_s;
inline const QString c_strInSitePreview = u"内容预览"_s;
inline const QString c_strInSitePlaces = u"页内位置(&P)"_s;
inline const QString c_strInSitePlaceName = u"位置"_s;
inline const QString c_strInSitePlaceText = u"内容"_s;
inline const QString c_strWholePage = u"（整个页面）"_s;
inline const QString c_strNoPlaces = u"该页内没有可以链接的位置，您可以链接到整个页面。"_s;
inline const QString c_strPageTooLarge = u"该页太大，无法列出页内位置，您可以链接到整个页面。"_s;
inline const QString c_strNoPagePlaces = u"该栏目内容没有页内位置。"_s;
inline const QString c_strInSiteWait = u"正在打开所选的内容，请稍候..."_s;
inline const QString c_strInSiteSelf = u"不可以链接到自己。请您选择一个其他栏目"_s;
inline const QString c_strLinkMissing = u"链接的文件不存在：%1"_s;
inline const QString c_strNoPlaceChosen = u"对不起，请您选择一个站内链接。"_s;
/// Markup that the preview shows where there is no page.
inline const QString c_strNoPageInside =
    u"<p style=font-size:14px>该栏目内容不是可以选择内部链接的HTML页。</p>"_s;
inline const QString c_strFileNotPreviewed =
    u"<p style=font-size:14px>该栏目的内容是文件，无法在此预览。您可以链接到整个文件。</p>"_s;
inline const QString c_strTip = u"提示"_s;

// Failures.
inline const QString c_strNotDeleted = u"数据库操作失败！"_s;
inline const QString c_strNotMoved = u"数据库操作失败!"_s;
inline const QString c_strPageNotSaved = u"保存文件失败！"_s;
inline const QString c_strNoStore = u"数据库操作失败！"_s;
/// Something else stands where the node's folder belongs.
inline const QString c_strFolderNotUsable = u"创建文件夹失败！\n%1"_s;
inline const QString c_strFirstNode = u"该栏目为第一个栏目，无法上移!"_s;
inline const QString c_strLastNode = u"该栏目为最后一个栏目，无法下移!"_s;

// What a reader of the screen says of the tree and its field.
inline const QString c_strTreeName = u"课程栏目"_s;
inline const QString c_strTitleEdit = u"栏目标题"_s;

// The new-course wizard.
inline const QString c_strWizard = u"新建课程向导"_s;
inline const QString c_strCoursePage = u"新建课程向导－选择课程"_s;
inline const QString c_strFolderPage = u"新建课程向导－设置课程目录"_s;
inline const QString c_strTemplatePage = u"新建课程向导－选择课程模板"_s;
inline const QString c_strSummaryPage = u"新建课程向导－显示用户选择"_s;
inline const QString c_strNodesPage = u"新建课程向导－选择课程栏目"_s;
inline const QString c_strSystemFileBroken = u"系统文件读取错误"_s;
/// The list of the page of nodes, in the folder of delivered data.
inline const QString c_strNodesFile = u"InitialNodes.txt"_s;
inline const QString c_strNoCourseName = u"请您填写课程名"_s;
inline const QString c_strNoCourseFolder = u"请您填写课程路径"_s;
inline const QString c_strSeparatorInName = u"课程名不能包含“\\”和“/”，请您修改！"_s;
inline const QString c_strFolderNotEmpty = u"您输入的课程文件夹已经存在，并且非空，请您删除或重新选择！"_s;
inline const QString c_strFolderNotMade = u"创建课程文件夹失败，请您重试!"_s;
inline const QString c_strPickCourseFolder = u"请您选择课程目录"_s;
inline const QString c_strNoTemplate = u"请您选择一个模板!"_s;
inline const QString c_strOverallPreview = u"整体预览"_s;
/// The output folder that the default course folder ends with.
inline const QString c_strCourseSubFolder = u"申报网站"_s;
inline const QString c_strSummaryCourse = u"课 程 名："_s;
inline const QString c_strSummaryTeacher = u"教 师 名："_s;
inline const QString c_strSummaryProject = u"工 程 名："_s;
inline const QString c_strSummaryFolder = u"路    径："_s;
inline const QString c_strSummaryTemplate = u"模    板："_s;
inline const QString c_strBack = u"上一步(&B)"_s;
inline const QString c_strNext = u"下一步(&N)"_s;
inline const QString c_strFinish = u"完成(&F)"_s;
inline const QString c_strCancel = u"取消"_s;
inline const QString c_strCourseSearch = u"课程查找(&S)"_s;
inline const QString c_strCourseList = u"课程列表(&C)"_s;
inline const QString c_strCourseDetails = u"课程信息(&I)"_s;
inline const QString c_strPassword = u"课程密码(&W)"_s;
inline const QString c_strCourseName = u"课程名(&M)"_s;
inline const QString c_strCourseFolder = u"课程路径(&L)"_s;
inline const QString c_strBrowse = u"浏览(&R)..."_s;
inline const QString c_strTemplateList = u"模板列表(&T)"_s;
inline const QString c_strPageCombo = u"预览页面(&P)"_s;
inline const QString c_strPreview = u"模板预览"_s;
inline const QString c_strPreviewPrevious = u"上一个预览"_s;
inline const QString c_strPreviewNext = u"下一个预览"_s;
inline const QString c_strSummary = u"用户选择"_s;
inline const QString c_strOk = u"确定"_s;

// The content wizard. First the kinds, as it offers them.
inline const QString c_strEditorPageKind = u"内部编辑器(&I)： 使用内建的HTML编辑器编辑"_s;
inline const QString c_strExternalFileKind = u"外部文件(&O)  ： 插入您已编辑好的外部文件"_s;
inline const QString c_strExternalEditorKind = u"外部编辑器(&N)： 创建指定类型的空外部文件"_s;
inline const QString c_strSiteKind = u"导入站点(&S)  ： 导入一组网页，及其相关资源"_s;
inline const QString c_strExternalLinkKind = u"外部链接(&L)  ： 添加链接，指向外部网站"_s;
inline const QString c_strCoursewareKind = u"导入奥思(&A)  ： 导入由“方正奥思”导出的网页"_s;
inline const QString c_strVideoKind = u"新建视频(&V)  ： 录制PowerPoint授课实况"_s;
inline const QString c_strFolderKind = u"导入目录(&D)  ： 导入整个目录，按照目录结构创建栏目"_s;
inline const QString c_strInSiteLinkKind = u"站内链接(R)  ： 设置指向站内其他栏目内容的链接"_s;
inline const QString c_strEditorPageTip =
    u"创建内部编辑器类型的栏目。内部编辑器里，您可以象使用Word一样使用。"_s;
inline const QString c_strExternalFileTip = u"创建外部文件类型的栏目"_s;
inline const QString c_strExternalEditorTip = u"外部编辑器类型的栏目"_s;
inline const QString c_strExternalLinkTip =
    u"外部链接，您可以设置该栏目指向一个外部的地址，比如您建立的一个课程网站；"_s;
/// The nodes of this title are advised to be links.
inline const QString c_strReferencesTitle = u"参考文献"_s;
inline const QString c_strAdviseLink = u"您选择的栏目是%1, 我们建议您采用外部链接的形势；"_s;
inline const QString c_strAdviseEditor = u"您选择的栏目是%1, 我们建议您采用内部编辑器形势；"_s;
// Its pages.
inline const QString c_strContentWizard = u"创建栏目文件向导"_s;
inline const QString c_strTypePage = u"创建栏目文件－－选择文件类型"_s;
inline const QString c_strParamsPage = u"创建栏目文件－－参数设置"_s;
/// With access keys that no kind and no field has.
inline const QString c_strContentBack = u"上一步(&K)"_s;
inline const QString c_strContentNext = u"下一步(&X)"_s;
inline const QString c_strContentFinish = u"完成(&C)"_s;
inline const QString c_strNoKind = u"请您选择栏目内容类型"_s;
inline const QString c_strEditorPageWords =
    u"内部编辑器提供象Word一样的编辑功能，您可以制作自己的网页。"
    u"网页中您可以方便的实现常用的编辑功能，如排版，插入图片、插入Flash等。"_s;
inline const QString c_strVideoWords = u"新建视频，您可以录制PowerPoint授课实况。"_s;
inline const QString c_strFileField = u"请您选择文件(&F)"_s;
inline const QString c_strCommentField = u"说明"_s;
inline const QString c_strOfficeWords = u"请您选择要新建文件的类型，并设置是否另存为网页"_s;
inline const QString c_strOfficeKinds[] = {u"Word"_s, u"PowerPoint"_s, u"Excel"_s};
inline const QString c_strSaveAsHtml = u"保存为网页格式(&H)"_s;
inline const QString c_strSiteWords = u"请您选择要导入的站点所在的目录(&D)"_s;
inline const QString c_strSiteFolderField = u"所在目录"_s;
inline const QString c_strHomePageField = u"站点首页(&H)"_s;
inline const QString c_strUrlField = u"请您输入要的链接网址(&U)"_s;
inline const QString c_strUrlHead = u"http://"_s;
inline const QString c_strCoursewareField = u"请您选择要导入的奥思课件的目录(&P)"_s;
inline const QString c_strFolderField = u"请您选择要导入的目录(&R)"_s;
inline const QString c_strFilterField = u"只导入以下指定类型的文件："_s;
inline const QString c_strTypedFilterField = u"设置自定义类型（例如.doc;.htm）："_s;
inline const QString c_strInSiteLinkField = u"请您设置站内链接地址(&H)"_s;
inline const QString c_strSetLink = u"设置(&B)..."_s;
inline const QString c_strOpenTypeGroup = u"打开方式设置"_s;
inline const QString c_strNewWindow = u"新窗口打开(&E)"_s;
/// In the order of the open types from 1 on.
inline const QString c_strWindows[] = {u"普通"_s, u"最大化"_s, u"全屏"_s};
inline const QString c_strBrowsePath = u"浏览(&B)..."_s;
inline const QString c_strBrowseHomePage = u"浏览(&W)..."_s;
inline const QString c_strPickCourseware = u"请您选择方正奥思课件目录"_s;
inline const QString c_strSiteFolderFirst = u"请您先选择站点目录"_s;
inline const QString c_strPickedOutside = u"首页不在站点目录内，请您重新选择"_s;
inline const QString c_strExternalFileFilter =
    u"所有文件(*.*)|*.*|Office文件(*.doc, *.ppt, *.xls)|*.doc;*.ppt;*.xls|Word 文件(*.doc)|*.doc|"
    u"PowerPoint文件(*.ppt)|*.ppt|Excel文件(*.xls)|*.xls|HTML文件(*.htm, *.html)|*.htm;*.html||"_s;
inline const QString c_strHomePageFilter =
    u"HTML文件(*.htm, *.html, *shtml)|*.htm;*.html;*.shtml|所有文件(*.*)|*.*||"_s;
// Its refusals.
inline const QString c_strNoExternalFile = u"请您选择外部文件！"_s;
inline const QString c_strExternalFileMissing = u"您选择外部文件不存在, 请您重新选择！"_s;
inline const QString c_strNoOfficeKind = u"请您选择新建类型, 如果无法选择，请检查您的Office是否正确安装！"_s;
inline const QString c_strNoSiteFolder = u"请您选择站点目录！"_s;
inline const QString c_strSiteFolderMissing = u"站点目录文件夹不存在，请你重新选择！"_s;
inline const QString c_strNoHomePage = u"请您选择站点首页！"_s;
inline const QString c_strHomePageMissing = u"站点首页不存在，请你重新选择！"_s;
inline const QString c_strHomePageOutside = u"站点首页不在站点目录内，请您重新选择!"_s;
inline const QString c_strNoLink = u"链接地址不能为空！"_s;
inline const QString c_strLinkNotValid = u"系统检测到您输入的网址不合法，您希望更正输入吗！"_s;
inline const QString c_strNoCourseware = u"请您选择方正奥思课件目录！"_s;
inline const QString c_strCoursewareMissing = u"奥思课件目录不存在，请你重新选择！"_s;
inline const QString c_strNotCourseware = u"您选择的目录不是奥思课件目录, 请您重新选择！"_s;
inline const QString c_strNoFolder = u"请您选择导入目录！"_s;
inline const QString c_strFolderMissing = u"导入目录不存在，请你重新选择！"_s;
inline const QString c_strNoFilter = u"请您输入过滤文件类型"_s;
inline const QString c_strFilterNotValid = u"请您正确输入过滤文件类型"_s;
inline const QString c_strNoInSiteLink = u"对不起，链接地址不能为空！请您选择。"_s;
inline const QString c_strBadParams = u"参数错误！"_s;

} // namespace ContentText
