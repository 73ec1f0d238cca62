#include "companions/compiler/HtmlText.h"

#include "companions/compiler/CssText.h"
#include "foundation/HtmlTree.h"

#include <QHash>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QVarLengthArray>

using namespace Qt::StringLiterals;
using namespace HtmlTree;

namespace HtmlText {
namespace {

constexpr int c_nMaxWritings = 3;
/// Of what the templates' pages tell their author.
const QByteArray c_hintClass = "v-hint";

bool IsReference(const GumboElement& element, const GumboAttribute& attribute) {
    static const QSet<QByteArray> names = {"href",       "src",      "background", "data",   "poster",
                                           "xlink:href", "longdesc", "dynsrc",     "lowsrc", "formaction"};
    if (names.contains(attribute.name))
        return element.tag != GUMBO_TAG_BASE;
    if (qstrcmp(attribute.name, "action") == 0)
        return element.tag == GUMBO_TAG_FORM;
    if (element.tag != GUMBO_TAG_PARAM || qstrcmp(attribute.name, "value") != 0)
        return false;
    static const QSet<QByteArray> parameters = {"movie", "src", "url", "filename"};
    return parameters.contains(AttributeValue(element, "name").toLower());
}

/// Replacements in a text, by where they begin. One stretch is replaced once, even though the parser copies
/// wrongly nested elements.
class CEdits {
public:
    explicit CEdits(const QByteArray& text) : m_text(text) {}

    void Replace(const char* pBegin, qsizetype nLength, const QByteArray& with) {
        if (pBegin >= m_text.constData() && pBegin + nLength <= m_text.constData() + m_text.size())
            m_edits.insert(pBegin - m_text.constData(), {nLength, with});
    }
    bool IsEmpty() const { return m_edits.isEmpty(); }

