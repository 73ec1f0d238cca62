#include "editor/HtmlFragments.h"
#include "tests/support/Testing.h"

using namespace HtmlFragments;

namespace {

// What is typed stands in them as it is; what each leaves in a page is told by commands_html.tsv.
TEST(HtmlFragments, AreFixedToTheByte) {
    TableParameters table;
    table.nRows = 1;
    table.strBackground = u"#FFF\""_s;
    const struct {
        QString strBuilt;
        const char* szExpected;
    } rows[] = {
        {Image(u"Z:\\图 1\".png"_s), R"(<img src ="Z:\图 1".png">)"},
        {Table(table), "<table width=\"50%\" cellspacing=\"0\" cellpadding=\"0\" bordercolor=\"\" "
                       "bgcolor=\"#FFF\"\" border=\"1\"><tr><td>&nbsp;</td><td>&nbsp;</td></tr></table>"},
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
