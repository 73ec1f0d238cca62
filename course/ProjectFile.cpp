#include "course/ProjectFile.h"

#include "course/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/IniFile.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "foundation/TextFile.h"

using namespace Qt::StringLiterals;

namespace {

const QString c_strCourse = u"Course"_s;
const QString c_strTemplate = u"Template"_s;
const QString c_strSynchro = u"OndrelSynchro"_s;
const QString c_strCompile = u"Compile"_s;
const QString c_strId = u"Id"_s;
const QString c_strName = u"Name"_s;
const QString c_strTeacherName = u"TeacherName"_s;
const QString c_strServer = u"Server"_s;
const QString c_strUserName = u"UserName"_s;
const QString c_strLastDirKey = u"LastDir"_s;

} // namespace

bool CProjectFile::SetPath(const QString& strPath) {
    if (strPath.isEmpty())
        return false;
    m_strPath = strPath;
    return true;
}

bool CProjectFile::SetCourseInfo(const CCourseInfo& info) {
    if (!info.IsValid())
        return false;
    m_info = info;
    return true;
}

bool CProjectFile::SetTemplateName(const QString& strName) {
    if (strName.isEmpty())
        return false;
    m_strTemplateName = strName;
    return true;
}

bool CProjectFile::Load() {
    const auto text = [this](const QString& strSection, const QString& strKey) {
        return ReadProfileString(strSection, strKey, QString(), m_strPath);
    };
    m_info.Id = ReadProfileInt(c_strCourse, c_strId, 0, m_strPath);
    m_info.Name = text(c_strCourse, c_strName);
    m_info.TeacherName = text(c_strCourse, c_strTeacherName);
    m_strTemplateName = text(c_strTemplate, c_strName);
    m_strSynchroServer = text(c_strSynchro, c_strServer);
    m_strSynchroUserName = text(c_strSynchro, c_strUserName);
    m_strLastDir = text(c_strCompile, c_strLastDirKey);
    return m_info.IsValid();
}

bool CProjectFile::Save() const {
    WriteProfileStrings({{c_strCourse, c_strId, QString::number(m_info.Id)},
                         {c_strCourse, c_strName, m_info.Name},
                         {c_strCourse, c_strTeacherName, m_info.TeacherName},
                         {c_strTemplate, c_strName, m_strTemplateName},
                         {c_strSynchro, c_strServer, m_strSynchroServer},
                         {c_strSynchro, c_strUserName, m_strSynchroUserName},
                         {c_strCompile, c_strLastDirKey, m_strLastDir}},
                        m_strPath);
    return true;
}

QString ProjectFileFilter() {
    return u"%1 (*.%2)|*.%2||"_s.arg(CourseText::c_strProjectFileLabel,
                                     LoadResString(SharedText::c_nExtension));
}

bool WriteRecorderProject(const QString& strFolder, const CCourseInfo& info) {
    const QString strPath = Torvane::File::AddBackslash(strFolder) + u"Template.prj"_s;
    try {
        ReplaceFile(strPath, QByteArray());
        WriteProfileString(u"Project"_s, c_strName, u"Template"_s, strPath);
        WriteProfileString(c_strCourse, c_strName, info.Name, strPath);
        WriteProfileString(c_strCourse, c_strTeacherName, info.TeacherName, strPath);
    } catch (const Torvane::CRunException&) {
        return false;
    }
    return true;
}
