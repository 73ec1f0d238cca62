#include "video/VideoScripts.h"
#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "tests/support/Testing.h"
#include "video/Outline.h"

namespace {

// Computed with whole numbers of another language from the rule alone: primes of the first windows, of
// windows of digests' digests, and a name whose salted form is cut in the middle of a character.
TEST(VideoKey, FollowsFromTheSchoolsName) {
    const struct {
        QString strSchool;
        QByteArray modulus;
        quint32 nSeed;
    } cases[] = {{u"示范大学"_s, "9560EDDD8F589BE35E4D651C92A8EB1D", 219},
                 {u"北京大学"_s, "613F3DECA40DC71D71844DCCCC1C1ED1", 193},
                 {u"清华大学"_s, "92F7EADFB8316F03957137C9C313129D", 119},
                 {u"A"_s, "A34591832C303B350E9AC747D1ABBB6D", 127},
                 {u"Vorel University"_s, "F26EE8A6C4007ABF21316317AF68BFE1", 119},
                 {u"中国科学技术大学软件学院继续教育"_s, "6F4AB70DF8A4A9BF4E7089696FF37569", 135},
                 {u"浙江大学城市学院"_s, "7DD34BC149706D014196B8F954786711", 174},
                 {u"学校0"_s, "778392340CF7940847F1A3B1444B87E9", 8},
                 {u"学校3"_s, "C5BE5B45F43A570A96EFC7B94AF9FCD1", 215}};
    for (const auto& c : cases) {
        const auto key = CVideoKey(c.strSchool).GetRecorderKey();
        ASSERT_TRUE(key) << c.strSchool;
        EXPECT_EQ(key->Modulus, c.modulus) << c.strSchool;
        EXPECT_EQ(key->nSeed, c.nSeed);
    }
    EXPECT_FALSE(CVideoKey(QString()).GetRecorderKey());
}

class VideoScriptsTest : public ::testing::Test {
protected:
    SVideoScripts Read(const QByteArray& bytes, const QString& strSchool = u"示范大学"_s) {
        m_folder.Write(u"CourseInfo\\s.esf"_s, bytes);
        return ReadVideoScripts(m_folder.Path(), CVideoKey(strSchool));
    }
    std::string FailureOf(const QByteArray& bytes) {
        try {
            Read(bytes);
        } catch (const Torvane::CRunException& e) {
            return e.GetMessage().toStdString();
        }
        return {};
    }

