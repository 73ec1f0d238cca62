#pragma once

#include <QString>

/// Everything that the compiler says to a person: to the teacher on the console, and to the visitor in the
/// site.
namespace CompilerText {

// To the teacher.
inline const QString c_strUsage =
    QStringLiteral("用法：VorelCompiler \"课程文件\"，课程文件后可加 |H（HTML 格式）或 |S（课堂格式）。");
inline const QString c_strUnknownForm = QStringLiteral("不认识的合成格式“%1”。");
inline const QString c_strNoProject = QStringLiteral("找不到课程文件“%1”。");
inline const QString c_strBadProject = QStringLiteral("读取课程文件“%1”失败：文件不完整或已损坏。");
inline const QString c_strNoDatabase = QStringLiteral("找不到课程数据库“%1”。");
inline const QString c_strBadDatabase =
    QStringLiteral("读取课程数据库失败：数据库已损坏或不是课程数据库（%1）。");
inline const QString c_strLockedDatabase = QStringLiteral("课程数据库正被其他程序使用，请关闭后重试（%1）。");
inline const QString c_strNoRoot = QStringLiteral("课程数据库中没有课程的根栏目。");
inline const QString c_strForbiddenOutput =
    QStringLiteral("输出文件夹“%1”不能用：它是课程文件夹、课程数据所在的文件夹，或者包含它们。");
inline const QString c_strOutputIsLink = QStringLiteral("输出文件夹中的“%1”是一个链接，不向它写入。");
inline const QString c_strOutputBusy = QStringLiteral("另一个合成程序正在向“%1”写入。");
inline const QString c_strCannotWrite = QStringLiteral("无法写入“%1”：%2。");
inline const QString c_strCannotRead = QStringLiteral("无法读取“%1”：%2。");
inline const QString c_strDiskFull = QStringLiteral("磁盘空间不足");
inline const QString c_strNoPermission = QStringLiteral("没有权限");
inline const QString c_strNameTaken = QStringLiteral("同名的文件夹挡住了它");
inline const QString c_strDone = QStringLiteral("合成完毕：%1 个页面，%2 个文件，位于“%3”。");
inline const QString c_strFailed = QStringLiteral("合成失败：%1");
inline const QString c_strUnexpected = QStringLiteral("发生意外错误（%1）。");
inline const QString c_strLastDirGone =
    QStringLiteral("上次的输出文件夹“%1”已不存在，改为写入课程的默认输出文件夹。");
inline const QString c_strSetAside = QStringLiteral("“%1”不是合成程序写的，已改名保留为“%2”。");
inline const QString c_strNoteNoContent = QStringLiteral("栏目“%1”的内容“%2”不存在。");
inline const QString c_strNoteBadAddress = QStringLiteral("栏目“%1”的链接地址“%2”不能用。");
inline const QString c_strNoteDeadLink = QStringLiteral("栏目“%1”的页面引用了不存在的“%2”。");
inline const QString c_strNoteUnreachable = QStringLiteral("有 %1 个栏目不在课程树上，未合成。");
inline const QString c_strNoteRawPage = QStringLiteral("栏目“%1”的页面有错，不能并入网站的框架，原样嵌入。");
inline const QString c_strNoteLargeText = QStringLiteral("文件“%1”过大，原样复制，其中的链接未作修正。");

// To the visitor.
inline const QString c_strSkipLink = QStringLiteral("跳到正文");
inline const QString c_strNavigation = QStringLiteral("课程目录");
inline const QString c_strTeacher = QStringLiteral("主讲教师：%1");
inline const QString c_strHome = QStringLiteral("首页");
inline const QString c_strEmptyNode = QStringLiteral("本栏目暂时没有内容。");
inline const QString c_strMissingContent = QStringLiteral("本栏目的内容暂时无法显示。");
inline const QString c_strOpenAlone = QStringLiteral("单独打开“%1”");
inline const QString c_strOpenAddress = QStringLiteral("打开链接");
inline const QString c_strFrameHint = QStringLiteral("如果下面没有显示内容，请单独打开。");
inline const QString c_strDownload = QStringLiteral("下载");
inline const QString c_strFile = QStringLiteral("文件");
inline const QString c_strSize = QStringLiteral("大小");
inline const QString c_strComment = QStringLiteral("说明");
inline const QString c_strNewWindow = QStringLiteral("（在新窗口打开）");
inline const QString c_strPath = QStringLiteral("当前位置");
inline const QString c_strNeighbours = QStringLiteral("上一页和下一页");
inline const QString c_strBefore = QStringLiteral("上一页");
inline const QString c_strBehind = QStringLiteral("下一页");
inline const QString c_strSiteMap = QStringLiteral("网站地图");
inline const QString c_strSearch = QStringLiteral("搜索本课程");
inline const QString c_strDoSearch = QStringLiteral("搜索");
inline const QString c_strSearchHint =
    QStringLiteral("请在上面的搜索框中输入要找的词，几个词之间用空格隔开。");
inline const QString c_strMoreResults = QStringLiteral("显示更多结果");
inline const QString c_strNoScript =
    QStringLiteral("搜索需要浏览器允许运行脚本。您也可以从<a href=\"%1\">网站地图</a>中查找栏目。");
inline const QString c_strMoreSiblings = QStringLiteral("全部 %1 个栏目");

inline const QString c_strKindFolder = QStringLiteral("栏目");
inline const QString c_strKindPage = QStringLiteral("网页");
inline const QString c_strKindFile = QStringLiteral("文件");
inline const QString c_strKindSite = QStringLiteral("站点");
inline const QString c_strKindLink = QStringLiteral("链接");
inline const QString c_strKindVideo = QStringLiteral("视频");
inline const QString c_strKindCourseware = QStringLiteral("课件");
inline const QString c_strKindEmpty = QStringLiteral("空栏目");

} // namespace CompilerText
