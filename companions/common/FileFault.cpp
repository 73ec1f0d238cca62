#include "companions/common/FileFault.h"

#include "platform/base/FileCalls.h"

#include <QFileDevice>

#include <cerrno>

QString FileFaultText(const QFileDevice& file) {
    switch (file.error()) {
    case QFileDevice::ResourceError:
        return Platform::SystemErrorText(ENOSPC);
    case QFileDevice::PermissionsError:
        return Platform::SystemErrorText(EACCES);
    default:
        return file.errorString();
    }
}
