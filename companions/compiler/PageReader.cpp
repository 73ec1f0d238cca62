#include "companions/compiler/PageReader.h"

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

QByteArray CorrectedPage(const QByteArray& bytes, const CReferences& references,
                         const CReferences::Place& place) {
    HtmlText::Decoded page = HtmlText::Decode(bytes);
    const auto rewrite = [&](const QString& strReference) -> std::optional<QString> {
        const CReferences::Result result = references.Rewrite(strReference, place);
        return result.Found == CReferences::EFound::Rewritten ? std::optional(result.Text) : std::nullopt;
    };
    // A page whose bytes don't survive the way there and back is better left alone.
    if (HtmlText::Encode(page) != bytes)
        return bytes;
    const std::optional<QString> strNew = HtmlText::RewriteReferences(page.Text, rewrite);
    if (!strNew)
        return bytes;
    page.Text = *strNew;
    return HtmlText::Encode(page).value_or(bytes);
}
