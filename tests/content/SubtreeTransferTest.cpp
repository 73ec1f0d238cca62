// Branches that leave a course and come into one: the index to the byte, what stays when a step ends early,
// and indexes that nobody should trust.
#include "content/SubtreeTransfer.h"
#include "content/NodeInfo.h"
#include "tests/content/TreeOnDisk.h"

namespace {

TEST(NodeInfoTest, TheIndexIsWrittenByteForByte) {
    const QByteArray bytes = WriteNodeInfo(
        {{0, 12, u"课程"_s, -1, {}, 0, 1, -1}, {1, 14, u"a b"_s, 0, u"N14\\Content.htm"_s, 2, -1, -1}});
    EXPECT_EQ(bytes, "0,12,\xBF\xCE\xB3\xCC,-1,,0,1,-1\r\r\n1,14,a b,0,N14\\Content.htm,2,-1,-1\r\r\n");
    const auto records = ParseNodeInfo(bytes);
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records[0].Title, u"课程"_s);
    EXPECT_EQ(records[1].NextSibling, -1);
    EXPECT_EQ(WriteNodeInfo(records), bytes);
    EXPECT_TRUE(ParseNodeInfo("").isEmpty());
}

TEST(NodeInfoTest, ACommaInATitleShiftsTheFieldsBehindIt) {
    const NodeInfoRecord record = ParseNodeInfo("1,14,a,b,0,N14\\x.htm,2,7,9\r\r\n").first();
    EXPECT_EQ(record.Title, u"a"_s);
    EXPECT_EQ(record.Type, 0) << "b is no number";
    EXPECT_EQ(record.Path, u"0"_s);
    EXPECT_EQ(record.OpenType, 0);
    EXPECT_EQ(record.FirstChild, 2);
    EXPECT_EQ(record.NextSibling, 7);
    EXPECT_THROW(ParseNodeInfo("0,1,a,0\r\r\n"), Torvane::CRunException);
}

TEST(NodeInfoTest, ThePlanFollowsTheNumbersAndEnds) {
    const auto plan = [](const QList<std::pair<qint32, qint32>>& links) {
        QList<NodeInfoRecord> records;
        for (const auto& [nFirstChild, nNextSibling] : links)
            records.append({0, 0, {}, -1, {}, 0, nFirstChild, nNextSibling});
        QString strPlan = u"refused"_s;
        MessageOf([&] {
            const QList<NodeInfoStep> steps = PlanImport(records);
            strPlan.clear();
            for (const NodeInfoStep& step : steps)
                strPlan += u"%1<%2 "_s.arg(step.nRecord).arg(step.nParent);
        });
        return strPlan;
    };
    EXPECT_EQ(plan({}), QString());
    EXPECT_EQ(plan({{1, -1}, {2, 3}, {-1, -1}, {-1, -1}}), u"0<-1 1<0 2<1 3<0 "_s);
    EXPECT_EQ(plan({{0, 5}}), u"0<-1 "_s) << "a first record's sibling is nobody's";
    EXPECT_EQ(plan({{1, -1}, {-7, 2}, {0, -1}}), u"0<-1 1<0 2<0 "_s);
    EXPECT_EQ(plan({{1, -1}, {2, -1}, {-1, 1}}), u"refused"_s);
}

TEST(NodeInfoTest, APathIsLedIntoTheNodeAndNowhereElse) {
    struct Case {
        qint32 nType;
        QString strPath, strImported;
    };
    const QString strRefused = u"refused"_s;
    for (const Case& c : {Case{1, u"N12\\N12a.htm"_s, u"N40\\N40a.htm"_s},
                          Case{0, u"N12\\Content.htm"_s, u"N40\\Content.htm"_s},
                          Case{6, u"N5\\x.files\\frame.htm#a/b"_s, u"N40\\x.files\\frame.htm#a/b"_s},
                          Case{6, u"http://a/../b"_s, u"http://a/../b"_s},
                          Case{3, u"http://a\\N12"_s, u"http://a\\N12"_s},
                          Case{-1, {}, {}},
                          Case{1, u"N12\\a: b.doc"_s, u"N40\\a: b.doc"_s},
                          Case{0, u"0"_s, u"0"_s},
                          Case{1, u"N12\\..\\..\\x"_s, strRefused},
                          Case{2, u"N12\\a/../../x"_s, strRefused},
                          Case{0, u"\\etc\\passwd"_s, strRefused},
                          Case{0, u"/etc/passwd"_s, strRefused},
                          Case{1, u"Z:/x"_s, strRefused},
                          Case{6, u"N5\\..\\..\\x"_s, strRefused},
                          Case{0, u"file:///etc/passwd"_s, strRefused},
                          Case{3, u"..\\..\\x.htm"_s, strRefused},
                          Case{3, u"mailto:a@b"_s, u"mailto:a@b"_s},
                          Case{1, u"N7/x.htm"_s, strRefused},
                          Case{2, u"./n40/x.htm"_s, strRefused},
                          Case{6, u"N7/x.htm"_s, u"N7/x.htm"_s}}) {
        QString strImported = strRefused;
        MessageOf([&] { strImported = ImportedPath(c.nType, c.strPath, 40); });
        EXPECT_EQ(strImported, c.strImported) << c.strPath;
    }
}

