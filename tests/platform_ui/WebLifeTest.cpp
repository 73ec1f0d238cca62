#include "tests/platform_ui/WebFixture.h"

using CWebLife = CWebTest;

TEST_F(CWebLife, BeforeTheFirstPageThereIsNoEngine) {
    EXPECT_EQ(Url(), u"about:blank"_s);
    EXPECT_TRUE(m_browser->NavigateAndWait(u"about:blank"_s));
    EXPECT_TRUE(m_browser->SetBrowserDesignMode(false));
    EXPECT_FALSE(m_browser->SetBrowserDesignMode(true));
    EXPECT_FALSE(m_browser->InsertBrowserText(u"x"_s));
    ExpectNoText();
    EXPECT_EQ(m_browser->findChild<QWidget*>(u"webView"_s), nullptr);
    // A text of the program's own needs no page.
    SetHtml(u"<p>没有内容</p>"_s);
    EXPECT_EQ(Html(), u"<p>没有内容</p>"_s);
    EXPECT_EQ(Url(), u"about:blank"_s);
}

TEST_F(CWebLife, WhatCannotBeShownLeavesNoPage) {
    ASSERT_TRUE(Show(u"course\\N5\\课 件.htm"_s, "<p>work</p><a name=a></a>", true));
    EXPECT_EQ(Url(), u"file://"_s + m_folder.Path(u"course\\N5\\课 件.htm"_s));
    EXPECT_TRUE(m_browser->NavigateAndWait(Url() + u"#a"_s)) << "a place in the page that shows";
    EXPECT_TRUE(Url().endsWith(u"\\课 件.htm#a"_s)) << Url();
    m_folder.Write(u"course\\a.zip"_s, "PK\3\4");
    for (const QString& strTarget :
         {m_folder.Path(u"none.htm"_s), m_folder.Path(u"course"_s), QString(), u"http://127.0.0.1:1/"_s,
          u"C:\\x.htm"_s, m_folder.Path(u"course\\a.zip"_s)}) {
        EXPECT_FALSE(m_browser->NavigateAndWait(strTarget)) << strTarget;
        EXPECT_EQ(Url(), u"about:blank"_s);
        EXPECT_FALSE(m_browser->SetBrowserDesignMode(true)) << "the message could be edited and saved";
        ExpectNoText();
    }
}

TEST_F(CWebLife, AScriptWithoutEndIsGivenUpAndTheNextPageShows) {
    ASSERT_TRUE(Show(u"course\\a.htm"_s, "<p>a</p>", false));
    EXPECT_TRUE(m_browser->ExecuteScript(u"javascript:document.body.title='t'"_s));
    EXPECT_TRUE(m_browser->ExecuteScript(u"undefined"_s));
    EXPECT_FALSE(m_browser->ExecuteScript(u"javascript: nothing.there"_s));
    EXPECT_FALSE(m_browser->ExecuteScript(u"javascript: for(;;){}"_s));
    ExpectNoText();
    EXPECT_TRUE(m_browser->NavigateAndWait(m_folder.Path(u"course\\a.htm"_s)));
    EXPECT_EQ(Html(), u"<p>a</p>"_s);
}

TEST_F(CWebLife, WhileOneCallRunsAnotherIsRefused) {
    ASSERT_TRUE(Show(u"course\\a.htm"_s, "<p>a</p>", false));
    bool bRan = false;
    QTimer::singleShot(0, [&] {
        bRan = true;
        EXPECT_TRUE(CWebBrowser2Ex::IsCallRunning());
        ExpectNoText();
        EXPECT_FALSE(CWebBrowser2Ex().NavigateAndWait(m_folder.Path(u"course\\a.htm"_s)));
    });
    EXPECT_TRUE(m_browser->NavigateAndWait(m_folder.Path(u"course\\a.htm"_s)));
    EXPECT_TRUE(bRan);
    EXPECT_FALSE(CWebBrowser2Ex::IsCallRunning());
}

TEST_F(CWebLife, TheSurfaceMayGoDuringACall) {
    for (int nTry = 0; nTry < 3; ++nTry) {
        m_browser = std::make_unique<CWebBrowser2Ex>();
        ASSERT_TRUE(Show(u"course\\a.htm"_s, "<p>a</p>", nTry == 1));
        QTimer::singleShot(0, [this] { m_browser.reset(); });
        CWebBrowser2Ex& browser = *m_browser;
        QString strHtml;
        EXPECT_FALSE(nTry == 0 ? browser.ExecuteScript(u"javascript: for(;;){}"_s)
                               : browser.NavigateAndWait(m_folder.Path(u"course\\a.htm"_s)));
        EXPECT_EQ(m_browser, nullptr);
        EXPECT_FALSE(CWebBrowser2Ex::IsCallRunning());
    }
}
