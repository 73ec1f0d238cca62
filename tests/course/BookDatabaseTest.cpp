#include "course/BookDatabase.h"
#include "foundation/Exceptions.h"
#include "tests/support/CourseFakes.h"

#include <sqlite3.h>

#include <QDateTime>

namespace {

class BookDatabaseTest : public testing::Test {
protected:
    void SetUp() override {
        World.CopySeed(u"VorelCourse.mdb"_s);
        Database.emplace(World.Folder.Path(u"VorelCourse.mdb"_s), 42);
        ASSERT_TRUE(Database->Open());
    }
    qint32 Add(qint32 nParentId, const QString& strTitle) { return Database->AddNode(nParentId, strTitle); }
    /// Title and index of each child, in order.
    std::string Children(qint32 nParentId) {
        QList<NodeHeader> list;
        EXPECT_TRUE(Database->GetChildren(nParentId, list));
        QStringList children;
        for (const NodeHeader& node : list)
            children.append(node.Title + Database->GetField(node.Id, u"Index"_s).toString());
        return children.join(u' ').toStdString();
    }

    CCourseWorld World;
    std::optional<CBookDatabase> Database;
};

TEST_F(BookDatabaseTest, NewCourseHasThreePlainRowsAndGivesIdsAboveThem) {
    ASSERT_TRUE(Database->SetSeedTitles(u"学校'"_s, u"课程"_s, u"老师"_s));
    EXPECT_EQ(Database->GetNode(1).Title + Database->GetNode(2).Title, u"学校'课程"_s);
    EXPECT_EQ(Database->GetNode(c_nRootNodeId).Title, u"老师"_s);
    EXPECT_EQ(Add(3, u"甲"_s), 4);
    EXPECT_EQ(Database->GetNode(4).Type, NodeType::c_nEmpty);
    EXPECT_FALSE(Database->GetField(4, u"TimeLastModified"_s).isValid()) << "adding is no change";
    EXPECT_TRUE(Database->DeleteNode(4));
    EXPECT_EQ(Add(3, u"乙"_s), 5) << "an id names a folder and never comes again";
    EXPECT_FALSE(Database->DeleteNode(c_nRootNodeId));
    EXPECT_EQ(Database->GetNodeCount(), 4);
}

// The digits were worked out apart, with the openssl program: des-ede, key "c114a8c1e0d48bef", which is the
// head of the MD5 digest of the salt, 11, 测试大学 and 42 in the code page.
TEST_F(BookDatabaseTest, TitlesAreStoredUnderTheCourseKey) {
    const struct {
        QString strTitle, strStored, strRead;
    } cases[] = {{u"第一章 绪论"_s, u"C83DDF2E5CAB15579C1BA860F82AD955"_s, u"第一章 绪论"_s},
                 {u"Teacher's page"_s, u"8B75E40BA7A4BB8DEA91C73A739B8818"_s, u"Teacher''s page"_s},
                 {u"12345678"_s, u"89069B2BB9979A9D"_s, u"12345678"_s},
                 {u"龘𠮷😀"_s, u"909EFA9E851A08F800E9A644BBD38955"_s, u"龘𠮷😀"_s},
                 {u"A"_s, u"37BA7D3245766FE2"_s, u"A"_s}};
    for (const auto& one : cases) {
        const qint32 nId = Add(3, one.strTitle);
        EXPECT_EQ(Database->GetField(nId, u"Title"_s).toString(), one.strStored);
        EXPECT_EQ(Database->GetNode(nId).Title, one.strRead);
        const bool bFound = !one.strTitle.contains(u'\'');
        EXPECT_EQ(Database->HasChild(3, one.strTitle), bFound);
        EXPECT_EQ(Database->FindChild(3, one.strTitle).Id, bFound ? nId : -1);
        EXPECT_FALSE(Database->HasChild(4, one.strTitle)) << "only among the parent's own children";
    }
    EXPECT_FALSE(Database->HasChild(3, u"a"_s)) << "titles tell letter case";
    Database->Close();
    Database.emplace(World.Folder.Path(u"VorelCourse.mdb"_s), 43);
    ASSERT_TRUE(Database->Open());
    EXPECT_NE(Database->GetNode(8).Title, u"A"_s) << "the key of another course";
}

TEST_F(BookDatabaseTest, TitlesOfAnyCharactersComeBack) {
    const QString strHalf = u"\uFFFD"_s; // half a pair is no text
    QList<std::pair<QString, QString>> cases{{u"😀"_s, u"😀"_s},
                                             {u"'"_s, u"''"_s},
                                             {QString(QChar(0)), {}},
                                             {QString(QChar(0xD83D)), strHalf},
                                             {QString(QChar(0xDE00)), strHalf}};
    for (const QChar c : u",\r\n\t?題ก€\u200F\u0301\uE5E5\uFFFF"_s)
        cases.append({c, c});
    for (const auto& [strCharacter, strRead] : cases) {
        const qsizetype nTimes = c_nMaxTitleLength / strCharacter.size();
        const QString strTitle = strCharacter.repeated(nTimes);
        const qint32 nParent = Add(3, u"x"_s), nAdded = Add(nParent, strTitle), nNamed = Add(nParent, u"y"_s);
        ASSERT_TRUE(Database->SetTitle(nNamed, strTitle));
        QList<NodeHeader> list;
        Database->GetChildren(nParent, list);
        EXPECT_EQ(list.value(0).Title, strRead.repeated(nTimes));
        EXPECT_EQ(list.value(1).Title, strRead.repeated(nTimes));
        EXPECT_EQ(Database->FindChild(nParent, strTitle).Id, strCharacter == u"'"_s ? -1 : nAdded);
    }
}

TEST_F(BookDatabaseTest, NothingMovesAtTheEndsOrBelowItself) {
    const qint32 nA = Add(3, u"a"_s), nB = Add(3, u"b"_s), nX = Add(nB, u"x"_s);
    EXPECT_TRUE(Database->MoveUp(nA) && Database->MoveDown(nB));
    EXPECT_FALSE(Database->MoveTo(nB, nX) || Database->MoveTo(nB, nB));
    EXPECT_EQ(Children(3), "a1 b2");
    EXPECT_TRUE(Database->MoveTo(nB, 3)) << "to the parent where it is already";
    EXPECT_EQ(Children(3), "b1 a2");
    EXPECT_FALSE(Database->GetField(nB, u"TimeLastModified"_s).isValid()) << "moving is no change";
}

TEST_F(BookDatabaseTest, SettersWriteTheirColumnsAndTheTime) {
    const qint32 nId = Add(3, u"a"_s);
    ASSERT_TRUE(Database->SetContent(nId, {1, u"N4\\讲义's.doc"_s, 2, u"讲义's.doc"_s, u"附注"_s}));
    EXPECT_EQ(Database->GetPath(nId) + Database->GetFileName(nId) + Database->GetComment(nId),
              u"N4\\讲义's.doc讲义's.doc附注"_s);
    EXPECT_TRUE(Database->GetOpenType(nId) == 2 && Database->GetNode(nId).Type == 1);
    const QString strTime = Database->GetField(nId, u"TimeLastModified"_s).toString();
    const QDateTime time = QDateTime::fromString(strTime, u"yyyy-MM-dd HH:mm:ss"_s);
    EXPECT_LE(qAbs(time.secsTo(QDateTime::currentDateTime())), 5);
    EXPECT_TRUE(Database->SetSize(99, 1) && Database->SetTitle(99, u"x"_s)) << "no such node";
    EXPECT_EQ(Database->GetTotalSize(), 0.0);
}

TEST_F(BookDatabaseTest, SizesAndTitlesHaveTheirLimits) {
    const qint32 nA = Add(3, QString(255, u'題') + QString(255, u'\''));
    const qint32 nB = Add(3, u"b"_s);
    EXPECT_TRUE(Database->SetSize(nA, 2147483000.0) && Database->SetSize(nB, 647.0));
    EXPECT_EQ(Database->GetTotalSize(), 2147483647.0);
    EXPECT_TRUE(Database->SetSize(nB, 648.0));
    EXPECT_THROW(Database->GetTotalSize(), Torvane::COM::CCOMException);
    const QString strWide(1025, u'x');
    EXPECT_FALSE(Database->SetTitle(nB, strWide));
    EXPECT_EQ(Database->GetNode(nB).Title, u"b"_s) << "the old title stays";
    EXPECT_THROW(Add(3, strWide), Torvane::COM::CCOMException);
}

TEST_F(BookDatabaseTest, TransactionsNestAndOnlyTheOutermostLands) {
    for (const bool bCommit : {false, true}) {
        CBookDatabase::CTransaction outer(*Database);
        Add(3, u"a"_s);
        for (const bool bCommitInner : {false, true}) {
            CBookDatabase::CTransaction inner(*Database);
            Add(3, u"b"_s);
            if (bCommitInner)
                inner.Commit();
        }
        EXPECT_EQ(Children(3), "a1 b2");
        if (bCommit)
            outer.Commit();
    }
    EXPECT_EQ(Children(3), "a1 b2");
}

// A long list is kept for whoever asks next.
TEST_F(BookDatabaseTest, LongListOfChildrenFollowsEveryChange) {
    qsizetype nChildren = 2500;
    {
        CBookDatabase::CTransaction transaction(*Database);
        for (int nChild = 0; nChild < nChildren; ++nChild)
            Add(3, u"a"_s);
        transaction.Commit();
    }
    const auto list = [&] { return Database->GetChildIds(3); };
    ASSERT_EQ(list().size(), nChildren);
    EXPECT_EQ(Database->GetChildIds(4).size(), 0);
    {
        CBookDatabase::CTransaction undone(*Database);
        ASSERT_TRUE(Database->DeleteNode(4));
        EXPECT_EQ(list().size(), nChildren - 1);
    }
    EXPECT_EQ(list().size(), nChildren);
    ASSERT_TRUE(Database->MoveUp(5));
    EXPECT_EQ(list().first(), 5);
    ASSERT_TRUE(Database->DeleteNode(4));
    EXPECT_EQ(list().size(), --nChildren);
    sqlite3* pOther = nullptr;
    ASSERT_EQ(sqlite3_open(World.Folder.Native(u"VorelCourse.mdb"_s).toUtf8().constData(), &pOther),
              SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(pOther, "DELETE FROM Book WHERE Id = 5", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(pOther);
    EXPECT_EQ(list().size(), --nChildren) << "another program's change";
}

TEST_F(BookDatabaseTest, ClosedCourseIsOneFile) {
    const auto isOneFile = [&] { return QDir(World.Folder.Native()).entryList({u"*.mdb*"_s}).size() == 1; };
    Add(3, u"a"_s);
    EXPECT_FALSE(isOneFile()) << "else this test shows nothing";
    Database->PauseForReaders();
    EXPECT_TRUE(isOneFile());
    EXPECT_THROW(Database->GetNodeCount(), Torvane::COM::CCOMException);
    Database->ResumeWriting();
    Add(3, u"b"_s);
    Database->Close();
    EXPECT_TRUE(isOneFile());
    ASSERT_TRUE(Database->Open());
    EXPECT_EQ(Children(3), "a1 b2");
}

} // namespace
