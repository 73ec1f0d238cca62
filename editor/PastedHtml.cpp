#include "editor/PastedHtml.h"

#include "editor/PastedElements.h"
#include "editor/PastedLists.h"
#include "editor/PastedStyle.h"
#include "editor/PastedText.h"
#include "foundation/HtmlTree.h"
#include "office/PageCleaner.h"

#include <QSet>

using namespace Qt::StringLiterals;
using namespace HtmlTree;

namespace PastedHtml {

namespace {

/// Beyond this a browser takes too long to take it in. Pictures that are their own text count.
constexpr qsizetype c_nMaxCharacters = 30'000'000;
constexpr int c_nMaxElements = 50'000;
/// A parsed tree is a hundred times as large as its tags. An element has two, and there are remarks.
constexpr qsizetype c_nMaxTags = 5 * c_nMaxElements;
constexpr int c_nMaxSpan = 1000;

struct Context {
    /// How the text shall look, and what of that the elements around already say.
    Format wanted;
    Format applied;
    bool bKeepsBlanks = false;
    bool bPreformatted = false;
    bool bInItem = false;
};

/// What an element's own name means.
void ApplyName(const GumboElement& element, const QByteArray& name, Format& format) {
    if (name == "b" || name == "strong")
        format.bBold = true;
    else if (name == "i" || name == "em" || name == "cite" || name == "var" || name == "dfn")
        format.bItalic = true;
    else if (name == "u" || name == "ins")
        format.bUnderline = name == "u" || format.bUnderline;
    else if (name == "s" || name == "strike" || name == "del")
        format.bStrike = true;
    else if (name == "sup" || name == "sub")
        format.Vertical = name == "sup" ? Format::EVertical::Super : Format::EVertical::Sub;
    else if (name == "mark")
        format.strHighlight = u"#ffff00"_s;
    if (const QString strColour = AttributeText(element, "color"); name == "font" && !strColour.isEmpty())
        format.strColour = ChosenColour(strColour);
}

class CCleaner {
public:
    CCleaner(const GumboNode* pRoot, const PictureNamer& pictures) : m_sheet(pRoot), m_pictures(pictures) {
        FindBlocks(pRoot);
        HtmlTree::ForEachElement(pRoot, [this](const GumboNode* pNode) {
            const GumboElement& element = pNode->v.element;
            m_bBlankLineEnds =
                m_bBlankLineEnds || (element.tag == GUMBO_TAG_META &&
                                     AttributeText(element, "content").startsWith(u"LibreOffice"));
        });
    }
    bool IsTooLong() const { return m_nElements > c_nMaxElements; }

    Fragment Take(const GumboNode* pBody) {
        WriteChildren(pBody, {});
        return {std::move(m_strOut).trimmed(), m_bText};
    }

private:
    bool FindBlocks(const GumboNode* pNode) {
        if (!IsElement(pNode))
            return false;
        ++m_nElements;
        bool bInside = false;
        for (unsigned i = 0; i < pNode->v.element.children.length; ++i)
            bInside = FindBlocks(ChildAt(pNode, i)) || bInside;
        if (bInside)
            m_withBlocks.insert(pNode);
        return bInside || IsBlock(TagName(pNode->v.element));
    }

    CDeclarations DeclarationsOf(const GumboElement& element) const {
        return m_sheet.Of(element, AttributeText(element, "class"));
    }

    /// Writes an element, or nothing where nothing stands in it.
    template <class Write>
    void Enclose(const QString& strOpen, const QString& strClose, bool bBlock, const Write& write,
                 bool bEvenEmpty = false) {
        if (bBlock && m_strOut.endsWith(u' '))
            m_strOut.chop(1);
        const qsizetype nBefore = m_strOut.size();
        const bool bWasFresh = m_bFresh;
        m_strOut += strOpen;
        m_bFresh = m_bFresh || bBlock;
        const qsizetype nInside = m_strOut.size();
        write();
        if (bBlock && m_strOut.size() > nInside && m_strOut.endsWith(u' '))
            m_strOut.chop(1);
        if (m_strOut.size() == nInside && !bEvenEmpty) {
            m_strOut.truncate(nBefore);
            m_bFresh = bWasFresh;
            return;
        }
        m_strOut += strClose;
        m_bFresh = bBlock || (m_bFresh && m_strOut.size() == nInside);
    }

