#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "server/HttpClient.h"
#include "tests/support/CourseServiceThread.h"

#include <QTcpSocket>

using Torvane::Net::CHttpClient;
using Torvane::Net::EHttpMethod;

namespace {

class ServiceTest : public testing::Test {
protected:
    CTempFolder Offered;
    CCourseServiceThread Server{u"示范大学"_s, Offered.Native()};

    std::unique_ptr<QTcpSocket> Connect(const QByteArray& bytes) const {
        auto pClient = std::make_unique<QTcpSocket>();
        pClient->connectToHost(QHostAddress::LocalHost, Server.Port());
        EXPECT_TRUE(pClient->waitForConnected());
        pClient->write(bytes);
        return pClient;
    }
    /// All that comes until the server closes.
    static QByteArray Receive(QTcpSocket& client) {
        EXPECT_TRUE(client.waitForDisconnected());
        return client.readAll();
    }
    QByteArray Exchange(const QByteArray& bytes) const { return Receive(*Connect(bytes)); }
    QByteArray Log() const { return Server.Folder().Read(u"data\\access.log"_s); }
    QByteArray Get(const QString& strTarget) const {
        CHttpClient client;
        client.Request(CodePage::Encode(QString(Server.Url() + strTarget)), EHttpMethod::Get, "test");
        return client.GetBody();
    }
};

TEST_F(ServiceTest, TakesWhateverIsSent) {
    const QByteArray list = "/ISAPI/CourseMgr.dll?GetCourseList?Province=0&SchoolName=";
    const QByteArray school = CodePage::Encode(u"示范大学"_s);
    const char* szList = "200 OK\r\nOperation Type: GetCourseList\r\nSuccessful: 1\r\nError Code: 0\r\n";
    const std::pair<QByteArray, const char*> cases[] = {
        {"GET " + list + school + " HTTP/1.0\r\n\r\n", szList},
        {"GET //isapi/COURSEMGR.DLL?GetCourseList?Province=0&SchoolName=" + school + " HTTP/1.1\n\n", szList},
        {"GET http://h" + list + "a b HTTP/1.0\r\nA: b\r\n\r\n", szList},
        {"\r\n\r\n", "400"},
        {QByteArray(100, '\0') + "\r\n\r\n", "400"},
        {"GET /\r\n\r\n", "400"},
        {"GET nothing HTTP/1.0\r\n\r\n", "400"},
        {"GET http://h HTTP/1.0\r\n\r\n", "404"},
        {"POST / HTTP/1.0\r\nContent-Length: 5\r\n\r\nabcde", "405"},
        {"GET / HTTP/1.0\r\n\r\nand more than was asked for", "404"},
        {"GET /" + QByteArray(9'000, 'x') + " HTTP/1.0\r\n\r\n", "414"}};
    for (const auto& [request, szStatus] : cases) {
        const QByteArray reply = Exchange(request);
        EXPECT_TRUE(reply.mid(9).startsWith(szStatus)) << request.left(60);
        EXPECT_EQ(reply.count('\a'), request.contains(school) ? 10 : 0);
    }
    EXPECT_TRUE(Log().endsWith(" 127.0.0.1 refused 414\n")) << Log();
    EXPECT_EQ(Log().count('\n'), std::size(cases));
}

TEST_F(ServiceTest, SlowAndSilentClientsKeepNobodyWaiting) {
    Server.Server().SetRequestTimeout(300);
    std::vector<std::unique_ptr<QTcpSocket>> silent;
    for (int n = 0; n < 450; ++n)
        silent.push_back(Connect(n == 0 ? "GET / HT" : ""));
    EXPECT_TRUE(Exchange("GET / HTTP/1.0\r\n\r\n").startsWith("HTTP/1.0 404"));
    EXPECT_EQ(Receive(*silent.front()), "") << "closed without an answer";
}

TEST_F(ServiceTest, OffersTemplates) {
    EXPECT_EQ(Get(u"/Down/TemplateList.asp?Type=ReportTemplates"_s), "");
    Offered.Write(u"ReportTemplates\\蓝 色&x\\Preview.jpg"_s, "picture");
    Offered.Write(u"ReportTemplates\\蓝 色&x\\Skin\\图\\a.gif"_s, QByteArray(300'000, 'g'));
    for (const QString& strName : {u"b"_s, u"a"_s, u"with,comma"_s})
        Offered.MakeFolder(u"Other\\"_s + strName);
    Offered.Write(u"secret.txt"_s, "secret");
    EXPECT_EQ(Get(u"/Down/TemplateList.asp?Type=ReportTemplates"_s), CodePage::Encode(u"蓝 色&x"_s));
    EXPECT_EQ(Get(u"//Down/TemplateList.asp?Type=Other"_s), "a,b");
    EXPECT_EQ(Get(u"/Down/TemplateList.asp?Type=.."_s), "");
    EXPECT_EQ(Get(u"/ReportTemplates/蓝 色&x/Preview.jpg"_s), "picture");
    for (const QString& strNothing :
         {u"/ReportTemplates/../secret.txt"_s, u"/ReportTemplates/none/Preview.jpg"_s,
          u"/Other/a/Preview.jpg"_s, u"/../Other/Preview.jpg"_s,
          u"/Down/DownTemplate.asp?Type=ReportTemplates&Name=.."_s,
          u"/Down/DownTemplate.asp?Type=ReportTemplates&Name="_s, u"/Down/DownTemplate.asp"_s})
        EXPECT_THROW(Get(strNothing), Torvane::Net::CHttpClientException) << strNothing;
}

} // namespace
