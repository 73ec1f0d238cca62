#include "content/ui/InSiteLinkDialog.h"

#include "content/Texts.h"
#include "foundation/CodePage.h"
#include "platform/ui/WebBrowser.h"
#include "tests/content/CourseOnDisk.h"
#include "tests/support/WindowHelp.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

/// The dialog over a small course: the page that is edited, one with anchors, an empty node with a
/// presentation below it, a document, and a link to the web.
class InSiteLinkDialogTest : public ::testing::Test {
protected:
    InSiteLinkDialogTest() {
        m_nSelf = AddPage("<p>self</p>");
        m_nPage = AddPage("<a href=#b>b</a><p style=height:3000px><p><a name=b>B</a>"
                          "<script>alert(1); setTimeout(() => confirm('?'));</script>");
        m_nEmpty = Add(c_nRootNodeId, NodeType::c_nEmpty, {});
        m_nSlides = Add(m_nEmpty, NodeType::c_nExternalFile, u"a.files\\torvaneframe.htm"_s);
        for (const QString& strName : {u"pres.xml"_s, u"fullscreen.htm"_s, u"slide0001.htm"_s,
                                       u"slide0002.htm"_s, u"torvaneframe.htm"_s})
            Write(m_nSlides, u"a.files\\"_s + strName, "<p>slide</p>");
        Write(m_nSlides, u"a.files\\pres.xml"_s,
              "<p><s href='slide0001.htm' title='一'/><s href='slide0002.htm'/></p>");
        Write(m_nSlides, u"a.files\\frame.htm"_s,
              "<frameset cols='30%,*'><frame src=outline.htm><frame name=PPTSld src=slide0001.htm>"
              "</frameset>");
        Write(m_nSlides, u"a.files\\outline.htm"_s, "<a href=slide0002.htm target=PPTSld>2</a>");
        m_nDocument = Add(c_nRootNodeId, NodeType::c_nExternalFile, u"讲义.doc"_s);
        Write(m_nDocument, u"讲义.doc"_s, "doc");
        m_nWeb = Add(c_nRootNodeId, NodeType::c_nExternalLink, u"http://127.0.0.1:9/a.htm"_s);
    }
    qint32 Add(qint32 nParent, qint32 nType, const QString& strBelow) {
        CBookNode parent(*m_disk.pCourse, m_disk.Store().GetNode(nParent));
        const qint32 nId = parent.AddChild(u"栏目 %1"_s.arg(++m_nNodes))->GetId();
        const bool bBelow = !strBelow.isEmpty() && !strBelow.contains(u"://"_s);
        const QString strPath = bBelow ? u"N%1\\"_s.arg(nId) + strBelow : strBelow;
        m_disk.Store().SetContent(nId, {nType, strPath, 0, {}, {}});
        return nId;
    }
    qint32 AddPage(const QByteArray& html) {
        const qint32 nId = Add(c_nRootNodeId, NodeType::c_nEditorPage, u"Content.htm"_s);
        Write(nId, u"Content.htm"_s, html);
        return nId;
    }
    void Write(qint32 nId, const QString& strBelow, const QByteArray& bytes) {
        m_disk.Folder.Write(m_disk.NodePath(nId, strBelow), bytes);
    }
    /// The place of a file of a node, as the line shows it.
    QString Line(qint32 nId, const QString& strBelow) const {
        return m_disk.Folder.Native(m_disk.NodePath(nId, strBelow));
    }

    CCourseOnDisk m_disk;
    int m_nNodes = 0;
    qint32 m_nSelf, m_nPage, m_nEmpty, m_nSlides, m_nDocument, m_nWeb;
};

