#include "companions/common/ProjectArgument.h"

#include "platform/base/NativePath.h"

#include <QFileInfo>

QString ReadProjectArgument(const QString& strArgument) {
    const bool bDrive = strArgument.size() > 1 && strArgument[1] == u':';
    return Platform::FromNative(bDrive ? strArgument : QFileInfo(strArgument).absoluteFilePath());
}
