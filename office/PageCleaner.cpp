#include "office/PageCleaner.h"

#include "foundation/HtmlTree.h"
#include "office/ListLabels.h"
#include "office/Parts.h"
#include "office/Texts.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;
using namespace HtmlTree;

namespace Torvane::Office {
namespace {

bool IsBlankText(const GumboNode* pNode) {
    return pNode->type == GUMBO_NODE_WHITESPACE || pNode->type == GUMBO_NODE_COMMENT ||
           (pNode->type == GUMBO_NODE_TEXT && QString::fromUtf8(pNode->v.text.text).trimmed().isEmpty());
}

bool IsBlank(const GumboNode* pElement) {
    for (unsigned i = 0; i < pElement->v.element.children.length; ++i) {
        if (!IsBlankText(ChildAt(pElement, i)))
            return false;
    }
    return true;
}

bool IsList(const QByteArray& name) {
    return name == "ol" || name == "ul";
}

bool IsHeading(const QByteArray& name) {
    return name.size() == 2 && name[0] == 'h' && name[1] >= '1' && name[1] <= '6';
}

/// A list that holds headings alone: the converter writes one around each heading that has a number of its
/// own, and each would begin with 1.
bool IsListOfHeadings(const GumboNode* pNode) {
    bool bAny = false;
    for (unsigned i = 0; i < pNode->v.element.children.length; ++i) {
        const GumboNode* pChild = ChildAt(pNode, i);
        if (IsBlankText(pChild))
            continue;
        if (!IsElement(pChild))
            return false;
        const QByteArray name = TagName(pChild->v.element);
        if (!IsHeading(name) && !((IsList(name) || name == "li") && IsListOfHeadings(pChild)))
            return false;
        bAny = true;
    }
    return bAny;
}

/// The text of a list item's first paragraph.
QString FirstLine(const GumboNode* pItem) {
    QString strText;
    for (unsigned i = 0; i < pItem->v.element.children.length; ++i) {
        const GumboNode* pChild = ChildAt(pItem, i);
        const QByteArray name = IsElement(pChild) ? TagName(pChild->v.element) : QByteArray();
        if (name == "p" || IsHeading(name))
            return strText.trimmed().isEmpty() ? TextOf(pChild) : strText;
        if (IsList(name))
            break;
        strText += TextOf(pChild);
    }
    return strText;
}

/// A field that the converter shows on a grey ground, as its own windows do.
bool IsShadedField(const GumboNode* pNode) {
    const GumboVector& children = pNode->v.element.children;
    const GumboNode* pOnly = children.length == 1 ? ChildAt(pNode, 0) : nullptr;
    while (pOnly && IsElement(pOnly) && TagName(pOnly->v.element) != "sdfield")
        pOnly = pOnly->v.element.children.length == 1 ? ChildAt(pOnly, 0) : nullptr;
    return pOnly && IsElement(pOnly) && TagName(pNode->v.element) == "span";
}

/// Gone with all that they hold.
bool IsDropped(const GumboElement& element, const QByteArray& name) {
    static const QSet<QByteArray> names = {
        "script", "style",    "object", "applet", "embed",  "iframe", "frame",  "frameset", "noframes",
        "input",  "select",   "button", "meta",   "link",   "base",   "title",  "comment",  "noscript",
        "svg",    "textarea", "audio",  "video",  "canvas", "math",   "option", "param",    "bgsound"};
    if (names.contains(name) || element.tag_namespace != GUMBO_NAMESPACE_HTML)
        return true;
    const QString strTitle = AttributeText(element, "title");
    return name == "div" && (strTitle == u"header" || strTitle == u"footer");
}

/// What an element is written as; empty when only its content is.
QByteArray KeptName(const QByteArray& name) {
    static const QHash<QByteArray, QByteArray> others = {
        {"center", "div"}, {"strike", "s"}, {"tt", "code"}, {"font", "span"}, {"big", "span"}};
    static const QSet<QByteArray> names = {
        "a",   "abbr", "address", "b",     "blockquote", "br",    "caption", "cite", "code", "col", "dd",
        "del", "dfn",  "div",     "dl",    "dt",         "em",    "h1",      "h2",   "h3",   "h4",  "h5",
        "h6",  "hr",   "i",       "img",   "ins",        "kbd",   "li",      "ol",   "p",    "pre", "q",
        "s",   "samp", "small",   "span",  "strong",     "sub",   "sup",     "td",   "th",   "tr",  "u",
        "ul",  "var",  "table",   "tbody", "colgroup",   "tfoot", "thead"};
    if (const auto it = others.find(name); it != others.end())
        return *it;
    return names.contains(name) ? name : QByteArray();
}

/// "120" and "50%" as lengths of a style; empty for anything else.
QString Length(const QString& strValue) {
    const bool bShare = strValue.endsWith(u'%');
    bool bNumber = false;
    const int nValue = (bShare ? strValue.chopped(1) : strValue).toInt(&bNumber);
    return bNumber && nValue > 0 && nValue < 10000 ? QString::number(nValue) + (bShare ? u"%"_s : u"px"_s)
                                                   : QString();
}

QString FontSize(const QString& strSize) {
    static const QStringList sizes = {u"7.5pt"_s, u"10pt"_s, u"12pt"_s, u"13.5pt"_s,
                                      u"18pt"_s,  u"24pt"_s, u"36pt"_s};
    const int nSize = strSize.toInt();
    return nSize >= 1 && nSize <= sizes.size() ? sizes[nSize - 1] : QString();
}

/// The style that an element's attributes of the old kind mean, and its own.
QString StyleOf(EKind eKind, const GumboElement& element, const QByteArray& name) {
    QStringList style;
    const auto add = [&](const QString& strProperty, const QString& strValue) {
        if (!strValue.isEmpty())
            style.append(strProperty + u':' + strValue);
    };
    const QString strAlign = AttributeText(element, "align").toLower();
    if (name == "img") {
        add(u"float"_s, strAlign == u"left" || strAlign == u"right" ? strAlign : QString());
    } else if (name == "table") {
        if (strAlign == u"center")
            style.append(u"margin-left: auto; margin-right: auto"_s);
        add(u"width"_s, Length(AttributeText(element, "width")));
    } else {
        add(u"text-align"_s, name == "center" ? u"center"_s : strAlign == u"left" ? QString() : strAlign);
        const QString strVertical = AttributeText(element, "valign").toLower();
        // Where a sheet's cells stand anyway.
        if (eKind != EKind::Sheet || strVertical != u"bottom")
            add(u"vertical-align"_s, strVertical);
        if (name == "td" || name == "th" || name == "col" || name == "colgroup")
            add(u"width"_s, Length(AttributeText(element, "width")));
    }
    add(u"background-color"_s, AttributeText(element, "bgcolor"));
    if (name == "big")
        add(u"font-size"_s, u"larger"_s);
    if (name == "font") {
        add(u"color"_s, AttributeText(element, "color"));
        add(u"font-family"_s, AttributeText(element, "face"));
        // Beside a size of the old kind stands the exact one, if it differs.
        if (!AttributeText(element, "style").contains(u"font-size"))
            add(u"font-size"_s, FontSize(AttributeText(element, "size")));
    }
    QString strOwn = AttributeText(element, "style");
    // A sheet's cells have the heights of their lines.
    if (eKind == EKind::Sheet && (name == "td" || name == "tr"))
        strOwn.remove(u"height"_s);
    style.append(strOwn);
    return CleanStyle(style.join(u';'));
}

/// Attributes that keep their name and value.
bool IsKeptAttribute(const QByteArray& element, const QByteArray& name) {
    if (name == "colspan" || name == "rowspan")
        return element == "td" || element == "th";
    if (name == "span")
        return element == "col" || element == "colgroup";
    if (name == "start" || name == "type")
        return element == "ol";
    return name == "dir" || name == "alt" || (name == "class" && element != "span");
}

/// What a picture tells of itself; the converter's own numbering of shapes and pictures tells nothing.
QString AltOf(const GumboElement& element) {
    static const QRegularExpression ownName(u"^(Shape|Image|Picture|Frame|Graphic|Object|graphics) ?\\d*$"_s);
    const QString strAlt = AttributeText(element, "alt");
    return ownName.match(strAlt).hasMatch() ? QString() : strAlt;
}

class CCleaner {
public:
    CCleaner(EKind eKind, const PictureNamer& pictures, const QString& strPlainText, const MayGoOn& mayGoOn)
        : m_eKind(eKind), m_pictures(pictures), m_labels(strPlainText), m_mayGoOn(mayGoOn) {}