class SubtreeTransferTest : public testing::Test {
protected:
    /// Two chapters of two sections, pages all, and a link.
    void MakeBranch() {
        const auto pRoot = CBookNode::Root(*m_tree.Disk.pCourse);
        for (const QString& strChapter : {u"一"_s, u"二"_s}) {
            const auto pChapter = pRoot->AddChild(strChapter);
            for (const QString& strSection : {u"节"_s, u"末"_s}) {
                const auto pSection = pChapter->AddChild(strSection);
                pSection->CreateEditorPage(1);
                pSection->SaveContent(strChapter + strSection);
            }
        }
        const auto pLink = pRoot->AddChild(u"链"_s);
        m_tree.Disk.Store().SetContent(pLink->GetId(), {3, u"http://a/N3\\x"_s, 2, {}, {}});
        m_tree.Open();
    }
    void Run(qint32 nId, int nCommand, const QString& strFolder) {
        m_tree.Noted.clear();
        m_tree.Folders = {m_tree.Disk.Folder.Path(strFolder)};
        m_tree.Actions.SelectNode(nId);
        EXPECT_TRUE(m_tree.Actions.IsEnabled(nCommand));
        m_tree.Actions.Run(nCommand);
        EXPECT_EQ(m_tree.StoreFault() + m_tree.TreeFault(), QString());
    }
    QByteArray PageOf(qint32 nId) const {
        return m_tree.Disk.Folder.Read(m_tree.Disk.NodePath(nId, u"Content.htm"_s));
    }
    QStringList Titles(const CBookNode& node) const {
        QStringList titles;
        for (const NodeHeader& header : node.GetDescendants())
            titles.append(header.Title);
        return titles;
    }

    CNotingTree m_tree;
};

TEST_F(SubtreeTransferTest, ABranchTravelsToAnotherPlaceAndRefillsByTitle) {
    MakeBranch();
    const auto pRoot = CBookNode::Root(*m_tree.Disk.pCourse);
    Run(3, 32932, u"出"_s);
    EXPECT_EQ(m_tree.Noted, QStringList{u"i\"李老师\"及其所有子栏目已成功导出至"_s +
                                        Platform::ToNative(m_tree.Disk.Folder.Path(u"出"_s))});
    EXPECT_EQ(m_tree.Disk.Folder.Read(u"出\\NodeInfo.tni"_s).count("\r\r\n"), 8);
    EXPECT_TRUE(m_tree.Disk.Folder.Exists(u"出\\1"_s)) << "an empty node's folder";

    const auto pTarget = pRoot->AddChild(u"新"_s);
    m_tree.Open();
    Run(pTarget->GetId(), 32933, u"出"_s);
    EXPECT_EQ(m_tree.Noted, QStringList());
    EXPECT_EQ(Titles(*pTarget), (QStringList{u"一"_s, u"节"_s, u"末"_s, u"二"_s, u"节"_s, u"末"_s, u"链"_s}));
    const QList<NodeHeader> made = pTarget->GetDescendants();
    EXPECT_EQ(CBookNode(*m_tree.Disk.pCourse, made.last()).GetStoredPath(), u"http://a/N3\\x"_s);
    const CBookNode last(*m_tree.Disk.pCourse, made.at(5));
    EXPECT_EQ(last.GetStoredPath(), u"N%1\\Content.htm"_s.arg(last.GetId()));
    EXPECT_EQ(last.GetOpenType(), 1);
    EXPECT_EQ(PageOf(last.GetId()), "\xB6\xFE\xC4\xA9");
    EXPECT_EQ(m_tree.Host.Last().nId, pTarget->GetId());

    // Another course numbers its nodes and enciphers its titles in its own way.
    CCourseOnDisk other;
    const auto pThere = CBookNode::Root(*other.pCourse)->AddChild(u"新"_s);
    EXPECT_TRUE(CSubtreeTransfer(other.People, *pThere, m_tree.Disk.Folder.Path(u"出"_s),
                                 CSubtreeTransfer::EMode::Import)
                    .Run());
    EXPECT_EQ(Titles(*pThere), Titles(*pTarget));
    EXPECT_EQ(ReadFileBytes(CBookNode(*other.pCourse, pThere->GetDescendants().at(5)).GetContentPath()),
              "\xB6\xFE\xC4\xA9");

    // Into the root: those of the same titles get their pages back, and nothing is made.
    const NodeHeader chapter = pRoot->FindChild(u"二"_s);
    CBookNode section(*m_tree.Disk.pCourse, m_tree.Disk.Store().FindChild(chapter.Id, u"末"_s));
    section.SaveContent(u"changed"_s);
    CBookNode(*m_tree.Disk.pCourse, pRoot->FindChild(u"一"_s)).Delete();
    m_tree.Open();
    const QStringList before = Titles(*pRoot);
    Run(3, 32933, u"出"_s);
    EXPECT_EQ(Titles(*pRoot), before);
    EXPECT_EQ(PageOf(section.GetId()), "\xB6\xFE\xC4\xA9");
}

