#include "content/ui/InSiteLinkDialog.h"

#include "content/Texts.h"
#include "foundation/CodePage.h"
#include "platform/ui/WebBrowser.h"
#include "tests/content/CourseOnDisk.h"
#include "tests/support/WindowHelp.h"

namespace {

/// A small course: the page that is edited, one with anchors, an empty node with a presentation below it, a
/// document, and a link to the web.
class CLinkCourse : public ::testing::Test {
protected:
    CLinkCourse() {
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

/// The dialog over it.
class InSiteLinkDialogTest : public CLinkCourse {
protected:
    void Open() {
        m_dialog.show();
        m_dialog.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_dialog));
    }
    void Select(qint32 nId) {
        m_tree.setFocus();
        m_tree.setCurrentIndex(m_lines.Find(nId));
    }
    bool Shows(const QString& strPlace) {
        return WaitFor([&] { return m_line.text() == strPlace && !m_browser.IsCallRunning(); });
    }

    const CBookNode m_self{*m_disk.pCourse, m_disk.Store().GetNode(m_nSelf)};
    CInSiteLinkDialog m_dialog{m_self, m_disk.People, nullptr};
    QTreeView& m_tree = The<QTreeView>(m_dialog, u"nodes"_s);
    CBookTree& m_lines = static_cast<CBookTree&>(*m_tree.model());
    CWebBrowser2Ex& m_browser = The<CWebBrowser2Ex>(m_dialog, u"preview"_s);
    QLineEdit& m_line = The<QLineEdit>(m_dialog, u"location"_s);
    QPushButton& m_ok = The<QPushButton>(m_dialog, u"ok"_s);
};

TEST_F(InSiteLinkDialogTest, TheLinkIsWhereThePreviewStands) {
    Open();
    const auto html = [&] {
        QString strHtml;
        m_browser.GetBrowserBodyInnerHTML(strHtml);
        return strHtml;
    };

    // The root stands open and selected; the headings can't be.
    EXPECT_EQ(m_tree.currentIndex(), m_lines.GetRoot());
    EXPECT_TRUE(m_tree.isExpanded(m_lines.GetRoot()));
    m_tree.setCurrentIndex(m_lines.index(0, 0));
    EXPECT_EQ(m_tree.currentIndex(), m_lines.GetRoot());

    // A page that asks the person is answered, and its anchors are followed.
    Select(m_nPage);
    const QString strPage = u"file://"_s + Line(m_nPage, u"Content.htm"_s);
    EXPECT_TRUE(Shows(strPage)) << m_line.text();
    EXPECT_TRUE(m_tree.hasFocus());
    m_browser.ExecuteScript(u"document.querySelector('a').click()"_s);
    EXPECT_TRUE(Shows(strPage + u"#b"_s)) << m_line.text();

    // The node itself leaves everything as it is.
    m_disk.People.Expect(ContentText::c_strInSiteSelf);
    Select(m_nSelf);
    EXPECT_SOON(m_disk.People.Boxes.size() == 1);
    EXPECT_EQ(m_line.text(), strPage + u"#b"_s);
    EXPECT_TRUE(html().contains(u"name=\"b\""_s));

    // A file that is no page, and a page that can't be reached.
    Select(m_nDocument);
    EXPECT_TRUE(Shows(Line(m_nDocument, u"讲义.doc"_s))) << m_line.text();
    Select(m_nWeb);
    EXPECT_TRUE(Shows(u"http://127.0.0.1:9/a.htm"_s)) << m_line.text();

    // What has no page gives no link.
    Select(m_nEmpty);
    EXPECT_TRUE(Shows(u"about:blank"_s));
    EXPECT_TRUE(m_tree.isExpanded(m_lines.Find(m_nEmpty)));
    EXPECT_SOON(html().contains(u"不是可以选择内部链接"_s));
    m_disk.People.Expect(ContentText::c_strNoPlaceChosen);
    m_ok.click();
    EXPECT_TRUE(m_dialog.isVisible());

    // Slides: a step in the frame is one of the line, and the link leads to the wrapper.
    Select(m_nSlides);
    const QString strFrame = u"file://"_s + Line(m_nSlides, u"a.files\\frame.htm"_s);
    EXPECT_TRUE(Shows(strFrame + u"#slide0001.htm"_s)) << m_line.text();
    // The outline may come behind the slide.
    EXPECT_SOON(m_browser.ExecuteScript(u"frames[0].document.querySelector('a').click()"_s));
    EXPECT_TRUE(Shows(strFrame + u"#slide0002.htm"_s)) << m_line.text();
    // OK pressed while the line still tells of the page before: the one that was chosen is taken.
    Select(m_nPage);
    m_ok.click();
    EXPECT_SOON(!m_dialog.isVisible());
    EXPECT_TRUE(m_dialog.GetLink().endsWith(u"Content.htm"_s)) << m_dialog.GetLink();
    m_dialog.show();
    Select(m_nSlides);
    EXPECT_TRUE(Shows(strFrame + u"#slide0001.htm"_s)) << m_line.text();
    EXPECT_SOON(m_browser.ExecuteScript(u"frames[0].document.querySelector('a').click()"_s));
    EXPECT_TRUE(Shows(strFrame + u"#slide0002.htm"_s)) << m_line.text();
    m_ok.click();
    EXPECT_FALSE(m_dialog.isVisible());
    EXPECT_EQ(
        InSiteLink::StoredPath(m_dialog.GetLink(), m_disk.pCourse->GetPaths().GetNodeResourceFolder(true)),
        u"n%1\\a.files\\torvaneframe.htm#slide0002.htm"_s.arg(m_nSlides));
}

// The list of places takes the preview where a click on a link would, and follows it.
TEST_F(InSiteLinkDialogTest, ThePlacesOfThePageAreChosenFromAList) {
    Write(m_nPage, u"Content.htm"_s,
          CodePage::Encode(u"<h1 id=\"第一章\">引言</h1><p style=height:3000px><a name=End>结束</a><p>"_s));
    Open();
    auto& places = The<QTreeView>(m_dialog, u"places"_s);
    const auto list = [&] {
        QStringList rows;
        for (int n = 0; n < places.model()->rowCount(); ++n)
            rows.append(places.model()->index(n, 0).data().toString() + u'=' +
                        places.model()->index(n, 1).data().toString());
        return rows.join(u'|');
    };
    const auto shows = [&](qint32 nId, const QString& strWanted) {
        m_tree.setCurrentIndex(m_lines.Find(nId));
        return WaitFor([&] { return list() == strWanted && !m_browser.IsCallRunning(); });
    };
    const auto choose = [&](int nRow) {
        places.setFocus();
        QTest::mouseClick(places.viewport(), Qt::LeftButton, {},
                          places.visualRect(places.model()->index(nRow, 0)).center());
    };
    const auto isAt = [&](const QString& strFragment) {
        QString strUrl;
        return QTest::qWaitFor([&] {
            return m_line.text().endsWith(u"Content.htm"_s + strFragment) && !m_browser.IsCallRunning() &&
                   m_browser.GetURL(strUrl) && strUrl.endsWith(u"Content.htm"_s + strFragment);
        });
    };

    EXPECT_TRUE(shows(m_nPage, u"（整个页面）=|第一章=引言|End=结束"_s)) << list();
    EXPECT_SOON(places.currentIndex().row() == 0);
    choose(2);
    EXPECT_TRUE(isAt(u"#End"_s)) << m_line.text();
    QTest::keyClick(&places, Qt::Key_Up);
    EXPECT_TRUE(isAt(u"#第一章"_s)) << m_line.text();
    choose(0);
    EXPECT_TRUE(isAt(u""_s)) << m_line.text();
    m_browser.ExecuteScript(u"location.hash = 'end'"_s);
    EXPECT_SOON(places.currentIndex().row() == 2) << "whatever its case";

    EXPECT_TRUE(shows(m_nWeb, u""_s));
    EXPECT_FALSE(places.accessibleDescription().isEmpty());
    EXPECT_TRUE(shows(m_nSlides, u"slide0001.htm=一|slide0002.htm=第 2 页"_s)) << list();
    EXPECT_SOON(places.currentIndex().row() == 0);
    choose(1);
    const auto atSecond = [&] { return m_line.text().endsWith(u"frame.htm#slide0002.htm"_s); };
    EXPECT_TRUE(QTest::qWaitFor(atSecond));
    // It is written once more when the frame has told where it stands.
    m_line.clear();
    EXPECT_TRUE(QTest::qWaitFor(atSecond)) << m_line.text();
    EXPECT_EQ(places.currentIndex().row(), 1);

    // A click into the list, and OK at once.
    EXPECT_TRUE(shows(m_nPage, u"（整个页面）=|第一章=引言|End=结束"_s)) << list();
    choose(1);
    EXPECT_TRUE(isAt(u"#第一章"_s)) << m_line.text();
    m_ok.click();
    EXPECT_FALSE(m_dialog.isVisible());
    EXPECT_TRUE(m_dialog.GetLink().endsWith(u"Content.htm#第一章"_s)) << m_dialog.GetLink();

    // Opened for that link, it stands there.
    CInSiteLinkDialog again(m_self, m_disk.People, nullptr, m_dialog.GetLink());
    again.show();
    auto& list2 = *again.findChild<QTreeView*>(u"places"_s);
    EXPECT_SOON(list2.currentIndex().row() == 1);
    EXPECT_TRUE(again.findChild<QLineEdit*>(u"location"_s)->text().endsWith(u"Content.htm#第一章"_s));
}

TEST_F(InSiteLinkDialogTest, AFilmToWhichAPageLeadsIsChosenByAClick) {
    Write(m_nPage, u"Content.htm"_s, "<a href=film.wmv style='position:fixed;inset:0'>film</a>");
    Write(m_nPage, u"Film.wmv"_s, "x");
    Open();
    Select(m_nPage);
    EXPECT_SOON(m_line.text().endsWith(u"Content.htm"_s) && !m_browser.IsCallRunning());
    QWidget* pTarget = m_browser.focusProxy();
    while (pTarget->focusProxy() != nullptr)
        pTarget = pTarget->focusProxy();
    QTest::mouseClick(pTarget, Qt::LeftButton, {}, pTarget->rect().center());
    EXPECT_SOON(m_line.text() == Line(m_nPage, u"Film.wmv"_s)) << m_line.text();
    QString strUrl;
    EXPECT_TRUE(m_browser.GetURL(strUrl) && strUrl.endsWith(u"Content.htm"_s)) << "the page stays";
    m_ok.click();
    EXPECT_EQ(m_dialog.GetLink(), m_disk.Folder.Path(m_disk.NodePath(m_nPage, u"Film.wmv"_s)));
}

TEST_F(InSiteLinkDialogTest, CancelGivesNothing) {
    CBookNode self(*m_disk.pCourse, m_disk.Store().GetNode(m_nSelf));
    WhenDialogOpens([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(AskInSiteLink(self, nullptr), std::nullopt);
}

} // namespace
