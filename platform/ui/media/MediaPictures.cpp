#include "platform/ui/media/MediaPictures.h"

#include <QTransform>
#include <QVideoFrame>

extern "C" {
#include <libswscale/swscale.h>
}

#include <array>

namespace {

AVPixelFormat FormatOf(QVideoFrameFormat::PixelFormat format) {
    switch (format) {
    case QVideoFrameFormat::Format_YUV420P:
    case QVideoFrameFormat::Format_YV12:
        return AV_PIX_FMT_YUV420P;
    case QVideoFrameFormat::Format_YUV422P:
        return AV_PIX_FMT_YUV422P;
    case QVideoFrameFormat::Format_YUV420P10:
        return AV_PIX_FMT_YUV420P10;
    case QVideoFrameFormat::Format_UYVY:
        return AV_PIX_FMT_UYVY422;
    case QVideoFrameFormat::Format_YUYV:
        return AV_PIX_FMT_YUYV422;
    case QVideoFrameFormat::Format_NV12:
        return AV_PIX_FMT_NV12;
    case QVideoFrameFormat::Format_NV21:
        return AV_PIX_FMT_NV21;
    case QVideoFrameFormat::Format_Y8:
        return AV_PIX_FMT_GRAY8;
    case QVideoFrameFormat::Format_Y16:
        return AV_PIX_FMT_GRAY16;
    case QVideoFrameFormat::Format_P010:
        return AV_PIX_FMT_P010;
    default:
        return AV_PIX_FMT_NONE;
    }
}

/// The frame's memory while it is looked at.
class CMapped {
public:
    explicit CMapped(const QVideoFrame& frame) : m_frame(frame) { m_frame.map(QVideoFrame::ReadOnly); }
    ~CMapped() {
        if (m_frame.isMapped())
            m_frame.unmap();
    }
    CMapped(const CMapped&) = delete;
    CMapped& operator=(const CMapped&) = delete;
    QVideoFrame* operator->() { return &m_frame; }

private:
    QVideoFrame m_frame;
};

/// Films of more lines than this are in the colours of high definition where they don't say.
constexpr int c_nStandardLines = 576;

/// By which numbers brightness and colour were parted, as the library counts them.
int MatrixOf(const QVideoFrameFormat& format) {
    switch (format.colorSpace()) {
    case QVideoFrameFormat::ColorSpace_BT601:
    case QVideoFrameFormat::ColorSpace_AdobeRgb:
        return SWS_CS_ITU601;
    case QVideoFrameFormat::ColorSpace_BT709:
        return SWS_CS_ITU709;
    case QVideoFrameFormat::ColorSpace_BT2020:
        return SWS_CS_BT2020;
    case QVideoFrameFormat::ColorSpace_Undefined:
        break;
    }
    return format.frameHeight() > c_nStandardLines ? SWS_CS_ITU709 : SWS_CS_ITU601;
}

/// Without this the library takes every film for one of standard definition in the narrow range.
void SetColours(SwsContext* pContext, const QVideoFrameFormat& format) {
    int* pIgnored = nullptr;
    int nFromFull = 0;
    int nToFull = 0;
    int nBrightness = 0;
    int nContrast = 0;
    int nSaturation = 0;
    // Shades of grey have no such numbers.
    if (sws_getColorspaceDetails(pContext, &pIgnored, &nFromFull, &pIgnored, &nToFull, &nBrightness,
                                 &nContrast, &nSaturation) < 0)
        return;
    const bool bFull = format.colorRange() == QVideoFrameFormat::ColorRange_Full;
    sws_setColorspaceDetails(pContext, sws_getCoefficients(MatrixOf(format)), bFull ? 1 : 0,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, nBrightness, nContrast, nSaturation);
}

QSize Shrunk(const QSize& size, const QSize& room) {
    const bool bFits = size.width() <= room.width() && size.height() <= room.height();
    return bFits ? size : size.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
}

} // namespace

CMediaPictures::~CMediaPictures() {
    sws_freeContext(m_pContext);
}

QImage CMediaPictures::Make(const QVideoFrame& frame, const QSize& room, double dPoint, int nTurn) {
    const QSize size = frame.size();
    if (size.isEmpty() || room.isEmpty())
        return {};
    // Never smaller than it is for the sake of its proportions.
    const QSize shown = dPoint > 1 ? QSize(qRound(size.width() * dPoint), size.height())
                                   : QSize(size.width(), qRound(size.height() / dPoint));
    const bool bSide = nTurn == 90 || nTurn == 270;
    const QImage image = MakeUpright(frame, Shrunk(shown, bSide ? room.transposed() : room));
    return nTurn == 0 || image.isNull() ? image : image.transformed(QTransform().rotate(nTurn));
}

QImage CMediaPictures::MakeUpright(const QVideoFrame& frame, const QSize& target) {
    const QSize size = frame.size();
    const AVPixelFormat format = FormatOf(frame.pixelFormat());
    if (format == AV_PIX_FMT_NONE) {
        const QImage image = frame.toImage();
        return image.isNull() ? image : image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    CMapped mapped(frame);
    if (!mapped->isMapped())
        return {};
    m_pContext =
        sws_getCachedContext(m_pContext, size.width(), size.height(), format, target.width(), target.height(),
                             AV_PIX_FMT_RGB32, SWS_FAST_BILINEAR, nullptr, nullptr, nullptr);
    QImage image(target, QImage::Format_RGB32);
    if (m_pContext == nullptr || image.isNull())
        return {};
    SetColours(m_pContext, frame.surfaceFormat());
    std::array<const uint8_t*, 4> planes{};
    std::array<int, 4> lines{};
    for (int nPlane = 0; nPlane < mapped->planeCount(); ++nPlane) {
        planes[static_cast<std::size_t>(nPlane)] = mapped->bits(nPlane);
        lines[static_cast<std::size_t>(nPlane)] = mapped->bytesPerLine(nPlane);
    }
    if (frame.pixelFormat() == QVideoFrameFormat::Format_YV12) {
        std::swap(planes[1], planes[2]);
        std::swap(lines[1], lines[2]);
    }
    uint8_t* const targets[] = {image.bits()};
    const int targetLines[] = {static_cast<int>(image.bytesPerLine())};
    sws_scale(m_pContext, planes.data(), lines.data(), 0, size.height(), targets, targetLines);
    return image;
}
