#include "server/TemplateDownload.h"
#include "foundation/SysInfo.h"
#include "tests/support/ScriptedPeople.h"
#include "tests/support/StrangeServer.h"

using Torvane::Dialog::MFC::BoxAnswer;

namespace {

TEST(TemplateDownload, SplitsNamesAsTheyStand) {
    EXPECT_EQ(CTemplateDownload::SplitNames(u"a, b ,甲"_s), (QStringList{u"a"_s, u" b "_s, u"甲"_s}));
    EXPECT_EQ(CTemplateDownload::SplitNames(u","_s), QStringList{u""_s});
    EXPECT_EQ(CTemplateDownload::SplitNames(u",a,"_s), (QStringList{u""_s, u"a"_s}));
    EXPECT_TRUE(CTemplateDownload::SplitNames(u""_s).isEmpty());
}

TEST(TemplateDownload, ChecksANameAndAsksBeforeItUpdates) {
    const CTempFolder Program;
    CSysInfo::Reset(Program.Path(u"Vorel"_s));
    CScriptedPeople People;
    CTemplateDownload Download{People};
    for (const QString& strName : {u""_s, u".."_s, u"a\\b"_s, u"../x"_s, u"a\"b"_s, u"a\nb"_s}) {
        People.Expect(u"请您选择一个模板！"_s);
        EXPECT_FALSE(Download.CheckChoice(strName)) << strName;
    }
    EXPECT_TRUE(Download.CheckChoice(u"蓝 色"_s));

    Program.Write(u"SysData\\VorelTemplates\\甲\\x"_s, "");
    People.Expect(Program.Native(u"SysData/VorelTemplates/甲"_s) + u"已经存在，是否继续更新？"_s,
                  BoxAnswer::No);
    EXPECT_FALSE(Download.Fetch(u"甲"_s));
    EXPECT_FALSE(Download.Fetch(u"乙"_s)) << "a companion that is not there ends the command in silence";
    EXPECT_EQ(People.nInputStops, 1);
}

TEST(TemplateDownload, ASilentServerIsGivenUp) {
    const CTempFolder Program;
    const CStrangeServer Server("", CStrangeServer::EEnd::Hang);
    Program.Write(u"AppInfo.ini"_s, "[SysInfo]\r\nServerURL=" + Server.Url("") + "\r\n");
    CSysInfo::Reset(Program.Path(u"Vorel"_s));
    CScriptedPeople People;
    People.GiveUps = {true, true};
    CTemplateDownload Download{People};
    EXPECT_FALSE(Download.FetchList());
    EXPECT_EQ(Download.FetchPreview(u"甲"_s), std::nullopt);
    EXPECT_EQ(People.Statuses,
              (QStringList{u"正在从服务器获取模板列表..."_s, u"正在从服务器获取预览图..."_s}));
}

} // namespace
