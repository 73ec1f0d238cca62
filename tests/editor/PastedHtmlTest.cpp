#include "editor/PastedHtml.h"

#include "tests/support/Printing.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString Cleaned(const QString& strHtml) {
    const auto fragment = PastedHtml::Clean(strHtml, [](const QString& strReference) {
        return strReference.startsWith(u"cid:") ? QString() : u"Z:\\p\\a&b.png"_s;
    });
    return fragment ? fragment->strHtml : u"<too much>"_s;
}

struct Row {
    const char* szWhat;
    QString strHtml;
    QString strClean;
};

void Expect(std::initializer_list<Row> rows) {
    for (const Row& row : rows)
        EXPECT_EQ(Cleaned(row.strHtml), row.strClean) << row.szWhat;
}

TEST(PastedHtml, TextOfOfficeProgramsArrivesWithoutTheirLooks) {
    const QString strWordHead =
        u"Version:0.9\r\nStartHTML:0000000105\r\nEndHTML:0000099999\r\n<html xmlns:v=\"urn:v\" "
        "xmlns:o=\"urn:o\"><head><meta name=Generator content=\"Microsoft Word 15\"><!--[if gte mso 9]><xml>"
        "<w:WordDocument>x</w:WordDocument></xml><![endif]--><style><!-- p.MsoNormal {margin:0cm; "
        "text-align:justify} @page {size:595pt} --></style></head><body lang=ZH-CN>\r\n<!--StartFragment-->"_s;
    const QString strItem =
        u"<p class=MsoListParagraph style='margin-left:18.0pt;mso-list:l%1 level%2 lfo1'>"
        "<![if !supportLists]><span style='font-family:%3'><span style='mso-list:Ignore'>"
        "%4<span style='font:7.0pt \"Times New Roman\"'>&nbsp;&nbsp; </span></span></span>"
        "<![endif]><span lang=EN-US>%5<o:p></o:p></span></p>\r\n"_s;
    const auto item = [&](const char* szLevel, const char* szFont, const char* szLabel, const char* szText) {
        return strItem.arg(u"0"_s, QLatin1String(szLevel), QLatin1String(szFont), QString::fromUtf8(szLabel),
                           QLatin1String(szText));
    };
    const QString strEnd = u"<!--EndFragment--></body></html>"_s;
    Expect({
        {"Word: paragraphs, and lines that end between Chinese characters",
         strWordHead +
             u"<p class=MsoNormal align=center style='text-align:center'><b><span style='font-size:22.0pt;"
             "font-family:宋体;color:red;mso-font-kerning:0pt'>课程\r\n简介<span "
             "lang=EN-US><o:p></o:p></span>"
             "</span></b></p><p class=MsoNormal><span lang=EN-US>two\r\nwords<o:p>&nbsp;</o:p></span></p>"
             "<p class=MsoNormal><o:p>&nbsp;</o:p></p>"_s +
             strEnd,
         u"<p align=\"center\"><b><font color=\"#ff0000\">课程简介</font></b></p><p>two words&nbsp;</p>"
         "<p>&nbsp;</p>"_s},
        {"Word: lists that are paragraphs",
         strWordHead + item("1", "Wingdings", "l", "a") + item("2", "Calibri", "1.", "b") +
             item("2", "Calibri", "2.", "c") + item("1", "Symbol", "·", "d") + u"<p>x</p>"_s +
             item("1", "Calibri", "3)", "e") + item("1", "Calibri", "（1）", "f") + strEnd,
         u"<ul><li>a<ol><li>b</li><li>c</li></ol></li><li>d</li></ul><p>x</p><ol start=\"3\"><li>e</li></ol>"
         "<p>（1） f</p>"_s},
        {"Word: the number of a heading, tracked changes and comments, a field of a shape",
         strWordHead +
             u"<h1 style='mso-list:l0 level1 lfo1'><span style='mso-list:Ignore'>1.1<span>&nbsp; "
             u"</span></span>"
             "<b>T</b></h1><p>a<del cite=\"mailto:x\" datetime=\"2020\">old</del><ins "
             "cite=\"mailto:x\">new</ins>"
             "<a class=msocomanchor href=\"#_msocom_1\">[x1]</a><span "
             "style='display:none;mso-hide:all'>h</span>"
             "<!--[if gte vml 1]><v:shape/><![endif]--><![if !vml]><img width=30 height=20 "
             "src=\"file:///tmp/msohtml1/clip_image001.png\" v:shapes=\"x\"><![endif]></p>"
             "<div style='mso-element:comment-list'><p>said</p></div>"_s +
             strEnd,
         u"<h1>1.1 T</h1><p>anew<img src=\"Z:\\p\\a&amp;b.png\" width=\"30\" height=\"20\"></p>"_s},
        {"Word: a table, and highlighting",
         strWordHead +
             u"<table class=MsoTableGrid border=1 cellspacing=0 cellpadding=0 width=553 "
             u"style='border-collapse:"
             "collapse;border:none'><tr style='mso-yfti-irow:0'><td width=276 colspan=2 valign=top "
             "style='width:207.4pt;border:solid windowtext 1.0pt;background:#D9D9D9'><p class=MsoNormal "
             "align=right style='text-align:right'><i>a</i></p></td><td><p class=MsoNormal><span "
             "style='background:yellow;mso-highlight:yellow'>b</span></p></td></tr></table>"_s +
             strEnd,
         u"<table width=\"553\" cellspacing=\"0\" cellpadding=\"0\" border=\"1\"><tbody><tr>"
         "<td colspan=\"2\" width=\"276\" align=\"right\" valign=\"top\"><i>a</i></td>"
         "<td><span style=\"background-color: #ffff00\">b</span></td></tr></tbody></table>"_s},
        {"WPS: classes for all looks",
         u"<html><head><style>.font0{color:#000000;} .s1{font-weight:700;color:#FF0000;} td.xl65{border:.5pt "
         "solid windowtext;text-align:center} .x {}</style></head><body><!--StartFragment--><p><span "
         "class=\"s1 font9\">a</span><span class=\"15\">b</span></p><table border=0><tr><td class=xl65>1</td>"
         "<td class=xl65></td></tr></table><!--EndFragment--></body></html>"_s,
         u"<p><font color=\"#ff0000\"><b>a</b></font>b</p><table border=\"1\"><tbody><tr>"
         "<td align=\"center\">1</td><td align=\"center\">&nbsp;</td></tr></tbody></table>"_s},
        {"LibreOffice Writer",
         u"<!DOCTYPE html><html><head><meta http-equiv=\"content-type\" content=\"text/html; "
         u"charset=utf-8\"/>"
         "<title></title><style type=\"text/css\">p { margin-bottom: 0.25cm }</style></head><body "
         "lang=\"zh-CN\" "
         "dir=\"ltr\"><p style=\"line-height: 115%; margin-bottom: 0cm\"><font face=\"Liberation Serif, "
         "serif\">"
         "<font size=\"3\" style=\"font-size: 12pt\"><u>a</u> <sup>2</sup></font></font></p>\n<ol>\n\t<li>"
         "<p style=\"margin-bottom: 0cm\">x</p></li>\n\t<li><p>y</p>\n</li></ol></body></html>"_s,
         u"<p><u>a</u> <sup>2</sup></p><ol><li>x</li><li>y</li></ol>"_s},
        {"LibreOffice Writer: a list in an item, and lines that end at blanks",
         u"<meta name=\"generator\" content=\"LibreOffice 7.4\"/><ul><li><p>第二项 "
         u"章\n数</p>\n<ol><li><p>甲</p>"
         "</li></ol></li></ul>"_s,
         u"<ul><li>第二项 章 数<ol><li>甲</li></ol></li></ul>"_s},
        {"LibreOffice Calc",
         u"<html><head></head><body><table cellspacing=\"0\" border=\"0\">\n\t<colgroup "
         u"width=\"85\"></colgroup>"
         "\n\t<tr>\n\t\t<td style=\"border-top: 1px solid #000000\" height=\"17\" align=\"left\" "
         "bgcolor=\"#FFFF00\"><b><font face=\"Liberation Sans\">名</font></b></td>\n\t\t<td align=\"right\" "
         "valign=bottom sdval=\"1\" sdnum=\"2052;\">1</td>\n\t</tr></table></body></html>"_s,
         u"<table cellspacing=\"0\" border=\"1\"><tbody><tr><td bgcolor=\"#ffff00\"><b>名</b></td>"
         "<td align=\"right\" valign=\"bottom\">1</td></tr></tbody></table>"_s},
    });
}

