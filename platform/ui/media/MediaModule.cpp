#include "platform/ui/media/MediaModule.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QCoreApplication>
#include <QFile>
#include <QMediaDevices>
#include <QThread>
#include <QUrl>
#include <QVideoFrame>
#include <QVideoSink>

#include <utility>

namespace {

/// How long the program's end waits for a decoder that is at work.
constexpr unsigned long c_nEndMilliseconds = 2000;

QThread*& DecoderThread() {
    static QThread* s_pThread = nullptr;
    return s_pThread;
}

/// One for all players: seldom does more than one play. A decoder that does not come back is left behind.
void EndDecoders() {
    QThread* pThread = std::exchange(DecoderThread(), nullptr);
    if (pThread == nullptr)
        return;
    pThread->quit();
    if (pThread->wait(c_nEndMilliseconds))
        delete pThread;
}

QThread* DecodersOfTheProgram() {
    QThread*& pThread = DecoderThread();
    if (pThread == nullptr) {
        pThread = new QThread;
        pThread->setObjectName(QStringLiteral("decoders"));
        pThread->start();
        qAddPostRoutine(EndDecoders);
    }
    return pThread;
}

EMediaState StateOf(QMediaPlayer::PlaybackState state) {
    switch (state) {
    case QMediaPlayer::PlayingState:
        return EMediaState::Playing;
    case QMediaPlayer::PausedState:
        return EMediaState::Paused;
    case QMediaPlayer::StoppedState:
        break;
    }
    return EMediaState::Stopped;
}

} // namespace

CMediaWorker::CMediaWorker(std::shared_ptr<SMediaMail> pMail) : m_pMail(std::move(pMail)) {}

CMediaWorker::~CMediaWorker() = default;

void CMediaWorker::MakePlayer() {
    m_pPlayer = std::make_unique<QMediaPlayer>();
    m_pSink = new QVideoSink(m_pPlayer.get());
    m_pPlayer->setVideoSink(m_pSink);
    // Without a device the back end crashes on sound.
    if (!QMediaDevices::defaultAudioOutput().isNull()) {
        m_pSound = new QAudioOutput(m_pPlayer.get());
        m_pSound->setVolume(static_cast<float>(m_nVolume) / 100);
        m_pPlayer->setAudioOutput(m_pSound);
    }
    connect(m_pSink, &QVideoSink::videoFrameChanged, this, &CMediaWorker::Draw);
    connect(m_pPlayer.get(), &QMediaPlayer::mediaStatusChanged, this, &CMediaWorker::OnStatus);
    connect(m_pPlayer.get(), &QMediaPlayer::playbackStateChanged, this, &CMediaWorker::OnState);
    connect(m_pPlayer.get(), &QMediaPlayer::positionChanged, this, &CMediaWorker::TellPosition);
    connect(m_pPlayer.get(), &QMediaPlayer::errorOccurred, this, [this] { Fail(EMediaFailure::NotMedia); });
}

// A player of its own for each file: the back end carries faults of one over to the next.
void CMediaWorker::Load(const QString& strFile, int nFile) {
    Unload();
    // Many files may have been chosen while one was being opened.
    if (nFile != m_pMail->nFile)
        return;
    m_nFile = nFile;
    m_bToldLoaded = m_bAtEnd = false;
    if (!IsPlainMedium(
            strFile, [this, nFile] { return nFile == m_pMail->nFile; }, m_facts)) {
        Fail(EMediaFailure::NotMedia);
        return;
    }
    m_pFile = std::make_unique<QFile>(strFile);
    MakePlayer();
    if (!m_pFile->open(QIODevice::ReadOnly))
        return Fail(EMediaFailure::NotReadable);
    // Not by its name, which this back end opens escaped as a URL: no blank, no Chinese would be found.
    m_pPlayer->setSourceDevice(m_pFile.get(), QUrl::fromLocalFile(strFile));
    // This back end has opened the file then, and tells so only when it plays.
    if (m_nFile >= 0 && (m_pPlayer->hasVideo() || m_pPlayer->hasAudio()))
        TellLoaded();
}

