#pragma once

#include "platform/ui/MediaEngine.h"
#include "platform/ui/media/MediaPictures.h"
#include "platform/ui/media/MediaProbe.h"

#include <QMediaPlayer>
#include <QMutex>
#include <QObject>

#include <atomic>
#include <memory>

class QAudioOutput;
class QFile;
class QVideoSink;

/// What the two sides of an engine hand each other without waiting.
struct SMediaMail {
    /// Grows with each file: what comes of an earlier one is dropped.
    std::atomic<int> nFile = 0;
    std::atomic<qint64> nSeek = -1;

    QMutex mutex;
    QSize room;
    QImage picture;
    /// The file that the picture is of.
    int nPictureOf = -1;
    bool bPictureWaits = false;
};

/// The toolkit's player, on the thread on which files are opened and decoded: on a slow disk, or with a
/// damaged file, each of its calls may take long.
class CMediaWorker : public QObject {
    Q_OBJECT
public:
    explicit CMediaWorker(std::shared_ptr<SMediaMail> pMail);
    ~CMediaWorker() override;

    void Load(const QString& strFile, int nFile);
    void Unload();
    void Play();
    void Pause();
    void Stop();
    void SeekToLast();
    void SetVolume(int nPercent);
    void DrawAgain();

Q_SIGNALS:
    void Loaded(int nFile, const SMediaInfo& info);
    void Failed(int nFile, EMediaFailure failure);
    void StateChanged(int nFile, EMediaState state);
    void Moved(int nFile, qint64 nPosition);
    void Ended(int nFile);
    void PictureWaits();

private:
    void MakePlayer();
    void TellLoaded();
    void OnStatus(QMediaPlayer::MediaStatus status);
    void OnState(QMediaPlayer::PlaybackState state);
    void TellPosition(qint64 nPosition);
    void Fail(EMediaFailure failure);
    void Draw(const QVideoFrame& frame);

    std::shared_ptr<SMediaMail> m_pMail;
    /// What the player reads, on its own threads; goes behind it.
    std::unique_ptr<QFile> m_pFile;
    std::unique_ptr<QMediaPlayer> m_pPlayer;
    QVideoSink* m_pSink = nullptr;
    QAudioOutput* m_pSound = nullptr;
    CMediaPictures m_pictures;
    /// -1 for none: only with a file is there a player.
    int m_nFile = -1;
    int m_nVolume = 100;
    SMediumFacts m_facts;
    bool m_bToldLoaded = false;
    bool m_bAtEnd = false;
};

/// The engine as the player sees it; it lives on the interface thread and only sends and receives.
class CMediaEngine : public QObject, public IMediaEngine {
    Q_OBJECT
public:
    CMediaEngine();
    ~CMediaEngine() override;

    void Load(const QString& strNativePath) override;
    void Unload() override;
    void Play() override { Send(&CMediaWorker::Play); }
    void Pause() override { Send(&CMediaWorker::Pause); }
    void Stop() override { Send(&CMediaWorker::Stop); }
    void Seek(qint64 nPosition) override;
    void SetVolume(int nPercent) override;
    void SetRoom(const QSize& room) override;

private:
    void Send(void (CMediaWorker::*pStep)());
    void ConnectWorker();
    template <class TCall, class... TArgs>
    void Tell(int nFile, const TCall& call, const TArgs&... args) {
        if (nFile == m_pMail->nFile && call)
            call(args...);
    }

    std::shared_ptr<SMediaMail> m_pMail = std::make_shared<SMediaMail>();
    /// Lives on the decoders' thread and ends there.
    CMediaWorker* m_pWorker;
};
