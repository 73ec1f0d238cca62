#include "app/ui/ProgramIcon.h"

#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

QIcon LoadProgramIcon() {
    const QString strFolder = Platform::ToNativeExact(CSysInfo::Instance().GetSysDataFolder(true) +
                                                      QStringLiteral("Images\\Resource\\"));
    QIcon icon;
    for (const int nSize : {16, 32, 48, 256})
        icon.addFile(strFolder + QStringLiteral("128-%1.png").arg(nSize), QSize(nSize, nSize));
    return icon;
}
