// The same hostile page in every surface of the program.
#include "content/ui/InSiteLinkDialog.h"
#include "editor/ui/ContentWindow.h"
#include "editor/ui/DisplayViews.h"
#include "tests/editor_ui/EditorFixture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>

namespace {

/// %1 is the URL of a folder outside the course, %2 that of a server.
const QString c_strHostile = QString::fromUtf8(ReadTestFile(VOREL_EDITOR_TESTS "/hostile_page.htm"));

class SurfaceAttacksTest : public CEditorFixture {
protected:
    SurfaceAttacksTest() {
        const QString strOut = QUrl::fromLocalFile(m_world.Folder.Native(u"outside"_s)).toString() + u'/';
        m_world.Folder.Write(u"outside\\out.htm"_s, "<body style='background:#ff00ff'>SECRET");
        m_world.Folder.Write(u"outside\\out.png"_s, "");
        QImage picture(9, 9, QImage::Format_RGB32);
        picture.fill(Qt::blue);
        EXPECT_TRUE(picture.save(m_world.Folder.Native(u"outside\\out.png"_s)));
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] { ++m_nCalls; });
        Open("<p>first</p>");
        m_world.Folder.Write(PageFile(u"inside.htm"_s), "<body style='background:#00ff00'>INSIDE");
        const QString strServer = u"http://127.0.0.1:%1/"_s.arg(m_server.serverPort());
        m_world.Folder.Write(PageFile(), c_strHostile.arg(strOut, strServer).toUtf8());
    }
    static bool ColourShows(const QWidget& widget, QRgb colour) {
        const QImage image = widget.screen()->grabWindow(widget.window()->winId()).toImage();
        int nFound = 0;
        for (int y = 0; y < image.height(); y += 4) {
            for (int x = 0; x < image.width(); x += 4)
                nFound += (image.pixel(x, y) & 0xffffff) == (colour & 0xffffff) ? 1 : 0;
        }
        return nFound > 50;
    }
    /// What became of the page in a surface: bScripts says whether its script may run.
    void Expect(const char* szSurface, CWebBrowser2Ex& browser, bool bScripts) {
        const auto got = [&] {
            QString strHtml;
            browser.GetBrowserBodyInnerHTML(strHtml);
            const QString strOut = strHtml.section(u"id=\"out\">"_s, 1).section(u"</pre>"_s, 0, 0);
            return QJsonDocument::fromJson(strOut.toUtf8()).object();
        };
        const auto nWindows = VisibleWindows();
        // The frame of the course beside the one of outside shows in every surface.
        EXPECT_SOON(ColourShows(browser, 0x00ff00)) << szSurface;
        EXPECT_EQ(QTest::qWaitFor([&] { return !got().isEmpty(); }, bScripts ? 10000 : 1000), bScripts)
            << szSurface;
        const QJsonObject outcome = got();
        EXPECT_EQ(outcome[u"inside"_s].toString().contains(u"INSIDE"_s), bScripts) << szSurface;
        const auto failed = [&](const QString& strTry) { return outcome[strTry].toString().isEmpty(); };
        // Each try, and whether it was kept in. The engine gives the page a window that is none.
        const std::pair<const char*, bool> tries[] = {
            {"fetch", failed(u"fetch"_s)},
            {"frame", !ColourShows(browser, 0xff00ff)},
            {"picture", failed(u"picture"_s)},
            {"open", VisibleWindows() == nWindows},
            {"close", browser.isVisible()},
            {"boxes", QApplication::activeModalWidget() == nullptr || browser.window()->isModal()},
            {"sending", std::exchange(m_nCalls, 0) == 0}};
        for (const auto& [szTry, bKeptIn] : tries)
            EXPECT_TRUE(bKeptIn) << szTry << ", " << szSurface;
    }
    static qsizetype VisibleWindows() {
        const QWidgetList windows = QApplication::topLevelWidgets();
        return std::count_if(windows.begin(), windows.end(), [](const QWidget* p) { return p->isVisible(); });
    }

    QTcpServer m_server;
    int m_nCalls = 0;
};

} // namespace

TEST_F(SurfaceAttacksTest, NoSurfaceGivesWay) {
    m_view.ShowNode();
    Expect("design", Surface("design"), false);
    Tab(c_nPreview);
    Expect("editor's preview", Surface("preview"), false);
    m_view.hide();

    const std::unique_ptr<CBookShowView> pView(DisplayViews::MakeShowContentView(m_world.Host, nullptr));
    pView->m_pNode = m_pNode.get();
    ShowOnScreen(*pView);
    pView->ShowNode();
    Expect("content view", *pView->findChild<CWebBrowser2Ex*>(u"content"_s), true);

    const QStringList folders = {m_world.pCourse->GetPaths().GetCourseFolder(false)};
    CContentWindow::Open({u"x"_s, {}}, m_pNode->GetContentPath(), folders, false,
                         DisplayRules::EWindowForm::Normal, pView.get());
    auto* pWindow = pView->findChild<CContentWindow*>();
    ASSERT_NE(pWindow, nullptr);
    Expect("content window", *pWindow->findChild<CWebBrowser2Ex*>(u"content"_s), true);
    pWindow->close();
    pView->hide();

    const auto pSelf = m_world.MakePage(u"self"_s, "<p>self</p>");
    CInSiteLinkDialog dialog(*pSelf, m_world.People, nullptr);
    ShowOnScreen(dialog);
    auto& tree = *dialog.findChild<QTreeView*>(u"nodes"_s);
    tree.setCurrentIndex(static_cast<CBookTree&>(*tree.model()).Find(m_pNode->GetId()));
    Expect("link dialog", *dialog.findChild<CWebBrowser2Ex*>(u"preview"_s), true);
}