TEST_F(SubtreeTransferTest, GivingUpLeavesAWholeTree) {
    MakeBranch();
    constexpr qsizetype c_nBelow = 107;
    for (qsizetype n = 7; n < c_nBelow; ++n)
        CBookNode::Root(*m_tree.Disk.pCourse)->AddChild(u"章%1"_s.arg(n));
    m_tree.Open();
    Run(3, 32932, u"出"_s);
    const auto pTarget = CBookNode::Root(*m_tree.Disk.pCourse)->AddChild(u"新"_s);
    m_tree.Open();
    QSet<qsizetype> left;
    for (qint64 nPieces = 0; !left.contains(c_nBelow); nPieces += 7) {
        ASSERT_LT(nPieces, 400);
        m_tree.nPieces = nPieces;
        Run(pTarget->GetId(), 32933, u"出"_s);
        const qsizetype nMade = pTarget->GetDescendants().size();
        EXPECT_EQ(m_tree.Noted.value(0), nMade < c_nBelow ? u"x用户取消了操作！"_s : m_tree.Noted.value(0));
        for (const NodeHeader& header : pTarget->GetDescendants().mid(0, 7))
            EXPECT_TRUE(header.Type != NodeType::c_nEmpty || !header.Title.contains(u'节')) << "half a node";
        left.insert(nMade);
        for (const NodeHeader& child : pTarget->GetChildren())
            CBookNode(*m_tree.Disk.pCourse, child).Delete();
        m_tree.Open();
    }
    EXPECT_GT(left.size(), 2) << "it was given up in the middle too";
    // An export that is given up in time leaves an older one whole.
    m_tree.nPieces = 2;
    Run(3, 32932, u"出"_s);
    EXPECT_EQ(m_tree.Noted, QStringList{u"x用户取消了操作！"_s});
    EXPECT_TRUE(m_tree.Disk.Folder.Exists(u"出\\NodeInfo.tni"_s));
    // One that ends between its files is no export.
    m_tree.nPieces = std::numeric_limits<qint64>::max();
    ASSERT_TRUE(Torvane::File::TryDeleteFolder(m_tree.Disk.Folder.Path(u"出\\50"_s)));
    m_tree.Disk.Folder.Write(u"出\\50"_s, "in the way");
    Run(3, 32932, u"出"_s);
    EXPECT_EQ(m_tree.Noted, QStringList{u"x拷贝资源文件失败！"_s});
    Run(pTarget->GetId(), 32933, u"出"_s);
    EXPECT_EQ(m_tree.Noted, QStringList{u"x指定的文件夹不合法！"_s});
    Run(pTarget->GetId(), 32933, u"无"_s);
    EXPECT_EQ(m_tree.Noted, QStringList{u"x指定的文件夹不存在！"_s});
}

TEST_F(SubtreeTransferTest, AHostileIndexChangesNothing) {
    MakeBranch();
    const auto pNode = CBookNode::Root(*m_tree.Disk.pCourse)->AddChild(u"新"_s);
    m_tree.Open();
    for (const QByteArray& index :
         {"0,1,a,0,N1\\x,0,1,-1\n1,2,b,0,N2\\..\\..\\x,0,-1,-1\n"_ba,
          "0,1,a,0,N1\\x,0,1,-1\n1,2,b,0,,0,1,-1\n"_ba, "0,1,a,0,N1\\x,0,2147483648,-1\n"_ba, "0,1,a\n"_ba,
          QByteArray(1000, '\0')}) {
        m_tree.Disk.Folder.Write(u"坏\\NodeInfo.tni"_s, index);
        Run(pNode->GetId(), 32933, u"坏"_s);
        EXPECT_EQ(m_tree.Noted.size(), 1) << index.left(60).constData();
        EXPECT_EQ(m_tree.Disk.Store().GetNode(pNode->GetId()).Type, NodeType::c_nEmpty);
        EXPECT_TRUE(pNode->GetChildren().isEmpty());
    }
}

} // namespace
