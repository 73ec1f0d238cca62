#include "companions/docexport/PrintedPage.h"

#include "companions/compiler/HtmlText.h"
#include "companions/docexport/ForeignMarkup.h"
#include "companions/docexport/PageElements.h"
#include "companions/docexport/PageTable.h"
#include "companions/docexport/TextLine.h"
#include "companions/docexport/Texts.h"
#include "foundation/HtmlTree.h"
#include "foundation/PageAnchors.h"
#include "foundation/Text.h"

#include <QSet>

using namespace Qt::StringLiterals;
using namespace HtmlTree;

namespace {

/// Writes a page anew from its tree, so that what comes out is well nested whatever came in: text and
/// pictures gather in a line, and each border of a block ends it.
class CPageWriter {
public:
    explicit CPageWriter(const PageSurroundings& surroundings) : m_surroundings(surroundings) {}

    PrintedPage WritePage(const GumboNode* pRoot, const QStringList& anchors, bool bScript) {
        m_anchors = QSet<QString>(anchors.begin(), anchors.end());
        m_names = PageAnchors::CNames(anchors);
        m_bScript = bScript;
        m_drawings.emplace(pRoot);
        Write(pRoot);
        EndLine();
        if (const QByteArray marks = m_line.TakeMarks(); !marks.isEmpty())
            m_out += "<div data-custom-style=\"Table End\"><p>" + marks + "</p></div>\n";
        return {m_out, m_leftOut, m_deadLinks, m_bHint, m_colors};
    }

private:
    QString AnchorLink(const QString& strReference) {
        const QString strFragment = strReference.mid(1);
        const QString strName = m_names.Meant(strFragment);
        if (!strName.isEmpty())
            return m_surroundings.AnchorLink(strName);
        // A script may make the place; the top of a page has no anchor.
        if (!strFragment.isEmpty() && !m_bScript && LowerAscii(strFragment) != "top"_L1 &&
            !m_deadLinks.contains(strReference))
            m_deadLinks.append(strReference);
        return {};
    }

    QByteArray AnchorMarks(const GumboElement& element) {
        QByteArray marks;
        for (const char* szName : {"id", "name"}) {
            const QString strName = QString::fromUtf8(AttributeValue(element, szName));
            if ((*szName == 'i' || element.tag == GUMBO_TAG_A) && m_anchors.contains(strName))
                marks += m_surroundings.AnchorMark(strName);
        }
        return marks;
    }

    void WriteChildren(const GumboNode* pNode) {
        for (unsigned i = 0; i < pNode->v.element.children.length; ++i)
            Write(ChildAt(pNode, i));
    }

    void Write(const GumboNode* pNode) {
        if (pNode->type == GUMBO_NODE_DOCUMENT)
            return;
        if (IsElement(pNode))
            return WriteElement(pNode);
        if (pNode->type != GUMBO_NODE_COMMENT)
            m_line.AddText(QString::fromUtf8(pNode->v.text.text), m_style);
    }

    void TakeStyle(const GumboElement& element, const QByteArray& name) {
        m_style.Take(element, name);
        if (!m_style.Color.isEmpty())
            m_colors.insert(m_style.Color);
    }

