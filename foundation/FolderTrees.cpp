// Copying, deleting and measuring whole trees.
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Texts.h"
#include "foundation/TreeWalk.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

#include <QHash>

#include <cerrno>
#include <functional>
#include <vector>

using namespace FileText;

namespace Torvane::File {
namespace {

// Lays a tree over the target root, folder by folder beside the walk. The walk meets only names, never ".."
// or addresses, so a path lands where ResolveAgainstBase would put it: below the target root under the same
// relative path.
class CCopier : public ITreeVisitor {
public:
    CCopier(const QString& strTarget, bool bOverwrite, IWalkFilter* pFilter, QStringList* pPassedOver)
        : m_strTarget(AddBackslash(strTarget)), m_bOverwrite(bOverwrite), m_pPassedOver(pPassedOver) {
        if (pFilter)
            m_stop = [pFilter] { return pFilter->Cancelled(); };
    }

    // A target inside the source would be copied into itself without end.
    bool GoesInto(const TreeFolder& folder) override {
        Platform::CFileState state;
        return !folder.Folder.IsOpen() || folder.Folder.GetOwnState(state) != 0 ||
               state.nDevice != m_rootState.nDevice || state.nInode != m_rootState.nInode;
    }

    void Enter(TreeFolder& folder) override {
        if (!folder.pParent)
            m_stack.push_back(EnterRoot());
        else
            m_stack.push_back(EnterBelow(m_stack.back(), folder.name));
        // What can't be read must not be missing in silence.
        if (folder.nOpenError != 0 && folder.nOpenError != ENOENT)
            throw CFileException(c_strCannotCopy, WithoutBackslash(folder.strPath),
                                 WithoutBackslash(m_stack.back().strPath), folder.nOpenError);
    }

    void Entry(TreeFolder& folder, const Platform::CFolderEntry& entry) override {
        Platform::CFileState state;
        if (entry.eType != Platform::EEntryType::File && !GetPlainFile(folder, entry, state))
            return PassOver(folder, entry.name);
        const Target& target = m_stack.back();
        const QByteArray name = target.NameFor(entry.name);
        int nError = target.nOpenError;
        if (nError == 0 && EntryPathBytes(target.nPathBytes, name) > c_nMaxPathBytes)
            nError = ENAMETOOLONG;
        if (nError == 0)
            nError =
                Platform::CopyFileBytes(folder.Folder, entry.name, target.Folder, name, m_bOverwrite, m_stop);
        // The walk asks the filter itself, and ends, before the next entry.
        if (nError != 0 && nError != ECANCELED)
            throw CFileException(c_strCannotCopy, EntryPath(folder, entry.name), EntryPath(target, name),
                                 nError);
    }

    void Leave(TreeFolder&) override { m_stack.pop_back(); }

    void PassOver(const TreeFolder& folder, const QByteArray& name) override {
        if (m_pPassedOver)
            m_pPassedOver->append(Platform::ToNativeExact(folder.strPath) + QString::fromUtf8(name));
    }

private:
    struct Target : TreeFolder {
        // What the folder held before, by name in lower case: names that differ by case alone are the same.
        QHash<QByteArray, QByteArray> before;

        void Look() {
            std::vector<Platform::CFolderEntry> entries;
            Folder.List(entries);
            for (const auto& entry : entries)
                before.insert(entry.name.toLower(), entry.name);
            for (const auto& entry : entries)
                before.insert(entry.name, entry.name);
        }
        QByteArray NameFor(const QByteArray& wanted) const {
            return before.isEmpty() ? wanted : before.value(wanted, before.value(wanted.toLower(), wanted));
        }
    };

    Target EnterRoot() {
        Target target;
        target.strPath = m_strTarget;
        target.nPathBytes = CodePage::ByteLength(m_strTarget);
        const bool bNew = CreateFolderPath(m_strTarget) == EPathKind::Nothing;
        target.nOpenError = target.Folder.Open(Platform::NativeBytes(m_strTarget));
        if (target.nOpenError != 0)
            throw CFileException(c_strCannotMakeFolder, WithoutBackslash(m_strTarget), target.nOpenError);
        target.Folder.GetOwnState(m_rootState);
        if (!bNew)
            target.Look();
        return target;
    }

    static Target EnterBelow(const Target& parent, const QByteArray& wanted) {
        const QByteArray name = parent.NameFor(wanted);
        Target target;
        target.strPath = EntryPath(parent, name) + u'\\';
        target.nPathBytes = EntryPathBytes(parent.nPathBytes, name) + 1;
        int nError = target.nPathBytes - 1 > c_nMaxPathBytes ? ENAMETOOLONG : parent.nOpenError;
        if (nError == 0)
            nError = parent.Folder.MakeFolder(name);
        if (nError != 0 && nError != EEXIST)
            throw CFileException(c_strCannotMakeFolder, WithoutBackslash(target.strPath), nError);
        target.nOpenError = target.Folder.OpenBelow(parent.Folder, name);
        if (nError == EEXIST)
            target.Look();
        return target;
    }

