#include "course/Skin.h"

#include "course/PaintingFilter.h"
#include "course/TemplateStore.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"

using namespace Torvane::File;

namespace {

/// What can't be deleted stays under the new skin, which is better than a skin that is half gone.
void DeleteAsFarAsPossible(const QString& strFolder, IWalkFilter& filter) {
    if (!IsFolder(strFolder))
        return;
    try {
        DeleteFolder(strFolder, true, &filter);
    } catch (const CFileException&) {
        return;
    }
}

void CopyFolders(const QString& strTemplate, const QString& strTargetFolder, bool bReplace,
                 Torvane::Dialog::MFC::IPeople& people) {
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    const QString strSkin = store.GetSkinFolder(strTemplate);
    CPaintingFilter filter(people);
    for (const QString& strName : SkinFolders(strSkin)) {
        const QString strTarget = AddBackslash(strTargetFolder) + strName;
        if (bReplace)
            DeleteAsFarAsPossible(strTarget, filter);
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
