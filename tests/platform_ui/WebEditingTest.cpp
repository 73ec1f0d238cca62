#include "tests/platform_ui/WebFixture.h"

#include "foundation/CodePage.h"
#include "foundation/Paths.h"
#include "platform/ui/SurfaceUrls.h"
#include "tests/support/WindowHelp.h"

#include <QClipboard>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

class CWebEditing : public CWebTest {
protected:
    /// What stands before a relative reference of the page once it is resolved.
    QString SurfacePath() const { return SurfaceUrls::PathToReference(m_folder.Path(u"course\\N5\\"_s)); }
};

TEST_F(CWebEditing, TextGoesInAndOutAsItStands) {
    Edit("<p>old</p>");
    const QString strHtml = u"<p align=\"center\">中文 &amp; <b>bold</b>€𠀀</p>\n"
                            "<table border=\"1\"><tbody><tr><td>&nbsp;</td></tr></tbody></table>"_s;
    SetHtml(strHtml);
    EXPECT_EQ(Html(), strHtml);
    SetHtml(QString());
    EXPECT_EQ(Html(), QString());
}

// A page that is misread would be saved misread. Short texts are where the engine's own guess goes wrong.
TEST_F(CWebEditing, PagesAreReadInTheCodePage) {
    for (const QString& strText :
         {u"中文"_s, u"课程"_s, u"第一章 绪论"_s, u"数学"_s, u"ｶﾅ、片仮名"_s, u"€20"_s, u"𠀀㐀"_s,
          u"镕镕镕镕"_s, u"北京大学计算机系的课程网站，欢迎您。"_s}) {
        Edit(CodePage::Encode(QString(u"<p>"_s + strText + u"</p>"_s)));
        EXPECT_EQ(Html().toStdString(), QString(u"<p>"_s + strText + u"</p>"_s).toStdString());
    }
    Edit("<meta charset=utf-8><p>\xE4\xB8\xAD</p>");
    EXPECT_TRUE(Html().contains(u"中"_s)) << "a page that says otherwise";
}

// A first view that makes the window anew loses the keyboard, the window's place and its number.
TEST_F(CWebEditing, TypingThroughTheInputMethodInTheSameWindow) {
    m_browser->show();
    const WId nWindow = m_browser->winId();
    Edit("<p>x</p>");
    EXPECT_EQ(m_browser->winId(), nWindow);
    EXPECT_TRUE(m_browser->isActiveWindow());
    Command(u"SelectAll"_s);
    Type(u"输入中文"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Html().contains(u"输入中文"_s); })) << Html().toStdString();
}

TEST_F(CWebEditing, CommandsActOnTheSelection) {
    Edit("<p>x</p>");
    struct SRow {
        const char* szCommand;
        QVariant value;
        QString strExpected;
    };
    const SRow rows[] = {
        {"bold", {}, u"<p><b>abc</b></p>"_s},
        {"ForeColor", 0x0000FF, u"<p><font color=\"#ff0000\">abc</font></p>"_s},
        {"BackColor", 0xFF8000, u"background-color: rgb(0, 128, 255)"_s},
        {"fontname", u"楷体_GB2312"_s, u"<p><font face=\"楷体_GB2312\">abc</font></p>"_s},
        {"fontsize", u"5"_s, u"<p><font size=\"5\">abc</font></p>"_s},
        {"insertorderedlist", {}, u"<li>abc</li>"_s},
        {"justifycenter", {}, u"center"_s},
        {"InsertInputText", {}, u"<input type=\"text\">"_s},
        {"InsertTextArea", {}, u"<textarea></textarea>"_s},
        {"InsertInputRadio", {}, u"<input type=\"radio\">"_s},
        {"InsertInputCheckbox", {}, u"<input type=\"checkbox\">"_s},
        {"InsertButton", {}, u"<button"_s},
        {"InsertHorizontalRule", {}, u"<hr>"_s},
        {"InsertParagraph", {}, u"<p><br></p>"_s},
    };
    for (const SRow& row : rows) {
        SetHtml(u"<p>abc</p>"_s);
        Command(u"SelectAll"_s);
        Command(QString::fromLatin1(row.szCommand), row.value);
        EXPECT_TRUE(Html().contains(row.strExpected)) << row.szCommand << ": " << Html().toStdString();
        Command(u"Undo"_s);
        EXPECT_EQ(Html(), u"<p>abc</p>"_s) << row.szCommand;
    }
}

TEST_F(CWebEditing, TheClipboard) {
    Edit("<p>x</p>");
    SetHtml(u"<p>abc</p>"_s);
    Command(u"SelectAll"_s);
    Command(u"Copy"_s);
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::clipboard()->text() == u"abc"_s; }));
    Command(u"Cut"_s);
    EXPECT_FALSE(Html().contains(u"abc"_s));
    Command(u"Paste"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Html().contains(u"abc"_s); }));
}

