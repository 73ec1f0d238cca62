#include "editor/ui/DisplayViews.h"

#include "content/VideoMaker.h"
#include "editor/ui/OfferBar.h"
#include "foundation/Urls.h"
#include "platform/ui/WebBrowser.h"
#include "tests/editor_ui/ViewHarness.h"
#include "tests/support/WindowHelp.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QHelpEvent>
#include <QToolTip>

namespace {

class DisplayViewsTest : public ::testing::Test {
protected:
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
    EXPECT_EQ(The<QLabel>(*pView, u"nodeTitle"_s).text(), u"第一章 <b>"_s);
    auto& list = The<QTreeView>(*pView, u"childrenList"_s);
    const QAbstractItemModel& lines = *list.model();
    ASSERT_EQ(lines.rowCount(), 2);
    EXPECT_EQ(lines.index(0, 1).data().toString(), u"<空栏目>"_s);
    EXPECT_EQ(lines.index(1, 1).data().toString(), u"<目录栏目>"_s);
    EXPECT_FALSE(lines.index(0, 0).data(Qt::DecorationRole).value<QIcon>().isNull());
    const QPoint at = list.visualRect(lines.index(1, 0)).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(The<QLabel>(*pView, u"selectedTitle"_s).text(), u"夹"_s);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(m_world.Host.Selected, QList<qint32>{pFolder->GetId()});
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(m_world.Host.Selected.size(), 2);
    list.keyboardSearch(u"空"_s);
    EXPECT_EQ(list.currentIndex().row(), 0);
    const auto tipOf = [&](const QModelIndex& line) {
        const QPoint place = list.visualRect(line).center();
        QToolTip::hideText();
        QHelpEvent help(QEvent::ToolTip, place, list.viewport()->mapToGlobal(place));
        QApplication::sendEvent(list.viewport(), &help);
        return QToolTip::text();
    };
    EXPECT_EQ(tipOf(lines.index(1, 0)), QString());
    const QString strLong = u"A & <b>"_s + QString(30, u'长');
    pParent->AddChild(strLong);
    pView->ShowNode();
    EXPECT_TRUE(tipOf(lines.index(2, 0)).contains(strLong.toHtmlEscaped()));
    // Who comes by a key sees where she is.
    list.clearFocus();
    list.setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(list.selectionModel()->isSelected(lines.index(0, 0)));
}

TEST_F(DisplayViewsTest, ContentShowsInThePaneAndStopsWhenHidden) {
    const auto pNode = m_world.MakePage(u"页"_s, "<p>shown</p>");
    const std::unique_ptr<CBookShowView> pView(DisplayViews::MakeShowContentView(m_world.Host, nullptr));
    pView->m_pNode = pNode.get();
    ShowOnScreen(*pView);
    pView->ShowNode();
    auto& browser = The<CWebBrowser2Ex>(*pView, u"content"_s);
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

class CMailCatcher : public QObject {
    Q_OBJECT
public:
    Q_INVOKABLE void Take(const QUrl& url) { Urls.append(url.toString(QUrl::FullyEncoded)); }
    QStringList Urls;
};

TEST_F(DisplayViewsTest, WhatAPageOffersDoesNotChangeUnderTheHand) {
    CMailCatcher mails;
    QDesktopServices::setUrlHandler(u"mailto"_s, &mails, "Take");
    QWidget pane;
    CWebBrowser2Ex browser(&pane);
    COfferBar bar(&pane);
    bar.Serve(browser);
    bar.resize(400, bar.height());
    ShowOnScreen(pane);
    const QString strMail = u"mailto:li@example.org?subject=a%26b&Attach=/etc/passwd"_s;
    Q_EMIT browser.NewWindowRequested(strMail, true);
    const QString strText = bar.text();
    EXPECT_TRUE(strText.contains(u"li@example.org"_s));
    Q_EMIT browser.NewWindowRequested(u"http://example.org/"_s, true);
    EXPECT_EQ(bar.text(), strText);
    QTest::mouseClick(&bar, Qt::LeftButton);
    EXPECT_TRUE(bar.isVisible() && mails.Urls.isEmpty()) << "it was meant for what stood there before";
    QTest::qWait(600);
    QTest::mousePress(&bar, Qt::LeftButton);
    Q_EMIT browser.NewWindowRequested(u"http://example.org/"_s, true);
    QTest::mouseRelease(&bar, Qt::LeftButton);
    EXPECT_EQ(mails.Urls, QStringList{u"mailto:li@example.org?subject=a%26b"_s});
    EXPECT_FALSE(bar.isVisible());
    QDesktopServices::unsetUrlHandler(u"mailto"_s);
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
    The<CWebBrowser2Ex>(*pView, u"content"_s).GetURL(strUrl);
    EXPECT_EQ(strUrl, Torvane::File::PathToDocumentUrl(pPage->GetContentPath()) + u"#b"_s);
}

// The program shows no such address, and a view with nothing but a failure would leave the teacher alone.
TEST_F(DisplayViewsTest, AnAddressForAnotherProgramIsNamedAndOffered) {
    CMailCatcher opened;
    const std::unique_ptr<CBookShowView> pView(DisplayViews::MakeShowContentView(m_world.Host, nullptr));
    ShowOnScreen(*pView);
    for (const QString& strUrl :
         {u"ftp://example.org/课.zip"_s, u"news:comp.lang.c"_s, u"telnet://bbs.edu.cn"_s}) {
        const QString strScheme = QUrl(strUrl).scheme();
        QDesktopServices::setUrlHandler(strScheme, &opened, "Take");
        const qint32 nId = m_world.MakePage(u"链接"_s, "")->GetId();
        m_world.Store().SetContent(nId, {NodeType::c_nExternalLink, strUrl, 0, {}, {}});
        CBookNode link(*m_world.pCourse, m_world.Store().GetNode(nId));
        pView->m_pNode = &link;
        pView->ShowNode();
        auto& bar = The<QPushButton>(*pView, u"openOutside"_s);
        EXPECT_EQ(bar.text(), u"用其他程序打开："_s + strUrl);
        QTest::qWait(600);
        QTest::mouseClick(&bar, Qt::LeftButton);
        EXPECT_EQ(opened.Urls.size(), 1) << strUrl;
        EXPECT_TRUE(bar.isVisible());
        opened.Urls.clear();
        QDesktopServices::unsetUrlHandler(strScheme);
    }
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
        EXPECT_TRUE(The<CWebBrowser2Ex>(*pWindow, u"content"_s).GetBrowserBodyInnerHTML(strHtml));
        EXPECT_EQ(strHtml, u"<p>away</p>"_s);
    }
}

/// A node whose content is a file, and a desktop that has a program for it.
class FileViewTest : public DisplayViewsTest {
protected:
    FileViewTest() {
        const CTempFolder& folder = m_world.Folder;
        qputenv("XDG_CONFIG_HOME", folder.Native(u"config"_s).toUtf8());
        qputenv("XDG_DATA_HOME", folder.Native(u"data"_s).toUtf8());
        folder.Write(u"config\\mimeapps.list"_s, "[Default Applications]\napplication/msword=x.desktop\n");
        folder.Write(u"data\\applications\\x.desktop"_s, "[Desktop Entry]\nType=Application\nExec=cp %f \"" +
                                                             folder.Native(u"edited"_s).toUtf8() + "\"\n");
    }
    ~FileViewTest() override {
        qunsetenv("XDG_CONFIG_HOME");
        qunsetenv("XDG_DATA_HOME");
    }
    std::unique_ptr<CBookNode> MakeFile(const QString& strName, qint32 nType = NodeType::c_nExternalFile) {
        const auto pNode = CBookNode::Root(*m_world.pCourse)->AddChild(strName);
        m_world.Folder.Write(CViewWorld::NodePath(pNode->GetId(), strName), "content");
        m_world.Store().SetContent(pNode->GetId(), {nType, u"N%1\\"_s.arg(pNode->GetId()) + strName, 0,
                                                    u"报告 & 附录.doc"_s, u"说明"_s});
        return std::make_unique<CBookNode>(*m_world.pCourse, m_world.Store().GetNode(pNode->GetId()));
    }
};

class CVideos : public IVideoMaker {
public:
    bool bHasTools = true;
    QString CreateVideoNode(CBookNode&, const QString& strFolder) override {
        Torvane::File::CreateFolderPath(strFolder + u"new"_s);
        return u"new"_s;
    }
    bool HasPlayer() const override { return bHasTools; }
    bool HasEncoder() const override { return bHasTools; }
};

TEST_F(FileViewTest, AFileForAnotherProgramOffersWhatCanBeDone) {
    const auto pFile = MakeFile(u"1.doc"_s);
    const auto pVideo = MakeFile(u"2"_s, NodeType::c_nVideo);
    CVideos videos;
    const std::unique_ptr<CBookShowView> pView(
        DisplayViews::MakeToolBtnView(m_world.Host, m_world.People, videos, nullptr));
    const auto show = [&](CBookNode& node) {
        pView->m_pNode = &node;
        pView->ShowNode();
    };
    show(*pFile);
    ShowOnScreen(*pView);
    EXPECT_EQ(The<QLabel>(*pView, u"fileName"_s).text(), u"报告 & 附录.doc"_s);
    auto& toHtml = The<QPushButton>(*pView, u"toHtml"_s);
    EXPECT_TRUE(toHtml.isVisible());
    QTest::mouseClick(&The<QPushButton>(*pView, u"download"_s), Qt::LeftButton);
    EXPECT_EQ(m_world.Host.Last(),
              (CRecordingHost::Shown{EViewKind::ShowContent, pFile->GetId(), ContentCode::c_nDownload}));
    auto& edit = The<QPushButton>(*pView, u"edit"_s);
    QTest::mouseClick(&edit, Qt::LeftButton);
    EXPECT_EQ(m_world.Host.Last(),
              (CRecordingHost::Shown{EViewKind::Prompt, pFile->GetId(), PromptCode::c_nExternalEditor}));
    EXPECT_SOON(m_world.Folder.Read(u"edited"_s) == "content");

    show(*pVideo);
    EXPECT_EQ(The<QLabel>(*pView, u"fileKind"_s).text(), u"视频"_s);
    EXPECT_EQ(The<QLabel>(*pView, u"fileName"_s).text(), u"报告 & 附录.doc"_s);
    EXPECT_FALSE(toHtml.isVisible());
    // What stands in the way is said, and the card comes back.
    const CRecordingHost::Shown card{EViewKind::ToolButtons, pVideo->GetId(), 0};
    videos.bHasTools = false;
    m_world.People.Expect(u"系统检测到您的计算机没有安装Windows Media Player 9, 无法预览视频。"_s);
    QTest::mouseClick(&The<QPushButton>(*pView, u"download"_s), Qt::LeftButton);
    m_world.People.Expect(u"系统检测到您的计算机没有安装Windows Media Encoder 9, 无法启动视频制作工具。\n "
                          "请您安装后再次运行。"_s);
    // The letter is the menu's, too; in the view it is the button's.
    QTest::keyClick(&The<QWidget>(*pView, u"fileComment"_s), Qt::Key_E, Qt::AltModifier);
    EXPECT_EQ(m_world.Host.Last(), card);
    videos.bHasTools = true;
    QTest::mouseClick(&The<QPushButton>(*pView, u"download"_s), Qt::LeftButton);
    EXPECT_EQ(m_world.Host.Last(), (CRecordingHost::Shown{EViewKind::VideoPreview, pVideo->GetId(), 0}));
    QTest::mouseClick(&edit, Qt::LeftButton);
    EXPECT_EQ(m_world.Host.Last(), card);
    EXPECT_EQ(m_world.Host.Views.at(m_world.Host.Views.size() - 2).nParam, PromptCode::c_nRecorder);
    EXPECT_EQ(pVideo->GetContentPath(), m_world.Folder.Path(CViewWorld::NodePath(pVideo->GetId(), u"new"_s)));
}

// No browser shows the file: it is saved, and the pane goes back to what else can be done; likewise behind
// the external editor's "refresh", where nobody asked to save.
TEST_F(FileViewTest, ADownloadSavesAndGoesBack) {
    const auto pFile = MakeFile(u"1.doc"_s);
    const std::unique_ptr<CBookShowView> pView(DisplayViews::MakeShowContentView(m_world.Host, nullptr));
    pView->m_pNode = pFile.get();
    const QString strTarget = m_world.Folder.Native(u"下载.doc"_s);
    pView->m_pViewParam = ContentCode::c_nDownload;
    WhenDialogOpens([&](QDialog& dialog) {
        auto& picker = dynamic_cast<QFileDialog&>(dialog);
        EXPECT_TRUE(picker.selectedFiles().value(0).endsWith(u"/报告 & 附录.doc"_s));
        auto* pField = picker.findChild<QLineEdit*>();
        pField->setText(strTarget);
        QTest::keyClick(pField, Qt::Key_Return);
    });
    pView->ShowNode();
    EXPECT_EQ(m_world.Folder.Read(u"下载.doc"_s), "content");
    const CRecordingHost::Shown card{EViewKind::ToolButtons, pFile->GetId(), 0};
    EXPECT_EQ(m_world.Host.Last(), card);
    pView->m_pViewParam = 0;
    pView->ShowNode();
    EXPECT_EQ(m_world.Host.Views, (std::vector{card, card}));
    // A film plays here, and is saved from here.
    const auto pFilm = MakeFile(u"2.mp4"_s);
    pView->m_pNode = pFilm.get();
    ShowOnScreen(*pView);
    pView->ShowNode();
    EXPECT_EQ(m_world.Host.Views.size(), 2U);
    WhenDialogOpens([&](QDialog& dialog) {
        auto* pField = dialog.findChild<QLineEdit*>();
        pField->setText(m_world.Folder.Native(u"课.mp4"_s));
        QTest::keyClick(pField, Qt::Key_Return);
    });
    QTest::mouseClick(&The<QPushButton>(*pView, u"mediaSave"_s), Qt::LeftButton);
    EXPECT_EQ(m_world.Folder.Read(u"课.mp4"_s), "content");
}

} // namespace

#include "DisplayViewsTest.moc"
