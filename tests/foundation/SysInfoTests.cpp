#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/SysInfo.h"
#include "tests/support/Testing.h"

namespace {

class SysInfo : public testing::Test {
protected:
    CSysInfo& Start() {
        CSysInfo::Reset(m_folder.Path(u"Vorel"_s));
        return CSysInfo::Instance();
    }
    CSysInfo& Start(const QByteArray& ini) {
        m_folder.Write(u"AppInfo.ini"_s, ini);
        return Start();
    }
    static QString Values(const CSysInfo& info) {
        return u"%1 <%2> %3 <%4> %5 %6"_s.arg(info.GetShowStartupDlg())
            .arg(info.GetServerURL())
            .arg(info.GetProvince())
            .arg(info.GetSchoolName())
            .arg(info.GetQueryUserSaveOfficeAsHtml())
            .arg(info.GetSaveOfficeAsHtml());
    }

    CTempFolder m_folder;
};

TEST_F(SysInfo, ReadsTheFileOrTheDefaults) {
    EXPECT_EQ(Values(Start()), u"1 <> 0 <> 1 0"_s);
    EXPECT_EQ(CSysInfo::Instance().GetLastCourse(), QString());
    EXPECT_EQ(Values(Start("[sysinfo]\r\nShowStartupDlg=7\r\nServerURL=http://h/\r\nProvince=-3\r\n"
                           "SchoolName=\xBF\xCE\r\nQueryUserSaveOfficeAsHtml=0\r\nSaveOfficeAsHtml=1\r\n")),
              u"1 <http://h/> -3 <课> 0 1"_s);
    EXPECT_EQ(CSysInfo::Instance().GetTemplatesFolder(true), m_folder.Path(u"SysData\\VorelTemplates\\"_s));
    EXPECT_EQ(CSysInfo::Instance().GetOfficeTemplateFolder(false),
              m_folder.Path(u"SysData\\OfficeTemplate"_s));
}

TEST_F(SysInfo, ASetterWritesItsOneKeyAtOnce) {
    CSysInfo& info = Start("[SysInfo]\r\nProvince=5\r\n");
    info.SetShowStartupDlg(false);
    info.SetServerURL(u"http://课/"_s);
    info.SetSaveOfficeAsHtml(true);
    info.SetQueryUserSaveOfficeAsHtml(false);
    EXPECT_EQ(m_folder.Read(u"AppInfo.ini"_s),
              "[SysInfo]\r\nProvince=5\r\nShowStartupDlg=0\r\nServerURL=http://\xBF\xCE/\r\n"
              "SaveOfficeAsHtml=1\r\nQueryUserSaveOfficeAsHtml=0\r\n");
    const QString strWritten = Values(info);
    EXPECT_EQ(Values(Start()), strWritten);
    // A failed write throws, and the value stays changed in memory.
    QFile::remove(m_folder.Native(u"AppInfo.ini"_s));
    m_folder.MakeFolder(u"AppInfo.ini"_s);
    EXPECT_THROW(CSysInfo::Instance().SetServerURL(u"http://h/"_s), Torvane::CRunException);
    EXPECT_EQ(CSysInfo::Instance().GetServerURL(), u"http://h/"_s);
    EXPECT_THROW(CSysInfo::Instance().AddRecentCourse(u"Z:\\a.vcp"_s), Torvane::CRunException);
}

TEST_F(SysInfo, TheRecentListKeepsItsOrderAndDropsTheOldest) {
    // Courses are named by one letter, "-" is a gap; "g" has been deleted.
    const struct {
        const char *szBefore, *szAdded, *szOffered;
    } cases[] = {{"", "a", "a"},      {"abcd", "e", "eabc"}, {"abcd", "c", "cabd"},
                 {"aBc", "b", "bac"}, {"a-cd", "e", "eacd"}, {"abcd", "g", "abc"}};
    const auto path = [&](char c) { return m_folder.Path(QString(QLatin1Char(c))); };
    for (const char c : QByteArray("abcdeB"))
        m_folder.Write(QString(QLatin1Char(c)), "x");
    for (const auto& c : cases) {
        QString strIni = u"[VorelRecentProject]\n"_s;
        for (int i = 0; c.szBefore[i] != '\0'; ++i)
            strIni += u"Recent%1=%2\n"_s.arg(i).arg(c.szBefore[i] == '-' ? QString() : path(c.szBefore[i]));
        CSysInfo& info = Start(CodePage::Encode(strIni));
        info.AddRecentCourse(path(c.szAdded[0]));
        QStringList offered;
        for (const char cCourse : QByteArray(c.szOffered))
            offered.append(path(cCourse));
        EXPECT_EQ(info.GetRecentCourses(), offered) << c.szBefore << c.szAdded;
        EXPECT_EQ(info.GetLastCourse(), path(c.szAdded[0]));
    }
}

} // namespace
