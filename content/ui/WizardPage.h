#pragma once

#include <QWizardPage>

/// What the pages of the wizards have in common. Each fills its own part of the wizard's record as it is
/// left.
class CWizardPage : public QWizardPage {
    Q_OBJECT
public:
    explicit CWizardPage(const QString& strTitle) { setTitle(strTitle); }

    /// The page comes up, from the one before or from the one behind it.
    virtual void Activate() {}
    /// Where the keyboard goes then.
    virtual QWidget* GetFirstField() const = 0;
};
