#pragma once

#include "content/ui/PagedWizard.h"
#include "course/Course.h"
#include "server/CourseChoice.h"

#include <memory>

class CGetCourseInfoPropertyPage;
class CSelectCourseNodePropertyPage;

/// The wizard "新建课程向导": course, folder, template, summary. Writes nothing but the empty course folder.
class CCreateProjectWizard : public CPagedWizard {
    Q_OBJECT
public:
    CCreateProjectWizard(Torvane::Dialog::MFC::IPeople& people, CServerSession& session, QWidget* pParent);
    ~CCreateProjectWizard() override;

    /// Runs the wizard; true when it was finished. It stands there while the list of courses is fetched, and
    /// ends with cancel when there is none to be had.
    bool Run();
    const CreateRecord& GetRecord() const { return m_record; }

protected:
    void Begin() override;

private:
    void AddPages();

    Torvane::Dialog::MFC::IPeople& m_people;
    CCourseChoice m_choice;
    /// The pages fill it, each its own part, as they are left.
    CreateRecord m_record;
    CGetCourseInfoPropertyPage* m_pCoursePage = nullptr;
    /// Not among the pages: nobody is asked for the initial nodes.
    std::unique_ptr<CSelectCourseNodePropertyPage> m_pNodesPage;
};
