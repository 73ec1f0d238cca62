#include "companions/docexport/PrintedPage.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::Not;

namespace {

std::optional<PrintedPage> Read(const QString& strPage) {
    return ReadPrintedPage(strPage,
                           {[](const QString& strReference) { return strReference; },
                            [](const QString& strReference) -> std::optional<ReadyPicture> {
                                if (strReference == "none"_L1)
                                    return std::nullopt;
                                return ReadyPicture{u"p.png"_s, 1200, 600};
                            },
                            [](const QString& strAnchor) -> QString { return u"#to-"_s + strAnchor; },
                            [](const QString& strAnchor) -> QByteArray {
                                return "<span id=\"" + strAnchor.toUtf8() + "\"></span>";
                            },
                            [](const QByteArray& drawing) -> std::optional<ReadyPicture> {
                                EXPECT_TRUE(drawing.startsWith("<svg xmlns=\"http://www.w3.org/2000/svg\""));
                                EXPECT_TRUE(drawing.endsWith("<path d=\"M0 0\"/></svg>")) << "or hidden";
                                return ReadyPicture{u"d.png"_s, 60, 30};
                            }});
}

} // namespace

// What teachers' pages hold, and what the document gets of it.
TEST(PrintedPage, WritesPagesAnewWellNested) {
    const struct {
        QString Page;
        std::string Text;
    } rows[] = {
        {u"一<b>二<p>三</b>四</p>"_s, "<p>一<strong>二</strong></p>\n<p><strong>三</strong>四</p>\n"},
        {u"甲<svg width=\"40\"><path d=\"M0 0\"/></svg>乙"_s,
         "<div data-custom-style=\"Picture Line\"><p>甲<img src=\"d.png\" alt=\"\" width=\"40\" "
         "height=\"20\"/>乙</p></div>\n"},
        {u"<svg><title> 图 </title><path d=\"M0 0\"/></svg><svg hidden></svg><svg style='display:none'></svg>"_s,
         "<div data-custom-style=\"Picture Line\"><p><img src=\"d.png\" alt=\"图\" width=\"60\" "
         "height=\"30\"/></p></div>\n"},
        {u"<p class='v-hint'>请写简介。写好后删除这段提示。</p><p class=v-hint>我写的。</p>"_s,
         "<p>我写的。</p>\n"},
        {u"甲\n乙<br>丙\n c"_s, "<p>甲乙</p>\n<p>丙 c</p>\n"},
        {u"<p>&nbsp;</p><center>中</center>"_s, "<div data-custom-style=\"Centered\"><p>中</p></div>\n"},
        {u"<a href=x><i>链</i></a><span style='display:none'>藏</span><SCRIPT>坏</SCRIPT>"_s,
         "<p><a href=\"x\"><em>链</em></a></p>\n"},
        {u"<a href=#q>去</a><p id=q>到</p><a href=#none>无</a>"_s,
         "<p><a href=\"#to-q\">去</a></p>\n<p><span id=\"q\"></span>到</p>\n<p>无</p>\n"},
        {u"<a href=#Y>去</a><a href=#%D6%D0>中</a><p><a id=x name=y>到</a><b id='中'>点</b>"_s,
         "<p><a href=\"#to-y\">去</a><a href=\"#to-中\">中</a></p>\n<p><span id=\"x\"></span><span "
         "id=\"y\"></span>到<span id=\"中\"></span><strong>点</strong></p>\n"},
        {u"<a href=#f>注</a><ol><li id=f>释</ol>"_s,
         "<p><a href=\"#to-f\">注</a></p>\n<ol type=\"1\"><li><span id=\"f\"></span>释</li>\n</ol>\n"},
        {u"<code>x<a id=c></a>y</code>"_s, "<p><code>x</code><span id=\"c\"></span><code>y</code></p>\n"},
        {u"<font color=red>红</font><span style='color:#333'>灰<b style='color:rgb(0,0,250)'>蓝</b></span>"_s,
         "<p><span data-custom-style=\"Color FF0000\">红</span>灰<span data-custom-style=\"Color "
         "0000FF\"><strong>蓝</strong></span></p>\n"},
        {u"<p style='text-indent:2em'>段<p style='text-indent:-1em'>落"_s,
         "<div data-custom-style=\"First Line Indented\"><p>段</p></div>\n<p>落</p>\n"},
        {u"<ul><li>甲<ul><li>乙</ul><ol start=3><li>丙</ol></ul>"_s,
         "<ul><li>甲<ul><li>乙</li>\n</ul>\n<ol start=\"3\" type=\"1\"><li>丙</li>\n</ol>\n</li>\n</ul>\n"},
        {u"<ul><ul><li>甲</ul></ul>"_s, "<ul><li>甲</li>\n</ul>\n"},
        {u"<img src=a alt='\"x'><img src=none alt=替代><img src=a width=1 height=1>"_s,
         "<div data-custom-style=\"Picture Line\"><p><img src=\"p.png\" alt=\"&quot;x\" width=\"600\" "
         "height=\"300\"/>替代</p></div>\n"},
        {u"<pre>a &lt;b\n  c</pre>"_s, "<pre>a &lt;b\n  c</pre>\n"},
        {u"<h1 align=center>题<br>目</h1>"_s,
         "<div data-custom-style=\"Page Heading 1\"><p>题 目</p></div>\n"},
        {u"<pre class=wordxml>&lt;w:p/&gt;</pre><div data-custom-style=Title>d</div>"_s,
         "<pre>&lt;w:p/&gt;</pre>\n<p>d</p>\n"},
        {u"<table><tr><td>布<table border=1><tr><td>局</table></table>"_s, "<p>布</p>\n<p>局</p>\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Read(row.Page)->Html.toStdString(), row.Text) << row.Page.toStdString();

    const std::string table =
        Read(
            u"<table border=1><tr><th>章<th>题<tr><td rowspan=9>1<td><img src=a><tr><td colspan=2>x</table>"_s)
            ->Html.toStdString();
    for (const char* szPiece : {"<thead><tr><th", "</thead><tbody>", "rowspan=\"2\"", "colspan=\"2\""})
        EXPECT_THAT(table, HasSubstr(szPiece));
    EXPECT_THAT(table, Not(HasSubstr("width=\"600\""))) << "a picture wider than its column";
    EXPECT_EQ(Read(u"<object><param name=movie value=a/片.swf></object>"_s)->LeftOut,
              QStringList{u"片.swf"_s});
    EXPECT_FALSE(Read(u"<div>"_s.repeated(5000)));
}