    /// Writes with the looks that are still wanted around.
    template <class Write>
    void Around(const Context& context, const Write& write) {
        QString strOpen, strClose;
        const auto add = [&](bool bAdd, const QString& strTag, const QString& strAttributes = {}) {
            if (!bAdd)
                return;
            strOpen += u'<' + strTag + strAttributes + u'>';
            strClose.prepend(u"</"_s + strTag + u'>');
        };
        const Format& wanted = context.wanted;
        const Format& applied = context.applied;
        add(!wanted.strColour.isEmpty() && wanted.strColour != applied.strColour, u"font"_s,
            u" color=\"%1\""_s.arg(wanted.strColour));
        add(!wanted.strHighlight.isEmpty() && wanted.strHighlight != applied.strHighlight, u"span"_s,
            u" style=\"background-color: %1\""_s.arg(wanted.strHighlight));
        add(wanted.bBold && !applied.bBold, u"b"_s);
        add(wanted.bItalic && !applied.bItalic, u"i"_s);
        add(wanted.bUnderline && !applied.bUnderline, u"u"_s);
        add(wanted.bStrike && !applied.bStrike, u"strike"_s);
        const bool bMoved = wanted.Vertical != applied.Vertical;
        add(bMoved && wanted.Vertical == Format::EVertical::Super, u"sup"_s);
        add(bMoved && wanted.Vertical == Format::EVertical::Sub, u"sub"_s);
        Context inside = context;
        inside.applied = inside.wanted;
        if (strOpen.isEmpty())
            return write(inside);
        Enclose(strOpen, strClose, false, [&] { write(inside); });
    }

    /// The children with the looks around them; each paragraph within says its own.
    void WriteStyled(const GumboNode* pNode, const Context& context) {
        if (m_withBlocks.contains(pNode))
            return WriteChildren(pNode, context);
        Around(context, [&](const Context& inside) { WriteChildren(pNode, inside); });
    }

    void WriteChildren(const GumboNode* pNode, const Context& context) {
        const unsigned nChildren = pNode->v.element.children.length;
        for (unsigned i = 0; i < nChildren; ++i) {
            const GumboNode* pChild = ChildAt(pNode, i);
            auto item = context.bInItem ? std::nullopt : ReadOfficeItem(pChild);
            if (!item) {
                Write(pChild, context);
                continue;
            }
            QList<OfficeItem> items;
            for (unsigned j = i; j < nChildren; ++j) {
                if (IsBlank(ChildAt(pNode, j)))
                    continue;
                item = ReadOfficeItem(ChildAt(pNode, j));
                if (!item)
                    break;
                items.append(*item);
                i = j;
            }
            qsizetype nFirst = 0;
            while (nFirst < items.size())
                WriteOfficeList(items, nFirst, context);
        }
    }

    /// One list, with the deeper ones in it, and the index behind it.
    void WriteOfficeList(const QList<OfficeItem>& items, qsizetype& nAt, const Context& context) {
        const OfficeItem first = items[nAt];
        const QString strTag = first.bOrdered ? u"ol"_s : u"ul"_s;
        QString strOpen = u'<' + strTag;
        if (first.bOrdered && !first.cType.isNull())
            strOpen += u" type=\""_s + first.cType + u'"';
        if (first.bOrdered && first.nNumber != 1)
            strOpen += u" start=\"%1\""_s.arg(first.nNumber);
        const auto isNext = [&] {
            return nAt < items.size() && items[nAt].nLevel == first.nLevel &&
                   items[nAt].bOrdered == first.bOrdered && items[nAt].cType == first.cType;
        };
        Enclose(strOpen + u'>', u"</"_s + strTag + u'>', true, [&] {
            while (isNext()) {
                Enclose(
                    u"<li>"_s, u"</li>"_s, true,
                    [&] {
                        Context inside = context;
                        inside.bInItem = true;
                        WriteInner(items[nAt].pNode, inside);
                        ++nAt;
                        while (nAt < items.size() && items[nAt].nLevel > first.nLevel)
                            WriteOfficeList(items, nAt, context);
                    },
                    true);
            }
        });
    }

