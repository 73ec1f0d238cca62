#include "companions/compiler/PageReader.h"

#include "companions/compiler/CssText.h"
#include "foundation/PageText.h"

#include <algorithm>

namespace {

void NoteSource(QStringList& sources, const CReferences::Result& result) {
    if (!result.ReadSource.isEmpty() && !sources.contains(result.ReadSource))
        sources.append(result.ReadSource);
}

/// The page with something more at the beginning of its head, said or not.
QByteArray WithInHead(const QByteArray& bytes, const QByteArray& more) {
    constexpr qsizetype c_nHead = 4096;
    const QByteArray lower = bytes.left(c_nHead).toLower();
    qsizetype nPlace = lower.startsWith("\xef\xbb\xbf") ? 3 : 0;
    for (const char* szTag : {"<head>", "<head ", "<html", "<!doctype"}) {
        const qsizetype nTag = lower.indexOf(szTag);
        const qsizetype nEnd = nTag < 0 ? -1 : lower.indexOf('>', nTag);
        if (nEnd >= 0) {
            nPlace = nEnd + 1;
            break;
        }
    }
    return bytes.left(nPlace) + more + bytes.mid(nPlace);
}

/// Within the frame a page that is silent would be taken to be in the coding that the frame is in. The first
/// declaration counts, also before one that is wrong.
QByteArray WithDeclaration(const QByteArray& bytes) {
    return WithInHead(bytes, "<meta charset=\"gb18030\">");
}

bool IsAscii(const QByteArray& bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 128; });
}

} // namespace

std::optional<ReadyPage> ReadPage(const QByteArray& bytes, const CReferences& references,
                                  const CReferences::Place& place) {
    ReadyPage page;
    const auto rewrite = [&](const QString& strReference) -> std::optional<QString> {
        CReferences::Result result = references.Rewrite(strReference, place);
        if (!result.Dead.isEmpty() && !page.DeadReferences.contains(result.Dead))
            page.DeadReferences.append(result.Dead);
        NoteSource(page.ReadSources, result);
        return result.Found == CReferences::EFound::Rewritten ? std::optional(result.Text) : std::nullopt;
    };
    const auto fragment = HtmlText::TakeFragment(PageText::Decode(bytes).Text, rewrite);
    if (!fragment)
        return std::nullopt;
    page.Content = *fragment;
    return page;
}

CorrectedFile CorrectedText(ESourceText kind, const QByteArray& bytes, const CReferences& references,
                            const CReferences::Place& place) {
    CorrectedFile corrected{bytes, {}};
    const auto rewrite = [&](const QString& strReference) -> std::optional<QString> {
        const CReferences::Result result = references.Rewrite(strReference, place);
        NoteSource(corrected.ReadSources, result);
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
    const bool bSilent = kind == ESourceText::Page && text.IsSilent && !IsAscii(bytes);
    if (!strNew && !bMark)
        return {bSilent ? WithDeclaration(bytes) : bytes, corrected.ReadSources};
    text.Text = strNew.value_or(text.Text);
    text.HasMark = text.HasMark || bMark;
    corrected.Bytes = PageText::Encode(text).value_or(bytes);
    if (bSilent)
        corrected.Bytes = WithDeclaration(corrected.Bytes);
    return corrected;
}

std::optional<QByteArray> WithSaidCoding(const QByteArray& bytes) {
    const bool bPlain =
        std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (bPlain)
        return std::nullopt;
    PageText::Decoded text = PageText::Decode(bytes);
    if (text.HasMark)
        return std::nullopt;
    text.Charset = "UTF-8";
    text.HasMark = true;
    return PageText::Encode(text);
}

QByteArray WithScript(const QByteArray& page, const QString& strAddress) {
    const bool bWide = page.startsWith("\xff\xfe") || page.startsWith("\xfe\xff") || page.contains('\0');
    return bWide ? page
                 : WithInHead(page, "<script src=\"" + strAddress.toHtmlEscaped().toUtf8() + "\"></script>");
}
