#include "companions/compiler/CompileRequest.h"

#include "companions/common/ProjectArgument.h"
#include "companions/compiler/OutputFolder.h"
#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/IniFile.h"
#include "platform/base/NativePath.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

/// As every new course has them.
const QString c_strSite = u"课程网站"_s;
const QString c_strApplication = u"申报网站"_s;
const QString c_strHtml = u"合成/HTML"_s;
const QString c_strClassroom = u"合成/Ondrel"_s;

QString CourseFolder(const QString& strProjectPath) {
    return QDir::cleanPath(Platform::ToNative(CCoursePaths(strProjectPath).GetCourseFolder(false)));
}

bool IsCourse(const QString& strFolder) {
    return QFileInfo::exists(strFolder + "/Data/DataBase/VorelCourse.mdb"_L1);
}

/// A copy of a course still names the folder of the one that it was copied from.
bool IsAnotherCourse(const QString& strFolder, const QString& strCourseFolder) {
    const QString strReal = QFileInfo(strFolder).canonicalFilePath();
    return strReal != QFileInfo(strCourseFolder).canonicalFilePath() && IsCourse(strReal);
}

/// Whether a course with this Id lies in a folder, whatever its project file is called.
bool HoldsCourse(const QString& strFolder, qint32 nId) {
    const QFileInfoList projects = QDir(strFolder).entryInfoList({u"*.vcp"_s}, QDir::Files);
    return std::any_of(projects.begin(), projects.end(), [nId](const QFileInfo& info) {
        return ReadProfileInt(u"Course"_s, u"Id"_s, 0, Platform::FromNative(info.filePath())) == nId;
    });
}

/// A copy of a course also names the folder into which the original was compiled. A course that was moved or
/// renamed is no copy: it is not any more where it was then.
bool IsOfTheOriginal(const QString& strFolder, const QString& strCourseFolder, const CSiteModel& model) {
    const QString strReal = QFileInfo(strFolder).canonicalFilePath();
    if (strReal == QFileInfo(strCourseFolder).canonicalFilePath())
        return false;
    QStringList own = {COutputFolder::PlaceOf(strCourseFolder)};
    const QString strBefore = Platform::ToNative(model.LastCourseDir());
    if (!strBefore.isEmpty() && !HoldsCourse(strBefore, model.CourseId()))
        own.append(COutputFolder::PlaceOf(strBefore));
    for (const QString& strForm : {c_strSite, c_strApplication, c_strHtml, c_strClassroom}) {
        const QString strThere = COutputFolder::PlaceIn(strReal + u'/' + strForm);
        if (!strThere.isEmpty() && !own.contains(strThere))
            return true;
    }
    return false;
}

bool IsWithin(const QString& strPath, const QString& strFolder) {
    return !strFolder.isEmpty() && (strPath == strFolder || strPath.startsWith(QString(strFolder + u'/')));
}

/// The nearest folder that stands already, with all links resolved.
QString NearestFolder(const QString& strPath) {
    QString strAt = QDir::cleanPath(strPath);
    while (!QFileInfo::exists(strAt) && strAt != QFileInfo(strAt).path())
        strAt = QFileInfo(strAt).path();
    return QFileInfo(strAt).canonicalFilePath();
}

} // namespace

CompileRequest ReadArgument(const QString& strArgument) {
    CompileRequest request;
    QString strPath = strArgument;
    const qsizetype nBar = strArgument.lastIndexOf(u'|');
    // A bar before the last separator is part of a folder's name, one before the extension of the file's.
    if (nBar > qMax(strArgument.lastIndexOf(u'/'), strArgument.lastIndexOf(u'\\')) &&
        !strArgument.endsWith(".vcp"_L1, Qt::CaseInsensitive)) {
        const QString strForm = strArgument.mid(nBar + 1);
        if (strForm == "H"_L1)
            request.Form = ESiteForm::Html;
        else if (strForm == "S"_L1)
            request.Form = ESiteForm::Classroom;
        else
            throw Torvane::CRunException(CompilerText::c_strUnknownForm.arg(strForm));
        strPath = strArgument.left(nBar);
    }
    if (strPath.isEmpty())
        throw Torvane::CRunException(CompilerText::c_strNoArgument);
    request.ProjectPath = ReadProjectArgument(strPath);
    return request;
}

QString RememberedFolder(const CSiteModel& model, QString* pRemark) {
    const QString strCourse = QDir::cleanPath(Platform::ToNative(model.Paths().GetCourseFolder(false)));
    if (model.LastDir().isEmpty())
        return strCourse;
    const QString strLast = QDir::cleanPath(Platform::ToNative(Platform::FromNative(model.LastDir())));
    // A course that was renamed, or carried to another machine, still names a folder that was: to make that
    // anew would give it a site beside itself.
    const QFileInfo last(strLast);
    const bool bThere = last.isAbsolute() && last.isDir();
    if (bThere && !IsAnotherCourse(strLast, strCourse) && !IsOfTheOriginal(strLast, strCourse, model))
        return strLast;
    if (pRemark)
        *pRemark =
            (bThere ? CompilerText::c_strLastDirOfOriginal : CompilerText::c_strLastDirGone).arg(strLast);
    return strCourse;
}

QString ProposedFolder(const QString& strProjectPath, QString* pRemark) {
    try {
        return RememberedFolder(CSiteModel(strProjectPath), pRemark);
    } catch (const Torvane::CException&) {
        return CourseFolder(strProjectPath);
    }
}

QString OutputFolderFor(const QString& strChosen) {
    const QString strFolder = QDir::cleanPath(strChosen);
    // New courses stand in folders that have the name of a form.
    if (IsCourse(strFolder))
        return strFolder;
    for (const QString& strForm : {c_strSite, c_strApplication, c_strHtml, c_strClassroom}) {
        if (strFolder.endsWith(QString(u'/' + strForm)) && strFolder.size() > strForm.size() + 1)
            return strFolder.chopped(strForm.size() + 1);
    }
    return strFolder;
}

QStringList FoldersOf(ESiteForm form) {
    switch (form) {
    case ESiteForm::Html:
        return {c_strHtml};
    case ESiteForm::Classroom:
        return {c_strClassroom};
    default:
        return {c_strSite, c_strApplication};
    }
}

QString FaultOfOutput(const CompileRequest& request) {
    const QString& strFolder = request.OutputFolder;
    const QFileInfo info(strFolder);
    if (!info.isAbsolute())
        return CompilerText::c_strNotAbsolute.arg(strFolder);
    if (info.exists() && !info.isDir())
        return CompilerText::c_strOutputIsFile.arg(strFolder);
    const QString strNearest = NearestFolder(strFolder);
    if (!QFileInfo(strNearest).isDir())
        return CompilerText::c_strOutputIsFile.arg(strNearest);
    const QString strData =
        QFileInfo(Platform::ToNative(CCoursePaths(request.ProjectPath).GetDataFolder(false)))
            .canonicalFilePath();
    if (IsWithin(strNearest, strData))
        return CompilerText::c_strForbiddenOutput.arg(strFolder);
    if (!QFileInfo(strNearest).isWritable())
        return CannotWriteText(strFolder, QStorageInfo(strNearest).isReadOnly() ? EROFS : EACCES);
    return QString();
}
