#include "office/PageCleaner.h"
#include "office/SlideText.h"
#include "tests/support/Cases.h"

#include <QBuffer>

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
    for (const SCase& each : ReadCases(OFFICE_CLEANED_PAGES)) {
        const QByteArray html = "<!DOCTYPE html><body>" + each.Texts[0].toUtf8();
        EXPECT_EQ(BodyOf(EKind::Document, html), each.Texts[1]) << each.strWhat;
    }
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