    /// What stands in a block, with the looks that its style gives it.
    void WriteInner(const GumboNode* pNode, Context context) {
        DeclarationsOf(pNode->v.element).Apply(context.wanted);
        WriteStyled(pNode, context);
    }

    void Write(const GumboNode* pNode, const Context& context) {
        if (IsElement(pNode))
            WriteElement(pNode, context);
        else if (pNode->type != GUMBO_NODE_COMMENT)
            WriteText(QString::fromUtf8(pNode->v.text.text), context);
    }

    void WriteText(QString strText, const Context& context) {
        DropJunk(strText);
        if (context.bKeepsBlanks && !context.bPreformatted)
            strText = WithBlanks(strText);
        else if (!context.bPreformatted)
            strText = Flowing(strText, m_bBlankLineEnds);
        if (m_bFresh && !context.bPreformatted) {
            qsizetype nText = 0;
            while (nText < strText.size() && strText[nText] == u' ')
                ++nText;
            strText.remove(0, nText);
        } else if (m_strOut.endsWith(u' ') && strText.startsWith(u' ') && !context.bPreformatted) {
            strText.remove(0, 1);
        }
        if (strText.isEmpty())
            return;
        m_bFresh = false;
        if (strText == u" ") {
            m_strOut += strText;
            return;
        }
        m_bText = true;
        QString strMarkup = Escaped(strText);
        if (context.bKeepsBlanks && !context.bPreformatted)
            strMarkup.remove(u'\r').replace(u'\n', u"<br>"_s);
        Around(context, [&](const Context&) { m_strOut += strMarkup; });
    }

    void WriteElement(const GumboNode* pNode, Context context) {
        const GumboElement& element = pNode->v.element;
        const QByteArray name = TagName(element);
        if (IsDropped(pNode, name))
            return;
        const CDeclarations declarations = DeclarationsOf(element);
        if (declarations.IsHidden())
            return;
        if (declarations[u"mso-list"_s] == u"ignore")
            return WriteLabel(pNode, context);
        ApplyName(element, name, context.wanted);
        declarations.Apply(context.wanted);
        context.bKeepsBlanks = declarations.KeepsBlanks().value_or(context.bKeepsBlanks);
        if (name == "br")
            return WriteBreak(declarations);
        if (name == "hr")
            return Enclose(
                u"<hr>"_s, QString(), true, [] {}, true);
        if (name == "img")
            return WritePicture(element, declarations);
        if (name == "a")
            return WriteLink(pNode, context);
        if (name == "table")
            return WriteTable(pNode, declarations);
        if (IsTablePart(name))
            return WriteTablePart(pNode, name, declarations, context);
        if (IsKeptBlock(name) || IsDivision(name))
            return WriteBlock(pNode, name, declarations, context);
        WriteInline(pNode, name, declarations, context);
    }

    /// The number of a heading or of an item that becomes none of a list's is a part of its text.
    void WriteLabel(const GumboNode* pNode, const Context& context) {
        const QString strLabel = TextOf(pNode).simplified();
        if (!context.bInItem && !strLabel.isEmpty())
            WriteText(strLabel + u' ', context);
    }

    void WriteBreak(const CDeclarations& declarations) {
        // Sheets of paper end there.
        if (declarations[u"page-break-before"_s] == u"always" ||
            declarations.Holds(u"mso-break-type"_s, u"section"_s))
            return;
        m_strOut += u"<br>"_s;
        m_bFresh = true;
    }

    void WriteInline(const GumboNode* pNode, const QByteArray& name, const CDeclarations& declarations,
                     Context context) {
        static const QSet<QByteArray> code = {"code", "kbd", "samp", "tt"};
        static const QSet<QByteArray> ruby = {"ruby", "rb", "rt", "rp"};
        if (const QString strGround =
                declarations[u"background-color"_s] + u' ' + declarations[u"background"_s];
            strGround.size() > 1)
            context.wanted.strHighlight = ChosenColour(strGround);
        const QString strTag = code.contains(name)   ? u"code"_s
                               : ruby.contains(name) ? QString::fromLatin1(name)
                                                     : QString();
        if (strTag.isEmpty() || m_withBlocks.contains(pNode))
            return WriteStyled(pNode, context);
        Enclose(u'<' + strTag + u'>', u"</"_s + strTag + u'>', false, [&] { WriteStyled(pNode, context); });
    }

