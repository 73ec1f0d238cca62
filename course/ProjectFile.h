#pragma once

#include "course/CourseInfo.h"

#include <QString>

/// Reads and writes the project file of a course, "<folder>\<title>.vcp": an INI file in the code page that
/// says who the course is, which template it uses, and keeps a few values for the companion programs. A
/// change to one value is always SetPath, Load, the one setter, Save, so that the companions' values survive.
class CProjectFile {
public:
    /// False, with the old path kept, for an empty path.
    bool SetPath(const QString& strPath);
    /// False, with nothing stored, for a record that is not valid.
    bool SetCourseInfo(const CCourseInfo& info);
    /// False, with the old name kept, for an empty name.
    bool SetTemplateName(const QString& strName);

    /// Reads every value; whether the course's identity is valid. A missing file gives false.
    bool Load();
    /// Writes every key in its order; true, or throws Torvane::CRunException.
    bool Save() const;

    const CCourseInfo& GetCourseInfo() const { return m_info; }
    QString GetTemplateName() const { return m_strTemplateName; }
    QString GetLastDir() const { return m_strLastDir; }

private:
    QString m_strPath;
    CCourseInfo m_info;
    QString m_strTemplateName;
    QString m_strSynchroServer;
    QString m_strSynchroUserName;
    QString m_strLastDir;
};

/// The file dialogs' filter for project files, "课程文件 (*.vcp)|*.vcp||".
QString ProjectFileFilter();

/// Writes "Template.prj" for the lecture recorder into the folder; false when a write fails.
bool WriteRecorderProject(const QString& strFolder, const CCourseInfo& info);
