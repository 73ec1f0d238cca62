#include "platform/base/PathSwap.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace Platform {
namespace {

int RenameWith(const QByteArray& from, const QByteArray& to, unsigned nFlags) {
    return ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), nFlags) == 0 ? 0 : errno;
}

} // namespace

int MovePath(const QByteArray& from, const QByteArray& to) {
    const int nError = RenameWith(from, to, RENAME_NOREPLACE);
    if (nError != EINVAL && nError != ENOSYS)
        return nError;
    // A volume without that step: looking first leaves a gap, in which only an empty folder could be lost.
    if (::faccessat(AT_FDCWD, to.constData(), F_OK, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return RenameWith(from, to, 0);
}

int ExchangePaths(const QByteArray& one, const QByteArray& other) {
    return RenameWith(one, other, RENAME_EXCHANGE);
}

int FlushVolume(const QByteArray& path) {
    const int nFile = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (nFile < 0)
        return errno;
    const int nError = ::syncfs(nFile) == 0 ? 0 : errno;
    ::close(nFile);
    return nError;
}

} // namespace Platform
