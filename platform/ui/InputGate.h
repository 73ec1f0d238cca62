#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include <deque>
#include <functional>
#include <memory>

/// Input that could not go where it was meant for.
struct KeptInput {
    QPointer<QWindow> pWindow;
    /// What had the focus there.
    QPointer<QObject> pFocus;
    QPointer<QObject> pReceiver;
    std::unique_ptr<QEvent> pEvent;
};

/// Lets the person's input through to one window while a step holds the interface thread. Escape in any
/// window means that window's Cancel. Other keys, what an input method makes of them, and the shortcuts that
/// they are, are kept: they reach their windows, in their order, when nothing holds the thread any more and
/// no dialog stands over them, so that a text typed on meanwhile has no hole and Ctrl+S saves. Clicks
/// elsewhere are dropped, and a window that was to be closed is closed then. A dialog below the open window
/// is closed at once: whoever waits over it gives up then.
///
/// Without a window that is open, all that is done before the gate goes is dropped: only the release of a
/// button that was down already is handed on.
class CInputGate : public QObject {
public:
    CInputGate();
    CInputGate(QWidget& open, std::function<void()> cancel);
    ~CInputGate() override;
    CInputGate(const CInputGate&) = delete;
    CInputGate& operator=(const CInputGate&) = delete;

    /// Only a gate that is active holds anything back, and of several the one that was activated last: a box
    /// that comes up before the gate goes can be answered.
    void SetActive(bool bActive);

    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

    /// While this stands, the gates that were active before hold nothing back: for a box that comes up in the
    /// middle of a step, and is waited for.
    class CPause {
    public:
        CPause();
        ~CPause();
        CPause(const CPause&) = delete;
        CPause& operator=(const CPause&) = delete;

    private:
        QPointer<CInputGate> m_pHeld;
    };

private:
    bool IsOpen(QObject* pObject) const;
    bool IsDialogBelow(QObject* pObject) const;
    bool TakeTyped(QObject* pObject, const QEvent& event);
    void Keep(QObject* pObject, const QEvent& event);

    const bool m_bDrops;
    bool m_bActive = false;
    CInputGate* m_pOuter = nullptr;
    QPointer<QWidget> m_pOpen;
    std::function<void()> m_cancel;
    std::deque<KeptInput> m_kept;
    /// Buttons that went down behind the gate: their release stays there too.
    Qt::MouseButtons m_pressed;
};
