#pragma once

#include <QByteArray>
#include <QString>

/// The files of the frame itself, which every site gets beside its pages.
namespace FrameParts {

inline const QString c_strFolder = QStringLiteral("vorel");
/// What the compiler's own elements need, whatever the skin.
inline const QString c_strParts = QStringLiteral("vorel/parts.css");
/// The look of a course that has no skin.
inline const QString c_strPlainSkin = QStringLiteral("vorel/site.css");
/// Opens sized windows; the site works without it.
inline const QString c_strScript = QStringLiteral("vorel/site.js");

QByteArray Content(const QString& strPart);

} // namespace FrameParts
