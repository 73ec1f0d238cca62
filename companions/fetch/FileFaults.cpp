#include "companions/fetch/FileFaults.h"

#include "companions/common/FileFault.h"
#include "companions/fetch/Texts.h"
#include "foundation/Exceptions.h"
#include "platform/base/FileCalls.h"

#include <QFileDevice>

void ThrowFileFault(const QString& strPath, int nSystemError) {
    throw Torvane::CRunException(
        FetchText::c_strCannotWrite.arg(strPath, Platform::SystemErrorText(nSystemError)));
}

void ThrowFileFault(const QFileDevice& file) {
    throw Torvane::CRunException(FetchText::c_strCannotWrite.arg(file.fileName(), FileFaultText(file)));
}
