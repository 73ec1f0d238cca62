#pragma once

#include "content/NewCourse.h"
#include "content/ui/WizardPage.h"

class QPlainTextEdit;

/// Page 4: what was chosen.
class CShowUserSelectPropertyPage : public CWizardPage {
    Q_OBJECT
public:
    explicit CShowUserSelectPropertyPage(CreateRecord& record);

    void Activate() override;
    QWidget* GetFirstField() const override;
    bool validatePage() override;

private:
    CreateRecord& m_record;
    QPlainTextEdit* m_pSummary;
};
