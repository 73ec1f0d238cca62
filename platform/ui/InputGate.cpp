#include "platform/ui/InputGate.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>

namespace {

CInputGate* s_pActive = nullptr;

} // namespace

CInputGate::CInputGate(QWidget& open, std::function<void()> cancel)
    : m_pOpen(&open), m_cancel(std::move(cancel)) {
    QCoreApplication::instance()->installEventFilter(this);
}

CInputGate::~CInputGate() {
    SetActive(false);
    for (Kept& kept : m_kept) {
        if (!kept.pWindow)
            continue;
        if (kept.pEvent->type() != QEvent::Close) {
            QCoreApplication::postEvent(kept.pWindow, kept.pEvent.release());
            continue;
        }
        // A dialog that the step opened in the end goes before its window, as ever.
        QMetaObject::invokeMethod(
            kept.pWindow,
            [pWindow = kept.pWindow.data()] {
                const QWindow* pModal = QGuiApplication::modalWindow();
                if (pModal == nullptr || pModal == pWindow)
                    pWindow->close();
            },
            Qt::QueuedConnection);
    }
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
    m_kept.push_back({static_cast<QWindow*>(pObject), std::unique_ptr<QEvent>(event.clone())});
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
