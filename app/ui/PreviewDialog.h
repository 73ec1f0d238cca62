#pragma once

#include <QDialog>

/// Shows the picture of the course's whole template until it is closed.
class CPreviewDialog : public QDialog {
    Q_OBJECT
public:
    /// The picture's path in backslash form; one that does not load leaves the dialog empty.
    CPreviewDialog(const QString& strPicture, QWidget* pParent);
};
