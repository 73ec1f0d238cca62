#include "companions/fetch/FetchRun.h"
#include "foundation/CodePage.h"
#include "tests/companions/ArchiveHelp.h"
#include "tests/support/CourseServiceThread.h"
#include "tests/support/StrangeServer.h"

#include <clocale>
#include <thread>

using EEnd = FetchOutcome::EEnd;

namespace {

const QString c_strPage = u"eht/htm/通用页面.htm"_s;

/// A program's folder with one template, and a request that would replace it.
class CTemplateFetcher : public ::testing::Test {
protected:
    CTemplateFetcher() { m_folder.Write(u"SysData\\VorelTemplates\\甲 一\\old.txt"_s, "old"); }

    FetchRequest Request(const QByteArray& address, const QString& strName = u"甲 一"_s) const {
        return ReadFetchArgument(QString::fromUtf8(address) + u',' +
                                 m_folder.Path(u"SysData\\VorelTemplates\\"_s + strName));
    }
    FetchOutcome Fetch(const FetchRequest& request) {
        m_limits.Network.nSilentSeconds = 1;
        return RunFetch(request, m_progress, m_limits);
    }
    FetchOutcome FetchReply(const QByteArray& reply, CStrangeServer::EEnd end = CStrangeServer::EEnd::Close) {
        CStrangeServer server(reply, end);
        return Fetch(Request(server.Url("/t?Name=x")));
    }
    FetchOutcome FetchArchive(const QByteArray& archive) {
        return FetchReply("HTTP/1.0 200 OK\r\nContent-Length: " + QByteArray::number(archive.size()) +
                          "\r\n\r\n" + archive);
    }
    QStringList Templates() const { return List(u"SysData/VorelTemplates"_s); }
    QStringList List(const QString& strBelow) const { return m_folder.Names(strBelow); }
    /// Nothing but the old template is there.
    void ExpectUntouched(const std::string& strCase) const {
        EXPECT_EQ(Templates(), QStringList{u"甲 一"_s}) << strCase;
        EXPECT_EQ(List(u"SysData/VorelTemplates/甲 一"_s), QStringList{u"old.txt"_s}) << strCase;
        EXPECT_EQ(List(u"SysData"_s), QStringList{u"VorelTemplates"_s}) << strCase;
        EXPECT_EQ(List({}), QStringList{u"SysData"_s}) << strCase;
    }

    CTempFolder m_folder;
    FetchProgress m_progress;
    FetchLimits m_limits;
};

TEST(FetchArgument, PartsAddressAndFolder) {
    const struct {
        QString strArgument, strAddress, strFolder;
    } rows[] = {
        {u"http://h/D.asp?T=R&Name=甲 1,Z:\\p q\\t\\甲 1"_s, u"http://h/D.asp?T=R&Name=甲 1"_s,
         u"/p q/t/甲 1"_s},
        {u"http://h/a,/b?Name=x,/p/a,b/x/"_s, u"http://h/a,/b?Name=x"_s, u"/p/a,b/x"_s},
        {u"http://h/x,b,/p/t/x"_s, u"http://h/x,b"_s, u"/p/t/x"_s},
    };
    for (const auto& row : rows) {
        const FetchRequest request = ReadFetchArgument(row.strArgument);
        EXPECT_EQ(CodePage::Decode(request.Address).toStdString(), row.strAddress.toStdString());
        EXPECT_EQ(request.TargetFolder, row.strFolder);
    }
    for (const QString& strBad : {u""_s, u"http://h/x"_s, u"http://h/x,rel\\x"_s, u",/p/t/x"_s,
                                  u"http://h/x,/"_s, u"http://h/x,/p/t/.."_s, u"http://h/x,/t"_s})
        EXPECT_THROW(ReadFetchArgument(strBad), Torvane::CRunException) << strBad;
}

TEST_F(CTemplateFetcher, TakesATemplateOfTheRealServerAsAWhole) {
    const CTempFolder site;
    site.Write(u"ReportTemplates/甲 一/"_s + c_strPage, "page");
    site.Write(u"ReportTemplates/甲 一/Skin/空 白/一.css"_s, "css");
    const CCourseServiceThread server({}, site.Native());
    const QByteArray address = server.Url().toUtf8() + "/Down/DownTemplate.asp?Type=ReportTemplates&Name=";
    // A person's locale must not spoil the names.
    const QByteArray before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "C");
    const FetchOutcome outcome = Fetch(Request(address + "甲 一"));
    std::setlocale(LC_ALL, before.constData());
    EXPECT_EQ(outcome.eEnd, EEnd::Done) << outcome.strText;
    EXPECT_EQ(m_folder.Read(u"SysData/VorelTemplates/甲 一/"_s + c_strPage), "page");
    EXPECT_EQ(m_folder.Read(u"SysData/VorelTemplates/甲 一/Skin/空 白/一.css"_s), "css");
    EXPECT_FALSE(m_folder.Exists(u"SysData/VorelTemplates/甲 一/old.txt"_s));
    EXPECT_EQ(m_progress.nReceived.load(), m_progress.nTotal.load());