TEST(PastedHtml, PiecesOfWebPagesFitIntoAnyPage) {
    Expect({
        {"Google Docs",
         u"<meta charset='utf-8'><meta charset=\"utf-8\"><b style=\"font-weight:normal;\" "
         "id=\"docs-internal-guid-1\"><p dir=\"ltr\" style=\"line-height:1.38;margin-top:0pt;\"><span "
         "style=\"font-size:11pt;font-family:Arial;color:#000000;background-color:transparent;font-weight:"
         "700;"
         "font-style:italic;text-decoration:underline;vertical-align:baseline;white-space:pre-wrap;\">a  "
         "b</span>"
         "</p><ul style=\"margin-top:0;\"><li dir=\"ltr\" aria-level=\"1\"><p dir=\"ltr\" "
         "role=\"presentation\">"
         "<span style=\"text-decoration:line-through;\">c</span></p></li></ul></b><br "
         "class=\"Apple-interchange-newline\">"_s,
         u"<p><b><i><u>a &nbsp;b</u></i></b></p><ul><li><strike>c</strike></li></ul>"_s},
        {"Chrome, whose copies say all that the page's style sheet says",
         u"<meta charset='utf-8'><div class=\"c\" style=\"color: rgb(51, 51, 51); font-family: x; orphans: "
         u"2; "
         "background-color: rgb(255, 255, 255)\"><div><h2 style=\"font-weight: 600\"><span "
         "style=\"font-weight: 600\">T</span></h2></div><div>one <strong>two</strong><span> </span><a "
         "href=\"https://a.b/?x=1&amp;y=2\" style=\"color: rgb(26, 13, 171)\" onclick=\"f()\" "
         "target=\"_blank\">"
         "<u>l</u></a></div><div><br></div>tail</div>"_s,
         u"<div><h2>T</h2><div>one <b>two</b> <a href=\"https://a.b/?x=1&amp;y=2\">l</a></div>"
         "<div><br></div>tail</div>"_s},
        {"an editor of programs",
         u"<div style=\"color: #d4d4d4;white-space: pre;\"><div><span style=\"color: #569cd6;\">if</span>"
         "<span>  (x)\n\ty</span></div></div>"_s,
         u"<div><font color=\"#569cd6\">if</font>&nbsp; (x)<br>&nbsp;&nbsp;&nbsp;&nbsp;y</div>"_s},
        {"what runs, loads, asks or hides",
         u"<script>x</script><style>p{}</style><p onclick=x style=\"background:url(http://a/b)\">a<iframe "
         "src=x></iframe><object><p>o</p></object><input value=v><svg><script>y</script></svg></p><a "
         "href=\"javascript:x\">j</a><a href=\" JaVa\nscript:x\">k</a><a "
         "href=\"file:///etc/passwd\">f</a><form "
         "action=x><p>g</p></form><img src=\"http://t/1\" width=1 height=1><img src=\"cid:1\" alt=\"&lt;i>\">"
         "<template><p>t</p></template><math><mi>m</mi></math>"_s,
         u"<p>a</p>jkf<p>g</p>&lt;i&gt;"_s},
        {"what shows nothing",
         u"<p>a\u200Bb\uFEFF</p><p></p><p><span></span></p><div><div></div></div><b></b><ul></ul><p>c\u00A0d "
         "\u00A0\u00A0e</p>"_s,
         u"<p>ab</p><p>c d &nbsp;&nbsp;e</p>"_s},
        {"what programs show of themselves stays as it is: rows, code, readings",
         u"<pre>a\n  b</pre><p><code>x</code> <ruby>汉<rt>hàn</rt></ruby></p><ol start=3 type=a "
         "class=x><li value=1>y</ol><dl><dt>t<dd>d</dl><blockquote>q</blockquote><hr class=x>"_s,
         u"<pre>a\n  b</pre><p><code>x</code> <ruby>汉<rt>hàn</rt></ruby></p><ol type=\"a\" start=\"3\">"
         "<li>y</li></ol><dl><dt>t</dt><dd>d</dd></dl><blockquote>q</blockquote><hr>"_s},
        {"looks that stand around paragraphs", u"<b><p>a<i>b</i></p><p>c</p></b>"_s,
         u"<p><b>a<i>b</i></b></p><p><b>c</b></p>"_s},
    });
}

TEST(PastedHtml, WhatIsTooDeepOrTooMuchIsLeftToThePlainText) {
    EXPECT_EQ(Cleaned(u"<div>"_s.repeated(100000)), u"<too much>"_s);
    EXPECT_EQ(Cleaned(u"<b>x"_s.repeated(60000)), u"<too much>"_s);
    // Each was a crash or took minutes.
    EXPECT_EQ(Cleaned(u"<table><tr><td>"_s.repeated(1900)), u"<too much>"_s);
    EXPECT_EQ(Cleaned(u"<div></a>"_s.repeated(20000)), u"<too much>"_s);
    EXPECT_EQ(Cleaned(u"<span><p></span></p>"_s.repeated(5000)), u"<too much>"_s);
    EXPECT_EQ(Cleaned(u"<label><dd></label></dd>"_s.repeated(50000)), u"<too much>"_s);
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
