#include "courseserver/CourseScript.h"
#include "courseserver/CourseService.h"
#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"
#include "foundation/Token.h"
#include "server/Protocol.h"
#include "tests/support/Printing.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <SQLiteCpp/Database.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 c_nHour = 3'600'000;

/// The script over a store of its own, with a clock that stands until it is moved.
class ScriptTest : public testing::Test {
protected:
    CTempFolder Folder;
    qint64 nNow = 1'000'000'000;
    QString strNotice;
    std::unique_ptr<CCourseStore> pStore = std::make_unique<CCourseStore>(Folder.Native(u"courses.db"_s));
    std::unique_ptr<CCourseScript> pScript;
    quint32 nTick = 0x80000000U;

    ScriptTest() {
        for (const ServedCourse& course : SampleCourses(u"示范 大学&"_s))
            pStore->AddCourse(course);
        Start(0);
    }
    void Start(int nMaxOnline) {
        ScriptSettings settings;
        settings.nSessionSeconds = 300;
        settings.nMaxOnline = nMaxOnline;
        settings.Now = [this] { return nNow; };
        settings.Notice = [this] { return strNotice; };
        pScript = std::make_unique<CCourseScript>(*pStore, settings);
    }
    void Restart() {
        pScript.reset();
        pStore.reset();
        pStore = std::make_unique<CCourseStore>(Folder.Native(u"courses.db"_s));
        Start(0);
    }

    QByteArray PasswordQuery(const QByteArray& who, int nId, const QByteArray& password,
                             const QByteArray& newDigest = {}) {
        const Protocol::KeyTexts keys = Protocol::PasswordKeys();
        const QByteArray token = SignToken(Md5Hex(password), ++nTick, 7, keys.strOne, keys.strTwo);
        const QByteArray head =
            newDigest.isEmpty() ? QByteArray("CheckPassword") : QByteArray("EditPassword");
        return head + "?CourseId=" + QByteArray::number(nId) + "&Password=" + token +
               (newDigest.isEmpty() ? QByteArray() : QByteArray("&New=" + newDigest)) +
               "&Info=" + Protocol::ClientTag(who, nId);
    }
    QByteArray ReportQuery(const QByteArray& who, int nId, int nType,
                           const QByteArray& figures = "&Count=3") {
        const ServedCourse course = *pStore->FindCourse(nId);
        const QByteArray digest =
            Protocol::StatusDigest(CodePage::Encode(course.strName), CodePage::Encode(course.strTeacher),
                                   Protocol::ClientTag(who, nId));
        const Protocol::KeyTexts keys = Protocol::SessionKeys(CodePage::Encode(course.strSchoolName));
        return "CheckCourseInfo?CourseId=" + QByteArray::number(nId) +
               "&Info=" + SignToken(digest, ++nTick, 9, keys.strOne, keys.strTwo) +
               "&Type=" + QByteArray::number(nType) + figures + "&Changed=-1&Size=2.500000";
    }
    /// "proven", "refused" or the error code.
    std::string Send(const QByteArray& query) {
        const ScriptReply reply = pScript->Run(query);
        if (reply.nErrorCode != 0) {
            EXPECT_FALSE(reply.bSuccessful);
            return std::to_string(reply.nErrorCode);
        }
        const bool bReport = reply.strOperation == "CheckCourseInfo";
        const QByteArray proof = bReport ? reply.Body : reply.Body.left(reply.Body.indexOf('\r'));
        EXPECT_EQ(proof.size(), 32);
        return proof == Protocol::ChallengeProof(nTick, bReport ? 9 : 7) ? "proven" : "refused";
    }
    std::string Password(const QByteArray& who, int nId = 1) {
        return Send(PasswordQuery(who, nId, "123456"));
    }
    std::string Report(const QByteArray& who, int nType, int nId = 1) {
        return Send(ReportQuery(who, nId, nType));
    }
};

TEST_F(ScriptTest, ASessionBeginsWithThePasswordAndEndsWithTheClosing) {
    EXPECT_EQ(Report("a", 264), "refused");
    EXPECT_EQ(Send(PasswordQuery("a", 1, "wrong")), "refused");
    EXPECT_EQ(Report("a", 264), "refused");
    EXPECT_EQ(Password("a"), "proven");
    EXPECT_EQ(Report("a", 264, 2), "refused") << "another course";
    EXPECT_EQ(Report("a", 264), "proven");
    EXPECT_EQ(Report("a", 8), "proven");
    EXPECT_EQ(Report("a", 264), "proven") << "a validation";
    Restart();
    EXPECT_EQ(Report("a", 8), "proven") << "sessions live on";
    EXPECT_EQ(Report("a", 520), "proven");
    EXPECT_EQ(Report("a", 264), "refused") << "asked for the password again";
    EXPECT_EQ(Report("a", 8), "refused");
}

TEST_F(ScriptTest, OneClientACourse) {
    Password("a");
    Password("b");
    EXPECT_EQ(Report("a", 264), "proven");
    for (const int nType : {264, 8})
        EXPECT_EQ(Report("b", nType), "17");
    EXPECT_EQ(Report("b", 520), "proven") << "leaving is always allowed";
    Password("b");
    EXPECT_EQ(Report("a", 8), "proven") << "and ends nobody else's session";
    nNow += 301'000;
    EXPECT_EQ(Password("b"), "proven");
    EXPECT_EQ(Report("b", 264), "proven") << "the other one has gone silent";
    EXPECT_EQ(Report("a", 8), "16");
}

