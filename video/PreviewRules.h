#pragma once

#include <QRect>
#include <QString>

#include <array>

/// What the preview of a lecture shows where, and how it tells the time.
namespace PreviewRules {

struct Layout {
    QRect Player;
    QRect Status;
    QPoint OutlineHeading;
    QRect Outline;
    QRect Slides;
    /// Play, pause, stop, full screen.
    std::array<QRect, 4> Buttons;
};
/// For a view of that size. In a small one no side is less than 0.
Layout LayoutFor(const QSize& size);

/// " HH:MM:SS/HH:MM:SS" of position and duration in milliseconds, of each field the last two digits.
QString TimeText(qint64 nPosition, qint64 nDuration);

} // namespace PreviewRules
