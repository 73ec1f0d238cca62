#include "foundation/HtmlTree.h"

#include <QSet>

namespace HtmlTree {
namespace {

constexpr int c_nMaxDepth = 2000;

bool IsAsciiLetter(char c) {
    return (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
}

} // namespace

void TreeDeleter::operator()(GumboOutput* pOutput) const {
    gumbo_destroy_output(&kGumboDefaultOptions, pOutput);
}

Tree Parse(const QByteArray& html) {
    return Tree(gumbo_parse_with_options(&kGumboDefaultOptions, html.constData(), size_t(html.size())));
}

bool IsVoid(const QByteArray& name) {
    static const QSet<QByteArray> names = {"area",  "base",  "br",    "col",    "embed",   "hr",
                                           "img",   "input", "link",  "meta",   "param",   "source",
                                           "track", "wbr",   "frame", "keygen", "bgsound", "basefont"};
    return names.contains(name);
}

bool IsTooDeep(const QByteArray& html) {
    static const QSet<QByteArray> closesItself = {"p",  "li", "dt",     "dd",    "tr",    "td",   "th",
                                                  "rt", "rp", "option", "tbody", "thead", "tfoot"};
    int nDepth = 0;
    for (qsizetype i = html.indexOf('<'); i >= 0 && i + 1 < html.size(); i = html.indexOf('<', i + 1)) {
        const bool bEnd = html[i + 1] == '/';
        qsizetype nName = i + 1 + bEnd;
        qsizetype nEnd = nName;
        while (nEnd < html.size() &&
               (IsAsciiLetter(html[nEnd]) || (nEnd > nName && isdigit(uchar(html[nEnd])))))
            ++nEnd;
        if (nEnd == nName)
            continue;
        const QByteArray name = html.mid(nName, nEnd - nName).toLower();
        if (IsVoid(name) || closesItself.contains(name))
            continue;
        nDepth = bEnd ? qMax(nDepth - 1, 0) : nDepth + 1;
        if (nDepth > c_nMaxDepth)
            return true;
    }
    return false;
}

QByteArray TagName(const GumboElement& element) {
    // Nothing ends plain text, so within a frame it can only be preformatted text.
    if (element.tag == GUMBO_TAG_PLAINTEXT)
        return "pre";
    if (element.tag != GUMBO_TAG_UNKNOWN)
        return gumbo_normalized_tagname(element.tag);
    GumboStringPiece piece = element.original_tag;
    gumbo_tag_from_original_text(&piece);
    return QByteArray(piece.data, qsizetype(piece.length)).toLower();
}

bool IsElement(const GumboNode* pNode) {
    return pNode->type == GUMBO_NODE_ELEMENT || pNode->type == GUMBO_NODE_TEMPLATE;
}

QByteArray AttributeValue(const GumboElement& element, const char* szName) {
    const GumboAttribute* pAttribute = gumbo_get_attribute(&element.attributes, szName);
    return pAttribute ? QByteArray(pAttribute->value) : QByteArray();
}

QString AttributeText(const GumboElement& element, const char* szName) {
    return QString::fromUtf8(AttributeValue(element, szName)).trimmed();
}

const GumboNode* ChildAt(const GumboNode* pElement, unsigned i) {
    return static_cast<const GumboNode*>(pElement->v.element.children.data[i]);
}

QString TextOf(const GumboNode* pNode) {
    if (!IsElement(pNode))
        return pNode->type == GUMBO_NODE_COMMENT ? QString() : QString::fromUtf8(pNode->v.text.text);
    QString strText;
    for (unsigned i = 0; i < pNode->v.element.children.length; ++i)
        strText += TextOf(ChildAt(pNode, i));
    return strText;
}

void ForEachElement(const GumboNode* pNode, const std::function<void(const GumboNode*)>& visit) {
    if (!IsElement(pNode))
        return;
    visit(pNode);
    const GumboVector& children = pNode->v.element.children;
    for (unsigned i = 0; i < children.length; ++i)
        ForEachElement(static_cast<const GumboNode*>(children.data[i]), visit);
}

} // namespace HtmlTree
