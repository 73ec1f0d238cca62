#include "content/BookNode.h"

#include "foundation/Exceptions.h"
#include "tests/content/CourseOnDisk.h"

using namespace Qt::StringLiterals;

namespace {

class BookNodeTest : public ::testing::Test {
protected:
    CCourseOnDisk m_disk;
    std::unique_ptr<CBookNode> m_pRoot = CBookNode::Root(*m_disk.pCourse);

    double StoredSize(qint32 nId) { return m_disk.Store().GetField(nId, u"Size"_s).toDouble(); }
    bool FileExists(qint32 nId, const QString& strName) {
        return m_disk.Folder.Exists(m_disk.NodePath(nId, strName));
    }
    QByteArray PageOf(qint32 nId) { return m_disk.Folder.Read(m_disk.NodePath(nId, u"Content.htm"_s)); }
    QStringList Titles(const QList<NodeHeader>& headers) {
        QStringList titles;
        for (const NodeHeader& header : headers)
            titles.append(header.Title);
        return titles;
    }
};

TEST_F(BookNodeTest, AFolderThatCannotBeMadeLeavesNoRow) {
    const qint32 nNext = m_pRoot->AddChild(u"第一章"_s)->GetId() + 1;
    m_disk.Folder.Write(m_disk.NodePath(nNext).chopped(1), "a file in the folder's place");
    EXPECT_THROW(m_pRoot->AddChild(u"第二章"_s), Torvane::CRunException);
    EXPECT_EQ(Titles(m_pRoot->GetChildren()), QStringList{u"第一章"_s});
    EXPECT_EQ(m_disk.Store().GetNodeCount(), 4);
}

TEST_F(BookNodeTest, AnEditorPageReplacesTheOldContent) {
    const auto pNode = m_pRoot->AddChild(u"章"_s);
    m_disk.Folder.Write(m_disk.NodePath(pNode->GetId(), u"old\\x.txt"_s), "old");
    pNode->CreateEditorPage(2);
    EXPECT_FALSE(FileExists(pNode->GetId(), u"old"_s));
    EXPECT_TRUE(FileExists(pNode->GetId(), u"res"_s));
    EXPECT_EQ(PageOf(pNode->GetId()), "<p>general</p>\r\nend");
    EXPECT_EQ(m_disk.Store().GetNode(pNode->GetId()).Type, NodeType::c_nEditorPage);
    EXPECT_EQ(pNode->GetContentPath(), m_disk.Folder.Path(m_disk.NodePath(pNode->GetId(), u"Content.htm"_s)));
    EXPECT_EQ(pNode->GetOpenType(), 2);
    EXPECT_EQ(StoredSize(pNode->GetId()), PageOf(pNode->GetId()).size());
}

TEST_F(BookNodeTest, WhatCanBeCheckedIsCheckedBeforeTheContentGoes) {
    const auto pNode = m_pRoot->AddChild(u"章"_s);
    pNode->CreateEditorPage(0);
    m_disk.Store().DeleteNode(pNode->GetId());
    EXPECT_THROW(pNode->CreateEditorPage(0), Torvane::CRunException);
    EXPECT_THROW(pNode->ClearContent(), Torvane::CRunException);
    EXPECT_TRUE(FileExists(pNode->GetId(), u"Content.htm"_s));
}

TEST_F(BookNodeTest, SavingReplacesThePageAndTheSizeOrSaysSo) {
    const auto pNode = m_pRoot->AddChild(u"章"_s);
    pNode->CreateEditorPage(0);
    EXPECT_TRUE(pNode->SaveContent(u"<p>课程\n</p>"_s));
    EXPECT_EQ(PageOf(pNode->GetId()), "<p>\xBF\xCE\xB3\xCC\r\n</p>");
    EXPECT_EQ(StoredSize(pNode->GetId()), 13);
    // A vanished folder is no reason to lose the text.
    Torvane::File::TryDeleteFolder(pNode->GetFolder().chopped(1));
    EXPECT_TRUE(pNode->SaveContent(u"<p>b"_s));
    EXPECT_EQ(PageOf(pNode->GetId()), "<p>b");
    Torvane::File::TryDeleteFolder(pNode->GetFolder().chopped(1));
    m_disk.Folder.MakeFolder(m_disk.NodePath(pNode->GetId(), u"Content.htm\\x"_s));
    EXPECT_THROW(pNode->SaveContent(u"text"_s), Torvane::CRunException);
}

TEST_F(BookNodeTest, ClearingKeepsFolderChildrenAndSize) {
    const auto pNode = m_pRoot->AddChild(u"章"_s);
    pNode->CreateEditorPage(1);
    const double dSize = StoredSize(pNode->GetId());
    const auto pChild = pNode->AddChild(u"节"_s);
    EXPECT_TRUE(pNode->ClearContent());
    EXPECT_TRUE(FileExists(pNode->GetId(), QString()) && !FileExists(pNode->GetId(), u"Content.htm"_s));
    EXPECT_EQ(m_disk.Store().GetNode(pNode->GetId()).Type, NodeType::c_nEmpty);
    EXPECT_EQ(pNode->GetContentPath(), QString());
    EXPECT_EQ(StoredSize(pNode->GetId()), dSize);
    EXPECT_EQ(Titles(pNode->GetChildren()), QStringList{u"节"_s});
}

TEST_F(BookNodeTest, DeletingTakesTheWholeSubtreeAndKeepsTheOrderDense) {
    const auto pFirst = m_pRoot->AddChild(u"一"_s);
    const auto pSecond = m_pRoot->AddChild(u"二"_s);
    const auto pThird = m_pRoot->AddChild(u"三"_s);
    const auto pInner = pSecond->AddChild(u"二之一"_s);
    const auto pLeaf = pInner->AddChild(u"叶"_s);
    pSecond->AddChild(u"二之二"_s);
    EXPECT_EQ(Titles(pSecond->GetDescendants()), (QStringList{u"二之一"_s, u"叶"_s, u"二之二"_s}));
    EXPECT_TRUE(pSecond->Delete());
    EXPECT_EQ(Titles(m_pRoot->GetDescendants()), (QStringList{u"一"_s, u"三"_s}));
    EXPECT_EQ(m_disk.Store().GetNodeCount(), 5);
    EXPECT_EQ(m_disk.Store().GetField(pThird->GetId(), u"Index"_s).toInt(), 2);
    for (const qint32 nGone : {pSecond->GetId(), pInner->GetId(), pLeaf->GetId()})
        EXPECT_FALSE(FileExists(nGone, QString())) << nGone;
    EXPECT_TRUE(FileExists(pFirst->GetId(), QString()));
}

TEST_F(BookNodeTest, ADamagedStoreThatLeadsInACircleNeverTakesTheRootAlong) {
    const auto pNode = m_pRoot->AddChild(u"章"_s);
    m_disk.Store().MoveTo(c_nRootNodeId, pNode->GetId());
    EXPECT_TRUE(pNode->GetDescendants().isEmpty());
    EXPECT_TRUE(pNode->Delete());
    EXPECT_EQ(m_disk.Store().GetNodeCount(), 3);
}

TEST_F(BookNodeTest, ACourseMovedAwayWhileOpenDoesNotRiseAgain) {
    const auto pNode = m_pRoot->AddChild(u"章"_s);
    ASSERT_TRUE(QFile::rename(m_disk.Folder.Native(u"课程"_s), m_disk.Folder.Native(u"别处"_s)));
    EXPECT_THROW(pNode->SaveContent(u"x"_s), Torvane::CRunException);
    EXPECT_THROW(m_pRoot->AddChild(u"节"_s), Torvane::CRunException);
    EXPECT_FALSE(m_disk.Folder.Exists(u"课程"_s));
}

TEST_F(BookNodeTest, TheNodesOfANewCourseComeFromItsList) {
    m_disk.pCourse->Close();
    CCourse fresh(m_disk.Folder.Path(u"新\\新.vcp"_s), m_disk.Services());
    CreateRecord record{{8, u"化学"_s, u"李"_s}, u"新"_s, m_disk.Folder.Path(u"新"_s), {}, u"红"_s};
    record.InitialNodes = {
        {u"章"_s, 1, 2, {}, true}, {u"节"_s, -1, -1, u"简介"_s, true}, {u"尾"_s, -1, -1, {}, true}};
    fresh.Create(record);
    CCourse course(m_disk.Folder.Path(u"新\\新.vcp"_s), m_disk.Services());
    ASSERT_TRUE(course.Open());
    const QList<NodeHeader> nodes = CBookNode::Root(course)->GetDescendants();
    EXPECT_EQ(Titles(nodes), (QStringList{u"章"_s, u"节"_s, u"尾"_s}));
    EXPECT_EQ(nodes.at(0).Type, NodeType::c_nEmpty);
    EXPECT_EQ(ReadFileBytes(CBookNode(course, nodes.at(1)).GetContentPath()), "<p>intro\xFF\r\n");
    EXPECT_EQ(ReadFileBytes(CBookNode(course, nodes.at(2)).GetContentPath()), "<p>general</p>\r\nend");
}

} // namespace