    void WriteElement(const GumboNode* pNode) {
        const GumboElement& element = pNode->v.element;
        const QByteArray name = TagName(element);
        if (IsHidden(element))
            return;
        if (HtmlText::IsHint(pNode)) {
            m_bHint = true;
            return;
        }
        if (IsMedium(name))
            return WriteMedium(pNode);
        if (element.tag == GUMBO_TAG_SVG && element.tag_namespace == GUMBO_NAMESPACE_SVG)
            return WriteDrawing(pNode);
        if (element.tag == GUMBO_TAG_MATH && element.tag_namespace == GUMBO_NAMESPACE_MATHML)
            return WriteFormula(pNode);
        if (IsDropped(element, name))
            return;
        const RunStyle before = m_style;
        TakeStyle(element, name);
        const bool bOfItsOwn = IsBlock(name) || IsHeading(name) || IsList(name) || name == "table" ||
                               name == "pre" || name == "body" || name == "html";
        const bool bTurns = bOfItsOwn && Turns(element);
        if (bTurns)
            Turn();
        if (const QByteArray marks = AnchorMarks(element); !marks.isEmpty()) {
            // In the block, not at the end of the line before.
            if (bOfItsOwn)
                EndLine();
            m_line.AddMarkup(marks);
        }
        if (name == "br")
            WriteBreak();
        else if (name == "img")
            WritePicture(element);
        else if (name == "a")
            WriteLink(pNode);
        else if (name == "hr")
            WriteRule();
        else if (name == "pre" || name == "xmp" || name == "listing")
            WriteCode(pNode);
        else if (name == "table")
            WriteTable(pNode);
        else if (IsList(name))
            WriteList(pNode, name);
        else if (IsHeading(name) || IsBlock(name))
            WriteBlock(pNode, name);
        else if (name == "rt")
            WriteBetween(DocText::c_strReadingBegin, pNode, DocText::c_strReadingEnd);
        else if (name == "q")
            WriteBetween(DocText::c_strQuoteBegin, pNode, DocText::c_strQuoteEnd);
        else
            WriteChildren(pNode);
        if (bTurns)
            TurnBack();
        m_style = before;
    }

    /// Whether a text begins that runs the other way.
    bool Turns(const GumboElement& element) const {
        const QString strStyle = StyleValue(element, u"direction"_s);
        const QString strWay = strStyle.isEmpty() ? AttributeText(element, "dir").toLower() : strStyle;
        return strWay == (m_bRightToLeft ? "ltr"_L1 : "rtl"_L1);
    }
    void Turn() {
        EndLine();
        m_bRightToLeft = !m_bRightToLeft;
        Open(m_bRightToLeft ? "<div dir=\"rtl\">" : "<div dir=\"ltr\">");
    }
    void TurnBack() {
        EndLine();
        m_bRightToLeft = !m_bRightToLeft;
        Close("</div>");
    }

    /// What browsers set signs around, or above.
    void WriteBetween(const QString& strBegin, const GumboNode* pNode, const QString& strEnd) {
        m_line.AddText(strBegin, m_style);
        WriteChildren(pNode);
        m_line.AddText(strEnd, m_style);
    }

    int WidthOfPicture(const GumboElement& element) const {
        const QString strReference = AttributeText(element, "src");
        const int nSaid = Pixels(element, "width");
        if (strReference.isEmpty() || nSaid > 0)
            return strReference.isEmpty() ? 0 : nSaid;
        const std::optional<ReadyPicture> picture = m_surroundings.Picture(strReference);
        return picture ? picture->Width : 0;
    }

    /// A paragraph of its own for each line: a word processor would stretch one that ends in the middle.
    void WriteBreak() {
        if (m_bHeading)
            m_line.AddText(u" "_s, m_style);
        else
            EndLine();
    }

    void WriteBlock(const GumboNode* pNode, const QByteArray& name) {
        EndLine();
        const QByteArray styleBefore = m_paragraph;
        const bool bHeadingBefore = m_bHeading;
        const QByteArray alignment = AlignmentOf(pNode->v.element);
        if (IsHeading(name)) {
            m_paragraph = name[1] <= '2'   ? "Page Heading 1"
                          : name[1] == '3' ? "Page Heading 2"
                                           : "Page Heading 3";
            m_bHeading = true;
        } else if (m_bHeading || m_bTable) {
            // Nothing changes the looks of a heading, and cells have theirs.
        } else if (alignment == "center" || name == "center" || name == "figure" || name == "figcaption") {
            m_paragraph = "Centered";
        } else if (m_bRightToLeft) {
            // It stands on the right as it is, and there word processors take the one side for the other.
            m_paragraph = alignment == "left" ? "Right Aligned" : "";
        } else if (alignment == "right") {
            m_paragraph = "Right Aligned";
        } else if (alignment == "left" || alignment == "justify") {
            m_paragraph.clear();
        } else if (name == "dd" ||
                   (name == "p" && IsPositive(StyleValue(pNode->v.element, u"margin-left"_s)))) {
            m_paragraph = "Indented";
        } else if (IsPositive(StyleValue(pNode->v.element, u"text-indent"_s))) {
            m_paragraph = c_firstLine;
        }
        if (name == "dt")
            m_style.Bold = true;
        const bool bQuote = name == "blockquote" && !m_bHeading;
        if (bQuote)
            Open("<blockquote>");
        WriteChildren(pNode);
        EndLine();
        if (bQuote)
            Close("</blockquote>");
        m_paragraph = styleBefore;
        m_bHeading = bHeadingBefore;
    }

