#include "platform/base/FileCalls.h"

#include <QThreadPool>

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <system_error>
#include <thread>

namespace Platform {
namespace {

int ErrorOf(int nResult) {
    return nResult == 0 ? 0 : errno;
}

class CDescriptor {
public:
    explicit CDescriptor(int n) : m_n(n) {}
    ~CDescriptor() {
        if (m_n >= 0)
            ::close(m_n);
    }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;
    operator int() const { return m_n; } // NOLINT: stands for the number everywhere
    int Close() {
        const int n = m_n;
        m_n = -1;
        return ErrorOf(::close(n));
    }
    int Release() {
        const int n = m_n;
        m_n = -1;
        return n;
    }

private:
    int m_n;
};

// Of the system's times, whatever their type.
template <typename TTime>
qint64 Nanoseconds(const TTime& time) {
    return qint64{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// Most files say so without a further call to the system.
bool IsPlainlyReadable(const struct stat& state) {
    constexpr mode_t c_nAll = S_IRUSR | S_IRGRP | S_IROTH;
    return (state.st_mode & c_nAll) == c_nAll ||
           ((state.st_mode & S_IRUSR) != 0 && state.st_uid == ::geteuid());
}

CFileState StateOf(const struct stat& from) {
    CFileState state;
    state.nSize = S_ISREG(from.st_mode) ? static_cast<quint64>(from.st_size) : 0;
    state.bFolder = S_ISDIR(from.st_mode);
    state.bPlainFile = S_ISREG(from.st_mode);
    state.bLink = S_ISLNK(from.st_mode);
    state.nDevice = from.st_dev;
    state.nInode = from.st_ino;
    state.nModified = Nanoseconds(from.st_mtim);
    state.nChanged = Nanoseconds(from.st_ctim);
    return state;
}

// A failure for anything but a plain file.
int StateOfPlainFile(int nFile, struct stat& state) {
    if (::fstat(nFile, &state) != 0)
        return errno;
    if (!S_ISREG(state.st_mode))
        return S_ISDIR(state.st_mode) ? EISDIR : EINVAL;
    return 0;
}

int WriteAll(int nFile, const char* pBytes, size_t nSize) {
    while (nSize > 0) {
        const ssize_t n = ::write(nFile, pBytes, nSize);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        pBytes += n;
        nSize -= static_cast<size_t>(n);
    }
    return 0;
}

constexpr size_t c_nBlock = size_t{128} * 1024;
// So much is copied between two looks whether to stop: some milliseconds on any disk.
constexpr size_t c_nPiece = size_t{4} * 1024 * 1024;

// Small files go through one read and one write; large ones are copied inside the kernel where it can.
int CopyContent(int nFrom, int nTo, off_t nSize, const std::function<bool()>& stop) {
    const size_t nPiece = stop ? c_nPiece : size_t{1} << 30;
    if (nSize > static_cast<off_t>(c_nBlock)) {
        for (;;) {
            const ssize_t n = ::copy_file_range(nFrom, nullptr, nTo, nullptr, nPiece, 0);
            if (n == 0)
                return 0;
            if (stop && stop())
                return ECANCELED;
            if (n < 0) {
                if (errno == EINTR)
                    continue;
                if (errno == ENOSPC || errno == EIO || errno == EDQUOT || errno == EFBIG)
                    return errno;
                break; // not between these two file systems: by hand from where it stands
            }
        }
    }
    static thread_local const std::unique_ptr<char[]> pBlock(new char[c_nBlock]);
    off_t nWhole = 0;
    for (size_t nCopied = 0;;) {
        const ssize_t n = ::read(nFrom, pBlock.get(), c_nBlock);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        if (n == 0)
            return 0;
        if (const int nError = WriteAll(nTo, pBlock.get(), static_cast<size_t>(n)))
            return nError;
        nWhole += n;
        if (nWhole == nSize)
            return 0;
        nCopied += static_cast<size_t>(n);
        if (stop && nCopied >= c_nPiece) {
            if (stop())
                return ECANCELED;
            nCopied = 0;
        }
    }
}

void CloseBeside(int nFile) {
    try {
        std::thread([nFile] { ::close(nFile); }).detach();
    } catch (const std::system_error&) {
        ::close(nFile);
    }
}

// A name beside the final one that no other program or thread uses. Not a hidden one: if a crash leaves it
// behind, it must not keep its folder from being deleted.
QByteArray TemporaryName() {
    static std::atomic<unsigned> nNext{0};
    return "~vorel-" + QByteArray::number(::getpid()) + '-' + QByteArray::number(++nNext) + ".tmp";
}

// Creates a file under a temporary name beside the target, whose name may be a path; a leftover of the same
// name from a crashed run is stepped over.
int CreateTemporary(int nFolder, const QByteArray& target, mode_t nMode, QByteArray& name, int& nFile) {
    const QByteArray beside = target.left(target.lastIndexOf('/') + 1);
    for (int nTry = 0; nTry < 1000; ++nTry) {
        name = beside + TemporaryName();
        nFile = ::openat(nFolder, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, nMode);
        if (nFile >= 0)
            return 0;
        if (errno != EEXIST)
            return errno;
    }
    return EEXIST;
}

QByteArray FolderOf(const QByteArray& path) {
    const qsizetype n = path.lastIndexOf('/');
    if (n < 0)
        return QByteArray(".");
    return n == 0 ? QByteArray("/") : path.left(n);
}

bool IsLockedByAnother(int nFile) {
    if (::flock(nFile, LOCK_SH | LOCK_NB) != 0)
        return errno == EWOULDBLOCK;
    ::flock(nFile, LOCK_UN);
    struct flock range {};
    range.l_type = F_RDLCK;
    range.l_whence = SEEK_SET;
    return ::fcntl(nFile, F_GETLK, &range) == 0 && range.l_type == F_WRLCK;
}

} // namespace

struct CFolder::Handle {
    explicit Handle(int n) : nFolder(n) {}
    ~Handle() {
        if (nFolder >= 0)
            ::close(nFolder);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    const int nFolder; // AT_FDCWD, which is negative, for whole paths
    bool bRead = false;
};

CFolder CFolder::OfPaths() {
    CFolder folder;
    folder.m_pHandle = std::make_unique<Handle>(AT_FDCWD);
    return folder;
}

CFolder::CFolder() = default;
CFolder::~CFolder() = default;
CFolder::CFolder(CFolder&&) noexcept = default;
CFolder& CFolder::operator=(CFolder&&) noexcept = default;

int CFolder::Descriptor() const {
    return m_pHandle ? m_pHandle->nFolder : -1;
}

int CFolder::Open(const QByteArray& path, bool bFollow) {
    return OpenAt(AT_FDCWD, path, bFollow);
}

int CFolder::OpenBelow(const CFolder& parent, const QByteArray& name) {
    return OpenAt(parent.Descriptor(), name, false);
}

int CFolder::OpenAt(int nParent, const QByteArray& path, bool bFollow) {
    m_pHandle.reset();
    const int nFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | (bFollow ? 0 : O_NOFOLLOW);
    CDescriptor folder(::openat(nParent, path.constData(), nFlags));
    if (folder < 0)
        return errno;
    m_pHandle = std::make_unique<Handle>(folder.Release());
    return 0;
}

// By the system's own call: the library's would take new memory for each of ten thousand small folders.
int CFolder::List(std::vector<CFolderEntry>& list) {
    list.clear();
    if (!m_pHandle || m_pHandle->nFolder < 0)
        return EBADF;
    if (m_pHandle->bRead && ::lseek(m_pHandle->nFolder, 0, SEEK_SET) < 0)
        return errno;
    m_pHandle->bRead = true;
    alignas(dirent64) static thread_local std::array<char, size_t{32} * 1024> block;
    for (;;) {
        const ssize_t nRead = ::getdents64(m_pHandle->nFolder, block.data(), block.size());
        if (nRead <= 0)
            return nRead == 0 ? 0 : errno;
        for (ssize_t nAt = 0; nAt < nRead;) {
            const auto* pEntry = reinterpret_cast<const dirent64*>(block.data() + nAt);
            nAt += pEntry->d_reclen;
            AppendEntry(pEntry->d_name, pEntry->d_type, list);
        }
    }
}

void CFolder::AppendEntry(const char* szName, unsigned char nType, std::vector<CFolderEntry>& list) const {
    if (std::strcmp(szName, ".") == 0 || std::strcmp(szName, "..") == 0)
        return;
    if (nType == DT_UNKNOWN) {
        struct stat state {};
        if (::fstatat(Descriptor(), szName, &state, AT_SYMLINK_NOFOLLOW) == 0)
            nType = static_cast<unsigned char>(IFTODT(state.st_mode));
    }
    const EEntryType eType = nType == DT_REG   ? EEntryType::File
                             : nType == DT_DIR ? EEntryType::Folder
                             : nType == DT_LNK ? EEntryType::Link
                                               : EEntryType::Other;
    list.push_back({QByteArray(szName), eType});
}

int CFolder::GetState(const QByteArray& name, CFileState& state, bool bFollow) const {
    struct stat found {};
    const int nFlags = bFollow ? 0 : AT_SYMLINK_NOFOLLOW;
    if (::fstatat(Descriptor(), name.constData(), &found, nFlags) != 0)
        return errno;
    state = StateOf(found);
    state.bReadable = IsPlainlyReadable(found) ||
                      ::faccessat(Descriptor(), name.constData(), R_OK, nFlags | AT_EACCESS) == 0;
    return 0;
}

int CFolder::GetOwnState(CFileState& state) const {
    struct stat found {};
    if (::fstat(Descriptor(), &found) != 0)
        return errno;
    state = StateOf(found);
    return 0;
}

bool CFolder::TellsOfChanges() const {
    struct statfs volume {};
    if (::fstatfs(Descriptor(), &volume) != 0)
        return false;
    switch (static_cast<unsigned long>(volume.f_type)) {
    case EXT4_SUPER_MAGIC: // the older ones of its kind as well
    case XFS_SUPER_MAGIC:
    case BTRFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case TMPFS_MAGIC:
        return true;
    default:
        return false;
    }
}

int CFolder::GetStateAndBirth(const QByteArray& name, CFileState& state, qint64& nBorn) const {
    struct statx found {};
    const unsigned nWanted =
        STATX_TYPE | STATX_MODE | STATX_INO | STATX_SIZE | STATX_MTIME | STATX_CTIME | STATX_BTIME;
    if (::statx(Descriptor(), name.constData(), 0, nWanted, &found) != 0)
        return errno;
    state = CFileState();
    state.bPlainFile = S_ISREG(found.stx_mode);
    state.bFolder = S_ISDIR(found.stx_mode);
    state.nSize = state.bPlainFile ? found.stx_size : 0;
    state.nDevice = makedev(found.stx_dev_major, found.stx_dev_minor);
    state.nInode = found.stx_ino;
    nBorn = Nanoseconds((found.stx_mask & STATX_BTIME) != 0 ? found.stx_btime : found.stx_mtime);
    state.nModified = Nanoseconds(found.stx_mtime);
    state.nChanged = Nanoseconds(found.stx_ctime);
    return 0;
}

int CFolder::MakeFolder(const QByteArray& name) const {
    return ErrorOf(::mkdirat(Descriptor(), name.constData(), 0777));
}

int CFolder::WriteFile(const QByteArray& name, const QByteArray& bytes, CFileState& written) const {
    CDescriptor file(
        ::openat(Descriptor(), name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (file < 0)
        return errno;
    int nError = WriteAll(file, bytes.constData(), static_cast<size_t>(bytes.size()));
    struct stat state {};
    if (nError == 0)
        nError = ErrorOf(::fstat(file, &state));
    const int nClosed = file.Close();
    written = StateOf(state);
    return nError != 0 ? nError : nClosed;
}

int CFolder::AppendToFile(const QByteArray& name, const QByteArray& bytes) const {
    CDescriptor file(::openat(Descriptor(), name.constData(), O_WRONLY | O_APPEND | O_NOFOLLOW | O_CLOEXEC));
    if (file < 0)
        return errno;
    const int nError = WriteAll(file, bytes.constData(), static_cast<size_t>(bytes.size()));
    const int nClosed = file.Close();
    return nError != 0 ? nError : nClosed;
}

int CFolder::Rename(const QByteArray& name, const QByteArray& newName) const {
    return ErrorOf(::renameat(Descriptor(), name.constData(), Descriptor(), newName.constData()));
}

int CFolder::RemoveFile(const QByteArray& name) const {
    return ErrorOf(::unlinkat(Descriptor(), name.constData(), 0));
}

int CFolder::RemoveFolder(const QByteArray& name) const {
    return ErrorOf(::unlinkat(Descriptor(), name.constData(), AT_REMOVEDIR));
}

int CFolder::MakeWritable() const {
    struct stat found {};
    if (::fstat(Descriptor(), &found) != 0)
        return errno;
    return ErrorOf(::fchmod(Descriptor(), (found.st_mode & 07777U) | S_IRWXU));
}

int CopyFileBytes(const CFolder& from, const QByteArray& name, const CFolder& to, const QByteArray& target,
                  bool bOverwrite, const std::function<bool()>& stop) {
    // Without waiting, so that a pipe put in the file's place can't hold the program up.
    CDescriptor source(::openat(from.Descriptor(), name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (source < 0)
        return errno;
    struct stat state {};
    if (const int nError = StateOfPlainFile(source, state))
        return nError;

    const mode_t nMode = (state.st_mode & 0777U) | S_IWUSR;
    QByteArray written = target;
    int nFile = ::openat(to.Descriptor(), target.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, nMode);
    if (nFile < 0) {
        if (errno != EEXIST || !bOverwrite)
            return errno;
        CFileState old;
        if (to.GetState(target, old) == 0) {
            if (old.bFolder)
                return EISDIR;
            if (old.nDevice == state.st_dev && old.nInode == state.st_ino)
                return 0;
        }
        if (const int nError = CreateTemporary(to.Descriptor(), target, nMode, written, nFile))
            return nError;
    }
    CDescriptor copy(nFile);
    int nError = CopyContent(source, copy, state.st_size, stop);
    if (nError == 0) {
        const std::array<timespec, 2> times{state.st_atim, state.st_mtim};
        ::futimens(copy, times.data());
        nError = copy.Close();
    }
    if (nError == 0 && written != target)
        nError =
            ErrorOf(::renameat(to.Descriptor(), written.constData(), to.Descriptor(), target.constData()));
    if (nError != 0)
        ::unlinkat(to.Descriptor(), written.constData(), 0);
    // Giving gigabytes back to the disk takes seconds, for which nobody waits who has given up.
    if (nError == ECANCELED)
        CloseBeside(copy.Release());
    return nError;
}

int ReplaceFileBytes(const QByteArray& path, const QByteArray& bytes) {
    const QByteArray name = path.mid(path.lastIndexOf('/') + 1);
    CDescriptor folder(::open(FolderOf(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder < 0)
        return errno;
    struct stat old {};
    // A link that came with somebody's course must not lead the writing out of it: the link itself is
    // replaced.
    const bool bThere = ::fstatat(folder, name.constData(), &old, AT_SYMLINK_NOFOLLOW) == 0;
    if (bThere && S_ISDIR(old.st_mode))
        return EISDIR;
    const bool bOld = bThere && S_ISREG(old.st_mode);
    if (bOld && ::faccessat(folder, name.constData(), W_OK, 0) != 0)
        return errno;

    QByteArray temporary;
    int nFile = -1;
    if (const int nError = CreateTemporary(folder, name, 0666, temporary, nFile))
        return nError;
    CDescriptor file(nFile);
    if (bOld)
        ::fchmod(file, old.st_mode & 0777U);
    int nError = WriteAll(file, bytes.constData(), static_cast<size_t>(bytes.size()));
    if (nError == 0)
        nError = ErrorOf(::fsync(file));
    if (nError == 0)
        nError = file.Close();
    if (nError == 0)
        nError = ErrorOf(::renameat(folder, temporary.constData(), folder, name.constData()));
    if (nError != 0) {
        ::unlinkat(folder, temporary.constData(), 0);
        return nError;
    }
    // The file is in place; some file systems can't flush a folder, which is no failure of the write.
    ::fsync(folder);
    return 0;
}

void FlushBeside(int nFile) {
    const int nOwn = ::fcntl(nFile, F_DUPFD_CLOEXEC, 0);
    if (nOwn < 0)
        return;
    QThreadPool::globalInstance()->start([nOwn] {
        ::fdatasync(nOwn);
        ::close(nOwn);
    });
}

int ReadFileBytes(const QByteArray& path, QByteArray& bytes, qint64 nMax) {
    bytes.clear();
    const CDescriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file < 0)
        return errno;
    struct stat state {};
    if (const int nError = StateOfPlainFile(file, state))
        return nError;
    const qint64 nRoom = std::min<qint64>(state.st_size, nMax);
    bytes.resize(nRoom);
    qint64 nRead = 0;
    while (nRead < nRoom) {
        const ssize_t n = ::read(file, bytes.data() + nRead, static_cast<size_t>(nRoom - nRead));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            bytes.clear();
            return errno;
        }
        if (n == 0)
            break; // shorter than it was a moment ago
        nRead += n;
    }
    bytes.resize(nRead);
    return 0;
}

int OpenPlainFile(const QByteArray& path, bool bWrite, bool bCreate, int& nDescriptor) {
    const int nFlags = (bWrite ? O_RDWR : O_RDONLY) | (bCreate ? O_CREAT : 0) | O_CLOEXEC | O_NONBLOCK;
    CDescriptor file(::open(path.constData(), nFlags, 0666));
    if (file < 0)
        return errno;
    struct stat state {};
    if (const int nError = StateOfPlainFile(file, state))
        return nError;
    if (IsLockedByAnother(file))
        return EAGAIN;
    nDescriptor = file.Release();
    return 0;
}

int GetOpenFileSize(int nDescriptor, quint64& nSize) {
    struct stat state {};
    if (::fstat(nDescriptor, &state) != 0)
        return errno;
    nSize = static_cast<quint64>(state.st_size);
    return 0;
}

void CloseFile(int nDescriptor) {
    ::close(nDescriptor);
}

int GetFileState(const QByteArray& path, CFileState& state, bool bFollow) {
    struct stat found {};
    if ((bFollow ? ::stat(path.constData(), &found) : ::lstat(path.constData(), &found)) != 0)
        return errno;
    state = StateOf(found);
    return 0;
}

int MakeFolder(const QByteArray& path) {
    return ErrorOf(::mkdir(path.constData(), 0777));
}

int RemoveFile(const QByteArray& path) {
    return ErrorOf(::unlink(path.constData()));
}

int RemoveFolder(const QByteArray& path) {
    return ErrorOf(::rmdir(path.constData()));
}

int MakeWritable(const QByteArray& path) {
    struct stat found {};
    if (::lstat(path.constData(), &found) != 0)
        return errno;
    if (S_ISLNK(found.st_mode) || (found.st_mode & S_IWUSR) != 0)
        return 0;
    return ErrorOf(::chmod(path.constData(), (found.st_mode & 07777U) | S_IWUSR));
}

} // namespace Platform
