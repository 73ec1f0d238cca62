#include "platform/ui/MediaPlayer.h"

#include "platform/base/Module.h"
#include "platform/base/NativePath.h"
#include "platform/ui/Texts.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QThread>

namespace {

/// The module on its way from the disk; asked for once, and told to everybody.
class CMediaModule : public QObject {
    Q_OBJECT
public:
    static CMediaModule& Instance() {
        static auto* const s_pModule = new CMediaModule;
        return *s_pModule;
    }

    void Load() {
        if (m_bReady) {
            QMetaObject::invokeMethod(this, &CMediaModule::Ready, Qt::QueuedConnection);
            return;
        }
        if (std::exchange(m_bBegun, true))
            return;
        QThread* pThread =
            QThread::create([this, module = Platform::CModule(QStringLiteral("vorelmedia"))]() mutable {
                const auto pFactory =
                    reinterpret_cast<MediaEngineFactory>(module.Load(c_szMediaEngineFactory));
                QMetaObject::invokeMethod(
                    this,
                    [this, pFactory] {
                        m_pFactory = pFactory;
                        m_bReady = true;
                        Q_EMIT Ready();
                    },
                    Qt::QueuedConnection);
            });
        connect(pThread, &QThread::finished, pThread, &QObject::deleteLater);
        pThread->start();
    }

    std::unique_ptr<IMediaEngine> Make() const {
        return std::unique_ptr<IMediaEngine>(m_pFactory ? m_pFactory() : nullptr);
    }

Q_SIGNALS:
    void Ready();

private:
    bool m_bBegun = false;
    bool m_bReady = false;
    MediaEngineFactory m_pFactory = nullptr;
};

QString TextOf(EMediaState state) {
    switch (state) {
    case EMediaState::Playing:
        return UiTexts::c_strMediaPlaying;
    case EMediaState::Paused:
        return UiTexts::c_strMediaPaused;
    case EMediaState::Stopped:
        break;
    }
    return UiTexts::c_strMediaStopped;
}

QString TextOf(EMediaFailure failure) {
    switch (failure) {
    case EMediaFailure::NotReadable:
        return UiTexts::c_strMediaNotReadable;
    case EMediaFailure::NoSound:
        return UiTexts::c_strMediaNoSound;
    case EMediaFailure::NotMedia:
        break;
    }
    return UiTexts::c_strMediaDamaged;
}

} // namespace