    void WriteLink(const GumboNode* pNode) {
        const QString strReference = AttributeText(pNode->v.element, "href");
        if (strReference.startsWith(u'#'))
            m_style.Link = AnchorLink(strReference);
        else if (!strReference.isEmpty())
            m_style.Link = m_surroundings.Link(strReference);
        WriteChildren(pNode);
    }

    void WritePicture(const GumboElement& element) {
        const QString strReference = AttributeText(element, "src");
        const QString strAlt = QString::fromUtf8(AttributeValue(element, "alt")).simplified();
        const int nWidth = Pixels(element, "width", m_nMaxWidth);
        const int nHeight = Pixels(element, "height");
        // Dots that held places open, and counters.
        if ((nWidth > 0 && nWidth <= 2) || (nHeight > 0 && nHeight <= 2) || strReference.isEmpty())
            return;
        const std::optional<ReadyPicture> picture = m_surroundings.Picture(strReference);
        if (!picture)
            return m_line.AddText(strAlt, m_style);
        if (picture->Width > 2 && picture->Height > 2)
            m_line.AddPicture(PictureHtml(*picture, strAlt, nWidth, nHeight, m_nMaxWidth), m_style);
    }

    void WriteDrawing(const GumboNode* pNode) {
        if (!m_surroundings.Drawing || CPageDrawings::IsStock(pNode))
            return;
        const std::optional<ReadyPicture> picture =
            m_surroundings.Drawing(m_drawings->Read(pNode, m_style.Color));
        const QString strTitle = TitleOf(pNode);
        if (!picture)
            return m_line.AddText(strTitle, m_style);
        const GumboElement& element = pNode->v.element;
        if (picture->Width > 2 && picture->Height > 2)
            m_line.AddPicture(PictureHtml(*picture, strTitle, Pixels(element, "width", m_nMaxWidth),
                                          Pixels(element, "height"), m_nMaxWidth),
                              m_style);
    }

    void WriteFormula(const GumboNode* pNode) {
        const QByteArray formula = FormulaMarkup(pNode);
        if (formula.isEmpty())
            m_line.AddText(TextBelow(pNode), m_style);
        else
            m_line.AddFormula(formula);
    }

    void WriteMedium(const GumboNode* pNode) {
        const QString strName = NameOfMedium(pNode);
        m_leftOut.append(strName);
        m_line.AddText(DocText::c_strMedium.arg(strName).trimmed(), m_style);
    }

    void WriteRule() {
        EndLine();
        if (!m_bPlain)
            m_out += "<div data-custom-style=\"Rule\"><p>&#160;</p></div>\n";
    }

    void WriteCode(const GumboNode* pNode) {
        EndLine();
        QString strCode = TextBelow(pNode);
        while (strCode.endsWith(u'\n'))
            strCode.chop(1);
        if (!strCode.trimmed().isEmpty())
            m_out += "<pre>" + MarkupText(strCode) + "</pre>\n";
        m_bPlain = false;
    }

