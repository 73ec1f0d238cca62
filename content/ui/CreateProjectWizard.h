#pragma once

#include "course/Course.h"
#include "server/ServerSession.h"

#include <QWizard>

/// The wizard "新建课程向导": course, folder, template, summary. Writes nothing but the empty course folder.
class CCreateProjectWizard : public QWizard {
    Q_OBJECT
public:
    CCreateProjectWizard(Torvane::Dialog::MFC::IPeople& people, CServerSession& session, QWidget* pParent);

    /// Runs the wizard; true when it was finished.
    bool Run();
    const CreateRecord& GetRecord() const { return m_record; }

private:
    CreateRecord m_record;
};
