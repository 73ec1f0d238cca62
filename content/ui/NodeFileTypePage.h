#pragma once

#include "content/NodeFileParams.h"
#include "content/ui/WizardPage.h"
#include "platform/base/People.h"

class QButtonGroup;

/// Page 1: what a node's content is made of.
class CSelectCreateTypePropertyPage : public CWizardPage {
    Q_OBJECT
public:
    CSelectCreateTypePropertyPage(Torvane::Dialog::MFC::IPeople& people, const ContentPreset& preset,
                                  CNodeFileParams& params);

    /// Shows the advice, if there is any, where the pointer then is: at the kind that it advises.
    void ShowAdvice();

    QWidget* GetFirstField() const override;
    bool validatePage() override;

protected:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

private:
    void AddKinds(const ContentPreset& preset);

    Torvane::Dialog::MFC::IPeople& m_people;
    CNodeFileParams& m_params;
    QButtonGroup* m_pKinds;
    bool m_bAdvice;
};
