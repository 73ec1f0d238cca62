#pragma once

#include "foundation/FolderWalk.h"
#include "foundation/Paths.h"

#include <QString>

#include <memory>

/// File operations with a message for a person. Those that throw raise CFileException; the Try… forms answer
/// false instead. A path of more than 260 code page bytes is cut by queries, but refused with the operation's
/// own message by whatever writes or deletes: a cut path would hit a file that nobody meant.
///
/// Trees: a symbolic link is never walked into. A copy takes what a link to a plain file holds, and passes
/// over links to folders, devices, pipes and sockets; deleting removes the link itself. An entry whose name
/// is no text can't be named: it is never touched, and its folder can't be deleted.
namespace Torvane::File {

/// A file opened for reading.
class CReadFile {
public:
    CReadFile();
    ~CReadFile();
    CReadFile(const CReadFile&) = delete;
    CReadFile& operator=(const CReadFile&) = delete;

    /// Closes what is held, opens, reads the size. A file that another process has locked is tried again
    /// every 100 ms, up to 50 times.
    void Open(const QString& strPath, bool bWrite = false, bool bCreateIfMissing = false);
    quint32 GetSize(quint32* pHigh = nullptr) const;
    void Close();

private:
    struct Handle;
    std::unique_ptr<Handle> m_pHandle;
    quint32 m_nSizeLow = 0;
    quint32 m_nSizeHigh = 0;
    quint32 m_nPosition = 0;
};

quint32 GetFileSizeOf(const QString& strPath, quint32* pHigh = nullptr);
/// The filter may cancel within a large file, of which nothing is left then; that throws as well.
void CopyOneFile(const QString& strSource, const QString& strTarget, bool bOverwrite,
                 IWalkFilter* pFilter = nullptr);
void DeleteOneFile(const QString& strPath, bool bForce);
void ClearAttributes(const QString& strPath);

/// Creates the folder with all its parents. Answers the kind of what already stood there, and creates nothing
/// then.
EPathKind CreateFolderPath(const QString& strPath);

/// Copies a tree; hidden entries (a leading dot) are not copied, nor is the target when it lies inside the
/// source. Names that exist in the target in another ASCII case are the same names. A source that isn't
/// there gives an empty target; a folder that can't be listed is a failure. Links to folders, dangling links,
/// devices and names that are no text are passed over; their native paths come into the last argument, if it
/// isn't null.
void ForceCopyFolder(const QString& strSource, const QString& strTarget, bool bOverwrite,
                     IWalkFilter* pFilter = nullptr, QStringList* pPassedOver = nullptr);

/// Deletes the tree and the folder itself. Hidden entries are seen in the top folder alone: one deeper down
/// keeps its folder from being deleted. Refuses a drive root, an empty path, and "." or ".." at the end.
void DeleteFolder(const QString& strPath, bool bForce, IWalkFilter* pFilter = nullptr);

/// Deletes what is in the folder, and keeps the folder only if the argument ends with a backslash.
void ClearFolder(const QString& strPath, bool bForce, IWalkFilter* pFilter = nullptr);

/// Sum of the file sizes of the tree in bytes; hidden entries are not counted.
double GetFolderSize(const QString& strPath);

bool TryCopyFolder(const QString& strSource, const QString& strTarget);
bool TryDeleteFolder(const QString& strPath);
bool TryClearFolder(const QString& strPath);
bool TryCreateFolderPath(const QString& strPath);
/// Makes one folder in one that stands; false also when its name is taken. The name is not looked for in
/// other letter cases, for which all entries beside it would be read.
bool TryMakeFolder(const QString& strPath);
/// Lets two folders beside one another change places, in one step where the volume has such a step. Throws,
/// with each where it was. Elsewhere what stood at the second path stands at the first one with ".old" behind
/// it for a moment, and stays there after a crash or where it can't be moved any more.
void ExchangeFolders(const QString& strOne, const QString& strOther);
/// Waits until all that was written to the folder's volume would outlive a power cut. Throws.
void FlushVolumeOf(const QString& strFolder);
bool TryGetFolderSize(const QString& strPath, double& dSize);

} // namespace Torvane::File
