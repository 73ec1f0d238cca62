#include "platform/ui/media/MediaProbe.h"

#include <QFile>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
}

#include <cmath>
#include <memory>
#include <utility>

namespace {

/// Formats that hold what they play, and lead nowhere else.
constexpr const char* c_szFormats = "asf,xwma,avi,mpeg,mpegvideo,mpegts,m4v,h264,rm,mov,mp4,m4a,3gp,3g2,flv,"
                                    "live_flv,matroska,webm,ogg,mp3,aac,"
                                    "wav,w64,flac,aiff,au,ape,amr,amrnb,amrwb";
/// No film of a course is larger, and a damaged one that says so would fill the memory.
constexpr int c_nMaxSide = 8192;
constexpr int c_nMaxSampleRate = 768000;
constexpr unsigned int c_nMaxMarkers = 100000;

struct SClose {
    void operator()(AVFormatContext* pMedium) const { avformat_close_input(&pMedium); }
};

bool IsSoundPicture(const AVStream& stream) {
    const AVCodecParameters& picture = *stream.codecpar;
    return picture.width > 0 && picture.height > 0 && picture.width <= c_nMaxSide &&
           picture.height <= c_nMaxSide && stream.avg_frame_rate.num > 0 && stream.avg_frame_rate.den > 0;
}

/// The cover of a film or a song; it has no time. Nobody plays it.
bool IsCover(const AVStream& stream) {
    return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0 && stream.codecpar->width <= c_nMaxSide &&
           stream.codecpar->height <= c_nMaxSide;
}

bool IsSoundSound(const AVStream& stream) {
    const AVCodecParameters& sound = *stream.codecpar;
    return sound.ch_layout.nb_channels > 0 && sound.sample_rate > 0 && sound.sample_rate <= c_nMaxSampleRate;
}

QList<qint64> MarkersOf(const AVFormatContext& medium) {
    QList<qint64> markers;
    for (unsigned int n = 0; n < qMin(medium.nb_chapters, c_nMaxMarkers); ++n) {
        const AVChapter& chapter = *medium.chapters[n];
        if (chapter.time_base.num > 0 && chapter.time_base.den > 0)
            markers.append(qMax<qint64>(av_rescale_q(chapter.start, chapter.time_base, {1, 1000}), 0));
    }
    return markers;
}

/// Nothing that a film says is taken for more than a film can mean.
double PointOf(AVFormatContext& medium, AVStream& stream) {
    constexpr double c_dMost = 8;
    const AVRational point = av_guess_sample_aspect_ratio(&medium, &stream, nullptr);
    const double dPoint = point.num > 0 && point.den > 0 ? av_q2d(point) : 1;
    return dPoint > 1 / c_dMost && dPoint < c_dMost ? dPoint : 1;
}

int TurnOf(const AVStream& stream) {
    constexpr std::size_t c_nMatrix = 9 * sizeof(int32_t);
    std::size_t nBytes = 0;
    const uint8_t* pMatrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &nBytes);
    if (pMatrix == nullptr || nBytes < c_nMatrix)
        return 0;
    // To the left, and no number where the matrix makes no sense.
    const double dTurn = av_display_rotation_get(reinterpret_cast<const int32_t*>(pMatrix));
    return std::isfinite(dTurn) ? (static_cast<int>(std::lround(-dTurn / 90)) % 4 + 4) % 4 * 90 : 0;
}

} // namespace

bool IsPlainMedium(const QString& strFile, const std::function<bool()>& goOn, SMediumFacts& facts) {
    facts = {};
    AVFormatContext* pOpened = avformat_alloc_context();
    if (pOpened == nullptr)
        return false;
    pOpened->interrupt_callback = {
        [](void* pGoOn) { return (*static_cast<const std::function<bool()>*>(pGoOn))() ? 0 : 1; },
        const_cast<std::function<bool()>*>(&goOn)};
    AVDictionary* pOptions = nullptr;
    av_dict_set(&pOptions, "format_whitelist", c_szFormats, 0);
    av_dict_set(&pOptions, "protocol_whitelist", "file", 0);
    const QByteArray url = "file:" + QFile::encodeName(strFile);
    const int nOpened = avformat_open_input(&pOpened, url.constData(), nullptr, &pOptions);
    av_dict_free(&pOptions);
    if (nOpened < 0)
        return false;
    const std::unique_ptr<AVFormatContext, SClose> pMedium(pOpened);
    if (avformat_find_stream_info(pMedium.get(), nullptr) < 0)
        return false;
    bool bAny = false;
    bool bPicture = false;
    for (unsigned int nStream = 0; nStream < pMedium->nb_streams; ++nStream) {
        AVStream& stream = *pMedium->streams[nStream];
        const AVMediaType type = stream.codecpar->codec_type;
        if ((type != AVMEDIA_TYPE_VIDEO && type != AVMEDIA_TYPE_AUDIO) || IsCover(stream))
            continue;
        if (stream.time_base.num <= 0 || stream.time_base.den <= 0 ||
            (type == AVMEDIA_TYPE_VIDEO ? !IsSoundPicture(stream) : !IsSoundSound(stream)))
            return false;
        if (type == AVMEDIA_TYPE_VIDEO && !std::exchange(bPicture, true)) {
            facts.dPoint = PointOf(*pMedium, stream);
            facts.nTurn = TurnOf(stream);
        }
        bAny = bAny || avcodec_find_decoder(stream.codecpar->codec_id) != nullptr;
    }
    facts.Markers = MarkersOf(*pMedium);
    return bAny;
}
