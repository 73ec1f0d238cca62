#include "editor/HtmlFragments.h"

#include <gtest/gtest.h>

using namespace HtmlFragments;

namespace {

TEST(HtmlFragments, AreFixedToTheByte) {
    TableParameters table;
    table.nRows = 1;
    table.strBackground = QStringLiteral("#FFF\"");
    const struct {
        QString strBuilt;
        const char* szExpected;
    } rows[] = {
        {Image(QStringLiteral("Z:\\图 1\".png")), R"(<img src ="Z:\图 1".png">)"},
        {Flash(QStringLiteral("a")),
         "<embed src=\"a\" style=\"width:320px;height:240px;\" quality=\"high\" \t\t\t\t\tpluginspage=\""
         "http://www.macromedia.com/shockwave/download/index.cgi?P1_Prod_Version=ShockwaveFlash\" "
         "\t\t\t\t\ttype=\"application/x-shockwave-flash\"></embed>"},
        {Media(QStringLiteral("a")),
         R"(<embed src="a" width="320" height="240" autostart="false" controls="ImageWindow"></embed>)"},
        {OtherFile(QStringLiteral("res/1.doc"), QStringLiteral("A.doc")),
         R"(<a id="innerfile" href="res/1.doc">A.doc</a>)"},
        {Table(table), "<table width=\"50%\" cellspacing=\"0\" cellpadding=\"0\" bordercolor=\"\" "
                       "bgcolor=\"#FFF\"\" border=\"1\"><tr><td>&nbsp;</td><td>&nbsp;</td></tr></table>"},
        {Marquee(QStringLiteral("<b>跑")), "<marquee><b>跑</marquee>"},
        {LineBreak(), "<BR>"},
        {FloatingHelp(QStringLiteral("<\"&"), QStringLiteral("<i>x</i>")),
         "<a title=\"<&quot;&\" style=\"{cursor:hand}\"><font \t\t\t\t\t\t\t\t\tcolor=\"#0000FF\">"
         "<i>x</i></font></a>"},
        {HelpMark(QStringLiteral("Z:\\S"), QStringLiteral("a\"b")),
         "<img src=\"Z:\\S\\Images\\Help.gif\" style=\"{cursor:hand}\" alt=\"a\"b\">"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.strBuilt.toStdString(), row.szExpected);
}

TEST(HtmlFragments, ATableOfNothingHasNoRowsOrCells) {
    TableParameters table;
    table.nRows = 0;
    EXPECT_FALSE(Table(table).contains(QStringLiteral("<tr>")));
    table.nRows = 2;
    table.nColumns = -1;
    EXPECT_TRUE(Table(table).endsWith(QStringLiteral("><tr></tr><tr></tr></table>")));
}

} // namespace