TEST_F(InSiteLinkDialogTest, TheLinkIsWhereThePreviewStands) {
    const CBookNode self(*m_disk.pCourse, m_disk.Store().GetNode(m_nSelf));
    CInSiteLinkDialog dialog(self, m_disk.People, nullptr);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto& tree = *dialog.findChild<QTreeView*>(u"nodes"_s);
    auto& browser = *dialog.findChild<CWebBrowser2Ex*>(u"preview"_s);
    auto& line = *dialog.findChild<QLineEdit*>(u"location"_s);
    auto& ok = *dialog.findChild<QPushButton*>(u"ok"_s);
    auto& lines = static_cast<CBookTree&>(*tree.model());
    const auto select = [&](qint32 nId) {
        tree.setFocus();
        tree.setCurrentIndex(lines.Find(nId));
    };
    const auto shows = [&](const QString& strPlace) {
        return QTest::qWaitFor([&] { return line.text() == strPlace && !browser.IsCallRunning(); });
    };
    const auto html = [&] {
        QString strHtml;
        browser.GetBrowserBodyInnerHTML(strHtml);
        return strHtml;
    };

    // The root stands open and selected; the headings can't be.
    EXPECT_EQ(tree.currentIndex(), lines.GetRoot());
    EXPECT_TRUE(tree.isExpanded(lines.GetRoot()));
    tree.setCurrentIndex(lines.index(0, 0));
    EXPECT_EQ(tree.currentIndex(), lines.GetRoot());

    // A page that asks the person is answered, and its anchors are followed.
    select(m_nPage);
    const QString strPage = u"file://"_s + Line(m_nPage, u"Content.htm"_s);
    EXPECT_TRUE(shows(strPage)) << line.text().toStdString();
    EXPECT_TRUE(tree.hasFocus());
    browser.ExecuteScript(u"document.querySelector('a').click()"_s);
    EXPECT_TRUE(shows(strPage + u"#b"_s)) << line.text().toStdString();

    // The node itself leaves everything as it is.
    m_disk.People.Expect(ContentText::c_strInSiteSelf);
    select(m_nSelf);
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_disk.People.Boxes.size() == 1; }));
    EXPECT_EQ(line.text(), strPage + u"#b"_s);
    EXPECT_TRUE(html().contains(u"name=\"b\""_s));

    // A file that is no page, and a page that can't be reached.
    select(m_nDocument);
    EXPECT_TRUE(shows(Line(m_nDocument, u"讲义.doc"_s))) << line.text().toStdString();
    select(m_nWeb);
    EXPECT_TRUE(shows(u"http://127.0.0.1:9/a.htm"_s)) << line.text().toStdString();

    // What has no page gives no link.
    select(m_nEmpty);
    EXPECT_TRUE(shows(u"about:blank"_s));
    EXPECT_TRUE(tree.isExpanded(lines.Find(m_nEmpty)));
    EXPECT_TRUE(QTest::qWaitFor([&] { return html().contains(u"不是可以选择内部链接"_s); }));
    m_disk.People.Expect(ContentText::c_strNoPlaceChosen);
    ok.click();
    EXPECT_TRUE(dialog.isVisible());

    // Slides: a step in the frame is one of the line, and the link leads to the wrapper.
    select(m_nSlides);
    const QString strFrame = u"file://"_s + Line(m_nSlides, u"a.files\\frame.htm"_s);
    EXPECT_TRUE(shows(strFrame + u"#slide0001.htm"_s)) << line.text().toStdString();
    // The outline may come behind the slide.
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return browser.ExecuteScript(u"frames[0].document.querySelector('a').click()"_s); }));
    EXPECT_TRUE(shows(strFrame + u"#slide0002.htm"_s)) << line.text().toStdString();
    // OK pressed while the line still tells of the page before: the one that was chosen is taken.
    select(m_nPage);
    ok.click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }));
    EXPECT_TRUE(dialog.GetLink().endsWith(u"Content.htm"_s)) << dialog.GetLink().toStdString();
    dialog.show();
    select(m_nSlides);
    EXPECT_TRUE(shows(strFrame + u"#slide0001.htm"_s)) << line.text().toStdString();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return browser.ExecuteScript(u"frames[0].document.querySelector('a').click()"_s); }));
    EXPECT_TRUE(shows(strFrame + u"#slide0002.htm"_s)) << line.text().toStdString();
    ok.click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(
        InSiteLink::StoredPath(dialog.GetLink(), m_disk.pCourse->GetPaths().GetNodeResourceFolder(true)),
        u"n%1\\a.files\\torvaneframe.htm#slide0002.htm"_s.arg(m_nSlides));
}

