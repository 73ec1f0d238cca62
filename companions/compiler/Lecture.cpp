#include "companions/compiler/Lecture.h"

#include "companions/common/FilmFault.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "foundation/Text.h"
#include "platform/base/NativePath.h"
#include "platform/base/Process.h"
#include "video/AsfFile.h"
#include "video/Outline.h"
#include "video/Recording.h"
#include "video/VideoScripts.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Of a film that is made; far more than a lecture takes.
constexpr quint64 c_nMaxFilm = quint64{16} << 30;

QString FirstWithExtension(const QStringList& files, const QStringList& extensions) {
    for (const QString& strExtension : extensions) {
        for (const QString& strFile : files) {
            if (LowerAscii(strFile).endsWith(strExtension))
                return strFile;
        }
    }
    return QString();
}

/// The film that the folder's project file names, or else the first there is.
QString FindFilm(const CSourceTree& tree, const QString& strFolder, const QString& strBackslashFolder) {
    const QString strNamed = FilmPath(strBackslashFolder);
    if (!strNamed.isEmpty()) {
        const QString strFilm =
            tree.FindFile(strFolder + u'/' + strNamed.mid(strNamed.lastIndexOf(u'\\') + 1));
        if (!strFilm.isEmpty())
            return strFilm;
    }
    return FirstWithExtension(tree.FilesBelow(strFolder), {u".asf"_s, u".wmv"_s});
}

/// Entry k of the outline is marker k of the film.
QList<Lecture::Place> OutlineOf(const QString& strFolder, const QList<SAsfMarker>& markers) {
    QStringList names;
    ReadOutline(strFolder + OutlineFileBelow(), names);
    QList<Lecture::Place> places;
    for (qsizetype i = 0; i < qMax(names.size(), markers.size()); ++i)
        places.append(
            {i < markers.size() ? markers[i].nTime : -1, i < names.size() ? names[i] : markers[i].strName});
    return places;
}

/// Under another school's key the scripts come out as noise.
bool IsNoise(const QStringList& scripts) {
    return std::ranges::any_of(scripts, [](const QString& strScript) {
        return std::ranges::any_of(strScript, [](QChar c) {
            return c == QChar::ReplacementCharacter || (!c.isSpace() && c.category() == QChar::Other_Control);
        });
    });
}

void ReadSteps(const QString& strFolder, const QList<SAsfCommand>& commands, Lecture& lecture) {
    if (commands.isEmpty())
        return;
    try {
        const SVideoScripts scripts =
            ReadVideoScripts(strFolder, CVideoKey(CSysInfo::Instance().GetSchoolName()));
        lecture.bScriptsUnreadable = IsNoise(scripts.First) || IsNoise(scripts.Second);
        if (lecture.bScriptsUnreadable)
            return;
        for (const SAsfCommand& command : commands) {
            const QString strScript = scripts.Called(command.strParameter);
            if (!strScript.isEmpty())
                lecture.Steps.append({command.nTime, strScript, ParseInt(command.strParameter) < 0});
        }
    } catch (const Torvane::CRunException&) {
        lecture.bScriptsUnreadable = true;
    }
}

} // namespace

QString LectureSlides(const CSourceTree& tree, const QString& strFolder) {
    const QString strSlides = tree.FindFile(strFolder + u"/ppt.htm"_s);
    return !strSlides.isEmpty() ? strSlides
                                : FirstWithExtension(tree.FilesBelow(strFolder), {u".htm"_s, u".html"_s});
}

Lecture ReadLecture(const CSitePlan& plan, int nNode) {
    Lecture lecture;
    const CSourceTree& tree = plan.Tree();
    const QString strFolder = plan.Of(nNode).Source;
    const QString strBackslash = Platform::FromNative(tree.NativePath(strFolder));
    lecture.strSlides = LectureSlides(tree, strFolder);
    lecture.strFilm = FindFilm(tree, strFolder, strBackslash);
    const SAsfScript script = lecture.strFilm.isEmpty()
                                  ? SAsfScript()
                                  : ReadAsfScript(Platform::FromNative(tree.NativePath(lecture.strFilm)));
    lecture.Outline = OutlineOf(strBackslash, script.Markers);
    ReadSteps(strBackslash, script.Commands, lecture);
    return lecture;
}

PlayableFilm FindPlayable(const CSourceTree& tree, const QString& strFolder, const QString& strFilm) {
    const QStringList extensions{u".mp4"_s, u".webm"_s, u".ogv"_s};
    if (strFilm.isEmpty()) {
        const QString strThere = FirstWithExtension(tree.FilesBelow(strFolder), extensions);
        return {strThere.isEmpty() ? QString() : tree.OutputName(strThere), false};
    }
    // Another film, such as one that a slide shows, is not the lecture.
    for (const QString& strExtension : extensions) {
        const QString strThere = tree.FindFile(strFilm.left(strFilm.lastIndexOf(u'.')) + strExtension);
        if (!strThere.isEmpty())
            return {tree.OutputName(strThere), false};
    }
    const QString strName = tree.OutputName(strFilm);
    return {strName.left(strName.lastIndexOf(u'.')) + u".mp4"_s, true};
}

QString FilmProgram() {
    return Platform::FindSystemProgram(u"ffmpeg"_s);
}

EFilmEnd MakePlayable(const QString& strProgram, const QString& strFrom, const QString& strTo,
                      const std::function<bool()>& mayGoOn) {
    Platform::CProgramCall call;
    call.strProgram = strProgram;
    // A film is a stranger's: it is read as what it says it is, and leads to no other file and not to the
    // net.
    call.arguments = {u"-nostdin"_s,
                      u"-v"_s,
                      u"error"_s,
                      u"-y"_s,
                      u"-protocol_whitelist"_s,
                      u"file"_s,
                      u"-f"_s,
                      u"asf"_s,
                      u"-i"_s,
                      u"file:"_s + strFrom,
                      u"-map"_s,
                      u"0:V:0?"_s,
                      u"-map"_s,
                      u"0:a:0?"_s,
                      u"-map_metadata"_s,
                      u"-1"_s,
                      u"-fpsmax"_s,
                      u"30"_s,
                      u"-c:v"_s,
                      u"libx264"_s,
                      u"-preset"_s,
                      u"veryfast"_s,
                      u"-crf"_s,
                      u"24"_s,
                      u"-pix_fmt"_s,
                      u"yuv420p"_s,
                      u"-vf"_s,
                      u"scale=trunc(iw/2)*2:trunc(ih/2)*2"_s,
                      u"-c:a"_s,
                      u"aac"_s,
                      u"-b:a"_s,
                      u"96k"_s,
                      u"-movflags"_s,
                      u"+faststart"_s,
                      u"-f"_s,
                      u"mp4"_s,
                      u"file:"_s + strTo};
    call.nMaxFileBytes = c_nMaxFilm;
    QByteArray faults;
    const bool bEnded = Platform::RunGroup(call, mayGoOn, &faults) == Platform::EProgramEnd::Ended;
    // Not by the room on the disk: of two films at a time the one that fails first makes room again.
    const EFilmWriting eWritten = HowFilmWasWritten(faults);
    if (bEnded && eWritten == EFilmWriting::Whole && QFileInfo(strTo).size() > 0)
        return EFilmEnd::Made;
    QFile::remove(strTo);
    return eWritten == EFilmWriting::DiskFull ? EFilmEnd::DiskFull : EFilmEnd::Failed;
}
