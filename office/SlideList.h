#pragma once

#include <QList>
#include <QString>

namespace Torvane::Office {

struct SlideEntry {
    /// The slide's file in the folder: "slide0001.htm".
    QString strFile;
    QString strTitle;
};

/// Whether a file is a page that shows one slide of a presentation beside its outline, or the page around it.
bool IsSlideViewer(const QString& strPath);

/// The slides of a presentation that was saved as a web page, here or by another program, in their order. The
/// folder is in backslash form. What can't be read is left out; never throws, from any thread.
QList<SlideEntry> SlidesIn(const QString& strFolder);

} // namespace Torvane::Office
