#include "server/CourseServer.h"
#include "foundation/Exceptions.h"
#include "tests/support/StrangeServer.h"
#include "tests/support/Testing.h"

#include <gmock/gmock.h>

namespace {

const QByteArray c_good = "HTTP/1.0 200 OK\r\nOperation Type: x\r\nSuccessful: 1\r\nError Code: 0\r\n\r\n";

QByteArray Refused(int nCode) {
    return "HTTP/1.0 200 OK\r\nOperation Type: x\r\nSuccessful: 0\r\nError Code: " +
           QByteArray::number(nCode) + "\r\n\r\n";
}

/// Does a step against a server that answers with this reply; "true", "false", or what it throws.
std::string Outcome(const QByteArray& reply, const std::function<bool(CCourseServer&)>& step) {
    CStrangeServer strange(reply);
    CCourseServer server;
    server.SetBaseUrl(QString::fromLatin1(strange.Host()));
    try {
        return step(server) ? "true" : "false";
    } catch (const Torvane::CRunException& failure) {
        return failure.GetMessage().toStdString();
    } catch (const CInvalidLogException&) {
        return "the session is lost";
    }
}

TEST(CourseServer, ErrorCodesSpeak) {
    const char* szServerError = "对不起，服务器出错，请您与系统管理员联系！";
    const std::pair<QByteArray, const char*> cases[] = {
        {Refused(0), "false"}, // nothing is raised, the proof decides
        {Refused(1), "对不起，HTTP代理出错！"},
        {Refused(2), "对不起，页面参数错误！"},
        {Refused(4), "对不起，无法打开服务器端数据库，请您与系统管理员联系！"},
        {Refused(8), "对不起，无此课程或此课程未获得授权，请您与系统管理员联系！"},
        {Refused(16), "the session is lost"},
        {Refused(17), "对不起，多人无法同时使用本课程！"},
        {Refused(18), "对不起，同时在线课程数量过多，请您稍后再试！"},
        {Refused(64) + "\xC4\xE3\xBA\xC3", "你好"},
        {Refused(24), szServerError}, // one number, no bit mask
        {"HTTP/1.0 200 OK\r\nSuccessful: 1\r\n\r\nbody", szServerError},
        {"HTTP/1.0 200 OK\r\nOperation Type: \r\nSuccessful: 1\r\n\r\nbody", szServerError},
        {"HTTP/1.0 200 OK\r\noperation type: x\r\nSuccessful: 1\r\n\r\nbody", szServerError},
        {"HTTP/1.0 200 OK\r\nOperation Type: x\r\nSuccessful: true\r\nError Code:  17x\r\n\r\n",
         "对不起，多人无法同时使用本课程！"},
        {"what is this", szServerError},
        {c_good + QByteArray(32, 'a'), "false"}};
    for (const auto& [reply, szOutcome] : cases)
        EXPECT_EQ(Outcome(reply, [](CCourseServer& s) { return s.CheckCourseInfo({}, u"校"_s, 8, {}); }),
                  szOutcome);
}

TEST(CourseServer, AWrongProofStillNamesTheCourse) {
    CCourseInfo info{5, u"Old"_s, u"Old"_s};
    qint32 nRights = 0;
    const auto check = [&](CCourseServer& s) { return s.CheckPassword(info, u"secret"_s, nRights); };
    EXPECT_EQ(Outcome(c_good, check), "false") << "an empty body changes nothing";
    EXPECT_EQ(info.Name, u"Old"_s);
    EXPECT_EQ(Outcome(c_good + QByteArray(32, 'a') + "\r\nNew\aTeacher\r\n16\r\n", check), "false");
    EXPECT_EQ(info, (CCourseInfo{5, u"New"_s, u"Teacher"_s}));
    EXPECT_EQ(nRights, 16);
    EXPECT_EQ(Outcome(c_good + "proof", check), "对不起，无法获取课程信息，请您与系统管理员联系！");
}

TEST(CourseServer, EveryFailureOfTheListIsOneMessage) {
    for (const QByteArray& reply : {Refused(16), Refused(8), QByteArray("HTTP/1.0 500 No\r\n\r\n"),
                                    QByteArray(c_good + "no fields\r\n")})
        EXPECT_EQ(Outcome(reply, [](CCourseServer& s) { return s.GetCourseList(0, u"校"_s).isEmpty(); }),
                  "对不起，无法获取课程列表，请您与系统管理员联系！");
}

TEST(CourseServer, RequestsOnTheWire) {
    using Step = std::function<void(CCourseServer&)>;
    const std::string strToken = "[0-9A-Z]+(\\.[0-9A-Z]+)*";
    const std::string strTag = "[0-9A-Za-z();]{40}";
    CCourseInfo info{5, u"课"_s, u"师"_s};
    qint32 nRights = 0;
    const std::pair<Step, std::string> cases[] = {
        {[](CCourseServer& s) { s.GetCourseList(-1, u"大 学&"_s); },
         "GetCourseList\\?Province=-1&SchoolName=\xB4\xF3 \xD1\xA7&"},
        {[&](CCourseServer& s) { s.CheckPassword(info, u"p"_s, nRights); },
         "CheckPassword\\?CourseId=5&Password=" + strToken + "&Info=" + strTag},
        {[&](CCourseServer& s) { s.EditPassword(info, u"p"_s, u"123456"_s); },
         "EditPassword\\?CourseId=5&Password=" + strToken +
             "&New=e10adc3949ba59abbe56e057f20f883e&Info=" + strTag},
        {[&](CCourseServer& s) {
             s.CheckCourseInfo(info, u"校"_s, 520, {3, 1.5, -1});
         },
         "CheckCourseInfo\\?CourseId=5&Info=" + strToken + "&Type=520&Count=3&Changed=-1&Size=1.500000"}};
    for (const QByteArray& slash : {QByteArray(), QByteArray("/")}) {
        for (const auto& [step, strQuery] : cases) {
            CStrangeServer strange(c_good);
            CCourseServer server;
            server.SetBaseUrl(QString::fromLatin1(strange.Host() + slash));
            step(server);
            EXPECT_THAT(strange.Received().toStdString(),
                        testing::MatchesRegex("GET /ISAPI/CourseMgr.dll\\?" + strQuery +
                                              " HTTP/1.0\r\n.*User-Agent: TorvaneAgent\r\n.*"));
        }
    }
}

} // namespace
