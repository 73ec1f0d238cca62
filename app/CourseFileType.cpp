#include "app/CourseFileType.h"

#include "app/Texts.h"
#include "foundation/SysInfo.h"

Platform::FileType CourseFileType() {
    const QString strExtension = LoadResString(SharedText::c_nExtension);
    return {strExtension, strExtension + QStringLiteral("files"), AppTexts::c_strFileType};
}

Platform::ProgramEntry OwnProgramEntry() {
    const CSysInfo& settings = CSysInfo::Instance();
    return {LoadResString(SharedText::c_nProductTitle), AppTexts::c_strProgramComment,
            settings.GetProgramPath(),
            settings.GetSysDataFolder(true) + QStringLiteral("Images\\Resource\\128")};
}
