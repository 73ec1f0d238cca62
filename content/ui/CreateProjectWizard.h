#pragma once

#include "course/Course.h"
#include "server/CourseChoice.h"

#include <QWizard>

/// The wizard "新建课程向导": course, folder, template, summary. Writes nothing but the empty course folder.
class CCreateProjectWizard : public QWizard {
    Q_OBJECT
public:
    CCreateProjectWizard(Torvane::Dialog::MFC::IPeople& people, CServerSession& session, QWidget* pParent);

    /// Fetches the list of courses and runs the wizard; true when it was finished. A list that can't be had
    /// has been told, and is a cancelled wizard that never showed.
    bool Run();
    const CreateRecord& GetRecord() const { return m_record; }

private:
    Torvane::Dialog::MFC::IPeople& m_people;
    CCourseChoice m_choice;
    /// The pages fill it, each its own part, as they are left.
    CreateRecord m_record;
};
