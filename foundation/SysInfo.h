#pragma once

#include <QString>
#include <QStringList>

#include <memory>

/// The settings of the installation: where the program's folders are, the values of "AppInfo.ini" beside the
/// program, and the recent courses. Read once; a setter writes its one key at once.
class CSysInfo {
public:
    /// The one object, made at the first call from the running program's own path.
    static CSysInfo& Instance();

    /// Makes the one object anew for a program at this path. For programs that stand elsewhere than their
    /// data (companions in a build folder) and for tests.
    static void Reset(const QString& strProgramPath);

    QString GetProgramPath() const { return m_strProgramPath; }
    QString GetProgramFolder(bool bBackslash) const;
    QString GetSysDataFolder(bool bBackslash) const;
    QString GetProjectsFolder(bool bBackslash) const;
    QString GetTemplatesFolder(bool bBackslash) const;
    QString GetOfficeTemplateFolder(bool bBackslash) const;

    bool GetShowStartupDlg() const { return m_bShowStartupDlg; }
    QString GetServerURL() const { return m_strServerURL; }
    qint32 GetProvince() const { return m_nProvince; }
    QString GetSchoolName() const { return m_strSchoolName; }
    bool GetQueryUserSaveOfficeAsHtml() const { return m_bQueryUserSaveOfficeAsHtml; }
    bool GetSaveOfficeAsHtml() const { return m_bSaveOfficeAsHtml; }

    /// The setters keep the value in memory even when the file can't be written; they throw
    /// Torvane::CRunException then.
    void SetShowStartupDlg(bool bValue);
    void SetQueryUserSaveOfficeAsHtml(bool bValue);
    void SetSaveOfficeAsHtml(bool bValue);
    void SetServerURL(const QString& strValue);

    /// The most recent course, not looked at; empty when there is none.
    QString GetLastCourse() const;

    /// Recent courses that still exist, most recent first, at most four.
    QStringList GetRecentCourses() const;

    /// Puts the path at the head of the recent list. Throws Torvane::CRunException when the file can't be
    /// written.
    void AddRecentCourse(const QString& strPath);

private:
    explicit CSysInfo(const QString& strProgramPath);
    static std::unique_ptr<CSysInfo>& Slot();
    QString IniPath() const;
    void WriteBool(const QString& strKey, bool bValue);

    QString m_strProgramPath;
    bool m_bShowStartupDlg = true;
    QString m_strServerURL;
    qint32 m_nProvince = 0;
    QString m_strSchoolName;
    bool m_bQueryUserSaveOfficeAsHtml = true;
    bool m_bSaveOfficeAsHtml = false;
};

/// The texts that the whole program shares.
namespace SharedText {
inline constexpr int c_nProductTitle = 61449;
inline constexpr int c_nExtension = 61450;
inline constexpr int c_nWindowTitle = 61451;
} // namespace SharedText

/// The text of a string resource; empty when there is none.
QString LoadResString(int nId);
