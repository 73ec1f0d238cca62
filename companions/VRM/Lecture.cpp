#include "companions/VRM/Lecture.h"

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

using namespace Qt::StringLiterals;
using Torvane::CRunException;

namespace {

const QString c_strName = u"lecture"_s;
const QString c_strFilm = u"\\lecture.asf"_s;
/// The film while it is being put together.
const QString c_strFilmPart = u"\\lecture.part"_s;
const QString c_strSlidePage = u"\\ppt.htm"_s;
const QString c_strCourseInfo = u"\\CourseInfo"_s;

void Remove(const QString& strPath) {
    QFile::remove(Platform::ToNativeExact(strPath));
}

bool Rename(const QString& strFrom, const QString& strTo) {
    Remove(strTo);
    return QFile::rename(Platform::ToNativeExact(strFrom), Platform::ToNativeExact(strTo));
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
}

bool KeepFilmAlone(const SRecorderRequest& request) {
    Remove(request.strFolder + c_strFilmPart);
    try {
        WriteFilmName(request);
    } catch (const Torvane::CException&) {
        // Whoever asks for it can name it.
    }
    return Rename(WorkingFilmPath(request.strFolder), request.strFolder + c_strFilm);
}

void RemoveLecture(const QString& strFolder) {
    for (const QString& strName : {c_strFilm, c_strFilmPart, c_strSlidePage})
        Remove(strFolder + strName);
    Remove(WorkingFilmPath(strFolder));
    Torvane::File::TryDeleteFolder(strFolder + c_strCourseInfo);
    RemoveSlides(strFolder);
}