TEST_F(CWebEditing, SelectionIsTold) {
    Edit("<p>x</p>");
    SetHtml(u"<p>a&lt;b <i>c</i></p>"_s);
    EXPECT_FALSE(m_browser->HasSelection());
    QString strText = u"kept"_s;
    EXPECT_FALSE(m_browser->GetSelectedText(strText));
    EXPECT_EQ(strText, u"kept"_s);
    QSignalSpy moved(m_browser.get(), &CWebBrowser2Ex::SelectionChanged);
    Command(u"SelectAll"_s);
    EXPECT_TRUE(m_browser->HasSelection());
    EXPECT_TRUE(m_browser->GetSelectedText(strText));
    EXPECT_TRUE(strText.contains(u"a&lt;b <i>c</i>"_s)) << strText.toStdString();
    EXPECT_TRUE(moved.wait(2000));
    Command(u"bold"_s);
    QMap<QString, bool> states;
    EXPECT_TRUE(m_browser->QueryCommandStates({u"bold"_s, u"underline"_s}, states));
    EXPECT_EQ(states, (QMap<QString, bool>{{u"bold"_s, true}, {u"underline"_s, false}}));
    Command(u"UnSelect"_s);
    EXPECT_FALSE(m_browser->HasSelection());
}

TEST_F(CWebEditing, FragmentsStandAsTheyCameIn) {
    Edit("<p>x</p>");
    const struct {
        QString strFragment;
        QString strInPage;
    } rows[] = {
        {u"<a title=\"t\" style=\"{cursor:hand}\"><font \t\tcolor=\"#0000FF\">字</font></a>"_s,
         u"<a title=\"t\" style=\"{cursor:hand}\"><font color=\"#0000FF\">字</font></a>"_s},
        {u"<marquee>滚动</marquee>"_s, u"<marquee>滚动</marquee>"_s},
        {u"<embed src=\"Z:\\a b.swf\" style=\"width:320px;\" quality=\"high\"></embed>"_s,
         u"<embed src=\"file:///Z:/a%20b.swf\" style=\"width:320px;\" quality=\"high\">"_s},
        {u"<a id=\"innerfile\" href=\"res/1.doc\">说明.doc</a>"_s,
         u"<a id=\"innerfile\" href=\"res/1.doc\">说明.doc</a>"_s},
        {u"<table width=\"50%\" bordercolor=\"\"><tr><td>&nbsp;</td></tr></table>"_s,
         u"<table width=\"50%\" bordercolor=\"\"><tbody><tr><td>&nbsp;</td></tr></tbody></table>"_s},
        {u"<img src=\"Z:\\h.gif\" style=\"{cursor:hand}\" alt=\"帮助\">"_s,
         u"<img src=\"file:///Z:/h.gif\" style=\"{cursor:hand}\" alt=\"帮助\">"_s},
        {u"<BR>"_s, u"<br>"_s},
    };
    for (const auto& row : rows) {
        SetHtml(u"<p>left</p>"_s);
        EXPECT_TRUE(m_browser->InsertBrowserText(row.strFragment));
        const QString strAfter = Html();
        EXPECT_TRUE(strAfter.contains(row.strInPage)) << strAfter.toStdString();
        EXPECT_FALSE(strAfter.contains(u"vorel"_s)) << strAfter.toStdString();
        Command(u"Undo"_s);
        EXPECT_EQ(Html(), u"<p>left</p>"_s);
        Command(u"Redo"_s);
        EXPECT_EQ(Html().toStdString(), strAfter.toStdString());
    }
}

TEST_F(CWebEditing, ALocalPictureShowsAndIsFoundInTheText) {
    const QColor colour(10, 200, 30);
    WritePicture(u"else\\图 片 100%#1.png"_s, colour);
    Edit("<p>left</p>");
    const QString strPath = m_folder.Path(u"else\\图 片 100%#1.png"_s);
    ASSERT_TRUE(m_browser->InsertBrowserText(u"<img src =\""_s + strPath + u"\">"_s));
    EXPECT_TRUE(QTest::qWaitFor([&] { return ColourShows(colour); }));
    QStringList images;
    ASSERT_TRUE(m_browser->GetAllImageSrc(images));
    ASSERT_EQ(images.size(), 1);
    EXPECT_TRUE(Torvane::File::IsFile(Torvane::File::AddressToPath(images[0]))) << images[0].toStdString();
    // As a save does it: the address in the text gives way to the place in the course.
    WritePicture(u"course\\N5\\res\\1.png"_s, Qt::red);
    SetHtml(Html().replace(images[0], u"res/1.png"_s));
    EXPECT_EQ(Html(), u"<p><img src=\"res/1.png\">left</p>"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ColourShows(Qt::red); }));
}

