#include "companions/compiler/HtmlText.h"
#include "foundation/PageAnchors.h"
#include "foundation/PageText.h"
#include "tests/support/FuzzCheck.h"

#include <gumbo.h>

namespace {

bool IsElement(const GumboNode* pNode, GumboTag tag) {
    return pNode->type == GUMBO_NODE_ELEMENT && pNode->v.element.tag == tag;
}

/// Whether a page's content stays within the element that the frame has for it.
bool StaysInside(const QString& strBody) {
    const QByteArray page = "<!DOCTYPE html><html><head><title>x</title></head><body><main><div>" +
                            strBody.toUtf8() + "</div></main><footer></footer></body></html>";
    GumboOutput* pOutput =
        gumbo_parse_with_options(&kGumboDefaultOptions, page.constData(), size_t(page.size()));
    const GumboVector& top = pOutput->root->v.element.children;
    const auto* pBody = static_cast<const GumboNode*>(top.data[top.length - 1]);
    bool bInside = IsElement(pBody, GUMBO_TAG_BODY) && pBody->v.element.children.length == 2;
    for (unsigned i = 0; bInside && i < 2; ++i)
        bInside = IsElement(static_cast<const GumboNode*>(pBody->v.element.children.data[i]),
                            i == 0 ? GUMBO_TAG_MAIN : GUMBO_TAG_FOOTER);
    gumbo_destroy_output(&kGumboDefaultOptions, pOutput);
    return bInside;
}

} // namespace

// Any bytes at all are a page: it is read, its references are found, and it never breaks out of the frame.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const QByteArray bytes = FuzzBytes(pData, nSize);
    const PageText::Decoded page = PageText::Decode(bytes);
    const auto rewrite = [](const QString& strReference) -> std::optional<QString> {
        return strReference + u'x';
    };
    HtmlText::RewriteReferences(page.Text, rewrite);
    for (const PageAnchors::Anchor& anchor : PageAnchors::Find(page.Text))
        Check(!anchor.strName.isEmpty() && anchor.strText.size() <= 61);
    const auto fragment = HtmlText::TakeFragment(page.Text, rewrite);
    Check(!fragment || StaysInside(fragment->Body));
    return 0;
}