    EXPECT_EQ(Fetch(Request(address + "甲 一", u"乙"_s)).eEnd, EEnd::Done);
    EXPECT_EQ(Fetch(Request(address + "没有", u"没有"_s)).strText,
              u"下载模板失败：服务器上没有这个模板（Http 404 错误）。"_s);
    EXPECT_EQ(Templates(), (QStringList{u"乙"_s, u"甲 一"_s}));
    EXPECT_EQ(List(u"SysData"_s), QStringList{u"VorelTemplates"_s});
}

TEST_F(CTemplateFetcher, ReadsTheWaysInWhichATemplateIsPacked) {
    const QList<PackedEntry> plain = {{u"EHT/htm/通用页面.HTM"_s}, {u"a.txt"_s}};
    const QList<PackedEntry> wrapped = {{u"./外层/"_s, "", AE_IFDIR},
                                        {u"./外层/EHT/htm/通用页面.HTM"_s},
                                        {u"./外层/a.txt"_s},
                                        {u"__MACOSX/._x"_s}};
    const QByteArray archives[] = {Pack(plain), Pack(plain, {.szCharset = "GB18030"}), Pack(wrapped),
                                   Pack(plain, {.bTar = true}), Pack(wrapped, {.bTar = true})};
    for (const QByteArray& archive : archives) {
        const FetchOutcome outcome = FetchArchive(archive);
        EXPECT_EQ(outcome.eEnd, EEnd::Done) << outcome.strText;
        EXPECT_EQ(List(u"SysData/VorelTemplates/甲 一"_s), (QStringList{u"EHT"_s, u"a.txt"_s}));
        EXPECT_TRUE(m_folder.Exists(u"SysData/VorelTemplates/甲 一/EHT/htm/通用页面.HTM"_s));
        EXPECT_EQ(QFile(m_folder.Native(u"SysData/VorelTemplates/甲 一/a.txt"_s)).permissions() &
                      QFileDevice::ExeOther,
                  QFileDevice::Permissions());
    }
}

