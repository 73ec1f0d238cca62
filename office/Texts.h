#pragma once

#include <QString>

/// What the converted pages say themselves, beside the pages in office/parts.
namespace Torvane::Office::Texts {

inline const QString c_strSheets = QStringLiteral("工作表");
/// A slide without a title.
inline const QString c_strSlide = QStringLiteral("第 %1 页");

} // namespace Torvane::Office::Texts
