#pragma once

#include "content/ui/KindFields.h"
#include "content/ui/WizardPage.h"

class QButtonGroup;
class QCheckBox;
class QGroupBox;
class QStackedWidget;

/// Page 2: the fields of the chosen kind, and in which window the content opens.
class CCreateFileParamSetPropertyPage : public CWizardPage {
    Q_OBJECT
public:
    CCreateFileParamSetPropertyPage(Torvane::Dialog::MFC::IPeople& people, const AskLink& askLink,
                                    CNodeFileParams& params);

    void Activate() override;
    QWidget* GetFirstField() const override;
    bool validatePage() override;

private:
    QGroupBox* OpenTypeGroup();
    CKindFields& Fields() const;
    qint32 OpenType() const;

    Torvane::Dialog::MFC::IPeople& m_people;
    CNodeFileParams& m_params;
    QGroupBox* m_pGroup;
    QStackedWidget* m_pKinds;
    QCheckBox* m_pNewWindow;
    QButtonGroup* m_pWindows;
};
