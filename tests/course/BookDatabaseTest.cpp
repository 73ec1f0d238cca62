#include "course/BookDatabase.h"
#include "foundation/Exceptions.h"
#include "tests/support/CourseFakes.h"

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <QDateTime>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

/// What the engine was really given, values in place, while one of these lives.
class CStatementTrace {
public:
    CStatementTrace() {
        s_statements.clear();
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(&Attach));
    }
    ~CStatementTrace() { sqlite3_reset_auto_extension(); }
    std::vector<std::string> Take() { return std::exchange(s_statements, {}); }

private:
    static int Attach(sqlite3* pDatabase, char**, const void*) {
        return sqlite3_trace_v2(pDatabase, SQLITE_TRACE_STMT, &Note, nullptr);
    }
    static int Note(unsigned, void*, void* pStatement, void*) {
        char* pText = sqlite3_expanded_sql(static_cast<sqlite3_stmt*>(pStatement));
        std::string text(pText);
        sqlite3_free(pText);
        const bool bOwn = text.starts_with("SELECT") || text.starts_with("UPDATE") ||
                          text.starts_with("DELETE") || text.starts_with("INSERT");
        if (bOwn)
            s_statements.push_back(text);
        return 0;
    }
    static inline std::vector<std::string> s_statements;
};

class BookDatabaseTest : public testing::Test {
protected:
    void SetUp() override {
        World.CopySeed(u"VorelCourse.mdb"_s);
        Database.emplace(World.Folder.Path(u"VorelCourse.mdb"_s), 42);
        ASSERT_TRUE(Database->Open());
    }
    /// "Title Index" of each child, in order.
    std::vector<std::string> Children(qint32 nParentId) {
        QList<NodeHeader> list;
        EXPECT_TRUE(Database->GetChildren(nParentId, list));
        std::vector<std::string> result;
        for (const NodeHeader& node : list) {
            const int nIndex = Database->GetField(node.Id, u"Index"_s).toInt();
            result.push_back(node.Title.toStdString() + ' ' + std::to_string(nIndex));
        }
        return result;
    }
    std::string Stored(qint32 nId) { return Database->GetField(nId, u"Title"_s).toString().toStdString(); }

    CCourseWorld World;
    std::optional<CBookDatabase> Database;
};

TEST_F(BookDatabaseTest, NewCourseHasThreePlainRowsAndGivesIdsAboveThem) {
    EXPECT_EQ(Database->GetNodeCount(), 3);
    ASSERT_TRUE(Database->SetSeedTitles(u"学校'"_s, u"课程"_s, u"老师"_s));
    EXPECT_EQ(Database->GetNode(1).Title, u"学校'"_s);
    EXPECT_EQ(Database->GetNode(2).Title, u"课程"_s);
    EXPECT_EQ(Database->GetNode(c_nRootNodeId).Title, u"老师"_s);
    EXPECT_EQ(Database->AddNode(3, u"甲"_s), 4);
    EXPECT_EQ(Database->GetNode(4).Type, NodeType::c_nEmpty);
    EXPECT_FALSE(Database->GetField(4, u"TimeLastModified"_s).isValid()) << "adding is no change";
    EXPECT_TRUE(Database->DeleteNode(4));
    EXPECT_EQ(Database->AddNode(3, u"乙"_s), 5) << "an id names a folder and never comes again";
    EXPECT_FALSE(Database->DeleteNode(c_nRootNodeId));
    EXPECT_EQ(Database->GetNodeCount(), 4);
}

// The digits were worked out apart, with the openssl program: des-ede, key "c114a8c1e0d48bef", which is the
// head of the MD5 digest of the salt, 11, 测试大学 and 42 in the code page.
TEST_F(BookDatabaseTest, TitlesAreStoredUnderTheCourseKey) {
    const struct {
        QString strTitle;
        const char* pszStored;
        QString strRead;
    } cases[] = {
        {u"第一章 绪论"_s, "C83DDF2E5CAB15579C1BA860F82AD955", u"第一章 绪论"_s},
        {u"Teacher's page"_s, "8B75E40BA7A4BB8DEA91C73A739B8818", u"Teacher''s page"_s},
        {u"A"_s, "37BA7D3245766FE2", u"A"_s},
        {u"12345678"_s, "89069B2BB9979A9D", u"12345678"_s},
        {u"龘𠮷😀"_s, "909EFA9E851A08F800E9A644BBD38955", u"龘𠮷😀"_s},
        {u""_s, "", u""_s},
    };
    for (const auto& one : cases) {
        const qint32 nId = Database->AddNode(3, one.strTitle);
        EXPECT_EQ(Stored(nId), one.pszStored);
        EXPECT_EQ(Database->GetNode(nId).Title, one.strRead);
        const bool bFound = !one.strTitle.contains(u'\'');
        EXPECT_EQ(Database->HasChild(3, one.strTitle), bFound);
        EXPECT_EQ(Database->FindChild(3, one.strTitle).Id, bFound ? nId : -1);
        EXPECT_FALSE(Database->HasChild(4, one.strTitle)) << "only among the parent's own children";
    }
    EXPECT_FALSE(Database->HasChild(3, u"a"_s)) << "titles tell letter case";
}

