#include "editor/Replacements.h"

#include <QStringView>

#include <algorithm>
#include <bitset>
#include <vector>

namespace ResourceText {

namespace {

constexpr char16_t c_colon = u':';
constexpr int c_nAscii = 128;

/// Finds the references of all changes in one reading, by their first colon.
///
/// Changes may touch each other: a reference may be the beginning of another one or stand within it, and what
/// one change writes may, with its surroundings, be what a later one looks for. So the text falls into pieces
/// at characters that are in no change at all. No occurrence, old or new, reaches over such a character, and
/// the changes in each piece are made one after the other in their order.
class CReplacer {
public:
    explicit CReplacer(const QList<Replacement>& replacements);

    QString Apply(QStringView text) const;
    QList<bool> FindOccurring(QStringView text) const;

private:
    struct Reference {
        QStringView strText;
        /// The changes that look for it, in their order. The same picture may stand in a page twice.
        std::vector<qsizetype> Changes;
        /// The longest other reference that this one begins with; -1 when there is none.
        qsizetype nBeginning = -1;
    };

    void AddReference(QStringView strText, qsizetype nChange);
    void AddHead(QStringView strHead);
    void LinkBeginnings();
    void CloseBreaks(QStringView text);
    bool IsBreak(QChar c) const { return c.unicode() < c_nAscii && m_breaks[c.unicode()]; }
    qsizetype FindLongest(QStringView rest) const;
    template <typename Visit>
    void VisitAt(QStringView text, qsizetype nColon, Visit visit) const;
    qsizetype FirstChange(QStringView piece, qsizetype nFrom) const;
    QString Rewrite(QStringView piece) const;

    const QList<Replacement>& m_replacements;
    /// In the order of their texts.
    std::vector<Reference> m_references;
    /// What they begin with, up to their first colon: "file:" and "http:", as a rule.
    std::vector<QStringView> m_heads;
    std::bitset<c_nAscii> m_breaks;
};

CReplacer::CReplacer(const QList<Replacement>& replacements) : m_replacements(replacements) {
    m_breaks.set();
    std::vector<qsizetype> order(static_cast<std::size_t>(replacements.size()));
    for (qsizetype n = 0; n < replacements.size(); ++n)
        order[static_cast<std::size_t>(n)] = n;
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) {
        return replacements.at(a).strFrom < replacements.at(b).strFrom;
    });
    for (const qsizetype n : order) {
        const Replacement& change = replacements.at(n);
        AddReference(change.strFrom, n);
        CloseBreaks(change.strFrom);
        CloseBreaks(change.strTo);
    }
    LinkBeginnings();
}

void CReplacer::AddReference(QStringView strText, qsizetype nChange) {
    if (m_references.empty() || m_references.back().strText != strText) {
        m_references.push_back({strText, {}});
        AddHead(strText.left(strText.indexOf(c_colon) + 1));
    }
    m_references.back().Changes.push_back(nChange);
}

void CReplacer::AddHead(QStringView strHead) {
    if (std::find(m_heads.begin(), m_heads.end(), strHead) == m_heads.end())
        m_heads.push_back(strHead);
}

void CReplacer::LinkBeginnings() {
    for (qsizetype n = 1; n < std::ssize(m_references); ++n) {
        Reference& reference = m_references[static_cast<std::size_t>(n)];
        qsizetype nBeginning = n - 1;
        while (nBeginning >= 0 &&
               !reference.strText.startsWith(m_references[static_cast<std::size_t>(nBeginning)].strText))
            nBeginning = m_references[static_cast<std::size_t>(nBeginning)].nBeginning;
        reference.nBeginning = nBeginning;
    }
}

void CReplacer::CloseBreaks(QStringView text) {
    for (const QChar c : text) {
        if (c.unicode() < c_nAscii)
            m_breaks.reset(c.unicode());
    }
}

/// The longest reference that the rest of the text begins with. In the order of texts it stands nowhere but
/// in front of the rest, and whatever stands between the two begins with it.
qsizetype CReplacer::FindLongest(QStringView rest) const {
    const auto it = std::upper_bound(m_references.begin(), m_references.end(), rest,
                                     [](QStringView a, const Reference& b) { return a < b.strText; });
    qsizetype n = it - m_references.begin() - 1;
    while (n >= 0 && !rest.startsWith(m_references[static_cast<std::size_t>(n)].strText))
        n = m_references[static_cast<std::size_t>(n)].nBeginning;
    return n;
}

