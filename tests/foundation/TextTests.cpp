#include "foundation/Exceptions.h"
#include "foundation/Random.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"
#include "tests/support/Printing.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <set>

using namespace Qt::Literals::StringLiterals;

namespace {

TEST(Text, SplittingAlwaysHasAPieceBehindTheLastSeparator) {
    QStringList list{u"kept"_s};
    SplitText(u"a,,b,"_s, list, u',');
    EXPECT_EQ(list, (QStringList{u"kept"_s, u"a"_s, u""_s, u"b"_s, u""_s}));
    list.clear();
    SplitText(QString(), list, u',');
    EXPECT_EQ(list, QStringList{u""_s});
}

TEST(Text, NumbersAreReadAsFarAsTheyGo) {
    const struct {
        QString strText;
        qint32 nValue;
    } cases[] = {
        {u" \t12x"_s, 12},
        {u"-7"_s, -7},
        {u"+3"_s, 3},
        {u"- 3"_s, 0},
        {u""_s, 0},
        {u"x1"_s, 0},
        {u"１"_s, 0},
        {u"2147483647"_s, 2147483647},
        {u"2147483648"_s, 2147483647},
        {u"-99999999999999999999"_s, -2147483647 - 1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ParseInt(c.strText), c.nValue) << c.strText.toStdString();
}

TEST(Text, OnlyAsciiLettersHaveACase) {
    EXPECT_EQ(LowerAscii(u"AZ[É课İ"_s), u"az[É课İ"_s);
    EXPECT_TRUE(EqualsIgnoringCase(u"Recent0", u"rECENT0"));
    EXPECT_FALSE(EqualsIgnoringCase(u"É", u"é"));
    EXPECT_FALSE(EqualsIgnoringCase(u"a@", u"a`"));
    EXPECT_FALSE(EqualsIgnoringCase(u"a", u"ab"));
}

TEST(TextFile, LinesAreJoinedByALineFeedAndTheLastOneIsDropped) {
    CTempFolder folder;
    const struct {
        QByteArray bytes;
        QString strText;
    } cases[] = {
        {"a\r\nb\nc\r\n", u"a\nb\nc"_s},
        {"a\n\n", u"a\n"_s},
        {"", u""_s},
        {"\xBF\xCE\rx", u"课\rx"_s},
    };
    for (const auto& c : cases) {
        folder.Write(u"t.txt"_s, c.bytes);
        EXPECT_EQ(ReadTextFile(folder.Path(u"t.txt"_s)), c.strText);
    }
    EXPECT_EQ(ReadTextFile(folder.Path(u"none"_s)), QString());
    EXPECT_TRUE(WriteTextFile(folder.Path(u"t.txt"_s), u"课\nb"_s));
    EXPECT_EQ(folder.Read(u"t.txt"_s), "\xBF\xCE\r\nb");
    EXPECT_FALSE(WriteTextFile(folder.Path(u"none\\t.txt"_s), u"x"_s));
    // Cut at 260 bytes this would be another file.
    const QString strLong = folder.Path(QString(255, u'n'));
    EXPECT_FALSE(WriteTextFile(strLong + u"nnn.txt"_s, u"x"_s));
    EXPECT_THROW(ReadFileBytes(folder.Path(u"none"_s)), Torvane::File::CFileException);
}

TEST(Exceptions, AFileErrorEndsWithTheSystemsReason) {
    using Torvane::File::CFileException;
    EXPECT_EQ(CFileException(u"文本"_s, 0).GetMessage(), u"文本"_s);
    EXPECT_EQ(CFileException(u"文本"_s, ENOENT).GetMessage(), u"文本(No such file or directory)"_s);
    EXPECT_EQ(CFileException(u"文本"_s, 99999).GetMessage(), u"文本(Unknown Error!)"_s);
    // 1,023 bytes end in the middle of the 512th character.
    EXPECT_EQ(CFileException(QString(600, u'课'), ENOENT).GetMessage(),
              QString(QString(511, u'课') + u"(No such file or directory)"_s));
    EXPECT_FALSE(Torvane::CException(QString()).GetMessage().isNull());
}

TEST(Random, StaysWithinItsFifteenBits) {
    std::set<int> seen;
    for (int i = 0; i < 2000; ++i) {
        const int n = NextRandom();
        ASSERT_TRUE(n >= 0 && n <= 32767);
        seen.insert(n);
    }
    EXPECT_GT(seen.size(), 1500U);
    EXPECT_GT(*seen.rbegin(), 30000);
}

} // namespace
