#pragma once

#include <QImage>
#include <QSize>

class QVideoFrame;
struct SwsContext;

/// Makes pictures for the screen of a decoder's frames, in one step the smaller size and the colours. Without
/// the graphics card: not every school machine's driver works, and the toolkit's own way loads it.
class CMediaPictures {
public:
    CMediaPictures() = default;
    ~CMediaPictures();
    CMediaPictures(const CMediaPictures&) = delete;
    CMediaPictures& operator=(const CMediaPictures&) = delete;

    /// Whole and in its proportions, no larger than the room and than itself; null for a frame that can't be
    /// read. dPoint and nTurn as SMediumFacts has them.
    QImage Make(const QVideoFrame& frame, const QSize& room, double dPoint = 1, int nTurn = 0);

private:
    QImage MakeUpright(const QVideoFrame& frame, const QSize& target);

    SwsContext* m_pContext = nullptr;
};
