#include "companions/fetch/FileFaults.h"

#include "companions/fetch/Texts.h"
#include "foundation/Exceptions.h"

#include <QFileDevice>

#include <cerrno>

void ThrowFileFault(const QString& strPath, int nSystemError) {
    QString strReason;
    switch (nSystemError) {
    case ENOSPC:
    case EDQUOT:
        strReason = FetchText::c_strDiskFull;
        break;
    case EACCES:
    case EPERM:
    case EROFS:
        strReason = FetchText::c_strNoPermission;
        break;
    case EEXIST:
    case ENOTDIR:
        strReason = FetchText::c_strNameTaken;
        break;
    default:
        strReason = Torvane::File::FormatSystemError(nSystemError);
    }
    throw Torvane::CRunException(FetchText::c_strCannotWrite.arg(strPath, strReason));
}

void ThrowFileFault(const QFileDevice& file) {
    const bool bFull = file.error() == QFileDevice::ResourceError;
    const bool bRefused = file.error() == QFileDevice::PermissionsError;
    throw Torvane::CRunException(
        FetchText::c_strCannotWrite.arg(file.fileName(), bFull      ? FetchText::c_strDiskFull
                                                         : bRefused ? FetchText::c_strNoPermission
                                                                    : file.errorString()));
}
