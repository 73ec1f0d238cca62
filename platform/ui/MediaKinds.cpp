#include "platform/ui/MediaKinds.h"

#include "platform/base/FileOpening.h"
#include "platform/ui/AccessRules.h"
#include "platform/ui/Texts.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStringList>

#include <utility>

namespace MediaKinds {

namespace {

/// What the engine makes of a medium if it was built with the decoder.
enum class EEngine { Never, MayShow, MaySound };

struct SMedia {
    QString strName;
    EWay Way = EWay::Program;
    EEngine Engine = EEngine::Never;
};

QStringList Words(const char* szWords) {
    return QString::fromLatin1(szWords).split(u' ');
}

const QHash<QString, SMedia>& Media() {
    static const QHash<QString, SMedia> s_media = [] {
        const struct {
            const char* szExtensions;
            SMedia Media;
        } rows[] = {
            {"wmv asf wm", {UiTexts::c_strWindowsVideo, EWay::Player}},
            {"wma", {UiTexts::c_strWindowsSound, EWay::Player}},
            {"asx wvx wax wmx", {UiTexts::c_strWindowsList, EWay::Program}},
            {"avi divx", {UiTexts::c_strAviVideo, EWay::Player}},
            {"mpg mpeg mpe m1v m2v mpv vob m2ts", {UiTexts::c_strMpegVideo, EWay::Player}},
            {"mp2 mpa", {UiTexts::c_strMpegSound, EWay::Player}},
            {"rm rmvb rv", {UiTexts::c_strRealVideo, EWay::Player}},
            {"ra", {UiTexts::c_strRealSound, EWay::Player}},
            {"ram rpm", {UiTexts::c_strRealList, EWay::Program}},
            {"mov qt", {UiTexts::c_strQuickTimeVideo, EWay::Player}},
            {"flv f4v", {UiTexts::c_strFlashVideo, EWay::Player}},
            {"mkv", {UiTexts::c_strMatroskaVideo, EWay::Player}},
            {"3gp 3g2", {UiTexts::c_strPhoneVideo, EWay::Player}},
            {"aif aiff au", {UiTexts::c_strAnySound, EWay::Player}},
            {"ape", {UiTexts::c_strApeSound, EWay::Player}},
            {"amr", {UiTexts::c_strAmrSound, EWay::Player}},
            {"swf spl", {UiTexts::c_strFlashAnimation, EWay::Program}},
            {"dcr dxr", {UiTexts::c_strShockwave, EWay::Program}},
            {"mid midi rmi kar", {UiTexts::c_strMidi, EWay::Program}},
            {"mp4 m4v", {UiTexts::c_strMp4Video, EWay::Player, EEngine::MayShow}},
            {"m4a aac", {UiTexts::c_strAacSound, EWay::Player, EEngine::MaySound}},
            {"mp3", {UiTexts::c_strMp3Sound, EWay::Player, EEngine::MaySound}},
            {"wav", {UiTexts::c_strWavSound, EWay::Player, EEngine::MaySound}},
            {"ogg oga opus", {UiTexts::c_strOggSound, EWay::Player, EEngine::MaySound}},
            {"ogv", {UiTexts::c_strOggVideo, EWay::Player, EEngine::MayShow}},
            {"webm", {UiTexts::c_strWebmVideo, EWay::Player, EEngine::MayShow}},
            {"flac", {UiTexts::c_strFlacSound, EWay::Player, EEngine::MaySound}},
        };
        QHash<QString, SMedia> media;
        for (const auto& row : rows) {
            for (const QString& strExtension : Words(row.szExtensions))
                media.insert(strExtension, row.Media);
        }
        return media;
    }();
    return s_media;
}

/// What pages of a course have in frames besides media and pages. The desktop knows what they are called.
const QStringList& Documents() {
    static const QStringList s_documents =
        Words("doc docx dot dotx rtf wps wpt odt xls xlsx xlt et ods csv ppt pptx pps ppsx pot dps odp pdf "
              "caj vsd mpp pub mdb accdb chm rar zip 7z gz tar exe msi psd ai cdr dwg dxf tif tiff wmf emf "
              "eps ps djvu epub iso ttf");
    return s_documents;
}

QJsonArray Entry(const QString& strName, EEngine engine) {
    return {strName, engine != EEngine::Never, engine == EEngine::MaySound};
}

/// What the engine is told of each extension.
QJsonObject Files() {
    QJsonObject files;
    for (const QString& strExtension : Documents()) {
        const SKind kind = Of(u'.' + strExtension);
        if (kind.Way != EWay::Browser)
            files.insert(strExtension, Entry(kind.strName.isEmpty() ? UiTexts::c_strAnyFile : kind.strName,
                                             EEngine::Never));
    }
    for (auto media = Media().cbegin(); media != Media().cend(); ++media)
        files.insert(media.key(), Entry(media->strName, media->Engine));
    return files;
}

/// Plug-ins by their class and by the type that a page asks for; of the types the first that fits counts.
QJsonObject PlugIns() {
    const QJsonObject classes{
        {QStringLiteral("d27cdb6e-ae6d-11cf-96b8-444553540000"), UiTexts::c_strFlashAnimation},
        {QStringLiteral("166b1bca-3f9c-11cf-8075-444553540000"), UiTexts::c_strShockwave},
        {QStringLiteral("22d6f312-b0f6-11d0-94ab-0080c74c7e95"), UiTexts::c_strWindowsVideo},
        {QStringLiteral("6bf52a52-394a-11d3-b153-00c04f79faa6"), UiTexts::c_strWindowsVideo},
        {QStringLiteral("05589fa1-c356-11ce-bf01-00aa0055595a"), UiTexts::c_strWindowsVideo},
        {QStringLiteral("cfcdaa03-8be4-11cf-b84b-0020afbbccfa"), UiTexts::c_strRealVideo},
        {QStringLiteral("02bf25d5-8c17-4b23-bc80-d3488abddc6b"), UiTexts::c_strQuickTimeVideo},
    };
    const std::pair<const char*, QString> patterns[] = {
        {"shockwave-flash|futuresplash", UiTexts::c_strFlashAnimation},
        {"application/x-director", UiTexts::c_strShockwave},
        {"x-mplayer2|x-ms-|x-oleobject", UiTexts::c_strWindowsVideo},
        {"realaudio|realmedia", UiTexts::c_strRealVideo},
        {"quicktime", UiTexts::c_strQuickTimeVideo},
        {"midi?$", UiTexts::c_strMidi},
        {"^video/", UiTexts::c_strAnyVideo},
        {"^audio/", UiTexts::c_strAnySound},
    };
    QJsonArray types;
    for (const auto& [szPattern, strName] : patterns)
        types.append(QJsonArray{QLatin1StringView(szPattern), strName});
    return {{QStringLiteral("classes"), classes}, {QStringLiteral("types"), types}};
}

QJsonObject Texts() {
    return {{QStringLiteral("video"), UiTexts::c_strAnyVideo},
            {QStringLiteral("sound"), UiTexts::c_strAnySound},
            {QStringLiteral("plugIn"), UiTexts::c_strAnyPlugIn},
            {QStringLiteral("applet"), UiTexts::c_strApplet},
            {QStringLiteral("opens"), UiTexts::c_strCardOpens},
            {QStringLiteral("opensFile"), UiTexts::c_strCardOpensFile},
            {QStringLiteral("named"), UiTexts::c_strCardNamed},
            {QStringLiteral("withoutFile"), UiTexts::c_strCardWithoutFile},
            {QStringLiteral("notOpened"), UiTexts::c_strCardNotOpened}};
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

bool HasCard(const QString& strPath) {
    const QString strExtension = strPath.mid(strPath.lastIndexOf(u'.') + 1).toLower();
    return Media().contains(strExtension) || Documents().contains(strExtension);
}

QString AsJson() {
    static const QString s_strJson = [] {
        QJsonObject kinds = PlugIns();
        kinds.insert(QStringLiteral("files"), Files());
        kinds.insert(QStringLiteral("schemes"), QJsonArray::fromStringList(CAccessRules::DesktopSchemes()));
        kinds.insert(QStringLiteral("texts"), Texts());
        return QString::fromUtf8(QJsonDocument(kinds).toJson(QJsonDocument::Compact));
    }();
    return s_strJson;
}

} // namespace MediaKinds
