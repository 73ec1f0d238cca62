#pragma once

#include <QString>

/// Everything that the template fetcher says to a person.
namespace FetchText {

inline const QString c_strUsage = QStringLiteral("用法：VorelFetch \"模板地址,目标文件夹\"");
inline const QString c_strTitle = QStringLiteral("下载模板");
inline const QString c_strCancel = QStringLiteral("取消");
inline const QString c_strClose = QStringLiteral("关闭");

// How far it is.
inline const QString c_strFetching = QStringLiteral("正在下载模板“%1”");
inline const QString c_strProgress = QStringLiteral("下载进度");
inline const QString c_strConnecting = QStringLiteral("正在连接服务器...");
inline const QString c_strReceived = QStringLiteral("已下载 %1");
inline const QString c_strReceivedOf = QStringLiteral("已下载 %1，共 %2");
inline const QString c_strUnpacking = QStringLiteral("正在解压，已完成 %1 个文件");
inline const QString c_strReplacing = QStringLiteral("正在安装模板...");
inline const QString c_strCancelling = QStringLiteral("正在取消...");
inline const QString c_strDone = QStringLiteral("模板“%1”已下载，共 %2 个文件。");
inline const QString c_strCancelled = QStringLiteral("下载已取消。");
inline const QString c_strFailed = QStringLiteral("下载模板失败：%1");
inline const QString c_strUnexpected = QStringLiteral("发生意外错误（%1）。");

// The network.
inline const QString c_strBadAddress = QStringLiteral("模板地址“%1”无效，请检查服务器地址的设置。");
inline const QString c_strHostUnknown = QStringLiteral("找不到服务器，请检查网络和服务器地址的设置。");
inline const QString c_strNoConnection = QStringLiteral("无法与服务器建立连接，请检查网络后重试。");
inline const QString c_strTimedOut = QStringLiteral("服务器长时间没有响应，请稍后重试。");
inline const QString c_strConnectionLost = QStringLiteral("与服务器的连接中断，模板没有下载完整，请重试。");
inline const QString c_strBadReply = QStringLiteral("服务器返回了不可识别的响应。");
inline const QString c_strNotFound = QStringLiteral("服务器上没有这个模板（Http %1 错误）。");
inline const QString c_strHttpStatus = QStringLiteral("服务器没有给出模板（Http %1 错误）。");
inline const QString c_strTooLarge = QStringLiteral("模板太大，超过了 %1。");

// The archive.
inline const QString c_strNotArchive = QStringLiteral("服务器返回的内容不是模板压缩包。");
inline const QString c_strDamaged = QStringLiteral("模板压缩包已损坏，请重试。");
inline const QString c_strEncrypted = QStringLiteral("模板压缩包有密码，无法解压。");
inline const QString c_strTooManyEntries = QStringLiteral("模板压缩包中的文件太多，超过了 %1 个。");
inline const QString c_strBadName = QStringLiteral("模板压缩包中有不能使用的文件名“%1”。");
inline const QString c_strNameLeaves = QStringLiteral("模板压缩包中的“%1”会写到模板之外，已拒绝。");
inline const QString c_strNameTwice = QStringLiteral("模板压缩包中有重名的文件“%1”。");
inline const QString c_strNameTooLong = QStringLiteral("模板压缩包中有过长的文件名“%1”。");
inline const QString c_strNotPlain = QStringLiteral("模板压缩包中的“%1”不是普通文件，已拒绝。");
inline const QString c_strNoTemplate = QStringLiteral("下载的内容不是模板：其中没有页面。");

// The disk.
inline const QString c_strBadTarget = QStringLiteral("目标文件夹“%1”无效。");
inline const QString c_strCannotWrite = QStringLiteral("无法写入“%1”：%2。");
inline const QString c_strBusy = QStringLiteral("另一个模板正在下载，请等它结束后重试。");

} // namespace FetchText