    void WriteList(const GumboNode* pNode, const QByteArray& name) {
        EndLine();
        if (HoldsListsAlone(pNode))
            return WriteChildren(pNode);
        QByteArray open = "<ul>";
        if (name == "ol") {
            static const QSet<QByteArray> types = {"a", "A", "i", "I", "1"};
            const QByteArray type = AttributeValue(pNode->v.element, "type");
            const int nStart = AttributeValue(pNode->v.element, "start").toInt();
            open = "<ol";
            if (nStart > 1)
                open += " start=\"" + QByteArray::number(nStart) + '"';
            open += " type=\"" + (types.contains(type) ? type : "1") + "\">";
        }
        Open(open);
        const QByteArray styleBefore = std::exchange(m_paragraph, m_bTable ? m_paragraph : QByteArray());
        bool bItem = false;
        for (unsigned i = 0; i < pNode->v.element.children.length; ++i) {
            const GumboNode* pChild = ChildAt(pNode, i);
            if (IsBlank(pChild))
                continue;
            const QByteArray child = IsElement(pChild) ? TagName(pChild->v.element) : QByteArray();
            if (IsElement(pChild) && HtmlText::IsHint(pChild)) {
                m_bHint = true;
                continue;
            }
            // What stands between two points, most often a list within the list, belongs to the one before.
            if (!bItem || child == "li") {
                if (bItem)
                    m_out += "</li>\n";
                m_out += "<li>";
                m_bPlain = bItem = true;
            }
            if (child == "li") {
                m_line.AddMarkup(AnchorMarks(pChild->v.element));
                WriteChildren(pChild);
            } else {
                Write(pChild);
            }
            EndLine();
        }
        if (bItem)
            m_out += "</li>\n";
        m_paragraph = styleBefore;
        Close(name == "ol" ? "</ol>" : "</ul>");
    }

    static QByteArray TextStyle(const PageTable& table) {
        switch (table.Text) {
        case PageTable::EText::Small:
            return "Small Table Text";
        case PageTable::EText::Smallest:
            return "Smallest Table Text";
        default:
            return "Table Text";
        }
    }

    void WriteTable(const GumboNode* pNode) {
        EndLine();
        const PageTable table =
            ReadTable(pNode, [this](const GumboElement& element) { return WidthOfPicture(element); });
        if (table.Caption)
            WriteBlock(table.Caption, "center");
        if (table.IsLayout || m_bTable) {
            for (const PageTable::Row& row : table.Rows) {
                for (const PageTable::Cell& cell : row.Cells)
                    WriteBlock(cell.Node, "div");
            }
            return;
        }
        m_bTable = true;
        Open("<table><colgroup>");
        for (const double dShare : table.Shares)
            m_out += "<col style=\"width:" + QByteArray::number(dShare, 'f', 2) + "%\"/>";
        m_out += "</colgroup>\n";
        const QByteArray styleBefore = std::exchange(m_paragraph, TextStyle(table));
        const int nWidthBefore = m_nMaxWidth;
        for (qsizetype i = 0; i < table.Rows.size(); ++i) {
            if (i == 0)
                m_out += table.HeaderRows > 0 ? "<thead>" : "<tbody>";
            else if (i == table.HeaderRows)
                m_out += "</thead><tbody>";
            WriteRow(table, table.Rows[i], nWidthBefore, i < table.HeaderRows);
        }
        m_out += "</tbody>";
        m_nMaxWidth = nWidthBefore;
        m_paragraph = styleBefore;
        Close("</table>");
        m_bTable = false;
        m_out += "<div data-custom-style=\"Table End\"><p>&#160;</p></div>\n";
    }

    void WriteRow(const PageTable& table, const PageTable::Row& row, int nTableWidth, bool bHeader) {
        m_out += "<tr>";
        for (const PageTable::Cell& cell : row.Cells) {
            const QByteArray name = bHeader ? "th" : "td";
            m_out += '<' + name;
            if (cell.ColumnSpan > 1)
                m_out += " colspan=\"" + QByteArray::number(cell.ColumnSpan) + '"';
            if (cell.RowSpan > 1)
                m_out += " rowspan=\"" + QByteArray::number(cell.RowSpan) + '"';
            const QByteArray alignment = CellAlignment(cell.Node);
            if (!alignment.isEmpty() || cell.IsHeader || bHeader)
                m_out += " style=\"text-align:" + (alignment.isEmpty() ? "center" : alignment) + '"';
            m_out += '>';
            m_nMaxWidth = qMax(int(nTableWidth * table.ShareOf(cell) / 100) - c_nCellMargins, c_nLeastWidth);
            m_bPlain = true;
            const RunStyle before = m_style;
            // The style of the header's rows is bold already.
            m_style.Bold = m_style.Bold || (cell.IsHeader && !bHeader);
            TakeStyle(cell.Node->v.element, "td");
            m_line.AddMarkup(AnchorMarks(cell.Node->v.element));
            WriteChildren(cell.Node);
            EndLine();
            m_style = before;
            m_out += "</" + name + '>';
        }
        m_out += "</tr>\n";
    }

