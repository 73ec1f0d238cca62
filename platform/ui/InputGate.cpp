#include "platform/ui/InputGate.h"

#include "platform/ui/ThreadHeld.h"

#include <QCoreApplication>
#include <QDialog>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr int c_nFreeMilliseconds = 20;

CInputGate* s_pActive = nullptr;

bool IsKey(const QEvent& event) {
    return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
}

/// Keys go to their window first; the text of an input method and a shortcut to whom they belong.
bool IsTyped(const QObject* pObject, const QEvent& event) {
    return event.type() == QEvent::InputMethod || event.type() == QEvent::Shortcut ||
           (IsKey(event) && pObject->isWindowType());
}

QWindow* WindowOf(QObject* pObject) {
    return pObject->isWindowType() ? static_cast<QWindow*>(pObject) : QGuiApplication::focusWindow();
}

KeptInput KeepFor(QObject* pObject, const QEvent& event) {
    QWindow* pWindow = WindowOf(pObject);
    return {pWindow, pWindow ? pWindow->focusObject() : nullptr, pObject,
            std::unique_ptr<QEvent>(event.clone())};
}

/// Hands the kept input on once no step holds the thread, which would be entered anew by it, and no dialog
/// that the step opened in the end cuts its window off. What is typed there until then comes behind.
class CHandOn : public QObject {
public:
    static void Take(std::deque<KeptInput> kept) {
        if (!s_pRunning)
            s_pRunning = new CHandOn;
        std::move(kept.begin(), kept.end(), std::back_inserter(s_pRunning->m_kept));
    }

    bool eventFilter(QObject* pObject, QEvent* pEvent) override {
        // What is typed behind a key that opens a dialog was meant for that dialog.
        if (m_bHandingOn && pEvent->type() == QEvent::WindowBlocked)
            m_kept.clear();
        if (m_bHandingOn || !IsTyped(pObject, *pEvent) || !IsAwaited(WindowOf(pObject)))
            return false;
        m_kept.push_back(KeepFor(pObject, *pEvent));
        return true;
    }

protected:
    void timerEvent(QTimerEvent* pEvent) override {
        while (!m_kept.empty()) {
            if (IsThreadHeld() || IsCutOff(m_kept.front().pWindow))
                return;
            const KeptInput next = std::move(m_kept.front());
            m_kept.pop_front();
            const QScopedValueRollback handing(m_bHandingOn, true);
            HandOn(next);
        }
        s_pRunning = nullptr;
        killTimer(pEvent->timerId());
        QCoreApplication::instance()->removeEventFilter(this);
        deleteLater();
    }

private:
    CHandOn() : QObject(QCoreApplication::instance()) {
        QCoreApplication::instance()->installEventFilter(this);
        startTimer(c_nFreeMilliseconds);
    }

    bool IsAwaited(const QWindow* pWindow) const {
        return std::any_of(m_kept.begin(), m_kept.end(),
                           [&](const KeptInput& kept) { return kept.pWindow == pWindow; });
    }

    static bool IsCutOff(const QWindow* pWindow) {
        const QWindow* pModal = QGuiApplication::modalWindow();
        return pWindow != nullptr && pModal != nullptr && pModal != pWindow &&
               !pModal->isAncestorOf(pWindow, QWindow::IncludeTransients);
    }

    void HandOn(const KeptInput& kept) {
        if (!kept.pWindow || !kept.pReceiver)
            return;
        if (kept.pEvent->type() == QEvent::Close) {
            kept.pWindow->close();
            return;
        }
        QObject* pFocus = kept.pWindow->focusObject();
        if (IsTyped(kept.pReceiver, *kept.pEvent) && kept.pFocus != pFocus)
            return;
        const bool bText = kept.pEvent->type() == QEvent::InputMethod;
        QCoreApplication::sendEvent(bText ? pFocus : kept.pReceiver.data(), kept.pEvent.get());
        if (kept.pWindow)
            FollowFocus(*kept.pWindow, pFocus);
    }

    /// A key that goes on to another field takes there what was typed behind it.
    void FollowFocus(QWindow& window, const QObject* pBefore) {
        for (KeptInput& kept : m_kept) {
            if (kept.pWindow == &window && kept.pFocus == pBefore)
                kept.pFocus = window.focusObject();
        }
    }

    static inline QPointer<CHandOn> s_pRunning;
    std::deque<KeptInput> m_kept;
    bool m_bHandingOn = false;
};

} // namespace

