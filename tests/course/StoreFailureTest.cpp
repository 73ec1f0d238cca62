#include "course/BookDatabase.h"
#include "course/ComError.h"
#include "course/Texts.h"
#include "foundation/Exceptions.h"
#include "tests/support/CourseFakes.h"

#include <sqlite3.h>

#include <filesystem>

using namespace Qt::StringLiterals;
using Torvane::COM::CCOMException;

namespace {

void RunScript(const CTempFolder& folder, const char* pszScript) {
    sqlite3* pDatabase = nullptr;
    ASSERT_EQ(sqlite3_open(folder.Native(u"a.mdb"_s).toUtf8().constData(), &pDatabase), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(pDatabase, pszScript, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(pDatabase);
}

TEST(ComErrorTest, MessageFollowsTheSystemOrItsNumber) {
    EXPECT_EQ(ComError::Message(0x80070070).toStdString(), "磁盘空间不足。");
    EXPECT_EQ(ComError::Message(0x80040E37).toStdString(), "IDispatch error #3127");
    EXPECT_EQ(ComError::Message(0x80040201).toStdString(), "IDispatch error #1");
    EXPECT_EQ(ComError::Message(0x8004FFFF).toStdString(), "IDispatch error #65023");
    EXPECT_EQ(ComError::Message(0x80040200).toStdString(), "Unknown error 0x80040200");
    EXPECT_EQ(ComError::Message(0x80050000).toStdString(), "Unknown error 0x80050000");
    EXPECT_EQ(ComError::Message(ComError::CodeOfSqlite(SQLITE_SCHEMA)).toStdString(),
              "Unknown error 0x80040011");
}

TEST(StoreFailureTest, FilesThatAreNoCourseAreRefusedAndLeftAlone) {
    const struct {
        const char* pszWhat;
        QByteArray bytes;
        const char* pszMessage;
    } cases[] = {
        {"no database", QByteArray(5000, 'x'), "文件或目录损坏且无法读取。"},
        {"an empty file", QByteArray(), "IDispatch error #3092"},
        {"a head alone", QByteArray("SQLite format 3\0", 16), "文件或目录损坏且无法读取。"},
    };
    for (const auto& one : cases) {
        const CTempFolder folder;
        folder.Write(u"a.mdb"_s, one.bytes);
        CBookDatabase database(folder.Path(u"a.mdb"_s), 1);
        EXPECT_EQ(MessageOf([&] { database.Open(); }), one.pszMessage) << one.pszWhat;
        EXPECT_EQ(folder.Read(u"a.mdb"_s), one.bytes) << one.pszWhat;
    }
    const CTempFolder folder;
    CBookDatabase database(folder.Path(u"a.mdb"_s), 1);
    EXPECT_EQ(MessageOf([&] { database.Open(); }), "系统找不到指定的文件。");
    EXPECT_FALSE(folder.Exists(u"a.mdb"_s)) << "opening never makes a file";
    EXPECT_EQ(MessageOf([&] { database.GetNodeCount(); }), "Unknown error 0x800A0E78");
    RunScript(folder, "CREATE TABLE Book (Id INTEGER PRIMARY KEY, Title TEXT)");
    EXPECT_EQ(MessageOf([&] { database.Open(); }), "IDispatch error #3092") << "columns are missing";
}

TEST(StoreFailureTest, TruncatedDatabaseNeverCrashes) {
    const CCourseWorld world;
    world.CopySeed(u"whole.mdb"_s);
    const QByteArray whole = world.Folder.Read(u"whole.mdb"_s);
    for (qsizetype nLength = 512; nLength < whole.size(); nLength += 1024) {
        world.Folder.Write(u"a.mdb"_s, whole.left(nLength));
        try {
            CBookDatabase database(world.Folder.Path(u"a.mdb"_s), 1);
            database.Open();
            QList<NodeHeader> list;
            database.GetChildren(3, list);
            database.AddNode(3, u"a"_s);
        } catch (const CCOMException&) {
            continue;
        }
    }
}

TEST(StoreFailureTest, ImpossibleConversionsThrow) {
    const CTempFolder folder;
    RunScript(folder,
              "CREATE TABLE Book (Id, ParentId, [Index], Title, Type, Path, OpenType, FileName, "
              "Comment, [Size], TimeLastModified);"
              "INSERT INTO Book (Id, ParentId, Type, Title, Path, OpenType) VALUES"
              " (4, 3, NULL, NULL, NULL, '12'), (5, 9, 1e12, x'ff00', 7, 'x'), (6, 8, 2.5, 1, '', 0)");
    CBookDatabase database(folder.Path(u"a.mdb"_s), 1);
    ASSERT_TRUE(database.Open());
    QList<NodeHeader> list;
    EXPECT_EQ(MessageOf([&] { database.GetNode(4); }), "类型不匹配。");
    EXPECT_EQ(MessageOf([&] { database.GetChildren(9, list); }), "超出当前范围。");
    EXPECT_EQ(MessageOf([&] { database.GetOpenType(5); }), "类型不匹配。");
    EXPECT_EQ(MessageOf([&] { database.GetPath(4); }), "类型不匹配。");
    EXPECT_EQ(MessageOf([&] { database.GetPath(99); }), "Unknown error 0x800A0BCD");
    EXPECT_EQ(MessageOf([&] { database.GetField(4, u"1; DROP TABLE Book"_s); }), "Unknown error 0x800A0CC1");
    EXPECT_EQ(database.GetOpenType(4), 12);
    EXPECT_EQ(database.GetPath(5), u"7"_s);
    EXPECT_EQ(database.GetNode(6).Type, 2) << "halves go to the even neighbour";
    EXPECT_TRUE(database.SetTitle(6, QString(5000, u'x'))) << "a column without a declared width takes all";
}

/// The connection that was opened last, to limit its size from outside.
sqlite3* g_pLastOpened = nullptr;
int NoteOpened(sqlite3* pDatabase, char**, const void*) {
    g_pLastOpened = pDatabase;
    return SQLITE_OK;
}

TEST(StoreFailureTest, FullDiskUndoesTheWholeStepAndIsTold) {
    const CCourseWorld world;
    world.CopySeed(u"a.mdb"_s);
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(&NoteOpened));
    CBookDatabase database(world.Folder.Path(u"a.mdb"_s), 1);
    ASSERT_TRUE(database.Open());
    sqlite3_reset_auto_extension();
    sqlite3_exec(g_pLastOpened, "PRAGMA max_page_count = 20", nullptr, nullptr, nullptr);
    const QString strTitle(500, u'x');
    qint32 nAdded = 0;
    const std::string strMessage = MessageOf([&] {
        for (; nAdded < 1000; ++nAdded)
            database.AddNode(3, strTitle);
    });
    EXPECT_EQ(strMessage, "磁盘空间不足。");
    EXPECT_EQ(database.GetChildrenCount(3), nAdded);
    {
        CBookDatabase::CTransaction transaction(database);
        database.SetSize(4, 1);
        const std::string strInner = MessageOf([&] {
            database.SetContent(4, {0, QString(90000, u'y'), 0, {}, {}});
        });
        EXPECT_EQ(strInner, "磁盘空间不足。");
        // The engine has dropped the transaction by itself: nothing that follows may land alone.
        EXPECT_NE(MessageOf([&] {
                      database.SetSize(5, 1);
                      transaction.Commit();
                  }),
                  "nothing was thrown");
    }
    EXPECT_EQ(database.GetTotalSize(), 0.0);
    EXPECT_TRUE(database.SetSize(4, 7)) << "the store goes on";
}

TEST(StoreFailureTest, FileInUseIsToldAndTheStoreGoesOn) {
    const CCourseWorld world;
    world.CopySeed(u"a.mdb"_s);
    CBookDatabase database(world.Folder.Path(u"a.mdb"_s), 1);
    ASSERT_TRUE(database.Open());
    database.AddNode(3, u"a"_s);
    sqlite3* pReader = nullptr;
    ASSERT_EQ(sqlite3_open(world.Folder.Native(u"a.mdb"_s).toUtf8().constData(), &pReader), SQLITE_OK);
    sqlite3_exec(pReader, "BEGIN; SELECT * FROM Book", nullptr, nullptr, nullptr);
    EXPECT_EQ(MessageOf([&] { database.PauseForReaders(); }), "另一个程序正在使用此文件，进程无法访问。");
    database.AddNode(3, u"b"_s);
    EXPECT_EQ(database.GetChildrenCount(3), 2);
    sqlite3_close(pReader);
    database.PauseForReaders();
}

TEST(StoreFailureTest, VanishedFolderEndsInAMessage) {
    const CCourseWorld world;
    world.CopySeed(u"data\\a.mdb"_s);
    CBookDatabase database(world.Folder.Path(u"data\\a.mdb"_s), 1);
    ASSERT_TRUE(database.Open());
    database.AddNode(3, u"a"_s);
    std::filesystem::remove_all(world.Folder.Native(u"data"_s).toStdString());
    // What the system lets an unlinked file still do is its own affair; it must only not crash.
    MessageOf([&] { database.AddNode(3, u"b"_s); });
    database.Close();
    EXPECT_EQ(MessageOf([&] { database.Open(); }), "系统找不到指定的文件。");
}

} // namespace
