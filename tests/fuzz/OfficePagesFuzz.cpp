#include "foundation/HtmlTree.h"
#include "office/PageCleaner.h"
#include "office/SlideText.h"
#include "tests/support/FuzzCheck.h"

#include <QBuffer>

#include <algorithm>
#include <initializer_list>

using namespace Torvane::Office;

namespace {

// What a page may hold is told here a second time and not asked of the code that made it.

bool IsOneOf(const QByteArray& name, std::initializer_list<const char*> names) {
    return std::any_of(names.begin(), names.end(), [&](const char* szOne) { return name == szOne; });
}

/// Texts in quotes end in their line, and beside them stand neither comments, escapes nor rules that load;
/// each bracket belongs to a colour.
bool IsHarmlessCss(const QByteArray& css) {
    QByteArray word;
    char cQuote = 0;
    bool bInColor = false;
    for (qsizetype i = 0; i < css.size(); ++i) {
        const char c = css[i];
        if (c == '\\' || (cQuote && (c == '\n' || c == '\r' || c == '\f')))
            return false;
        if (cQuote || c == '"' || c == '\'') {
            cQuote = !cQuote ? c : c == cQuote ? 0 : cQuote;
            word.clear();
            continue;
        }
        if (c == '@' || c == '<' || (c == '/' && css.mid(i, 2) == "/*"))
            return false;
        if (c == '(' && (bInColor || !IsOneOf(word.toLower(), {"rgb", "rgba", "hsl", "hsla"})))
            return false;
        if (c == ')' && !bInColor)
            return false;
        bInColor = c == '(' || (bInColor && c != ')');
        if (QByteArray(" \t\r\n\f,:;{}()").contains(c))
            word.clear();
        else
            word += c;
    }
    return !cQuote && !bInColor;
}

bool IsHarmlessAddress(QByteArray address) {
    // As a browser reads it.
    while (!address.isEmpty() && static_cast<unsigned char>(address[0]) <= ' ')
        address.remove(0, 1);
    for (const char c : {'\t', '\r', '\n'})
        address.replace(c, QByteArray());
    const QByteArray scheme = address.left(address.indexOf(':')).toLower();
    return address.startsWith('#') ||
           (address.contains(':') && IsOneOf(scheme, {"http", "https", "ftp", "mailto"}));
}

bool IsHarmless(const GumboElement& element) {
    if (element.tag_namespace != GUMBO_NAMESPACE_HTML ||
        IsOneOf(HtmlTree::TagName(element),
                {"script",   "object",   "iframe", "embed", "form",  "svg",   "base",   "link",  "applet",
                 "frame",    "frameset", "audio",  "video", "math",  "input", "button", "image", "template",
                 "noscript", "source",   "track",  "img",   "param", "area",  "map",    "portal"}))
        return false;
    for (unsigned i = 0; i < element.attributes.length; ++i) {
        const auto* pAttribute = static_cast<const GumboAttribute*>(element.attributes.data[i]);
        const QByteArray name = pAttribute->name;
        const QByteArray value = pAttribute->value;
        if (name == "href"    ? !IsHarmlessAddress(value)
            : name == "style" ? !IsHarmlessCss(value)
                              : !IsOneOf(name, {"id", "class", "colspan", "rowspan", "span", "start", "type",
                                                "value", "dir", "alt", "border", "lang", "rel", "target",
                                                "charset", "content", "name", "aria-label"}))
            return false;
    }
    if (element.tag != GUMBO_TAG_STYLE)
        return true;
    for (unsigned i = 0; i < element.children.length; ++i) {
        const auto* pText = static_cast<const GumboNode*>(element.children.data[i]);
        if (!IsHarmlessCss(pText->v.text.text))
            return false;
    }
    return true;
}

void CheckHarmless(const QByteArray& page) {
    if (HtmlTree::IsTooDeep(page))
        return;
    const HtmlTree::Tree tree = HtmlTree::Parse(page);
    HtmlTree::ForEachElement(tree->root, [](const GumboNode* pNode) { Check(IsHarmless(pNode->v.element)); });
}

} // namespace

// Whatever a converted document holds, nothing of it runs or loads in the page; whatever a presentation's
// text holds, it is read to an end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    QByteArray bytes = FuzzBytes(pData, nSize);
    const auto noPictures = [](const QString&) { return QString(); };
    for (const EKind eKind : {EKind::Document, EKind::Sheet}) {
        const auto page = CleanPage(eKind, bytes, QStringLiteral("t"), noPictures, QString::fromUtf8(bytes));
        if (page)
            CheckHarmless(*page);
    }
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    for (const CSlide& slide : ReadSlides(buffer))
        CheckHarmless(slide.text);
    return 0;
}
