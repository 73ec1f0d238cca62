#include "foundation/Exceptions.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"
#include "tests/support/Testing.h"

namespace {

TEST(Text, SplittingAlwaysHasAPieceBehindTheLastSeparator) {
    QStringList list{u"kept"_s};
    SplitText(u"a,,b,"_s, list, u',');
    SplitText(QString(), list, u',');
    EXPECT_EQ(list, (QStringList{u"kept"_s, u"a"_s, u""_s, u"b"_s, u""_s, u""_s}));
}

TEST(Text, NumbersAreReadAsFarAsTheyGo) {
    const std::pair<QString, qint32> cases[] = {{u" \t12x"_s, 12},
                                                {u"-7"_s, -7},
                                                {u"+3"_s, 3},
                                                {u"- 3"_s, 0},
                                                {u""_s, 0},
                                                {u"１"_s, 0},
                                                {u"2147483648"_s, 2147483647},
                                                {u"-99999999999999999999"_s, -2147483647 - 1}};
    for (const auto& [strText, nValue] : cases)
        EXPECT_EQ(ParseInt(strText), nValue) << strText;
}

TEST(TextFile, LinesAreJoinedByALineFeedAndTheLastOneIsDropped) {
    const CTempFolder folder;
    const std::pair<QByteArray, QString> cases[] = {
        {"a\r\nb\nc\r\n", u"a\nb\nc"_s}, {"a\n\n", u"a\n"_s}, {"", u""_s}, {"\xBF\xCE\rx", u"课\rx"_s}};
    for (const auto& [bytes, strText] : cases) {
        folder.Write(u"t.txt"_s, bytes);
        EXPECT_EQ(ReadTextFile(folder.Path(u"t.txt"_s)), strText);
    }
    EXPECT_EQ(ReadTextFile(folder.Path(u"none"_s)), QString());
    EXPECT_TRUE(WriteTextFile(folder.Path(u"t.txt"_s), u"课\nb"_s));
    EXPECT_EQ(folder.Read(u"t.txt"_s), "\xBF\xCE\r\nb");
    EXPECT_FALSE(WriteTextFile(folder.Path(u"none\\t.txt"_s), u"x"_s));
    // Cut at 260 bytes this would be another file.
    EXPECT_FALSE(WriteTextFile(folder.Path(QString(255, u'n')) + u"nnn.txt"_s, u"x"_s));
    EXPECT_THROW(ReadFileBytes(folder.Path(u"none"_s)), Torvane::File::CFileException);
}

} // namespace
