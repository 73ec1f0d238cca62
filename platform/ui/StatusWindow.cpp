#include "platform/ui/StatusWindow.h"

#include "platform/ui/InputGate.h"
#include "platform/ui/QtPeople.h"
#include "platform/ui/Texts.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QDialog>
#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

namespace {

/// The colour of all status windows, as a colour number whose low byte is red.
constexpr quint32 c_nStatusColour = 0xC8D0D4;
constexpr int c_nBarSteps = 1000;
constexpr int c_nMinimumWidth = 320;
constexpr qint64 c_nShowMilliseconds = 300;
/// What is over sooner needs no button.
constexpr qint64 c_nCancelMilliseconds = 1500;

QList<CStatusWindow*> s_open;

QPalette StatusPalette(QPalette palette) {
    const QColor colour(c_nStatusColour & 0xFF, (c_nStatusColour >> 8) & 0xFF,
                        (c_nStatusColour >> 16) & 0xFF);
    palette.setColor(QPalette::Window, colour);
    palette.setColor(QPalette::WindowText, Qt::black);
    return palette;
}

} // namespace

CStatusWindow::CStatusWindow(QWidget* pParent, Pump pump)
    : m_pParent(pParent ? pParent->window() : nullptr), m_pump(std::move(pump)) {
    s_open.append(this);
    if (m_pParent && m_pParent->isVisible())
        m_pDialog = qobject_cast<QDialog*>(m_pParent);
    auto* pFrame = new QFrame(m_pParent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    m_pWindow = pFrame;
    pFrame->setObjectName(QStringLiteral("statusWindow"));
    pFrame->setFrameStyle(QFrame::Panel | QFrame::Raised);
    pFrame->setAttribute(Qt::WA_ShowWithoutActivating);
    pFrame->setPalette(StatusPalette(pFrame->palette()));
    pFrame->setAutoFillBackground(true);
    pFrame->setMinimumWidth(c_nMinimumWidth);
    auto* pLayout = new QVBoxLayout(pFrame);
    pLayout->setContentsMargins(24, 18, 24, 18);
    m_pTitle = new QLabel(pFrame);
    m_pTitle->setObjectName(QStringLiteral("statusTitle"));
    m_pTitle->setTextFormat(Qt::PlainText);
    m_pTitle->setAlignment(Qt::AlignCenter);
    QFont bold = m_pTitle->font();
    bold.setBold(true);
    m_pTitle->setFont(bold);
    m_pTitle->hide();
    pLayout->addWidget(m_pTitle);
    m_pText = new QLabel(pFrame);
    m_pText->setObjectName(QStringLiteral("statusText"));
    m_pText->setTextFormat(Qt::PlainText);
    m_pText->setAlignment(Qt::AlignCenter);
    pLayout->addWidget(m_pText);
    m_pBar = new QProgressBar(pFrame);
    m_pBar->setObjectName(QStringLiteral("statusBar"));
    m_pBar->setRange(0, c_nBarSteps);
    m_pBar->hide();
    pLayout->addWidget(m_pBar);
    m_pCancel = new QPushButton(UiTexts::c_strCancel, pFrame);
    m_pCancel->setObjectName(QStringLiteral("statusCancel"));
    m_pCancel->setToolTip(QKeySequence(Qt::Key_Escape).toString(QKeySequence::NativeText));
    // The window has no focus to give.
    m_pCancel->setFocusPolicy(Qt::NoFocus);
    m_pCancel->hide();
    QObject::connect(m_pCancel, &QPushButton::clicked, pFrame, [this] { Cancel(); });
    pLayout->addWidget(m_pCancel, 0, Qt::AlignHCenter);
}

CStatusWindow::~CStatusWindow() {
    s_open.removeOne(this);
    m_pGate.reset();
    delete m_pWindow;
}

CStatusWindow* CStatusWindow::GetLast() {
    return s_open.isEmpty() ? nullptr : s_open.last();
}

void CStatusWindow::Place() {
    m_pWindow->adjustSize();
    QRect around = QGuiApplication::primaryScreen()->availableGeometry();
    if (m_pParent && m_pParent->isVisible())
        around = m_pParent->frameGeometry();
    QRect mine(QPoint(0, 0), m_pWindow->size());
    mine.moveCenter(around.center());
    m_pWindow->setGeometry(mine);
}

void CStatusWindow::PaintNow() {
    // A window that was just shown can be painted only once the screen has told that it stands there.
    QElapsedTimer waited;
    waited.start();
    const QWindow* pNative = m_pWindow->windowHandle();
    while (pNative && !pNative->isExposed() && waited.elapsed() < c_nShowMilliseconds) {
        const CQtPeople::CPainting painting;
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 10);
        if (!m_pWindow)
            return;
    }
    // A window below that has only just come up itself may have gone over this one.
    m_pWindow->raise();
    m_pWindow->repaint();
    m_pump(QEventLoop::ExcludeUserInputEvents);
}

void CStatusWindow::ShowStatus(const QString& strText) {
    if (!m_pWindow)
        return;
    m_pText->setText(strText);
    m_pWindow->setAccessibleName(strText);
    Place();
    if (!m_pWindow->isVisible())
        m_pWindow->show();
    // Without the focus, the window has to speak up to be heard by a screen reader.
    QAccessibleEvent said(m_pWindow, QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
    PaintNow();
}

void CStatusWindow::SetTitle(const QString& strTitle) {
    if (!m_pWindow)
        return;
    m_pWindow->setWindowTitle(strTitle);
    m_pTitle->setText(strTitle);
    m_pTitle->setVisible(!strTitle.isEmpty());
}

void CStatusWindow::AllowCancel(bool bAllow) {
    m_bMayCancel = bAllow;
    m_bCancelled = false;
    m_waited.start();
    m_pGate.reset();
    if (!m_pWindow || !m_pCancel->isVisibleTo(m_pWindow))
        return;
    m_pCancel->hide();
    Place();
}

void CStatusWindow::OfferCancel() {
    m_pCancel->setEnabled(true);
    m_pCancel->show();
    Place();
    m_pGate = std::make_unique<CInputGate>(*m_pWindow, [this] { Cancel(); });
}

void CStatusWindow::Cancel() {
    m_bCancelled = true;
    if (m_pWindow)
        m_pCancel->setEnabled(false);
}

bool CStatusWindow::IsDialogLeft() const {
    return m_pDialog && !m_pDialog->isVisible();
}

bool CStatusWindow::KeepWaiting() {
    if (m_pWindow && m_bMayCancel && !m_pGate && m_pWindow->isVisible() &&
        m_waited.elapsed() >= c_nCancelMilliseconds)
        OfferCancel();
    if (!m_pGate) {
        m_pump(QEventLoop::ExcludeUserInputEvents);
    } else {
        m_pGate->SetActive(true);
        m_pump(QEventLoop::AllEvents);
        m_pGate->SetActive(false);
    }
    return !m_bCancelled && !(m_bMayCancel && IsDialogLeft());
}

void CStatusWindow::ShowProgress(qint64 nDone, qint64 nTotal) {
    if (!m_pWindow)
        return;
    const bool bShow = nTotal > 0;
    if (bShow != m_pBar->isVisibleTo(m_pWindow)) {
        m_pBar->setVisible(bShow);
        Place();
    }
    if (bShow) {
        const double dPart = double(qBound(qint64(0), nDone, nTotal)) / double(nTotal);
        m_pBar->setValue(int(dPart * c_nBarSteps));
        m_pBar->repaint();
    }
    m_pump(QEventLoop::ExcludeUserInputEvents);
}
