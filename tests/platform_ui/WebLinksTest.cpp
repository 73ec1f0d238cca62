#include "tests/platform_ui/WebFixture.h"

#include "foundation/CodePage.h"
#include "foundation/Urls.h"

#include <QEventLoop>

namespace {

/// Pages of a course that link to one another as the rules say: in lower case and without escapes.
class CWebLinks : public CWebTest {
protected:
    CWebLinks() {
        const QString strFar = u"<p style='height:3000px'></p>"_s;
        const QString strHtml = u"<!DOCTYPE html><a href='#chapterone'>上</a>"_s + strFar +
                                u"<a name='ChapterOne'>一</a>"_s + strFar + u"<h2 id='第二节 A'>二</h2>"_s +
                                strFar;
        for (const QString& strName :
             {u"Content.htm"_s, u"C#?.htm"_s, u"a%20b.htm"_s, u"100%.htm"_s, u"章.htm"_s})
            m_folder.Write(u"course\\N13\\"_s + strName, CodePage::Encode(strHtml));
    }
    /// A page with one link, which is clicked.
    void Follow(const QString& strLink, bool bEditing = false) {
        m_browser->SetFollowsLinks(bEditing);
        const QString strHtml = u"<a style='position:fixed;left:0;top:0;width:640px;height:480px' href=\""_s +
                                strLink + u"\">link</a>"_s;
        ASSERT_TRUE(Show(u"course\\N7\\Content.htm"_s, CodePage::Encode(strHtml), bEditing));
        Click();
    }
    /// As a person does; in the middle of the surface.
    void Click() {
        QWidget* pTarget = m_browser->focusProxy();
        while (pTarget->focusProxy() != nullptr)
            pTarget = pTarget->focusProxy();
        QTest::mouseClick(pTarget, Qt::LeftButton, {}, QPoint(300, 200));
    }
    bool Reaches(const QString& strName, const QString& strFragment) {
        const QString strWanted =
            Torvane::File::PathToDocumentUrl(m_folder.Path(u"course\\N13\\"_s + strName)) + strFragment;
        // The engine's steps run one by one in an event loop, which a wait of the test library lets sleep
        // between them.
        QEventLoop loop;
        QTimer look, end;
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (Url() == strWanted)
                loop.exit(1);
        });
        QObject::connect(&end, &QTimer::timeout, &loop, [&] { loop.exit(0); });
        look.start(10);
        end.start(10000);
        return loop.exec() == 1;
    }
    /// Whether the element stands at the upper edge of the surface.
    bool IsAt(const QString& strSelector) {
        return QTest::qWaitFor(
            [&] {
                m_browser->ExecuteScript(
                    u"document.querySelector('p').title = Math.abs(document.querySelector(\""_s +
                    strSelector + u"\").getBoundingClientRect().top) < 2"_s);
                // A page that is just coming doesn't answer.
                QString strHtml;
                return m_browser->GetBrowserBodyInnerHTML(strHtml) && strHtml.contains(u"title=\"true\""_s);
            },
            3000);
    }
};

TEST_F(CWebLinks, LeadToPageAndPlaceWhateverTheirLetterCase) {
    const struct {
        QString strLink, strName, strFragment, strPlace;
    } cases[] = {
        {u"../n13/content.htm#chapterone"_s, u"Content.htm"_s, u"#chapterone"_s, u"a[name]"_s},
        {u"../n13/content.htm#第二节 a"_s, u"Content.htm"_s, u"#第二节 a"_s, u"h2"_s},
        {u"../N13/Content.htm#%E7%AC%AC%E4%BA%8C%E8%8A%82%20A"_s, u"Content.htm"_s, u"#第二节 A"_s, u"h2"_s},
        {u"../n13/c#?.htm#chapterone"_s, u"C#?.htm"_s, u"#chapterone"_s, u"a[name]"_s},
        {u"../n13/100%.htm#chapterone"_s, u"100%.htm"_s, u"#chapterone"_s, u"a[name]"_s},
        {u"../n13/%D5%C2.htm#chapterone"_s, u"章.htm"_s, u"#chapterone"_s, u"a[name]"_s},
        {u"../n13/a%20b.htm#chapterone"_s, u"a%20b.htm"_s, u"#chapterone"_s, u"a[name]"_s},
    };
    for (const auto& c : cases) {
        Follow(c.strLink);
        EXPECT_TRUE(Reaches(c.strName, c.strFragment)) << c.strLink << " led to " << Url();
        EXPECT_TRUE(IsAt(c.strPlace)) << c.strLink << Html();
    }
    // Bytes of the code page, which the engine would not understand.
    Follow(u"../n13/content.htm#%B5%DA%B6%FE%BD%DA%20A"_s);
    EXPECT_TRUE(IsAt(u"h2"_s));
}