    QByteArray Apply(qsizetype nBegin, qsizetype nEnd) const {
        QByteArray result;
        qsizetype nAt = nBegin;
        for (auto it = m_edits.lowerBound(nBegin); it != m_edits.end() && it.key() < nEnd; ++it) {
            if (it.key() < nAt)
                continue;
            result += m_text.mid(nAt, it.key() - nAt) + it->with;
            nAt = it.key() + it->nLength;
        }
        return result + m_text.mid(nAt, qMax(nEnd - nAt, qsizetype(0)));
    }

private:
    struct Edit {
        qsizetype nLength;
        QByteArray with;
    };
    const QByteArray& m_text;
    QMap<qsizetype, Edit> m_edits;
};

QByteArray Quoted(const QString& strValue) {
    return '"' + strValue.toHtmlEscaped().toUtf8() + '"';
}

/// The pictures that a browser may choose from: addresses, each with what it is for behind a blank.
std::optional<QString> RewriteSourceSet(const QString& strSet, const Rewriter& rewrite) {
    static const QRegularExpression begin(u"[^\\s,]"_s), blank(u"\\s"_s);
    QStringList list;
    bool bChanged = false;
    for (qsizetype nAt = strSet.indexOf(begin); nAt >= 0; nAt = strSet.indexOf(begin, nAt)) {
        const qsizetype nBlank = strSet.indexOf(blank, nAt);
        QString strAddress = strSet.mid(nAt, nBlank < 0 ? -1 : nBlank - nAt);
        QString strFor;
        nAt += strAddress.size();
        if (!strAddress.endsWith(u',')) {
            const qsizetype nComma = strSet.indexOf(u',', nAt);
            const qsizetype nEnd = nComma < 0 ? strSet.size() : nComma;
            strFor = strSet.mid(nAt, nEnd - nAt).trimmed();
            nAt = nEnd;
        }
        while (strAddress.endsWith(u','))
            strAddress.chop(1);
        const std::optional<QString> strNew = rewrite(strAddress);
        bChanged = bChanged || strNew;
        list.append(strNew.value_or(strAddress) + (strFor.isEmpty() ? QString() : u' ' + strFor));
    }
    return bChanged ? std::optional(list.join(u", "_s)) : std::nullopt;
}

/// "5; url=next.htm" of a page that leads on by itself.
std::optional<QString> RewriteRefresh(const QString& strContent, const Rewriter& rewrite) {
    static const QRegularExpression parts(u"^([\\s\\d.]*[;,\\s]\\s*(?:url\\s*=\\s*)?)(['\"]?)([^'\"]+)"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = parts.match(strContent);
    if (!match.hasMatch())
        return std::nullopt;
    const std::optional<QString> strNew = rewrite(match.captured(3));
    return strNew ? std::optional(match.captured(1) + *strNew) : std::nullopt;
}

/// What stands in place of an attribute's value; nothing to leave it.
std::optional<QString> NewValue(const GumboElement& element, const GumboAttribute& attribute,
                                const Rewriter& rewrite) {
    if (IsReference(element, attribute))
        return rewrite(QString::fromUtf8(attribute.value));
    if (qstrcmp(attribute.name, "srcset") == 0 || qstrcmp(attribute.name, "imagesrcset") == 0)
        return RewriteSourceSet(QString::fromUtf8(attribute.value), rewrite);
    if (element.tag == GUMBO_TAG_META && qstrcmp(attribute.name, "content") == 0 &&
        AttributeValue(element, "http-equiv").toLower() == "refresh")
        return RewriteRefresh(QString::fromUtf8(attribute.value), rewrite);
    if (qstrcmp(attribute.name, "style") == 0)
        return CssText::RewriteReferences(QString::fromUtf8(attribute.value), rewrite);
    return std::nullopt;
}

void EditReferences(const GumboNode* pNode, const Rewriter& rewrite, CEdits& edits) {
    const GumboElement& element = pNode->v.element;
    for (unsigned i = 0; i < element.attributes.length; ++i) {
        const auto* pAttribute = static_cast<const GumboAttribute*>(element.attributes.data[i]);
        if (pAttribute->original_value.length == 0)
            continue;
        if (const auto strNew = NewValue(element, *pAttribute, rewrite))
            edits.Replace(pAttribute->original_value.data, qsizetype(pAttribute->original_value.length),
                          Quoted(*strNew));
    }
    if (element.tag != GUMBO_TAG_STYLE || element.children.length != 1)
        return;
    const GumboText& sheet = static_cast<const GumboNode*>(element.children.data[0])->v.text;
    if (const auto strNew = CssText::RewriteReferences(QString::fromUtf8(sheet.text), rewrite))
        edits.Replace(sheet.original_text.data, qsizetype(sheet.original_text.length), strNew->toUtf8());
}

bool IsStyleLink(const GumboElement& element) {
    return element.tag == GUMBO_TAG_LINK &&
           AttributeValue(element, "rel").toLower().split(' ').contains("stylesheet");
}

/// Style sheets go to the head of the frame.
bool GoesToHead(const GumboElement& element) {
    return element.tag_namespace == GUMBO_NAMESPACE_HTML &&
           (IsStyleLink(element) || element.tag == GUMBO_TAG_STYLE);
}

/// What the frame says itself has no place in a page within it.
bool IsDropped(const GumboElement& element) {
    return element.tag_namespace == GUMBO_NAMESPACE_HTML &&
           (element.tag == GUMBO_TAG_TITLE || element.tag == GUMBO_TAG_META ||
            element.tag == GUMBO_TAG_BASE || (element.tag == GUMBO_TAG_LINK && !IsStyleLink(element)));
}

/// Writes a tree out again, for pages whose own text can't stand within a frame.
class CSerializer {
public:
    explicit CSerializer(const Rewriter& rewrite) : m_rewrite(rewrite) {}

    Fragment Result() const { return {QString::fromUtf8(m_head), QString::fromUtf8(m_body), m_bHint}; }

    void WriteChildren(const GumboNode* pNode, bool bHeadOnly) {
        const GumboVector& children = pNode->v.element.children;
        for (unsigned i = 0; i < children.length; ++i)
            Write(static_cast<const GumboNode*>(children.data[i]), bHeadOnly ? nullptr : &m_body, false);
    }

private:
    void Write(const GumboNode* pNode, QByteArray* pOut, bool bRaw) {
        if (IsElement(pNode)) {
            if (IsHint(pNode))
                m_bHint = true;
            else if (GoesToHead(pNode->v.element))
                WriteElement(pNode, m_head);
            else if (pOut && !IsDropped(pNode->v.element))
                WriteElement(pNode, *pOut);
        } else if (pOut && pNode->type == GUMBO_NODE_COMMENT) {
            *pOut += "<!--" + QByteArray(pNode->v.text.text) + "-->";
        } else if (pOut) {
            const QByteArray text(pNode->v.text.text);
            *pOut += bRaw ? text : QString::fromUtf8(text).toHtmlEscaped().toUtf8();
        }
    }

    void WriteElement(const GumboNode* pNode, QByteArray& out) {
        const GumboElement& element = pNode->v.element;
        // A page has one main part, and that is the frame's.
        const QByteArray name = element.tag == GUMBO_TAG_MAIN ? "div"_ba : TagName(element);
        out += '<' + name;
        for (unsigned i = 0; i < element.attributes.length; ++i) {
            const auto* pAttribute = static_cast<const GumboAttribute*>(element.attributes.data[i]);
            const QString strValue =
                NewValue(element, *pAttribute, m_rewrite).value_or(QString::fromUtf8(pAttribute->value));
            out += ' ' + QByteArray(pAttribute->name) + '=' + Quoted(strValue);
        }
        out += '>';
        if (IsVoid(name))
            return;
        const bool bRaw = element.tag == GUMBO_TAG_SCRIPT || element.tag == GUMBO_TAG_STYLE ||
                          element.tag == GUMBO_TAG_XMP || element.tag == GUMBO_TAG_IFRAME ||
                          element.tag == GUMBO_TAG_NOEMBED || element.tag == GUMBO_TAG_NOFRAMES;
        const qsizetype nContent = out.size();
        for (unsigned i = 0; i < element.children.length; ++i)
            Write(static_cast<const GumboNode*>(element.children.data[i]), &out, bRaw);
        if (element.tag == GUMBO_TAG_STYLE) {
            const auto strSheet = CssText::RewriteReferences(QString::fromUtf8(out.mid(nContent)), m_rewrite);
            if (strSheet)
                out.replace(nContent, out.size() - nContent, strSheet->toUtf8());
        }
        out += "</" + name + '>';
    }

    const Rewriter& m_rewrite;
    QByteArray m_head;
    QByteArray m_body;
    bool m_bHint = false;
};

/// Whether the page says itself that it is a whole document, or which part of one is the main one. A false
/// yes costs nothing but its spelling.
bool IsWholeDocument(const QByteArray& html) {
    const QByteArray lower = html.toLower();
    return lower.contains("<html") || lower.contains("<body") || lower.contains("<!doctype") ||
           lower.contains("<head") || lower.contains("<frameset") || lower.contains("</body") ||
           lower.contains("</html") || lower.contains("<main") || lower.contains("</main");
}

Fragment SerializeDocument(const QByteArray& html, const Rewriter& rewrite) {
    const Tree tree = Parse(html);
    CSerializer serializer(rewrite);
    const GumboVector& children = tree->root->v.element.children;
    for (unsigned i = 0; i < children.length; ++i) {
        const auto* pChild = static_cast<const GumboNode*>(children.data[i]);
        if (IsElement(pChild))
            serializer.WriteChildren(pChild, pChild->v.element.tag == GUMBO_TAG_HEAD);
    }
    return serializer.Result();
}

/// Tells whether a page is nothing but text in well-nested elements of the plainest kind, as most pages of
/// the editor are: then a parser finds just what stands there, and takes ten times as long to do so. Whatever
/// it does not know it leaves to the parser.
class CPlainMarkup {
public:
    explicit CPlainMarkup(const QByteArray& html) : m_html(html) {}

    bool IsAll() {
        while (m_nAt < m_html.size()) {
            const char c = m_html[m_nAt++];
            const bool bControl = static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\r' && c != '\t';
            if (bControl || (c == '<' && !TakeTag()) || (c == '&' && !TakeCharacter()))
                return false;
        }
        return m_open.isEmpty();
    }

private:
    enum class EKind { Unknown, Flow, Lines, List, Item, Inline, Void };
    struct Open {
        QByteArrayView Name;
        EKind Kind;
    };
    static constexpr qsizetype c_nMaxOpen = 100;

    static EKind KindOf(QByteArrayView name) {
        static const QHash<QByteArrayView, EKind> kinds = {
            {"div", EKind::Flow},   {"blockquote", EKind::Flow}, {"p", EKind::Lines},
            {"h1", EKind::Lines},   {"h2", EKind::Lines},        {"h3", EKind::Lines},
            {"h4", EKind::Lines},   {"h5", EKind::Lines},        {"h6", EKind::Lines},
            {"ul", EKind::List},    {"ol", EKind::List},         {"li", EKind::Item},
            {"b", EKind::Inline},   {"i", EKind::Inline},        {"u", EKind::Inline},
            {"em", EKind::Inline},  {"strong", EKind::Inline},   {"span", EKind::Inline},
            {"sub", EKind::Inline}, {"sup", EKind::Inline},      {"br", EKind::Void}};
        return kinds.value(name, EKind::Unknown);
    }

    /// Where the kinds may stand that no element has to be closed for.
    bool Fits(EKind kind) const {
        const EKind parent = m_open.isEmpty() ? EKind::Flow : m_open.last().Kind;
        switch (kind) {
        case EKind::Flow:
        case EKind::Lines:
        case EKind::List:
            return parent == EKind::Flow || parent == EKind::Item;
        case EKind::Item:
            return parent == EKind::List;
        case EKind::Inline:
        case EKind::Void:
            return parent != EKind::List;
        default:
            return false;
        }
    }

    QByteArrayView TakeName() {
        const qsizetype nBegin = m_nAt;
        while (m_nAt < m_html.size() && ((m_html[m_nAt] >= 'a' && m_html[m_nAt] <= 'z') ||
                                         (m_html[m_nAt] >= '0' && m_html[m_nAt] <= '9')))
            ++m_nAt;
        return QByteArrayView(m_html).sliced(nBegin, m_nAt - nBegin);
    }

    bool Takes(char c) {
        const bool bThere = m_nAt < m_html.size() && m_html[m_nAt] == c;
        m_nAt += bThere;
        return bThere;
    }

    /// Behind "&": one of the usual characters, written in full.
    bool TakeCharacter() {
        static const QSet<QByteArrayView> names = {"amp", "gt", "lt", "nbsp", "quot"};
        return names.contains(TakeName()) && Takes(';');
    }

    /// Attributes that lead nowhere, each once and in double quotes.
    bool TakeAttributes() {
        static const QList<QByteArrayView> names = {"id", "class", "align", "title"};
        unsigned nSeen = 0;
        while (Takes(' ')) {
            const unsigned nBit = 1U << (names.indexOf(TakeName()) + 1);
            if (nBit == 1 || (nSeen & nBit) != 0 || !Takes('=') || !Takes('"'))
                return false;
            nSeen |= nBit;
            const qsizetype nEnd = m_html.indexOf('"', m_nAt);
            if (nEnd < 0 || QByteArrayView(m_html).sliced(m_nAt, nEnd - m_nAt).contains('<'))
                return false;
            m_nAt = nEnd + 1;
        }
        return Takes('>');
    }

    bool TakeTag() {
        if (Takes('/')) {
            const QByteArrayView name = TakeName();
            if (m_open.isEmpty() || m_open.last().Name != name)
                return false;
            m_open.removeLast();
            return Takes('>');
        }
        const QByteArrayView name = TakeName();
        const EKind kind = KindOf(name);
        if (!Fits(kind) || m_open.size() >= c_nMaxOpen || !TakeAttributes())
            return false;
        if (kind != EKind::Void)
            m_open.append({name, kind});
        return true;
    }

    const QByteArray& m_html;
    qsizetype m_nAt = 0;
    QVarLengthArray<Open, 16> m_open;
};

const QByteArray c_before = "<!DOCTYPE html><body><div>";
const QByteArray c_after = "</div>x<hr>";

/// Whether what the page opens it also closes: the element around it ends with its own end tag, and neither
/// an element nor a run of formatting reaches beyond.
const GumboNode* BalancedContent(const Tree& tree, const QByteArray& wrapped) {
    const GumboVector& top = tree->root->v.element.children;
    const GumboNode* pBody = top.length ? static_cast<const GumboNode*>(top.data[top.length - 1]) : nullptr;
    if (!pBody || !IsElement(pBody) || pBody->v.element.children.length != 3)
        return nullptr;
    const auto* const* ppChildren = reinterpret_cast<const GumboNode* const*>(pBody->v.element.children.data);
    const char* pEnd = wrapped.constData() + wrapped.size() - c_after.size();
    const bool bWhole = IsElement(ppChildren[0]) && ppChildren[0]->v.element.original_end_tag.data == pEnd &&
                        ppChildren[1]->type == GUMBO_NODE_TEXT && IsElement(ppChildren[2]) &&
                        ppChildren[2]->v.element.tag == GUMBO_TAG_HR;
    return bWhole ? ppChildren[0] : nullptr;
}

/// A page that can't stand in the frame as it is, written out anew. Wrong nesting of some kinds survives one
/// writing, since the parser mends it in another way each time.
std::optional<Fragment> Normalised(const QByteArray& html, const Rewriter& rewrite) {
    Fragment fragment = SerializeDocument(html, rewrite);
    for (int nTry = 0; nTry < c_nMaxWritings; ++nTry) {
        const QByteArray body = fragment.Body.toUtf8();
        const QByteArray wrapped = c_before + body + c_after;
        if (IsTooDeep(body))
            return std::nullopt;
        if (BalancedContent(Parse(wrapped), wrapped))
            return fragment;
        fragment.Body = SerializeDocument(body, [](const QString&) { return std::nullopt; }).Body;
    }
    return std::nullopt;
}

/// Takes an element out of the text, its content included.
QByteArray CutOut(const GumboElement& element, const QByteArray& text, CEdits& edits) {
    const char* pBegin = element.original_tag.data;
    const char* pEnd = element.original_end_tag.length > 0
                           ? element.original_end_tag.data + element.original_end_tag.length
                           : pBegin + element.original_tag.length;
    const qsizetype nBegin = pBegin - text.constData();
    CEdits inside = edits;
    edits.Replace(pBegin, pEnd - pBegin, QByteArray());
    return inside.Apply(nBegin, nBegin + (pEnd - pBegin));
}

} // namespace

bool IsHint(const GumboNode* pElement) {
    // The longest of the hints has three sentences.
    static const QRegularExpression untouched(
        u"^\\s*[请这](?:[^。]*。){0,2}[^。]*写好后删除这段提示。\\s*$"_s);
    return AttributeValue(pElement->v.element, "class").split(' ').contains(c_hintClass) &&
           untouched.match(TextOf(pElement)).hasMatch();
}

std::optional<QString> RewriteReferences(const QString& strPage, const Rewriter& rewrite,
                                         const QString& strNewBase) {
    const QByteArray html = strPage.toUtf8();
    if (IsTooDeep(html))
        return std::nullopt;
    const Tree tree = Parse(html);
    CEdits edits(html);
    bool bBase = strNewBase.isEmpty();
    ForEachElement(tree->root, [&](const GumboNode* pNode) {
        EditReferences(pNode, rewrite, edits);
        const GumboAttribute* pHref = gumbo_get_attribute(&pNode->v.element.attributes, "href");
        if (bBase || pNode->v.element.tag != GUMBO_TAG_BASE || !pHref || *pHref->value == '\0')
            return;
        bBase = true;
        edits.Replace(pHref->original_value.data, qsizetype(pHref->original_value.length),
                      Quoted(strNewBase));
    });
    return edits.IsEmpty() ? std::nullopt : std::optional(QString::fromUtf8(edits.Apply(0, html.size())));
}

QString BaseOf(const QString& strPage) {
    if (!strPage.contains("<base"_L1, Qt::CaseInsensitive))
        return {};
    const QByteArray html = strPage.toUtf8();
    if (IsTooDeep(html))
        return {};
    const Tree tree = Parse(html);
    QString strBase;
    ForEachElement(tree->root, [&](const GumboNode* pNode) {
        if (pNode->v.element.tag == GUMBO_TAG_BASE && strBase.isEmpty())
            strBase = AttributeText(pNode->v.element, "href");
    });
    return strBase;
}

std::optional<Fragment> TakeFragment(const QString& strPage, const Rewriter& rewrite) {
    const QByteArray html = strPage.toUtf8();
    if (!html.contains(c_hintClass) && CPlainMarkup(html).IsAll())
        return Fragment{QString(), strPage};
    if (IsTooDeep(html))
        return std::nullopt;
    if (IsWholeDocument(html))
        return Normalised(html, rewrite);
    const QByteArray wrapped = c_before + html + c_after;
    Tree tree = Parse(wrapped);
    const GumboNode* pContent = BalancedContent(tree, wrapped);
    if (!pContent) {
        tree.reset();
        return Normalised(html, rewrite);
    }

    CEdits edits(wrapped);
    ForEachElement(pContent, [&](const GumboNode* pNode) { EditReferences(pNode, rewrite, edits); });
    QByteArray head;
    bool bHint = false;
    ForEachElement(pContent, [&](const GumboNode* pNode) {
        const GumboElement& element = pNode->v.element;
        const bool bThisHint = IsHint(pNode);
        bHint = bHint || bThisHint;
        if (GoesToHead(element))
            head += CutOut(element, wrapped, edits) + '\n';
        else if (IsDropped(element) || bThisHint)
            CutOut(element, wrapped, edits);
    });
    const QByteArray body = edits.Apply(c_before.size(), wrapped.size() - c_after.size());
    return Fragment{QString::fromUtf8(head), QString::fromUtf8(body), bHint};
}

} // namespace HtmlText
