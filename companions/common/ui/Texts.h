#pragma once

#include <QString>

/// What every companion's window says.
namespace CompanionText {

inline const QString c_strBrowse = QStringLiteral("浏览(&B)...");
inline const QString c_strCancel = QStringLiteral("取消");
inline const QString c_strClose = QStringLiteral("关闭");
inline const QString c_strCopy = QStringLiteral("复制(&Y)");
inline const QString c_strReport = QStringLiteral("需要注意的内容(&N)：");
inline const QString c_strReportCount = QStringLiteral("需要注意的内容，共 %1 条(&N)：");

} // namespace CompanionText