TEST_F(ScriptTest, SilenceLosesTheSession) {
    Password("a");
    Report("a", 264);
    nNow += 299'000;
    EXPECT_EQ(Report("a", 8), "proven");
    nNow += 301'000;
    EXPECT_EQ(Report("a", 8), "16");
    EXPECT_EQ(Report("a", 520), "16");
    EXPECT_EQ(Report("a", 264), "refused") << "the password brings it back";
    EXPECT_EQ(Password("a"), "proven");
    EXPECT_EQ(Report("a", 264), "proven");
    nNow += 25 * c_nHour;
    Password("b");
    EXPECT_EQ(Report("a", 8), "refused") << "long forgotten";
    nNow += 301'000;
    EXPECT_EQ(Report("b", 264), "refused") << "a password that was not followed by an opening";
}

TEST_F(ScriptTest, PasswordsChange) {
    const auto rights = [&] {
        return Protocol::ParsePasswordReply(pScript->Run(PasswordQuery("a", 1, "123456")).Body).nRights;
    };
    EXPECT_EQ(rights(), 16);
    Password("b");
    EXPECT_EQ(Send(PasswordQuery("a", 1, "wrong!", Md5Hex("new123"))), "refused");
    EXPECT_EQ(rights(), 16);
    EXPECT_EQ(Send(PasswordQuery("a", 1, "123456", Md5Hex("new123"))), "proven");
    EXPECT_EQ(Password("a"), "refused");
    EXPECT_EQ(Report("b", 264), "refused") << "knew the old one only";
    EXPECT_EQ(Report("a", 264), "proven");
    Restart();
    const ScriptReply reply = pScript->Run(PasswordQuery("a", 1, "new123"));
    EXPECT_EQ(Protocol::ParsePasswordReply(reply.Body).nRights, 0);
    EXPECT_EQ(Report("a", 8), "proven") << "proving it once more leaves the course open";
}

TEST_F(ScriptTest, OverheardRequestsAreWorthNothing) {
    const QByteArray query = PasswordQuery("a", 1, "123456");
    EXPECT_EQ(Send(query), "proven");
    EXPECT_EQ(Send(query), "proven") << "repeated at once, as a proxy does";
    QByteArray stolen = query;
    stolen.replace(Protocol::ClientTag("a", 1), Protocol::ClientTag("thief", 1));
    EXPECT_EQ(Send(stolen), "refused");
    const QByteArray opening = ReportQuery("a", 1, 264);
    EXPECT_EQ(Send(opening), "proven");
    QByteArray closing = opening;
    EXPECT_EQ(Send(closing.replace("Type=264", "Type=520")), "refused");
    Restart();
    EXPECT_EQ(Send(stolen), "refused") << "a restart forgets no token";
    nNow += 6'000;
    EXPECT_EQ(Send(opening), "1") << "a proxy that repeats old requests";
    EXPECT_EQ(Report("a", 8), "proven");
    nNow += 40 * 24 * c_nHour;
    EXPECT_EQ(Send(stolen), "refused") << "and neither do weeks";
}

TEST_F(ScriptTest, ErrorsHaveTheirCodes) {
    Password("a");
    struct Case {
        QByteArray Query;
        const char* szOutcome;
    };
    const QByteArray password = PasswordQuery("a", 1, "123456");
    const auto without = [](QByteArray query, const char* szPiece) { return query.replace(szPiece, ""); };
    for (const Case& c : {Case{"", "2"},
                          {"Nothing?CourseId=1", "2"},
                          {"GetCourseList?Province=x&SchoolName=a", "2"},
                          {"GetCourseList?Province=0", "2"},
                          {"CheckPassword?CourseId=99999999999&Password=1&Info=2", "2"},
                          {"CheckPassword?CourseId=77&Password=1&Info=2", "8"},
                          {"CheckPassword?CourseId=1&Password=&Info=2", "2"},
                          {"CheckPassword?CourseId=1&Password=1&Info=" + QByteArray(65, 'x'), "2"},
                          {"CheckPassword?CourseId=1&Password=no.token&Info=x", "refused"},
                          {"EditPassword?CourseId=1&Password=1&Info=2&New=short", "2"},
                          {ReportQuery("a", 1, 9), "2"},
                          {ReportQuery("a", 1, 264, ""), "2"},
                          {without(ReportQuery("a", 1, 264), "&Size=2.500000"), "2"},
                          {ReportQuery("a", 1, 264).replace("2.500000", "nan"), "2"},
                          {without(password, "CourseId=1"), "2"}}) {
        EXPECT_EQ(Send(c.Query), c.szOutcome) << c.Query.toStdString();
    }
    strNotice = u"维护中"_s;
    const ScriptReply reply = pScript->Run(password);
    EXPECT_EQ(reply.nErrorCode, 64);
    EXPECT_EQ(CodePage::Decode(reply.Body), strNotice);
}

TEST_F(ScriptTest, OnlySoManyCoursesAtOnce) {
    Start(1);
    Password("a", 1);
    Password("b", 2);
    EXPECT_EQ(Report("a", 264, 1), "proven");
    EXPECT_EQ(Report("b", 264, 2), "18");
    EXPECT_EQ(Report("a", 8, 1), "proven");
    EXPECT_EQ(Report("a", 520, 1), "proven");
    EXPECT_EQ(Report("b", 264, 2), "proven");
}

TEST_F(ScriptTest, AStoreThatFailsIsErrorFour) {
    SQLite::Database(Folder.Native(u"courses.db"_s).toStdString(), SQLite::OPEN_READWRITE)
        .exec("DROP TABLE Course");
    EXPECT_EQ(Password("a"), "4");
    EXPECT_EQ(Send("GetCourseList?Province=0&SchoolName=x"), "4");
}

} // namespace
