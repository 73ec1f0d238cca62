#include "course/SetTemplate.h"

#include "course/Skin.h"
#include "course/TemplateStore.h"
#include "course/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/SysInfo.h"

using namespace Torvane::Dialog::MFC;

void RunSetTemplate(CCourse& course, IPeople& people, ITemplateChooser& chooser,
                    const std::function<void(quint32 nBackColor)>& setBackColor) {
    const QString strOld = course.GetTemplateName();
    const auto chosen = chooser.ChooseTemplate(strOld);
    if (!chosen || *chosen == strOld)
        return;
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    if (!store.HasSameNodes(strOld, *chosen)) {
        people.Ask(CourseText::c_strTreesDiffer, CourseText::c_strNoticeTitle, BoxButtons::Ok,
                   BoxIcon::Warning);
        return;
    }
    if (!course.SetTemplateName(*chosen))
        return;
    setBackColor(store.GetBackColor(*chosen));
    try {
        ReplaceSkin(*chosen, course.GetPaths().GetNodeResourceFolder(false), people);
    } catch (const Torvane::File::CFileException&) {
        people.Notice(CourseText::c_strReplaceSkinFailed);
        return;
    }
    people.Notice(CourseText::c_strTemplateSet);
}
