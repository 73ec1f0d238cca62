#pragma once

#include <QPointer>
#include <QSplashScreen>
#include <QTimer>

class QLabel;

/// The picture that shows from the start of the frame's making on. It goes after a moment, or earlier with
/// the first key or mouse button pressed, which does nothing else.
class CSplashWindow : public QSplashScreen {
    Q_OBJECT
public:
    explicit CSplashWindow(const QPixmap& picture);

    /// Shows it, and has it painted before anything else is done.
    void ShowNow();
    /// Lets it stand in the frame from now on, which is on the screen and painted: so dialogs come over it.
    void MoveInto(QWidget& frame);

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;

private:
    void Go();

    QTimer m_timer;
    QPointer<QLabel> m_pInFrame;
};
