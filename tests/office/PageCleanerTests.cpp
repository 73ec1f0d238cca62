#include "office/PageCleaner.h"
#include "office/SlideText.h"
#include "tests/support/Printing.h"

#include <QBuffer>
#include <QElapsedTimer>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;
using namespace Torvane::Office;

namespace {

QString BodyOf(EKind eKind, const QByteArray& html, const QString& strPlainText = {}) {
    const auto page = CleanPage(
        eKind, html, u"t"_s,
        [](const QString& strReference) {
            return strReference.startsWith(u"pic") ? u"a.files/"_s + strReference : QString();
        },
        strPlainText);
    const QString strPage = QString::fromUtf8(page.value_or("<body>none</body>"));
    return strPage.section(u"<body>"_s, 1).section(u"</body>"_s, 0, 0).trimmed();
}

TEST(PageCleaner, KeepsWhatIsKnownAndDropsTheRest) {
    const std::pair<QByteArray, QString> cases[] = {
        {"<p onclick=x() class=western>a<script>b</script><object>c</object></p>",
         u"<p class=\"western\">a</p>"_s},
        {"<a href=\"javascript:x()\">a</a><a href=\"../b.doc\">b</a>", u"ab"_s},
        {"<a href=\" HTTPS://x/?a&amp;b\">a</a><a href=#n>b</a>",
         u"<a href=\"HTTPS://x/?a&amp;b\">a</a><a href=\"#n\">b</a>"_s},
        {"<a name=n></a>", u"<a id=\"n\"></a>"_s},
        {"<p style=\"position:absolute;top:0;background:url(x);text-align:center\">a</p>",
         u"<p style=\"text-align: center\">a</p>"_s},
        {"<p style=\"color:red&quot; onload=&quot;x\">a</p>",
         u"<p style=\"color: red&quot; onload=&quot;x\">a</p>"_s},
        {"<p style=\"background:image-set('http://x/' 1x); color:a/*b; width:1px (; height:rgb(1; "
         "clear:a)\">a</p>",
         u"<p>a</p>"_s},
        {"<p style=\"color:cross-fade(rgb(1,2,3)); margin:[a; border:'a; float:'a\\'; "
         "padding:u\\72l(x)\">a</p>",
         u"<p>a</p>"_s},
        {"<p style='color:RGBA(1, 2, 3, 0.5); font-family:\"A (b)\"; border:1px solid hsl(0 0% 0%)'>a</p>",
         u"<p style=\"color: RGBA(1, 2, 3, 0.5); font-family: &quot;A (b)&quot;; border: 1px solid hsl(0 0% "
         u"0%)\">"
         "a</p>"_s},
        {"<font face=\"Noto Serif CJK SC\"><span lang=zh-CN>a</span></font>", u"a"_s},
        {"<font face=楷体 color=#cc0000 size=4>a</font>",
         u"<span style=\"color: #cc0000; font-family: 楷体; font-size: 13.5pt\">a</span>"_s},
        {"<ol><li><h1>a</h1></ol>", u"<h1>a</h1>"_s},
        {"<ol start=3><li><h1>a</h1><p>b</p></ol>", u"<ol start=\"3\"><li><h1>a</h1><p>b</p></li></ol>"_s},
        {"<div title=header><p>a</p></div><div>b</div>", u"<div>b</div>"_s},
        {"<img src=pic.png width=30 onerror=x()><img src=/etc/x.png alt=\"&lt;b>\">",
         u"<img src=\"a.files/pic.png\" alt=\"\" width=\"30\">&lt;b&gt;"_s},
        {"<p>x<img src=pic.png alt=Shape12>\n y</p></p>",
         u"<p>x<img src=\"a.files/pic.png\" alt=\"\">y</p>"_s},
        {"<form action=x><input value=a>b</form><sdfield type=PAGE>1</sdfield>", u"b1"_s},
        {"<p style=\"line-height: 100%\">a</p>", u"<p style=\"line-height: 1.4\">a</p>"_s}};
    for (const auto& [html, strBody] : cases)
        EXPECT_EQ(BodyOf(EKind::Document, "<!DOCTYPE html><body>" + html), strBody);
    QByteArray deep;
    for (int i = 0; i < 100'000; ++i)
        deep += "<div>";
    EXPECT_EQ(BodyOf(EKind::Document, deep), u"none"_s);
}

TEST(PageCleaner, ListsKeepTheirOwnNumbers) {
    const QByteArray html =
        "<ol><li><p>same</p><ol><li><p>in\n ner</p></ol><li><p>same</p></ol>"
        "<ol start=3><li><h1>head</h1></ol><ol><li>five</ol><ol><li>lost</ol><ul><li>dot</ul>";
    EXPECT_EQ(
        BodyOf(
            EKind::Document, html,
            u"    一、 same\n        （1） in ner\n    二、 same\n    三、 head\n    5. five\n    '\\ lost\n"
            "    • dot"_s),
        u"<ol><li style=\"list-style-type: '一、 '\"><p>same</p>"
        "<ol><li style=\"list-style-type: '（1） '\"><p>in\n ner</p></li></ol></li>"
        "<li style=\"list-style-type: '二、 '\"><p>same</p></li></ol>"
        "<h1>三、 head</h1><ol><li value=\"5\">five</li></ol><ol><li>lost</li></ol><ul><li>dot</li></ul>"_s);
}

TEST(PageCleaner, ALongListTakesNoLongerThanItsLength) {
    QByteArray html;
    QString strPlainText;
    for (int i = 0; i < 20'000; ++i) {
        html += "<ol><li>a" + QByteArray::number(i) + "</ol>";
        strPlainText += u"一、 b%1\n"_s.arg(i);
    }
    QElapsedTimer time;
    time.start();
    EXPECT_TRUE(BodyOf(EKind::Document, html, strPlainText).endsWith(u"<li>a19999</li></ol>"_s));
    EXPECT_LT(time.elapsed(), 10'000);
}

TEST(PageCleaner, ACancelIsHeardInTheMiddleOfAPage) {
    const QByteArray html = QByteArray("<p>a</p>").repeated(10'000);
    for (int nMost = 0; nMost < 20; ++nMost) {
        int nAsked = 0;
        const auto page = CleanPage(EKind::Document, html, u"t"_s, {}, {}, [&] { return nAsked++ < nMost; });
        EXPECT_FALSE(page);
        EXPECT_EQ(nAsked, nMost + 1);
    }
}

TEST(PageCleaner, AStyleSheetHoldsPlainRulesAlone) {
    const auto page =
        CleanPage(EKind::Document,
                  "<style>@import url(x); @page { margin: 1cm } p.a { color: red; so-language: zh }\n"
                  "p { background: image-set(\"http://x/\" 1x) } p { color: a/* } p { background: "
                  "url(http://x/) } b:hover { color: blue }</style>",
                  u"</title><script>"_s, [](const QString&) { return QString(); });
    ASSERT_TRUE(page);
    EXPECT_TRUE(page->contains("\np.a { color: red }\n")) << page->constData();
    EXPECT_FALSE(page->contains("@import"));
    EXPECT_FALSE(page->contains("http:"));
    EXPECT_FALSE(page->contains("/*"));
    EXPECT_FALSE(page->contains("<script>"));
}

TEST(SlideText, ADamagedFileGivesWhatCameBefore) {
    QByteArray xml =
        "<office:document xmlns:office='o' xmlns:draw='d' xmlns:text='t' xmlns:presentation='p'>"
        "<draw:page><draw:frame><text:p>\xF0\x9F\x98\x80  a\n b<text:s/>c</text:p></draw:frame>"
        "<text:list><text:list-item><text:list><text:list-item><text:p>deep</text:p></text:list-item>"
        "</text:list></text:list-item></text:list></draw:page><draw:page><text:p>last &lt;</text:p><text:p>";
    QBuffer buffer(&xml);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    const QList<CSlide> slides = ReadSlides(buffer);
    ASSERT_EQ(slides.size(), 2);
    EXPECT_EQ(slides[0].strTitle, u"😀 a b c"_s);
    EXPECT_EQ(slides[0].text, "<p>😀 a b c</p>\n<ul>\n<li>deep</li></ul>\n");
    EXPECT_EQ(slides[1].strTitle, u"last <"_s);
}

} // namespace