    CTempFolder m_folder;
};

// The file was written by that other computation, with text that goes over from one block to the next.
TEST_F(VideoScriptsTest, AFileFromElsewhereReads) {
    const SVideoScripts scripts = Read(ReadTestFile(VOREL_SEEDS "lecture.esf"));
    EXPECT_EQ(scripts.First,
              (QStringList{u"ShowSlide(1)"_s, u"GoTo(\"第二页 · 面向对象\")"_s, u"Show(3)"_s, {}}));
    EXPECT_EQ(scripts.Second, (QStringList{u"MoveMouse(10,20)"_s, u"MoveMouse(30,40)"_s, u"MoveMouse"_s}));
    const std::pair<const char*, QString> called[] = {{"-1", scripts.First[0]},
                                                      {"-3", scripts.First[2]},
                                                      {"-4", {}},
                                                      {"-5", {}},
                                                      {"0", scripts.Second[0]},
                                                      {"1", scripts.Second[1]},
                                                      {"2", {}},
                                                      {"-99999999999", {}},
                                                      {"77", {}},
                                                      {"x", scripts.Second[0]},
                                                      {" -2;", scripts.First[1]}};
    for (const auto& [szParameter, strScript] : called)
        EXPECT_EQ(scripts.Called(QString::fromLatin1(szParameter)), strScript) << szParameter;
}

TEST_F(VideoScriptsTest, WhatIsWrittenReadsBack) {
    const QStringList calls{u"ShowSlide(1)"_s, u"中文；与\t制表\n"_s, u"长"_s.repeated(5000), u"a;b"_s};
    const QStringList places{u"(0,0)"_s, u"(1023,767)"_s};
    for (const QString& strSchool : {u"示范大学"_s, u"A"_s, u"学校3"_s}) {
        const SVideoScripts read =
            Read(MakeVideoScripts(calls, places, *CVideoKey(strSchool).GetRecorderKey()), strSchool);
        EXPECT_EQ(read.First, (QStringList{calls[0], u"中文；与 制表 "_s, calls[2], u"ab"_s, {}}));
        EXPECT_EQ(read.Second.size(), 3);
        EXPECT_EQ(read.Second[1], u"MoveMouse(1023,767)"_s);
    }
    EXPECT_THROW(MakeVideoScripts(calls, {}, {1, "12"}), Torvane::CRunException);
    EXPECT_THROW(MakeVideoScripts({u"x"_s.repeated(1000000)}, {}, *CVideoKey(u"A"_s).GetRecorderKey()),
                 Torvane::CRunException);
}

TEST_F(VideoScriptsTest, DamagedFilesSayWhatTheyAre) {
    const std::string strBad = "对不起，错误的文件格式！";
    const QByteArray whole = ReadTestFile(VOREL_SEEDS "lecture.esf");
    // Every length: what is left either holds the trailer's blocks or is told to be no script file.
    for (qsizetype n = 0; n < whole.size(); ++n) {
        const std::string strFailure = FailureOf(whole.first(n));
        EXPECT_TRUE(strFailure.empty() || strFailure == strBad) << n << strFailure;
        EXPECT_TRUE(n >= 2 || !strFailure.empty()) << n;
    }
    const std::pair<QByteArray, std::string> cases[] = {{"\xD5\x3A", {}},
                                                        {QByteArray(15, 'x') + "\xD4\x3A", strBad},
                                                        {QByteArray(16, 'x') + "\xD4\x3A", {}},
                                                        {QByteArray(16, '\0') + "\xD4\x3A", {}},
                                                        {QByteArray(16, '\xFF') + "\xD4\x3A", {}},
                                                        {QByteArray(40, 'x') + QByteArray(2, '\0'), strBad}};
    for (const auto& [bytes, strFailure] : cases)
        EXPECT_EQ(FailureOf(bytes), strFailure) << bytes.toHex().constData();
    EXPECT_FALSE(Read(whole, u"别的大学"_s).First.contains(u"ShowSlide(1)"_s));

    // Nothing but separators, the largest second stretch there is, a gigabyte.
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(FailureOf(ScrambleBytes(QByteArray(8000000, ';'), 219) + "\xD5\x3A"), strBad);
    EXPECT_EQ(FailureOf(QByteArray(0xFFFF * 16, 'x') + "\x2A\xC5"), "");
    EXPECT_TRUE(QFile::resize(m_folder.Native(u"CourseInfo/s.esf"_s), qint64{1} << 30));
    EXPECT_THROW(ReadVideoScripts(m_folder.Path(), CVideoKey(u"A"_s)), Torvane::CRunException);
    EXPECT_LT(time.elapsed(), 20000);

    QFile::remove(m_folder.Native(u"CourseInfo/s.esf"_s));
    try {
        ReadVideoScripts(m_folder.Path(), CVideoKey(u"A"_s));
        ADD_FAILURE();
    } catch (const Torvane::CRunException& e) {
        EXPECT_EQ(e.GetMessage(), u"对不起，无法打开视频文件！"_s);
    }
}

TEST(Outline, NamesStandBetweenTheFirstAndTheLastQuote) {
    const CTempFolder folder;
    const QString strLine = u"g_arrOutlineName[ g_arrOutlineName.length ]"_s;
    const auto read = [&](const QByteArray& bytes) {
        folder.Write(u"Outline.js"_s, bytes);
        QStringList names{u"before"_s};
        EXPECT_TRUE(ReadOutline(folder.Path(u"Outline.js"_s), names));
        return names;
    };
    const QString strText = u"var g_arrOutlineName = \"no\";\n  "_s + strLine + u" = \"第一章\";\r\n"_s +
                            strLine + u" = \"a \\\"b\\\" c\" + \"d\"\n"_s + strLine + u" = none\n"_s +
                            strLine + u" = \"open\ng_arrOutlineName[g_arrOutlineName.length] = \"no\"\n"_s +
                            strLine + u"=\"末\""_s;
    const QStringList names{u"第一章"_s, u"a \"b\" c\" + \"d"_s, {}, {}, u"末"_s};
    EXPECT_EQ(read(CodePage::Encode(strText)), names);
    EXPECT_EQ(read("\xEF\xBB\xBF" + strText.toUtf8()), names);
    EXPECT_EQ(read(strText.toUtf8()), names);
    const QString strMarked = QChar(0xFEFF) + strText;
    EXPECT_EQ(read(QByteArray(reinterpret_cast<const char*>(strMarked.utf16()), strMarked.size() * 2)),
              names);
    EXPECT_EQ(read({}), QStringList());

    const QStringList written{u"一"_s, u"说 \"好\""_s, u"x\ny"_s};
    EXPECT_EQ(read(MakeOutline(written)), (QStringList{written[0], written[1], u"x y"_s}));
    EXPECT_EQ(read(CodePage::Encode(QString(strLine + u" = \"x\"\n"_s)).repeated(100000)).size(), 100000);
    QStringList left{u"before"_s};
    EXPECT_FALSE(ReadOutline(folder.Path(), left));
    EXPECT_FALSE(ReadOutline(folder.Path(u"none"_s), left));
    EXPECT_TRUE(left.isEmpty());
}

} // namespace
