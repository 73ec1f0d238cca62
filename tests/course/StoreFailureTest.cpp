#include "course/BookDatabase.h"
#include "course/ComError.h"
#include "foundation/Exceptions.h"
#include "tests/support/CourseFakes.h"

#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <random>

namespace {

/// The connection that was opened last, to limit its size from outside.
sqlite3* g_pLastOpened = nullptr;
int NoteOpened(sqlite3* pDatabase, char**, const void*) {
    g_pLastOpened = pDatabase;
    return SQLITE_OK;
}

class StoreFailureTest : public testing::Test {
protected:
    /// Opens "data\a.mdb", a copy of the seed.
    CBookDatabase& OpenSeed() {
        World.CopySeed(u"data\\a.mdb"_s);
        EXPECT_TRUE(Database.Open());
        return Database;
    }
    void RunScript(const char* pszScript) {
        sqlite3* pDatabase = nullptr;
        World.Folder.MakeFolder(u"data"_s);
        ASSERT_EQ(sqlite3_open(Native.constData(), &pDatabase), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(pDatabase, pszScript, nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(pDatabase);
    }
    CCourseWorld World;
    const QByteArray Native = World.Folder.Native(u"data\\a.mdb"_s).toUtf8();
    CBookDatabase Database{World.Folder.Path(u"data\\a.mdb"_s), 1};
};

TEST_F(StoreFailureTest, MessageFollowsTheSystemOrItsNumber) {
    EXPECT_EQ(ComError::Message(0x80070070), u"磁盘空间不足。"_s);
    EXPECT_EQ(ComError::Message(0x80040201) + ComError::Message(0x8004FFFF),
              u"IDispatch error #1IDispatch error #65023"_s);
    EXPECT_EQ(ComError::Message(0x80040200) + ComError::Message(ComError::CodeOfSqlite(SQLITE_SCHEMA)),
              u"Unknown error 0x80040200Unknown error 0x80040011"_s);
}

TEST_F(StoreFailureTest, FilesThatAreNoCourseAreRefusedAndLeftAlone) {
    EXPECT_EQ(MessageOf([&] { Database.Open(); }), "系统找不到指定的文件。");
    EXPECT_FALSE(World.Folder.Exists(u"data\\a.mdb"_s)) << "opening never makes a file";
    EXPECT_EQ(MessageOf([&] { Database.GetNodeCount(); }), "Unknown error 0x800A0E78");
    const std::pair<QByteArray, const char*> cases[] = {
        {QByteArray(5000, 'x'), "文件或目录损坏且无法读取。"},
        {QByteArray("SQLite format 3\0", 16), "文件或目录损坏且无法读取。"},
        {QByteArray(), "IDispatch error #3092"}};
    for (const auto& [bytes, pszMessage] : cases) {
        World.Folder.Write(u"data\\a.mdb"_s, bytes);
        EXPECT_EQ(MessageOf([&] { Database.Open(); }), pszMessage);
        EXPECT_EQ(World.Folder.Read(u"data\\a.mdb"_s), bytes);
    }
    RunScript("CREATE TABLE Book (Id INTEGER PRIMARY KEY, Title TEXT)");
    EXPECT_EQ(MessageOf([&] { Database.Open(); }), "IDispatch error #3092") << "columns are missing";
}

TEST_F(StoreFailureTest, ImpossibleConversionsThrow) {
    RunScript("CREATE TABLE Book (Id, ParentId, [Index], Title, Type, Path, OpenType, FileName, "
              "Comment, [Size], TimeLastModified);"
              "INSERT INTO Book (Id, ParentId, Type, Title, Path, OpenType) VALUES"
              " (4, 3, NULL, NULL, NULL, '12'), (5, 9, 1e12, x'ff00', 7, 'x'), (6, 8, 2.5, 1, '', 1e12)");
    ASSERT_TRUE(Database.Open());
    EXPECT_EQ(MessageOf([&] { Database.GetOpenType(5); }) + MessageOf([&] { Database.GetPath(4); }) +
                  MessageOf([&] { Database.GetOpenType(6); }),
              "类型不匹配。类型不匹配。超出当前范围。");
    EXPECT_EQ(MessageOf([&] { Database.GetPath(99); }), "Unknown error 0x800A0BCD");
    EXPECT_EQ(MessageOf([&] { Database.GetField(4, u"1; DROP TABLE Book"_s); }), "Unknown error 0x800A0CC1");
    EXPECT_TRUE(Database.GetOpenType(4) == 12 && Database.GetPath(5) == u"7"_s);
    EXPECT_EQ(Database.GetNode(6).Type, 2) << "halves go to the even neighbour";
    EXPECT_TRUE(Database.GetNode(4).Type == -1 && Database.GetNode(5).Type == -1)
        << "a tree shows them empty";
}

TEST_F(StoreFailureTest, FullDiskUndoesTheWholeStepAndIsTold) {
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(&NoteOpened));
    OpenSeed();
    sqlite3_reset_auto_extension();
    sqlite3_exec(g_pLastOpened, "PRAGMA max_page_count = 20", nullptr, nullptr, nullptr);
    qint32 nAdded = 0;
    EXPECT_EQ(MessageOf([&] {
                  for (; nAdded < 1000; ++nAdded)
                      Database.AddNode(3, QString(500, u'x'));
              }),
              "磁盘空间不足。");
    EXPECT_EQ(Database.GetChildrenCount(3), nAdded);
    {
        CBookDatabase::CTransaction transaction(Database);
        Database.SetSize(4, 1);
        const NodeContent large{0, QString(90000, u'y'), 0, {}, {}};
        EXPECT_EQ(MessageOf([&] { Database.SetContent(4, large); }), "磁盘空间不足。");
        // The engine has dropped the transaction by itself: nothing that follows may land alone.
        EXPECT_NE(MessageOf([&] { Database.SetSize(5, 1), transaction.Commit(); }), "nothing was thrown");
    }
    EXPECT_EQ(Database.GetTotalSize(), 0.0);
    EXPECT_TRUE(Database.SetSize(4, 7)) << "the store goes on";
}

TEST_F(StoreFailureTest, FileInUseOrGoneIsToldAndTheStoreGoesOn) {
    OpenSeed().AddNode(3, u"a"_s);
    sqlite3* pReader = nullptr;
    ASSERT_EQ(sqlite3_open(Native.constData(), &pReader), SQLITE_OK);
    sqlite3_exec(pReader, "BEGIN; SELECT * FROM Book", nullptr, nullptr, nullptr);
    EXPECT_EQ(MessageOf([&] { Database.PauseForReaders(); }), "另一个程序正在使用此文件，进程无法访问。");
    Database.AddNode(3, u"b"_s);
    EXPECT_EQ(Database.GetChildrenCount(3), 2);
    sqlite3_close(pReader);
    std::filesystem::remove_all(World.Folder.Native(u"data"_s).toStdString());
    // What the system lets an unlinked file still do is its own affair; it must only not crash.
    MessageOf([&] { Database.AddNode(3, u"c"_s); });
    Database.Close();
    EXPECT_EQ(MessageOf([&] { Database.Open(); }), "系统找不到指定的文件。");
}

// A table of a stranger, without keys and types: nothing gets an id or a place that is none.
TEST_F(StoreFailureTest, DamagedRowsCostNoMoreThanThemselves) {
    RunScript(
        "CREATE TABLE Book (Id, ParentId, [Index], Title, Type, Path, OpenType, FileName, Comment, [Size],"
        " TimeLastModified);"
        "INSERT INTO Book (Id, ParentId, [Index], Type, Title) VALUES (3, 0, 3, -1, NULL),"
        " (4, 3, -2147483648, 0, 'no digits'), (5, NULL, NULL, 1e12, x'ff00'),"
        " (6, 3, 9223372036854775807, 'x', NULL), (7, 3, 'x', 0, ''), (NULL, 3, 1, 0, ''),"
        " ('x', 3, 2, 0, ''), (1e12, 3, 3, 0, ''), (3, 4, 1, 0, '')");
    ASSERT_TRUE(Database.Open());
    EXPECT_EQ(Database.GetChildIds(3), (QList<qint32>{4, 6, 7}));
    EXPECT_NE(MessageOf([&] { Database.AddNode(3, u"a"_s); }), "nothing was thrown") << "it has no number";
    EXPECT_EQ(Database.GetNodeCount(), 9);
    for (const qint32 nId : {4, 5, 6, 7}) {
        // Swapping with a neighbour needs a place; the others get along without.
        MessageOf([&] { Database.MoveUp(nId); });
        MessageOf([&] { Database.MoveDown(nId); });
        EXPECT_TRUE(Database.SetTitle(nId, u"章"_s) && Database.GetNode(nId).Title == u"章"_s);
    }
    EXPECT_TRUE(Database.MoveTo(5, 3));
    EXPECT_EQ(Database.GetField(5, u"Index"_s).toInt(), 1);
    EXPECT_FALSE(Database.MoveTo(5, 98) || Database.MoveTo(3, 5));
    EXPECT_GE(Database.GetField(6, u"Index"_s).toLongLong(), 2147483646) << "no number overflows";
    for (const qint32 nId : {7, 6, 5, 4})
        EXPECT_TRUE(Database.DeleteNode(nId));
    EXPECT_TRUE(Database.GetChildIds(3).isEmpty());
}

TEST_F(StoreFailureTest, KilledProgramLeavesAWholeTree) {
    qint32 nMost = 0;
    for (unsigned nRound = 0; nRound < 8; ++nRound) {
        World.CopySeed(u"data\\a.mdb"_s);
        const pid_t nChild = fork();
        ASSERT_GE(nChild, 0) << "never kill(-1)";
        if (nChild == 0) {
            Database.Open();
            std::mt19937 random(nRound);
            for (qint32 nLast = 3;; nLast += 2) {
                const auto any = [&] { return 3 + static_cast<qint32>(random() % (nLast - 2U)); };
                CBookDatabase::CTransaction transaction(Database);
                Database.AddNode(any(), u"甲"_s);
                Database.AddNode(any(), u"乙"_s);
                transaction.Commit();
                Database.MoveTo(any(), any());
                Database.MoveUp(any());
            }
        }
        usleep(20'000 + 17'000 * nRound);
        kill(nChild, SIGKILL);
        int nStatus = 0;
        waitpid(nChild, &nStatus, 0);
        ASSERT_TRUE(WIFSIGNALED(nStatus) && WTERMSIG(nStatus) == SIGKILL);
        ASSERT_TRUE(Database.Open());
        // Every sibling list counts 1, 2, 3, and every node hangs in the tree.
        qint32 nMet = 3;
        for (QList<qint32> open{3}; !open.isEmpty();) {
            const QList<qint32> children = Database.GetChildIds(open.takeLast());
            for (qsizetype n = 0; n < children.size(); ++n)
                EXPECT_EQ(Database.GetField(children[n], u"Index"_s).toInt(), n + 1);
            nMet += static_cast<qint32>(children.size());
            open += children;
        }
        EXPECT_EQ(nMet, Database.GetNodeCount());
        nMost = std::max(nMost, nMet);
        Database.Close();
    }
    EXPECT_GT(nMost, 10) << "else nothing was interrupted";
}

} // namespace
