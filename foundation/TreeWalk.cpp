#include "foundation/TreeWalk.h"

#include "foundation/CodePage.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "platform/base/NativePath.h"

#include <algorithm>
#include <cerrno>
#include <vector>

namespace Torvane::File {
namespace {

using Platform::CFolderEntry;
using Platform::EEntryType;

// Every folder on the way down stays open. A path of ours has at most 130 components; what lies deeper than
// this was not made by any program that uses such paths.
constexpr int c_nMaxDepth = 200;

bool IsAscii(const QByteArray& name) {
    return std::all_of(name.begin(), name.end(), [](char c) { return static_cast<uchar>(c) < 0x80; });
}

void SortByName(std::vector<CFolderEntry>& entries) {
    std::sort(entries.begin(), entries.end(), [](const CFolderEntry& a, const CFolderEntry& b) {
        const QString strA = LowerAscii(QString::fromUtf8(a.name));
        const QString strB = LowerAscii(QString::fromUtf8(b.name));
        return strA != strB ? strA < strB : a.name < b.name;
    });
}

class CTreeWalk {
public:
    CTreeWalk(ITreeVisitor& visitor, const TreeOptions& options) : m_visitor(visitor), m_options(options) {}

    // False when the filter stopped the walk; nobody is told of the folders that it was in then.
    bool Run(TreeFolder& folder, bool bSkipSpecial) {
        m_visitor.Enter(folder);
        std::vector<CFolderEntry> entries;
        if (folder.Folder.IsOpen())
            folder.Folder.List(entries);
        if (m_options.bSorted)
            SortByName(entries);
        for (const CFolderEntry& entry : entries) {
            if (m_options.pFilter && m_options.pFilter->Cancelled())
                return false;
            if (bSkipSpecial && entry.name.startsWith('.'))
                continue;
            if (!HasPath(entry.name)) {
                m_visitor.PassOver(folder, entry.name);
                continue;
            }
            if (entry.eType == EEntryType::Folder) {
                if (!EnterBelow(folder, entry))
                    return false;
            } else if (!m_options.pFilter || m_options.pFilter->AcceptFile(EntryPath(folder, entry.name))) {
                m_visitor.Entry(folder, entry);
            }
        }
        m_visitor.Leave(folder);
        return true;
    }

private:
    bool EnterBelow(TreeFolder& parent, const CFolderEntry& entry) {
        const QString strPath = EntryPath(parent, entry.name);
        if (m_options.pFilter && !m_options.pFilter->AcceptFolder(strPath))
            return true;
        if (!m_options.bRecursive)
            return true;
        TreeFolder folder;
        folder.strPath = strPath + u'\\';
        folder.nPathBytes = EntryPathBytes(parent.nPathBytes, entry.name) + 1;
        folder.name = entry.name;
        folder.pParent = &parent;
        folder.nDepth = parent.nDepth + 1;
        folder.nOpenError =
            folder.nDepth > c_nMaxDepth ? ENAMETOOLONG : folder.Folder.OpenBelow(parent.Folder, entry.name);
        return !m_visitor.GoesInto(folder) || Run(folder, true);
    }

    ITreeVisitor& m_visitor;
    const TreeOptions& m_options;
};

} // namespace

// Going on with something like such a name could touch another file. The entry is passed over; a folder that
// holds it can't be deleted.
bool HasPath(const QByteArray& name) {
    return !name.contains('\\') && (IsAscii(name) || QString::fromUtf8(name).toUtf8() == name);
}

void WalkTree(const QString& strFolder, ITreeVisitor& visitor, const TreeOptions& options) {
    TreeFolder root;
    root.strPath = AddBackslash(strFolder);
    root.nPathBytes = CodePage::ByteLength(root.strPath);
    // Without the separator at the end, behind which a link would be followed.
    const QString strCut = CodePage::Cut(root.strPath, c_nMaxPathBytes);
    const QString strNative = Platform::ToNative(strCut.endsWith(u":\\") ? strCut : WithoutBackslash(strCut));
    // No path at all names no folder, least of all the root of everything.
    root.nOpenError =
        strNative.isEmpty() ? ENOENT : root.Folder.Open(strNative.toUtf8(), options.bFollowRoot);
    CTreeWalk(visitor, options).Run(root, options.bSkipSpecial);
}

QString EntryPath(const TreeFolder& folder, const QByteArray& name) {
    return folder.strPath + QString::fromUtf8(name);
}

qsizetype EntryPathBytes(qsizetype nFolderBytes, const QByteArray& name) {
    return nFolderBytes + (IsAscii(name) ? name.size() : CodePage::ByteLength(QString::fromUtf8(name)));
}

bool GetPlainFile(const TreeFolder& folder, const CFolderEntry& entry, Platform::CFileState& state) {
    if (entry.eType != EEntryType::File && entry.eType != EEntryType::Link)
        return false;
    return folder.Folder.GetState(entry.name, state) == 0 && state.bPlainFile;
}

} // namespace Torvane::File
