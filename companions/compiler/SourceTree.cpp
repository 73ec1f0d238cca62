#include "companions/compiler/SourceTree.h"

#include "companions/compiler/KeptListings.h"
#include "companions/compiler/Sums.h"
#include "companions/compiler/Texts.h"
#include "companions/compiler/Workers.h"
#include "foundation/Exceptions.h"
#include "foundation/Text.h"
#include "platform/base/FileCalls.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Whether there is nothing in a name that Join would take out.
bool IsPlain(const QString& strName) {
    QChar cBefore = u'/';
    for (const QChar c : strName) {
        if (cBefore == u'/' && (c == u'/' || c == u'.'))
            return false;
        cBefore = c;
    }
    return cBefore != u'/';
}

/// Most names are plain, for which no decoder is needed.
QString Decoded(const QByteArray& name) {
    return std::ranges::all_of(name, [](char c) { return c > 0; }) ? QString::fromLatin1(name)
                                                                   : QFile::decodeName(name);
}

} // namespace

/// Where a node's content is being made, and where what it replaces or a damaged folder was put aside.
bool IsStage(const QString& strTopFolder) {
    static const QRegularExpression beside(u"^N\\d+(\\[\\d+\\])?(\\.(old|new))*$"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    return strTopFolder == "~"_L1 ||
           (!strTopFolder.back().isDigit() && beside.match(strTopFolder).hasMatch());
}

/// Lists what lies below the folder, many folders at a time, since there is one for each node.
class CSourceTree::CWalk {
public:
    CWalk(const QString& strFolder, const QString& strListings) {
        std::vector<Platform::CFolderEntry> entries;
        const QByteArray folder = QFile::encodeName(strFolder);
        m_nError = m_top.Open(folder);
        if (m_nError != 0)
            return;
        m_pKept = std::make_unique<CKeptListings>(strListings, folder, m_top);
        m_nError = ListSorted(m_top, entries);
        std::erase_if(entries, [](const Platform::CFolderEntry& entry) {
            return entry.name.startsWith('.') || IsStage(Decoded(entry.name));
        });
        m_groups.resize(entries.size());
        std::vector<std::vector<QByteArray>> listed(entries.size());
        ForEachPiece(int(entries.size()), [&](int n) {
            Group& group = m_groups[std::size_t(n)];
            Take({&m_top, {}, {}}, entries[std::size_t(n)], group, listed[std::size_t(n)]);
            CSum names;
            for (const Entry& entry : group.Entries) {
                names.Add(entry.strName);
                group.nSize += entry.state.nSize;
            }
            group.nNamesSum = names.Value();
        });
        std::vector<QByteArray> lines;
        for (std::vector<QByteArray>& some : listed)
            std::ranges::move(some, std::back_inserter(lines));
        m_pKept->Write(lines);
    }

    /// Throws when the folder can't be listed: a course that lies on a disk which was just taken away is not
    /// one without content.
    std::vector<Group> TakeGroups(const QString& strFolder, bool& bThere) {
        bThere = m_nError != ENOENT;
        if (m_nError != 0 && bThere)
            throw Torvane::CRunException(
                CompilerText::c_strCannotRead.arg(strFolder, Platform::SystemErrorText(m_nError)));
        return std::move(m_groups);
    }

private:
    /// Sorted, so that which of two like names keeps its own does not hang on the disk's order.
    static int ListSorted(Platform::CFolder& folder, std::vector<Platform::CFolderEntry>& entries) {
        const int nError = folder.List(entries);
        std::ranges::sort(entries, {}, &Platform::CFolderEntry::name);
        return nError;
    }

    /// A folder: open, or null when it needn't be, since its listing was kept. Path and Name lead to what
    /// lies in it from the top, in the system's bytes and for the tree; they end in "/", unless it is the
    /// top.
    struct Place {
        const Platform::CFolder* pOpen;
        QByteArray Path;
        QString Name;
    };

    void Take(const Place& place, const Platform::CFolderEntry& entry, Group& found,
              std::vector<QByteArray>& listed) {
        const QString strName = place.Name + Decoded(entry.name);
        Platform::CFileState state;
        if (entry.name.startsWith('.')) {
            found.PassedOver.append({EPassed::Hidden, strName});
        } else if (entry.eType == Platform::EEntryType::Folder) {
            found.Entries.push_back({strName, true, {}});
            TakeFolder(place, entry.name, strName, found, listed);
        } else if (entry.eType == Platform::EEntryType::File &&
                   (place.pOpen ? place.pOpen->GetState(entry.name, state, false)
                                : m_top.GetState(place.Path + entry.name, state, false)) == 0 &&
                   state.bReadable) {
            found.Entries.push_back({strName, false, {qint64(state.nSize), state.nModified, state.nChanged}});
        } else {
            found.PassedOver.append(
                {entry.eType == Platform::EEntryType::Link ? EPassed::Link : EPassed::Unreadable, strName});
        }
    }

    void TakeFolder(const Place& place, const QByteArray& name, const QString& strName, Group& found,
                    std::vector<QByteArray>& listed) {
        const QByteArray path = place.Path + name;
        if (const CKeptListings::Listing* pKept = m_pKept->Find(m_top, path)) {
            for (const Platform::CFolderEntry& below : pKept->Entries)
                Take({nullptr, path + '/', strName + u'/'}, below, found, listed);
            return;
        }
        Platform::CFolder inner;
        Platform::CFileState before;
        CKeptListings::Listing listing;
        if ((place.pOpen ? inner.OpenBelow(*place.pOpen, name) : inner.OpenBelow(m_top, path)) != 0 ||
            (m_pKept->Keeps() && inner.GetOwnState(before) != 0) || ListSorted(inner, listing.Entries) != 0)
            found.PassedOver.append({EPassed::Unreadable, strName});
        else if (QByteArray lines = m_pKept->LinesOf(path, before, listing); !lines.isEmpty())
            listed.push_back(std::move(lines));
        for (const Platform::CFolderEntry& below : listing.Entries)
            Take({&inner, path + '/', strName + u'/'}, below, found, listed);
    }

    Platform::CFolder m_top;
    std::unique_ptr<CKeptListings> m_pKept;
    int m_nError = 0;
    std::vector<Group> m_groups;
};

CSourceTree::CSourceTree(const QString& strNativeFolder, const QString& strListings)
    : m_strFolder(strNativeFolder),
      m_groups(CWalk(strNativeFolder, strListings).TakeGroups(strNativeFolder, m_bThere)) {
    m_folders.reserve(qsizetype(m_groups.size()));
    m_files.reserve(qsizetype(m_groups.size()));
    CSum names;
    for (std::size_t nGroup = 0; nGroup < m_groups.size(); ++nGroup) {
        Group& group = m_groups[nGroup];
        names.Add(group.nNamesSum);
        for (const Entry& entry : group.Entries)
            Add(entry, nGroup);
        m_passed += std::exchange(group.PassedOver, {});
    }
    m_nNamesSum = names.Value();
}

std::size_t CSourceTree::FoldedName::Hash(std::size_t nSeed) const {
    quint64 nHash = nSeed;
    for (const QChar c : strName) {
        const bool bUpper = c >= u'A' && c <= u'Z';
        nHash = (nHash ^ (c.unicode() | (bUpper ? 0x20U : 0U))) * 0x9E3779B97F4A7C15ULL;
    }
    return nHash ^ nHash >> 32;
}

void CSourceTree::Add(const Entry& entry, std::size_t nGroup) {
    const QString& strName = entry.strName;
    if (entry.bFolder) {
        if (!m_folders.contains({strName}))
            m_folders.insert({strName}, {strName, nGroup});
        if (!strName.contains(u'/'))
            m_topFolders.append(strName);
        return;
    }
    if (!m_files.contains({strName})) {
        m_files.insert({strName}, {strName, entry.state});
        return;
    }
    const QString strFree = FreeName(strName);
    m_renamed.insert(strName, strFree);
    m_twins.insert(strName, entry.state);
    m_files.insert({strFree}, {strName, entry.state});
}

QString CSourceTree::FreeName(const QString& strName) const {
    const qsizetype nDot = strName.lastIndexOf(u'.');
    const qsizetype nStem = nDot > strName.lastIndexOf(u'/') ? nDot : strName.size();
    for (int n = 2;; ++n) {
        const QString strFree = strName.left(nStem) + u'~' + QString::number(n) + strName.mid(nStem);
        if (!m_files.contains({strFree}))
            return strFree;
    }
}

QString CSourceTree::Join(const QString& strFolder, const QString& strName) {
    QStringList parts = strFolder.split(u'/', Qt::SkipEmptyParts);
    const QStringList more = strName.split(u'/', Qt::SkipEmptyParts);
    for (const QString& strPart : more) {
        if (strPart == "."_L1)
            continue;
        if (strPart != ".."_L1)
            parts.append(strPart);
        else if (parts.isEmpty())
            return QString();
        else
            parts.removeLast();
    }
    return parts.isEmpty() ? u""_s : parts.join(u'/');
}

QString CSourceTree::FindFile(const QString& strName) const {
    const QString strPlain = IsPlain(strName) ? strName : Join(QString(), strName);
    if (m_twins.contains(strPlain))
        return strPlain;
    const auto found = m_files.constFind({strPlain});
    return found == m_files.constEnd() ? QString() : found->strName;
}

QString CSourceTree::FindFolder(const QString& strName) const {
    const auto found = m_folders.constFind({IsPlain(strName) ? strName : Join(QString(), strName)});
    return found == m_folders.constEnd() ? QString() : found->strName;
}

CSourceTree::State CSourceTree::StateOf(const QString& strFile) const {
    const auto found = m_files.constFind({strFile});
    return found != m_files.constEnd() && found->strName == strFile ? found->state : m_twins.value(strFile);
}

const CSourceTree::Group* CSourceTree::GroupOf(const QString& strTop) const {
    const auto found = m_folders.constFind({strTop});
    if (found == m_folders.constEnd())
        return nullptr;
    if (found->strName == strTop)
        return &m_groups[found->nGroup];
    const auto same = std::ranges::find_if(m_groups, [&](const Group& group) {
        return !group.Entries.empty() && group.Entries.front().strName == strTop;
    });
    return same == m_groups.end() ? nullptr : &*same;
}

QStringList CSourceTree::FilesBelow(const QString& strFolder) const {
    const qsizetype nTop = strFolder.indexOf(u'/');
    const Group* pGroup = GroupOf(nTop < 0 ? strFolder : strFolder.left(nTop));
    if (!pGroup)
        return {};
    const QString strPrefix = nTop < 0 ? QString() : strFolder + u'/';
    QStringList list;
    for (const Entry& entry : pGroup->Entries) {
        if (!entry.bFolder && (nTop < 0 || entry.strName.startsWith(strPrefix)))
            list.append(entry.strName);
    }
    return list;
}

QStringList CSourceTree::TopFolders() const {
    return m_topFolders;
}

qint64 CSourceTree::SizeBelow(const QString& strTopFolder) const {
    const Group* pGroup = GroupOf(strTopFolder);
    return pGroup ? pGroup->nSize : 0;
}