TEST_F(BookDatabaseTest, TitlesOfAnotherCourseReadAsGarbageToTheLast) {
    for (int n = 0; n < 50; ++n)
        Database->AddNode(3, u"栏目"_s + QString::number(n));
    Database->Close();
    CBookDatabase other(World.Folder.Path(u"VorelCourse.mdb"_s), 43);
    ASSERT_TRUE(other.Open());
    QList<NodeHeader> list;
    ASSERT_TRUE(other.GetChildren(3, list));
    EXPECT_EQ(list.size(), 50);
    EXPECT_NE(list[0].Title, u"栏目0"_s);
}

TEST_F(BookDatabaseTest, OrderStaysDense) {
    const qint32 nA = Database->AddNode(3, u"a"_s);
    const qint32 nB = Database->AddNode(3, u"b"_s);
    const qint32 nC = Database->AddNode(3, u"c"_s);
    EXPECT_TRUE(Database->MoveUp(nA));
    EXPECT_TRUE(Database->MoveDown(nC));
    EXPECT_THAT(Children(3), ElementsAre("a 1", "b 2", "c 3"));
    EXPECT_TRUE(Database->MoveUp(nC));
    EXPECT_THAT(Children(3), ElementsAre("a 1", "c 2", "b 3"));
    EXPECT_TRUE(Database->MoveDown(nA));
    EXPECT_THAT(Children(3), ElementsAre("c 1", "a 2", "b 3"));
    EXPECT_FALSE(Database->GetField(nA, u"TimeLastModified"_s).isValid()) << "moving is no change";

    const qint32 nX = Database->AddNode(nB, u"x"_s);
    Database->AddNode(nB, u"y"_s);
    EXPECT_TRUE(Database->MoveTo(nC, nB));
    EXPECT_THAT(Children(nB), ElementsAre("c 1", "x 2", "y 3"));
    EXPECT_THAT(Children(3), ElementsAre("a 1", "b 2"));
    EXPECT_TRUE(Database->MoveTo(nB, 3)) << "to the parent where it is already";
    EXPECT_THAT(Children(3), ElementsAre("b 1", "a 2"));
    EXPECT_FALSE(Database->MoveTo(nB, nX)) << "below itself";
    EXPECT_FALSE(Database->MoveTo(nB, nB));
    EXPECT_TRUE(Database->DeleteNode(nX));
    EXPECT_THAT(Children(nB), ElementsAre("c 1", "y 2"));
    EXPECT_EQ(Database->GetChildrenCount(nB), 2);
}

TEST_F(BookDatabaseTest, SettersWriteTheirColumnsAndTheTime) {
    const qint32 nId = Database->AddNode(3, u"a"_s);
    ASSERT_TRUE(Database->SetContent(nId, {1, u"N4\\讲义's.doc"_s, 2, u"讲义's.doc"_s, u"附注"_s}));
    EXPECT_EQ(Database->GetPath(nId), u"N4\\讲义's.doc"_s);
    EXPECT_EQ(Database->GetOpenType(nId), 2);
    EXPECT_EQ(Database->GetFileName(nId), u"讲义's.doc"_s);
    EXPECT_EQ(Database->GetComment(nId), u"附注"_s);
    EXPECT_EQ(Database->GetNode(nId).Type, 1);
    const QString strTime = Database->GetField(nId, u"TimeLastModified"_s).toString();
    const QDateTime time = QDateTime::fromString(strTime, u"yyyy-MM-dd HH:mm:ss"_s);
    EXPECT_LE(qAbs(time.secsTo(QDateTime::currentDateTime())), 5);
    EXPECT_TRUE(Database->SetOpenType(nId, 3));
    EXPECT_EQ(Database->GetOpenType(nId), 3);
    EXPECT_TRUE(Database->SetTitle(nId, u"b"_s));
    EXPECT_EQ(Database->GetNode(nId).Title, u"b"_s);
    EXPECT_TRUE(Database->SetSize(99, 1) && Database->SetTitle(99, u"x"_s)) << "no such node";
    EXPECT_EQ(Database->GetNodeCount(), 4);
}

TEST_F(BookDatabaseTest, TotalSizeEndsAtThirtyTwoBits) {
    EXPECT_EQ(Database->GetTotalSize(), 0.0);
    const qint32 nA = Database->AddNode(3, u"a"_s);
    const qint32 nB = Database->AddNode(3, u"b"_s);
    EXPECT_TRUE(Database->SetSize(nA, 2147483000.0) && Database->SetSize(nB, 647.0));
    EXPECT_EQ(Database->GetTotalSize(), 2147483647.0);
    EXPECT_TRUE(Database->SetSize(nB, 648.0));
    EXPECT_THROW(Database->GetTotalSize(), Torvane::COM::CCOMException);
}

