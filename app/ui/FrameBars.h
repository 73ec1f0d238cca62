#pragma once

#include "platform/ui/LockKeys.h"

#include <QStatusBar>
#include <QToolBar>

#include <array>

class QAction;
class QLabel;
class QMenu;
class QToolButton;

/// The main frame's toolbar: pictures with the words below them, all buttons of one size. The size follows
/// every change of the desktop's settings.
class CFrameToolBar : public QToolBar {
    Q_OBJECT
public:
    explicit CFrameToolBar(QWidget* pParent);

    /// A button for the action, which has its picture and its icon text. A menu goes to the button: with an
    /// arrow that opens it, or without one under the button's right click.
    void AddButton(QAction& action, const QString& strName, QMenu* pDropDown = nullptr, bool bArrow = true);

    /// Takes the light off the buttons that the mouse isn't over. A dialog that comes up from a menu, with
    /// the mouse over a button, keeps the button from hearing that the mouse has gone.
    void DropHover();

protected:
    bool event(QEvent* pEvent) override;

private:
    void FitButtons();
    void FitButtonsSoon();

    QList<QToolButton*> m_buttons;
    bool m_bFitPending = false;
};

/// The main frame's status bar: the message, and one pane for each of the three lock keys.
class CFrameStatusBar : public QStatusBar {
    Q_OBJECT
public:
    explicit CFrameStatusBar(QWidget* pParent);

    /// What the message pane says from now on. Painted at once, since what follows may take long.
    void SetText(const QString& strText);
    /// What it says of a command that is pointed at; the text comes back with an empty hint.
    void ShowHint(const QString& strHint);

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void UpdateLocks();

    QLabel* m_pMessage;
    std::array<QLabel*, 3> m_locks{};
    bool m_bScrollPressed = false;
    QString m_strText;
};
