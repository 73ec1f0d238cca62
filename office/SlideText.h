#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QList>
#include <QString>

namespace Torvane::Office {

struct CSlide {
    /// One line; empty for a slide without any text.
    QString strTitle;
    /// The text in the order of its frames, as HTML: paragraphs, lists and tables.
    QByteArray text;
    bool bHidden = false;
};

/// The slides of a presentation in the flat form of OpenDocument, up to the end of the file or its first
/// fault. Speakers' notes and comments are no part of what an audience sees, and are left out.
QList<CSlide> ReadSlides(QIODevice& file);

} // namespace Torvane::Office
