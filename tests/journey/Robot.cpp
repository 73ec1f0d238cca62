#include "tests/journey/Robot.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QProcess>
#include <QRegularExpression>
#include <QScreen>
#include <QThread>
#include <QWidget>
#include <QWindow>

using namespace Qt::StringLiterals;

Robot::Robot(QString strShotFolder) : m_strShotFolder(std::move(strShotFolder)) {
    QDir().mkpath(m_strShotFolder);
    m_nShot = static_cast<int>(QDir(m_strShotFolder).entryList({u"*.png"_s}).size());
}

void Robot::Send(const QStringList& input) {
    if (QProcess::execute(u"xdotool"_s, input) != 0)
        throw Failure("the display does not take " + input.join(QLatin1Char(' ')).toStdString());
}

void Robot::SendClick(const QPoint& point, int nButton) {
    Send({u"mousemove"_s, QString::number(point.x()), QString::number(point.y()), u"sleep"_s, u"0.03"_s,
          u"click"_s, QString::number(nButton)});
}

void Robot::OnGui(const std::function<void()>& work) {
    QMetaObject::invokeMethod(
        qApp, [&] { work(); }, Qt::BlockingQueuedConnection);
}

QWidget* Robot::Find(const QString& strName, const QString& strWindow) {
    for (QWidget* pWidget : QApplication::allWidgets()) {
        if (pWidget->objectName() != strName || !pWidget->isVisible())
            continue;
        if (strWindow.isEmpty() || pWidget->window()->objectName() == strWindow)
            return pWidget;
    }
    return nullptr;
}

void Robot::WaitFor(const char* pWhat, const std::function<bool()>& condition, int nSeconds) {
    QElapsedTimer timer;
    timer.start();
    while (!Ask<bool>(condition)) {
        if (timer.elapsed() > nSeconds * 1000) {
            Shot(u"failed"_s);
            throw Failure(std::string("waited in vain for ") + pWhat);
        }
        QThread::msleep(50);
    }
}

namespace {

/// Whether input at the widget's place reaches it: it is enabled, its window is the active one, and no dialog
/// or menu stands before it.
bool TakesInput(QWidget* pWidget) {
    const QWindow* pWindow = pWidget ? pWidget->window()->windowHandle() : nullptr;
    const QWidget* pPopup = QApplication::activePopupWidget();
    const QWidget* pFront = pPopup ? pPopup : QApplication::activeModalWidget();
    if (!pWindow || !pWindow->isExposed() || !pWidget->isEnabled())
        return false;
    // The status window never is the active one, and stands before all others.
    if (pWidget->window()->windowFlags() & Qt::WindowDoesNotAcceptFocus)
        return true;
    return (pPopup || pWidget->isActiveWindow()) && (!pFront || pWidget->window() == pFront);
}

} // namespace

void Robot::WaitForWidget(const QString& strName, const QString& strWindow) {
    const std::string what = strName.toStdString() + " in " + strWindow.toStdString();
    WaitFor(what.c_str(), [&] { return TakesInput(Find(strName, strWindow)); });
}

QPoint Robot::Settle(const QString& strName, const QString& strWindow,
                     const std::function<QRect(QWidget*)>& place) {
    // The window manager may still be moving the window: the place counts when it stays.
    QPoint last(-1, -1);
    for (int nTry = 0; nTry < 40; ++nTry) {
        const auto now = Ask<QPoint>([&] {
            QWidget* pWidget = Find(strName, strWindow);
            return pWidget ? pWidget->mapToGlobal(place(pWidget).center()) : QPoint(-1, -1);
        });
        if (now == last && now.x() >= 0)
            return now;
        last = now;
        QThread::msleep(60);
    }
    throw Failure("the widget does not rest: " + strName.toStdString());
}

void Robot::Click(const QString& strName, const QString& strWindow) {
    ClickAt(strName, &QWidget::rect, 1, strWindow);
}

void Robot::ClickAt(const QString& strName, const std::function<QRect(QWidget*)>& place, int nButton,
                    const QString& strWindow) {
    WaitForWidget(strName, strWindow);
    SendClick(Settle(strName, strWindow, place), nButton);
}

