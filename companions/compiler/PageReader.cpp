#include "companions/compiler/PageReader.h"

#include "companions/compiler/CssText.h"
#include "foundation/PageText.h"

std::optional<ReadyPage> ReadPage(const QByteArray& bytes, const CReferences& references,
                                  const CReferences::Place& place) {
    ReadyPage page;
    const auto rewrite = [&](const QString& strReference) -> std::optional<QString> {
        CReferences::Result result = references.Rewrite(strReference, place);
        if (!result.Dead.isEmpty() && !page.DeadReferences.contains(result.Dead))
            page.DeadReferences.append(result.Dead);
        return result.Found == CReferences::EFound::Rewritten ? std::optional(result.Text) : std::nullopt;
    };
    const auto fragment = HtmlText::TakeFragment(PageText::Decode(bytes).Text, rewrite);
    if (!fragment)
        return std::nullopt;
    page.Content = *fragment;
    return page;
}

QByteArray CorrectedText(ESourceText kind, const QByteArray& bytes, const CReferences& references,
                         const CReferences::Place& place) {
    const auto rewrite = [&](const QString& strReference) -> std::optional<QString> {
        const CReferences::Result result = references.Rewrite(strReference, place);
        return result.Found == CReferences::EFound::Rewritten ? std::optional(result.Text) : std::nullopt;
    };
    PageText::Decoded text = PageText::Decode(bytes);
    // Bytes that don't survive the way there and back are kept as they are, one character each; names in
    // ASCII are found all the same.
    if (PageText::Encode(text) != bytes)
        text = {QString::fromLatin1(bytes), "ISO-8859-1", false};
    const std::optional<QString> strNew = kind == ESourceText::Page
                                              ? HtmlText::RewriteReferences(text.Text, rewrite)
                                              : CssText::RewriteReferences(text.Text, rewrite);
    // No browser need guess as well as we did.
    const bool bMark = kind == ESourceText::Page && text.IsUnsaid;
    if (!strNew && !bMark)
        return bytes;
    text.Text = strNew.value_or(text.Text);
    text.HasMark = text.HasMark || bMark;
    return PageText::Encode(text).value_or(bytes);
}
