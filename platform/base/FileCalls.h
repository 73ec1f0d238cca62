#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

/// The system's file calls behind the file helpers: by open folder and name, so that a walk through a large
/// tree costs one look-up a file. Names and paths are native bytes. Every call that may fail answers the
/// system's error code, 0 for success.
namespace Platform {

enum class EEntryType { File, Folder, Link, Other };

struct CFolderEntry {
    QByteArray name;
    /// What the entry itself is; links are not followed.
    EEntryType eType = EEntryType::Other;
};

struct CFileState {
    quint64 nSize = 0;
    bool bFolder = false;
    /// A plain file; false for devices, pipes and sockets, which must never be opened.
    bool bPlainFile = false;
    bool bLink = false;
    /// Whether its rights let this account read it; CFolder::GetState alone finds out.
    bool bReadable = true;
    quint64 nDevice = 0;
    quint64 nInode = 0;
    /// When its content was last changed, in nanoseconds since 1970.
    qint64 nModified = 0;
    /// When anything about it was, which no program can set.
    qint64 nChanged = 0;
};

/// Follows links unless told not to.
int GetFileState(const QByteArray& path, CFileState& state, bool bFollow = true);

/// An open folder.
class CFolder {
public:
    CFolder();
    ~CFolder();
    CFolder(CFolder&&) noexcept;
    CFolder& operator=(CFolder&&) noexcept;

    /// No folder of its own: names are whole paths then.
    static CFolder OfPaths();

    int Open(const QByteArray& path, bool bFollow = true);
    /// A folder in this one; a link is not followed.
    int OpenBelow(const CFolder& parent, const QByteArray& name);
    bool IsOpen() const { return m_pHandle != nullptr; }

    /// All entries but "." and "..", in the system's order.
    int List(std::vector<CFolderEntry>& list);
    int GetState(const QByteArray& name, CFileState& state, bool bFollow = true) const;
    int GetOwnState(CFileState& state) const;
    /// Whether it lies on a volume of this machine on which every entry that comes, goes or gets another name
    /// changes the time of its folder. Not known of the volumes of others.
    bool TellsOfChanges() const;
    /// Also when it was created, in nanoseconds since 1970; where the volume doesn't keep that, when it was
    /// last modified. Links are followed.
    int GetStateAndBirth(const QByteArray& name, CFileState& state, qint64& nBorn) const;

    int MakeFolder(const QByteArray& name) const;
    /// Creates a file of these bytes. For what can be made again: it is not waited until they are on the
    /// disk.
    int WriteFile(const QByteArray& name, const QByteArray& bytes, CFileState& written) const;
    /// Adds to a file that is there; what a failure has added stays. A link is refused.
    int AppendToFile(const QByteArray& name, const QByteArray& bytes) const;
    /// Both names may be paths below the folder. What stands under the new name is replaced.
    int Rename(const QByteArray& name, const QByteArray& newName) const;
    /// Removes a file, or a link itself.
    int RemoveFile(const QByteArray& name) const;
    int RemoveFolder(const QByteArray& name) const;
    /// Lets the owner change the folder's entries.
    int MakeWritable() const;

private:
    friend int CopyFileBytes(const CFolder&, const QByteArray&, const CFolder&, const QByteArray&, bool,
                             const std::function<bool()>&);
    int OpenAt(int nParent, const QByteArray& path, bool bFollow);
    int Descriptor() const;
    void AppendEntry(const char* szName, unsigned char nType, std::vector<CFolderEntry>& list) const;
    struct Closer;
    struct Handle;
    std::unique_ptr<Handle> m_pHandle;
};

/// Copies a plain file with its permissions (the owner may always write the copy) and its time of
/// modification. An existing target is refused, or with bOverwrite replaced as a whole; a failed copy leaves
/// nothing behind. A file copied onto itself stays as it is. stop is asked between the pieces of a large
/// file: true ends the copy with ECANCELED.
int CopyFileBytes(const CFolder& from, const QByteArray& name, const CFolder& to, const QByteArray& target,
                  bool bOverwrite, const std::function<bool()>& stop = {});

/// Replaces or creates the file as a whole: written beside under a name of its own, flushed to the disk,
/// renamed. Permissions of the old file are kept. A link is replaced itself, never what it leads to.
int ReplaceFileBytes(const QByteArray& path, const QByteArray& bytes);

/// Has what was written to the open file reach the disk, on another thread; returns at once.
void FlushBeside(int nFile);

/// At most nMax bytes of a plain file.
int ReadFileBytes(const QByteArray& path, QByteArray& bytes, qint64 nMax);

/// Opens a plain file and answers its descriptor; EAGAIN while another process holds a lock on it.
int OpenPlainFile(const QByteArray& path, bool bWrite, bool bCreate, int& nDescriptor);
int GetOpenFileSize(int nDescriptor, quint64& nSize);
void CloseFile(int nDescriptor);

int MakeFolder(const QByteArray& path);
int RemoveFile(const QByteArray& path);
int RemoveFolder(const QByteArray& path);
/// Lets the owner write the file or folder; a link is left alone.
int MakeWritable(const QByteArray& path);

/// What an error code of the system means, for a person; empty for a code that it does not have.
QString SystemErrorText(int nCode);

} // namespace Platform
