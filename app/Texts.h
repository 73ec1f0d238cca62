#pragma once

#include <QString>

/// Every text of the application shell that a person reads.
namespace AppTexts {

inline const QString c_strLoading = QStringLiteral("正在载入信息...");
inline const QString c_strReady = QStringLiteral("就绪");
inline const QString c_strToolBar = QStringLiteral("工具栏");
inline const QString c_strCapsLock = QStringLiteral("大写");
inline const QString c_strNumLock = QStringLiteral("数字");
inline const QString c_strScrollLock = QStringLiteral("滚动");
inline const QString c_strLockOn = QStringLiteral("：开");
inline const QString c_strLockOff = QStringLiteral("：关");
inline const QString c_strRecent = QStringLiteral("最近课程");
inline const QString c_strValidationFailed = QStringLiteral("验证课程失败！");
inline const QString c_strCompiling = QStringLiteral("正在合成课程，请稍候...");
inline const QString c_strExportingWord = QStringLiteral("正在导出Word文件，请稍候...");
inline const QString c_strStoreLost =
    QStringLiteral("课程数据库无法重新打开，课程将被关闭。已保存的内容不受影响，"
                   "请检查课程所在的磁盘后重新打开该课程。\n\n%1");

inline const QString c_strStartupTitle = QStringLiteral("新建课程");
inline const QString c_strTabNew = QStringLiteral("新建");
inline const QString c_strTabOpen = QStringLiteral("打开");
inline const QString c_strNewCourse = QStringLiteral("新建课程");
inline const QString c_strColumnCourse = QStringLiteral("课程");
inline const QString c_strColumnPath = QStringLiteral("路径");
inline const QString c_strDontShow = QStringLiteral("启动时不显示该对话框(&N)");
inline const QString c_strBrowse = QStringLiteral("浏览(&B)...");
inline const QString c_strOpen = QStringLiteral("打开(&O)");
inline const QString c_strOk = QStringLiteral("确定");
inline const QString c_strCancel = QStringLiteral("取消");
inline const QString c_strChooseCourse = QStringLiteral("请您选择要打开的课程！");
inline const QString c_strOpenCourseTitle = QStringLiteral("打开课程");

inline const QString c_strOptionsTitle = QStringLiteral("选项");
inline const QString c_strOptionNew = QStringLiteral("启动时，显示“新建”对话框(&N)");
inline const QString c_strOptionLast = QStringLiteral("启动时，载入上次的课程(&L)");
inline const QString c_strOptionOffice = QStringLiteral("导入Office文件时始终询问是否另存为HTML页。(&W)");

inline const QString c_strOverallPreview = QStringLiteral("总体效果预览");
inline const QString c_strAboutTitle = QStringLiteral("关于Vorel");
inline const QString c_strBuild = QStringLiteral("Build: %1");

/// What the desktop shows of the program and its files.
inline const QString c_strFileType = QStringLiteral("Vorel Course Project File");
inline const QString c_strProgramComment = QStringLiteral("制作课程网站");

} // namespace AppTexts
