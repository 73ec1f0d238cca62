#pragma once

#include "office/OfficeFiles.h"

#include <QString>
#include <QStringList>

/// A presentation as the pages and pictures of its slides, in the folder of the lecture.
struct SSlides {
    /// The pages, relative to the lecture's folder, with "/".
    QStringList Pages;
    /// The pictures; native paths.
    QStringList Pictures;
    QStringList Titles;
};

/// Converts the presentation into the folder (both in backslash form). What stands there of one before goes.
/// mayGoOn is asked every few milliseconds. Throws Torvane::CRunException, also when it was given up.
SSlides ConvertSlides(const QString& strPresentation, const QString& strFolder,
                      const Torvane::Office::MayGoOn& mayGoOn);

/// Removes what ConvertSlides has made.
void RemoveSlides(const QString& strFolder);

/// The page that shows a slide at a time, and the pointer on it. dRatio is the slides' width by their height.
QByteArray SlidePage(const QString& strTitle, const QStringList& pages, double dRatio);
