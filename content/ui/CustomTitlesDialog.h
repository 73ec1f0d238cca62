#pragma once

#include <QDialog>

class QLineEdit;

/// The dialog "自定义标题": a field for each role that a node may have.
class CCustomTitlesDialog : public QDialog {
    Q_OBJECT
public:
    /// The titles stand in the order of CustomTitles::Roles(). The field of the introduction is disabled
    /// where bIntroduction is false.
    CCustomTitlesDialog(const QStringList& titles, bool bIntroduction, QWidget* pParent);

    /// In the same order.
    QStringList GetTitles() const;

private:
    QList<QLineEdit*> m_fields;
};
