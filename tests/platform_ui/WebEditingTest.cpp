#include "tests/platform_ui/WebFixture.h"

#include "foundation/CodePage.h"
#include "foundation/Paths.h"
#include "foundation/Urls.h"
#include "platform/ui/PastedData.h"
#include "platform/ui/SurfaceUrls.h"
#include "tests/support/WindowHelp.h"

using CWebEditing = CWebTest;

// A page that is misread would be saved misread. Short texts are where the engine's own guess goes wrong.
TEST_F(CWebEditing, PagesAreReadInTheCodePageAndTextStandsAsItIs) {
    for (const QString& strText : {u"中文"_s, u"第一章 绪论"_s, u"ｶﾅ、片仮名"_s, u"€20"_s, u"𠀀㐀"_s,
                                   u"镕镕镕镕"_s, u"北京大学计算机系的课程网站，欢迎您。"_s}) {
        const QString strHtml = u"<p>"_s + strText + u"</p>"_s;
        Edit(CodePage::Encode(strHtml));
        EXPECT_EQ(Html(), strHtml);
    }
    Edit("<meta charset=utf-8><p>\xE4\xB8\xAD</p>");
    EXPECT_TRUE(Html().contains(u"中"_s)) << "a page that says otherwise";
    for (const QString& strHtml : {u"<p align=\"center\">中文 &amp; <b>b</b>€𠀀</p>\n<hr>"_s, QString()}) {
        SetHtml(strHtml);
        EXPECT_EQ(Html(), strHtml);
    }
}

TEST_F(CWebEditing, WhatIsCutIsPasted) {
    Edit("<p>abc</p>");
    Command(u"SelectAll"_s);
    Command(u"Cut"_s);
    EXPECT_SOON(QApplication::clipboard()->text() == u"abc"_s);
    EXPECT_FALSE(Html().contains(u"abc"_s));
    // The surface itself pastes nothing: it tells.
    QObject::connect(m_browser.get(), &CWebBrowser2Ex::PasteWanted, [this](const SPastedData& pasted) {
        EXPECT_EQ(m_browser->PasteBrowserText(pasted.strText), CWebBrowser2Ex::EPasted::Yes);
    });
    Command(u"Paste"_s);
    EXPECT_SOON(Html().contains(u"abc"_s));
}

TEST_F(CWebEditing, SelectionIsTold) {
    Edit("<p>a&lt;b <i>c</i></p>");
    EXPECT_FALSE(m_browser->HasSelection());
    QString strText;
    EXPECT_FALSE(m_browser->GetSelectedText(strText));
    // Who is told may ask the page at once, so it isn't told while a call runs.
    int nTold = 0;
    QObject::connect(m_browser.get(), &CWebBrowser2Ex::SelectionChanged, [&] {
        ++nTold;
        EXPECT_TRUE(m_browser->HasSelection());
    });
    Command(u"SelectAll"_s);
    Command(u"bold"_s);
    QElapsedTimer busy;
    for (busy.start(); busy.elapsed() < 400;)
        EXPECT_TRUE(m_browser->HasSelection());
    EXPECT_SOON(nTold > 0);
    EXPECT_EQ(AtCaret().Pressed, QStringList{u"bold"_s});
    EXPECT_TRUE(m_browser->GetSelectedText(strText));
    EXPECT_TRUE(strText.contains(u"a&lt;b <i>c</i>"_s)) << strText;
}

TEST_F(CWebEditing, TheFontIsToldUnlessThereAreSeveral) {
    Edit("");
    const std::tuple<QString, QString, QString> rows[] = {
        {u"<p style=\"font-family:'Times New Roman',serif\"><font size=\"5\">a<b>b</b></font></p>"_s,
         u"Times New Roman"_s, u"5"_s},
        {u"<p><font face=\"楷体_GB2312\">a</font> <font face=\"黑体\">b</font></p>"_s, QString(), u"3"_s},
        {u"<p><font face=\"黑体\">a<font size=\"7\">b</font></font></p>"_s, u"黑体"_s, QString()},
    };
    for (const auto& [strHtml, strFont, strSize] : rows) {
        SetHtml(strHtml);
        Command(u"SelectAll"_s);
        EXPECT_EQ(AtCaret().strFont, strFont) << strHtml;
        EXPECT_EQ(AtCaret().strSize, strSize) << strHtml;
    }
    // What is chosen for the next letter counts before it is typed.
    Command(u"UnSelect"_s);
    Command(u"fontname"_s, u"隶书"_s);
    EXPECT_EQ(AtCaret().strFont, u"隶书"_s);
}

