// Stores that no program would leave behind, and trees of a size that no teacher makes.
#include "tests/content/TreeOnDisk.h"

namespace {

class CAgreeingTree : public CTreeOnDisk {
public:
    CAgreeingTree() {
        const auto pRoot = CBookNode::Root(*Disk.pCourse);
        pRoot->AddChild(u"一"_s)->AddChild(u"节"_s)->AddChild(u"点"_s);
        for (const QString& strTitle : {u"二"_s, u"三"_s, u"四"_s})
            pRoot->AddChild(strTitle);
    }
};

// 4(5(6)) 7 8 9
struct Damage {
    const char* pszWhat;
    const char* pszScript;
};
constexpr Damage c_damages[]{
    {"gaps", "UPDATE Book SET [Index] = [Index] * 7"},
    {"doubles", "UPDATE Book SET [Index] = 2 WHERE Id > 4"},
    {"doubles against the ids", "UPDATE Book SET [Index] = (19 - Id) / 2 WHERE Id > 3"},
    {"all last", "UPDATE Book SET [Index] = -Id"},
    {"an orphan", "UPDATE Book SET ParentId = 99 WHERE Id IN (5, 8)"},
    {"the root below a node", "UPDATE Book SET ParentId = 6 WHERE Id IN (1, 2, 3)"},
    {"each other's parents", "UPDATE Book SET ParentId = 15 - Id WHERE Id IN (7, 8)"},
    {"its own parent", "UPDATE Book SET ParentId = Id WHERE Id IN (3, 8)"},
    {"a branch bitten in its own tail", "UPDATE Book SET ParentId = 6 WHERE Id = 4"},
    {"no titles and types", "UPDATE Book SET Title = x'00FF', Type = 'x', OpenType = 'x' WHERE Id > 5"},
    {"ids twice, without a key",
     "CREATE TABLE New AS SELECT * FROM Book; INSERT INTO New SELECT * FROM Book WHERE Id = 8;"
     "INSERT INTO New SELECT * FROM Book WHERE Id IN (4, 7, 9);"
     "UPDATE New SET ParentId = 5, [Index] = 1 WHERE rowid > 10; DROP TABLE Book;"
     "ALTER TABLE New RENAME TO Book"},
    {"ids that are none",
     "CREATE TABLE New AS SELECT * FROM Book; INSERT INTO New SELECT NULL, ParentId, [Index], Title, Type,"
     "Path, OpenType, FileName, Comment, [Size], TimeLastModified FROM Book; DROP TABLE Book;"
     "ALTER TABLE New RENAME TO Book"}};

/// Everything with everything; the tree must end each step, and stand in the store's order.
void Shape(CTreeOnDisk& tree, bool bMove) {
    const auto agrees = [&](const char* pszStep, qint32 nId) {
        EXPECT_EQ(tree.TreeFault(true), QString()) << pszStep << ' ' << nId;
    };
    for (qint32 nId = 11; bMove && nId >= 0; --nId) {
        tree.Actions.SelectNode(nId);
        agrees("select", nId);
        for (qint32 nTarget = 0; nTarget < 16; ++nTarget) {
            tree.Actions.Drop(tree.Tree.Find(nId), tree.Tree.Find(nTarget));
            agrees("drop", nId * 100 + nTarget);
        }
        tree.Actions.Run(TreeCommand::c_nMoveDown);
        agrees("move down", nId);
        tree.Actions.Run(TreeCommand::c_nMoveUp);
        agrees("move up", nId);
        tree.Actions.Run(TreeCommand::c_nAddChild);
        agrees("add", nId);
    }
    for (qint32 nId = 30; nId >= 0; --nId) {
        tree.Actions.SelectNode(nId);
        tree.Actions.Run(TreeCommand::c_nDelete);
        agrees("delete", nId);
    }
    tree.ReopenCourse();
    agrees("open again", 0);
    EXPECT_EQ(tree.Raw().execAndGet("SELECT count(DISTINCT Id) FROM Book WHERE Id IN (1, 2, 3)").getInt(), 3);
}

TEST(BookTreeDamageTest, ADamagedStoreIsShownAndWorkedOnInItsOwnOrder) {
    for (const Damage& damage : c_damages) {
        for (const bool bMove : {true, false}) {
            SCOPED_TRACE(damage.pszWhat);
            CAgreeingTree tree;
            tree.Raw().exec(damage.pszScript);
            tree.Open();
            Shape(tree, bMove);
        }
    }
}

TEST(BookTreeDamageTest, ALongChainAndAWideLevelAreWorkedOnInStep) {
    constexpr qint32 c_nNodes = 20000;
    constexpr qint32 c_nFirst = 10, c_nLast = c_nFirst + c_nNodes - 1;
    for (const bool bChain : {true, false}) {
        CAgreeingTree tree;
        tree.Raw().exec("WITH RECURSIVE n(i) AS (VALUES (10) UNION ALL SELECT i + 1 FROM n WHERE i < " +
                        std::to_string(c_nLast) +
                        ") INSERT INTO Book (Id, ParentId, [Index]) "
                        "SELECT i, " +
                        (bChain ? "CASE i WHEN 10 THEN 9 ELSE i - 1 END, 1" : std::string("9, i - 9")) +
                        " FROM n");
        tree.Open();
        tree.Actions.SelectNode(c_nLast);
        ASSERT_EQ(tree.Actions.GetSelectedNode()->GetId(), c_nLast);
        tree.Actions.Run(TreeCommand::c_nMoveUp);
        tree.Actions.Drop(tree.Tree.Find(c_nFirst), tree.Tree.Find(4));
        tree.Actions.Run(TreeCommand::c_nAddNode);
        EXPECT_EQ(tree.TreeFault(true), QString());
        tree.Actions.Close();
        tree.Open();
        tree.Actions.SelectNode(c_nLast);
        tree.Actions.SelectNode(bChain ? 4 : 9);
        tree.Actions.Run(TreeCommand::c_nDelete);
        EXPECT_LT(tree.Disk.Store().GetNodeCount(), 10);
        EXPECT_EQ(tree.TreeFault(true), QString());
    }
}

} // namespace