// The list of places takes the preview where a click on a link would, and follows it.
TEST_F(InSiteLinkDialogTest, ThePlacesOfThePageAreChosenFromAList) {
    Write(m_nPage, u"Content.htm"_s,
          CodePage::Encode(u"<h1 id=\"第一章\">引言</h1><p style=height:3000px><a name=End>结束</a><p>"_s));
    CInSiteLinkDialog dialog(CBookNode(*m_disk.pCourse, m_disk.Store().GetNode(m_nSelf)), m_disk.People,
                             nullptr);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto& tree = *dialog.findChild<QTreeView*>(u"nodes"_s);
    auto& browser = *dialog.findChild<CWebBrowser2Ex*>(u"preview"_s);
    auto& line = *dialog.findChild<QLineEdit*>(u"location"_s);
    auto& places = *dialog.findChild<QTreeView*>(u"places"_s);
    const auto list = [&] {
        QStringList rows;
        for (int n = 0; n < places.model()->rowCount(); ++n)
            rows.append(places.model()->index(n, 0).data().toString() + u'=' +
                        places.model()->index(n, 1).data().toString());
        return rows.join(u'|');
    };
    const auto shows = [&](qint32 nId, const QString& strWanted) {
        tree.setCurrentIndex(static_cast<CBookTree&>(*tree.model()).Find(nId));
        return QTest::qWaitFor([&] { return list() == strWanted && !browser.IsCallRunning(); });
    };
    const auto choose = [&](int nRow) {
        places.setFocus();
        QTest::mouseClick(places.viewport(), Qt::LeftButton, {},
                          places.visualRect(places.model()->index(nRow, 0)).center());
    };
    const auto isAt = [&](const QString& strFragment) {
        QString strUrl;
        return QTest::qWaitFor([&] {
            return line.text().endsWith(u"Content.htm"_s + strFragment) && !browser.IsCallRunning() &&
                   browser.GetURL(strUrl) && strUrl.endsWith(u"Content.htm"_s + strFragment);
        });
    };

    EXPECT_TRUE(shows(m_nPage, u"（整个页面）=|第一章=引言|End=结束"_s)) << list().toStdString();
    EXPECT_TRUE(QTest::qWaitFor([&] { return places.currentIndex().row() == 0; }));
    choose(2);
    EXPECT_TRUE(isAt(u"#End"_s)) << line.text().toStdString();
    QTest::keyClick(&places, Qt::Key_Up);
    EXPECT_TRUE(isAt(u"#第一章"_s)) << line.text().toStdString();
    choose(0);
    EXPECT_TRUE(isAt(u""_s)) << line.text().toStdString();
    browser.ExecuteScript(u"location.hash = 'end'"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return places.currentIndex().row() == 2; })) << "whatever its case";

    EXPECT_TRUE(shows(m_nWeb, u""_s));
    EXPECT_FALSE(places.accessibleDescription().isEmpty());
    EXPECT_TRUE(shows(m_nSlides, u"slide0001.htm=一|slide0002.htm=第 2 页"_s)) << list().toStdString();
    EXPECT_TRUE(QTest::qWaitFor([&] { return places.currentIndex().row() == 0; }));
    choose(1);
    const auto atSecond = [&] { return line.text().endsWith(u"frame.htm#slide0002.htm"_s); };
    EXPECT_TRUE(QTest::qWaitFor(atSecond));
    // It is written once more when the frame has told where it stands.
    line.clear();
    EXPECT_TRUE(QTest::qWaitFor(atSecond)) << line.text().toStdString();
    EXPECT_EQ(places.currentIndex().row(), 1);

    // A click into the list, and OK at once.
    EXPECT_TRUE(shows(m_nPage, u"（整个页面）=|第一章=引言|End=结束"_s)) << list().toStdString();
    choose(1);
    EXPECT_TRUE(isAt(u"#第一章"_s)) << line.text().toStdString();
    dialog.findChild<QPushButton*>(u"ok"_s)->click();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_TRUE(dialog.GetLink().endsWith(u"Content.htm#第一章"_s)) << dialog.GetLink().toStdString();

    // Opened for that link, it stands there.
    CInSiteLinkDialog again(CBookNode(*m_disk.pCourse, m_disk.Store().GetNode(m_nSelf)), m_disk.People,
                            nullptr, dialog.GetLink());
    again.show();
    auto& list2 = *again.findChild<QTreeView*>(u"places"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return list2.currentIndex().row() == 1; }));
    EXPECT_TRUE(again.findChild<QLineEdit*>(u"location"_s)->text().endsWith(u"Content.htm#第一章"_s));
}

TEST_F(InSiteLinkDialogTest, AFilmToWhichAPageLeadsIsChosenByAClick) {
    Write(m_nPage, u"Content.htm"_s, "<a href=film.wmv style='position:fixed;inset:0'>film</a>");
    Write(m_nPage, u"Film.wmv"_s, "x");
    CInSiteLinkDialog dialog(CBookNode(*m_disk.pCourse, m_disk.Store().GetNode(m_nSelf)), m_disk.People,
                             nullptr);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto& tree = *dialog.findChild<QTreeView*>(u"nodes"_s);
    auto& browser = *dialog.findChild<CWebBrowser2Ex*>(u"preview"_s);
    auto& line = *dialog.findChild<QLineEdit*>(u"location"_s);
    tree.setCurrentIndex(static_cast<CBookTree&>(*tree.model()).Find(m_nPage));
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return line.text().endsWith(u"Content.htm"_s) && !browser.IsCallRunning(); }));
    QWidget* pTarget = browser.focusProxy();
    while (pTarget->focusProxy() != nullptr)
        pTarget = pTarget->focusProxy();
    QTest::mouseClick(pTarget, Qt::LeftButton, {}, pTarget->rect().center());
    EXPECT_TRUE(QTest::qWaitFor([&] { return line.text() == Line(m_nPage, u"Film.wmv"_s); }))
        << line.text().toStdString();
    QString strUrl;
    EXPECT_TRUE(browser.GetURL(strUrl) && strUrl.endsWith(u"Content.htm"_s)) << "the page stays";
    dialog.findChild<QPushButton*>(u"ok"_s)->click();
    EXPECT_EQ(dialog.GetLink(), m_disk.Folder.Path(m_disk.NodePath(m_nPage, u"Film.wmv"_s)));
}

TEST_F(InSiteLinkDialogTest, CancelGivesNothing) {
    CBookNode self(*m_disk.pCourse, m_disk.Store().GetNode(m_nSelf));
    WhenDialogOpens([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(AskInSiteLink(self, nullptr), std::nullopt);
}

} // namespace
