#include "foundation/CodePage.h"
#include "tests/support/Testing.h"

#include <iconv.h>

namespace {

// The C library's converter to GBK, which shares no code with ours. Empty when GBK has no such character.
QByteArray SystemGbk(char16_t c) {
    static const iconv_t s_converter = ::iconv_open("GBK", "UTF-16LE");
    char* pIn = reinterpret_cast<char*>(&c);
    size_t nIn = sizeof c;
    char out[8];
    char* pOut = out;
    size_t nOut = sizeof out;
    ::iconv(s_converter, nullptr, nullptr, nullptr, nullptr);
    return ::iconv(s_converter, &pIn, &nIn, &pOut, &nOut) == 0 ? QByteArray(out, pOut - out) : QByteArray();
}

TEST(CodePage, HasTheBytesOfGbkAndLosesNoOtherCharacter) {
    // Written by the command "iconv -t GBK". Second bytes here equal "\", "Z", "@" and "|".
    EXPECT_EQ(CodePage::Encode(u"㈱丂狛齄€ 镕堃瞭"_s).toHex(), "a95a8140a0fef7fe8020e94688d2b274");
    QString strAll;
    int nInGbk = 0;
    for (char32_t n = 1; n < 0x110000; ++n) {
        if (n >= 0xD800 && n < 0xE000)
            continue;
        const QString str = QString::fromUcs4(&n, 1);
        strAll += str;
        const QByteArray gbk = n < 0x10000 ? SystemGbk(static_cast<char16_t>(n)) : QByteArray();
        nInGbk += gbk.isEmpty() ? 0 : 1;
        ASSERT_TRUE(gbk.isEmpty() || (CodePage::Encode(str) == gbk && CodePage::Decode(gbk) == str))
            << uint(n);
    }
    EXPECT_GT(nInGbk, 21000);
    EXPECT_TRUE(CodePage::Decode(CodePage::Encode(strAll)) == strAll);
    EXPECT_EQ(CodePage::ByteLength(strAll), CodePage::Encode(strAll).size());
}

TEST(CodePage, WhatIsNoTextBecomesAMarkAndSpoilsNothingAfterIt) {
    EXPECT_EQ(CodePage::Decode(CodePage::Encode(QString(QChar(0xD800)))), u"\uFFFD"_s);
    const std::pair<QByteArray, QString> cases[] = {
        {QByteArray("a\xFF"
                    "b"),
         u"a\uFFFDb"_s},
        // An unfinished character at the end must show, and not wait for the next call.
        {"\xD6\xD0\xD6", u"中\uFFFD"_s},
        {"x", u"x"_s},
        {QByteArray("a\0b", 3), QString::fromLatin1("a\0b", 3)},
        // 0x80 as a second byte, alone, and the two-byte euro sign.
        {"\x81\x80\x80\xA2\xE3", u"亐€€"_s}};
    for (const auto& [bytes, strText] : cases)
        EXPECT_EQ(CodePage::Decode(bytes), strText);
}

TEST(CodePage, CutsOnACharacterBoundary) {
    const struct {
        QString strText;
        qsizetype nBytes;
        QString strCut;
    } cases[] = {{u"abc"_s, 2, u"ab"_s}, {u"课程"_s, 3, u"课"_s}, {u"课程"_s, 4, u"课程"_s},
                 {u"😀x"_s, 3, u""_s},    {u"😀x"_s, 4, u"😀"_s},    {u"课"_s, 0, u""_s}};
    for (const auto& c : cases)
        EXPECT_EQ(CodePage::Cut(c.strText, c.nBytes), c.strCut) << c.strText;
}

} // namespace
