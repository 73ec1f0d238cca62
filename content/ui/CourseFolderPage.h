#pragma once

#include "content/NewCourse.h"
#include "content/ui/WizardPage.h"
#include "platform/base/People.h"

class QLineEdit;

/// Page 2: the name and the folder. Shows the folder in native form, takes either form.
class CSelectCourseFolderPropertyPage : public CWizardPage {
    Q_OBJECT
public:
    CSelectCourseFolderPropertyPage(Torvane::Dialog::MFC::IPeople& people, CreateRecord& record);

    void Activate() override;
    QWidget* GetFirstField() const override;
    bool validatePage() override;

private:
    void TakeFields();
    void ShowFields();
    void Browse();

    Torvane::Dialog::MFC::IPeople& m_people;
    CreateRecord& m_record;
    CCourseFolderStep m_step;
    QLineEdit* m_pName;
    QLineEdit* m_pFolder;
};
