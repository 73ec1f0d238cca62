#pragma once

#include "content/NewCourse.h"
#include "content/ui/WizardPage.h"
#include "platform/base/People.h"

class CPicturePane;
class QComboBox;
class QListWidget;
class QToolButton;

/// Page 3: the template, with its previews.
class CSelectCourseTempletePropertyPage : public CWizardPage {
    Q_OBJECT
public:
    CSelectCourseTempletePropertyPage(Torvane::Dialog::MFC::IPeople& people, CreateRecord& record);

    void Activate() override;
    QWidget* GetFirstField() const override;
    bool validatePage() override;

private:
    void LayOut();
    /// The selected template; empty for none.
    QString Chosen() const;
    void FillTemplates();
    void FillPages();
    void Step(int nRows);
    void ShowPreview();

    Torvane::Dialog::MFC::IPeople& m_people;
    CreateRecord& m_record;
    CTemplateStore m_store;
    QListWidget* m_pTemplates;
    QComboBox* m_pPages;
    QToolButton* m_pPrevious;
    QToolButton* m_pNext;
    CPicturePane* m_pPreview;
};
