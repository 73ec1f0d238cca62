#pragma once

#include <QWidget>

class CMediaPlayer;
class QKeyEvent;
class QLabel;
class QPushButton;
class QSlider;
class QStackedWidget;

/// A file that the browser engine can't show: it is played where the player can, else the person is told what
/// it is; and it can be opened in another program. Never an empty place. Its picture and sound end when it is
/// hidden.
class CMediaView : public QWidget {
    Q_OBJECT
public:
    explicit CMediaView(QWidget* pParent = nullptr);

    /// A path in backslash form, and what the person calls the file; its own name where that is empty. What
    /// the player takes begins to play.
    void ShowFile(const QString& strPath, const QString& strName = QString());
    /// Shows nothing and lets go of the file.
    void Clear();

Q_SIGNALS:
    /// The person wants the file in another program.
    void OpenOutside(const QString& strPath);
    /// The person wants a copy of the file in a place of their own, under the name that they call it by.
    void CopyWanted(const QString& strPath, const QString& strName);

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    void hideEvent(QHideEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void changeEvent(QEvent* pEvent) override;

private:
    QWidget* MakeTransport();
    QWidget* MakeFoot();
    void ConnectPlayer();
    void Tell(const QString& strText);
    void ShowName();
    void ShowState();
    void ShowPosition();
    void Toggle();
    bool TakeKey(const QKeyEvent& key);

    CMediaPlayer* m_pPlayer;
    QStackedWidget* m_pStack;
    QWidget* m_pPicture;
    QLabel* m_pText;
    QWidget* m_pTransport;
    QPushButton* m_pPlay;
    QSlider* m_pPlace;
    QLabel* m_pTime;
    QSlider* m_pVolume;
    QPushButton* m_pFill;
    QLabel* m_pName;
    QPushButton* m_pSave;
    QPushButton* m_pOutside;
    /// Backslash form; empty for none.
    QString m_strPath;
    QString m_strName;
};
