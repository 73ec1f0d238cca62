#include "foundation/SysInfo.h"

#include "foundation/IniFile.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "platform/base/Process.h"

#include <array>

namespace {

const QString c_strSection = QStringLiteral("SysInfo");
const QString c_strRecentSection = QStringLiteral("VorelRecentProject");
constexpr int c_nRecentCount = 4;

QString RecentKey(int nIndex) {
    return QStringLiteral("Recent%1").arg(nIndex);
}

} // namespace

CSysInfo::CSysInfo(const QString& strProgramPath) : m_strProgramPath(strProgramPath) {
    const QString strIni = IniPath();
    const auto flag = [&](const QString& strKey, bool bDefault) {
        return ReadProfileInt(c_strSection, strKey, bDefault ? 1 : 0, strIni) != 0;
    };
    m_bShowStartupDlg = flag(QStringLiteral("ShowStartupDlg"), true);
    m_strServerURL = ReadProfileString(c_strSection, QStringLiteral("ServerURL"), {}, strIni);
    m_nProvince = ReadProfileInt(c_strSection, QStringLiteral("Province"), 0, strIni);
    m_strSchoolName = ReadProfileString(c_strSection, QStringLiteral("SchoolName"), {}, strIni);
    m_bQueryUserSaveOfficeAsHtml = flag(QStringLiteral("QueryUserSaveOfficeAsHtml"), true);
    m_bSaveOfficeAsHtml = flag(QStringLiteral("SaveOfficeAsHtml"), false);
}

std::unique_ptr<CSysInfo>& CSysInfo::Slot() {
    static std::unique_ptr<CSysInfo> s_pInstance;
    return s_pInstance;
}

CSysInfo& CSysInfo::Instance() {
    auto& pInstance = Slot();
    if (!pInstance)
        pInstance.reset(new CSysInfo(Platform::OwnProgramPath()));
    return *pInstance;
}

void CSysInfo::Reset(const QString& strProgramPath) {
    Slot().reset(new CSysInfo(strProgramPath));
}

QString CSysInfo::IniPath() const {
    return GetProgramFolder(true) + QStringLiteral("AppInfo.ini");
}

QString CSysInfo::GetProgramFolder(bool bBackslash) const {
    return Torvane::File::FolderForm(Torvane::File::ParentFolder(m_strProgramPath), bBackslash);
}

QString CSysInfo::GetSysDataFolder(bool bBackslash) const {
    return Torvane::File::FolderForm(GetProgramFolder(true) + QStringLiteral("SysData"), bBackslash);
}

QString CSysInfo::GetProjectsFolder(bool bBackslash) const {
    return Torvane::File::FolderForm(GetProgramFolder(true) + QStringLiteral("Projects"), bBackslash);
}

QString CSysInfo::GetTemplatesFolder(bool bBackslash) const {
    return Torvane::File::FolderForm(GetSysDataFolder(true) + QStringLiteral("VorelTemplates"), bBackslash);
}

QString CSysInfo::GetOfficeTemplateFolder(bool bBackslash) const {
    return Torvane::File::FolderForm(GetSysDataFolder(true) + QStringLiteral("OfficeTemplate"), bBackslash);
}

void CSysInfo::WriteBool(const QString& strKey, bool bValue) {
    WriteProfileString(c_strSection, strKey, bValue ? QStringLiteral("1") : QStringLiteral("0"), IniPath());
}

void CSysInfo::SetShowStartupDlg(bool bValue) {
    m_bShowStartupDlg = bValue;
    WriteBool(QStringLiteral("ShowStartupDlg"), bValue);
}

void CSysInfo::SetQueryUserSaveOfficeAsHtml(bool bValue) {
    m_bQueryUserSaveOfficeAsHtml = bValue;
    WriteBool(QStringLiteral("QueryUserSaveOfficeAsHtml"), bValue);
}

void CSysInfo::SetSaveOfficeAsHtml(bool bValue) {
    m_bSaveOfficeAsHtml = bValue;
    WriteBool(QStringLiteral("SaveOfficeAsHtml"), bValue);
}

void CSysInfo::SetServerURL(const QString& strValue) {
    m_strServerURL = strValue;
    WriteProfileString(c_strSection, QStringLiteral("ServerURL"), strValue, IniPath());
}

QString CSysInfo::GetLastCourse() const {
    return ReadProfileString(c_strRecentSection, RecentKey(0), {}, IniPath());
}

QStringList CSysInfo::GetRecentCourses() const {
    QStringList list;
    for (int i = 0; i < c_nRecentCount; ++i) {
        const QString strPath = ReadProfileString(c_strRecentSection, RecentKey(i), {}, IniPath());
        if (!strPath.isEmpty() && Torvane::File::IsFile(strPath))
            list.append(strPath);
    }
    return list;
}

void CSysInfo::AddRecentCourse(const QString& strPath) {
    QStringList kept;
    for (int i = 0; i < c_nRecentCount; ++i) {
        const QString strOld = ReadProfileString(c_strRecentSection, RecentKey(i), {}, IniPath());
        if (!strOld.isEmpty() && !EqualsIgnoringCase(strOld, strPath))
            kept.append(strOld);
    }
    WriteProfileString(c_strRecentSection, RecentKey(0), strPath, IniPath());
    for (int i = 1; i < c_nRecentCount && i <= kept.size(); ++i)
        WriteProfileString(c_strRecentSection, RecentKey(i), kept[i - 1], IniPath());
}

QString LoadResString(int nId) {
    switch (nId) {
    case SharedText::c_nProductTitle:
    case SharedText::c_nWindowTitle:
        return QStringLiteral("Vorel");
    case SharedText::c_nExtension:
        return QStringLiteral("vcp");
    default:
        return {};
    }
}
