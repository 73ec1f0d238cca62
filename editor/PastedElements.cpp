#include "editor/PastedElements.h"

#include <QSet>

using namespace Qt::StringLiterals;
using namespace HtmlTree;

namespace PastedHtml {

QByteArray NameOf(const GumboNode* pNode) {
    return IsElement(pNode) ? TagName(pNode->v.element) : QByteArray();
}

bool IsBlank(const GumboNode* pNode) {
    if (pNode->type == GUMBO_NODE_COMMENT || pNode->type == GUMBO_NODE_WHITESPACE)
        return true;
    return pNode->type == GUMBO_NODE_TEXT &&
           QByteArrayView(pNode->v.text.text).trimmed().isEmpty(); // a hard blank is none
}

const GumboNode* OnlyChild(const GumboNode* pNode) {
    const GumboNode* pOnly = nullptr;
    for (unsigned i = 0; i < pNode->v.element.children.length; ++i) {
        const GumboNode* pChild = ChildAt(pNode, i);
        if (IsBlank(pChild))
            continue;
        if (pOnly)
            return nullptr;
        pOnly = pChild;
    }
    return pOnly;
}

bool IsHeading(const QByteArray& name) {
    return name.size() == 2 && name[0] == 'h' && name[1] >= '1' && name[1] <= '6';
}

bool IsDivision(const QByteArray& name) {
    static const QSet<QByteArray> names = {"div",     "section",    "article",  "main",   "header", "footer",
                                           "aside",   "nav",        "figure",   "form",   "center", "address",
                                           "details", "figcaption", "fieldset", "legend", "hgroup", "summary",
                                           "dialog",  "menu",       "dir",      "search"};
    return names.contains(name);
}

bool IsKeptBlock(const QByteArray& name) {
    static const QSet<QByteArray> names = {"p",  "pre", "blockquote", "ul", "ol",
                                           "li", "dl",  "dt",         "dd", "table"};
    return names.contains(name) || IsHeading(name);
}

bool IsTablePart(const QByteArray& name) {
    static const QSet<QByteArray> names = {"thead", "tbody", "tfoot", "tr", "td", "th", "caption"};
    return names.contains(name);
}

bool IsBlock(const QByteArray& name) {
    return name == "hr" || IsKeptBlock(name) || IsDivision(name) || IsTablePart(name);
}

bool IsDropped(const GumboNode* pNode, const QByteArray& name) {
    static const QSet<QByteArray> names = {
        "script", "style",    "object",   "applet", "embed",     "iframe", "frame",   "frameset", "noframes",
        "input",  "select",   "textarea", "button", "meta",      "link",   "base",    "title",    "noscript",
        "svg",    "math",     "audio",    "video",  "canvas",    "option", "param",   "bgsound",  "head",
        "xml",    "template", "map",      "area",   "colgroup",  "col",    "portal",  "datalist", "comment",
        "track",  "source",   "slot",     "image",  "plaintext", "meter",  "progress"};
    const GumboElement& element = pNode->v.element;
    if (pNode->type == GUMBO_NODE_TEMPLATE || element.tag_namespace != GUMBO_NAMESPACE_HTML ||
        names.contains(name))
        return true;
    // What a document's author took out, while its changes are still being tracked.
    if (name == "del" &&
        (!AttributeText(element, "cite").isEmpty() || !AttributeText(element, "datetime").isEmpty()))
        return true;
    const QString strClass = AttributeText(element, "class").toLower();
    return strClass.contains(u"msocom") || strClass == u"msodel" || strClass == u"apple-interchange-newline";
}

} // namespace PastedHtml
