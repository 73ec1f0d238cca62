#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/SysInfo.h"
#include "tests/support/Printing.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

class SysInfo : public testing::Test {
protected:
    CSysInfo& Start(const QByteArray& ini) {
        m_folder.Write(u"AppInfo.ini"_s, ini);
        return Restart();
    }
    CSysInfo& Restart() {
        CSysInfo::Reset(m_folder.Path(u"Vorel"_s));
        return CSysInfo::Instance();
    }
    QByteArray Ini() const { return m_folder.Read(u"AppInfo.ini"_s); }

    CTempFolder m_folder;
};

TEST_F(SysInfo, AMissingFileGivesTheDefaults) {
    const CSysInfo& info = Restart();
    EXPECT_TRUE(info.GetShowStartupDlg());
    EXPECT_EQ(info.GetServerURL(), QString());
    EXPECT_EQ(info.GetProvince(), 0);
    EXPECT_EQ(info.GetSchoolName(), QString());
    EXPECT_TRUE(info.GetQueryUserSaveOfficeAsHtml());
    EXPECT_FALSE(info.GetSaveOfficeAsHtml());
    EXPECT_EQ(info.GetLastCourse(), QString());
    EXPECT_TRUE(info.GetRecentCourses().isEmpty());
}

TEST_F(SysInfo, ReadsWhatTheFileSays) {
    const CSysInfo& info =
        Start("[sysinfo]\r\nShowStartupDlg=7\r\nServerURL=http://h/\r\nProvince=-3\r\n"
              "SchoolName=\xBF\xCE\r\nQueryUserSaveOfficeAsHtml=0\r\nSaveOfficeAsHtml=1\r\n");
    EXPECT_TRUE(info.GetShowStartupDlg());
    EXPECT_EQ(info.GetServerURL(), u"http://h/"_s);
    EXPECT_EQ(info.GetProvince(), -3);
    EXPECT_EQ(info.GetSchoolName(), u"课"_s);
    EXPECT_FALSE(info.GetQueryUserSaveOfficeAsHtml());
    EXPECT_TRUE(info.GetSaveOfficeAsHtml());
}

TEST_F(SysInfo, FoldersStandBesideTheProgram) {
    const CSysInfo& info = Restart();
    EXPECT_EQ(info.GetProgramFolder(false), m_folder.Path());
    EXPECT_EQ(info.GetSysDataFolder(true), m_folder.Path(u"SysData\\"_s));
    EXPECT_EQ(info.GetProjectsFolder(false), m_folder.Path(u"Projects"_s));
    EXPECT_EQ(info.GetTemplatesFolder(true), m_folder.Path(u"SysData\\VorelTemplates\\"_s));
    EXPECT_EQ(info.GetOfficeTemplateFolder(false), m_folder.Path(u"SysData\\OfficeTemplate"_s));
}

TEST_F(SysInfo, ASetterWritesItsOneKeyAtOnce) {
    CSysInfo& info = Start("[SysInfo]\r\nProvince=5\r\n");
    info.SetShowStartupDlg(false);
    info.SetServerURL(u"http://课/"_s);
    info.SetSaveOfficeAsHtml(true);
    info.SetQueryUserSaveOfficeAsHtml(false);
    EXPECT_EQ(Ini(), "[SysInfo]\r\nProvince=5\r\nShowStartupDlg=0\r\nServerURL=http://\xBF\xCE/\r\n"
                     "SaveOfficeAsHtml=1\r\nQueryUserSaveOfficeAsHtml=0\r\n");
    EXPECT_FALSE(Restart().GetShowStartupDlg());
}

TEST_F(SysInfo, AFailedWriteThrowsAndKeepsTheValueInMemory) {
    m_folder.MakeFolder(u"AppInfo.ini"_s);
    CSysInfo& info = Restart();
    EXPECT_THROW(info.SetServerURL(u"http://h/"_s), Torvane::CRunException);
    EXPECT_EQ(info.GetServerURL(), u"http://h/"_s);
    EXPECT_THROW(info.AddRecentCourse(u"Z:\\a.vcp"_s), Torvane::CRunException);
}

TEST_F(SysInfo, TheRecentListKeepsItsOrderAndDropsTheOldest) {
    const struct {
        const char* szWhat;
        QStringList before;
        QString strAdded;
        QStringList after;
    } cases[] = {
        {"the first", {}, u"a"_s, {u"a"_s}},
        {"a fifth drops the oldest",
         {u"a"_s, u"b"_s, u"c"_s, u"d"_s},
         u"e"_s,
         {u"e"_s, u"a"_s, u"b"_s, u"c"_s}},
        {"one of the list moves to the head",
         {u"a"_s, u"b"_s, u"c"_s, u"d"_s},
         u"c"_s,
         {u"c"_s, u"a"_s, u"b"_s, u"d"_s}},
        {"another case is the same", {u"a"_s, u"Bé"_s, u"c"_s}, u"bé"_s, {u"bé"_s, u"a"_s, u"c"_s}},
        {"a gap closes, the last value stays behind",
         {u"a"_s, u""_s, u"c"_s, u"d"_s},
         u"e"_s,
         {u"e"_s, u"a"_s, u"c"_s, u"d"_s}},
    };
    for (const QString& str : {u"a"_s, u"Bé"_s, u"bé"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s})
        m_folder.Write(str, "x");
    for (const auto& c : cases) {
        QString strIni = u"[VorelRecentProject]\n"_s;
        for (qsizetype i = 0; i < c.before.size(); ++i)
            strIni +=
                u"Recent%1=%2\n"_s.arg(i).arg(c.before[i].isEmpty() ? QString() : m_folder.Path(c.before[i]));
        CSysInfo& info = Start(CodePage::Encode(strIni));
        info.AddRecentCourse(m_folder.Path(c.strAdded));
        QStringList expected;
        for (const QString& str : c.after)
            expected.append(m_folder.Path(str));
        EXPECT_EQ(info.GetRecentCourses(), expected) << c.szWhat;
        EXPECT_EQ(info.GetLastCourse(), expected[0]) << c.szWhat;
    }
}

TEST_F(SysInfo, ADeletedCourseIsNotOfferedButIsStillTheLast) {
    m_folder.Write(u"b.vcp"_s, "x");
    CSysInfo& info = Restart();
    info.AddRecentCourse(m_folder.Path(u"b.vcp"_s));
    info.AddRecentCourse(m_folder.Path(u"gone.vcp"_s));
    EXPECT_EQ(info.GetRecentCourses(), QStringList{m_folder.Path(u"b.vcp"_s)});
    EXPECT_EQ(info.GetLastCourse(), m_folder.Path(u"gone.vcp"_s));
}

TEST(Resources, SharedTexts) {
    EXPECT_EQ(LoadResString(61449), u"Vorel"_s);
    EXPECT_EQ(LoadResString(61450), u"vcp"_s);
    EXPECT_EQ(LoadResString(61451), u"Vorel"_s);
    EXPECT_EQ(LoadResString(1), QString());
}

} // namespace
