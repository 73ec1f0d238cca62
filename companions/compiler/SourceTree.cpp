#include "companions/compiler/SourceTree.h"

#include "companions/compiler/Sums.h"
#include "companions/compiler/Workers.h"
#include "foundation/Text.h"
#include "platform/base/FileCalls.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>

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
    struct Found {
        /// Each folder before what lies in it.
        std::vector<Entry> Entries;
        QList<Passed> PassedOver;
    };

    explicit CWalk(const QString& strFolder) {
        if (m_top.Open(QFile::encodeName(strFolder)) != 0)
            return;
        std::vector<Platform::CFolderEntry> entries = Sorted(m_top);
        std::erase_if(entries, [](const Platform::CFolderEntry& entry) {
            return entry.name.startsWith('.') || IsStage(QFile::decodeName(entry.name));
        });
        m_found.resize(entries.size());
        ForEachPiece(int(entries.size()), [&](int n) {
            const auto nPiece = static_cast<std::size_t>(n);
            Take(m_top, QString(), entries[nPiece], m_found[nPiece]);
        });
    }

    /// By top entry.
    const std::vector<Found>& All() const { return m_found; }

private:
    /// Sorted, so that which of two like names keeps its own does not hang on the disk's order.
    static std::vector<Platform::CFolderEntry> Sorted(Platform::CFolder& folder) {
        std::vector<Platform::CFolderEntry> entries;
        folder.List(entries);
        std::ranges::sort(entries, {}, &Platform::CFolderEntry::name);
        return entries;
    }

    static void Take(const Platform::CFolder& folder, const QString& strPrefix,
                     const Platform::CFolderEntry& entry, Found& found) {
        const QString strName = strPrefix + QFile::decodeName(entry.name);
        Platform::CFileState state;
        if (entry.name.startsWith('.')) {
            found.PassedOver.append({EPassed::Hidden, strName});
        } else if (entry.eType == Platform::EEntryType::Folder) {
            found.Entries.push_back({strName, true, {}});
            Platform::CFolder inner;
            if (inner.OpenBelow(folder, entry.name) != 0) {
                found.PassedOver.append({EPassed::Unreadable, strName});
                return;
            }
            for (const Platform::CFolderEntry& below : Sorted(inner))
                Take(inner, strName + u'/', below, found);
        } else if (entry.eType == Platform::EEntryType::File &&
                   folder.GetState(entry.name, state, false) == 0) {
            found.Entries.push_back({strName, false, {qint64(state.nSize), state.nModified}});
        } else {
            found.PassedOver.append(
                {entry.eType == Platform::EEntryType::Link ? EPassed::Link : EPassed::Unreadable, strName});
        }
    }

    Platform::CFolder m_top;
    std::vector<Found> m_found;
};

CSourceTree::CSourceTree(const QString& strNativeFolder) : m_strFolder(strNativeFolder) {
    const CWalk walk(m_strFolder);
    CSum names;
    for (const CWalk::Found& found : walk.All()) {
        for (const Entry& entry : found.Entries) {
            Add(entry);
            names.Add(entry.strName);
        }
        m_passed += found.PassedOver;
    }
    m_nNamesSum = names.Value();
}

void CSourceTree::Add(const Entry& entry) {
    const QString& strName = entry.strName;
    const QString strKey = LowerAscii(strName);
    if (entry.bFolder) {
        if (!m_folders.contains(strKey))
            m_folders.insert(strKey, strName);
        if (!strName.contains(u'/'))
            m_topFolders.append(strName);
        return;
    }
    m_exact.insert(strName, entry.state);
    const qsizetype nTop = strName.indexOf(u'/');
    if (nTop > 0)
        m_below[strName.left(nTop)].append(strName);
    if (m_files.contains(strKey)) {
        const QString strFree = FreeName(strName);
        m_renamed.insert(strName, strFree);
        m_files.insert(LowerAscii(strFree), strName);
        return;
    }
    m_files.insert(strKey, strName);
}

QString CSourceTree::FreeName(const QString& strName) const {
    const qsizetype nDot = strName.lastIndexOf(u'.');
    const qsizetype nStem = nDot > strName.lastIndexOf(u'/') ? nDot : strName.size();
    for (int n = 2;; ++n) {
        const QString strFree = strName.left(nStem) + u'~' + QString::number(n) + strName.mid(nStem);
        if (!m_files.contains(LowerAscii(strFree)))
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
    return parts.join(u'/');
}

QString CSourceTree::FindFile(const QString& strName) const {
    const QString strPlain = IsPlain(strName) ? strName : Join(QString(), strName);
    return m_exact.contains(strPlain) ? strPlain : m_files.value(LowerAscii(strPlain));
}

QString CSourceTree::FindFolder(const QString& strName) const {
    return m_folders.value(LowerAscii(IsPlain(strName) ? strName : Join(QString(), strName)));
}

QStringList CSourceTree::FilesBelow(const QString& strFolder) const {
    const qsizetype nTop = strFolder.indexOf(u'/');
    const QStringList all = m_below.value(nTop < 0 ? strFolder : strFolder.left(nTop));
    if (nTop < 0)
        return all;
    QStringList list;
    for (const QString& strName : all) {
        if (strName.startsWith(strFolder + u'/'))
            list.append(strName);
    }
    return list;
}

QStringList CSourceTree::TopFolders() const {
    return m_topFolders;
}
