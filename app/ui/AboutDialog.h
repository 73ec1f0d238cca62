#pragma once

#include <QDialog>

/// The about box: the splash picture with the build's number; a click on the picture closes it.
class CAboutDialog : public QDialog {
    Q_OBJECT
public:
    explicit CAboutDialog(QWidget* pParent);

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
};
