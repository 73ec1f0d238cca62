#pragma once

#include <QString>

/// Every text of this folder that a person reads, and the fixed names of what it writes.
namespace CourseText {

// Creating a course.
inline const QString c_strMakingData = QStringLiteral("正在建立数据文件...");
inline const QString c_strRecordingInfo = QStringLiteral("正在记录课程信息...");
inline const QString c_strMakingNodes = QStringLiteral("正在建立初始栏目...");
inline const QString c_strCreateFolderFailed = QStringLiteral("创建课程文件夹失败!");
inline const QString c_strCopySeedFailed = QStringLiteral("拷贝初始数据失败！");
inline const QString c_strCopySkinFailed = QStringLiteral("拷贝Skin文件夹失败！");
inline const QString c_strCopyTitlesFailed = QStringLiteral("拷贝自定义标题配置文件失败！");
inline const QString c_strRecordFailed = QStringLiteral("记录课程信息失败!");
inline const QString c_strOpenNewDatabaseFailed = QStringLiteral("打开课程数据库失败！");
inline const QString c_strWriteDatabaseFailed = QStringLiteral("数据库写入失败!");
inline const QString c_strMakeNodesFailed = QStringLiteral("建立初始栏目失败!");
inline const QString c_strCreateFailed = QStringLiteral("创建课程时发生异常，请您重试!");

// Opening a course.
inline const QString c_strReadingInfo = QStringLiteral("正在读取课程信息...");
inline const QString c_strConnecting = QStringLiteral("正在连接课程数据库...");
inline const QString c_strVerifying = QStringLiteral("正在验证课程信息...");
inline const QString c_strCheckingTemplate = QStringLiteral("正在检查模板文件...");
inline const QString c_strProjectMissing = QStringLiteral("找不到课程文件，该课程可能已被移动或删除!");
inline const QString c_strReadProjectFailed = QStringLiteral("读取课程文件失败！");
inline const QString c_strConnectFailed = QStringLiteral("连接课程数据库失败!");
inline const QString c_strTemplateMissing =
    QStringLiteral("系统检测到课程模板不存在，可能是模板文件夹被更名或移动，\n请您重新选择");
inline const QString c_strNoticeTitle = QStringLiteral("提示");
inline const QString c_strOpenFailed = QStringLiteral("打开课程时发生错误，请您重试!");

// Closing a course.
inline const QString c_strClosing = QStringLiteral("正在关闭课程...");
inline const QString c_strReportFailed = QStringLiteral("更新服务器信息失败。");

// Setting another template.
inline const QString c_strTreesDiffer =
    QStringLiteral("源模板和目标模板栏目不同，如果您要选择该模板，请使用如下方法:\r\n"
                   "1. 选择教师名节点，右键，导出。\r\n"
                   "2.新建课程，选择新的模板\r\n"
                   "3.选择教师名节点，导入。");
inline const QString c_strReplacingSkin = QStringLiteral("正在更换模板...");
inline const QString c_strReplaceSkinFailed = QStringLiteral("拷贝Skin相关文件夹失败！");
inline const QString c_strTemplateSet = QStringLiteral("模板修改成功！");

// File dialogs and dialog 350.
inline const QString c_strProjectFileLabel = QStringLiteral("课程文件");
inline const QString c_strSetTemplateTitle = QStringLiteral("设置模板");
inline const QString c_strSetTemplateLabel = QStringLiteral("请您选择模板");
inline const QString c_strTemplatePicture = QStringLiteral("模板预览");
inline const QString c_strOk = QStringLiteral("确定");
inline const QString c_strCancel = QStringLiteral("取消");

// What the system says of a failed call of the store.
inline const QString c_strSystemFailed = QStringLiteral("未指定的错误");
inline const QString c_strSystemNotFound = QStringLiteral("系统找不到指定的文件。");
inline const QString c_strSystemDenied = QStringLiteral("拒绝访问。");
inline const QString c_strSystemInUse = QStringLiteral("另一个程序正在使用此文件，进程无法访问。");
inline const QString c_strSystemNoMemory = QStringLiteral("内存资源不足，无法完成此操作。");
inline const QString c_strSystemDevice = QStringLiteral("由于 I/O 设备错误，无法运行此项请求。");
inline const QString c_strSystemCorrupt = QStringLiteral("文件或目录损坏且无法读取。");
inline const QString c_strSystemDiskFull = QStringLiteral("磁盘空间不足。");
inline const QString c_strSystemMismatch = QStringLiteral("类型不匹配。");
inline const QString c_strSystemOverflow = QStringLiteral("超出当前范围。");

} // namespace CourseText
