#include "foundation/Files.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Texts.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"
#include "platform/base/PathSwap.h"

#include <cerrno>
#include <chrono>
#include <functional>
#include <thread>

using namespace FileText;

namespace Torvane::File {
namespace {

constexpr int c_nOpenRetries = 50;
constexpr std::chrono::milliseconds c_retryPause(100);

// A new file's own name stays as it is given; the folder that it goes into is looked up.
QByteArray NativeForCreating(const QString& strPath) {
    const qsizetype n = strPath.lastIndexOf(u'\\');
    if (n < 0)
        return Platform::NativeBytes(strPath);
    return Platform::NativeBytes(strPath.left(n + 1)) + strPath.mid(n + 1).toUtf8();
}

// Nothing there is no failure. The bits for hidden, system and temporary have no like here.
void MakeNormal(const QString& strPath, const QByteArray& native) {
    const int nError = Platform::MakeWritable(native);
    if (nError != 0 && nError != ENOENT && nError != ENOTDIR)
        throw CFileException(c_strCannotSetAttributes, strPath, nError);
}

/// A call with paths as they are spelled, which nearly all of them stand under; only for the others every
/// folder on the way is looked at. The call answers the system's error.
template <typename TCall>
int AsSpelledOrFound(TCall call, const QString& strCreated, const QString& strRead = {}) {
    const int nError =
        call(Platform::ToNativeExact(strCreated).toUtf8(), Platform::ToNativeExact(strRead).toUtf8());
    return nError == ENOENT ? call(NativeForCreating(strCreated), Platform::NativeBytes(strRead)) : nError;
}

template <typename TOperation>
bool Succeeds(TOperation operation) {
    try {
        operation();
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

struct CReadFile::Handle {
    explicit Handle(int n) : nDescriptor(n) {}
    ~Handle() { Platform::CloseFile(nDescriptor); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    int nDescriptor;
};

CReadFile::CReadFile() = default;
CReadFile::~CReadFile() = default;

void CReadFile::Open(const QString& strPath, bool bWrite, bool bCreateIfMissing) {
    Close();
    if ((bWrite || bCreateIfMissing) && IsPathTooLong(strPath))
        throw CFileException(c_strCannotOpen, strPath, ENAMETOOLONG);
    const QByteArray path = Platform::NativeBytes(CodePage::Cut(strPath, c_nMaxPathBytes));
    int nDescriptor = -1;
    int nError = Platform::OpenPlainFile(path, bWrite, bCreateIfMissing, nDescriptor);
    for (int nRetry = 0; nError == EAGAIN && nRetry < c_nOpenRetries; ++nRetry) {
        std::this_thread::sleep_for(c_retryPause);
        nError = Platform::OpenPlainFile(path, bWrite, bCreateIfMissing, nDescriptor);
    }
    if (nError != 0)
        throw CFileException(c_strCannotOpen, strPath, nError);
    m_pHandle = std::make_unique<Handle>(nDescriptor);
    quint64 nSize = 0;
    if (const int nSizeError = Platform::GetOpenFileSize(nDescriptor, nSize)) {
        Close();
        throw CFileException(c_strCannotGetSize, strPath, nSizeError);
    }
    m_nSizeLow = static_cast<quint32>(nSize);
    m_nSizeHigh = static_cast<quint32>(nSize >> 32U);
    m_nPosition = 0;
}

quint32 CReadFile::GetSize(quint32* pHigh) const {
    if (pHigh)
        *pHigh = m_nSizeHigh;
    return m_nSizeLow;
}

void CReadFile::Close() {
    m_pHandle.reset();
}

quint32 GetFileSizeOf(const QString& strPath, quint32* pHigh) {
    CReadFile file;
    file.Open(strPath);
    return file.GetSize(pHigh);
}

void CopyOneFile(const QString& strSource, const QString& strTarget, bool bOverwrite, IWalkFilter* pFilter) {
    int nError = ENAMETOOLONG;
    if (!IsPathTooLong(strTarget) && !IsPathTooLong(strSource)) {
        if (bOverwrite)
            MakeNormal(strTarget, NativeForCreating(strTarget));
        const Platform::CFolder paths = Platform::CFolder::OfPaths();
        const std::function<bool()> stop =
            pFilter ? [pFilter] { return pFilter->Cancelled(); } : std::function<bool()>();
        nError = AsSpelledOrFound(
            [&](const QByteArray& target, const QByteArray& source) {
                return Platform::CopyFileBytes(paths, source, paths, target, bOverwrite, stop);
            },
            strTarget, strSource);
    }
    if (nError != 0)
        throw CFileException(c_strCannotCopy, strSource, strTarget, nError);
}

void DeleteOneFile(const QString& strPath, bool bForce) {
    if (bForce)
        ClearAttributes(strPath);
    const int nError =
        IsPathTooLong(strPath) ? ENAMETOOLONG : Platform::RemoveFile(Platform::NativeBytes(strPath));
    if (nError != 0)
        throw CFileException(c_strCannotDeleteFile, strPath, nError);
}

void ClearAttributes(const QString& strPath) {
    if (IsPathTooLong(strPath))
        throw CFileException(c_strCannotSetAttributes, strPath, ENAMETOOLONG);
    MakeNormal(strPath, Platform::NativeBytes(strPath));
}

EPathKind CreateFolderPath(const QString& strPath) {
    if (IsPathTooLong(strPath))
        throw CFileException(c_strCannotMakeFolder, strPath, ENAMETOOLONG);
    const EPathKind eKind = GetPathKind(strPath);
    if (eKind != EPathKind::Nothing)
        return eKind;
    qsizetype nRoot = 0;
    while (nRoot < strPath.size() && strPath[nRoot] == u'\\')
        ++nRoot;
    nRoot = strPath.indexOf(u'\\', nRoot);
    if (nRoot < 0)
        throw CFileException(c_strBadPath, strPath, 0);
    const QString strWhole = AddBackslash(strPath);
    for (qsizetype n = strWhole.indexOf(u'\\', nRoot + 1); n >= 0; n = strWhole.indexOf(u'\\', n + 1)) {
        const QString strPrefix = strWhole.left(n);
        if (GetPathKind(strPrefix) != EPathKind::Nothing)
            continue;
        const int nError = Platform::MakeFolder(NativeForCreating(strPrefix));
        // Another thread or program may have been a moment faster.
        if (nError != 0 && !(nError == EEXIST && IsFolder(strPrefix)))
            throw CFileException(c_strCannotMakeFolder, strPrefix, nError);
    }
    return EPathKind::Nothing;
}

bool TryCopyFolder(const QString& strSource, const QString& strTarget) {
    return Succeeds([&] { ForceCopyFolder(strSource, strTarget, true); });
}

bool TryDeleteFolder(const QString& strPath) {
    return Succeeds([&] { DeleteFolder(strPath, true); });
}

bool TryClearFolder(const QString& strPath) {
    return Succeeds([&] { ClearFolder(strPath, true); });
}

bool TryCreateFolderPath(const QString& strPath) {
    return Succeeds([&] { CreateFolderPath(strPath); });
}

bool TryMakeFolder(const QString& strPath) {
    return !IsPathTooLong(strPath) &&
           AsSpelledOrFound(
               [](const QByteArray& path, const QByteArray&) { return Platform::MakeFolder(path); },
               strPath) == 0;
}

void ExchangeFolders(const QString& strOne, const QString& strOther) {
    const QByteArray one = Platform::NativeBytes(WithoutBackslash(strOne));
    const QByteArray other = Platform::NativeBytes(WithoutBackslash(strOther));
    int nError = Platform::ExchangePaths(one, other);
    if (nError == EINVAL || nError == ENOSYS) {
        const QByteArray away = one + ".old";
        nError = Platform::MovePath(other, away);
        if (nError == 0) {
            nError = Platform::MovePath(one, other);
            const int nBack = nError == 0 ? Platform::MovePath(away, one) : 0;
            if (nBack != 0) {
                Platform::MovePath(other, one);
                nError = nBack;
            }
            if (nError != 0)
                Platform::MovePath(away, other);
        }
    }
    if (nError != 0)
        throw CFileException(c_strCannotMakeFolder, WithoutBackslash(strOther), nError);
}

void FlushVolumeOf(const QString& strFolder) {
    if (const int nError = Platform::FlushVolume(Platform::NativeBytes(WithoutBackslash(strFolder))))
        throw CFileException(c_strCannotFlush, WithoutBackslash(strFolder), nError);
}

bool TryGetFolderSize(const QString& strPath, double& dSize) {
    return Succeeds([&] { dSize = GetFolderSize(strPath); });
}

} // namespace Torvane::File