    void WriteChildren(const GumboNode* pNode, QByteArray& out) {
        for (unsigned i = 0; i < pNode->v.element.children.length; ++i)
            Write(ChildAt(pNode, i), out);
    }

    struct Sheet {
        QByteArray id;
        QString strName;
    };
    const QList<Sheet>& Sheets() const { return m_sheets; }
    bool IsStopped() const { return m_bStopped; }

private:
    void Write(const GumboNode* pNode, QByteArray& out) {
        constexpr int c_nNodesAtOnce = 64;
        if (++m_nNodes % c_nNodesAtOnce == 0)
            m_bStopped = m_bStopped || !m_mayGoOn();
        if (m_bStopped)
            return;
        if (IsElement(pNode))
            return WriteElement(pNode, out);
        if (pNode->type == GUMBO_NODE_COMMENT)
            return;
        QString strText = QString::fromUtf8(pNode->v.text.text);
        // The converter begins a line behind each picture, also in the middle of a word.
        if (strText.startsWith(u'\n') && m_bAfterPicture) {
            qsizetype nText = 0;
            while (nText < strText.size() && strText[nText].isSpace())
                ++nText;
            strText.remove(0, nText);
        }
        m_bAfterPicture = m_bAfterPicture && strText.isEmpty();
        out += strText.toHtmlEscaped().toUtf8();
    }