    QString m_strTarget;
    bool m_bOverwrite;
    QStringList* m_pPassedOver;
    std::function<bool()> m_stop;
    Platform::CFileState m_rootState;
    std::vector<Target> m_stack;
};

class CDeleter : public ITreeVisitor {
public:
    CDeleter(QString strProtected, bool bForce) : m_strProtected(std::move(strProtected)), m_bForce(bForce) {}

    // Found by the walk and removed by folder and name: no path is cut here, however deep it is.
    void Entry(TreeFolder& folder, const Platform::CFolderEntry& entry) override {
        if (const int nError = Forced(folder, [&] { return folder.Folder.RemoveFile(entry.name); }))
            throw CFileException(c_strCannotDeleteFile, EntryPath(folder, entry.name), nError);
    }

    void Leave(TreeFolder& folder) override {
        if (folder.strPath == m_strProtected)
            return;
        const QString strPath = WithoutBackslash(folder.strPath);
        TreeFolder* pParent = folder.pParent;
        const int nError = pParent
                               ? Forced(*pParent, [&] { return pParent->Folder.RemoveFolder(folder.name); })
                               : Platform::RemoveFolder(Platform::NativeBytes(strPath));
        if (nError != 0)
            throw CFileException(c_strCannotDeleteFolder, strPath, nError);
    }

private:
    // What a folder holds can be removed only while its owner may write the folder.
    template <typename TCall>
    int Forced(TreeFolder& folder, TCall call) const {
        const int nError = call();
        return nError == EACCES && m_bForce && folder.Folder.MakeWritable() == 0 ? call() : nError;
    }

    QString m_strProtected;
    bool m_bForce;
};

class CMeasurer : public ITreeVisitor {
public:
    void Entry(TreeFolder& folder, const Platform::CFolderEntry& entry) override {
        Platform::CFileState state;
        if (GetPlainFile(folder, entry, state))
            m_dSize += static_cast<double>(state.nSize);
    }
    double Size() const { return m_dSize; }

private:
    double m_dSize = 0;
};

// Nobody means a whole drive, or the folder that "." and ".." happen to be, when a folder is to go.
bool NamesNoFolder(const QString& strPath) {
    const QString strName = BareName(WithoutBackslash(strPath));
    return strName.isEmpty() || strName.endsWith(u':') || strName.endsWith(u'/') ||
           strName == QLatin1String(".") || strName == QLatin1String("..");
}

void RemoveTree(const QString& strPath, const QString& strProtected, bool bForce, IWalkFilter* pFilter) {
    const auto refuse = [&](int nError) {
        throw CFileException(c_strCannotDeleteFolder, WithoutBackslash(strPath), nError);
    };
    if (NamesNoFolder(strPath))
        refuse(EINVAL);
    if (CodePage::ByteLength(WithoutBackslash(strPath)) > c_nMaxPathBytes)
        refuse(ENAMETOOLONG);
    const QByteArray native = Platform::NativeBytes(WithoutBackslash(strPath));
    Platform::CFileState state;
    if (Platform::GetFileState(native, state, false) == 0 && state.bLink) {
        // A link goes itself; what it leads to is somebody else's.
        if (const int nError = strProtected.endsWith(u'\\') ? ENOTDIR : Platform::RemoveFile(native))
            refuse(nError);
        return;
    }
    CDeleter deleter(strProtected, bForce);
    TreeOptions options;
    options.bSkipSpecial = false;
    options.bFollowRoot = false;
    options.pFilter = pFilter;
    WalkTree(strPath, deleter, options);
}

} // namespace

void ForceCopyFolder(const QString& strSource, const QString& strTarget, bool bOverwrite,
                     IWalkFilter* pFilter, QStringList* pPassedOver) {
    CCopier copier(strTarget, bOverwrite, pFilter, pPassedOver);
    TreeOptions options;
    options.pFilter = pFilter;
    WalkTree(strSource, copier, options);
}

void DeleteFolder(const QString& strPath, bool bForce, IWalkFilter* pFilter) {
    RemoveTree(strPath, QString(), bForce, pFilter);
}

void ClearFolder(const QString& strPath, bool bForce, IWalkFilter* pFilter) {
    RemoveTree(strPath, strPath, bForce, pFilter);
}

double GetFolderSize(const QString& strPath) {
    CMeasurer measurer;
    WalkTree(strPath, measurer, TreeOptions());
    return measurer.Size();
}

} // namespace Torvane::File