TEST_F(BookDatabaseTest, WidthOfTitleIsKept) {
    const qint32 nId = Database->AddNode(3, QString(255, u'題') + QString(255, u'\''));
    EXPECT_EQ(Stored(nId).size(), 2048U);
    const QString strWide(1025, u'x');
    EXPECT_FALSE(Database->SetTitle(nId, strWide));
    EXPECT_EQ(Stored(nId).size(), 2048U) << "the old title stays";
    EXPECT_THROW(Database->AddNode(3, strWide), Torvane::COM::CCOMException);
    EXPECT_EQ(Database->GetChildrenCount(3), 1);
}

TEST_F(BookDatabaseTest, StatementsAreWordedAsOtherProgramsKnowThem) {
    Database->Close();
    CStatementTrace trace;
    ASSERT_TRUE(Database->Open());
    Database->AddNode(3, u"A"_s);
    Database->AddNode(3, u"12345678"_s);
    trace.Take();
    Database->AddNode(3, u"A"_s);
    EXPECT_THAT(trace.Take(),
                ElementsAre("SELECT COUNT(*) AS ChildrenCount FROM Book WHERE ParentId = 3",
                            "SELECT * FROM Book WHERE 1 = 0",
                            "INSERT INTO Book (Title, ParentId, [Index]) VALUES ('37BA7D3245766FE2', 3, 3)"));
    Database->HasChild(3, u"A"_s);
    Database->GetTotalSize();
    EXPECT_THAT(trace.Take(),
                ElementsAre("SELECT Id FROM Book WHERE ParentId = 3 AND Title = '37BA7D3245766FE2'",
                            "SELECT SUM([Size]) As SumSize FROM Book"));
    Database->SetOpenType(4, 1);
    EXPECT_EQ(trace.Take().front(), "SELECT OpenType FROM Book WHERE Id =  4");
    Database->SetContent(4, {});
    EXPECT_EQ(trace.Take().front(), "SELECT Type, Path, OpenType, FileName, Comment FROM Book WHERE Id =  4");
    Database->MoveDown(4);
    EXPECT_THAT(trace.Take(),
                ElementsAre("SELECT ParentId FROM Book WHERE Id = 4", "SELECT [Index] FROM Book WHERE Id = 4",
                            "SELECT COUNT(*) AS ChildrenCount FROM Book WHERE ParentId = 3",
                            "UPDATE Book SET [Index] = [Index] - 1 WHERE ParentId = 3 AND [Index] = 2",
                            "UPDATE Book SET [Index] = [Index] + 1 WHERE Id = 4"));
    Database->DeleteNode(5);
    EXPECT_THAT(trace.Take(),
                ElementsAre("SELECT ParentId FROM Book WHERE Id = 5", "SELECT [Index] FROM Book WHERE Id = 5",
                            "UPDATE Book Set [Index] = [Index] - 1 WHERE ParentId = 3 AND [Index] > 1",
                            "DELETE FROM Book WHERE Id = 5"));
}

TEST_F(BookDatabaseTest, TransactionsNestAndOnlyTheOutermostLands) {
    {
        CBookDatabase::CTransaction outer(*Database);
        Database->AddNode(3, u"a"_s);
        {
            CBookDatabase::CTransaction undone(*Database);
            Database->AddNode(3, u"b"_s);
        }
        CBookDatabase::CTransaction kept(*Database);
        Database->AddNode(3, u"c"_s);
        kept.Commit();
        EXPECT_THAT(Children(3), ElementsAre("a 1", "c 2"));
    }
    EXPECT_EQ(Database->GetChildrenCount(3), 0);
    CBookDatabase::CTransaction transaction(*Database);
    Database->AddNode(3, u"d"_s);
    transaction.Commit();
    EXPECT_THAT(Children(3), ElementsAre("d 1"));
}

TEST_F(BookDatabaseTest, ClosedCourseIsOneFile) {
    Database->AddNode(3, u"a"_s);
    EXPECT_TRUE(World.Folder.Exists(u"VorelCourse.mdb-wal"_s)) << "else this test shows nothing";
    Database->PauseForReaders();
    EXPECT_FALSE(World.Folder.Exists(u"VorelCourse.mdb-wal"_s));
    EXPECT_THROW(Database->GetNodeCount(), Torvane::COM::CCOMException);
    Database->ResumeWriting();
    Database->AddNode(3, u"b"_s);
    Database->Close();
    EXPECT_FALSE(World.Folder.Exists(u"VorelCourse.mdb-wal"_s));
    EXPECT_FALSE(World.Folder.Exists(u"VorelCourse.mdb-shm"_s));
    ASSERT_TRUE(Database->Open());
    EXPECT_THAT(Children(3), ElementsAre("a 1", "b 2"));
}

} // namespace