    void WriteElement(const GumboNode* pNode, QByteArray& out) {
        const GumboElement& element = pNode->v.element;
        const QByteArray name = TagName(element);
        if (IsDropped(element, name) || (m_eKind == EKind::Sheet && WriteSheetPart(pNode, name, out)))
            return;
        if (name == "img")
            return WritePicture(element, out);
        if (name == "ol" || name == "ul" || name == "li")
            return WriteListPart(pNode, name, out);
        const QByteArray kept = KeptName(name);
        // One that the converter ended twice; a blank line of the document holds a break.
        if (name == "p" && IsBlank(pNode))
            return;
        m_bAfterPicture = false;
        const QByteArray attributes =
            kept.isEmpty() || IsShadedField(pNode) ? QByteArray() : Attributes(element, name);
        // An element that only carries attributes is nothing without one.
        if (kept.isEmpty() || (attributes.isEmpty() && (kept == "span" || kept == "a")))
            return WriteChildren(pNode, out);
        out += '<' + kept + attributes + '>';
        if (IsHeading(kept)) {
            out += m_headingLabel;
            m_headingLabel.clear();
        }
        if (IsVoid(kept))
            return;
        WriteChildren(pNode, out);
        out += "</" + kept + '>';
    }

    void WriteListPart(const GumboNode* pNode, const QByteArray& name, QByteArray& out) {
        const bool bHeadings = IsListOfHeadings(pNode);
        QByteArray attributes = Attributes(pNode->v.element, name);
        if (name == "li" && TagName(pNode->parent->v.element) == "ol") {
            const QString strLabel = m_labels.Take(FirstLine(pNode));
            bool bNumber = false;
            const int nValue = strLabel.endsWith(u'.') ? strLabel.chopped(1).toInt(&bNumber) : 0;
            if (bHeadings && !strLabel.isEmpty())
                m_headingLabel = strLabel.toUtf8() + ' ';
            else if (bNumber)
                attributes += " value=\"" + QByteArray::number(nValue) + '"';
            else if (!strLabel.isEmpty())
                attributes += " style=\"list-style-type: '" + strLabel.toUtf8() + " '\"";
        }
        if (bHeadings)
            return WriteChildren(pNode, out);
        out += '<' + name + attributes + '>';
        WriteChildren(pNode, out);
        out += "</" + name + '>';
    }

