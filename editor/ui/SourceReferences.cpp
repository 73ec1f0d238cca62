#include "editor/ui/SourceReferences.h"

#include "foundation/HtmlTree.h"
#include "platform/ui/SurfaceUrls.h"

#include <QMap>
#include <QRegularExpression>

namespace {

/// A source with more is larger than any that was written, and takes too long.
constexpr qsizetype c_nMaxTags = 1'000'000;

/// Whether there may be a tag that names an encoding.
bool MayDeclare(const QString& strSource) {
    return strSource.contains(QLatin1StringView("<meta"), Qt::CaseInsensitive);
}

bool IsDeclaration(const GumboElement& element) {
    if (element.tag != GUMBO_TAG_META)
        return false;
    const GumboAttribute* pKind = gumbo_get_attribute(&element.attributes, "http-equiv");
    return gumbo_get_attribute(&element.attributes, "charset") != nullptr ||
           (pKind != nullptr && qstricmp(pKind->value, "content-type") == 0);
}

/// Where an attribute's value or a tag stands in the bytes of the text, and what it becomes.
struct SChange {
    qsizetype nLength;
    QByteArray value;
};

/// Whether there may be a reference that has to be copied or to get another form.
bool MayReferToFiles(const QString& strSource) {
    static const QRegularExpression local(QStringLiteral("file:|(?<![a-z])[a-z]:[\\\\/]"),
                                          QRegularExpression::CaseInsensitiveOption);
    return local.match(strSource).hasMatch();
}

QByteArray WithoutQuotes(const QByteArray& value) {
    const bool bQuoted = value.startsWith('"') || value.startsWith('\'');
    return bQuoted ? value.mid(1, value.size() - 2) : value;
}

} // namespace

CSourceReferences CSourceReferences::Of(const QString& strSource) {
    CSourceReferences result{strSource, {}, {}, {}, !MayReferToFiles(strSource) && !MayDeclare(strSource)};
    const QByteArray bytes = strSource.toUtf8();
    if (bytes.count('<') > c_nMaxTags || HtmlTree::IsTooDeep(bytes))
        return result;
    const HtmlTree::Tree tree = HtmlTree::Parse(bytes);
    if (HtmlTree::IsDeep(tree->root))
        return result;
    result.bKnown = true;
    // By their places: the parser may make several elements of one tag.
    QMap<qsizetype, SChange> changes;
    const auto note = [&](const GumboElement& element, const char* szName, QStringList& list) {
        const GumboAttribute* pAttribute = gumbo_get_attribute(&element.attributes, szName);
        if (pAttribute == nullptr)
            return;
        const QString strValue = QString::fromUtf8(pAttribute->value);
        const auto canonical = SurfaceUrls::CanonicalReference(strValue);
        if (!canonical) {
            if (const QString strAbsolute = SurfaceUrls::ReportedReference(strValue, {});
                !strAbsolute.isEmpty())
                list.append(strAbsolute);
            return;
        }
        // In the text a query or a fragment may need an escape.
        const QString strWritten = canonical->toHtmlEscaped();
        list.append(strWritten);
        const GumboStringPiece& piece = pAttribute->original_value;
        const QByteArray written(piece.data, static_cast<qsizetype>(piece.length));
        if (WithoutQuotes(written) != strWritten.toUtf8())
            changes.insert(piece.data - bytes.constData(), {written.size(), '"' + strWritten.toUtf8() + '"'});
    };
    HtmlTree::ForEachElement(tree->root, [&](const GumboNode* pNode) {
        const GumboElement& element = pNode->v.element;
        const GumboStringPiece& tag = element.original_tag;
        if (IsDeclaration(element) && tag.length > 0)
            changes.insert(tag.data - bytes.constData(), {static_cast<qsizetype>(tag.length), {}});
        if (element.tag == GUMBO_TAG_IMG)
            note(element, "src", result.Images);
        else if (element.tag == GUMBO_TAG_EMBED)
            note(element, "src", result.Embeds);
        else if (element.tag == GUMBO_TAG_A)
            note(element, "href", result.Anchors);
    });
    if (changes.isEmpty())
        return result;
    QByteArray text;
    qsizetype nDone = 0;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        text += QByteArrayView(bytes).sliced(nDone, it.key() - nDone).toByteArray() + it->value;
        nDone = it.key() + it->nLength;
    }
    result.strHtml = QString::fromUtf8(text + bytes.mid(nDone));
    return result;
}
