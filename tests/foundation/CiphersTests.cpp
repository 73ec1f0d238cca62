#include "foundation/Ciphers.h"
#include "foundation/CodePage.h"
#include "foundation/Token.h"
#include "tests/support/Printing.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray H(const char* szHex) {
    return QByteArray::fromHex(szHex);
}

TEST(Ciphers, Md5HasTheVectorsOfRfc1321) {
    const struct {
        QByteArray text;
        QByteArray digest;
    } cases[] = {
        {"a", "0cc175b9c0f1b6a831c399e269772661"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
        {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
         "d174ab98d277d9f5a5611c2c9f419d9f"},
        {QByteArray("1234567890").repeated(8), "57edf4a22be3c955ac49da2e2107b67a"},
        {CodePage::Encode(u"课程name"_s), "189bf10a5815d6b880af64d8ba771680"},
        {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Md5Hex(c.text), c.digest);
}

TEST(Ciphers, HexAndItsBadInput) {
    EXPECT_EQ(EncodeHex(H("00ff1aB9")), "00FF1AB9");
    EXPECT_EQ(DecodeHex("00fF1aB9"), H("00ff1ab9"));
    EXPECT_EQ(DecodeHex("4x1"), H("40"));
    EXPECT_EQ(DecodeHex("\xFF\x80"), H("00"));
}

TEST(Ciphers, Base64HasItsOwnLastCharactersAndPad) {
    EXPECT_EQ(EncodeBase64Paren(H("00")), "AA;;");
    EXPECT_EQ(EncodeBase64Paren(H("0000")), "AAA;");
    EXPECT_EQ(EncodeBase64Paren(H("000000")), "AAAA");
    EXPECT_EQ(EncodeBase64Paren("foobar"), "Zm9vYmFy");
    EXPECT_EQ(EncodeBase64Paren(H("fbefbeffffff")), "(((())))");
    EXPECT_EQ(EncodeBase64Paren(""), "");
}

// Computed apart from this program, from the two lines that define the stream.
TEST(Ciphers, TheScramblerHasItsBytes) {
    const struct {
        QByteArray plain;
        quint32 nSeed;
        QByteArray scrambled;
    } cases[] = {
        {"Vorel", 0x1234AB, H("6275b69c03")},
        {CodePage::Encode(u"课程 course    "_s), 7, H("bf0b95ed3f6ca40ddee3b2a943121a")},
        {QByteArray(6, '\0'), 0xFFFFFFFF, H("ffd0d026f9eb")},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ScrambleBytes(c.plain, c.nSeed).left(c.scrambled.size()), c.scrambled);
        EXPECT_EQ(UnscrambleBytes(ScrambleBytes(c.plain, c.nSeed), c.nSeed), c.plain);
    }
}

TEST(Ciphers, DesHasItsPublishedVectors) {
    const struct {
        QByteArray key;
        QByteArray plain;
        QByteArray cipher;
    } cases[] = {
        {H("0101010101010101"), H("8000000000000000"), H("95F8A5E5DD31D900")},
        {H("0101010101010101"), H("4000000000000000"), H("DD7F121CA5015619")},
        {H("8001010101010101"), H("0000000000000000"), H("95A8D72813DAA94D")},
        {H("133457799BBCDFF1"), H("0123456789ABCDEF"), H("85E813540F0AB405")},
        {H("7CA110454A1A6E57"), H("01A1D6D039776742"), H("690F5B0D9A26939B")},
        // From another library: padding of key and text, two keys from the ninth byte on, the cut at 16.
        {"12345678", "Vorel", H("181DC01A977A60A5")},
        {"k", "xxxxxxxxx", H("89C29D8A4A9D203985A2335B350EC4F8")},
        {"123456789", "Vorel co", H("55CDA7E71804ADFF")},
        {"0123456789abcdefXYZ", CodePage::Encode(u"第一章 绪论"_s), H("8665DD653FF0013999444E0BD20FBCD0")},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(EncryptDes(c.plain, c.key), c.cipher);
        EXPECT_EQ(EncryptDesHex(c.plain, c.key), c.cipher.toHex().toUpper());
        EXPECT_EQ(DecryptDes(c.cipher, c.key).left(c.plain.size()), c.plain);
        EXPECT_EQ(DecryptDes(c.cipher, c.key).size(), c.cipher.size());
    }
    EXPECT_EQ(EncryptDes("", "key"), "");
    EXPECT_EQ(DecryptDesHex(EncryptDesHex("Vorel", "12345678"), "12345678"), "Vorel");
    const CDesKey key("0123456789abcdef");
    EXPECT_EQ(key.DecryptHex("8665dd653ff0013999444e0bd20fbcd0"), CodePage::Encode(u"第一章 绪论"_s));
    // Half a block, as a damaged file may hold it.
    EXPECT_EQ(DecryptDes("abc", "key").size(), 8);
}

struct TokenCase {
    QByteArray digest;
    quint32 nTick;
    quint32 nRandom;
    QByteArray one;
    QByteArray two;
    QByteArray token;
};

// Tokens computed apart, by plain modular power with whole numbers; the third has a small second prime.
const TokenCase c_tokens[] = {
    {"0123456789abcdef0123456789abcdef", 0x12345678, 32767, "7f3c90be12d4a8", "c05519ee02b67d",
     "IQSK1V.1VQFU99.1D6WLAM.1H25JX7.M1Y6AE.1HPDAP2.4QMPHM"},
    {"00000000000000000000000000000000", 0, 1, "course server key one", "another text of a key",
     "12J7Q6P.O3DV3Q.1QV67SJ.1THSJ3V.13LADXW.B6KB1W.17VPD22.1VH640L.1B0K6CO.324TNK.1O0"},
    {"d41d8cd98f00b204e9800998ecf8427e", 1, 2, "zzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzz", "A",
     "1363WEH.1E25G50.3WQ6ZE.YKEFHG.1U7S22T.C1R6A5.1C0NDCM.1966ZNH.S"},
};

TEST(Token, IsSignedAndOpened) {
    for (const auto& c : c_tokens) {
        EXPECT_EQ(SignToken(c.digest, c.nTick, c.nRandom, c.one, c.two), c.token);
        const auto opened = OpenToken(c.token, c.one, c.two);
        ASSERT_TRUE(opened.has_value());
        EXPECT_EQ(opened->digest, c.digest);
        EXPECT_EQ(opened->nTick, c.nTick);
        EXPECT_EQ(opened->nRandom, c.nRandom);
        EXPECT_FALSE(OpenToken(c.token, "another key", c.two).has_value());
    }
}

TEST(Token, WhatIsNoTokenIsRefused) {
    const auto& c = c_tokens[0];
    const QByteArray cases[] = {"",
                                ".",
                                c.token + '.',
                                c.token.toLower(),
                                "ZZZZZZZ",
                                "12345678",
                                "A B",
                                c.token + ".1",
                                QByteArray("1.").repeated(100000),
                                QByteArray(1000000, 'A')};
    for (const QByteArray& bad : cases)
        EXPECT_FALSE(OpenToken(bad, c.one, c.two).has_value()) << bad.left(40).toStdString();
    // Keys that make none: no hang, no crash.
    EXPECT_EQ(SignToken(c.digest, 1, 2, "same", "same"), "");
    SignToken("xyz", 1, 2, "", "");
    OpenToken("1", "", "");
}

} // namespace
