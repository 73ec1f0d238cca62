#pragma once

#include <QString>

/// Everything that the compiler says to a person: to the teacher on the console, and to the visitor in the
/// site.
namespace CompilerText {

// To the teacher.
inline const QString c_strUsage =
    QStringLiteral("用法：VorelCompiler [选项] \"课程文件[|H 或 |S]\"\n"
                   "  课程文件后面没有字母：合成课程网站和申报网站；|H：HTML 格式；|S：课堂格式（Ondrel）。\n"
                   "选项：\n"
                   "  --silent          不出现窗口，供脚本使用：进度和错误写到标准错误，结果写到标准输出\n"
                   "  --output 文件夹   写入这个文件夹（默认是上次的文件夹，或者课程所在的文件夹）\n"
                   "  --help            显示这段说明\n"
                   "返回值：0 合成完毕；1 失败；2 命令有误；3 已取消。");
inline const QString c_strNoArgument = QStringLiteral("没有指明课程文件。");
inline const QString c_strUnknownOption = QStringLiteral("不认识的选项“%1”。");
inline const QString c_strUnknownForm = QStringLiteral("不认识的合成格式“%1”。");
inline const QString c_strNoProject = QStringLiteral("找不到课程文件“%1”。");
inline const QString c_strBadProject =
    QStringLiteral("读取课程文件“%1”失败：文件不完整或已损坏。请用课程的备份恢复后重试。");
inline const QString c_strNoDatabase = QStringLiteral("找不到课程数据库“%1”，请用课程的备份恢复后重试。");
inline const QString c_strBadDatabase =
    QStringLiteral("读取课程数据库失败：数据库已损坏或不是课程数据库（%1）。请用课程的备份恢复后重试。");
inline const QString c_strLockedDatabase = QStringLiteral("课程数据库正被其他程序使用，请关闭后重试（%1）。");
inline const QString c_strNoRoot = QStringLiteral("课程数据库中没有课程的根栏目。");
inline const QString c_strForbiddenOutput =
    QStringLiteral("输出文件夹“%1”不能用：它在课程的数据文件夹里，或者包含整个课程。请另选一个。");
inline const QString c_strOutputIsLink = QStringLiteral("输出文件夹中的“%1”是一个链接，不向它写入。");
inline const QString c_strOutputIsFile = QStringLiteral("输出文件夹“%1”不能用：它是一个文件。请另选一个。");
inline const QString c_strNotAbsolute = QStringLiteral("输出文件夹“%1”不能用：请写出完整的路径。");
inline const QString c_strOtherCourse =
    QStringLiteral("“%1”里是另一门课程的合成结果，请另选一个输出文件夹。");
inline const QString c_strNotRemembered = QStringLiteral("未能在课程文件中记住输出文件夹：%1");
inline const QString c_strOutputBusy =
    QStringLiteral("另一个合成程序正在向“%1”写入，请等它结束后再合成一次。");
inline const QString c_strCannotWrite = QStringLiteral("无法写入“%1”：%2。");
inline const QString c_strCannotRead = QStringLiteral("无法读取“%1”：%2。");
inline const QString c_strNameTaken = QStringLiteral("同名的文件夹挡住了它");
inline const QString c_strChooseAnother = QStringLiteral("请另选一个输出文件夹。");
inline const QString c_strMakeRoom = QStringLiteral("请清理磁盘后再合成一次，或者另选一个输出文件夹。");
inline const QString c_strTakenAway = QStringLiteral("它可能刚刚被移走或删除了，请再合成一次。");
inline const QString c_strRenameIt = QStringLiteral("请把那个文件夹改名或移走后再合成一次。");
inline const QString c_strNoResources =
    QStringLiteral("找不到课程的资源文件夹“%1”，请把它放回原处，或用课程的备份恢复后重试。");
inline const QString c_strDone =
    QStringLiteral("合成完毕：%1 个页面，%2 个其他文件，其中 %3 个有变化，位于“%4”。");
inline const QString c_strDoneApplication = QStringLiteral("申报网站位于“%1”，提交时请连同课程网站。");
inline const QString c_strCancelled = QStringLiteral("已取消。已经写好的文件是完整的，再次合成时会继续。");
inline const QString c_strFailed = QStringLiteral("合成失败：%1");
inline const QString c_strNoWindows = QStringLiteral("无法显示窗口（%1），改为直接合成。");
inline const QString c_strUnexpected = QStringLiteral("发生意外错误（%1）。");
inline const QString c_strLastDirGone =
    QStringLiteral("上次的输出文件夹“%1”已不存在，改为写入课程所在的文件夹。");
inline const QString c_strLastDirOfOriginal =
    QStringLiteral("这门课程是复制来的，上次的输出文件夹“%1”属于原来的那门课程，改为写入课程所在的文件夹。");
inline const QString c_strNotRemoved = QStringLiteral("网站中已经不用的文件“%1”无法删除：%2。");
inline const QString c_strSetAside = QStringLiteral("“%1”不是合成程序写的，已改名保留为“%2”。");
inline const QString c_strNoteNoContent = QStringLiteral("栏目“%1”的内容“%2”不存在。");
inline const QString c_strNoteClosedContent =
    QStringLiteral("栏目“%1”的内容“%2”无法打开：没有读取它或它所在文件夹的权限。");
inline const QString c_strNoteBadAddress = QStringLiteral("栏目“%1”的链接地址“%2”不能用。");
inline const QString c_strNoteDeadLink = QStringLiteral("栏目“%1”的页面引用了不存在的“%2”。");
inline const QString c_strNoteNoPlace =
    QStringLiteral("栏目“%1”的链接“%2”：那个页面还在，但里面没有这个位置，打开后停在页首。");
inline const QString c_strNoteDeadPlace =
    QStringLiteral("栏目“%1”的页面中有链接“%2”：那个页面里没有这个位置，打开后停在页首。");
inline const QString c_strNoteDeadInSite =
    QStringLiteral("栏目“%1”的站点中有 %2 处引用了不存在的文件，例如“%3”中的“%4”。");
inline const QString c_strNoteStray = QStringLiteral("页面引用的“%1”与网站自己的文件同名，未放进网站。");
inline const QString c_strNoteHint = QStringLiteral("栏目“%1”的页面还有模板提示，未放进网站。");
inline const QString c_strNoteHidden = QStringLiteral("有 %1 个隐藏的文件或文件夹没有收入，例如“%2”。");
inline const QString c_strNoteLinks = QStringLiteral("有 %1 个符号链接没有收入，例如“%2”。");
inline const QString c_strNoteUnreadable =
    QStringLiteral("有 %1 个文件或文件夹没有读取权限，或者不是普通文件，没有收入，例如“%2”。");
inline const QString c_strNoteUnreachable = QStringLiteral("有 %1 个栏目不在课程树上，未合成。");
inline const QString c_strNoteRawPage = QStringLiteral("栏目“%1”的页面有错，不能并入网站的框架，原样嵌入。");
inline const QString c_strNoteNoFilmProgram =
    QStringLiteral("栏目“%1”的视频未能转换成浏览器能播放的格式：本机没有安装 ffmpeg，网站只提供下载。");
inline const QString c_strNoteNoFilm =
    QStringLiteral("栏目“%1”的视频未能转换成浏览器能播放的格式，网站只提供下载。");
inline const QString c_strNoteNoScripts = QStringLiteral("栏目“%1”的视频脚本无法读取，讲稿不会随视频换页。");
inline const QString c_strNoteHugeSite =
    QStringLiteral("栏目“%1”的站点网页太多，网站的搜索只收录前面的一部分。");
inline const QString c_strNoteLargeText = QStringLiteral("文件“%1”过大，原样复制，其中的链接未作修正。");

// The window.
inline const QString c_strHowToCompile =
    QStringLiteral("请在课程程序中打开课程后合成。命令的写法见 VorelCompiler --help。");
inline const QString c_strTitle = QStringLiteral("合成课程");
inline const QString c_strIntroSite =
    QStringLiteral("把课程“%1”合成为网站。课程网站写入输出文件夹下的“课程网站”，申报网站写入“申报网站”。");
inline const QString c_strIntroHtml =
    QStringLiteral("把课程“%1”合成为 HTML 格式，不用服务器就能浏览。写入输出文件夹下的“合成/HTML”。");
inline const QString c_strIntroClassroom =
    QStringLiteral("把课程“%1”合成为课堂格式（Ondrel），供上课时全屏演示。写入输出文件夹下的“合成/Ondrel”。");
inline const QString c_strTarget = QStringLiteral("输出文件夹(&F)：");
inline const QString c_strChooseFolder = QStringLiteral("请您选择输出文件夹");
inline const QString c_strMakeFolder = QStringLiteral("文件夹“%1”不存在，要新建它吗？");
inline const QString c_strStart = QStringLiteral("合成(&C)");
inline const QString c_strOpen = QStringLiteral("打开网站(&O)");
inline const QString c_strProgress = QStringLiteral("合成进度");
inline const QString c_strNotOpened = QStringLiteral("无法打开“%1”，请您检查是否安装了浏览器。");
inline const QString c_strReadingCourse = QStringLiteral("正在读取课程...");
inline const QString c_strWriting = QStringLiteral("正在写入：%1 / %2");
inline const QString c_strConverting = QStringLiteral("，%1，正在转换视频“%2”，可能要几分钟...");
inline const QString c_strLectures = QStringLiteral("视频 %1 / %2");
inline const QString c_strCancelling = QStringLiteral("正在取消...");

// To the visitor.
inline const QString c_strPageText = QStringLiteral("正文");
inline const QString c_strNoTitle = QStringLiteral("未命名栏目 %1");
inline const QString c_strCloseNavigation = QStringLiteral("收起目录");
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
inline const QString c_strBelow = QStringLiteral("的下级栏目");
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

inline const QString c_strSteps = QStringLiteral("翻页");
inline const QString c_strFirst = QStringLiteral("第一页（Home）");
inline const QString c_strLast = QStringLiteral("最后一页（End）");
inline const QString c_strOverview = QStringLiteral("目录（O）");
inline const QString c_strFullScreen = QStringLiteral("全屏（F）");
inline const QString c_strKeys = QStringLiteral("按键说明（?）");
inline const QString c_strFilter = QStringLiteral("按标题查找");
inline const QString c_strWithoutScripts = QStringLiteral("浏览器不允许运行脚本，请从这里开始逐页浏览");
inline const QString c_strKeyList = QStringLiteral("→  PageDown  Enter　下一页\n"
                                                   "←  PageUp  Backspace　上一页\n"
                                                   "空格　向下滚动，到底后是下一页\n"
                                                   "Home　第一页　　End　最后一页\n"
                                                   "数字 Enter　转到这一页\n"
                                                   "O　目录　　B　黑屏\n"
                                                   "F　全屏　　Esc　退出全屏");

inline const QString c_strApplication = QStringLiteral("课程申报网站");
inline const QString c_strEnterSite = QStringLiteral("进入课程网站");
inline const QString c_strContents = QStringLiteral("内容总表");
inline const QString c_strFigures = QStringLiteral("课程概况");
inline const QString c_strChapters = QStringLiteral("课程内容");
inline const QString c_strContentsPage = QStringLiteral("内容总表（第 %1 页，共 %2 页）");
inline const QString c_strNumber = QStringLiteral("编号");
inline const QString c_strName = QStringLiteral("栏目");
inline const QString c_strKind = QStringLiteral("类型");
inline const QString c_strTeacherName = QStringLiteral("主讲教师");
inline const QString c_strNodeCount = QStringLiteral("栏目总数");
inline const QString c_strContentCount = QStringLiteral("有内容的栏目");
inline const QString c_strTotalSize = QStringLiteral("内容总量");
inline const QString c_strChapterCount = QStringLiteral("%1 个栏目");

inline const QString c_strOutline = QStringLiteral("授课纲要");
inline const QString c_strSlides = QStringLiteral("“%1”的讲稿");
inline const QString c_strSlidesName = QStringLiteral("讲稿");
inline const QString c_strKindFolder = QStringLiteral("栏目");
inline const QString c_strKindPage = QStringLiteral("网页");
inline const QString c_strKindFile = QStringLiteral("文件");
inline const QString c_strKindSite = QStringLiteral("站点");
inline const QString c_strKindLink = QStringLiteral("链接");
inline const QString c_strKindVideo = QStringLiteral("视频");
inline const QString c_strKindCourseware = QStringLiteral("课件");
inline const QString c_strKindEmpty = QStringLiteral("空栏目");

} // namespace CompilerText
