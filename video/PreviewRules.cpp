#include "video/PreviewRules.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nMargin = 10;
constexpr int c_nLeftWidth = 222;
constexpr int c_nFilmHeight = 167;
constexpr int c_nStatusHeight = 20;
constexpr int c_nHeadingTop = 207;
constexpr int c_nOutlineTop = 232;
constexpr int c_nSlidesLeft = 242;
constexpr int c_nBelowSlides = 70;
constexpr int c_nButtonHeight = 30;
constexpr int c_nButtonAboveEnd = 40;
constexpr int c_nButtonWidth = 80;
/// Behind the first button and the third, and in the middle.
constexpr std::array c_gaps{10, 5, 10};

QString Field(qint64 nValue) {
    return u"%1"_s.arg(nValue, 2, 10, QChar(u'0')).last(2);
}

QString Clock(qint64 nMilliseconds) {
    const qint64 nSeconds = qMax<qint64>(nMilliseconds, 0) / 1000;
    return Field(nSeconds / 3600) + u':' + Field(nSeconds / 60 % 60) + u':' + Field(nSeconds % 60);
}

} // namespace

PreviewRules::Layout PreviewRules::LayoutFor(const QSize& size) {
    Layout layout;
    layout.Player = {c_nMargin, c_nMargin, c_nLeftWidth, c_nFilmHeight};
    layout.Status = {c_nMargin, c_nMargin + c_nFilmHeight, c_nLeftWidth, c_nStatusHeight};
    layout.OutlineHeading = {c_nMargin, c_nHeadingTop};
    layout.Outline = {c_nMargin, c_nOutlineTop, c_nLeftWidth,
                      std::max(size.height() - c_nOutlineTop - c_nMargin, 0)};
    const int nSlidesWidth = std::max(size.width() - c_nSlidesLeft - c_nMargin, 0);
    layout.Slides = {c_nSlidesLeft, c_nMargin, nSlidesWidth, std::max(size.height() - c_nBelowSlides, 0)};
    const int nButton = std::clamp(nSlidesWidth / 4 - 30, 0, c_nButtonWidth);
    int nLeft = c_nSlidesLeft + (nSlidesWidth - 4 * nButton - c_gaps[0] - c_gaps[1] - c_gaps[2]) / 2;
    for (size_t i = 0; i < layout.Buttons.size(); ++i) {
        layout.Buttons[i] = {nLeft, size.height() - c_nButtonAboveEnd, nButton, c_nButtonHeight};
        nLeft += nButton + (i < c_gaps.size() ? c_gaps[i] : 0);
    }
    return layout;
}

QString PreviewRules::TimeText(qint64 nPosition, qint64 nDuration) {
    return u' ' + Clock(nPosition) + u'/' + Clock(nDuration);
}