TEST_F(CTemplateFetcher, RefusesWhatIsNoWholeTemplateAndKeepsTheOldOne) {
    m_limits.Archive = {.nMaxBytes = 50000, .nMaxEntries = 8};
    const PackedEntry page{c_strPage};
    const QByteArray good = Pack({page, {u"a"_s, QByteArray(3000, 'a')}});
    const QList<PackedEntry> many(6, page);
    const std::tuple<QByteArray, QString> archives[] = {
        {Pack({page, {u"../out.txt"_s}}), u"会写到模板之外"_s},
        {Pack({page, {u"a/../../out.txt"_s}}, {.bTar = true}), u"会写到模板之外"_s},
        {Pack({page, {u"/tmp/out.txt"_s}}, {.bTar = true}), u"会写到模板之外"_s},
        {Pack({page, {u"link"_s, "", AE_IFLNK, u"/tmp"_s}}), u"不是普通文件"_s},
        {Pack({page, {u"link"_s, "", AE_IFREG, c_strPage}}, {.bTar = true}), u"不是普通文件"_s},
        {Pack({page, {u'\x1B' + QString(100, u'l'), "", AE_IFLNK, u"/tmp"_s}}, {.bTar = true}),
         u'“' + QString(QChar::ReplacementCharacter) + QString(79, u'l') + u"”不是普通文件"_s},
        {Pack({page, {u"pipe"_s, "", AE_IFIFO}}, {.bTar = true}), u"不是普通文件"_s},
        {Pack({page, {u"a\\b"_s}}, {.bTar = true}), u"不能使用的文件名"_s},
        {Pack({page, {u"a\nb"_s}}), u"不能使用的文件名"_s},
        {Pack({page, page}), u"重名的文件"_s},
        {Pack({page, {u"Skin/a"_s}, {u"skin/b"_s}}), u"重名的文件"_s},
        {Pack({page, {u"a"_s}, {u"a/b"_s}}), u"重名的文件"_s},
        {Pack({page, {QString(300, u'a')}}), u"过长的文件名"_s},
        {Pack({page, {u"a/"_s.repeated(40) + u"a"_s}}), u"过长的文件名"_s},
        {Pack({page, {u"1"_s}, {u"2"_s}, {u"3"_s}, {u"4"_s}, {u"5"_s}, {u"6"_s}}), u"文件太多"_s},
        {Pack({page, {u"1/2/3/4/5/6"_s}}), u"文件太多"_s},
        {Pack({page, {u"bomb"_s, QByteArray(60000, '\0')}}), u"模板太大"_s},
        {Pack({page}, {.bEncrypted = true}), u"有密码"_s},
        {Pack({{u"a.txt"_s}}), u"不是模板"_s},
        {Pack({{u"a/"_s + c_strPage}, {u"b/"_s + c_strPage}}), u"不是模板"_s},
        {good.chopped(200), u"不是模板压缩包"_s},
        {QByteArray(good).replace(good.indexOf("PK") + 60, 4, "\xff\xff\xff\xff"), u"已损坏"_s},
        {"<html>对不起</html>", u"不是模板压缩包"_s},
        {"", u"不是模板压缩包"_s},
    };
    for (const auto& [archive, strMessage] : archives) {
        const FetchOutcome outcome = FetchArchive(archive);
        EXPECT_EQ(outcome.eEnd, EEnd::Failed);
        EXPECT_TRUE(outcome.strText.contains(strMessage)) << strMessage << " | " << outcome.strText;
        ExpectUntouched(strMessage.toStdString());
    }
}

TEST_F(CTemplateFetcher, SaysWhatIsWrongWithTheServer) {
    const QByteArray good = Pack({{c_strPage}});
    m_limits.Network.nMaxBytes = 5000;
    const std::tuple<QByteArray, CStrangeServer::EEnd, QString> replies[] = {
        {"HTTP/1.0 500 No\r\n\r\n" + good, CStrangeServer::EEnd::Close, u"Http 500 错误"_s},
        {"HTTP/1.0 302 Go\r\nLocation: /x\r\n\r\n", CStrangeServer::EEnd::Close, u"Http 302 错误"_s},
        {"HTTP/1.0 200 OK\r\nContent-Length: 5000\r\n\r\n" + good, CStrangeServer::EEnd::Close,
         u"连接中断"_s},
        {"HTTP/1.0 200 OK\r\nContent-Length: 5001\r\n\r\n" + good, CStrangeServer::EEnd::Close,
         u"模板太大"_s},
        {"HTTP/1.0 200 OK\r\n\r\n" + good, CStrangeServer::EEnd::Repeat, u"模板太大"_s},
        {"HTTP/1.0 200 OK\r\nContent-Length: 5000\r\n\r\n" + good, CStrangeServer::EEnd::Hang, u"没有响应"_s},
        {"", CStrangeServer::EEnd::Close, u"连接中断"_s},
        {"SSH-2.0\r\n\r\n", CStrangeServer::EEnd::Close, u"不可识别的响应"_s},
    };
    for (const auto& [reply, end, strMessage] : replies) {
        const FetchOutcome outcome = FetchReply(reply, end);
        EXPECT_TRUE(outcome.strText.contains(strMessage)) << strMessage << " | " << outcome.strText;
        ExpectUntouched(strMessage.toStdString());
    }
    for (const char* szAddress : {"/Down/x?Name=a", "ftp://h/x", "http://a b/x", "http:///x?Name=a"})
        EXPECT_TRUE(Fetch(Request(szAddress)).strText.contains(u"无效"_s)) << szAddress;
    EXPECT_TRUE(Fetch(Request("http://127.0.0.1:1/x")).strText.contains(u"无法与服务器建立连接"_s));
}