    void WriteLink(const GumboNode* pNode, Context context) {
        const QString strAddress = AttributeText(pNode->v.element, "href");
        if (strAddress.startsWith(u'#') || !Torvane::Office::IsKeptLink(strAddress))
            return WriteStyled(pNode, context);
        // As every link looks.
        context.wanted.strColour = context.applied.strColour;
        context.wanted.bUnderline = context.applied.bUnderline = true;
        Enclose(u"<a href=\"%1\">"_s.arg(Escaped(strAddress)), u"</a>"_s, false,
                [&] { WriteStyled(pNode, context); });
    }

    void WritePicture(const GumboElement& element, const CDeclarations& declarations) {
        const auto size = [&](const char* szName) {
            const QString strOwn = LengthOf(AttributeText(element, szName));
            const QString strSize =
                strOwn.isEmpty() ? declarations.Length(QLatin1StringView(szName)) : strOwn;
            return strSize.endsWith(u'%') ? QString() : strSize;
        };
        const QString strWidth = size("width");
        const QString strHeight = size("height");
        // Such a one only counts its readers.
        if (strWidth == u"1" && strHeight == u"1")
            return;
        const QString strAlt = AttributeText(element, "alt");
        const QString strSource = m_pictures(AttributeText(element, "src"));
        m_bFresh = false;
        if (strSource.isEmpty()) {
            m_bText = m_bText || !strAlt.isEmpty();
            m_strOut += Escaped(strAlt);
            return;
        }
        m_strOut += u"<img src=\""_s + Escaped(strSource) + u'"';
        Add(u"alt"_s, strAlt);
        Add(u"width"_s, strWidth);
        Add(u"height"_s, strHeight);
        m_strOut += u'>';
    }

    void Add(const QString& strName, const QString& strValue) {
        if (!strValue.isEmpty())
            m_strOut += u' ' + strName + u"=\""_s + Escaped(strValue) + u'"';
    }

    /// " align="…"", from the style or the attribute of the old kind.
    static QString AlignOf(const GumboElement& element, const QByteArray& name,
                           const CDeclarations& declarations) {
        QString strAlign = declarations.Align();
        if (strAlign.isEmpty() && declarations[u"text-align"_s].isEmpty())
            strAlign = name == "center" ? u"center"_s : AttributeText(element, "align").toLower();
        return strAlign == u"center" || strAlign == u"right" ? u" align=\""_s + strAlign + u'"' : QString();
    }

    void WriteBlock(const GumboNode* pNode, const QByteArray& name, const CDeclarations& declarations,
                    Context context) {
        const GumboElement& element = pNode->v.element;
        if (name == "li")
            return WriteItem(pNode, context);
        QString strAttributes;
        const bool bList = name == "ul" || name == "ol" || name == "dl";
        if (name == "ol")
            strAttributes = ListAttributes(element);
        else if (!bList && name != "pre")
            strAttributes = AlignOf(element, name, declarations);
        if (IsDivision(name) && strAttributes.isEmpty() && HoldsBlocksAlone(pNode))
            return WriteChildren(pNode, context);
        // A heading's letters are bold by themselves.
        if (IsHeading(name))
            context.wanted.bBold = context.applied.bBold = true;
        context.bPreformatted = context.bPreformatted || name == "pre";
        const QString strTag = IsDivision(name) ? u"div"_s : QString::fromLatin1(name);
        Enclose(u'<' + strTag + strAttributes + u'>', u"</"_s + strTag + u'>', true,
                [&] { WriteStyled(pNode, context); });
    }

    static QString ListAttributes(const GumboElement& element) {
        QString strAttributes;
        const QString strType = AttributeText(element, "type");
        if (strType.size() == 1 && u"aAiI"_s.contains(strType))
            strAttributes += u" type=\""_s + strType + u'"';
        if (const int nStart = AttributeText(element, "start").toInt(); nStart > 1)
            strAttributes += u" start=\"%1\""_s.arg(nStart);
        return strAttributes;
    }

