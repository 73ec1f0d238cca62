#include "course/ProjectFile.h"
#include "foundation/Ciphers.h"
#include "foundation/Exceptions.h"
#include "server/CourseChoice.h"
#include "tests/support/CourseFakes.h"
#include "tests/support/CourseServiceThread.h"
#include "tests/support/ScriptedDialogs.h"
#include "tests/support/StrangeServer.h"

#include <gmock/gmock.h>

using Torvane::Dialog::MFC::BoxAnswer;
using Torvane::Dialog::MFC::BoxButtons;
using Torvane::Dialog::MFC::BoxIcon;

namespace {

/// A course on disk and the real course server that knows it, password "123456".
class SessionTest : public testing::Test {
protected:
    CCourseWorld World;
    CCourseServiceThread Server;
    CScriptedDialogs Dialogs;
    CServerSession Session{World.People, Dialogs};
    CourseServices Services{World.People, Session, World.Templates, World.Nodes};
    CCourse Course{World.ProjectPath(), Services};

    SessionTest() {
        Serve(World.Record().Info, false);
        World.MakeCourse();
        World.People.Statuses.clear();
        World.Write(u"程序\\AppInfo.ini"_s,
                    u"[SysInfo]\r\nProvince=11\r\nSchoolName=测试大学\r\nServerURL="_s + Server.Url());
        CSysInfo::Reset(World.Folder.Path(u"程序\\Vorel"_s));
    }
    void Serve(const CCourseInfo& info, bool bInitialPassword) {
        Server.OpenStore().AddCourse({info.Id, 11, u"测试大学"_s, info.Name, info.TeacherName,
                                      Md5Hex("123456"), bInitialPassword, true});
    }
    void WriteIdentity(const CCourseInfo& info) {
        CProjectFile file;
        EXPECT_TRUE(file.SetPath(World.ProjectPath()) && file.Load() && file.SetCourseInfo(info) &&
                    file.Save());
    }
    void OpenCourse() {
        Dialogs.Passwords.push_back(u"123456"_s);
        ASSERT_TRUE(Course.Open());
        World.People.Boxes.clear();
        World.People.Statuses.clear();
    }
    bool Heartbeat() { return Session.ReportStatus(Course, StatusType::c_nHeartbeat, {}, true); }
    void ExpectLastBox(BoxButtons buttons, BoxIcon icon, const QString& strTitle) {
        const CScriptedPeople::Box& box = World.People.Boxes.back();
        EXPECT_TRUE(box.Buttons == buttons && box.Icon == icon && box.strTitle == strTitle) << box.strText;
    }
};

TEST_F(SessionTest, ThePasswordHoldsUntilTheCourseIsClosed) {
    OpenCourse();
    EXPECT_TRUE(Session.ValidateCourse(Course));
    EXPECT_EQ(World.People.Statuses, QStringList{u"正在验证课程..."_s});
    Course.Close();
    CCourse again(World.ProjectPath(), Services);
    Dialogs.Passwords = {u"654321"_s, u""_s, std::nullopt};
    World.People.Expect(u"密码错误，请您重新输入!"_s);
    World.People.Expect(u"密码错误，请您重新输入!"_s);
    EXPECT_FALSE(again.Open());
    ExpectLastBox(BoxButtons::Ok, BoxIcon::Stop, u"错误"_s);
    EXPECT_EQ(Dialogs.Infos.back(), World.Record().Info);
}

TEST_F(SessionTest, ACourseRenamedOnTheServerIsRenamedHere) {
    OpenCourse();
    Server.OpenStore().RemoveClientsBefore(std::numeric_limits<qint64>::max());
    WriteIdentity({42, u"旧名"_s, u"旧人"_s});
    CCourse renamed(World.ProjectPath(), Services);
    Dialogs.Passwords.push_back(u"123456"_s);
    ASSERT_TRUE(renamed.Open());
    EXPECT_EQ(Dialogs.Infos.back().Name, u"旧名"_s);
    CProjectFile file;
    file.SetPath(World.ProjectPath());
    file.Load();
    EXPECT_EQ(file.GetCourseInfo(), World.Record().Info);
}

TEST_F(SessionTest, ACourseThatAnotherPersonHoldsOpensWithoutAPasswordWhenItIsFree) {
    const auto other = [&](bool bHolds) {
        Server.OpenStore().PutClient(42, {"other", bHolds, QDateTime::currentMSecsSinceEpoch()});
    };
    other(true);
    Dialogs.Passwords.push_back(u"123456"_s);
    for (const BoxAnswer answer : {BoxAnswer::Retry, BoxAnswer::Cancel})
        World.People.Expect(u"对不起，多人无法同时使用本课程！"_s, answer);
    EXPECT_FALSE(Course.Open());
    other(false);
    EXPECT_TRUE(CCourse(World.ProjectPath(), Services).Open());
}

TEST_F(SessionTest, ALostSessionEndsTheReport) {
    OpenCourse();
    const QByteArray tag = Server.OpenStore().ListClients(42).first().strTag;
    Server.OpenStore().PutClient(42, {tag, true, QDateTime::currentMSecsSinceEpoch() - 301'000});
    World.People.Expect(u"与服务器的连接意外中断，请您重新打开课程。"_s);
    EXPECT_FALSE(Heartbeat());
    ExpectLastBox(BoxButtons::Ok, BoxIcon::Stop, u"错误"_s);
    EXPECT_FALSE(Session.ReportStatus(Course, StatusType::c_nClosed, {}, false)) << "and says nothing";
}

TEST_F(SessionTest, AServerThatIsDownAsksOrStaysSilent) {
    OpenCourse();
    Server.Stop();
    World.People.Expect(u"无法与服务器建立连接。"_s, BoxAnswer::Retry);
    World.People.Expect(u"无法与服务器建立连接。"_s, BoxAnswer::Cancel);
    EXPECT_FALSE(Heartbeat());
    ExpectLastBox(BoxButtons::RetryCancel, BoxIcon::Stop, u"错误"_s);
    EXPECT_FALSE(Session.ReportStatus(Course, StatusType::c_nClosed, {}, false));
    Server.Start();
    EXPECT_TRUE(Heartbeat()) << "a restarted server knows its sessions";
}

TEST_F(SessionTest, AServerThatNeverAnswersCanBeGivenUp) {
    OpenCourse();
    CStrangeServer silent({}, CStrangeServer::EEnd::Hang);
    CSysInfo::Instance().SetServerURL(QString::fromLatin1(silent.Url()));
    const auto giveUp = [&] { World.People.GiveUps.push_back(true); };
    const auto status = World.People.OpenStatus();
    giveUp();
    EXPECT_FALSE(Session.ReportStatus(Course, StatusType::c_nOpened, {}, true)) << "without a box";
    giveUp();
    EXPECT_FALSE(Session.ReportStatus(Course, StatusType::c_nClosed, {}, false));
    giveUp();
    EXPECT_THROW(Session.TestLink(QString::fromLatin1(silent.Url())), Torvane::Net::CCancelledException);
    giveUp();
    Dialogs.Changes = {ISessionDialogs::PasswordChange{u"123456"_s, u"abcdef"_s}};
    EXPECT_FALSE(Session.ChangePassword(Course));
    CCourseChoice choice(World.People, Session);
    giveUp();
    EXPECT_FALSE(choice.Fetch());
    // A heartbeat's Cancel closes the course, and it comes unasked.
    World.People.Expect(u"已取消与服务器的通信。"_s, BoxAnswer::Retry);
    World.People.Expect(u"已取消与服务器的通信。"_s, BoxAnswer::Cancel);
    giveUp();
    giveUp();
    EXPECT_FALSE(Heartbeat());
    EXPECT_TRUE(World.People.GiveUps.empty());
}

TEST_F(SessionTest, ThePasswordIsChanged) {
    Dialogs.Changes = {ISessionDialogs::PasswordChange{u"wrong"_s, u"密码密"_s},
                       ISessionDialogs::PasswordChange{u"123456"_s, u"密码密"_s}};
    World.People.Expect(u"修改密码失败，请检查原密码输入是否正确！"_s);
    World.People.Expect(u"密码已修改，请您牢记！"_s);
    CCourseInfo info = World.Record().Info;
    EXPECT_TRUE(Session.ChangePassword(info, u"说明"_s));
    EXPECT_EQ(World.People.Boxes.front().Icon, BoxIcon::Stop);
    EXPECT_EQ(World.People.Boxes.front().strTitle, u"提示"_s);
    ExpectLastBox(BoxButtons::Ok, BoxIcon::Information, u"提示"_s);
    EXPECT_EQ(Dialogs.Prompts, (QStringList{u"说明"_s, u"说明"_s}));
    EXPECT_EQ(World.People.Statuses, (QStringList{u"正在修改密码..."_s, u"正在修改密码..."_s}));
    EXPECT_EQ(Server.OpenStore().FindCourse(42)->strPasswordDigest,
              Md5Hex(QByteArray::fromHex("c3dcc2ebc3dc")));
}

const CCourseInfo c_initial{43, u"高等代数"_s, u"王老师"_s};

TEST_F(SessionTest, OpeningOffersAChangeOfTheInitialPassword) {
    Serve(c_initial, true);
    WriteIdentity(c_initial);
    Dialogs.Passwords.push_back(u"123456"_s);
    Dialogs.Changes.push_back(std::nullopt);
    World.People.Expect(u"您的密码初始密码，我们推荐您更改密码，以保证您课程的安全！\n您要修改密码吗？"_s,
                        BoxAnswer::Ok);
    EXPECT_TRUE(Course.Open()) << "the change's result doesn't matter";
    ExpectLastBox(BoxButtons::OkCancel, BoxIcon::Question, u"提示"_s);
    EXPECT_EQ(Dialogs.Prompts, QStringList{u"请您输入原密码和新密码。"_s});
}

TEST_F(SessionTest, TheWizardInsistsOnAChangeOfTheInitialPassword) {
    using ENext = CCourseChoice::ENext;
    Serve(c_initial, true);
    CCourseChoice choice(World.People, Session);
    ASSERT_TRUE(choice.Fetch());
    ASSERT_EQ(choice.GetCourses().size(), 2);
    EXPECT_EQ(CCourseChoice::DetailsText(choice.GetCourses()[0]),
              u"课程编号:042\r\n课程名称:高等数学\r\n教师名称:李老师"_s);
    EXPECT_EQ(choice.FindByPrefix(u"高等"_s), 0);
    EXPECT_EQ(choice.FindByPrefix(u"高等代"_s), 1);
    EXPECT_EQ(choice.FindByPrefix(u"等"_s), -1);

    World.People.Expect(u"请您先选择课程!"_s);
    EXPECT_EQ(choice.Next(-1, u"x"_s), ENext::Stay);
    ExpectLastBox(BoxButtons::Ok, BoxIcon::Warning, u"警告"_s);
    World.People.Expect(u"请您输入密码!"_s);
    EXPECT_EQ(choice.Next(0, u""_s), ENext::StayOnPassword);
    World.People.Expect(u"密码错误，请您重新输入!"_s);
    EXPECT_EQ(choice.Next(0, u"x"_s), ENext::StayOnPassword);
    ExpectLastBox(BoxButtons::Ok, BoxIcon::Warning, u"提示"_s);
    EXPECT_EQ(choice.Next(0, u"123456"_s), ENext::Go);
    EXPECT_EQ(choice.GetChosen(), World.Record().Info);

    Dialogs.Changes = {std::nullopt, ISessionDialogs::PasswordChange{u"123456"_s, u"abcdef"_s}};
    EXPECT_EQ(choice.Next(1, u"123456"_s), ENext::Stay);
    World.People.Expect(u"密码已修改，请您牢记！"_s);
    EXPECT_EQ(choice.Next(1, u"123456"_s), ENext::Go);
    EXPECT_EQ(choice.Next(1, u"abcdef"_s), ENext::Go) << "it is the teacher's own now";
    EXPECT_EQ(choice.GetChosen().Id, 43);
    EXPECT_EQ(Dialogs.Prompts.last(), u"您的密码为初始密码，为了保障您课程的安全，请您修改密码。"_s);
}

TEST(PasswordChange, IsCheckedInItsOrder) {
    const struct {
        QString strOld, strNew, strConfirm;
        EPasswordField Field;
        QString strMessage = {};
    } cases[] = {
        {u""_s, u""_s, u""_s, EPasswordField::Old, u"请您填写原密码！"_s},
        {u"a"_s, u""_s, u""_s, EPasswordField::New, u"请您填写新密码！"_s},
        {u"a"_s, u"b"_s, u""_s, EPasswordField::Confirm, u"请您填写确认新密码！"_s},
        {u"a"_s, u"b"_s, u"B"_s, EPasswordField::Confirm, u"两次输入密码不一致，请您重新输入！"_s},
        {u"a"_s, u"12345"_s, u"12345"_s, EPasswordField::New, u"为了保障您的课程的安全，密码不得低于6位!"_s},
        {u"a"_s, u"密码"_s, u"密码"_s, EPasswordField::New, u"为了保障您的课程的安全，密码不得低于6位!"_s},
        {u"a"_s, u"密码密"_s, u"密码密"_s, EPasswordField::None}};
    for (const auto& c : cases) {
        const PasswordFault fault = CheckPasswordChange(c.strOld, c.strNew, c.strConfirm);
        EXPECT_EQ(fault.Field, c.Field);
        EXPECT_EQ(fault.strMessage, c.strMessage);
        EXPECT_EQ(fault.bEmptyConfirm, fault.strMessage.contains(u"不一致"_s));
    }
}

} // namespace