    QByteArray Attributes(const GumboElement& element, const QByteArray& name) {
        QByteArray out;
        const auto add = [&out](const char* szName, const QString& strValue) {
            if (!strValue.isEmpty())
                out += ' ' + QByteArray(szName) + "=\"" + strValue.toHtmlEscaped().toUtf8() + '"';
        };
        const QString strId = AttributeText(element, "id");
        add("id", strId.isEmpty() && name == "a" ? AttributeText(element, "name") : strId);
        for (unsigned i = 0; i < element.attributes.length; ++i) {
            const auto* pAttribute = static_cast<const GumboAttribute*>(element.attributes.data[i]);
            if (IsKeptAttribute(name, pAttribute->name))
                add(pAttribute->name, QString::fromUtf8(pAttribute->value));
        }
        const QString strAddress = AttributeText(element, "href");
        if (name == "a" && IsKeptLink(strAddress))
            add("href", strAddress);
        if (name == "table" && AttributeText(element, "border").toInt() > 0)
            add("border", u"1"_s);
        add("style", StyleOf(m_eKind, element, name));
        return out;
    }

    void WritePicture(const GumboElement& element, QByteArray& out) {
        const QString strAlt = AltOf(element);
        m_bAfterPicture = true;
        const QString strName = m_pictures(AttributeText(element, "src"));
        if (strName.isEmpty()) {
            out += strAlt.toHtmlEscaped().toUtf8();
            return;
        }
        out += "<img src=\"" + strName.toHtmlEscaped().toUtf8() + "\" alt=\"" +
               strAlt.toHtmlEscaped().toUtf8() + '"';
        for (const char* szName : {"width", "height"}) {
            const QString strValue = AttributeText(element, szName);
            if (Length(strValue).endsWith(u"px"))
                out += ' ' + QByteArray(szName) + "=\"" + strValue.toUtf8() + '"';
        }
        const QString strStyle = StyleOf(m_eKind, element, "img");
        if (!strStyle.isEmpty())
            out += " style=\"" + strStyle.toHtmlEscaped().toUtf8() + '"';
        out += '>';
    }

    /// What a workbook has beside its tables: an overview in the converter's language, which makes room for
    /// the page's own, and a heading before each sheet. True when it is written or left out.
    bool WriteSheetPart(const GumboNode* pNode, const QByteArray& name, QByteArray& out) {
        if (name == "hr" || (name == "a" && AttributeValue(pNode->v.element, "class").contains("comment")))
            return true;
        if (name == "table") {
            m_bInTable = true;
            out += "<div class=\"wide\"><table" + Attributes(pNode->v.element, name) + '>';
            WriteChildren(pNode, out);
            out += "</table></div>\n";
            m_bInTable = false;
            return true;
        }
        if (m_bInTable)
            return false;
        // The overview is the one thing that is centred.
        if (name == "center" || (name == "p" && TextOf(pNode).trimmed().isEmpty()))
            return true;
        const QByteArray id = AttributeValue(pNode->v.element, "name");
        if (name != "a" || !id.startsWith("table"))
            return false;
        // "Sheet 1: name"
        const QString strName = TextOf(pNode).section(u':', 1).trimmed();
        m_sheets.append({id, strName});
        out += "<h2 id=\"" + QString::fromUtf8(id).toHtmlEscaped().toUtf8() + "\">" +
               strName.toHtmlEscaped().toUtf8() + "</h2>\n";
        return true;
    }

