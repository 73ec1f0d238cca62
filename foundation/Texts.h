#pragma once

#include <QString>

/// The messages of failed file operations. Places stand for native paths.
namespace FileText {

inline const QString c_strCannotOpen = QStringLiteral("无法打开文件 %1 ！");
inline const QString c_strCannotGetSize = QStringLiteral("无法获取文件大小 %1 ！");
inline const QString c_strCannotCopy = QStringLiteral("无法拷贝文件 %1 到 %2！");
inline const QString c_strCannotDeleteFile = QStringLiteral("无法删除文件 %1！");
inline const QString c_strCannotSetAttributes = QStringLiteral("无法为路径 %1 设置属性！");
inline const QString c_strCannotMakeFolder = QStringLiteral("无法创建目录 %1 ！");
inline const QString c_strCannotFlush = QStringLiteral("无法将目录 %1 的内容写入磁盘！");
inline const QString c_strBadPath = QStringLiteral("路径 %1 无效！");
// Without blanks, unlike the others.
inline const QString c_strCannotDeleteFolder = QStringLiteral("无法删除目录%1！");

} // namespace FileText
