#pragma once

#include "office/SlideText.h"

#include <QString>
#include <QStringList>

namespace Torvane::Office {

/// Writes the pages of a presentation into the folder that holds its pictures (names without a folder, one
/// for each slide): the viewer "frame.htm", "fullscreen.htm", the list "pres.xml", and "slide0001.htm",
/// "slide0002.htm", … False when one can't be written.
bool WriteSlidePages(const QString& strFolder, const QString& strTitle, const QList<CSlide>& slides,
                     const QStringList& pictures);

/// The page "STEM.htm", which shows "STEM.files\frame.htm".
QByteArray PresentationPage(const QString& strStem, const QString& strTitle);

/// "slide0001.htm" for 0.
QString SlideName(qsizetype nIndex);

} // namespace Torvane::Office
