#include "server/CourseServer.h"
#include "foundation/Exceptions.h"
#include "tests/support/StrangeServer.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray c_good = "HTTP/1.0 200 OK\r\nOperation Type: x\r\nSuccessful: 1\r\nError Code: 0\r\n\r\n";

QByteArray Refused(int nCode) {
    return "HTTP/1.0 200 OK\r\nOperation Type: x\r\nSuccessful: 0\r\nError Code: " +
           QByteArray::number(nCode) + "\r\n\r\n";
}

/// The outcome of a status report that meets this reply.
std::string Report(const QByteArray& reply) {
    CStrangeServer strange(reply);
    CCourseServer server;
    server.SetBaseUrl(QString::fromLatin1(strange.Host()));
    try {
        return server.CheckCourseInfo({5, u"课"_s, u"师"_s}, u"校"_s, 8, {}) ? "true" : "false";
    } catch (const Torvane::CRunException& failure) {
        return failure.GetMessage().toStdString();
    } catch (const CInvalidLogException&) {
        return "the session is lost";
    }
}

TEST(CourseServer, ErrorCodesSpeak) {
    const std::string strServerError = "对不起，服务器出错，请您与系统管理员联系！";
    EXPECT_EQ(Report(Refused(0)), "false") << "nothing is raised, the proof decides";
    EXPECT_EQ(Report(Refused(1)), "对不起，HTTP代理出错！");
    EXPECT_EQ(Report(Refused(2)), "对不起，页面参数错误！");
    EXPECT_EQ(Report(Refused(4)), "对不起，无法打开服务器端数据库，请您与系统管理员联系！");
    EXPECT_EQ(Report(Refused(8)), "对不起，无此课程或此课程未获得授权，请您与系统管理员联系！");
    EXPECT_EQ(Report(Refused(16)), "the session is lost");
    EXPECT_EQ(Report(Refused(17)), "对不起，多人无法同时使用本课程！");
    EXPECT_EQ(Report(Refused(18)), "对不起，同时在线课程数量过多，请您稍后再试！");
    EXPECT_EQ(Report(Refused(64) + "\xC4\xE3\xBA\xC3"), "你好");
    EXPECT_EQ(Report(Refused(24)), strServerError) << "one number, no bit mask";
    EXPECT_EQ(Report(Refused(128)), strServerError);
    EXPECT_EQ(Report("HTTP/1.0 200 OK\r\nSuccessful: 1\r\n\r\nbody"), strServerError);
    EXPECT_EQ(Report("what is this"), strServerError);
    EXPECT_EQ(Report(c_good + QByteArray(32, 'a')), "false") << "a wrong proof";
}

TEST(CourseServer, AWrongProofStillNamesTheCourse) {
    CStrangeServer strange(c_good + QByteArray(32, 'a') + "\r\nNew\aTeacher\r\n16\r\n");
    CCourseServer server;
    server.SetBaseUrl(QString::fromLatin1(strange.Url()));
    CCourseInfo info{5, u"Old"_s, u"Old"_s};
    qint32 nRights = 0;
    EXPECT_FALSE(server.CheckPassword(info, u"secret"_s, nRights));
    EXPECT_EQ(info, (CCourseInfo{5, u"New"_s, u"Teacher"_s}));
    EXPECT_EQ(nRights, 16);
}

TEST(CourseServer, EveryFailureOfTheListIsOneMessage) {
    for (const QByteArray& reply : {Refused(16), Refused(8), QByteArray("HTTP/1.0 500 No\r\n\r\n"),
                                    QByteArray(c_good + "no fields\r\n")}) {
        CStrangeServer strange(reply);
        CCourseServer server;
        server.SetBaseUrl(QString::fromLatin1(strange.Url()));
        try {
            server.GetCourseList(0, u"校"_s);
            ADD_FAILURE() << reply.toStdString();
        } catch (const Torvane::CRunException& failure) {
            EXPECT_EQ(failure.GetMessage(), u"对不起，无法获取课程列表，请您与系统管理员联系！"_s);
        }
    }
}

TEST(CourseServer, RequestsOnTheWire) {
    using testing::MatchesRegex;
    const std::string strScript = "GET /ISAPI/CourseMgr.dll\\?";
    const std::string strEnd = " HTTP/1.0\r\n.*User-Agent: TorvaneAgent\r\n.*";
    const std::string strToken = "[0-9A-Z]+(\\.[0-9A-Z]+)*";
    const std::string strTag = "[0-9A-Za-z();]{40}";
    const auto wire = [](const std::function<void(CCourseServer&)>& operation, bool bSlash) {
        CStrangeServer strange(c_good);
        CCourseServer server;
        server.SetBaseUrl(QString::fromLatin1(bSlash ? strange.Url() : strange.Host()));
        operation(server);
        return strange.Received().toStdString();
    };
    CCourseInfo info{5, u"课"_s, u"师"_s};
    qint32 nRights = 0;
    EXPECT_THAT(wire([](CCourseServer& s) { s.GetCourseList(-1, u"大 学&"_s); }, false),
                testing::StartsWith("GET /ISAPI/CourseMgr.dll?GetCourseList?Province=-1&SchoolName="
                                    "\xB4\xF3 \xD1\xA7& HTTP/1.0\r\n"));
    EXPECT_THAT(wire([&](CCourseServer& s) { s.CheckPassword(info, u"p"_s, nRights); }, true),
                MatchesRegex(strScript + "CheckPassword\\?CourseId=5&Password=" + strToken +
                             "&Info=" + strTag + strEnd));
    EXPECT_THAT(wire([&](CCourseServer& s) { s.EditPassword(info, u"p"_s, u"123456"_s); }, true),
                MatchesRegex(strScript + "EditPassword\\?CourseId=5&Password=" + strToken +
                             "&New=e10adc3949ba59abbe56e057f20f883e&Info=" + strTag + strEnd));
    EXPECT_THAT(wire(
                    [&](CCourseServer& s) {
                        s.CheckCourseInfo(info, u"校"_s, 520, {3, 1.5, -1});
                    },
                    false),
                MatchesRegex(strScript + "CheckCourseInfo\\?CourseId=5&Info=" + strToken +
                             "&Type=520&Count=3&Changed=-1&Size=1.500000" + strEnd));
}

} // namespace
