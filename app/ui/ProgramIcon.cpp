#include "app/ui/ProgramIcon.h"

#include "foundation/SysInfo.h"
#include "platform/ui/Pictures.h"

QIcon LoadProgramIcon() {
    return Pictures::ProgramIcon(CSysInfo::Instance().GetSysDataFolder(false));
}
