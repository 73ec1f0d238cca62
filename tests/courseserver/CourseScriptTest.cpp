#include "courseserver/CourseScript.h"
#include "courseserver/CourseService.h"
#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"
#include "foundation/Token.h"
#include "server/Protocol.h"
#include "tests/support/Testing.h"

#include <SQLiteCpp/Database.h>

namespace {

/// The script over a store of its own, with a clock that stands until it is moved.
class ScriptTest : public testing::Test {
protected:
    CTempFolder Folder;
    qint64 nNow = 1'000'000'000;
    QString strNotice;
    std::unique_ptr<CCourseStore> pStore;
    std::unique_ptr<CCourseScript> pScript;
    quint32 nTick = 0x80000000U;

    ScriptTest() {
        Start(0);
        for (const ServedCourse& course : SampleCourses(u"示范 大学&"_s))
            pStore->AddCourse(course);
    }
    void Start(int nMaxOnline) {
        pScript.reset();
        pStore.reset();
        pStore = std::make_unique<CCourseStore>(Folder.Native(u"courses.db"_s));
        const ScriptSettings settings{300, nMaxOnline, [this] { return nNow; }, [this] { return strNotice; }};
        pScript = std::make_unique<CCourseScript>(*pStore, settings);
    }

    QByteArray PasswordQuery(const QByteArray& who, int nId, const QByteArray& password,
                             const QByteArray& newDigest = {}) {
        const Protocol::KeyTexts keys = Protocol::PasswordKeys();
        const QByteArray token = SignToken(Md5Hex(password), ++nTick, 7, keys.strOne, keys.strTwo);
        return QByteArray(newDigest.isEmpty() ? "Check" : "Edit") +
               "Password?CourseId=" + QByteArray::number(nId) + "&Password=" + token + "&New=" + newDigest +
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
    /// Plays steps such as "a264 proven": who, "P" for the password or a report's type, and the outcome; "/2"
    /// behind the type for course 2. "+5" lets seconds pass, "restart" restarts the server.
    void Play(const char* szSteps) {
        for (const QByteArray& step : QByteArray(szSteps).split(',')) {
            const QByteArrayList words = step.trimmed().split(' ');
            const QByteArrayList what = words[0].mid(1).split('/');
            const int nId = what.size() > 1 ? what[1].toInt() : 1;
            const QByteArray who = words[0].left(1);
            if (words[0] == "restart")
                Start(0);
            else if (who == "+")
                nNow += what[0].toLongLong() * 1000;
            else
                EXPECT_EQ(Send(what[0] == "P" ? PasswordQuery(who, nId, "123456")
                                              : ReportQuery(who, nId, what[0].toInt())),
                          words[1].toStdString())
                    << step << " of " << szSteps;
        }
    }
};

TEST_F(ScriptTest, ASessionBeginsWithThePasswordAndEndsWithTheClosing) {
    Play("a264 refused, aP proven, a264/2 refused, a264 proven, a8 proven, a264 proven, restart, a8 proven");
    Play("a520 proven, a264 refused, a8 refused");
    EXPECT_EQ(Send(PasswordQuery("a", 1, "wrong")), "refused");
    Play("a264 refused");
}

TEST_F(ScriptTest, OneClientACourse) {
    Play("aP proven, bP proven, a264 proven, b264 17, b8 17, b520 proven, bP proven, a8 proven");
    Play("+301, bP proven, b264 proven, a8 16");
    Play("+-3600, aP proven, a264 proven, b8 16"); // the clock was set back
}

TEST_F(ScriptTest, SilenceLosesTheSession) {
    Play("aP proven, a264 proven, +299, a8 proven, +301, a8 16, a520 16, a264 refused, aP proven, a264 "
         "proven");
    Play("+90000, bP proven, a8 refused, +301, b264 refused");
}

TEST_F(ScriptTest, OnlySoManyCoursesAtOnce) {
    Start(1);
    Play("aP/1 proven, bP/2 proven, a264/1 proven, b264/2 18, a8/1 proven, a520/1 proven, b264/2 proven");
}

TEST_F(ScriptTest, AChangedPasswordIsToBeProvenByEveryOtherClient) {
    Play("bP proven");
    EXPECT_EQ(Send(PasswordQuery("a", 1, "wrong!", Md5Hex("new123"))), "refused");
    EXPECT_EQ(Send(PasswordQuery("a", 1, "123456", Md5Hex("new123"))), "proven");
    Play("aP refused, b264 refused, a264 proven, restart, a8 proven");
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
    EXPECT_EQ(Send(QByteArray(opening).replace("Type=264", "Type=520")), "refused");
    Play("restart, +6");
    EXPECT_EQ(Send(opening), "1") << "a proxy that repeats old requests";
    Play("a8 proven, +4000000");
    EXPECT_EQ(Send(stolen), "refused") << "weeks forget no token";
}

TEST_F(ScriptTest, ErrorsHaveTheirCodes) {
    Play("aP proven");
    const QByteArray password = PasswordQuery("a", 1, "123456"), opening = ReportQuery("a", 1, 264);
    const QByteArray malformed[] = {"",
                                    "Nothing?CourseId=1",
                                    "GetCourseList?Province=x&SchoolName=a",
                                    "GetCourseList?Province=0",
                                    "CheckPassword?CourseId=99999999999&Password=1&Info=2",
                                    "CheckPassword?CourseId=1&Password=&Info=2",
                                    "CheckPassword?CourseId=1&Password=1&Info=" + QByteArray(65, 'x'),
                                    "EditPassword?CourseId=1&Password=1&Info=2&New=short",
                                    ReportQuery("a", 1, 9),
                                    ReportQuery("a", 1, 264, ""),
                                    QByteArray(opening).replace("&Size=2.500000", ""),
                                    QByteArray(opening).replace("2.500000", "nan")};
    for (const QByteArray& query : malformed)
        EXPECT_EQ(Send(query), "2") << query;
    EXPECT_EQ(Send("CheckPassword?CourseId=77&Password=1&Info=2"), "8");
    EXPECT_EQ(Send("CheckPassword?CourseId=1&Password=no.token&Info=x"), "refused");
    strNotice = u"维护中"_s;
    const ScriptReply reply = pScript->Run(password);
    EXPECT_EQ(reply.nErrorCode, 64);
    EXPECT_EQ(CodePage::Decode(reply.Body), strNotice);
}

TEST_F(ScriptTest, AStoreThatIsHeldOrBrokenIsErrorFour) {
    SQLite::Database other(Folder.Native(u"courses.db"_s).toStdString(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN EXCLUSIVE");
    Play("aP 4");
    other.exec("ROLLBACK");
    Play("aP proven");
    other.exec("DROP TABLE Course");
    EXPECT_EQ(Send("GetCourseList?Province=0&SchoolName=x"), "4");
}

} // namespace