void CMediaWorker::TellLoaded() {
    if (std::exchange(m_bToldLoaded, true))
        return;
    if (!m_pPlayer->hasVideo() && !m_pPlayer->hasAudio())
        return Fail(EMediaFailure::NotMedia);
    if (!m_pPlayer->hasVideo() && m_pSound == nullptr)
        return Fail(EMediaFailure::NoSound);
    Q_EMIT Loaded(m_nFile,
                  {m_pPlayer->duration(), m_pPlayer->hasVideo(), m_pPlayer->isSeekable(), m_facts.Markers});
}

void CMediaWorker::Unload() {
    m_nFile = -1;
    if (!m_pPlayer)
        return;
    disconnect(m_pPlayer.get(), nullptr, this, nullptr);
    disconnect(m_pSink, nullptr, this, nullptr);
    m_pPlayer->stop();
    m_pPlayer.reset();
    m_pFile.reset();
    m_pSink = nullptr;
    m_pSound = nullptr;
}

void CMediaWorker::Fail(EMediaFailure failure) {
    const int nFile = m_nFile;
    if (nFile < 0)
        return;
    // Called by the player itself, which goes when it has come back.
    m_nFile = -1;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_nFile < 0)
                Unload();
        },
        Qt::QueuedConnection);
    Q_EMIT Failed(nFile, failure);
}

void CMediaWorker::OnStatus(QMediaPlayer::MediaStatus status) {
    if (m_nFile < 0)
        return;
    switch (status) {
    case QMediaPlayer::LoadedMedia:
    case QMediaPlayer::BufferedMedia:
        TellLoaded();
        return;
    case QMediaPlayer::EndOfMedia:
        m_bAtEnd = true;
        Q_EMIT Moved(m_nFile, m_pPlayer->duration());
        Q_EMIT Ended(m_nFile);
        return;
    case QMediaPlayer::InvalidMedia:
        return Fail(EMediaFailure::NotMedia);
    default:
        return;
    }
}

void CMediaWorker::OnState(QMediaPlayer::PlaybackState state) {
    if (m_nFile < 0)
        return;
    if (state == QMediaPlayer::PlayingState)
        m_bAtEnd = false;
    Q_EMIT StateChanged(m_nFile, StateOf(state));
}

void CMediaWorker::TellPosition(qint64 nPosition) {
    // Behind the end the back end goes on reporting where it was.
    if (m_nFile < 0 || m_bAtEnd)
        return;
    const qint64 nDuration = m_pPlayer->duration();
    Q_EMIT Moved(m_nFile, nDuration > 0 ? qMin(nPosition, nDuration) : nPosition);
}

void CMediaWorker::Play() {
    if (m_nFile < 0)
        return;
    m_bAtEnd = false;
    m_pPlayer->play();
}

void CMediaWorker::Pause() {
    if (m_nFile >= 0)
        m_pPlayer->pause();
}

void CMediaWorker::Stop() {
    if (m_nFile < 0)
        return;
    // Nobody hears that a film that seems to play has gone back to its beginning.
    m_bAtEnd = true;
    m_pPlayer->stop();
    m_bAtEnd = false;
    Q_EMIT Moved(m_nFile, 0);
}

void CMediaWorker::SeekToLast() {
    const qint64 nPosition = m_pMail->nSeek.exchange(-1);
    if (m_nFile < 0 || nPosition < 0)
        return;
    // At the end there is no decoder that would go back; paused there is, and it shows the picture.
    if (m_pPlayer->playbackState() == QMediaPlayer::StoppedState)
        m_pPlayer->pause();
    m_bAtEnd = false;
    m_pPlayer->setPosition(nPosition);
}

void CMediaWorker::SetVolume(int nPercent) {
    m_nVolume = nPercent;
    if (m_pSound != nullptr)
        m_pSound->setVolume(static_cast<float>(nPercent) / 100);
}

void CMediaWorker::DrawAgain() {
    if (m_nFile >= 0 && m_pPlayer->playbackState() != QMediaPlayer::PlayingState)
        Draw(m_pSink->videoFrame());
}

