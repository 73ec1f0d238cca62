#include "app/ui/SplashWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QWindow>

namespace {

constexpr int c_nSplashMilliseconds = 750;
constexpr qint64 c_nMostToPaintMilliseconds = 100;

} // namespace

// No window of the manager's: it takes no focus, stands in no list of windows, and is never taken for the
// main one.
CSplashWindow::CSplashWindow(const QPixmap& picture)
    : QSplashScreen(picture, Qt::X11BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus) {
    setObjectName(QStringLiteral("CSplashWindow"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &CSplashWindow::Go);
}

void CSplashWindow::ShowNow() {
    if (pixmap().isNull())
        return;
    m_timer.start(c_nSplashMilliseconds);
    qApp->installEventFilter(this);
    show();
    QElapsedTimer waited;
    waited.start();
    while (windowHandle() && !windowHandle()->isExposed() && waited.elapsed() < c_nMostToPaintMilliseconds)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void CSplashWindow::MoveInto(QWidget& frame) {
    if (!isVisible())
        return;
    m_pInFrame = new QLabel(&frame);
    m_pInFrame->setObjectName(QStringLiteral("splash"));
    m_pInFrame->setAccessibleName(QGuiApplication::applicationDisplayName());
    m_pInFrame->setPixmap(pixmap());
    QRect place(frame.mapFromGlobal(geometry().topLeft()), size());
    if (!frame.rect().contains(place))
        place.moveCenter(frame.rect().center());
    m_pInFrame->setGeometry(place);
    m_pInFrame->show();
    m_pInFrame->repaint();
    hide();
}

void CSplashWindow::Go() {
    m_timer.stop();
    qApp->removeEventFilter(this);
    hide();
    if (!m_pInFrame)
        return;
    QWidget* const pFrame = m_pInFrame->window();
    delete m_pInFrame;
    pFrame->repaint();
}

bool CSplashWindow::eventFilter(QObject* pWatched, QEvent* pEvent) {
    switch (pEvent->type()) {
    case QEvent::ShortcutOverride:
        // Else a shortcut would take the key before it is told as a key.
        pEvent->accept();
        return true;
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::NonClientAreaMouseButtonPress:
        Go();
        return true;
    default:
        return QSplashScreen::eventFilter(pWatched, pEvent);
    }
}

void CSplashWindow::mousePressEvent(QMouseEvent* /*pEvent*/) {
    // The filter has seen it.
}
