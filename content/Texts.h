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

// The dialogs of the open type, whose texts stand in the order of its values, and of the custom titles.
inline const QString c_strOpenTypeDialog = u"设置打开类型"_s;
inline const QString c_strOpenTypes[] = {u"不打开新窗口(&T)"_s, u"新窗口普通(&N)"_s, u"新窗口最大化(&M)"_s,
                                         u"新窗口全屏(&F)"_s};
inline const QString c_strCustomTitlesDialog = u"自定义标题"_s;

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

} // namespace ContentText