TEST_F(CWebEditing, ReferencesAreReportedAbsoluteAndStandInOneForm) {
    Edit("<p>x</p>");
    SetHtml(u"<img src=\"res/a b.gif\"><img><img src=\"Z:\\图.png\"><a name=\"n\">-</a>"
            "<a href=\"file:///tmp/%E5%9B%BE.htm#a\">x</a><a href=\"http://h/a b\">w</a>"
            "<embed src=\"v.wmv\">"_s);
    const QString strPage = SurfacePath();
    QStringList list;
    EXPECT_TRUE(m_browser->GetAllImageSrc(list));
    EXPECT_EQ(list, (QStringList{strPage + u"res/a%20b.gif"_s, u"file:///Z:/图.png"_s}));
    EXPECT_TRUE(m_browser->GetAllAnchorHref(list));
    EXPECT_EQ(list, (QStringList{u"file:///Z:/tmp/图.htm#a"_s, u"http://h/a b"_s}));
    EXPECT_TRUE(m_browser->GetAllEmbededSrc(list));
    EXPECT_EQ(list, QStringList{strPage + u"v.wmv"_s});
    const QString strHtml = Html();
    EXPECT_TRUE(strHtml.contains(u"src=\"file:///Z:/图.png\""_s)) << strHtml.toStdString();
    EXPECT_TRUE(strHtml.contains(u"href=\"file:///Z:/tmp/图.htm#a\""_s)) << strHtml.toStdString();
    EXPECT_TRUE(strHtml.contains(u"src=\"res/a b.gif\""_s)) << "a relative reference stays relative";
}

TEST_F(CWebEditing, TablesAreReadAndFitted) {
    Edit("<p>x</p>");
    SetHtml(u"<p>x</p>"_s);
    EXPECT_FALSE(m_browser->HasSelectTable());
    SetHtml(u"<table width=\"50%\" border=\"1\"><tbody><tr><td colspan=\"2\">a</td></tr>"
            "<tr><td rowspan=\"2\">b</td><td>c</td></tr><tr><td>d</td></tr></tbody></table>"_s);
    Command(u"SelectAll"_s);
    CWebBrowser2Ex::STableInfo info;
    ASSERT_TRUE(m_browser->GetSelectedTableInfo(info));
    EXPECT_EQ(info.nRows, 3);
    EXPECT_EQ(info.nColumns, 2);
    EXPECT_EQ(info.strWidth, u"50%"_s);
    info.nRows = 4;
    info.nColumns = 3;
    info.strBorderColour = u"#ff0000"_s;
    EXPECT_TRUE(m_browser->EditSelectedTable(info));
    EXPECT_TRUE(Html().contains(u"<tr><td colspan=\"2\">a</td><td>&nbsp;</td></tr>"
                                "<tr><td rowspan=\"2\">b</td><td>c</td><td>&nbsp;</td></tr>"
                                "<tr><td>d</td><td>&nbsp;</td></tr>"
                                "<tr><td>&nbsp;</td><td>&nbsp;</td><td>&nbsp;</td></tr>"_s))
        << Html().toStdString();
    EXPECT_TRUE(Html().contains(u"bordercolor=\"#ff0000\""_s));
    info.nRows = 1;
    info.nColumns = 1;
    EXPECT_TRUE(m_browser->EditSelectedTable(info));
    ASSERT_TRUE(m_browser->GetSelectedTableInfo(info));
    EXPECT_EQ(info.nRows, 1);
    EXPECT_EQ(info.nColumns, 1);
    info.nColumns = 0;
    EXPECT_FALSE(m_browser->EditSelectedTable(info));
    info.nColumns = 100000;
    EXPECT_FALSE(m_browser->EditSelectedTable(info));
}

TEST_F(CWebEditing, CreateLinkAsksForTheAddress) {
    Edit("<p>x</p>");
    SetHtml(u"<p>abc</p>"_s);
    Command(u"SelectAll"_s);
    const auto answer = [](const QString& strAddress, const char* szButton) {
        WhenDialogOpens([=](QDialog& dialog) {
            dialog.findChild<QLineEdit*>()->setText(strAddress);
            dialog.findChild<QPushButton*>(QLatin1String(szButton))->click();
        });
    };
    answer(u"http://h/"_s, "cancel");
    EXPECT_FALSE(m_browser->ExecuteIHTMLDocumentCmd(u"CreateLink"_s, true, {}));
    EXPECT_EQ(Html(), u"<p>abc</p>"_s);
    answer(u"/tmp/图.htm"_s, "ok");
    EXPECT_TRUE(m_browser->ExecuteIHTMLDocumentCmd(u"CreateLink"_s, true, {}));
    EXPECT_EQ(Html(), u"<p><a href=\"file:///Z:/tmp/图.htm\">abc</a></p>"_s);
    Command(u"UnLink"_s);
    EXPECT_EQ(Html(), u"<p>abc</p>"_s);
}