/// Every reference in the text whose first colon is this one.
template <typename Visit>
void CReplacer::VisitAt(QStringView text, qsizetype nColon, Visit visit) const {
    for (const QStringView strHead : m_heads) {
        const qsizetype nBegin = nColon + 1 - strHead.size();
        if (nBegin < 0 || !text.sliced(nBegin).startsWith(strHead))
            continue;
        for (qsizetype n = FindLongest(text.sliced(nBegin)); n >= 0;
             n = m_references[static_cast<std::size_t>(n)].nBeginning)
            visit(m_references[static_cast<std::size_t>(n)]);
    }
}

/// The first of the changes from nFrom on that has something to do in the piece, or -1.
qsizetype CReplacer::FirstChange(QStringView piece, qsizetype nFrom) const {
    qsizetype nFirst = -1;
    for (qsizetype n = piece.indexOf(c_colon); n >= 0; n = piece.indexOf(c_colon, n + 1)) {
        VisitAt(piece, n, [&](const Reference& reference) {
            const auto it = std::lower_bound(reference.Changes.begin(), reference.Changes.end(), nFrom);
            if (it != reference.Changes.end() && (nFirst < 0 || *it < nFirst))
                nFirst = *it;
        });
    }
    return nFirst;
}

QString CReplacer::Rewrite(QStringView piece) const {
    QString strPiece = piece.toString();
    for (qsizetype n = FirstChange(strPiece, 0); n >= 0; n = FirstChange(strPiece, n + 1))
        strPiece.replace(m_replacements.at(n).strFrom, m_replacements.at(n).strTo);
    return strPiece;
}

QString CReplacer::Apply(QStringView text) const {
    QString strResult;
    strResult.reserve(text.size());
    qsizetype nDone = 0;
    qsizetype nColon = text.indexOf(c_colon);
    while (nColon >= 0) {
        bool bFound = false;
        VisitAt(text, nColon, [&](const Reference&) { bFound = true; });
        if (!bFound) {
            nColon = text.indexOf(c_colon, nColon + 1);
            continue;
        }
        qsizetype nBegin = nColon;
        while (nBegin > nDone && !IsBreak(text[nBegin - 1]))
            --nBegin;
        qsizetype nEnd = nColon;
        while (nEnd < text.size() && !IsBreak(text[nEnd]))
            ++nEnd;
        strResult += text.sliced(nDone, nBegin - nDone);
        strResult += Rewrite(text.sliced(nBegin, nEnd - nBegin));
        nDone = nEnd;
        nColon = text.indexOf(c_colon, nEnd);
    }
    strResult += text.sliced(nDone);
    return strResult;
}

QList<bool> CReplacer::FindOccurring(QStringView text) const {
    std::vector<bool> seen(m_references.size());
    for (qsizetype n = text.indexOf(c_colon); n >= 0; n = text.indexOf(c_colon, n + 1)) {
        VisitAt(text, n, [&](const Reference& reference) {
            seen[static_cast<std::size_t>(&reference - m_references.data())] = true;
        });
    }
    QList<bool> found(m_replacements.size(), false);
    for (std::size_t n = 0; n < seen.size(); ++n) {
        for (const qsizetype nChange : m_references[n].Changes)
            found[nChange] = seen[n];
    }
    return found;
}

bool AllHaveColons(const QList<Replacement>& replacements) {
    return std::all_of(replacements.begin(), replacements.end(),
                       [](const Replacement& r) { return r.strFrom.contains(c_colon); });
}

} // namespace

QList<bool> FindOccurring(const QString& strText, const QList<Replacement>& replacements) {
    if (AllHaveColons(replacements))
        return CReplacer(replacements).FindOccurring(strText);
    QList<bool> found;
    for (const Replacement& replacement : replacements)
        found.append(strText.contains(replacement.strFrom));
    return found;
}

QString ApplyReplacements(const QString& strText, const QList<Replacement>& replacements) {
    if (AllHaveColons(replacements))
        return CReplacer(replacements).Apply(strText);
    QString strResult = strText;
    for (const Replacement& replacement : replacements)
        strResult.replace(replacement.strFrom, replacement.strTo);
    return strResult;
}

} // namespace ResourceText
