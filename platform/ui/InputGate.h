#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include <functional>
#include <memory>
#include <vector>

class QKeyEvent;

/// Input that could not go where it was meant for.
struct KeptInput {
    QPointer<QWindow> pWindow;
    /// What had the focus there.
    QPointer<QObject> pFocus;
    std::unique_ptr<QEvent> pEvent;
};

/// Lets the person's input through to one window while a step holds the interface thread. Escape in any
/// window means that window's Cancel. Other keys are kept and reach their windows, in their order, when
/// nothing holds the thread any more, so that a text typed on meanwhile has no hole; clicks elsewhere are
/// dropped, and a window that was to be closed is closed then.
class CInputGate : public QObject {
public:
    CInputGate(QWidget& open, std::function<void()> cancel);
    ~CInputGate() override;
    CInputGate(const CInputGate&) = delete;
    CInputGate& operator=(const CInputGate&) = delete;

    /// Only a gate that is active holds anything back, and of several the one that was activated last: a box
    /// that comes up before the gate goes can be answered.
    void SetActive(bool bActive);

    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

private:
    bool IsOpen(QObject* pObject) const;
    bool TakeKey(QObject* pObject, const QKeyEvent& key);
    void Keep(QObject* pObject, const QEvent& event);

    bool m_bActive = false;
    CInputGate* m_pOuter = nullptr;
    QPointer<QWidget> m_pOpen;
    std::function<void()> m_cancel;
    std::vector<KeptInput> m_kept;
    /// Buttons that went down behind the gate: their release stays there too.
    Qt::MouseButtons m_pressed;
};
