#include "editor/ui/DisplayViews.h"

#include "platform/ui/WebBrowser.h"
#include "tests/editor_ui/ViewHarness.h"

#include <QLabel>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

class DisplayViewsTest : public ::testing::Test {
protected:
    template <class T>
    T& Child(QWidget& view, const QString& strName) {
        return *view.findChild<T*>(strName);
    }

    CViewWorld m_world;
};

TEST_F(DisplayViewsTest, ChildrenAreListedAndLeadIntoTheTree) {
    const auto pParent = CBookNode::Root(*m_world.pCourse)->AddChild(u"第一章 <b>"_s);
    pParent->AddChild(u"空"_s);
    const auto pFolder = pParent->AddChild(u"夹"_s);
    pFolder->AddChild(u"下"_s);
    const std::unique_ptr<CBookShowView> pView(DisplayViews::MakeChildrenNodeListView(m_world.Host, nullptr));
    pView->m_pNode = pParent.get();
    ShowOnScreen(*pView);
    pView->ShowNode();
    EXPECT_EQ(Child<QLabel>(*pView, u"nodeTitle"_s).text(), u"第一章 <b>"_s);
    auto& list = Child<QTreeView>(*pView, u"childrenList"_s);
    const QAbstractItemModel& lines = *list.model();
    ASSERT_EQ(lines.rowCount(), 2);
    EXPECT_EQ(lines.index(0, 1).data().toString(), u"<空栏目>"_s);
    EXPECT_EQ(lines.index(1, 1).data().toString(), u"<目录栏目>"_s);
    EXPECT_FALSE(lines.index(0, 0).data(Qt::DecorationRole).value<QIcon>().isNull());
    const QPoint at = list.visualRect(lines.index(1, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(Child<QLabel>(*pView, u"selectedTitle"_s).text(), u"夹"_s);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(m_world.Host.Selected, QList<qint32>{pFolder->GetId()});
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(m_world.Host.Selected.size(), 2);
    list.keyboardSearch(u"空"_s);
    EXPECT_EQ(list.currentIndex().row(), 0);
}

TEST_F(DisplayViewsTest, ContentShowsInThePaneAndStopsWhenHidden) {
    const auto pNode = m_world.MakePage(u"页"_s, "<p>shown</p>");
    const std::unique_ptr<CBookShowView> pView(DisplayViews::MakeShowContentView(m_world.Host, nullptr));
    pView->m_pNode = pNode.get();
    ShowOnScreen(*pView);
    pView->ShowNode();
    auto& browser = Child<CWebBrowser2Ex>(*pView, u"content"_s);
    QString strHtml;
    ASSERT_TRUE(browser.GetBrowserBodyInnerHTML(strHtml));
    EXPECT_EQ(strHtml, u"<p>shown</p>"_s);
    pView->hide();
    EXPECT_TRUE(QTest::qWaitFor([&] {
        QString strUrl;
        return browser.GetURL(strUrl) && strUrl == u"about:blank"_s;
    }));
    EXPECT_TRUE(m_world.Host.Views.empty());
}

TEST_F(DisplayViewsTest, ALinkOfANodeShowsItsPlaceInThePage) {
    const auto pPage = m_world.MakePage(u"页"_s, "<p style=height:3000px><a name=b>B</a>");
    const qint32 nId = m_world.MakePage(u"链接"_s, "")->GetId();
    const QString strPath = u"n%1\\content.htm#b"_s.arg(pPage->GetId());
    m_world.Store().SetContent(nId, {NodeType::c_nInSiteLink, strPath, 0, {}, {}});
    CBookNode link(*m_world.pCourse, m_world.Store().GetNode(nId));
    const std::unique_ptr<CBookShowView> pView(DisplayViews::MakeShowContentView(m_world.Host, nullptr));
    pView->m_pNode = &link;
    ShowOnScreen(*pView);
    pView->ShowNode();
    QString strUrl;
    Child<CWebBrowser2Ex>(*pView, u"content"_s).GetURL(strUrl);
    EXPECT_EQ(strUrl, u"file://"_s + pPage->GetContentPath() + u"#b"_s);
}

TEST_F(DisplayViewsTest, ContentWithAWindowOfItsOwnOpensThere) {
    const std::pair<qint32, Qt::WindowStates> forms[] = {
        {1, Qt::WindowNoState}, {2, Qt::WindowMaximized}, {3, Qt::WindowFullScreen}};
    for (const auto& [nOpenType, states] : forms) {
        const auto pNode = m_world.MakePage(u"窗口 %1"_s.arg(nOpenType), "<p>away</p>");
        m_world.Store().SetOpenType(pNode->GetId(), nOpenType);
        const std::unique_ptr<CBookShowView> pView(DisplayViews::MakeShowContentView(m_world.Host, nullptr));
        pView->m_pNode = pNode.get();
        pView->ShowNode();
        EXPECT_EQ(m_world.Host.Last(),
                  (CRecordingHost::Shown{EViewKind::Prompt, pNode->GetId(), PromptCode::c_nNewWindow}));
        auto* pWindow = pView->findChild<QWidget*>(u"contentWindow"_s);
        ASSERT_NE(pWindow, nullptr);
        EXPECT_EQ(pWindow->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen), states);
        QString strHtml;
        EXPECT_TRUE(Child<CWebBrowser2Ex>(*pWindow, u"content"_s).GetBrowserBodyInnerHTML(strHtml));
        EXPECT_EQ(strHtml, u"<p>away</p>"_s);
    }
}

} // namespace
