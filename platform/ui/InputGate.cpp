#include "platform/ui/InputGate.h"

#include "platform/ui/QtPeople.h"
#include "platform/ui/WebBrowser.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>

namespace {

constexpr int c_nFreeMilliseconds = 5;

CInputGate* s_pActive = nullptr;

KeptInput KeepFor(QObject* pObject, const QEvent& event) {
    auto* pWindow = static_cast<QWindow*>(pObject);
    return {pWindow, pWindow->focusObject(), std::unique_ptr<QEvent>(event.clone())};
}

bool IsKey(const QEvent& event) {
    return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
}

/// Hands the kept input on once no step holds the thread, which would be entered anew by it. What is typed
/// until then comes behind.
class CHandOn : public QObject {
public:
    explicit CHandOn(std::vector<KeptInput> kept)
        : QObject(QCoreApplication::instance()), m_kept(std::move(kept)) {
        QCoreApplication::instance()->installEventFilter(this);
        startTimer(c_nFreeMilliseconds);
    }

    bool eventFilter(QObject* pObject, QEvent* pEvent) override {
        if (!IsKey(*pEvent) || !pObject->isWindowType() || !IsWithinReach(static_cast<QWindow*>(pObject)))
            return false;
        m_kept.push_back(KeepFor(pObject, *pEvent));
        return true;
    }

protected:
    void timerEvent(QTimerEvent* pEvent) override {
        if (CQtPeople::IsKeepingPainting() || CWebBrowser2Ex::IsCallRunning())
            return;
        killTimer(pEvent->timerId());
        QCoreApplication::instance()->removeEventFilter(this);
        for (const KeptInput& kept : m_kept)
            HandOn(kept);
        deleteLater();
    }

private:
    /// Not cut off by a dialog that the step opened in the end.
    static bool IsWithinReach(const QWindow* pWindow) {
        const QWindow* pModal = QGuiApplication::modalWindow();
        return pModal == nullptr || pModal == pWindow ||
               pModal->isAncestorOf(pWindow, QWindow::IncludeTransients);
    }

    static void HandOn(const KeptInput& kept) {
        if (!kept.pWindow || !IsWithinReach(kept.pWindow))
            return;
        if (kept.pEvent->type() == QEvent::Close)
            kept.pWindow->close();
        else if (!IsKey(*kept.pEvent) || kept.pFocus == kept.pWindow->focusObject())
            QCoreApplication::sendEvent(kept.pWindow, kept.pEvent.get());
    }

    std::vector<KeptInput> m_kept;
};

} // namespace

CInputGate::CInputGate(QWidget& open, std::function<void()> cancel)
    : m_pOpen(&open), m_cancel(std::move(cancel)) {
    QCoreApplication::instance()->installEventFilter(this);
}

CInputGate::~CInputGate() {
    SetActive(false);
    if (!m_kept.empty())
        new CHandOn(std::move(m_kept));
}

void CInputGate::SetActive(bool bActive) {
    if (bActive == m_bActive)
        return;
    m_bActive = bActive;
    if (bActive)
        m_pOuter = s_pActive;
    s_pActive = bActive ? this : m_pOuter;
}

bool CInputGate::IsOpen(QObject* pObject) const {
    if (!m_pOpen || pObject == m_pOpen->windowHandle())
        return true;
    const auto* pWidget = qobject_cast<QWidget*>(pObject);
    return pWidget != nullptr && (pWidget == m_pOpen || m_pOpen->isAncestorOf(pWidget));
}

void CInputGate::Keep(QObject* pObject, const QEvent& event) {
    const auto isThis = [&](const KeptInput& kept) {
        return kept.pWindow == pObject && kept.pEvent->type() == QEvent::Close;
    };
    // Who presses twice wants the window closed once.
    if (event.type() != QEvent::Close || std::none_of(m_kept.begin(), m_kept.end(), isThis))
        m_kept.push_back(KeepFor(pObject, event));
}

bool CInputGate::TakeKey(QObject* pObject, const QKeyEvent& key) {
    if (key.key() == Qt::Key_Escape) {
        if (key.type() == QEvent::KeyPress)
            m_cancel();
        return true;
    }
    if (IsOpen(pObject))
        return false;
    Keep(pObject, key);
    return true;
}

bool CInputGate::eventFilter(QObject* pObject, QEvent* pEvent) {
    if (s_pActive != this)
        return false;
    switch (pEvent->type()) {
    case QEvent::ShortcutOverride:
        // Taken as a plain key, so that no command starts now.
        pEvent->accept();
        return true;
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
        return true;
    default:
        break;
    }
    // Input comes to a window first and goes on to its widgets from there.
    if (!pObject->isWindowType())
        return false;
    switch (pEvent->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return TakeKey(pObject, static_cast<const QKeyEvent&>(*pEvent));
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
        if (IsOpen(pObject))
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
