#include "content/InSiteLink.h"

#include "content/Texts.h"
#include "tests/content/CourseOnDisk.h"

namespace {

class InSiteLinkTest : public ::testing::Test {
protected:
    /// A node whose content stands at this path below its folder, or as it is where it has a scheme or leads
    /// to another node.
    std::unique_ptr<CBookNode> Make(qint32 nType, const QString& strPath) {
        const qint32 nId = CBookNode::Root(*m_disk.pCourse)->AddChild(u"栏目 %1"_s.arg(++m_nNodes))->GetId();
        const bool bBelow = !strPath.isEmpty() && !strPath.contains(u"://"_s) && !strPath.startsWith(u'n');
        const QString strStored = bBelow ? u"N%1\\"_s.arg(nId) + strPath : strPath;
        EXPECT_TRUE(m_disk.Store().SetContent(nId, {nType, strStored, 0, {}, {}}));
        return std::make_unique<CBookNode>(*m_disk.pCourse, m_disk.Store().GetNode(nId));
    }
    QString Nodes() const { return m_disk.pCourse->GetPaths().GetNodeResourceFolder(true); }
    void WritePresentation(qint32 nId, std::initializer_list<QString> names) {
        for (const QString& strName : names)
            m_disk.Folder.Write(m_disk.NodePath(nId, u"a.files\\"_s + strName), "<p>");
    }

