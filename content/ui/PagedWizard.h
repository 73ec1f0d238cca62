#pragma once

#include <QWizard>

/// The look and the manners that the wizards share. Its pages are CWizardPage.
class CPagedWizard : public QWizard {
    Q_OBJECT
public:
    /// The buttons' texts, whose access keys the pages leave free.
    struct Buttons {
        QString strBack;
        QString strNext;
        QString strFinish;
    };
    CPagedWizard(const QString& strTitle, const Buttons& buttons, QWidget* pParent);

protected:
    bool event(QEvent* pEvent) override;
    void showEvent(QShowEvent* pEvent) override;

    /// Called once, when the wizard really stands there and is active.
    virtual void Begin() {}

private:
    void SetButtons(const Buttons& buttons);
    void OnPage();
    void BeginOnce();

    bool m_bBegun = false;
};
