#include "course/Skin.h"

#include "course/PaintingFilter.h"
#include "course/TemplateStore.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"

using namespace Torvane::File;

namespace {

void CopyFolders(const QString& strTemplate, const QString& strTargetFolder, bool bReplace,
                 Torvane::Dialog::MFC::IPeople& people) {
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    const QString strSkin = store.GetSkinFolder(strTemplate);
    CPaintingFilter filter(people);
    for (const QString& strName : SkinFolders(strSkin)) {
        const QString strTarget = AddBackslash(strTargetFolder) + strName;
        if (bReplace && IsFolder(strTarget))
            DeleteFolder(strTarget, true, &filter);
        ForceCopyFolder(AddBackslash(strSkin) + strName, strTarget, true, &filter);
    }
}

} // namespace

void CopySkin(const QString& strTemplate, const QString& strTargetFolder,
              Torvane::Dialog::MFC::IPeople& people) {
    CopyFolders(strTemplate, strTargetFolder, false, people);
}

void ReplaceSkin(const QString& strTemplate, const QString& strTargetFolder,
                 Torvane::Dialog::MFC::IPeople& people) {
    CopyFolders(strTemplate, strTargetFolder, true, people);
}
