#pragma once

#include <QDialog>

/// The about box: the splash picture with the build's number. A click on it, Enter, Space or Escape closes
/// it.
class CAboutDialog : public QDialog {
    Q_OBJECT
public:
    explicit CAboutDialog(QWidget* pParent);

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
};
