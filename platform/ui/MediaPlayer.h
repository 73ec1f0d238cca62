#pragma once

#include "platform/base/ScreenAwake.h"
#include "platform/ui/MediaEngine.h"

#include <QWidget>

#include <memory>

/// Plays a file of pictures or sound, and draws the pictures, whole and in their proportions.
///
/// The decoder is a module of its own, loaded beside the interface thread when the first file is; nothing
/// here waits. What was asked for before the file is open is done then. A file that can't be played ends in
/// Failed, which says why in a sentence for a person. The screen saver stays away while it plays.
class CMediaPlayer : public QWidget {
    Q_OBJECT
public:
    explicit CMediaPlayer(QWidget* pParent = nullptr);
    ~CMediaPlayer() override;

    /// Opens a file, a path in backslash form, and lets go of the one before. Ends with Loaded or Failed.
    void Load(const QString& strPath);
    /// Stops, and lets go of the file.
    void Unload();
    /// From the beginning when it stands at the end.
    void Play();
    void Pause();
    void Stop();
    /// Milliseconds from the beginning.
    void Seek(qint64 nPosition);
    /// 0 to 100; holds for files loaded later too.
    void SetVolume(int nPercent);

    EMediaState GetState() const { return m_state; }
    /// Milliseconds.
    qint64 GetPosition() const { return m_nPosition; }
    /// Milliseconds; 0 while unknown.
    qint64 GetDuration() const { return m_info.nDuration; }
    bool HasPicture() const { return m_info.bPicture; }
    bool CanSeek() const { return m_info.bSeekable && m_info.nDuration > 0; }
    /// The picture that shows, no larger than there is room for; null for none.
    const QImage& GetPicture() const { return m_picture; }

    /// What it is at, in a few words for a person; what went wrong behind a failure.
    const QString& GetStatus() const { return m_strStatus; }

    /// The film's markers count from 1: the last at or before the place; 0 for none.
    int GetMarker() const;
    /// Goes to a marker; one that the film doesn't have leads nowhere.
    void GoToMarker(int nMarker);

    /// Fills the screen, until Escape, a double click, or this.
    void SetFullScreen(bool bOn);

    QSize sizeHint() const override { return {480, 360}; }
    QSize minimumSizeHint() const override { return {120, 90}; }

Q_SIGNALS:
    void Loaded();
    void StateChanged();
    /// Some ten times a second while it plays.
    void PositionChanged();
    /// It played to the end; the state has become Stopped.
    void Ended();
    void Failed(const QString& strText);
    void StatusChanged();

protected:
    /// The window that fills the screen is not the player's end.
    void closeEvent(QCloseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    void WithEngine();
    void ConnectEngine();
    void Open();
    /// Answers whether it changes.
    bool SetState(EMediaState state);
    void TellRoom();
    void SetStatus(const QString& strText);
    void Fail(const QString& strText);

    std::unique_ptr<IMediaEngine> m_pEngine;
    bool m_bAsked = false;
    bool m_bLoaded = false;
    bool m_bPlayWhenLoaded = false;
    /// Backslash form; empty for none.
    QString m_strPath;
    SMediaInfo m_info;
    EMediaState m_state = EMediaState::Stopped;
    qint64 m_nPosition = 0;
    int m_nVolume = 100;
    QString m_strStatus;
    Platform::CScreenAwake m_awake;
    /// In the window that holds it, while it fills the screen.
    QRect m_place;
    QImage m_picture;
};