void CMediaWorker::Draw(const QVideoFrame& frame) {
    if (m_nFile < 0 || !frame.isValid())
        return;
    QSize room;
    {
        const QMutexLocker lock(&m_pMail->mutex);
        // The interface thread has not come to the last one of this film yet: this one would not be seen.
        if (m_pMail->bPictureWaits && m_pMail->nPictureOf == m_nFile &&
            m_pPlayer->playbackState() == QMediaPlayer::PlayingState)
            return;
        room = m_pMail->room;
    }
    QImage picture = m_pictures.Make(frame, room, m_facts.dPoint, m_facts.nTurn);
    if (picture.isNull())
        return;
    const QMutexLocker lock(&m_pMail->mutex);
    m_pMail->picture = std::move(picture);
    m_pMail->nPictureOf = m_nFile;
    if (!std::exchange(m_pMail->bPictureWaits, true))
        Q_EMIT PictureWaits();
}

CMediaEngine::CMediaEngine() : m_pWorker(new CMediaWorker(m_pMail)) {
    ConnectWorker();
    m_pWorker->moveToThread(DecodersOfTheProgram());
}

CMediaEngine::~CMediaEngine() {
    // What is on its way ends at the number of the file.
    ++m_pMail->nFile;
    QMetaObject::invokeMethod(m_pWorker, &CMediaWorker::Unload, Qt::QueuedConnection);
    m_pWorker->deleteLater();
}

void CMediaEngine::ConnectWorker() {
    const auto type = Qt::QueuedConnection;
    connect(
        m_pWorker, &CMediaWorker::Loaded, this,
        [this](int nFile, const SMediaInfo& info) { Tell(nFile, OnLoaded, info); }, type);
    connect(
        m_pWorker, &CMediaWorker::Failed, this,
        [this](int nFile, EMediaFailure failure) { Tell(nFile, OnFailure, failure); }, type);
    connect(
        m_pWorker, &CMediaWorker::StateChanged, this,
        [this](int nFile, EMediaState state) { Tell(nFile, OnState, state); }, type);
    connect(
        m_pWorker, &CMediaWorker::Moved, this,
        [this](int nFile, qint64 nPosition) { Tell(nFile, OnPosition, nPosition); }, type);
    connect(
        m_pWorker, &CMediaWorker::Ended, this, [this](int nFile) { Tell(nFile, OnEnded); }, type);
    connect(
        m_pWorker, &CMediaWorker::PictureWaits, this,
        [this] {
            QImage picture;
            int nFile = -1;
            {
                const QMutexLocker lock(&m_pMail->mutex);
                picture = std::exchange(m_pMail->picture, {});
                nFile = m_pMail->nPictureOf;
                m_pMail->bPictureWaits = false;
            }
            if (!picture.isNull())
                Tell(nFile, OnPicture, picture);
        },
        type);
}

void CMediaEngine::Send(void (CMediaWorker::*pStep)()) {
    QMetaObject::invokeMethod(m_pWorker, pStep, Qt::QueuedConnection);
}

void CMediaEngine::Load(const QString& strNativePath) {
    const int nFile = ++m_pMail->nFile;
    m_pMail->nSeek = -1;
    QMetaObject::invokeMethod(
        m_pWorker, [pWorker = m_pWorker, strNativePath, nFile] { pWorker->Load(strNativePath, nFile); },
        Qt::QueuedConnection);
}

void CMediaEngine::Unload() {
    ++m_pMail->nFile;
    Send(&CMediaWorker::Unload);
}

void CMediaEngine::Seek(qint64 nPosition) {
    // Only one call is under way: it takes the last place that was wished.
    if (m_pMail->nSeek.exchange(nPosition) < 0)
        Send(&CMediaWorker::SeekToLast);
}

void CMediaEngine::SetVolume(int nPercent) {
    QMetaObject::invokeMethod(
        m_pWorker, [pWorker = m_pWorker, nPercent] { pWorker->SetVolume(nPercent); }, Qt::QueuedConnection);
}

void CMediaEngine::SetRoom(const QSize& room) {
    {
        const QMutexLocker lock(&m_pMail->mutex);
        m_pMail->room = room;
    }
    Send(&CMediaWorker::DrawAgain);
}

extern "C" Q_DECL_EXPORT IMediaEngine* VorelMakeMediaEngine() {
    // The back end that brings its decoders along; the other one looks for plug-ins that a bare machine
    // lacks. Read when the first player is made, and the environment's own choice stands.
    if (!qEnvironmentVariableIsSet("QT_MEDIA_BACKEND"))
        qputenv("QT_MEDIA_BACKEND", "ffmpeg");
    return new CMediaEngine;
}
