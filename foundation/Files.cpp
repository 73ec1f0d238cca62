#include "foundation/Files.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

#include <cerrno>
#include <chrono>
#include <thread>

namespace Torvane::File {
namespace {

constexpr int c_nOpenRetries = 50;
constexpr std::chrono::milliseconds c_retryPause(100);

bool IsTooLong(const QString& strPath) {
    return CodePage::ByteLength(strPath) > c_nMaxPathBytes;
}

QByteArray NativeOf(const QString& strPath) {
    return Platform::ToNative(strPath).toUtf8();
}

// A new file's own name stays as it is given; the folder that it goes into is looked up.
QByteArray NativeForCreating(const QString& strPath) {
    const qsizetype n = strPath.lastIndexOf(u'\\');
    if (n < 0)
        return NativeOf(strPath);
    return NativeOf(strPath.left(n + 1)) + strPath.mid(n + 1).toUtf8();
}

CFileException CannotOpen(const QString& strPath, int nError) {
    return CFileException(QStringLiteral("无法打开文件 %1 ！").arg(Platform::ToShown(strPath)), nError);
}

CFileException CannotMakeFolder(const QString& strPath, int nError) {
    return CFileException(QStringLiteral("无法创建目录 %1 ！").arg(Platform::ToShown(strPath)), nError);
}

CFileException CannotSetAttributes(const QString& strPath, int nError) {
    return CFileException(QStringLiteral("无法为路径 %1 设置属性！").arg(Platform::ToShown(strPath)), nError);
}

// Nothing there is no failure. The bits for hidden, system and temporary have no like here.
void MakeNormal(const QString& strPath, const QByteArray& native) {
    const int nError = Platform::MakeWritable(native);
    if (nError != 0 && nError != ENOENT && nError != ENOTDIR)
        throw CannotSetAttributes(strPath, nError);
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
    if ((bWrite || bCreateIfMissing) && IsTooLong(strPath))
        throw CannotOpen(strPath, ENAMETOOLONG);
    const QByteArray path = NativeOf(CodePage::Cut(strPath, c_nMaxPathBytes));
    int nDescriptor = -1;
    int nError = Platform::OpenPlainFile(path, bWrite, bCreateIfMissing, nDescriptor);
    for (int nRetry = 0; nError == EAGAIN && nRetry < c_nOpenRetries; ++nRetry) {
        std::this_thread::sleep_for(c_retryPause);
        nError = Platform::OpenPlainFile(path, bWrite, bCreateIfMissing, nDescriptor);
    }
    if (nError != 0)
        throw CannotOpen(strPath, nError);
    m_pHandle = std::make_unique<Handle>(nDescriptor);
    quint64 nSize = 0;
    if (const int nSizeError = Platform::GetOpenFileSize(nDescriptor, nSize)) {
        Close();
        throw CFileException(QStringLiteral("无法获取文件大小 %1 ！").arg(Platform::ToShown(strPath)),
                             nSizeError);
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

void CopyOneFile(const QString& strSource, const QString& strTarget, bool bOverwrite) {
    int nError = ENAMETOOLONG;
    if (!IsTooLong(strTarget) && !IsTooLong(strSource)) {
        const QByteArray target = NativeForCreating(strTarget);
        if (bOverwrite)
            MakeNormal(strTarget, target);
        const Platform::CFolder paths = Platform::CFolder::OfPaths();
        nError = Platform::CopyFileBytes(paths, NativeOf(strSource), paths, target, bOverwrite);
    }
    if (nError != 0)
        throw CFileException(QStringLiteral("无法拷贝文件 %1 到 %2！")
                                 .arg(Platform::ToShown(strSource), Platform::ToShown(strTarget)),
                             nError);
}

void DeleteOneFile(const QString& strPath, bool bForce) {
    if (bForce)
        ClearAttributes(strPath);
    const int nError = IsTooLong(strPath) ? ENAMETOOLONG : Platform::RemoveFile(NativeOf(strPath));
    if (nError != 0)
        throw CFileException(QStringLiteral("无法删除文件%1！").arg(Platform::ToShown(strPath)), nError);
}

void ClearAttributes(const QString& strPath) {
    if (IsTooLong(strPath))
        throw CannotSetAttributes(strPath, ENAMETOOLONG);
    MakeNormal(strPath, NativeOf(strPath));
}

EPathKind CreateFolderPath(const QString& strPath) {
    if (IsTooLong(strPath))
        throw CannotMakeFolder(strPath, ENAMETOOLONG);
    const EPathKind eKind = GetPathKind(strPath);
    if (eKind != EPathKind::Nothing)
        return eKind;
    qsizetype nRoot = 0;
    while (nRoot < strPath.size() && strPath[nRoot] == u'\\')
        ++nRoot;
    nRoot = strPath.indexOf(u'\\', nRoot);
    if (nRoot < 0)
        throw CFileException(QStringLiteral("路径 %1 无效！").arg(Platform::ToShown(strPath)), 0);
    const QString strWhole = AddBackslash(strPath);
    for (qsizetype n = strWhole.indexOf(u'\\', nRoot + 1); n >= 0; n = strWhole.indexOf(u'\\', n + 1)) {
        const QString strPrefix = strWhole.left(n);
        if (GetPathKind(strPrefix) != EPathKind::Nothing)
            continue;
        const int nError = Platform::MakeFolder(NativeForCreating(strPrefix));
        // Another thread or program may have been a moment faster.
        if (nError != 0 && !(nError == EEXIST && IsFolder(strPrefix)))
            throw CannotMakeFolder(strPrefix, nError);
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

bool TryGetFolderSize(const QString& strPath, double& dSize) {
    return Succeeds([&] { dSize = GetFolderSize(strPath); });
}

} // namespace Torvane::File