void Robot::Drag(const QString& strName, const std::function<QRect(QWidget*)>& from,
                 const std::function<QRect(QWidget*)>& to) {
    WaitForWidget(strName);
    const QPoint start = Settle(strName, QString(), from);
    const QPoint end = Settle(strName, QString(), to);
    QStringList input;
    // A hand goes through what lies between.
    constexpr int c_nSteps = 5;
    for (int nStep = 0; nStep <= c_nSteps; ++nStep) {
        const QPoint at = start + (end - start) * nStep / c_nSteps;
        input += {u"mousemove"_s, QString::number(at.x()), QString::number(at.y()), u"sleep"_s, u"0.05"_s};
        if (nStep == 0)
            input += {u"mousedown"_s, u"1"_s};
    }
    Send(input);
}

void Robot::LetGo() {
    Send({u"mouseup"_s, u"1"_s});
}

void Robot::ClickMenuEntry(const QString& strText) {
    const auto place = [&] {
        auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        for (QAction* pAction : pMenu ? pMenu->actions() : QList<QAction*>()) {
            if (pAction->text() == strText && pAction->isEnabled())
                return pMenu->mapToGlobal(pMenu->actionGeometry(pAction).center());
        }
        return QPoint();
    };
    WaitFor(("the menu entry " + strText.toStdString()).c_str(), [&] { return !place().isNull(); });
    QThread::msleep(100);
    SendClick(Ask<QPoint>(place), 1);
}

void Robot::Press(const QString& strKeys) {
    Send({u"key"_s, strKeys});
    QThread::msleep(60);
}

void Robot::ClickInto(const QString& strName, const QString& strWindow) {
    Click(strName, strWindow);
    WaitFor(("the focus in " + strName.toStdString()).c_str(), [&] {
        const QWidget* pFocus = QApplication::focusWidget();
        return pFocus && pFocus->objectName() == strName;
    });
}

void Robot::Fill(const QString& strName, const QString& strText, const QString& strWindow) {
    const auto isFilled = [&] {
        const auto* pEdit = qobject_cast<QLineEdit*>(Find(strName, strWindow));
        return pEdit && pEdit->text() == strText;
    };
    ClickInto(strName, strWindow);
    // A dialog that has just closed may take keys with it while the display moves the focus, and a late click
    // undoes a selection: what was typed counts when it stands there alone.
    for (int nTry = 0; nTry < 5; ++nTry) {
        Press(u"ctrl+a"_s);
        Type(strText);
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 2000) {
            if (Ask<bool>(isFilled))
                return;
            QThread::msleep(50);
        }
    }
    WaitFor(("the text in " + strName.toStdString()).c_str(), isFilled, 1);
}

void Robot::Type(const QString& strText) {
    static const QRegularExpression plain(u"^[a-z0-9]*$"_s);
    if (plain.match(strText).hasMatch()) {
        Send({u"type"_s, u"--delay"_s, u"60"_s, strText});
        return;
    }
    WaitFor("a place to type", [] { return qApp->focusObject() != nullptr; });
    OnGui([&] {
        QInputMethodEvent composing(u"pin yin"_s, {});
        QCoreApplication::sendEvent(qApp->focusObject(), &composing);
        QInputMethodEvent event;
        event.setCommitString(strText);
        QCoreApplication::sendEvent(qApp->focusObject(), &event);
    });
    QThread::msleep(80);
}

void Robot::Shot(const QString& strName) {
    // When the screen rests, or goes on changing for good: a caret that blinks, a film.
    const auto grab = [] {
        return Ask<QImage>([] { return qApp->primaryScreen()->grabWindow(0).toImage(); });
    };
    QImage screen = grab();
    bool bRests = false;
    for (int nTry = 0; nTry < 4 && !bRests; ++nTry) {
        QThread::msleep(80);
        const QImage before = std::exchange(screen, grab());
        bRests = screen == before;
    }
    // Written on this thread, since it takes a while that the program shouldn't pay for; the quality is the
    // format's word for how long to pack it.
    constexpr int c_nPackedInHaste = 85;
    const QString strFile = u"%1/%2-%3.png"_s;
    screen.save(strFile.arg(m_strShotFolder).arg(++m_nShot, 2, 10, QLatin1Char('0')).arg(strName), "PNG",
                c_nPackedInHaste);
}
