// Pages on their road from the file through the engine and back: opened and left, edited and saved, opened
// again. Prints a row for each. VOREL_PAGES names a folder whose pages are tried as well.
#include "tests/editor_ui/EditorFixture.h"

#include <QDirIterator>
#include <QRegularExpression>

#include <cstdio>

using namespace Qt::StringLiterals;
using BoxAnswer = CScriptedPeople::BoxAnswer;

namespace {

class RoundTripTest : public CEditorFixture {
protected:
    struct SRow {
        bool bQuietAtFirst = false; ///< opened and left: no question, the file as it was
        bool bSaved = false;        ///< the edit was written
        bool bSeen = false;         ///< text and pictures are what they were
        bool bQuietAgain = false;   ///< opened again and left: no question, the file as it was
        bool bStable = false;       ///< the engine's text is now what the file holds
        bool AllIsWell() const { return bQuietAtFirst && bSaved && bSeen && bQuietAgain && bStable; }
    };

    /// What a person sees of a text: its words, and what its pictures and objects name.
    static QString Seen(QString strHtml) {
        static const QRegularExpression s_raw(u"<!--.*?-->|<(style|script)\\b.*?</\\1>"_s,
                                              QRegularExpression::DotMatchesEverythingOption |
                                                  QRegularExpression::CaseInsensitiveOption);
        static const QRegularExpression s_source(
            u"<(?:img|embed|bgsound|iframe|frame)\\b[^>]*?src=\"([^\"]*)\"[^>]*>"_s);
        static const QRegularExpression s_tag(u"<[^>]*>"_s);
        strHtml.remove(s_raw).replace(s_source, u"[\\1]"_s).remove(s_tag);
        return strHtml.simplified();
    }

    SRow Try(const QByteArray& page, const QString& strShown = {}) {
        SRow row;
        Open(page);
        const QString strBefore = Html();
        EXPECT_TRUE(strBefore.contains(strShown)) << "misread: " << strBefore.toStdString();
        const auto nBoxes = m_world.People.Boxes.size();
        row.bQuietAtFirst = m_view.LeaveNode(true) && m_world.People.Boxes.size() == nBoxes &&
                            m_world.Folder.Read(PageFile()) == page;
        OpenAgain();
        const QString strMark = u"<i>尾</i>"_s;
        const bool bFrames = strBefore.startsWith(u"<frameset"_s);
        const QString strEdited = bFrames
                                      ? QString(strBefore).replace(u"<frameset"_s, u"<frameset title=\"t\""_s)
                                      : strBefore + strMark;
        row.bSaved = Surface("design").SetBrowserBodyInnerHTML(strEdited) && m_view.RunCommand(32825) &&
                     OnDisk().contains(bFrames ? u"title=\"t\""_s : strMark);
        m_view.LeaveNode(true);
        const QByteArray saved = m_world.Folder.Read(PageFile());
        OpenAgain();
        row.bSeen = Seen(Html()) == Seen(strEdited);
        row.bStable = Html() == OnDisk().replace(u"\r\n"_s, u"\n"_s);
        if (!row.bSeen || !row.bStable)
            std::printf("before %s\nafter  %s\n", qPrintable(strEdited.left(2000)),
                        qPrintable(Html().left(2000)));
        row.bQuietAgain = m_view.RunCommand(32825) && m_view.LeaveNode(true) &&
                          m_world.People.Boxes.size() == nBoxes && m_world.Folder.Read(PageFile()) == saved;
        return row;
    }

    void Tell(const QByteArray& name, const SRow& row) {
        const auto say = [](bool bGood) { return bGood ? "yes" : "NO"; };
        std::printf("%-44s %-6s %-6s %-6s %-6s %-6s\n", name.constData(), say(row.bQuietAtFirst),
                    say(row.bSaved), say(row.bSeen), say(row.bQuietAgain), say(row.bStable));
        EXPECT_TRUE(row.AllIsWell()) << name.toStdString();
    }

