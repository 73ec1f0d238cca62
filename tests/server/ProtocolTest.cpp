#include "server/Protocol.h"
#include "foundation/Exceptions.h"
#include "tests/support/Testing.h"

// The digests and tags below were computed with other programs' MD5, base64 and code page tables.

namespace {

const QByteArray c_course = QByteArray::fromHex("b4f3d1a7ceefc0ed"); // 大学物理
const QByteArray c_school = QByteArray::fromHex("cabeb7b6b4f3d1a7"); // 示范大学
const QByteArray c_teacher = QByteArray::fromHex("d5c5c3f7");        // 张明

TEST(Protocol, KeepsItsDigests) {
    EXPECT_EQ(Protocol::ClientIdentity().size(), 30);
    const QByteArray tag = Protocol::ClientTag("li@desk", 7);
    EXPECT_EQ(tag, "bEbgpMWOfwtxoVpmeg)Qpx0irIFmkCLCVRi(3V7G");
    EXPECT_EQ(Protocol::ClientTag("li@desk", 70000), "fUEssBDNNMLrK7DLWOzwOSA9ywKO)gtxoVpmeg)Q");
    EXPECT_EQ(Protocol::ClientTag(QByteArray(40, 'x'), 1), Protocol::ClientTag(QByteArray(30, 'x'), 1));
    EXPECT_EQ(Protocol::StatusDigest(c_course, c_teacher, tag), "f6efb53e309905aabd54f575fe9f8575");
    const Protocol::KeyTexts keys = Protocol::SessionKeys(c_school);
    EXPECT_EQ(keys.strOne, "e71d6a481718d5");
    EXPECT_EQ(keys.strTwo, "d170d398e2f4e3");
    EXPECT_EQ(Protocol::ChallengeProof(12345, 678), "25d55ad283aa400af464c76d713c07ad");
    EXPECT_EQ(Protocol::ChallengeProof(0x80000005U, 32767), "5ccdda859defd37c2b33ff0224a42d1e")
        << "a machine that has been up for 25 days prints a negative number";
}

TEST(Protocol, ReadsListsAndPasswordReplies) {
    const QByteArray line = "12x\a" + c_course + '\a' + c_teacher;
    const QList<CCourseInfo> courses = Protocol::ParseCourseList(QByteArray(line + "\r\n7\aA\aB\aC\r\n"));
    ASSERT_EQ(courses.size(), 2);
    EXPECT_EQ(courses[0], (CCourseInfo{12, u"大学物理"_s, u"张明"_s}));
    EXPECT_EQ(courses[1], (CCourseInfo{7, u"A"_s, u"B"_s}));
    EXPECT_EQ(Protocol::ParseCourseList(line).size(), 1) << "without a last line end";
    EXPECT_TRUE(Protocol::ParseCourseList("").isEmpty());
    EXPECT_THROW(Protocol::ParseCourseList("7\aA\r\n"), Torvane::CRunException);
    EXPECT_THROW(Protocol::ParseCourseList("7\aA\aB\r\n\r\n8\aC\aD\r\n"), Torvane::CRunException);

    EXPECT_EQ(Protocol::ParsePasswordReply("p\r\nA\aB\r\n16\r\n").nRights, 16);
    EXPECT_EQ(Protocol::ParsePasswordReply("p\nA\aB").nRights, 0);
    EXPECT_THROW(Protocol::ParsePasswordReply("p"), Torvane::CRunException);
    EXPECT_THROW(Protocol::ParsePasswordReply("p\r\nA\r\n16"), Torvane::CRunException);
}

} // namespace
