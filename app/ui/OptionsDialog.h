#pragma once

#include <QDialog>

class QCheckBox;
class QRadioButton;

/// The dialog "选项": what happens at the start, and the question at imports of Office files.
class COptionsDialog : public QDialog {
    Q_OBJECT
public:
    explicit COptionsDialog(QWidget* pParent);

    /// Writes both settings. Throws Torvane::CRunException when the settings can't be written.
    void Store() const;

private:
    QRadioButton* m_pNew = nullptr;
    QRadioButton* m_pLast = nullptr;
    QCheckBox* m_pOffice = nullptr;
};
