#include "foundation/FolderWalk.h"

#include "foundation/Paths.h"
#include "foundation/TreeWalk.h"
#include "platform/base/NativePath.h"

#include <vector>

namespace Torvane::File {
namespace {

class CCaller : public ITreeVisitor {
public:
    CCaller(IFileVisitor* pFiles, IFolderVisitor* pEnter, IFolderVisitor* pLeave)
        : m_pFiles(pFiles), m_pEnter(pEnter), m_pLeave(pLeave) {}

    void Enter(TreeFolder& folder) override {
        if (m_pEnter)
            m_pEnter->Visit(folder.strPath);
    }

    void Entry(TreeFolder& folder, const Platform::CFolderEntry& entry) override {
        Platform::CFileState state;
        if (!m_pFiles || !GetPlainFile(folder, entry, state))
            return;
        FindRecord record;
        record.strName = QString::fromUtf8(entry.name);
        record.nSize = state.nSize;
        record.bSpecial = entry.name.startsWith('.');
        m_pFiles->Visit(folder.strPath + record.strName, record);
    }

    void Leave(TreeFolder& folder) override {
        if (m_pLeave)
            m_pLeave->Visit(folder.strPath);
    }

private:
    IFileVisitor* m_pFiles;
    IFolderVisitor* m_pEnter;
    IFolderVisitor* m_pLeave;
};

} // namespace

void WalkFolder(const QString& strFolder, IFileVisitor* pFiles, IFolderVisitor* pEnter,
                IFolderVisitor* pLeave, bool bRecursive, IWalkFilter* pFilter, bool bSkipSpecial) {
    CCaller caller(pFiles, pEnter, pLeave);
    TreeOptions options;
    options.bRecursive = bRecursive;
    options.bSkipSpecial = bSkipSpecial;
    options.bSorted = true;
    options.pFilter = pFilter;
    WalkTree(strFolder, caller, options);
}

bool ListFolder(const QString& strFolder, QList<FolderEntry>& entries, IWalkFilter* pFilter,
                QStringList* pHidden) {
    Platform::CFolder folder;
    std::vector<Platform::CFolderEntry> found;
    // A cut path could be that of another folder.
    if (IsPathTooLong(strFolder) || folder.Open(Platform::NativeBytes(strFolder)) != 0 ||
        folder.List(found) != 0)
        return false;
    for (const Platform::CFolderEntry& entry : found) {
        if (pFilter && pFilter->Cancelled())
            return true;
        if (pHidden && entry.name.startsWith('.'))
            pHidden->append(QString::fromUtf8(entry.name));
        Platform::CFileState state;
        FolderEntry next;
        if (entry.name.startsWith('.') || entry.eType == Platform::EEntryType::Other ||
            folder.GetStateAndBirth(entry.name, state, next.nBorn) != 0)
            continue;
        // What a link leads to may change at any time, also from a file to a folder.
        next.bFolder = entry.eType == Platform::EEntryType::Folder;
        if (next.bFolder ? !state.bFolder : !state.bPlainFile)
            continue;
        next.strName = QString::fromUtf8(entry.name);
        next.nSize = state.nSize;
        next.bNoText = !HasPath(entry.name);
        entries.append(next);
    }
    return true;
}

} // namespace Torvane::File