    bool HoldsBlocksAlone(const GumboNode* pNode) const {
        for (unsigned i = 0; i < pNode->v.element.children.length; ++i) {
            const GumboNode* pChild = ChildAt(pNode, i);
            if (!IsBlank(pChild) && !m_withBlocks.contains(pChild) && !IsBlock(NameOf(pChild)))
                return false;
        }
        return m_withBlocks.contains(pNode);
    }

    /// A cell is a paragraph of its own, without another in it.
    const GumboNode* Unwrapped(const GumboNode* pNode) const {
        const GumboNode* pOnly = OnlyChild(pNode);
        const QByteArray name = pOnly ? NameOf(pOnly) : QByteArray();
        return (name == "p" || name == "div") && !m_withBlocks.contains(pOnly) ? pOnly : nullptr;
    }

    /// The paragraph that an item begins with, where behind it come at most lists: it is the item's own text.
    const GumboNode* LeadOf(const GumboNode* pItem) const {
        const GumboNode* pLead = nullptr;
        for (unsigned i = 0; i < pItem->v.element.children.length; ++i) {
            const GumboNode* pChild = ChildAt(pItem, i);
            const QByteArray name = NameOf(pChild);
            if (IsBlank(pChild))
                continue;
            if (pLead == nullptr && (name == "p" || name == "div") && !m_withBlocks.contains(pChild))
                pLead = pChild;
            else if (pLead == nullptr || (name != "ul" && name != "ol"))
                return nullptr;
        }
        return pLead;
    }

    void WriteItem(const GumboNode* pNode, const Context& context) {
        const GumboNode* pLead = LeadOf(pNode);
        Enclose(u"<li>"_s, u"</li>"_s, true, [&] {
            if (!pLead)
                return WriteStyled(pNode, context);
            WriteInner(pLead, context);
            for (unsigned i = unsigned(pLead->index_within_parent) + 1; i < pNode->v.element.children.length;
                 ++i)
                Write(ChildAt(pNode, i), context);
        });
    }

    void WriteTable(const GumboNode* pNode, const CDeclarations& declarations) {
        const GumboElement& element = pNode->v.element;
        QString strAttributes;
        const auto add = [&](const QString& strName, const QString& strValue) {
            if (!strValue.isEmpty())
                strAttributes += u' ' + strName + u"=\""_s + strValue + u'"';
        };
        const QString strWidth = LengthOf(AttributeText(element, "width"));
        add(u"width"_s, strWidth.isEmpty() ? declarations.Length(u"width"_s) : strWidth);
        const bool bCollapsed = declarations[u"border-collapse"_s] == u"collapse";
        const auto number = [&](const char* szName) {
            bool bNumber = false;
            const int nValue = AttributeText(element, szName).toInt(&bNumber);
            return bNumber && nValue >= 0 && nValue < c_nMaxSpan ? QString::number(nValue) : QString();
        };
        add(u"cellspacing"_s, bCollapsed ? u"0"_s : number("cellspacing"));
        add(u"cellpadding"_s, number("cellpadding"));
        QString strBorder = number("border");
        if ((strBorder.isEmpty() || strBorder == u"0") && (declarations.HasBorder() || HasCellBorder(pNode)))
            strBorder = u"1"_s;
        add(u"border"_s, strBorder);
        add(u"bgcolor"_s, GroundOf(element, declarations));
        if (AttributeText(element, "align").toLower() == u"center" ||
            declarations[u"margin-left"_s] == u"auto")
            add(u"align"_s, u"center"_s);
        Enclose(u"<table"_s + strAttributes + u'>', u"</table>"_s, true, [&] { WriteChildren(pNode, {}); });
    }

    /// Of the table's own cells: those of tables within tell of themselves.
    bool HasCellBorder(const GumboNode* pPart) const {
        for (unsigned i = 0; i < pPart->v.element.children.length; ++i) {
            const GumboNode* pChild = ChildAt(pPart, i);
            const QByteArray name = NameOf(pChild);
            const bool bCell = name == "td" || name == "th";
            if (bCell ? DeclarationsOf(pChild->v.element).HasBorder()
                      : IsTablePart(name) && name != "caption" && HasCellBorder(pChild))
                return true;
        }
        return false;
    }

