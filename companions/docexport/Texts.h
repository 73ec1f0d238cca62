#pragma once

#include <QString>

/// Everything that the exporter says to a person, in its window, on the console and in the document.
namespace DocText {

// In the document.
inline const QString c_strContents = QStringLiteral("目　录");
inline const QString c_strTeacher = QStringLiteral("主讲教师：%1");
inline const QString c_strDate = QStringLiteral("yyyy 年 M 月 d 日");
inline const QString c_strFile = QStringLiteral("附件：");
inline const QString c_strFileSize = QStringLiteral("%1（%2）");
inline const QString c_strBytes = QStringLiteral("%1 字节");
inline const QString c_strComment = QStringLiteral("说明：%1");
inline const QString c_strSite = QStringLiteral("导入站点：");
inline const QString c_strCourseware = QStringLiteral("导入课件：");
inline const QString c_strFirstPage = QStringLiteral("首页 %1，共 %2 个文件");
inline const QString c_strVideo = QStringLiteral("授课录像：");
inline const QString c_strVideoFiles = QStringLiteral("%1，共 %2 个文件");
inline const QString c_strAddress = QStringLiteral("外部链接：");
inline const QString c_strSeeNode = QStringLiteral("站内链接：见“%1”");
inline const QString c_strSeeFile = QStringLiteral("站内链接：");
inline const QString c_strEmptyNode = QStringLiteral("（本栏目暂时没有内容。）");
inline const QString c_strMissingContent = QStringLiteral("（本栏目的内容缺失。）");
inline const QString c_strUnreadablePage = QStringLiteral("（本栏目的页面无法读取。）");
inline const QString c_strSlide = QStringLiteral("第 %1 页");
inline const QString c_strReadingBegin = QStringLiteral("（");
inline const QString c_strReadingEnd = QStringLiteral("）");
inline const QString c_strQuoteBegin = QStringLiteral("“");
inline const QString c_strQuoteEnd = QStringLiteral("”");
inline const QString c_strMedium = QStringLiteral("［多媒体内容 %1］");

// What the teacher should know.
inline const QString c_strNoteUnreachable = QStringLiteral("有 %1 个栏目不在课程树上，未导出。");
inline const QString c_strNoteDeadLink = QStringLiteral("栏目“%1”的页面引用了不存在的“%2”。");
inline const QString c_strNoteBadPicture =
    QStringLiteral("栏目“%1”的图片“%2”已损坏，或者是 Word 不支持的格式，未导出。");
inline const QString c_strNoteNoDrawer =
    QStringLiteral("栏目“%1”的图片“%2”未导出：SVG 图形需要软件包 librsvg2-bin。");
inline const QString c_strNoteSlowDrawing = QStringLiteral("栏目“%1”的图片“%2”画的时间过长，未导出。");
inline const QString c_strNoteEmptyDrawing = QStringLiteral("栏目“%1”的图片“%2”画出来是空白，未导出。");
inline const QString c_strNoteHint = QStringLiteral("栏目“%1”的页面还有模板提示，未导出。");
inline const QString c_strDrawing = QStringLiteral("页面中的 SVG 图形");
inline const QString c_strPictureInPage = QStringLiteral("页面中嵌入的图片");
inline const QString c_strNoteNetPicture = QStringLiteral("栏目“%1”的图片“%2”在网络上，未导出。");
inline const QString c_strNoteLinkedFile = QStringLiteral("栏目“%1”的页面链接的文件“%2”不在文档中。");
inline const QString c_strNoteMedium =
    QStringLiteral("栏目“%1”的页面中有 %2 处多媒体内容，文档中只写出名称。");
inline const QString c_strNoteUnreadable = QStringLiteral("栏目“%1”的页面无法读取（%2），未导出。");
inline const QString c_strTooDeep = QStringLiteral("嵌套过深");
inline const QString c_strTooLarge = QStringLiteral("文件过大");
inline const QString c_strNamedFiles = QStringLiteral("%1 个外部文件");
inline const QString c_strNamedSites = QStringLiteral("%1 个导入的站点和课件");
inline const QString c_strNamedVideos = QStringLiteral("%1 段录像");
inline const QString c_strNoteNamedOnly = QStringLiteral("%1在文档中只写出名称。");
inline const QString c_strNoteDeepLevels = QStringLiteral("有 %1 个栏目深于九级，其标题按第九级排版。");
inline const QString c_strNoteNoPageNumbers =
    QStringLiteral("未能算出目录的页码（需要软件包 libreoffice-writer-nogui 和 poppler-utils）。"
                   "在 Word 中用右键点目录，选“更新域”即可填上。");

// Failures.
inline const QString c_strUsage =
    QStringLiteral("用法：VorelDocExport \"课程文件\"\n"
                   "或者：VorelDocExport --silent \"课程文件\" [\"Word 文件.docx\"]（不出现窗口）");
inline const QString c_strHowToExport =
    QStringLiteral("命令行中应当有一个课程文件，而且只有一个。\n请在课程程序中打开课程后导出。\n命令的写法见 "
                   "VorelDocExport --help。");
inline const QString c_strNoConverter =
    QStringLiteral("没有找到转换程序 pandoc。请安装软件包 pandoc，然后重试。");
inline const QString c_strConverterFailed =
    QStringLiteral("转换程序 pandoc 未能写出文档。课程可能太大，或者内存不足。");
inline const QString c_strTimedOut = QStringLiteral("转换用时过长，已停止。");
inline const QString c_strBrokenDocument = QStringLiteral("转换程序写出的文档不完整，未保存。");
inline const QString c_strNoTemporary = QStringLiteral("无法在临时文件夹“%1”中写入：%2。");
inline const QString c_strCannotWrite = QStringLiteral("无法写入“%1”：%2。");
inline const QString c_strCannotRead = QStringLiteral("无法读取“%1”：%2。");
inline const QString c_strForbiddenTarget = QStringLiteral("“%1”不能用：它在课程的数据文件夹中。");
inline const QString c_strNotDocx = QStringLiteral("“%1”不能用：文件名应以 .docx 结尾。");
inline const QString c_strFailed = QStringLiteral("导出失败：%1");
inline const QString c_strUnexpected = QStringLiteral("发生意外错误（%1）。");
inline const QString c_strCancelled = QStringLiteral("已取消，没有写出文件。");
inline const QString c_strDone = QStringLiteral("导出完毕：%1 个栏目，%2 幅图片，位于“%3”。");

// The window.
inline const QString c_strTitle = QStringLiteral("导出Word文件");
inline const QString c_strIntroduction = QStringLiteral("把课程“%1”的全部栏目导出为一个 Word 文件。");
inline const QString c_strTarget = QStringLiteral("保存为(&F)：");
inline const QString c_strFilter = QStringLiteral("Word 文件 (*.docx)");
inline const QString c_strStart = QStringLiteral("导出(&E)");
inline const QString c_strOpen = QStringLiteral("打开(&O)");
inline const QString c_strProgress = QStringLiteral("导出进度");
inline const QString c_strNotOpened =
    QStringLiteral("无法打开文件%1，请您检查文件是否存在、是否安装了编辑该文件的程序。");
inline const QString c_strReplace = QStringLiteral("“%1”已存在，要替换它吗？");
inline const QString c_strReadingCourse = QStringLiteral("正在读取课程...");
inline const QString c_strReadingNodes = QStringLiteral("正在读取栏目：%1 / %2");
inline const QString c_strConverting = QStringLiteral("正在生成 Word 文件...");
inline const QString c_strConvertingPieces = QStringLiteral("正在生成 Word 文件：%1 / %2");
inline const QString c_strNumbering = QStringLiteral("正在计算目录的页码...");
inline const QString c_strNumberingParts = QStringLiteral("正在计算目录的页码：%1 / %2");
inline const QString c_strSaving = QStringLiteral("正在保存...");
inline const QString c_strCancelling = QStringLiteral("正在取消...");

} // namespace DocText