    /// Ends the paragraph, if there is anything in it.
    void EndLine() {
        const bool bPicture = m_line.HasPicture();
        const QByteArray line = m_line.Take();
        if (line.isEmpty())
            return;
        QByteArray style = m_paragraph;
        // Justified, or with the distance that lines of text have, it would stand in too much room.
        if (bPicture && !m_bPlain && (style.isEmpty() || style == "Centered" || style == c_firstLine))
            style = style == "Centered" ? "Centered Picture" : "Picture Line";
        if (m_bPlain && style.isEmpty())
            m_out += line;
        else if (!style.isEmpty())
            m_out += "<div data-custom-style=\"" + style + "\"><p>" + line + "</p></div>\n";
        else
            m_out += "<p>" + line + "</p>\n";
        m_bPlain = false;
    }

    void Open(const QByteArray& tag) {
        m_out += tag;
        m_bPlain = false;
    }
    void Close(const QByteArray& tag) {
        m_out += tag + '\n';
        m_bPlain = false;
    }

    static constexpr char c_firstLine[] = "First Line Indented";
    static constexpr int c_nCellMargins = 12;
    static constexpr int c_nLeastWidth = 24;

    const PageSurroundings& m_surroundings;
    QSet<QString> m_anchors;
    PageAnchors::CNames m_names;
    bool m_bScript = false;
    std::optional<CPageDrawings> m_drawings;
    QByteArray m_out;
    QStringList m_leftOut;
    QStringList m_deadLinks;
    bool m_bHint = false;
    QSet<QByteArray> m_colors;
    CTextLine m_line;
    RunStyle m_style;
    /// The style of the paragraphs that are being written; empty for the plain one.
    QByteArray m_paragraph;
    bool m_bHeading = false;
    bool m_bTable = false;
    bool m_bRightToLeft = false;
    /// The first line of a point or a cell is no paragraph of its own, which sets it closer.
    bool m_bPlain = false;
    int m_nMaxWidth = c_nPaperWidth;
};

} // namespace

QByteArray MarkupText(const QString& strText) {
    QString strKept;
    strKept.reserve(strText.size());
    for (const QChar c : strText) {
        const char16_t n = c.unicode();
        if ((n >= 0x20 || n == u'\t' || n == u'\n') && n != 0xfffe && n != 0xffff)
            strKept += c;
    }
    return strKept.toHtmlEscaped().toUtf8();
}

QByteArray PictureHtml(const ReadyPicture& picture, const QString& strAlt, int nWidth, int nHeight,
                       int nMaxWidth) {
    double dWidth = nWidth;
    double dHeight = nHeight;
    if (nWidth == 0 && nHeight == 0)
        dWidth = picture.Width;
    if (dWidth == 0)
        dWidth = dHeight * picture.Width / picture.Height;
    if (dHeight == 0)
        dHeight = dWidth * picture.Height / picture.Width;
    const double dScale = qMin(1.0, qMin(nMaxWidth / dWidth, c_nPaperHeight / dHeight));
    return "<img src=\"" + picture.Name.toUtf8() + "\" alt=\"" + MarkupText(strAlt) + "\" width=\"" +
           QByteArray::number(qMax(1, qRound(dWidth * dScale))) + "\" height=\"" +
           QByteArray::number(qMax(1, qRound(dHeight * dScale))) + "\"/>";
}

std::optional<PrintedPage> ReadPrintedPage(const QString& strPage, const PageSurroundings& surroundings) {
    const QByteArray html = strPage.toUtf8();
    if (IsTooDeep(html))
        return std::nullopt;
    const Tree tree = Parse(html);
    if (IsDeep(tree->root))
        return std::nullopt;
    QStringList anchors;
    for (const PageAnchors::Anchor& anchor : PageAnchors::Find(strPage))
        anchors.append(anchor.strName);
    return CPageWriter(surroundings)
        .WritePage(tree->root, anchors, strPage.contains("<script"_L1, Qt::CaseInsensitive));
}
