#include "editor/NodeFile.h"

#include "office/OfficeFiles.h"
#include "platform/base/FileCalls.h"
#include "tests/content/CourseOnDisk.h"

#include <cerrno>

namespace {

class NodeFileTest : public ::testing::Test {
protected:
    /// A node whose content is this file, brought in as "原名.<extension>".
    std::unique_ptr<CBookNode> MakeNode(const QString& strName, const QByteArray& bytes,
                                        qint32 nType = NodeType::c_nExternalFile) {
        auto pNode = CBookNode::Root(*m_world.pCourse)->AddChild(strName);
        const qint32 nId = pNode->GetId();
        m_world.Folder.Write(CCourseOnDisk::NodePath(nId, strName), bytes);
        NodeContent row;
        row.Type = nType;
        row.Path = u"N%1\\"_s.arg(nId) + strName;
        row.OpenType = 1;
        row.FileName = u"原名"_s + Torvane::File::Extension(strName);
        row.Comment = u"第一版\n<b>"_s;
        m_world.Store().SetContent(nId, row);
        return std::make_unique<CBookNode>(*m_world.pCourse, m_world.Store().GetNode(nId));
    }
    QStringList Temporaries() const {
        return QDir(m_world.Folder.Native(u"程序\\SysData\\Temporary"_s))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
    QByteArray FileOf(const CBookNode& node, const QString& strName) {
        return m_world.Folder.Read(CCourseOnDisk::NodePath(node.GetId(), strName));
    }

    CCourseOnDisk m_world;
};

TEST_F(NodeFileTest, TheCardSaysWhatTheFileIs) {
    const auto pDocument = MakeNode(u"1.doc"_s, "text");
    const auto document = NodeFile::CardOf(*pDocument);
    ASSERT_TRUE(document);
    EXPECT_FALSE(document->strKind.isEmpty());
    EXPECT_EQ(document->FileName, u"原名.doc"_s);
    EXPECT_EQ(document->Comment, u"第一版\n<b>"_s);
    EXPECT_TRUE(document->bOffice);
    const auto pArchive = MakeNode(u"2.zip"_s, "text");
    EXPECT_FALSE(NodeFile::CardOf(*pArchive)->bOffice);
    // A lecture's card leaves standing what the view showed before.
    const auto pVideo = MakeNode(u"3"_s, "text", NodeType::c_nVideo);
    const auto video = NodeFile::CardOf(*pVideo);
    EXPECT_EQ(video->strKind, u"视频"_s);
    EXPECT_FALSE(video->FileName || video->Comment || video->bOffice);
    EXPECT_FALSE(NodeFile::CardOf(*CBookNode::Root(*m_world.pCourse)));
}

TEST_F(NodeFileTest, ACopyIsSavedOrTheReasonTold) {
    const auto pNode = MakeNode(u"1.zip"_s, "archive");
    m_world.Folder.Write(u"out\\a.zip"_s, "longer than it");
    m_world.People.Files = {std::nullopt, m_world.Folder.Path(u"out\\a.zip"_s),
                            m_world.Folder.Path(u"out"_s)};
    NodeFile::SaveCopy(*pNode, m_world.People);
    EXPECT_EQ(m_world.Folder.Read(u"out\\a.zip"_s), "longer than it");
    NodeFile::SaveCopy(*pNode, m_world.People);
    EXPECT_EQ(m_world.Folder.Read(u"out\\a.zip"_s), "archive");
    m_world.People.Expect(u"无法拷贝文件 %1 到 %2！(%3)"_s.arg(Platform::ToShown(pNode->GetContentPath()),
                                                               m_world.Folder.Native(u"out"_s),
                                                               Platform::SystemErrorText(EISDIR)));
    NodeFile::SaveCopy(*pNode, m_world.People);
}

// The document must be there until the page is, whatever goes wrong, and nothing may stay in the folder that
// all courses share.
TEST_F(NodeFileTest, ADocumentBecomesAPageAsAWholeOrNotAtAll) {
    const QByteArray document = ReadTestFile(VOREL_DELIVERED_DATA "/OfficeTemplate/Template.doc");
    const auto pNode = MakeNode(u"1.doc"_s, document);
    const auto isThere = [] { return true; };

    m_world.People.GiveUps = {true};
    m_world.People.Expect(u"用户取消了操作！"_s);
    EXPECT_FALSE(NodeFile::ConvertToHtml(*pNode, m_world.People, isThere));
    EXPECT_FALSE(NodeFile::ConvertToHtml(*pNode, m_world.People, [] { return false; }));
    EXPECT_EQ(FileOf(*pNode, u"1.doc"_s), document);
    EXPECT_EQ(Temporaries(), QStringList());

    EXPECT_TRUE(NodeFile::ConvertToHtml(*pNode, m_world.People, isThere));
    EXPECT_EQ(Temporaries(), QStringList());
    EXPECT_EQ(pNode->GetType(), NodeType::c_nExternalFile);
    EXPECT_TRUE(pNode->GetStoredPath().endsWith(u".htm"_s));
    const QByteArray html = FileOf(*pNode, Torvane::File::BareName(pNode->GetStoredPath()));
    EXPECT_TRUE(html.contains(u"<title>原名</title>"_s.toUtf8())) << "as the teacher calls it";
    EXPECT_EQ(pNode->GetOpenType(), 1);
    EXPECT_EQ(m_world.Store().GetComment(pNode->GetId()), u"第一版\n<b>"_s);

    const auto pGone = MakeNode(u"2.doc"_s, document);
    m_world.People.Expect(u"创建栏目文件失败！\nUnknown error 0x800A0BCD"_s);
    EXPECT_TRUE(NodeFile::ConvertToHtml(*pGone, m_world.People, [&] {
        m_world.Store().DeleteNode(pGone->GetId());
        return true;
    }));
    EXPECT_EQ(Temporaries(), QStringList());
}

TEST(VideoObstacle, TheFirstMissingToolIsNamed) {
    const QString strPreview = u"系统检测到您的计算机没有安装Windows Media Player 9, 无法预览视频。"_s;
    const QString strRecord = u"系统检测到您的计算机没有安装Windows Media %1 9, 无法启动视频制作工具。\n "
                              "请您安装后再次运行。"_s;
    EXPECT_EQ(NodeFile::VideoObstacle(false, false, true), strPreview);
    EXPECT_EQ(NodeFile::VideoObstacle(true, false, false), strRecord.arg(u"Encoder"_s));
    EXPECT_EQ(NodeFile::VideoObstacle(true, false, true), strRecord.arg(u"Player"_s));
}

} // namespace
