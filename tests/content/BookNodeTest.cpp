#include "content/BookNode.h"

#include "foundation/Exceptions.h"
#include "tests/content/CourseOnDisk.h"

namespace {

class BookNodeTest : public ::testing::Test {
protected:
    CCourseOnDisk m_disk{{}, CTempFolder::InMemory()};
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
    // One that stands is no row's.
    QFile::remove(m_disk.Folder.Native(m_disk.NodePath(nNext).chopped(1)));
    m_disk.Folder.Write(m_disk.NodePath(nNext, u"x"_s), "of a row that was undone");
    EXPECT_EQ(m_pRoot->AddChild(u"第二章"_s)->GetId(), nNext);
    EXPECT_TRUE(FileExists(nNext, QString()) && !FileExists(nNext, u"x"_s));
}

TEST_F(BookNodeTest, AnEditorPageReplacesTheOldContentAndIsCleared) {
    const auto pNode = m_pRoot->AddChild(u"章"_s);
    const qint32 nId = pNode->GetId();
    m_disk.Folder.Write(m_disk.NodePath(nId, u"old\\x.txt"_s), "old");
    pNode->CreateEditorPage(0);
    EXPECT_FALSE(FileExists(nId, u"old"_s));
    EXPECT_TRUE(FileExists(nId, u"res"_s));
    EXPECT_EQ(PageOf(nId), "<p>general</p>\r\nend");
    const double dSize = StoredSize(nId);
    EXPECT_TRUE(pNode->ClearContent());
    EXPECT_TRUE(FileExists(nId, QString()) && !FileExists(nId, u"Content.htm"_s));
    EXPECT_EQ(m_disk.Store().GetNode(nId).Type, NodeType::c_nEmpty);
    EXPECT_EQ(pNode->GetContentPath(), QString());
    EXPECT_EQ(StoredSize(nId), dSize) << "the size stays";
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

TEST_F(BookNodeTest, ADeletionEndsBetweenTwoNodesAndLeavesAWholeTree) {
    constexpr int c_nChildren = 70;
    for (const int nAllowed : {0, 1, 40, 64, c_nChildren + 1}) {
        const auto pChapter = m_pRoot->AddChild(u"章"_s);
        for (int n = 0; n < c_nChildren; ++n)
            m_disk.Folder.Write(m_disk.NodePath(pChapter->AddChild(u"节"_s)->GetId(), u"a\b.htm"_s), "x");
        const QList<qint32> before = m_disk.Store().GetChildIds(pChapter->GetId());
        int nLast = 0;
        const Deletion deletion = pChapter->Delete([&](int nDone, int nTotal) {
            EXPECT_TRUE(nDone >= nLast && nDone <= nTotal && nTotal == c_nChildren + 1);
            nLast = nDone;
            // Wherever the program is killed, each node that is left has its folder.
            for (const qint32 nId : m_disk.Store().GetChildIds(pChapter->GetId()))
                EXPECT_TRUE(FileExists(nId, u"a\b.htm"_s)) << nId;
            return nDone < nAllowed;
        });
        EXPECT_FALSE(deletion.bFailed);
        QList<qint32> gone(before.crbegin(), before.crend());
        gone.append(pChapter->GetId());
        EXPECT_EQ(deletion.Gone, gone.first(nAllowed));
        for (const qint32 nId : gone)
            EXPECT_EQ(FileExists(nId, QString()), !deletion.Gone.contains(nId)) << nId;
        EXPECT_EQ(m_disk.Store().GetChildIds(pChapter->GetId()),
                  before.first(std::max(0, c_nChildren - nAllowed)));
        pChapter->Delete();
    }
}

TEST_F(BookNodeTest, ACancelDuringALargeFolderWaitsForItsEnd) {
    const auto pChapter = m_pRoot->AddChild(u"章"_s);
    const auto pSite = pChapter->AddChild(u"网站"_s);
    for (int n = 0; n < 50; ++n)
        m_disk.Folder.Write(m_disk.NodePath(pSite->GetId(), u"a\\%1.htm"_s.arg(n)), "x");
    int nAsked = 0;
    const Deletion deletion = pSite->Delete([&](int, int) { return ++nAsked < 10; });
    EXPECT_EQ(deletion.Gone, QList<qint32>{pSite->GetId()});
    EXPECT_GT(nAsked, 50) << "also between the files";
    EXPECT_FALSE(FileExists(pSite->GetId(), QString()));
}

TEST_F(BookNodeTest, ADeletionThatTheStoreEndsTellsWhatIsGone) {
    const auto pChapter = m_pRoot->AddChild(u"章"_s);
    for (int n = 0; n < 70; ++n)
        pChapter->AddChild(u"节"_s);
    const Deletion deletion = pChapter->Delete([&](int nDone, int) {
        if (nDone == 50)
            m_disk.Store().DeleteNode(pChapter->GetId() + 5);
        return true;
    });
    EXPECT_TRUE(deletion.bFailed);
    EXPECT_EQ(deletion.Gone.size(), 64) << "whole steps only";
    EXPECT_EQ(m_disk.Store().GetChildrenCount(pChapter->GetId()), 5);
    for (const NodeHeader& left : pChapter->GetChildren())
        EXPECT_TRUE(FileExists(left.Id, QString()));
    EXPECT_TRUE(m_pRoot->Delete().bFailed);
    EXPECT_EQ(m_pRoot->GetDescendants().size(), 6) << "refused before anything goes";
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
    CCourse course(m_disk.Folder.Path(u"新\\新.vcp"_s), m_disk.Services);
    CreateRecord record = m_disk.Record();
    record.Folder = m_disk.Folder.Path(u"新\\"_s);
    record.TemplateName = u"红"_s;
    record.InitialNodes = {{u"章"_s, 1, 3, {}, true},
                           {u"节"_s, -1, 2, u"简介"_s, true},
                           {u"末"_s, -1, -1, {}, true},
                           {u"尾"_s, -1, -1, {}, true}};
    course.Create(record);
    ASSERT_TRUE(course.Open());
    const QList<NodeHeader> nodes = CBookNode::Root(course)->GetDescendants();
    EXPECT_EQ(Titles(nodes), (QStringList{u"章"_s, u"节"_s, u"末"_s, u"尾"_s}));
    EXPECT_EQ(nodes.at(0).Type, NodeType::c_nEmpty);
    EXPECT_EQ(ReadFileBytes(CBookNode(course, nodes.at(1)).GetContentPath()), "<p>intro\xFF\r\n");
    EXPECT_EQ(ReadFileBytes(CBookNode(course, nodes.at(2)).GetContentPath()), "<p>general</p>\r\nend");
}

} // namespace
