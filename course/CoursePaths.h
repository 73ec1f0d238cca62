#pragma once

#include <QString>

/// Where everything of a course lies, from the path of its project file alone.
class CCoursePaths {
public:
    explicit CCoursePaths(QString strProjectPath) : m_strProjectPath(std::move(strProjectPath)) {}

    QString GetProjectPath() const { return m_strProjectPath; }
    QString GetCourseFolder(bool bBackslash) const;
    QString GetDataFolder(bool bBackslash) const;
    QString GetNodeResourceFolder(bool bBackslash) const;
    /// "…\NodeResource\N<id>\"
    QString GetNodeFolder(qint32 nId) const;
    QString GetDataInfoPath() const;
    QString GetDatabasePath() const;
    QString GetCustomTitlesPath() const;

private:
    QString m_strProjectPath;
};