TEST_F(CWebLinks, LeadOnInAFrameToo) {
    const QString strFrame =
        u"<meta charset=utf-8><iframe style='position:fixed;left:0;top:0;width:640px;height:480px' src=\"%1\">"_s;
    m_folder.Write(u"course\\N13\\green #1.htm"_s, "<body style='background:#00ff00'>");
    m_folder.Write(u"course\\N7\\in.htm"_s,
                   "<a style='position:fixed;left:0;top:0;width:640px;height:480px;background:#ff0000' "
                   "href='../n13/GREEN #1.htm#top'>link</a>");
    ASSERT_TRUE(Show(u"course\\N7\\Content.htm"_s, strFrame.arg(u"in.htm"_s).toUtf8(), false));
    ASSERT_SOON(ColourShows(Qt::red));
    Click();
    EXPECT_SOON(ColourShows(Qt::green)) << "by a click";
    ASSERT_TRUE(Show(u"course\\N7\\Content.htm"_s, strFrame.arg(u"../n13/green #1.htm"_s).toUtf8(), false));
    EXPECT_SOON(ColourShows(Qt::green)) << "from the beginning";
}

// Neither the engine nor the desktop says what such a file is before it is opened.
TEST_F(CWebLinks, AFileOfAnUnknownKindIsLeftToTheProgram) {
    QSignalSpy wanted(m_browser.get(), &CWebBrowser2Ex::NewWindowRequested);
    QSignalSpy notShown(m_browser.get(), &CWebBrowser2Ex::FileNotShown);
    m_folder.Write(u"course\\N13\\a.gsp"_s, QByteArray::fromHex("00ff01fe02fd"));
    Follow(u"../n13/a.gsp"_s);
    ASSERT_SOON(!wanted.isEmpty());
    EXPECT_TRUE(wanted.first().first().toString().endsWith(u"/N13/a.gsp"_s));
    EXPECT_TRUE(wanted.first().value(1).toBool()) << "by the person";
    EXPECT_FALSE(m_browser->NavigateAndWait(m_folder.Path(u"course\\N13\\a.gsp"_s)));
    EXPECT_SOON(!notShown.isEmpty());
    EXPECT_EQ(wanted.size(), 1);
}

TEST_F(CWebLinks, APlaceIsSteppedToByItsName) {
    ASSERT_TRUE(Show(u"course\\N7\\Content.htm"_s, "<p>", false));
    ASSERT_TRUE(m_browser->NavigateAndWait(m_folder.Path(u"course\\N13\\Content.htm"_s)));
    EXPECT_TRUE(m_browser->GoTo(u"第二节 A"_s));
    EXPECT_TRUE(Reaches(u"Content.htm"_s, u"#第二节 A"_s)) << Url();
    EXPECT_TRUE(IsAt(u"h2"_s));
    EXPECT_TRUE(m_browser->ExecuteScript(u"scrollTo(0, 0); document.querySelector('a').click()"_s));
    EXPECT_TRUE(IsAt(u"a[name]"_s)) << "within the page";
    EXPECT_TRUE(m_browser->ExecuteScript(u"scrollTo(0, 0); document.querySelector('a').click()"_s));
    EXPECT_TRUE(IsAt(u"a[name]"_s)) << "and once more";
}

TEST_F(CWebLinks, WhatAPageCannotShowIsToldOf) {
    QSignalSpy wanted(m_browser.get(), &CWebBrowser2Ex::NewWindowRequested);
    QSignalSpy missing(m_browser.get(), &CWebBrowser2Ex::LinkMissing);
    const QString strPage = Torvane::File::PathToDocumentUrl(m_folder.Path(u"course\\N7\\Content.htm"_s));
    for (const QString& strLink : {u"mailto:li@example.org"_s, u"http://example.org/"_s}) {
        Follow(strLink);
        ASSERT_SOON(!wanted.isEmpty()) << strLink;
        EXPECT_EQ(wanted.takeLast().first().toString(), strLink);
        EXPECT_EQ(Url(), strPage);
    }
    for (const QString& strLink : {u"gone.htm#a"_s, u"../n13"_s}) {
        Follow(strLink);
        EXPECT_SOON(!missing.isEmpty()) << strLink;
        missing.clear();
        EXPECT_EQ(Url(), strPage);
    }
    EXPECT_TRUE(wanted.isEmpty());
}

TEST_F(CWebLinks, AreFollowedInThePreviewOfAnEditedPageAndNotWhileItIsEdited) {
    Follow(u"../n13/content.htm#chapterone"_s, true);
    EXPECT_TRUE(Reaches(u"Content.htm"_s, u"#chapterone"_s)) << Url();
    m_browser->SetFollowsLinks(false);
    ASSERT_TRUE(Show(u"course\\N7\\Content.htm"_s,
                     "<a style='position:fixed;width:640px;height:480px' "
                     "href=../n13/content.htm>link</a>",
                     true));
    const QString strUrl = Url();
    Click();
    // A link that is followed, and was clicked later, tells when this one would have led on.
    auto edited = std::exchange(m_browser, std::make_unique<CWebBrowser2Ex>());
    Follow(u"../n13/content.htm"_s, true);
    EXPECT_TRUE(Reaches(u"Content.htm"_s, QString())) << Url();
    m_browser = std::move(edited);
    EXPECT_EQ(Url(), strUrl);
}

} // namespace
