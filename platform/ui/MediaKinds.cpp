#include "platform/ui/MediaKinds.h"

#include "platform/base/FileOpening.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace MediaKinds {

namespace {

struct SMedia {
    QString strName;
    EWay Way = EWay::Program;
    /// The engine has it if it was built with the decoder.
    bool bEngineMay = false;
};

const QHash<QString, SMedia>& Media() {
    const auto words = [](const char* szWords) { return QString::fromLatin1(szWords).split(u' '); };
    static const QHash<QString, SMedia> s_media = [&] {
        const struct {
            const char* szExtensions;
            SMedia Media;
        } rows[] = {
            {"wmv asf wm", {QStringLiteral("Windows Media 视频"), EWay::Player}},
            {"wma", {QStringLiteral("Windows Media 音频"), EWay::Player}},
            {"asx wvx wax wmx", {QStringLiteral("Windows Media 播放列表"), EWay::Program}},
            {"avi divx", {QStringLiteral("AVI 视频"), EWay::Player}},
            {"mpg mpeg mpe m1v m2v mpv vob m2ts", {QStringLiteral("MPEG 视频"), EWay::Player}},
            {"mp2 mpa", {QStringLiteral("MPEG 音频"), EWay::Player}},
            {"rm rmvb rv", {QStringLiteral("RealMedia 视频"), EWay::Player}},
            {"ra", {QStringLiteral("RealMedia 音频"), EWay::Player}},
            {"ram rpm", {QStringLiteral("RealMedia 播放列表"), EWay::Program}},
            {"mov qt", {QStringLiteral("QuickTime 视频"), EWay::Player}},
            {"flv f4v", {QStringLiteral("Flash 视频"), EWay::Player}},
            {"mkv", {QStringLiteral("Matroska 视频"), EWay::Player}},
            {"3gp 3g2", {QStringLiteral("手机视频"), EWay::Player}},
            {"aif aiff au", {QStringLiteral("声音"), EWay::Player}},
            {"ape", {QStringLiteral("APE 音频"), EWay::Player}},
            {"amr", {QStringLiteral("AMR 录音"), EWay::Player}},
            {"swf spl", {QStringLiteral("Flash 动画"), EWay::Program}},
            {"dcr dxr", {QStringLiteral("Shockwave 动画"), EWay::Program}},
            {"mid midi rmi kar", {QStringLiteral("MIDI 音乐"), EWay::Program}},
            {"mp4 m4v", {QStringLiteral("MP4 视频"), EWay::Player, true}},
            {"m4a aac", {QStringLiteral("AAC 音频"), EWay::Player, true}},
            {"mp3", {QStringLiteral("MP3 音频"), EWay::Player, true}},
            {"wav", {QStringLiteral("WAV 音频"), EWay::Player, true}},
            {"ogg oga opus", {QStringLiteral("OGG 音频"), EWay::Player, true}},
            {"ogv", {QStringLiteral("OGG 视频"), EWay::Player, true}},
            {"webm", {QStringLiteral("WebM 视频"), EWay::Player, true}},
            {"flac", {QStringLiteral("FLAC 音频"), EWay::Player, true}},
        };
        QHash<QString, SMedia> media;
        for (const auto& row : rows) {
            for (const QString& strExtension : words(row.szExtensions))
                media.insert(strExtension, row.Media);
        }
        return media;
    }();
    return s_media;
}

/// Pictures, texts and pages; what has no known kind the engine looks into.
bool IsShownByBrowser(const QString& strClass) {
    static const QSet<QString> s_known = {
        QStringLiteral("image/png"),        QStringLiteral("image/jpeg"),
        QStringLiteral("image/gif"),        QStringLiteral("image/bmp"),
        QStringLiteral("image/webp"),       QStringLiteral("image/vnd.microsoft.icon"),
        QStringLiteral("application/xml"),  QStringLiteral("application/xhtml+xml"),
        QStringLiteral("application/json"), QStringLiteral("application/javascript"),
        QStringLiteral("image/svg+xml"),    QStringLiteral("application/x-mimearchive")};
    return strClass.isEmpty() || strClass.startsWith(QLatin1StringView("text/")) ||
           s_known.contains(strClass);
}

} // namespace

SKind Of(const QString& strExtension) {
    const auto known = Media().constFind(strExtension.mid(1).toLower());
    if (known != Media().cend())
        return {known->Way, known->strName};
    const QString strName = Platform::GetFileTypeName(strExtension);
    return {IsShownByBrowser(Platform::GetFileClass(strExtension)) ? EWay::Browser : EWay::Program, strName};
}

SKind OfFile(const QString& strPath) {
    const qsizetype nDot = strPath.lastIndexOf(u'.');
    const bool bInName = nDot > strPath.lastIndexOf(u'/') && nDot > strPath.lastIndexOf(u'\\');
    return bInName ? Of(strPath.mid(nDot)) : SKind();
}

QString AsJson() {
    QJsonObject kinds;
    for (auto media = Media().cbegin(); media != Media().cend(); ++media)
        kinds.insert(media.key(), QJsonArray{media->strName, media->bEngineMay});
    return QString::fromUtf8(QJsonDocument(kinds).toJson(QJsonDocument::Compact));
}

} // namespace MediaKinds
