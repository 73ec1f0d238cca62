#include "companions/compiler/PageReader.h"

#include "companions/compiler/CssText.h"
#include "foundation/PageText.h"

#include <QRegularExpression>
#include <QSet>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

void NoteOnce(QStringList& list, const QString& strText) {
    if (!strText.isEmpty() && !list.contains(strText))
        list.append(strText);
}

void NoteSources(FoundSources& found, const CReferences::Result& result) {
    NoteOnce(found.Read, result.ReadSource);
    NoteOnce(found.Strays, result.Stray);
}

/// Has the anchors of pages that a large one refers to be looked up before its tree stands: only their names
/// stay, and no two large trees stand together. A reference in an odd spelling is looked up later.
void LookUpPlaces(const QString& strPage, const CReferences& references, const CReferences::Place& place) {
    if (strPage.size() < c_nLargePage / 2)
        return;
    static const QRegularExpression link(u"href\\s*=\\s*[\"']?([^\"'<>\\s]*#[^\"'<>\\s]+)"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    QSet<QString> seen;
    for (auto it = link.globalMatch(strPage); it.hasNext();) {
        const QString strReference = it.next().captured(1);
        if (seen.contains(strReference))
            continue;
        seen.insert(strReference);
        references.Rewrite(strReference, place);
    }
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
    const auto lock = LockIfLarge(bytes.size());
    const QString strText = PageText::Decode(bytes).Text;
    const QString strBase = HtmlText::BaseOf(strText);
    // The base itself does not come along.
    const std::optional<CReferences::Place> base = references.WithBase(strBase, place);
    if (base)
        LookUpPlaces(strText, references, {base->SourceFolder, place.SiteFolder, place.Source});
    const auto rewrite = [&](const QString& strReference) -> std::optional<QString> {
        if (!base)
            return strReference.startsWith(u'#')
                       ? std::nullopt
                       : std::optional(QUrl(strBase).resolved(QUrl(strReference)).toString());
        CReferences::Result result =
            references.Rewrite(strReference, {base->SourceFolder, place.SiteFolder, place.Source});
        NoteOnce(result.Found == CReferences::EFound::Missing ? page.DeadReferences : page.DeadPlaces,
                 result.Dead);
        NoteSources(page.Found, result);
        return result.Found == CReferences::EFound::Rewritten ? std::optional(result.Text) : std::nullopt;
    };
    const auto fragment = HtmlText::TakeFragment(strText, rewrite);
    if (!fragment)
        return std::nullopt;
    page.Content = *fragment;
    return page;
}

CorrectedFile CorrectedText(ESourceText kind, const QByteArray& bytes, const CReferences& references,
                            const CReferences::Place& place) {
    CorrectedFile corrected{bytes, {}};
    const auto lock = LockIfLarge(bytes.size());
    PageText::Decoded text = PageText::Decode(bytes);
    // Bytes that don't survive the way there and back are kept as they are, one character each; names in
    // ASCII are found all the same.
    if (PageText::Encode(text) != bytes)
        text = {QString::fromLatin1(bytes), "ISO-8859-1", false};
    const bool bPage = kind != ESourceText::StyleSheet;
    const std::optional<CReferences::Place> base =
        references.WithBase(bPage ? HtmlText::BaseOf(text.Text) : QString(), place);
    if (bPage && base)
        LookUpPlaces(text.Text, references, *base);
    const auto rewrite = [&](const QString& strReference) -> std::optional<QString> {
        if (!base)
            return std::nullopt;
        const CReferences::Result result = references.Rewrite(strReference, *base);
        if (result.Found == CReferences::EFound::Missing)
            NoteOnce(corrected.DeadReferences, result.Dead);
        NoteSources(corrected.Found, result);
        return result.Found == CReferences::EFound::Rewritten ? std::optional(result.Text) : std::nullopt;
    };
    const std::optional<QString> strNew =
        bPage ? HtmlText::RewriteReferences(text.Text, rewrite, base ? base->Base : QString())
              : CssText::RewriteReferences(text.Text, rewrite);
    // No browser need guess as well as we did.
    const bool bMark = bPage && text.IsUnsaid;
    const bool bSilent = kind == ESourceText::Page && text.IsSilent && !IsAscii(bytes);
    if (strNew || bMark) {
        text.Text = strNew.value_or(text.Text);
        text.HasMark = text.HasMark || bMark;
        corrected.Bytes = PageText::Encode(text).value_or(bytes);
    }
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
