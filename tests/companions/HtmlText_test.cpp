#include "companions/compiler/HtmlText.h"

#include "companions/compiler/CssText.h"
#include "foundation/CodePage.h"
#include "foundation/PageText.h"
#include "tests/support/Cases.h"

#include <QRandomGenerator>

namespace {

std::optional<QString> Louder(const QString& strReference) {
    return strReference.startsWith(u'!') ? std::nullopt : std::optional(strReference.toUpper());
}

} // namespace

TEST(HtmlText, TakesPagesApartForTheFrame) {
    for (const SCase& each : ReadCases(VOREL_FRAGMENTS)) {
        const auto fragment = HtmlText::TakeFragment(each.Texts[0], Louder);
        ASSERT_TRUE(fragment) << each.strWhat;
        EXPECT_EQ(fragment->Body, each.Texts[1]) << each.strWhat;
        EXPECT_EQ(fragment->Head, each.Texts[2]) << each.strWhat;
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
        ASSERT_TRUE(parsed && parsed->Body == QString(strPage + u"<!---->"_s)) << strPage;
    }
    EXPECT_GT(nKept, 200);
}