    EKind m_eKind;
    const PictureNamer& m_pictures;
    CListLabels m_labels;
    QByteArray m_headingLabel;
    bool m_bAfterPicture = false;
    QList<Sheet> m_sheets;
    bool m_bInTable = false;
    const MayGoOn& m_mayGoOn;
    quint64 m_nNodes = 0;
    bool m_bStopped = false;
};

/// The page's own style sheet: the rules of its paragraphs and headings.
QByteArray CleanSheet(const QString& strSheet) {
    QByteArray out;
    qsizetype nAt = 0;
    for (;;) {
        const qsizetype nOpen = strSheet.indexOf(u'{', nAt);
        const qsizetype nClose = strSheet.indexOf(u'}', nOpen);
        if (nOpen < 0 || nClose < 0)
            return out;
        const QString strSelector = strSheet.mid(nAt, nOpen - nAt).simplified();
        const QString strStyle = CleanStyle(strSheet.mid(nOpen + 1, nClose - nOpen - 1));
        nAt = nClose + 1;
        bool bPlain = !strSelector.isEmpty() && !strStyle.isEmpty();
        for (const QChar c : strSelector)
            bPlain = bPlain && (c.isLetterOrNumber() || u" .,:-_"_s.contains(c));
        if (bPlain)
            out += (strSelector + u" { "_s + strStyle + u" }\n"_s).toUtf8();
    }
}

QByteArray StyleSheets(const Tree& tree) {
    QByteArray out;
    ForEachElement(tree->root, [&](const GumboNode* pNode) {
        const GumboElement& element = pNode->v.element;
        if (element.tag == GUMBO_TAG_STYLE && element.children.length == 1)
            out += CleanSheet(QString::fromUtf8(ChildAt(pNode, 0)->v.text.text));
    });
    return out;
}

QByteArray JumpList(const CCleaner& cleaner) {
    if (cleaner.Sheets().size() < 2)
        return {};
    QByteArray out = "<nav aria-label=\"" + Texts::c_strSheets.toUtf8() + "\"><ul>";
    for (const auto& sheet : cleaner.Sheets())
        out += "<li><a href=\"#" + sheet.id.toPercentEncoding() + "\">" +
               sheet.strName.toHtmlEscaped().toUtf8() + "</a></li>";
    return out + "</ul></nav>\n";
}

} // namespace

std::optional<QByteArray> CleanPage(EKind eKind, const QByteArray& html, const QString& strTitle,
                                    const PictureNamer& pictures, const QString& strPlainText,
                                    const MayGoOn& mayGoOn) {
    const MayGoOn ask = [&mayGoOn] { return !mayGoOn || mayGoOn(); };
    if (!ask() || IsTooDeep(html) || !ask())
        return std::nullopt;
    const Tree tree = Parse(html);
    if (!ask())
        return std::nullopt;
    CCleaner cleaner(eKind, pictures, strPlainText, ask);
    QByteArray body;
    for (unsigned i = 0; i < tree->root->v.element.children.length; ++i) {
        const GumboNode* pChild = ChildAt(tree->root, i);
        if (IsElement(pChild) && pChild->v.element.tag == GUMBO_TAG_BODY)
            cleaner.WriteChildren(pChild, body);
    }
    if (cleaner.IsStopped() || !ask())
        return std::nullopt;
    const bool bSheet = eKind == EKind::Sheet;
    return Part(bSheet ? u"sheet.htm"_s : u"document.htm"_s,
                {{"TITLE", strTitle.toHtmlEscaped().toUtf8()},
                 {"STYLE", bSheet ? QByteArray() : StyleSheets(tree)},
                 {"JUMPS", JumpList(cleaner)},
                 {"BODY", body}});
}

} // namespace Torvane::Office
