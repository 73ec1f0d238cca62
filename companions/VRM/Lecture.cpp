#include "companions/VRM/Lecture.h"

#include "companions/VRM/FilmRun.h"
#include "companions/VRM/LectureLog.h"
#include "companions/VRM/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/IniFile.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"
#include "video/Outline.h"
#include "video/Recording.h"
#include "video/VideoScripts.h"

#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;
using Torvane::CRunException;

namespace {

const QString c_strName = u"lecture"_s;
const QString c_strFurtherFilm = u"\\lecture%1.asf"_s;
const QString c_strFilm = u"\\lecture.asf"_s;
/// The film while it is being put together.
const QString c_strFilmPart = u"\\lecture.part"_s;
/// Behind the first part's name: all parts in one, while that is being made, and once it stands.
const QString c_strJoining = u".joining"_s;
const QString c_strJoined = u".joined"_s;
const QString c_strSlidePage = u"\\ppt.htm"_s;
const QString c_strCourseInfo = u"\\CourseInfo"_s;

void Remove(const QString& strPath) {
    QFile::remove(Platform::ToNativeExact(strPath));
}

bool Rename(const QString& strFrom, const QString& strTo) {
    // In one step, so that one of the two always stands.
    return std::rename(QFile::encodeName(Platform::ToNativeExact(strFrom)).constData(),
                       QFile::encodeName(Platform::ToNativeExact(strTo)).constData()) == 0;
}

bool IsThere(const QString& strPath) {
    return QFile::exists(Platform::ToNativeExact(strPath));
}

void RemoveParts(const QString& strFolder, FilmParts parts) {
    for (qsizetype nPart = 0; IsThere(parts(strFolder, nPart)); ++nPart)
        Remove(parts(strFolder, nPart));
}

/// What a joining that was cut short has left to do, once the whole film stands: no part is joined twice.
bool EndJoining(const QString& strFolder, FilmParts parts) {
    const QString strJoined = parts(strFolder, 0) + c_strJoined;
    if (!IsThere(strJoined))
        return true;
    qsizetype nParts = 0;
    while (IsThere(parts(strFolder, nParts)))
        ++nParts;
    while (--nParts > 0)
        Remove(parts(strFolder, nParts));
    return Rename(strJoined, parts(strFolder, 0));
}

/// Before its film is laid aside.
void KeepTimes(const QString& strFolder) {
    const SLoggedLecture lecture = ReadLectureLog(WorkingTimesPath(strFolder));
    const bool bRecorded = IsThere(WorkingFilmPath(strFolder));
    const bool bCopied = lecture.bOfKept || QFile::exists(lecture.strFilm);
    if (bCopied && IsThere(KeptFilmPath(strFolder))) {
        // The whole stands elsewhere.
        RemoveParts(strFolder, WorkingFilmPath);
        if (lecture.bOfKept && lecture.CountTurns() > 0)
            Rename(WorkingTimesPath(strFolder), KeptTimesPath(strFolder));
    } else if (bRecorded && IsThere(KeptFilmPath(strFolder))) {
        // Of two films one behind the other nobody knows how long the first is.
        Remove(KeptTimesPath(strFolder));
    } else if (bRecorded) {
        Rename(WorkingTimesPath(strFolder), KeptTimesPath(strFolder));
    }
    Remove(WorkingTimesPath(strFolder));
}

void WriteFilmName(const SRecorderRequest& request) {
    WriteProfileString(u"OutputStream"_s, u"FileName"_s, c_strName, request.strProject);
}

} // namespace

void WriteLecture(const SRecorderRequest& request, const SSlides& slides, double dRatio,
                  const CLectureTimes& times, const std::function<bool(qint64, qint64)>& progress) {
    const QString& strFolder = request.strFolder;
    try {
        Torvane::File::CreateFolderPath(strFolder + c_strCourseInfo);
        ReplaceFile(strFolder + c_strSlidePage, SlidePage(request.strCourse, slides.Pages, dRatio));
        ReplaceFile(strFolder + OutlineFileBelow(), MakeOutline(times.GetOutline()));
        ReplaceFile(strFolder + ScriptFileBelow(),
                    MakeVideoScripts(times.GetCalls(), times.GetPlaces(), request.Key));
        WriteFilmName(request);
    } catch (const Torvane::File::CFileException&) {
        throw CRunException(RecorderText::c_strNotWritten);
    }
    const QString strPart = strFolder + c_strFilmPart;
    Remove(strPart);
    WriteAsfScript(WorkingFilmPath(strFolder), strPart, times.GetScript(), progress);
    if (!Rename(strPart, strFolder + c_strFilm))
        throw CRunException(RecorderText::c_strNotWritten);
    Remove(WorkingFilmPath(strFolder));
    Remove(WorkingTimesPath(strFolder));
}

