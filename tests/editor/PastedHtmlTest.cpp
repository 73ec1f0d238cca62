#include "editor/PastedHtml.h"
#include "tests/support/Cases.h"

namespace {

QString Cleaned(const QString& strHtml) {
    const auto fragment = PastedHtml::Clean(strHtml, [](const QString& strReference) {
        return strReference.startsWith(u"cid:") ? QString() : u"Z:\\p\\a&b.png"_s;
    });
    return fragment ? fragment->strHtml : u"<too much>"_s;
}

// What programs put on the clipboard, and what arrives of it: pasted_html.txt.
TEST(PastedHtml, TextArrivesWithoutItsLooksAndFitsIntoAnyPage) {
    for (const SCase& each : ReadCases(VOREL_PASTED_HTML))
        EXPECT_EQ(Cleaned(each.Texts[0]), each.Texts.value(1)) << each.strWhat;
}

TEST(PastedHtml, WhatIsTooDeepOrTooMuchIsLeftToThePlainText) {
    EXPECT_EQ(Cleaned(u"<div>"_s.repeated(100000)), u"<too much>"_s);
    EXPECT_EQ(Cleaned(u"<b>x"_s.repeated(60000)), u"<too much>"_s);
    // Each was a crash or took minutes.
    EXPECT_EQ(Cleaned(u"<table><tr><td>"_s.repeated(1900)), u"<too much>"_s);
    EXPECT_EQ(Cleaned(u"<div></a>"_s.repeated(20000)), u"<too much>"_s);
    EXPECT_EQ(Cleaned(u"<span><p></span></p>"_s.repeated(5000)), u"<too much>"_s);
    EXPECT_EQ(Cleaned(u"<label><dd></label></dd>"_s.repeated(50000)), u"<too much>"_s);
    // Not in a drawing any more, where a tag may end itself.
    EXPECT_EQ(Cleaned(u"<svg/>"_s + u"<g/>"_s.repeated(200000)), u"<too much>"_s);
    EXPECT_EQ(Cleaned(u"<select><svg><keygen>"_s + u"<g/>"_s.repeated(200000)), u"<too much>"_s);
    EXPECT_NE(Cleaned(u"<span><div><p>x</div></span><ul><li>y</ul>"_s.repeated(5000)), u"<too much>"_s);
    EXPECT_EQ(Cleaned(u"<p "_s + u"a=b c"_s.repeated(100000) + u">"_s), u"<too much>"_s);
    const QString strRule = u".a{color:red;"_s + u"p:v;"_s.repeated(50) + u'}';
    EXPECT_EQ(Cleaned(u"<style>"_s + strRule.repeated(20000) + u".b,"_s.repeated(100000) + u"</style>"_s +
                      u"<b class=a>x</b>"_s.repeated(20000))
                  .size(),
              20000 * u"<font color=\"#ff0000\"><b>x</b></font>"_s.size());
    EXPECT_EQ(Cleaned(QString(31'000'000, u'x')), u"<too much>"_s);
    EXPECT_EQ(PastedHtml::FromPlainText(u" a  b\tc<\r\nd\n\ne\u200B\n"_s),
              u"&nbsp;a &nbsp;b&nbsp;&nbsp;&nbsp;&nbsp;c&lt;<br>d<br><br>e"_s);
}

} // namespace