    static void Head() {
        std::printf("%-44s %-6s %-6s %-6s %-6s %-6s\n", "page", "quiet", "saved", "seen", "again", "stable");
    }
};

TEST_F(RoundTripTest, OddPagesSettleAtTheirFirstSave) {
    const QString strChinese = u"<p>第一章 绪论，数据结构与算法的基本概念。</p>"_s;
    QByteArray wide = QByteArray::fromHex("fffe");
    QByteArray bareWide;
    for (const QChar c : strChinese) {
        bareWide.append(static_cast<char>(c.unicode() & 0xFF)).append(static_cast<char>(c.unicode() >> 8));
    }
    wide += bareWide;
    const struct {
        const char* szWhat;
        QByteArray Page;
        QString strShown = {};
    } rows[] = {
        {"code page, nothing said", CodePage::Encode(strChinese), strChinese},
        {"UTF-8, nothing said", strChinese.toUtf8(), strChinese},
        {"UTF-8 with a mark", "\xEF\xBB\xBF" + strChinese.toUtf8(), strChinese},
        {"UTF-8 that says so", "<meta charset=utf-8>" + strChinese.toUtf8(), strChinese},
        {"Big5 that says so", "<html><head><meta charset=big5></head><body>\xA4\xA4\xA4\xE5</body></html>",
         u"中文"_s},
        {"UTF-16 with a mark", wide, strChinese},
        {"UTF-16, nothing said", bareWide, strChinese},
        {"capitals, unclosed",
         "<P ALIGN=center>a<BR><B>b<TABLE BORDER=1><TR><TD NOWRAP>c<TD>d</TABLE><UL><LI>x<LI>y"},
        {"font, marquee, bgsound, embed",
         "<MARQUEE><FONT color=red size=5>m</FONT></MARQUEE><BGSOUND src=res/a.mid><EMBED src=res/a.swf>"},
        {"object in object", "<OBJECT classid=clsid:x><PARAM name=a value=b><EMBED src=a.swf></OBJECT>"},
        {"applet, isindex, image", "<applet code=A.class>old</applet><isindex><image src=res/a.gif>"},
        {"frames",
         "<frameset cols=30%,*><frame src=a.htm><frame src=b.htm><noframes>none</noframes></frameset>"},
        {"iframe with text", "<iframe src=a.htm><p>none</p></iframe>after"},
        {"noscript, noembed, noframes",
         "<noscript><p>a &amp; b</p></noscript><noembed><p>c</p></noembed><noframes>d</noframes>"},
        {"script, style and link first", "<script>var a = '<b>';</script>\n<style>p > b { color: red "
                                         "}</style><link rel=stylesheet href=a.css><p>x"},
        {"script that writes tags",
         "<style>b{}</style><p>x</p><script>document.write('<body><html>');</script>"},
        {"comments around the body",
         "<!-- a --><html><!-- b --><body><!-- c --><p>x</p></body><!-- d --></html>"},
        {"comment first in a body's text", "<!-- a -->\n<!-- b --><p>x</p><!-- c -->"},
        {"conditional comments", "<!--[if IE]><p>i</p><![endif]--><![if !IE]><p>n</p><![endif]>"},
        {"entities", "&lt;b&gt; &amp;amp; &nbsp;&copy;&#20013;&#x4E2D; &hellip; &unknown; &amp"},
        {"hard blanks", CodePage::Encode(u"<p>\u00A0\u00A0a\u3000b\u200Bc</p>"_s)},
        {"pre with empty lines first",
         "<pre>\n\n\n a\n  b\n</pre><textarea>\n\nc</textarea><listing>\n\nd</listing>"},
        {"nested forms",
         "<form action=a><div><form action=b></div><input name=c></form></form><form><p></form>x"},
        {"nested links and buttons", "<a href=a>x<a href=b>y</a></a><button>p<button>q</button></button>"},
        {"table with stray text", "<table>stray<tr><td>a</td>text<p>b</p></tr></table>"},
        {"table in a paragraph", "<p>a<table><tr><td>b</table>c"},
        {"table without body or end", "<table><caption>t<col><tr><th>a<tr><td><table><tr><td>b"},
        {"wrongly nested", "<b><i>a</b>b</i><p><b>c<p>d</b>e"},
        {"plaintext", "<p>a</p><plaintext>b <c> & d"},
        {"xmp", "<xmp><b>not bold</b></xmp><p>x</p>"},
        {"NUL characters", QByteArray("<p>a\0b</p><p title='c\0d'>e</p>", 31)},
        {"other control characters", "<p>a\x01\x0B\x0C\x1F"
                                     "b\x7F</p>"},
        {"half a character", CodePage::Encode(u"<p>前"_s) + "\xD6"},
        {"line ends of three kinds", "<p>a\r\nb\nc\rd</p>\r\n<pre>\r\ne\r\n\r\nf</pre>\r\n\r\n"},
        {"references of line ends", "<pre>a&#13;b&#13;&#10;c&#10;d</pre>"},
        {"blanks around", "\r\n\r\n  \t<p>a</p>  \r\n\r\n  "},
        {"text alone", "just text"},
        {"whole document", "<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML "
                           "4.0//EN\"><html><head><title>t</title><style>p{color:red}</style>"
                           "</head><body bgcolor=#eef><p>x</p></body></html>\r\n"},
        {"base and title in the text", "<base target=_blank><title>t</title><p>x <a href=a.htm>a</a></p>"},
        {"a page that leads elsewhere", "<meta http-equiv=refresh content='0;url=b.htm'><p>x</p>"},
        {"template and details", "<template><p>t</p></template><details><summary>s</summary>d</details>"},
        {"drawing", "<svg viewBox='0 0 9 9'><path d='M0 0L9 9'/><text>t</text></svg><math><mi>x</mi></math>"},
        {"attributes",
         "<p title='a\"b&lt;c>d' CLASS=x onclick=\"f('&amp;')\" x:y=1 style='color:RED;;'>x</p>"},
    };
    Head();
    for (const auto& [szWhat, page, strShown] : rows)
        Tell(szWhat, Try(page, strShown));
    const QString strFolder = qEnvironmentVariable("VOREL_PAGES");
    for (QDirIterator it(strFolder, {u"*.htm"_s, u"*.html"_s}, QDir::Files, QDirIterator::Subdirectories);
         !strFolder.isEmpty() && it.hasNext();) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            Tell(file.fileName().right(44).toUtf8(), Try(file.readAll()));
    }
}

} // namespace
