#include "companions/compiler/HtmlText.h"

#include "companions/compiler/CssText.h"
#include "foundation/CodePage.h"
#include "foundation/PageText.h"
#include "tests/support/Printing.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

std::optional<QString> Louder(const QString& strReference) {
    return strReference.startsWith(u'!') ? std::nullopt : std::optional(strReference.toUpper());
}

} // namespace

TEST(HtmlText, TakesPagesApartForTheFrame) {
    const struct {
        QString strPage, strHead, strBody;
    } rows[] = {
        // What is sound stays, character for character.
        {u"<P ALIGN=center>a &nbsp; b<br/>\n<!-- c --></p><p>open"_s, QString(),
         u"<P ALIGN=center>a &nbsp; b<br/>\n<!-- c --></p><p>open"_s},
        {u"<img src=a.gif alt=\"x\"><a href='b&amp;c'>t</a><a href='!k'>k</a>"_s, QString(),
         u"<img src=\"A.GIF\" alt=\"x\"><a href=\"B&amp;C\">t</a><a href='!k'>k</a>"_s},
        {u"<object><param name=Movie value=m.swf><param name=quality value=high></object>"_s, QString(),
         u"<object><param name=Movie value=\"M.SWF\"><param name=quality value=high></object>"_s},
        // The frame's main part stays the only one.
        {u"<main id=a>x</main></main>"_s, QString(), u"<div id=\"a\">x</div>"_s},
        {u"<link rel=stylesheet href=a.css><title>t</title><meta charset=gbk>text<style>p{}</style>"_s,
         u"<link rel=stylesheet href=\"A.CSS\">\n<style>p{}</style>\n"_s, u"text"_s},
        {u"<p style='background:url(a.gif)'>x<style>p{background:URL( b.gif )}</style>"_s,
         u"<style>p{background:URL( \"B.GIF\" )}</style>\n"_s,
         u"<p style=\"background:url(&quot;A.GIF&quot;)\">x"_s},
        {u"<img srcset=\"a.gif 1x, b.gif,, c,d.gif\" lowsrc=e.gif><form action=f.htm><base href=g>"_s,
         QString(), u"<img srcset=\"A.GIF 1x, B.GIF, C,D.GIF\" lowsrc=\"E.GIF\"><form action=\"F.HTM\">"_s},
        // A template's words to the author go, until the author has written into them.
        {u"<p class=\"x v-hint\">请填写简介。写好后删除这段提示。</p>a"_s, QString(), u"a"_s},
        {u"<p class=\"v-hint\">本课程请填写。写好后删除这段提示。</p>"_s, QString(),
         u"<p class=\"v-hint\">本课程请填写。写好后删除这段提示。</p>"_s},
        // What would break the frame is closed within itself.
        {u"</div></div></main>x"_s, QString(), u"x"_s},
        {u"<table><tr><td>x"_s, QString(), u"<table><tbody><tr><td>x</td></tr></tbody></table>"_s},
        {u"<b>bold"_s, QString(), u"<b>bold</b>"_s},
        {u"a<!-- never closed"_s, QString(), u"a<!-- never closed-->"_s},
        {u"<textarea>never</div>"_s, QString(), u"<textarea>never&lt;/div&gt;</textarea>"_s},
        // A whole document gives what its head says of the look, and its body.
        {u"<!DOCTYPE html><html><head><title>t</title><style>a>b{}</style><script>x&&y</script></head>"
         "<body bgcolor=red>1 &lt; 2<img src=a></body></html>"_s,
         u"<style>a>b{}</style>"_s, u"1 &lt; 2<img src=\"A\">"_s},
    };
    for (const auto& row : rows) {
        const auto fragment = HtmlText::TakeFragment(row.strPage, Louder);
        ASSERT_TRUE(fragment) << row.strPage.toStdString();
        EXPECT_EQ(fragment->Head, row.strHead);
        EXPECT_EQ(fragment->Body, row.strBody);
    }
}

TEST(CssText, TouchesReferencesAlone) {
    const std::pair<QString, QString> rows[] = {
        {u"@charset \"gbk\"; @import 'a.css' screen; @import url(b.css); p{content:'c.gif'}"_s,
         u"@charset \"gbk\"; @import \"A.CSS\" screen; @import url(\"B.CSS\"); p{content:'c.gif'}"_s},
        {u"/* url(a) */ a{b:url('c d.gif'),URL(e)} /* url(f) "_s,
         u"/* url(a) */ a{b:url(\"C D.GIF\"),URL(\"E\")} /* url(f) "_s},
        {u"a{b:\"url(c)\";d:curl(e);f:url(g\\h);i:url()}"_s, QString()},
        {u"a{b:url(!k);c:'broken\n;d:url(e)}"_s, u"a{b:url(!k);c:'broken\n;d:url(\"E\")}"_s},
        {u"a{b:url(c"_s, u"a{b:url(\"C\""_s},
        {u"a{b:url('c"_s, QString()},
    };
    for (const auto& [strSheet, strResult] : rows)
        EXPECT_EQ(CssText::RewriteReferences(strSheet, Louder).value_or(QString()), strResult);
}

