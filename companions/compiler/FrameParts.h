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
/// The search over the course: its page, its script, and the folder of what it reads.
inline const QString c_strSearchPage = QStringLiteral("search.html");
inline const QString c_strSearchScript = QStringLiteral("vorel/search.js");
inline const QString c_strSearchFolder = QStringLiteral("vorel/search");

/// In the page of a recorded lecture, and in its slide page.
inline const QString c_strLectureScript = QStringLiteral("vorel/lecture.js");
inline const QString c_strSlidesScript = QStringLiteral("vorel/slides.js");

/// Anchors of the frame, unlike any that a page within it would have.
constexpr const char* c_szContentId = "v-content";
constexpr const char* c_szNavigationId = "v-nav";

QByteArray Content(const QString& strPart);

/// Words that are read out and not shown.
QString HiddenHint(const QString& strText);

} // namespace FrameParts