CMediaPlayer::CMediaPlayer(QWidget* pParent) : QWidget(pParent), m_awake(UiTexts::c_strMediaPlaying) {
    setObjectName(QStringLiteral("mediaPlayer"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

CMediaPlayer::~CMediaPlayer() = default;

void CMediaPlayer::Load(const QString& strPath) {
    Unload();
    m_strPath = strPath;
    SetStatus(UiTexts::c_strMediaOpening);
    // A plain file only: a pipe would hold the decoder for ever.
    const QFileInfo file(Platform::ToNative(strPath));
    if (!file.isFile() || !file.isReadable() || file.size() == 0) {
        QMetaObject::invokeMethod(
            this,
            [this, strPath] {
                if (strPath == m_strPath)
                    Fail(UiTexts::c_strMediaNotReadable);
            },
            Qt::QueuedConnection);
        return;
    }
    if (m_pEngine)
        Open();
    else
        WithEngine();
}

void CMediaPlayer::WithEngine() {
    if (std::exchange(m_bAsked, true))
        return;
    CMediaModule& module = CMediaModule::Instance();
    connect(&module, &CMediaModule::Ready, this, [this, &module] {
        if (!m_bAsked)
            return;
        m_bAsked = false;
        m_pEngine = module.Make();
        if (m_pEngine) {
            ConnectEngine();
            TellRoom();
            if (!m_strPath.isEmpty())
                Open();
        } else if (!m_strPath.isEmpty()) {
            Fail(UiTexts::c_strNoPlayer);
        }
    });
    module.Load();
}

void CMediaPlayer::ConnectEngine() {
    m_pEngine->OnLoaded = [this](const SMediaInfo& info) {
        m_info = info;
        m_bLoaded = true;
        const QPointer<CMediaPlayer> pSelf(this);
        SetStatus(UiTexts::c_strMediaReady);
        Q_EMIT Loaded();
        if (pSelf && std::exchange(m_bPlayWhenLoaded, false))
            Play();
    };
    m_pEngine->OnFailure = [this](EMediaFailure failure) {
        m_bLoaded = m_bPlayWhenLoaded = false;
        Fail(TextOf(failure));
    };
    m_pEngine->OnState = [this](EMediaState state) {
        if (!SetState(state))
            return;
        SetStatus(TextOf(state));
        Q_EMIT StateChanged();
    };
    m_pEngine->OnPosition = [this](qint64 nPosition) {
        m_nPosition = nPosition;
        Q_EMIT PositionChanged();
    };
    m_pEngine->OnEnded = [this] { Q_EMIT Ended(); };
    m_pEngine->OnPicture = [this](const QImage& picture) {
        m_picture = picture;
        update();
    };
}

bool CMediaPlayer::SetState(EMediaState state) {
    m_awake.Hold(state == EMediaState::Playing);
    return std::exchange(m_state, state) != state;
}

void CMediaPlayer::SetStatus(const QString& strText) {
    if (std::exchange(m_strStatus, strText) != strText)
        Q_EMIT StatusChanged();
}

void CMediaPlayer::Fail(const QString& strText) {
    m_awake.Hold(false);
    SetStatus(strText);
    Q_EMIT Failed(strText);
}

void CMediaPlayer::Open() {
    m_pEngine->SetVolume(m_nVolume);
    m_pEngine->Load(Platform::ToNative(m_strPath));
}

void CMediaPlayer::Unload() {
    m_strPath.clear();
    m_info = {};
    m_bLoaded = m_bPlayWhenLoaded = false;
    m_nPosition = 0;
    m_picture = {};
    SetStatus({});
    if (m_pEngine)
        m_pEngine->Unload();
    if (SetState(EMediaState::Stopped))
        Q_EMIT StateChanged();
    update();
}

void CMediaPlayer::Play() {
    if (m_bLoaded)
        m_pEngine->Play();
    else
        m_bPlayWhenLoaded = !m_strPath.isEmpty();
}

void CMediaPlayer::Pause() {
    m_bPlayWhenLoaded = false;
    if (m_bLoaded)
        m_pEngine->Pause();
}

void CMediaPlayer::Stop() {
    m_bPlayWhenLoaded = false;
    if (m_bLoaded)
        m_pEngine->Stop();
}

void CMediaPlayer::Seek(qint64 nPosition) {
    if (m_bLoaded && m_info.bSeekable)
        m_pEngine->Seek(qMax<qint64>(nPosition, 0));
}

int CMediaPlayer::GetMarker() const {
    int nMarker = 0;
    for (qsizetype i = 0; i < m_info.Markers.size(); ++i) {
        // They may stand in the file in any order.
        if (m_info.Markers[i] <= m_nPosition &&
            (nMarker == 0 || m_info.Markers[i] >= m_info.Markers[nMarker - 1]))
            nMarker = static_cast<int>(i) + 1;
    }
    return nMarker;
}

void CMediaPlayer::GoToMarker(int nMarker) {
    if (nMarker >= 1 && nMarker <= m_info.Markers.size())
        Seek(m_info.Markers[nMarker - 1]);
}

void CMediaPlayer::SetFullScreen(bool bOn) {
    if (bOn == isWindow())
        return;
    if (bOn) {
        m_place = geometry();
        setWindowFlag(Qt::Window, true);
        showFullScreen();
        activateWindow();
        setFocus();
        return;
    }
    setWindowFlag(Qt::Window, false);
    setWindowState(Qt::WindowNoState);
    setGeometry(m_place);
    show();
}

void CMediaPlayer::closeEvent(QCloseEvent* pEvent) {
    if (!isWindow() || !isFullScreen())
        return QWidget::closeEvent(pEvent);
    pEvent->ignore();
    SetFullScreen(false);
}

void CMediaPlayer::keyPressEvent(QKeyEvent* pEvent) {
    if (isWindow() && pEvent->key() == Qt::Key_Escape)
        SetFullScreen(false);
    else
        QWidget::keyPressEvent(pEvent);
}

void CMediaPlayer::mouseDoubleClickEvent(QMouseEvent* pEvent) {
    if (isWindow())
        SetFullScreen(false);
    else
        QWidget::mouseDoubleClickEvent(pEvent);
}

void CMediaPlayer::SetVolume(int nPercent) {
    m_nVolume = qBound(0, nPercent, 100);
    if (m_pEngine)
        m_pEngine->SetVolume(m_nVolume);
}

void CMediaPlayer::TellRoom() {
    if (m_pEngine)
        m_pEngine->SetRoom((QSizeF(size()) * devicePixelRatioF()).toSize());
}

void CMediaPlayer::resizeEvent(QResizeEvent* pEvent) {
    QWidget::resizeEvent(pEvent);
    TellRoom();
}

void CMediaPlayer::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (m_picture.isNull())
        return;
    // Between a resize and the next picture the old one is stretched.
    QRect place(QPoint(), m_picture.size().scaled(size(), Qt::KeepAspectRatio));
    const QSize own = (QSizeF(m_picture.size()) / devicePixelRatioF()).toSize();
    if (own.width() < place.width() && own.height() < place.height())
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
    place.moveCenter(rect().center());
    painter.drawImage(place, m_picture);
}

#include "MediaPlayer.moc"
