#include "course/Skin.h"

#include "course/PaintingFilter.h"
#include "course/TemplateStore.h"
#include "course/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"

#include <QElapsedTimer>

#include <memory>

using namespace Torvane::File;

namespace {

constexpr qint64 c_nSilentMilliseconds = 500;

/// Says what is going on once it lasts.
class CSkinFilter : public CPaintingFilter {
public:
    explicit CSkinFilter(Torvane::Dialog::MFC::IPeople& people) : CPaintingFilter(people), m_people(people) {
        m_waited.start();
    }
    bool Cancelled() override {
        if (!m_pStatus && m_waited.elapsed() > c_nSilentMilliseconds) {
            m_pStatus = m_people.OpenStatus();
            m_pStatus->ShowStatus(CourseText::c_strReplacingSkin);
        }
        return CPaintingFilter::Cancelled();
    }

private:
    Torvane::Dialog::MFC::IPeople& m_people;
    std::unique_ptr<Torvane::Dialog::MFC::CShowStatusDlg> m_pStatus;
    QElapsedTimer m_waited;
};

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
                 IWalkFilter& filter) {
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    const QString strSkin = store.GetSkinFolder(strTemplate);
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
    CPaintingFilter filter(people);
    CopyFolders(strTemplate, strTargetFolder, false, filter);
}

void ReplaceSkin(const QString& strTemplate, const QString& strTargetFolder,
                 Torvane::Dialog::MFC::IPeople& people) {
    CSkinFilter filter(people);
    CopyFolders(strTemplate, strTargetFolder, true, filter);
}
