#pragma once

#include "platform/ui/WebBrowser.h"
#include "tests/support/WindowHelp.h"

/// A surface in a window of its own, and a course folder with pages.
class CWebTest : public ::testing::Test {
protected:
    bool Show(const QString& strBelow, const QByteArray& html, bool bEditing) {
        m_folder.Write(strBelow, html);
        m_browser->resize(640, 480);
        m_browser->show();
        m_browser->activateWindow();
        m_browser->setFocus();
        if (!QTest::qWaitForWindowActive(m_browser.get()))
            return false;
        m_browser->SetAllowedFolders({m_folder.Path(u"course"_s)}, bEditing);
        return m_browser->NavigateAndWait(m_folder.Path(strBelow));
    }
    /// A page of the course as the editor opens it.
    void Edit(const QByteArray& html) {
        ASSERT_TRUE(Show(u"course\\N5\\Content.htm"_s, html, true));
        ASSERT_TRUE(m_browser->SetBrowserDesignMode(true));
    }
    QString Html() {
        QString strHtml = u"<no answer>"_s;
        EXPECT_TRUE(m_browser->GetBrowserBodyInnerHTML(strHtml));
        return strHtml;
    }
    /// Without a page, or with one that doesn't answer, what the caller has is kept.
    void ExpectNoText() {
        QString strHtml = u"kept"_s;
        EXPECT_FALSE(m_browser->GetBrowserBodyInnerHTML(strHtml));
        EXPECT_EQ(strHtml, u"kept"_s);
    }
    void SetHtml(const QString& strHtml) { ASSERT_TRUE(m_browser->SetBrowserBodyInnerHTML(strHtml)); }
    QString Url() {
        QString strUrl;
        EXPECT_TRUE(m_browser->GetURL(strUrl));
        return strUrl;
    }
    /// What the surface says in place of a page.
    QString Note() const {
        const auto* pNote = m_browser->findChild<QLabel*>(u"webNote"_s);
        return pNote != nullptr && pNote->isVisible() ? pNote->text() : QString();
    }
    void Command(const QString& strName, const QVariant& value = {}) {
        EXPECT_TRUE(m_browser->ExecuteIHTMLDocumentCmd(strName, false, value)) << strName;
    }
    CWebBrowser2Ex::SCaretState AtCaret() {
        std::optional<CWebBrowser2Ex::SCaretState> state;
        m_browser->AskCaretState({u"bold"_s, u"underline"_s}, [&](const auto& answer) { state = answer; });
        EXPECT_SOON(state.has_value());
        return state.value_or(CWebBrowser2Ex::SCaretState());
    }
    /// Whether the colour is to be seen on the screen, in a patch that no letter makes.
    bool ColourShows(const QColor& colour) {
        const QImage image = m_browser->screen()->grabWindow(m_browser->winId()).toImage();
        int nFound = 0;
        for (int y = 0; y < image.height(); y += 4) {
            for (int x = 0; x < image.width(); x += 4)
                nFound += image.pixelColor(x, y) == colour ? 1 : 0;
        }
        return nFound > 50;
    }
    void WritePicture(const QString& strBelow, const QColor& colour) {
        m_folder.Write(strBelow, "");
        QImage image(100, 100, QImage::Format_RGB32);
        image.fill(colour);
        ASSERT_TRUE(image.save(m_folder.Native(strBelow), "PNG"));
    }

    CTempFolder m_folder;
    std::unique_ptr<CWebBrowser2Ex> m_browser = std::make_unique<CWebBrowser2Ex>();
};