TEST_F(CTemplateFetcher, SendsTheAddressAsItStandsAndStopsWhenAsked) {
    CStrangeServer server("HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\nPK", CStrangeServer::EEnd::Hang);
    m_limits.Network.nSilentSeconds = 60;
    FetchOutcome outcome;
    std::thread fetching(
        [&] { outcome = RunFetch(Request(server.Url("/D.asp?Type=R&Name=甲 %1&")), m_progress, m_limits); });
    while (m_progress.nReceived == 0)
        std::this_thread::yield();
    m_progress.bCancelled = true;
    fetching.join();
    EXPECT_EQ(outcome.eEnd, EEnd::Cancelled);
    ExpectUntouched("cancelled");
    EXPECT_TRUE(server.Received().startsWith("GET /D.asp?Type=R&Name=\xBC\xD7 %1& HTTP/1.1\r\n"));
}

TEST_F(CTemplateFetcher, PutsInOrderWhatAKilledOneLeft) {
    m_folder.Write(u"SysData/.vorel-fetch/lock"_s,
                   "9999999\nVorelFetch\n" + QSysInfo::machineHostName().toUtf8() + '\n');
    m_folder.Write(u"SysData/.vorel-fetch/archive"_s, "half");
    m_folder.Write(u"SysData/.vorel-fetch/new/half.txt"_s, "half");
    m_folder.Write(u"SysData/.vorel-fetch/old/甲 一/older.txt"_s, "superseded");
    m_folder.Write(u"SysData/.vorel-fetch/old/丙/kept.txt"_s, "kept");
    EXPECT_EQ(FetchArchive(Pack({{c_strPage}})).eEnd, EEnd::Done);
    EXPECT_EQ(Templates(), (QStringList{u"丙"_s, u"甲 一"_s}));
    EXPECT_EQ(m_folder.Read(u"SysData/VorelTemplates/丙/kept.txt"_s), "kept");
    EXPECT_EQ(List(u"SysData/VorelTemplates/甲 一"_s), QStringList{u"eht"_s});
    EXPECT_EQ(List(u"SysData"_s), QStringList{u"VorelTemplates"_s});
}

TEST_F(CTemplateFetcher, ReplacesATemplateWhateverItsLettersAre) {
    m_folder.Write(u"SysData/VorelTemplates/blue %2/old.txt"_s, "old");
    CStrangeServer server("HTTP/1.0 200 OK\r\n\r\n" + Pack({{c_strPage}}));
    EXPECT_EQ(Fetch(Request(server.Url("/"), u"BLUE %2"_s)).strText, u"模板“blue %2”已下载，共 1 个文件。"_s);
    EXPECT_EQ(Templates(), (QStringList{u"blue %2"_s, u"甲 一"_s}));
    EXPECT_EQ(List(u"SysData/VorelTemplates/blue %2"_s), QStringList{u"eht"_s});
}

TEST_F(CTemplateFetcher, NeverWritesThroughALinkNorOverAFile) {
    const CTempFolder elsewhere;
    elsewhere.Write(u"kept.txt"_s, "kept");
    m_folder.Link(elsewhere.Native(), u"SysData/VorelTemplates/乙"_s);
    m_folder.Write(u"SysData/VorelTemplates/丙"_s, "a file");
    CStrangeServer server("HTTP/1.0 200 OK\r\n\r\n" + Pack({{c_strPage}}));
    EXPECT_EQ(Fetch(Request(server.Url("/"), u"乙"_s)).eEnd, EEnd::Done);
    EXPECT_TRUE(m_folder.Exists(u"SysData/VorelTemplates/乙/"_s + c_strPage));
    EXPECT_EQ(elsewhere.Tree(), u"kept.txt"_s);
    EXPECT_TRUE(Fetch(Request(server.Url("/"), u"丙"_s)).strText.contains(u"同名的文件"_s));
    EXPECT_EQ(m_folder.Read(u"SysData/VorelTemplates/丙"_s), "a file");
}

} // namespace
