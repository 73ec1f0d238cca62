#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"
#include "foundation/Token.h"
#include "tests/support/Testing.h"

namespace {

constexpr auto H = [](const char* szHex) { return QByteArray::fromHex(szHex); };

TEST(Ciphers, DigestsAndEncodingsHaveTheirText) {
    const std::pair<QByteArray, QByteArray> cases[] = {
        {Md5Hex("abc"), "900150983cd24fb0d6963f7d28e17f72"},
        {Md5Hex(QByteArray("1234567890").repeated(8)), "57edf4a22be3c955ac49da2e2107b67a"},
        {Md5Hex(CodePage::Encode(u"课程name"_s)), "189bf10a5815d6b880af64d8ba771680"},
        {Md5Hex(""), ""},
        {EncodeHex(H("00ff1aB9")), "00FF1AB9"},
        {DecodeHex("00fF1aB9"), H("00ff1ab9")},
        {DecodeHex("4x1"), H("40")},
        {DecodeHex("\xFF\x80"), H("00")},
        {EncodeBase64Paren(H("00")), "AA;;"},
        {EncodeBase64Paren(H("0000")), "AAA;"},
        {EncodeBase64Paren(H("fbefbeffffff")), "(((())))"},
        {EncodeBase64Paren(""), ""}};
    for (const auto& [made, expected] : cases)
        EXPECT_EQ(made, expected);
}

// Computed apart from this program, from the two lines that define the stream.
TEST(Ciphers, TheScramblerHasItsBytes) {
    const struct {
        QByteArray plain;
        quint32 nSeed;
        QByteArray scrambled;
    } cases[] = {{"Vorel", 0x1234AB, H("6275b69c03")},
                 {CodePage::Encode(u"课程 course    "_s), 7, H("bf0b95ed3f6ca40ddee3b2a943121a")},
                 {QByteArray(6, '\0'), 0xFFFFFFFF, H("ffd0d026f9eb")}};
    for (const auto& c : cases) {
        EXPECT_EQ(ScrambleBytes(c.plain, c.nSeed).left(c.scrambled.size()), c.scrambled);
        EXPECT_EQ(UnscrambleBytes(ScrambleBytes(c.plain, c.nSeed), c.nSeed), c.plain);
    }
}

TEST(Ciphers, DesHasItsPublishedVectors) {
    const struct {
        QByteArray key, plain, cipher;
    } cases[] = {{H("0101010101010101"), H("8000000000000000"), H("95F8A5E5DD31D900")},
                 {H("7CA110454A1A6E57"), H("01A1D6D039776742"), H("690F5B0D9A26939B")},
                 // From another library: padding of key and text, two keys from the ninth byte on, the cut.
                 {"12345678", "Vorel", H("181DC01A977A60A5")},
                 {"k", "xxxxxxxxx", H("89C29D8A4A9D203985A2335B350EC4F8")},
                 {"123456789", "Vorel co", H("55CDA7E71804ADFF")},
                 {"0123456789abcdefXYZ", "\xB5\xDA\xD2\xBB\xD5\xC2 \xD0\xF7\xC2\xDB",
                  H("8665DD653FF0013999444E0BD20FBCD0")}};
    for (const auto& c : cases) {
        EXPECT_EQ(EncryptDes(c.plain, c.key), c.cipher);
        EXPECT_EQ(DecryptDes(c.cipher, c.key).left(c.plain.size()), c.plain);
    }
    EXPECT_EQ(EncryptDesHex("", "key"), "");
    EXPECT_EQ(DecryptDesHex(EncryptDesHex("Vorel", "12345678"), "12345678"), "Vorel") << "no padding";
    EXPECT_EQ(DecryptDes("abc", "key").size(), 8) << "half a block, as a damaged file may hold it";
}

const struct {
    QByteArray digest;
    quint32 nTick, nRandom;
    QByteArray one, two, token;
} c_tokens[] = {
    // Computed apart, by plain modular power with whole numbers; the third has a small second prime.
    {"0123456789abcdef0123456789abcdef", 0x12345678, 32767, "7f3c90be12d4a8", "c05519ee02b67d",
     "IQSK1V.1VQFU99.1D6WLAM.1H25JX7.M1Y6AE.1HPDAP2.4QMPHM"},
    {"00000000000000000000000000000000", 0, 1, "course server key one", "another text of a key",
     "12J7Q6P.O3DV3Q.1QV67SJ.1THSJ3V.13LADXW.B6KB1W.17VPD22.1VH640L.1B0K6CO.324TNK.1O0"},
    {"d41d8cd98f00b204e9800998ecf8427e", 1, 2, "zzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzz", "A",
     "1363WEH.1E25G50.3WQ6ZE.YKEFHG.1U7S22T.C1R6A5.1C0NDCM.1966ZNH.S"}};

TEST(Token, IsSignedAndOpened) {
    for (const auto& c : c_tokens) {
        EXPECT_EQ(SignToken(c.digest, c.nTick, c.nRandom, c.one, c.two), c.token);
        const auto opened = OpenToken(c.token, c.one, c.two);
        ASSERT_TRUE(opened.has_value());
        EXPECT_EQ(opened->digest, c.digest);
        EXPECT_TRUE(opened->nTick == c.nTick && opened->nRandom == c.nRandom);
        EXPECT_FALSE(OpenToken(c.token, "another key", c.two).has_value());
    }
}

TEST(Token, WhatIsNoTokenIsRefused) {
    const auto& c = c_tokens[0];
    for (const QByteArray& bad :
         QByteArrayList{"", ".", c.token + '.', c.token.toLower(), "ZZZZZZZ", "12345678", c.token + ".1",
                        QByteArray("1.").repeated(100000)})
        EXPECT_FALSE(OpenToken(bad, c.one, c.two).has_value()) << bad.left(40);
    // Keys that make none: no hang, no crash.
    EXPECT_EQ(SignToken(c.digest, 1, 2, "same", "same"), "");
    SignToken("xyz", 1, 2, "", "");
    OpenToken("1", "", "");
}

} // namespace
