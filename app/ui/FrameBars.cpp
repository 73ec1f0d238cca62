#include "app/ui/FrameBars.h"

#include "app/Texts.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

namespace {

constexpr QSize c_picture(35, 35);
constexpr int c_nPaneMargin = 6;

bool IsLockKey(const QEvent& event) {
    const int nKey = static_cast<const QKeyEvent&>(event).key();
    return nKey == Qt::Key_CapsLock || nKey == Qt::Key_NumLock || nKey == Qt::Key_ScrollLock;
}

bool IsScrollPress(const QEvent& event) {
    const auto& key = static_cast<const QKeyEvent&>(event);
    return key.key() == Qt::Key_ScrollLock && !key.isAutoRepeat();
}

} // namespace

CFrameToolBar::CFrameToolBar(QWidget* pParent) : QToolBar(AppTexts::c_strToolBar, pParent) {
    setObjectName(QStringLiteral("mainToolBar"));
    setMovable(false);
    setIconSize(c_picture);
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
}

void CFrameToolBar::AddButton(QAction& action, const QString& strName, QMenu* pDropDown, bool bArrow) {
    auto* pButton = new QToolButton(this);
    pButton->setDefaultAction(&action);
    pButton->setObjectName(strName);
    pButton->setAccessibleName(action.iconText());
    pButton->setAccessibleDescription(action.statusTip());
    pButton->setToolButtonStyle(toolButtonStyle());
    pButton->setIconSize(iconSize());
    pButton->setAutoRaise(true);
    if (pDropDown != nullptr) {
        pDropDown->setParent(pButton, pDropDown->windowFlags());
        if (bArrow) {
            pButton->setMenu(pDropDown);
            pButton->setPopupMode(QToolButton::MenuButtonPopup);
        } else {
            pButton->setContextMenuPolicy(Qt::CustomContextMenu);
            connect(pButton, &QWidget::customContextMenuRequested, pDropDown, [pButton, pDropDown] {
                pDropDown->popup(pButton->mapToGlobal(pButton->rect().bottomLeft()));
            });
        }
    }
    addWidget(pButton);
    m_buttons.append(pButton);
    FitButtonsSoon();
}

bool CFrameToolBar::event(QEvent* pEvent) {
    switch (pEvent->type()) {
    case QEvent::StyleChange:
    case QEvent::FontChange:
    case QEvent::ApplicationFontChange:
    case QEvent::PaletteChange:
    case QEvent::LanguageChange:
    case QEvent::ScreenChangeInternal:
        // The buttons hear of it after their bar.
        FitButtonsSoon();
        break;
    default:
        break;
    }
    return QToolBar::event(pEvent);
}

void CFrameToolBar::FitButtonsSoon() {
    if (m_bFitPending)
        return;
    m_bFitPending = true;
    QMetaObject::invokeMethod(this, &CFrameToolBar::FitButtons, Qt::QueuedConnection);
}

void CFrameToolBar::FitButtons() {
    m_bFitPending = false;
    QSize largest = c_picture;
    for (const QToolButton* pButton : m_buttons)
        largest = largest.expandedTo(pButton->sizeHint());
    for (QToolButton* pButton : m_buttons)
        pButton->setFixedSize(largest);
    update();
}

void CFrameToolBar::DropHover() {
    const bool bBlocked = QApplication::activeModalWidget() != nullptr;
    for (QToolButton* pButton : m_buttons) {
        const bool bOver = !bBlocked && pButton->rect().contains(pButton->mapFromGlobal(QCursor::pos()));
        if (pButton->underMouse() && !bOver) {
            QEvent leave(QEvent::Leave);
            QApplication::sendEvent(pButton, &leave);
        }
    }
}

CFrameStatusBar::CFrameStatusBar(QWidget* pParent) : QStatusBar(pParent), m_pMessage(new QLabel(this)) {
    setObjectName(QStringLiteral("statusBar"));
    m_pMessage->setObjectName(QStringLiteral("statusText"));
    m_pMessage->setContentsMargins(c_nPaneMargin, 0, c_nPaneMargin, 0);
    addWidget(m_pMessage, 1);
    const std::array names{QStringLiteral("capsLock"), QStringLiteral("numLock"),
                           QStringLiteral("scrollLock")};
    const std::array texts{AppTexts::c_strCapsLock, AppTexts::c_strNumLock, AppTexts::c_strScrollLock};
    for (size_t nKey = 0; nKey < m_locks.size(); ++nKey) {
        auto* pPane = new QLabel(texts[nKey], this);
        pPane->setObjectName(names[nKey]);
        pPane->setContentsMargins(c_nPaneMargin, 0, c_nPaneMargin, 0);
        pPane->setEnabled(false);
        addPermanentWidget(pPane);
        m_locks[nKey] = pPane;
    }
    SetText(AppTexts::c_strReady);
    // The keys may change while another program has the keyboard: asked again whenever it comes back here.
    qApp->installEventFilter(this);
    connect(qApp, &QGuiApplication::applicationStateChanged, this, &CFrameStatusBar::UpdateLocks);
    connect(qApp, &QApplication::focusChanged, this, &CFrameStatusBar::UpdateLocks);
}

void CFrameStatusBar::SetText(const QString& strText) {
    m_strText = strText;
    m_pMessage->setText(strText);
    m_pMessage->repaint();
}

void CFrameStatusBar::ShowHint(const QString& strHint) {
    m_pMessage->setText(strHint.isEmpty() ? m_strText : strHint);
}

bool CFrameStatusBar::eventFilter(QObject* pWatched, QEvent* pEvent) {
    const QEvent::Type type = pEvent->type();
    // Every press comes to a window of the display first, once.
    if (type == QEvent::KeyPress && pWatched->isWindowType() && IsScrollPress(*pEvent))
        m_bScrollPressed = !m_bScrollPressed;
    if (((type == QEvent::KeyPress || type == QEvent::KeyRelease) && IsLockKey(*pEvent)) ||
        (type == QEvent::WindowActivate && pWatched == window()))
        UpdateLocks();
    return QStatusBar::eventFilter(pWatched, pEvent);
}

void CFrameStatusBar::UpdateLocks() {
    LockKeys::States states = LockKeys::Read();
    // Where the display locks nothing with the key, its presses here are all that there is.
    if (states.Scroll == LockKeys::EState::Unknown)
        states.Scroll = m_bScrollPressed ? LockKeys::EState::On : LockKeys::EState::Off;
    const std::array present{states.Caps, states.Num, states.Scroll};
    for (size_t nKey = 0; nKey < m_locks.size(); ++nKey) {
        const LockKeys::EState state = present[nKey];
        const QString strState = state == LockKeys::EState::On    ? AppTexts::c_strLockOn
                                 : state == LockKeys::EState::Off ? AppTexts::c_strLockOff
                                                                  : QString();
        m_locks[nKey]->setEnabled(state == LockKeys::EState::On);
        m_locks[nKey]->setAccessibleName(m_locks[nKey]->text() + strState);
    }
}