    static QString GroundOf(const GumboElement& element, const CDeclarations& declarations) {
        const QString strStyle = declarations[u"background-color"_s] + u' ' + declarations[u"background"_s];
        const QString strOwn = strStyle.size() > 1 ? strStyle : AttributeText(element, "bgcolor");
        return ChosenColour(strOwn);
    }

    void WriteTablePart(const GumboNode* pNode, const QByteArray& name, const CDeclarations& declarations,
                        Context context) {
        const GumboElement& element = pNode->v.element;
        const bool bCell = name == "td" || name == "th";
        const GumboNode* pOnly = bCell ? Unwrapped(pNode) : nullptr;
        QString strAttributes;
        const auto add = [&](const QString& strName, const QString& strValue) {
            if (!strValue.isEmpty())
                strAttributes += u' ' + strName + u"=\""_s + strValue + u'"';
        };
        if (bCell) {
            for (const QString& strName : {u"colspan"_s, u"rowspan"_s}) {
                const int nSpan = AttributeText(element, strName.toLatin1().constData()).toInt();
                add(strName, nSpan > 1 && nSpan <= c_nMaxSpan ? QString::number(nSpan) : QString());
            }
            const QString strWidth = LengthOf(AttributeText(element, "width"));
            add(u"width"_s, strWidth.isEmpty() ? declarations.Length(u"width"_s) : strWidth);
            strAttributes += AlignOf(element, name, declarations);
            if (pOnly && !strAttributes.contains(u" align="_s))
                strAttributes += AlignOf(pOnly->v.element, NameOf(pOnly), DeclarationsOf(pOnly->v.element));
            const QString strVertical = AttributeText(element, "valign").toLower();
            add(u"valign"_s, strVertical == u"top" || strVertical == u"bottom" ? strVertical : QString());
            add(u"bgcolor"_s, GroundOf(element, declarations));
            if (name == "th")
                context.wanted.bBold = context.applied.bBold = true;
        }
        const QString strTag = QString::fromLatin1(name);
        Enclose(
            u'<' + strTag + strAttributes + u'>', u"</"_s + strTag + u'>', true,
            [&] {
                const qsizetype nInside = m_strOut.size();
                if (pOnly)
                    WriteInner(pOnly, context);
                else
                    WriteStyled(pNode, context);
                // An empty cell has no border, and no room for the caret.
                if (bCell && m_strOut.size() == nInside)
                    m_strOut += u"&nbsp;"_s;
            },
            name == "tr");
    }

    CStyleSheet m_sheet;
    const PictureNamer& m_pictures;
    QString m_strOut;
    bool m_bText = false;
    /// Blanks that come now begin a line, and don't show.
    bool m_bFresh = true;
    int m_nElements = 0;
    /// Lines end at blanks alone, also between Chinese characters.
    bool m_bBlankLineEnds = false;
    /// Elements with a block somewhere in them.
    QSet<const GumboNode*> m_withBlocks;
};

/// Without the header that one platform's clipboard puts before the markup.
QString WithoutHeader(const QString& strHtml) {
    return strHtml.startsWith(u"Version:") ? strHtml.sliced(qMax<qsizetype>(strHtml.indexOf(u'<'), 0))
                                           : strHtml;
}

} // namespace

std::optional<Fragment> Clean(const QString& strHtml, const PictureNamer& pictures) {
    if (strHtml.size() > c_nMaxCharacters)
        return std::nullopt;
    const QByteArray html = WithoutHeader(strHtml).toUtf8();
    if (html.count('<') > c_nMaxTags || IsTooDeep(html))
        return std::nullopt;
    const Tree tree = Parse(html);
    if (IsDeep(tree->root))
        return std::nullopt;
    CCleaner cleaner(tree->root, pictures);
    if (cleaner.IsTooLong())
        return std::nullopt;
    for (unsigned i = 0; i < tree->root->v.element.children.length; ++i) {
        const GumboNode* pChild = ChildAt(tree->root, i);
        if (NameOf(pChild) == "body")
            return cleaner.Take(pChild);
    }
    return Fragment();
}

} // namespace PastedHtml
