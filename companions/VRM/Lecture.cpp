#include "companions/VRM/Lecture.h"

#include "companions/VRM/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/IniFile.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"
#include "video/Outline.h"
#include "video/VideoScripts.h"

#include <QFile>

using namespace Qt::StringLiterals;
using Torvane::CRunException;

namespace {

const QString c_strName = u"lecture"_s;
const QString c_strFilm = u"\\lecture.asf"_s;
const QString c_strRecorded = u"\\recorded.asf"_s;
const QString c_strSlidePage = u"\\ppt.htm"_s;
const QString c_strCourseInfo = u"\\CourseInfo"_s;

void Remove(const QString& strPath) {
    QFile::remove(Platform::ToNativeExact(strPath));
}

} // namespace

QString RecordedFilmPath(const QString& strFolder) {
    return strFolder + c_strRecorded;
}

void WriteLecture(const SRecorderRequest& request, const SSlides& slides, double dRatio,
                  const CLectureTimes& times, const std::function<bool(qint64, qint64)>& progress) {
    const QString& strFolder = request.strFolder;
    try {
        Torvane::File::CreateFolderPath(strFolder + c_strCourseInfo);
        ReplaceFile(strFolder + c_strSlidePage, SlidePage(request.strCourse, slides.Pages, dRatio));
        ReplaceFile(strFolder + OutlineFileBelow(), MakeOutline(times.GetOutline()));
        ReplaceFile(strFolder + ScriptFileBelow(),
                    MakeVideoScripts(times.GetCalls(), times.GetPlaces(), request.Key));
        WriteProfileString(u"OutputStream"_s, u"FileName"_s, c_strName, request.strProject);
    } catch (const Torvane::File::CFileException&) {
        throw CRunException(RecorderText::c_strNotWritten);
    }
    Remove(strFolder + c_strFilm);
    WriteAsfScript(RecordedFilmPath(strFolder), strFolder + c_strFilm, times.GetScript(), progress);
    Remove(RecordedFilmPath(strFolder));
}

void RemoveLecture(const QString& strFolder) {
    for (const QString& strName : {c_strFilm, c_strRecorded, c_strSlidePage})
        Remove(strFolder + strName);
    Torvane::File::TryDeleteFolder(strFolder + c_strCourseInfo);
    RemoveSlides(strFolder);
}