TEST_F(CWebEditing, TabGoesThroughCellsAndLevels) {
    Edit("");
    const auto press = [](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    };
    const auto expect = [this](const QString& strHtml) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return Html() == strHtml; }, 2000)) << Html();
    };
    SetHtml(u"<table><tbody><tr><td>a</td><td>b</td></tr></tbody></table>"_s);
    press(Qt::Key_Right);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_X);
    press(Qt::Key_Tab, Qt::ShiftModifier);
    press(Qt::Key_Y);
    expect(
        u"<table><tbody><tr><td>a</td><td>y</td></tr><tr><td>x</td><td>&nbsp;</td></tr></tbody></table>"_s);
    SetHtml(u"<ul><li>a</li><li>b</li></ul>"_s);
    Command(u"SelectAll"_s);
    Command(u"UnSelect"_s);
    press(Qt::Key_Tab);
    expect(u"<ul><li>a</li><ul><li>b</li></ul></ul>"_s);
    press(Qt::Key_Tab, Qt::ShiftModifier);
    expect(u"<ul><li>a</li><li>b</li></ul>"_s);
}

TEST_F(CWebEditing, ALocalPictureShowsAndIsFoundInTheText) {
    const QColor colour(10, 200, 30);
    WritePicture(u"else\\图 片 100%#1.png"_s, colour);
    m_browser->show();
    const WId nWindow = m_browser->winId();
    Edit("<p>left<a name=n>-</a><a href='file:///tmp/%41.htm#a'>x</a><a href='http://h/a b'>w</a><a "
         "href=v>v</a></p>");
    EXPECT_EQ(m_browser->winId(), nWindow) << "made anew: the keyboard and the place are lost";
    const QString strPath = m_folder.Path(u"else\\图 片 100%#1.png"_s);
    ASSERT_TRUE(m_browser->InsertBrowserText(u"<img src =\""_s + strPath + u"\">"_s));
    EXPECT_SOON(ColourShows(colour));
    QStringList images;
    ASSERT_TRUE(m_browser->GetAllImageSrc(images));
    ASSERT_EQ(images.size(), 1);
    EXPECT_TRUE(Torvane::File::IsFile(Torvane::File::FileUrlToPath(images[0]))) << images[0];
    QStringList links;
    ASSERT_TRUE(m_browser->GetAllAnchorHref(links));
    const QString strPage = SurfaceUrls::PathToReference(m_folder.Path(u"course\\N5\\"_s));
    EXPECT_EQ(links, (QStringList{u"file:///Z:/tmp/A.htm#a"_s, u"http://h/a b"_s, strPage + u"v"_s}));
    // As a save does it: the address in the text gives way to the place in the course.
    WritePicture(u"course\\N5\\res\\1.png"_s, Qt::red);
    SetHtml(Html().replace(images[0], u"res/1.png"_s));
    EXPECT_TRUE(Html().startsWith(u"<p><img src=\"res/1.png\">left<a name"_s)) << Html();
    EXPECT_SOON(ColourShows(Qt::red));
}

TEST_F(CWebEditing, CreateLinkAsksForTheAddress) {
    Edit("<p>abc</p>");
    Command(u"SelectAll"_s);
    const auto answer = [this](const QString& strAddress, const char* szButton) {
        WhenDialogOpens([=](QDialog& dialog) {
            dialog.findChild<QLineEdit*>()->setText(strAddress);
            dialog.findChild<QPushButton*>(QLatin1String(szButton))->click();
        });
        return m_browser->ExecuteIHTMLDocumentCmd(u"CreateLink"_s, true, {});
    };
    EXPECT_FALSE(answer(u"http://h/"_s, "cancel"));
    EXPECT_EQ(Html(), u"<p>abc</p>"_s);
    EXPECT_TRUE(answer(u"/tmp/图.htm"_s, "ok"));
    EXPECT_EQ(Html(), u"<p><a href=\"file:///Z:/tmp/图.htm\">abc</a></p>"_s);
}
