#include "editor/HtmlFragments.h"

#include <gtest/gtest.h>

using namespace HtmlFragments;

using namespace Qt::StringLiterals;

namespace {

TEST(HtmlFragments, AreFixedToTheByte) {
    TableParameters table;
    table.nRows = 1;
    table.strBackground = u"#FFF\""_s;
    const struct {
        QString strBuilt;
        const char* szExpected;
    } rows[] = {
        {Image(u"Z:\\图 1\".png"_s), R"(<img src ="Z:\图 1".png">)"},
        {Flash(u"a"_s),
         "<embed src=\"a\" style=\"width:320px;height:240px;\" quality=\"high\" \t\t\t\t\tpluginspage=\""
         "http://www.macromedia.com/shockwave/download/index.cgi?P1_Prod_Version=ShockwaveFlash\" "
         "\t\t\t\t\ttype=\"application/x-shockwave-flash\"></embed>"},
        {Media(u"a"_s),
         R"(<embed src="a" width="320" height="240" autostart="false" controls="ImageWindow"></embed>)"},
        {OtherFile(u"res/1.doc"_s, u"A.doc"_s), R"(<a id="innerfile" href="res/1.doc">A.doc</a>)"},
        {Table(table), "<table width=\"50%\" cellspacing=\"0\" cellpadding=\"0\" bordercolor=\"\" "
                       "bgcolor=\"#FFF\"\" border=\"1\"><tr><td>&nbsp;</td><td>&nbsp;</td></tr></table>"},
        {Marquee(u"<b>跑"_s), "<marquee><b>跑</marquee>"},
        {LineBreak(), "<BR>"},
        {FloatingHelp(u"<\"&"_s, u"<i>x</i>"_s),
         "<a title=\"<&quot;&\" style=\"{cursor:hand}\"><font \t\t\t\t\t\t\t\t\tcolor=\"#0000FF\">"
         "<i>x</i></font></a>"},
        {InSiteLink(u"../n5/a.htm#\""_s, u"x"_s),
         "<a id=\"innerlink\" href=\"../n5/a.htm#&quot;\" style=\"{cursor:hand}\">"
         "<font \t\t\t\t\t\t\t\t\tcolor=\"#0000FF\">x</font></a>"},
        {HelpMark(u"Z:\\S"_s, u"a\"b"_s),
         "<img src=\"Z:\\S\\Images\\Help.gif\" style=\"{cursor:hand}\" alt=\"a\"b\">"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.strBuilt.toStdString(), row.szExpected);
}

} // namespace
