#include "companions/docexport/TextLine.h"

#include "companions/docexport/PaperColor.h"
#include "companions/docexport/PrintedPage.h"
#include "foundation/HtmlTree.h"

using namespace Qt::StringLiterals;
using namespace HtmlTree;

namespace {

bool IsChinese(QChar c) {
    return c.unicode() >= 0x2e80 && !c.isSurrogate();
}

QByteArray ClosingTags(const QByteArray& open) {
    QByteArray closing;
    const QList<QByteArray> tags = open.split('<');
    for (const QByteArray& tag : tags) {
        const qsizetype nEnd = qMin(tag.indexOf(' ') < 0 ? tag.size() : tag.indexOf(' '), tag.indexOf('>'));
        if (nEnd > 0)
            closing.prepend("</" + tag.left(nEnd) + '>');
    }
    return closing;
}

QByteArray OpeningTags(const RunStyle& style) {
    QByteArray open;
    const auto add = [&open](bool bWanted, const char* szTag) {
        if (bWanted)
            open += szTag;
    };
    if (!style.Link.isEmpty())
        open += "<a href=\"" + MarkupText(style.Link) + "\">";
    if (!style.Color.isEmpty() && style.Link.isEmpty())
        open += "<span data-custom-style=\"Color " + style.Color + "\">";
    add(style.Bold, "<strong>");
    add(style.Italic, "<em>");
    add(style.Underlined && style.Link.isEmpty(), "<u>");
    add(style.Struck, "<s>");
    add(style.Lowered, "<sub>");
    add(style.Raised, "<sup>");
    add(style.Code, "<code>");
    return open;
}

} // namespace

QString StyleValue(const GumboElement& element, const QString& strProperty) {
    const QStringList declarations =
        QString::fromUtf8(AttributeValue(element, "style")).toLower().split(u';');
    QString strValue;
    for (const QString& strDeclaration : declarations) {
        const qsizetype nColon = strDeclaration.indexOf(u':');
        if (nColon > 0 && strDeclaration.left(nColon).trimmed() == strProperty)
            strValue = strDeclaration.mid(nColon + 1).remove("!important"_L1).trimmed();
    }
    return strValue;
}

QByteArray AlignmentOf(const GumboElement& element) {
    const QString strStyle = StyleValue(element, u"text-align"_s);
    const QByteArray value =
        strStyle.isEmpty() ? AttributeValue(element, "align").trimmed().toLower() : strStyle.toLatin1();
    return value == "left" || value == "center" || value == "right" || value == "justify" ? value
                                                                                          : QByteArray();
}

bool IsBlank(const GumboNode* pNode) {
    return pNode->type == GUMBO_NODE_WHITESPACE || pNode->type == GUMBO_NODE_COMMENT ||
           (pNode->type == GUMBO_NODE_TEXT && QString::fromUtf8(pNode->v.text.text).trimmed().isEmpty());
}

QString TextBelow(const GumboNode* pNode) {
    if (!IsElement(pNode))
        return pNode->type == GUMBO_NODE_COMMENT ? QString() : QString::fromUtf8(pNode->v.text.text);
    if (pNode->v.element.tag == GUMBO_TAG_BR)
        return u"\n"_s;
    QString strText;
    for (unsigned i = 0; i < pNode->v.element.children.length; ++i)
        strText += TextBelow(ChildAt(pNode, i));
    return strText;
}

void RunStyle::TakeColor(const QString& strColor) {
    if (!strColor.isEmpty() && strColor != "inherit"_L1)
        Color = PaperColor(strColor);
}

void RunStyle::Take(const GumboElement& element, const QByteArray& name) {
    if (name == "b" || name == "strong")
        Bold = true;
    else if (name == "i" || name == "em" || name == "cite" || name == "var" || name == "dfn")
        Italic = true;
    else if (name == "u" || name == "ins")
        Underlined = true;
    else if (name == "s" || name == "strike" || name == "del")
        Struck = true;
    else if (name == "sub")
        Lowered = true;
    else if (name == "sup")
        Raised = true;
    else if (name == "code" || name == "tt" || name == "kbd" || name == "samp")
        Code = true;
    else if (name == "font")
        TakeColor(AttributeText(element, "color"));
    if (AttributeValue(element, "style").isEmpty())
        return;
    TakeColor(StyleValue(element, u"color"_s));
    const QString strWeight = StyleValue(element, u"font-weight"_s);
    if (!strWeight.isEmpty())
        Bold = strWeight.startsWith("bold"_L1) || strWeight.toInt() >= 600;
    const QString strSlant = StyleValue(element, u"font-style"_s);
    if (!strSlant.isEmpty())
        Italic = strSlant == "italic"_L1 || strSlant == "oblique"_L1;
    const QString strDecoration = StyleValue(element, u"text-decoration"_s);
    Underlined = Underlined || strDecoration.contains("underline"_L1);
    Struck = Struck || strDecoration.contains("line-through"_L1);
    const QString strVertical = StyleValue(element, u"vertical-align"_s);
    Lowered = Lowered || strVertical == "sub"_L1;
    Raised = Raised || strVertical == "super"_L1;
}

void CTextLine::Begin(const RunStyle& style) {
    if (style == m_style)
        return;
    m_markup += ClosingTags(m_open);
    m_open = OpeningTags(style);
    m_markup += m_open;
    m_style = style;
}

void CTextLine::AddText(const QString& strText, const RunStyle& style) {
    QString strRun;
    for (const QChar c : strText) {
        if (c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f') {
            m_bBlank = true;
            m_bLineEnd = m_bLineEnd || c == u'\n';
            continue;
        }
        const bool bJoined = m_bLineEnd && IsChinese(m_last) && IsChinese(c);
        if (m_bBlank && !m_last.isNull() && !bJoined)
            strRun += u' ';
        m_bBlank = m_bLineEnd = false;
        strRun += c;
        m_last = c;
        m_bAny = m_bAny || !c.isSpace();
    }
    if (strRun.isEmpty())
        return;
    Begin(style);
    m_markup += MarkupText(strRun);
}

void CTextLine::AddPicture(const QByteArray& markup, const RunStyle& style) {
    RunStyle plain;
    plain.Link = style.Link;
    AddObject(markup, plain);
    m_bPicture = true;
}

void CTextLine::AddFormula(const QByteArray& markup) {
    AddObject(markup, {});
}

void CTextLine::AddObject(const QByteArray& markup, const RunStyle& style) {
    if (m_bBlank && !m_last.isNull())
        m_markup += ' ';
    m_bBlank = m_bLineEnd = false;
    Begin(style);
    m_markup += markup;
    m_last = QChar::ObjectReplacementCharacter;
    m_bAny = true;
}

void CTextLine::AddMarkup(const QByteArray& markup) {
    if (markup.isEmpty())
        return;
    Begin({});
    m_markup += markup;
    m_marks += markup;
}

QByteArray CTextLine::Take() {
    Begin({});
    QByteArray line;
    if (m_bAny) {
        line = std::exchange(m_markup, QByteArray());
        m_marks.clear();
    } else {
        m_markup = m_marks;
    }
    m_bAny = m_bPicture = m_bBlank = m_bLineEnd = false;
    m_last = QChar();
    return line;
}
