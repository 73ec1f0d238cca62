#include "editor/PastedHtml.h"
#include "foundation/HtmlTree.h"
#include "tests/support/FuzzCheck.h"

#include <algorithm>
#include <initializer_list>

namespace {

// What a pasted text may hold is told here a second time and not asked of the code that made it.

bool IsOneOf(const QByteArray& name, std::initializer_list<const char*> names) {
    return std::any_of(names.begin(), names.end(), [&](const char* szOne) { return name == szOne; });
}

bool IsHarmlessAddress(QByteArray address) {
    // As a browser reads it.
    address.removeIf([](char c) { return c == '\t' || c == '\r' || c == '\n'; });
    const QByteArray scheme = address.trimmed().toLower();
    return scheme.startsWith("http://") || scheme.startsWith("https://") || scheme.startsWith("ftp://") ||
           scheme.startsWith("mailto:");
}

bool IsColourOrAttribute(const QByteArray& name, const QByteArray& value) {
    if (name == "style")
        return value.startsWith("background-color: #") && value.size() == 25;
    if (name == "color" || name == "bgcolor")
        return value.startsWith('#') && value.size() == 7;
    if (name == "href")
        return IsHarmlessAddress(value);
    if (name == "src")
        return value == "Z:\\a\"&.png";
    return IsOneOf(name, {"alt", "width", "height", "align", "valign", "border", "cellspacing", "cellpadding",
                          "colspan", "rowspan", "type", "start"});
}

bool IsHarmless(const GumboElement& element) {
    if (!IsOneOf(HtmlTree::TagName(element),
                 {"html",       "head", "body", "p",       "h1",   "h2",    "h3",    "h4",     "h5",
                  "h6",         "div",  "ul",   "ol",      "li",   "dl",    "dt",    "dd",     "pre",
                  "blockquote", "hr",   "br",   "img",     "a",    "table", "thead", "tbody",  "tfoot",
                  "tr",         "td",   "th",   "caption", "b",    "i",     "u",     "strike", "sub",
                  "sup",        "font", "span", "code",    "ruby", "rb",    "rt",    "rp"}))
        return false;
    for (unsigned i = 0; i < element.attributes.length; ++i) {
        const auto* pAttribute = static_cast<const GumboAttribute*>(element.attributes.data[i]);
        if (!IsColourOrAttribute(pAttribute->name, pAttribute->value))
            return false;
    }
    return true;
}

void CheckHarmless(const QString& strHtml) {
    const QByteArray html = "<!DOCTYPE html><body>" + strHtml.toUtf8();
    const HtmlTree::Tree tree = HtmlTree::Parse(html);
    HtmlTree::ForEachElement(tree->root, [](const GumboNode* pNode) { Check(IsHarmless(pNode->v.element)); });
}

} // namespace

// Whatever lies on the clipboard, nothing of it runs or loads in the page, and reading it comes to an end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const QString strInput = QString::fromUtf8(FuzzBytes(pData, nSize));
    const auto picture = [](const QString& strReference) {
        return strReference.size() % 2 == 0 ? QStringLiteral("Z:\\a\"&.png") : QString();
    };
    if (const auto fragment = PastedHtml::Clean(strInput, picture))
        CheckHarmless(fragment->strHtml);
    const QString strPlain = PastedHtml::FromPlainText(strInput);
    Check(!QString(strPlain).remove(QStringLiteral("<br>")).contains(u'<'));
    return 0;
}