CInputGate::CInputGate() : m_bDrops(true) {
    QCoreApplication::instance()->installEventFilter(this);
}

CInputGate::CInputGate(QWidget& open, std::function<void()> cancel)
    : m_bDrops(false), m_pOpen(&open), m_cancel(std::move(cancel)) {
    QCoreApplication::instance()->installEventFilter(this);
}

CInputGate::~CInputGate() {
    SetActive(false);
    // A step inside a wait that drops keeps nothing either.
    const bool bDropped = s_pActive != nullptr && s_pActive->m_bDrops;
    if (!m_kept.empty() && !bDropped)
        CHandOn::Take(std::move(m_kept));
}

void CInputGate::SetActive(bool bActive) {
    if (bActive == m_bActive)
        return;
    m_bActive = bActive;
    if (bActive)
        m_pOuter = s_pActive;
    s_pActive = bActive ? this : m_pOuter;
}

CInputGate::CPause::CPause() : m_pHeld(std::exchange(s_pActive, nullptr)) {}

CInputGate::CPause::~CPause() {
    s_pActive = m_pHeld && m_pHeld->m_bActive ? m_pHeld.data() : nullptr;
}

bool CInputGate::IsOpen(QObject* pObject) const {
    if (m_bDrops)
        return false;
    if (!m_pOpen || pObject == m_pOpen->windowHandle())
        return true;
    const auto* pWidget = qobject_cast<QWidget*>(pObject);
    return pWidget != nullptr && (pWidget == m_pOpen || m_pOpen->isAncestorOf(pWidget));
}

bool CInputGate::IsDialogBelow(QObject* pObject) const {
    const auto* pDialog = m_pOpen ? qobject_cast<QDialog*>(m_pOpen->parentWidget()) : nullptr;
    return pDialog != nullptr && pObject == pDialog->windowHandle();
}

void CInputGate::Keep(QObject* pObject, const QEvent& event) {
    if (m_bDrops && event.type() != QEvent::MouseButtonRelease)
        return;
    const auto isThis = [&](const KeptInput& kept) {
        return kept.pWindow == pObject && kept.pEvent->type() == QEvent::Close;
    };
    // Who presses twice wants the window closed once.
    if (event.type() != QEvent::Close || std::none_of(m_kept.begin(), m_kept.end(), isThis))
        m_kept.push_back(KeepFor(pObject, event));
}

bool CInputGate::TakeTyped(QObject* pObject, const QEvent& event) {
    if (!m_bDrops && IsKey(event) && static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape) {
        if (event.type() == QEvent::KeyPress)
            m_cancel();
        return true;
    }
    if (IsOpen(pObject))
        return false;
    Keep(pObject, event);
    return true;
}

bool CInputGate::eventFilter(QObject* pObject, QEvent* pEvent) {
    if (s_pActive != this)
        return false;
    if (IsTyped(pObject, *pEvent))
        return TakeTyped(pObject, *pEvent);
    switch (pEvent->type()) {
    case QEvent::ShortcutOverride: {
        // Escape comes as a plain key, whatever else it may mean, and Alt doesn't call the menu bar now.
        const int nKey = static_cast<const QKeyEvent*>(pEvent)->key();
        if (!m_bDrops && nKey != Qt::Key_Escape && nKey != Qt::Key_Alt)
            return false;
        pEvent->accept();
        return true;
    }
    case QEvent::ContextMenu:
        return true;
    default:
        break;
    }
    // Input comes to a window first and goes on to its widgets from there.
    if (!pObject->isWindowType())
        return false;
    switch (pEvent->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (!IsOpen(pObject))
            m_pressed |= static_cast<const QMouseEvent*>(pEvent)->button();
        return !IsOpen(pObject);
    case QEvent::MouseButtonRelease: {
        const Qt::MouseButton button = static_cast<const QMouseEvent*>(pEvent)->button();
        if (IsOpen(pObject))
            return false;
        // Who got the press before the step waits for this.
        if (!m_pressed.testFlag(button))
            Keep(pObject, *pEvent);
        m_pressed.setFlag(button, false);
        return true;
    }
    case QEvent::Close:
        if (IsOpen(pObject) || IsDialogBelow(pObject))
            return false;
        Keep(pObject, *pEvent);
        pEvent->ignore();
        return true;
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return !IsOpen(pObject);
    default:
        return false;
    }
}