TEST(HtmlText, RefusesWhatTheParserCanNotBear) {
    EXPECT_FALSE(HtmlText::TakeFragment(u"<div>"_s.repeated(200000), Louder));
    EXPECT_FALSE(HtmlText::RewriteReferences(u"<b>"_s.repeated(200000), Louder));
    EXPECT_TRUE(HtmlText::TakeFragment(u"<p>a<br><li>"_s.repeated(20000), Louder)) << "long is not deep";
}

TEST(HtmlText, ReadsWhatAPageSaysOfItsCoding) {
    const QString strText = u"课程é"_s;
    const auto page = [&](const char* szHead) -> QString { return QLatin1StringView(szHead) + strText; };
    const QString strLong = u"<p>课程网站的页面没有说明它的编码</p>"_s;
    const auto wide = [](const QString& str) {
        return QByteArray(reinterpret_cast<const char*>(str.utf16()), str.size() * 2);
    };
    const std::pair<QByteArray, QString> rows[] = {
        {CodePage::Encode(strText), strText},
        {"\xEF\xBB\xBF" + strText.toUtf8(), strText},
        {page("<meta charset=utf-8>").toUtf8(), page("<meta charset=utf-8>")},
        // The editor writes the code page, whatever an old head says.
        {CodePage::Encode(page("<meta charset=utf-8>")), page("<meta charset=utf-8>")},
        {CodePage::Encode(page("<meta content='text/html; charset=gb2312'>")),
         page("<meta content='text/html; charset=gb2312'>")},
        {CodePage::Encode(page("<meta charset=no-such-thing>")), page("<meta charset=no-such-thing>")},
        {QByteArray("\xFF\xFE") + wide(strText), strText},
        // Without a word, as other programs write them.
        {strLong.toUtf8(), strLong},
        {CodePage::Encode(strLong), strLong},
        {wide(strLong), strLong},
        {CodePage::Encode(page("&lt;meta charset=iso-8859-1&gt;")), page("&lt;meta charset=iso-8859-1&gt;")},
    };
    for (const auto& [bytes, strExpected] : rows) {
        const PageText::Decoded decoded = PageText::Decode(bytes);
        EXPECT_EQ(decoded.Text, strExpected);
        EXPECT_EQ(PageText::Encode(decoded), bytes) << "and back, byte for byte";
    }
    EXPECT_TRUE(PageText::Decode("<meta charset=utf-8>" + strLong.toUtf8() + '\xFF').Text.contains(strLong))
        << "one bad byte";
}

// Most pages need no parser, by rules of our own: what they let pass must be what the parser leaves as it is.
// A comment behind a page brings it to the parser.
TEST(HtmlText, SparesTheParserOnlyWhatItWouldLeave) {
    const QStringList tokens = {u"<p>"_s,      u"</p>"_s,  u"<b>"_s,          u"</b>"_s,
                                u"<i>"_s,      u"</i>"_s,  u"<ul>"_s,         u"</ul>"_s,
                                u"<li>"_s,     u"</li>"_s, u"<div>"_s,        u"</div>"_s,
                                u"<h2>"_s,     u"</h2>"_s, u"<br>"_s,         u"</br>"_s,
                                u"字 &amp;"_s, u"\n"_s,    u"<p id=\"a\">"_s, u"<span title=\"<\">"_s,
                                u"</span>"_s,  u"R & D"_s, u"&copy 1"_s,      u"<p id=\"a\" id=\"b\">"_s};
    QRandomGenerator random(7);
    int nKept = 0;
    for (int nRound = 0; nRound < 40'000; ++nRound) {
        QString strPage;
        for (int n = random.bounded(1, 9); n > 0; --n)
            strPage += tokens[random.bounded(tokens.size())];
        const auto fragment = HtmlText::TakeFragment(strPage, Louder);
        if (!fragment || fragment->Body != strPage || !fragment->Head.isEmpty())
            continue;
        ++nKept;
        const auto parsed = HtmlText::TakeFragment(strPage + u"<!---->"_s, Louder);
        ASSERT_TRUE(parsed && parsed->Body == QString(strPage + u"<!---->"_s)) << strPage.toStdString();
    }
    EXPECT_GT(nKept, 200);
}
