#include "companions/compiler/PageReader.h"

#include "companions/compiler/CssText.h"
#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"

#include <QFile>

QByteArray ReadSourceFile(const QString& strNativePath) {
    QFile file(strNativePath);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw Torvane::CRunException(CompilerText::c_strCannotRead.arg(strNativePath, file.errorString()));
    return bytes;
}

std::optional<ReadyPage> ReadPage(const QByteArray& bytes, const CReferences& references,
                                  const CReferences::Place& place) {
    ReadyPage page;
    const auto rewrite = [&](const QString& strReference) -> std::optional<QString> {
        CReferences::Result result = references.Rewrite(strReference, place);
        if (result.Found == CReferences::EFound::Missing && !page.DeadReferences.contains(result.Text))
            page.DeadReferences.append(result.Text);
        return result.Found == CReferences::EFound::Rewritten ? std::optional(result.Text) : std::nullopt;
    };
    const auto fragment = HtmlText::TakeFragment(HtmlText::Decode(bytes).Text, rewrite);
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
    HtmlText::Decoded text = HtmlText::Decode(bytes);
    // Bytes that don't survive the way there and back are kept as they are, one character each; names in
    // ASCII are found all the same.
    if (HtmlText::Encode(text) != bytes)
        text = {QString::fromLatin1(bytes), "ISO-8859-1", false};
    const std::optional<QString> strNew = kind == ESourceText::Page
                                              ? HtmlText::RewriteReferences(text.Text, rewrite)
                                              : CssText::RewriteReferences(text.Text, rewrite);
    if (!strNew)
        return bytes;
    text.Text = *strNew;
    return HtmlText::Encode(text).value_or(bytes);
}