    CCourseOnDisk m_disk{{}, CTempFolder::InMemory()};
    int m_nNodes = 0;
};

TEST_F(InSiteLinkTest, ANodeShowsItsPageOrWhyItHasNone) {
    enum class EShown { Page, Web, AsItIs, Text };
    const struct {
        qint32 nType;
        QString strPath;
        EShown eShown;
    } cases[] = {
        {NodeType::c_nEmpty, u""_s, EShown::Text},
        {NodeType::c_nEditorPage, u"Content.htm"_s, EShown::Page},
        {NodeType::c_nExternalFile, u"讲义#1.HTML"_s, EShown::Page},
        {NodeType::c_nExternalFile, u"图.PNG"_s, EShown::AsItIs},
        {NodeType::c_nExternalFile, u"讲义.doc"_s, EShown::Text},
        {NodeType::c_nExternalFile, u"片.avi"_s, EShown::Text},
        {NodeType::c_nExternalLink, u"http://h/A.htm#b"_s, EShown::Web},
        {NodeType::c_nExternalLink, u"file:///z:/a.htm"_s, EShown::Page},
    };
    for (const auto& c : cases) {
        const auto pNode = Make(c.nType, c.strPath);
        const InSiteLink::Preview preview = InSiteLink::PreviewOf(*pNode);
        EXPECT_EQ(preview.strTarget.isEmpty(), c.eShown == EShown::Text) << c.strPath;
        EXPECT_EQ(preview.strText.isEmpty(), c.eShown != EShown::Text) << c.strPath;
        EXPECT_EQ(preview.bNetwork, c.eShown == EShown::Web) << c.strPath;
        const bool bBare = c.eShown == EShown::AsItIs || c.eShown == EShown::Text;
        EXPECT_EQ(preview.strPlace.contains(u"://"_s), !bBare) << preview.strPlace;
        if (c.strPath.isEmpty()) {
            EXPECT_EQ(preview.strPlace, u"about:blank"_s);
        }
    }
}

TEST_F(InSiteLinkTest, ALinkOfANodeLeadsWhereItsPageIs) {
    m_disk.Folder.Write(m_disk.NodePath(13, u"C#.htm"_s), "<p>");
    const auto pNode = Make(NodeType::c_nInSiteLink, u"n13\\c#.htm#a"_s);
    const QString strTarget = InSiteLink::AddressOf(*pNode).strTarget;
    EXPECT_TRUE(strTarget.startsWith(u"file:///"_s) && strTarget.endsWith(u"/n13/c%2523.htm#a"_s))
        << strTarget;
    EXPECT_EQ(InSiteLink::PreviewOf(*pNode).strTarget, strTarget);
    EXPECT_EQ(InSiteLink::AddressOf(*Make(NodeType::c_nInSiteLink, u"n13\\c#.htm"_s)).strTarget,
              Nodes() + u"n13\\c#.htm"_s);
    // One whose page is gone still says where it was.
    EXPECT_TRUE(InSiteLink::AddressOf(*Make(NodeType::c_nInSiteLink, u"n13\\gone.htm#b"_s))
                    .strTarget.endsWith(u"/n13/gone.htm#b"_s));
}

TEST_F(InSiteLinkTest, APresentationIsSteppedThroughAndLinkedToThroughItsWrapper) {
    const auto pNode = Make(NodeType::c_nExternalFile, u"a.files\\TorvaneFrame.htm"_s);
    const QString strFolder = Nodes() + u"N%1\\a.files\\"_s.arg(pNode->GetId());
    WritePresentation(pNode->GetId(), {u"torvaneframe.htm"_s, u"frame.htm"_s, u"pres.xml"_s});
    EXPECT_TRUE(InSiteLink::PreviewOf(*pNode).strPlace.endsWith(u"TorvaneFrame.htm"_s)) << "no such folder";
    WritePresentation(pNode->GetId(), {u"fullscreen.htm"_s});
    EXPECT_EQ(InSiteLink::PreviewOf(*pNode).strPlace, u"file://"_s + strFolder + u"frame.htm"_s);

    const QString strFrame = u"file://"_s + strFolder + u"frame.htm"_s;
    const QString strSlide = u"file://"_s + strFolder + u"slide0003.htm"_s;
    for (const QString& strUrl : {strFrame, QString(strFrame + u"#slide0001.htm"_s)})
        EXPECT_EQ(InSiteLink::PlaceOf(strUrl, strSlide), strFrame + u"#slide0003.htm"_s);
    EXPECT_EQ(InSiteLink::PlaceOf(strFrame, u"about:blank"_s), strFrame);
    const QString strWrapper = u"file://"_s + strFolder + u"torvaneframe.htm#slide0003.htm"_s;
    EXPECT_EQ(InSiteLink::LinkTo(strFrame + u"#slide0003.htm"_s, Nodes()), strWrapper);
    EXPECT_EQ(InSiteLink::PageReference(strWrapper, Nodes()),
              u"../n%1/a.files/torvaneframe.htm#slide0003.htm"_s.arg(pNode->GetId()));
    m_disk.Folder.Write(m_disk.NodePath(14, u"frame.htm"_s), "a page that has only the name");
    EXPECT_EQ(InSiteLink::LinkTo(u"file://"_s + Nodes() + u"N14\\frame.htm"_s, Nodes()),
              u"file://"_s + Nodes() + u"N14\\frame.htm"_s);
}

TEST_F(InSiteLinkTest, APlaceBecomesALinkAndItsStoredForms) {
    m_disk.Folder.Write(m_disk.NodePath(13, u"Clip.AVI"_s), "x");
    const struct {
        QString strPlace, strStored, strInPage;
    } cases[] = {
        {u"file://"_s + Nodes() + u"N13\\Content.htm#A"_s, u"n13\\content.htm#a"_s,
         u"../n13/content.htm#a"_s},
        {Nodes() + u"N13\\Clip.AVI"_s, u"n13\\clip.avi"_s, u"../n13/clip.avi"_s},
        {u"file://"_s + Nodes() + u"N13\\60%25.htm#1%"_s, u"n13\\60%.htm#1%"_s, u"../n13/60%.htm#1%"_s},
        {u"http://Host/A#B"_s, u"http://Host/A#B"_s, u"http://Host/A#B"_s},
        {u"http://h/?u=file:///A"_s, u"http://h/?u=file:///A"_s, u"http://h/?u=file:///A"_s},
    };
    for (const auto& c : cases) {
        const auto link = InSiteLink::LinkTo(c.strPlace, Nodes());
        ASSERT_TRUE(link.has_value()) << c.strPlace;
        EXPECT_EQ(InSiteLink::StoredPath(*link, Nodes()), c.strStored);
        EXPECT_EQ(InSiteLink::TypedPlace(InSiteLink::ShownPlace(*link)), *link);
        EXPECT_EQ(InSiteLink::PageReference(*link, Nodes()), c.strInPage);
    }
    for (const QString& strPlace : {u""_s, u"about:blank"_s, u"file://Z:\\else\\where.htm#a"_s})
        EXPECT_FALSE(InSiteLink::LinkTo(strPlace, Nodes()).has_value()) << strPlace;
}

} // namespace
