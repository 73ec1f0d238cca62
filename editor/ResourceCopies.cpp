#include "editor/ResourceCopies.h"

#include "editor/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "platform/base/NativePath.h"

using namespace ResourceText;

namespace {

QString ShownSource(const ResourceCopy& copy) {
    return copy.bRemote ? copy.strSource : Platform::ToShown(copy.strOpenPath);
}

/// For one line: an address may be as long as it likes, and it ends with what it names.
QString ShownName(const ResourceCopy& copy) {
    constexpr qsizetype c_nHead = 20;
    constexpr qsizetype c_nTail = 30;
    const QString strName = copy.bRemote ? copy.strSource : Torvane::File::BareName(copy.strOpenPath);
    if (strName.size() <= c_nHead + c_nTail)
        return strName;
    return strName.left(c_nHead) + u'…' + strName.right(c_nTail);
}

} // namespace

CResourceCopies::CResourceCopies(Torvane::Dialog::MFC::IPeople& people, const QList<ResourceCopy>& copies,
                                 QString strResFolder, FetchFile fetch, bool bMayCancel)
    : CStatusTask(people, EditorTexts::c_strSaving), m_copies(copies),
      m_strResFolder(std::move(strResFolder)), m_fetch(std::move(fetch)), m_bMayCancel(bMayCancel) {
    for (qsizetype n = 0; n < copies.size(); ++n) {
        if (copies.at(n).bCopy)
            m_pieces.append(n);
    }
}

const ResourceCopy& CResourceCopies::CopyOf(qsizetype nPiece) const {
    return m_copies.at(m_pieces.at(nPiece));
}

void CResourceCopies::Work() {
    if (m_pieces.isEmpty())
        return;
    SetPieces(m_pieces.size());
    // What was in vain once, as a server that doesn't answer, is not tried anew for each place in the page.
    QSet<QString> inVain;
    try {
        DoFiles(
            m_pieces.size(),
            [&](qsizetype nPiece, Torvane::File::IWalkFilter* pFilter) {
                const ResourceCopy& copy = CopyOf(nPiece);
                const QString strSource = ShownSource(copy);
                if (!inVain.contains(strSource) && Make(copy, *pFilter))
                    m_made.insert(m_pieces.at(nPiece));
                else
                    inVain.insert(strSource);
            },
            [&](qsizetype nPiece) {
                const ResourceCopy& copy = CopyOf(nPiece);
                return (copy.bRemote ? EditorTexts::c_strFetching : EditorTexts::c_strCopying)
                    .arg(ShownName(copy));
            });
    } catch (const Torvane::CRunException&) {
        if (m_bMayCancel)
            throw Torvane::CRunException(EditorTexts::c_strSaveCancelled);
    }
}

bool CResourceCopies::Make(const ResourceCopy& copy, Torvane::File::IWalkFilter& filter) const {
    if (!Torvane::File::TryCreateFolderPath(m_strResFolder))
        return false;
    try {
        if (!copy.bRemote) {
            Torvane::File::CopyOneFile(copy.strOpenPath, copy.strDest, false, &filter);
            return true;
        }
    } catch (const Torvane::CRunException&) {
        return false;
    }
    // Like the local copy, a fetch never replaces what already lies there.
    return m_fetch && Torvane::File::GetPathKind(copy.strDest) == Torvane::File::EPathKind::Nothing &&
           m_fetch(copy.strSource, copy.strDest, [&filter] { return !filter.Cancelled(); });
}

QSet<qsizetype> CResourceCopies::GetFailed() const {
    return QSet<qsizetype>(m_pieces.begin(), m_pieces.end()) - m_made;
}

QStringList CResourceCopies::GetFailedNames() const {
    QSet<QString> seen;
    for (const qsizetype n : m_made)
        seen.insert(ShownSource(m_copies.at(n)));
    QStringList names;
    for (const qsizetype n : m_pieces) {
        const QString strSource = ShownSource(m_copies.at(n));
        if (!m_made.contains(n) && !seen.contains(strSource)) {
            seen.insert(strSource);
            names.append(strSource);
        }
    }
    return names;
}

void CResourceCopies::RemoveMade() {
    for (const qsizetype n : std::as_const(m_made)) {
        try {
            Torvane::File::DeleteOneFile(m_copies.at(n).strDest, false);
        } catch (const Torvane::CRunException&) {
            continue;
        }
    }
    m_made.clear();
}
