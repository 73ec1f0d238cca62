#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

class QLabel;
class QProgressBar;

/// What is being filmed, small, and how loud it is.
class CLiveView : public QWidget {
    Q_OBJECT
public:
    /// Its parts are named with that before their own names.
    CLiveView(const QByteArray& prefix, QWidget* pParent);

    /// Begins anew: whether a sound comes, and what stands in the picture's place until one does.
    void Begin(bool bSound, const QString& strText);
    /// Nothing comes for now. The text stands in the picture's place.
    void End(const QString& strText = {});

    /// As CFilmRun gives them.
    void ShowPicture(const QByteArray& pixels);
    void ShowLevel(double dLevel);

private:
    void WatchSilence();

    QLabel* m_pPicture;
    QProgressBar* m_pLevel;
    QLabel* m_pSilent;
    QElapsedTimer m_heard;
    QTimer m_tick;
};