qsizetype KeepFilmAlone(const SRecorderRequest& request, const SSlides& slides) {
    const QString& strFolder = request.strFolder;
    if (!EndJoining(strFolder, WorkingFilmPath))
        return 0;
    Remove(WorkingFilmPath(strFolder) + c_strJoining);
    Remove(strFolder + c_strFilmPart);
    // Without these the film would not be shown. Where there is no room even for them, it can still be had.
    try {
        WriteFilmName(request);
        Torvane::File::CreateFolderPath(strFolder + c_strCourseInfo);
        ReplaceFile(strFolder + ScriptFileBelow(), MakeVideoScripts({}, {}, request.Key));
        ReplaceFile(strFolder + OutlineFileBelow(), MakeOutline({}));
        ReplaceFile(strFolder + c_strSlidePage, SlidePage(request.strCourse, slides.Pages, 1));
    } catch (const Torvane::CException&) {
    }
    Remove(WorkingTimesPath(strFolder));
    qsizetype nParts = 1;
    for (; IsThere(WorkingFilmPath(strFolder, nParts)); ++nParts)
        Rename(WorkingFilmPath(strFolder, nParts), strFolder + c_strFurtherFilm.arg(nParts + 1));
    return Rename(WorkingFilmPath(strFolder), strFolder + c_strFilm) ? nParts : 0;
}

void JoinParts(const QString& strFolder, FilmParts parts, const QList<qint64>& lengths, bool bMend,
               const std::function<bool()>& mayGoOn) {
    const auto end = [&] {
        if (!EndJoining(strFolder, parts))
            throw CRunException(RecorderText::c_strNotJoined);
    };
    end();
    if (!IsThere(parts(strFolder, 0)))
        throw CRunException(RecorderText::c_strFilmGone.arg(Platform::ToShown(strFolder)));
    QStringList films;
    while (IsThere(parts(strFolder, films.size())))
        films.append(Platform::ToNativeExact(parts(strFolder, films.size())));
    if (films.size() < 2 && !bMend)
        return;
    const QString strJoining = parts(strFolder, 0) + c_strJoining;
    if (!JoinFilms(films, lengths, Platform::ToNativeExact(strJoining), mayGoOn) ||
        !Rename(strJoining, parts(strFolder, 0) + c_strJoined))
        throw CRunException(RecorderText::c_strNotJoined);
    end();
}

bool KeepEarlierFilm(const QString& strFolder) {
    EndJoining(strFolder, KeptFilmPath);
    EndJoining(strFolder, WorkingFilmPath);
    KeepTimes(strFolder);
    // An older one that was laid aside already comes first.
    qsizetype nKept = 0;
    while (IsThere(KeptFilmPath(strFolder, nKept)))
        ++nKept;
    for (qsizetype nPart = 0; IsThere(WorkingFilmPath(strFolder, nPart)); ++nPart)
        Rename(WorkingFilmPath(strFolder, nPart), KeptFilmPath(strFolder, nKept++));
    return nKept > 0;
}

void RemoveKeptFilm(const QString& strFolder) {
    for (const QString& strEnd : {c_strJoining, c_strJoined})
        Remove(KeptFilmPath(strFolder) + strEnd);
    Remove(KeptTimesPath(strFolder));
    RemoveParts(strFolder, KeptFilmPath);
}

void RemoveLecture(const QString& strFolder) {
    for (const QString& strName : {c_strFilm, c_strFilmPart, c_strSlidePage})
        Remove(strFolder + strName);
    for (const QString& strEnd : {c_strJoining, c_strJoined})
        Remove(WorkingFilmPath(strFolder) + strEnd);
    Remove(WorkingTimesPath(strFolder));
    RemoveParts(strFolder, WorkingFilmPath);
    Torvane::File::TryDeleteFolder(strFolder + c_strCourseInfo);
    RemoveSlides(strFolder);
}
