#include "foundation/FolderWalk.h"

#include "foundation/TreeWalk.h"

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

} // namespace Torvane::File
