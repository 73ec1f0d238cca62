#include "platform/ui/MediaView.h"

#include "platform/base/NativePath.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/MediaKinds.h"
#include "platform/ui/MediaPlayer.h"
#include "platform/ui/Texts.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QProxyStyle>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSlider>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <limits>

namespace {

constexpr int c_nMargin = 8;
constexpr int c_nStepMs = 5000;
constexpr int c_nPageMs = 30000;
constexpr int c_nVolumeWidth = 90;
constexpr int c_nSecondMs = 1000;
constexpr int c_nMinute = 60;

/// "1:02:03", and "2:03" where there are no hours.
QString TimeText(qint64 nMilliseconds) {
    const qint64 nSeconds = nMilliseconds / c_nSecondMs;
    const QString strTail = QStringLiteral("%1:%2")
                                .arg(nSeconds / c_nMinute % c_nMinute, 1, 10, QLatin1Char('0'))
                                .arg(nSeconds % c_nMinute, 2, 10, QLatin1Char('0'));
    const qint64 nHours = nSeconds / c_nMinute / c_nMinute;
    return nHours == 0 ? strTail : QStringLiteral("%1:%2").arg(nHours).arg(strTail, 5, QLatin1Char('0'));
}

QString FileName(const QString& strPath) {
    const QString strShown = Platform::ToShown(strPath);
    return strShown.mid(strShown.lastIndexOf(u'/') + 1);
}

bool IsReadable(const QString& strPath) {
    if (strPath.isEmpty())
        return false;
    const QFileInfo file(Platform::ToNative(strPath));
    return file.isFile() && file.isReadable();
}

/// A click beside a slider's handle takes it there.
class CClickedPlace : public QProxyStyle {
public:
    explicit CClickedPlace(QObject* pParent) { setParent(pParent); }

    int styleHint(StyleHint hint, const QStyleOption* pOption, const QWidget* pWidget,
                  QStyleHintReturn* pReturn) const override {
        return hint == SH_Slider_AbsoluteSetButtons ? static_cast<int>(Qt::LeftButton)
                                                    : QProxyStyle::styleHint(hint, pOption, pWidget, pReturn);
    }
};

} // namespace

CMediaView::CMediaView(QWidget* pParent)
    : QWidget(pParent), m_pPlayer(new CMediaPlayer), m_pStack(new QStackedWidget(this)), m_pText(new QLabel) {
    setObjectName(QStringLiteral("mediaView"));
    m_pText->setObjectName(QStringLiteral("mediaText"));
    m_pText->setTextFormat(Qt::PlainText);
    m_pText->setAlignment(Qt::AlignCenter);
    m_pText->setWordWrap(true);
    m_pText->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_pText->setMargin(c_nMargin);
    m_pText->setBackgroundRole(QPalette::Base);
    m_pText->setForegroundRole(QPalette::Text);
    m_pText->setAutoFillBackground(true);
    // In a layout that lets go of it while it is a window of its own.
    m_pPicture = new QWidget;
    auto* pPicture = new QVBoxLayout(m_pPicture);
    pPicture->setContentsMargins(0, 0, 0, 0);
    pPicture->addWidget(m_pPlayer);
    m_pStack->addWidget(m_pPicture);
    m_pStack->addWidget(m_pText);
    m_pTransport = MakeTransport();
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pStack, 1);
    pLayout->addWidget(m_pTransport);
    pLayout->addWidget(MakeFoot());
    ConnectPlayer();
    setFocusProxy(m_pPlay);
    m_pPlayer->installEventFilter(this);
    auto* pFill = new QShortcut(QKeySequence(Qt::Key_F11), this, nullptr, nullptr, Qt::WindowShortcut);
    connect(pFill, &QShortcut::activated, this, [this] {
        if (m_pFill->isEnabled())
            m_pPlayer->SetFullScreen(!m_pPlayer->isWindow());
    });
}

QWidget* CMediaView::MakeTransport() {
    auto* pRow = new QWidget(this);
    auto* pLayout = new QHBoxLayout(pRow);
    pLayout->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, 0);
    m_pPlay = DialogParts::Named(new QPushButton(UiTexts::c_strPlay, pRow), "mediaPlay", UiTexts::c_strPlay);
    m_pPlace =
        DialogParts::Named(new QSlider(Qt::Horizontal, pRow), "mediaPlace", UiTexts::c_strPlaceInMedia);
    m_pPlace->setToolTip(UiTexts::c_strPlaceInMedia);
    m_pPlace->setSingleStep(c_nStepMs);
    m_pPlace->setPageStep(c_nPageMs);
    m_pTime = new QLabel(pRow);
    m_pTime->setObjectName(QStringLiteral("mediaTime"));
    m_pVolume = DialogParts::Named(new QSlider(Qt::Horizontal, pRow), "mediaVolume", UiTexts::c_strVolume);
    m_pVolume->setRange(0, 100);
    m_pVolume->setValue(100);
    m_pVolume->setPageStep(10);
    m_pVolume->setFixedWidth(c_nVolumeWidth);
    auto* pStyle = new CClickedPlace(pRow);
    m_pPlace->setStyle(pStyle);
    m_pVolume->setStyle(pStyle);
    m_pFill = DialogParts::Named(new QPushButton(UiTexts::c_strFillScreen, pRow), "mediaFullScreen",
                                 UiTexts::c_strFillScreen);
    m_pFill->setToolTip(UiTexts::c_strFillScreenKeys);
    connect(m_pFill, &QPushButton::clicked, this, [this] { m_pPlayer->SetFullScreen(true); });
    pLayout->addWidget(m_pPlay);
    pLayout->addWidget(m_pPlace, 1);
    pLayout->addWidget(m_pTime);
    pLayout->addSpacing(c_nMargin);
    pLayout->addWidget(DialogParts::LabelFor(UiTexts::c_strVolume, m_pVolume));
    pLayout->addWidget(m_pVolume);
    pLayout->addSpacing(c_nMargin);
    pLayout->addWidget(m_pFill);
    return pRow;
}

QWidget* CMediaView::MakeFoot() {
    auto* pRow = new QWidget(this);
    auto* pLayout = new QHBoxLayout(pRow);
    pLayout->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    m_pName = new QLabel(pRow);
    m_pName->setObjectName(QStringLiteral("mediaName"));
    m_pName->setTextFormat(Qt::PlainText);
    m_pName->setMinimumWidth(1);
    m_pSave = DialogParts::Named(new QPushButton(UiTexts::c_strSaveCopy, pRow), "mediaSave",
                                 UiTexts::c_strSaveCopy);
    connect(m_pSave, &QPushButton::clicked, this, [this] {
        if (!m_strPath.isEmpty())
            Q_EMIT CopyWanted(m_strPath, m_strName);
    });
    m_pOutside = DialogParts::Named(new QPushButton(UiTexts::c_strOpenInProgram, pRow), "mediaOutside",
                                    UiTexts::c_strOpenInProgram);
    connect(m_pOutside, &QPushButton::clicked, this, [this] {
        m_pPlayer->Pause();
        if (!m_strPath.isEmpty())
            Q_EMIT OpenOutside(m_strPath);
    });
    pLayout->addWidget(m_pName, 1);
    pLayout->addWidget(m_pSave);
    pLayout->addWidget(m_pOutside);
    return pRow;
}

void CMediaView::ConnectPlayer() {
    connect(m_pPlay, &QPushButton::clicked, this, &CMediaView::Toggle);
    connect(m_pVolume, &QSlider::valueChanged, m_pPlayer, &CMediaPlayer::SetVolume);
    connect(m_pPlace, &QSlider::valueChanged, m_pPlayer, [this](int nValue) { m_pPlayer->Seek(nValue); });
    connect(m_pPlayer, &CMediaPlayer::Loaded, this, [this] {
        m_pPlay->setEnabled(true);
        m_pPlace->setEnabled(m_pPlayer->CanSeek());
        m_pFill->setEnabled(m_pPlayer->HasPicture());
        // Sound alone has no picture: its place says what is playing.
        if (m_pPlayer->HasPicture())
            m_pStack->setCurrentWidget(m_pPicture);
        else
            m_pText->setText(MediaKinds::OfFile(m_strPath).strName + u'\n' + m_strName);
        ShowPosition();
    });
    connect(m_pPlayer, &CMediaPlayer::StateChanged, this, &CMediaView::ShowState);
    connect(m_pPlayer, &CMediaPlayer::PositionChanged, this, &CMediaView::ShowPosition);
    connect(m_pPlayer, &CMediaPlayer::Failed, this, &CMediaView::Tell);
}

void CMediaView::ShowFile(const QString& strPath, const QString& strName) {
    m_pPlayer->SetFullScreen(false);
    m_strPath = strPath;
    m_strName = strName.isEmpty() ? FileName(strPath) : strName;
    ShowName();
    const bool bThere = IsReadable(strPath);
    if (!bThere || MediaKinds::OfFile(strPath).Way != MediaKinds::EWay::Player) {
        m_pPlayer->Unload();
        Tell(bThere ? UiTexts::c_strNotShownHere : UiTexts::c_strMediaNotReadable);
        return;
    }
    m_pText->setText(UiTexts::c_strMediaOpening);
    m_pStack->setCurrentWidget(m_pText);
    m_pTransport->show();
    m_pPlay->setEnabled(false);
    m_pPlace->setEnabled(false);
    m_pFill->setEnabled(false);
    m_pPlayer->Load(strPath);
    ShowState();
    ShowPosition();
    m_pPlayer->Play();
}

void CMediaView::Clear() {
    m_strPath.clear();
    m_strName.clear();
    m_pPlayer->Unload();
    Tell(QString());
    ShowName();
}

/// What the file is, and why it doesn't show.
void CMediaView::Tell(const QString& strText) {
    m_pPlayer->SetFullScreen(false);
    const QString strKind = MediaKinds::OfFile(m_strPath).strName;
    const QString strWhat =
        strKind.isEmpty() ? UiTexts::c_strKindUnknown : UiTexts::c_strKindOfFile.arg(strKind);
    m_pText->setText(m_strPath.isEmpty() ? QString() : m_strName + u"\n\n" + strWhat + u'\n' + strText);
    m_pStack->setCurrentWidget(m_pText);
    const bool bHadFocus = m_pTransport->isAncestorOf(focusWidget());
    m_pTransport->hide();
    if (bHadFocus)
        m_pOutside->setFocus();
}

void CMediaView::ShowName() {
    m_pName->setText(m_pName->fontMetrics().elidedText(m_strName, Qt::ElideMiddle, m_pName->width()));
    m_pName->setAccessibleName(m_strName);
    m_pName->setToolTip(DialogParts::TipOf(Platform::ToShown(m_strPath)));
    // Another program could no more read it.
    const bool bThere = IsReadable(m_strPath);
    m_pOutside->setEnabled(bThere);
    m_pSave->setEnabled(bThere);
}

void CMediaView::ShowState() {
    const bool bPlaying = m_pPlayer->GetState() == EMediaState::Playing;
    const QString& strText = bPlaying ? UiTexts::c_strPause : UiTexts::c_strPlay;
    m_pPlay->setText(strText);
    m_pPlay->setAccessibleName(DialogParts::NameOf(strText));
}

void CMediaView::ShowPosition() {
    const qint64 nDuration = m_pPlayer->GetDuration();
    const QString strNow = TimeText(m_pPlayer->GetPosition());
    m_pTime->setText(nDuration > 0 ? strNow + u" / " + TimeText(nDuration) : strNow);
    // Not while the person holds it.
    if (m_pPlace->isSliderDown())
        return;
    const QSignalBlocker quiet(m_pPlace);
    m_pPlace->setRange(0, static_cast<int>(qMin<qint64>(nDuration, std::numeric_limits<int>::max())));
    m_pPlace->setValue(static_cast<int>(m_pPlayer->GetPosition()));
}

void CMediaView::Toggle() {
    if (m_pPlayer->GetState() == EMediaState::Playing)
        m_pPlayer->Pause();
    else
        m_pPlayer->Play();
}

/// The picture takes a double click, and while it fills the screen the keys of the rows that are out of
/// sight.
bool CMediaView::eventFilter(QObject* pWatched, QEvent* pEvent) {
    if (pEvent->type() == QEvent::MouseButtonDblClick && !m_pPlayer->isWindow()) {
        m_pFill->click();
        return true;
    }
    return (pEvent->type() == QEvent::KeyPress && m_pPlayer->isWindow() &&
            TakeKey(static_cast<const QKeyEvent&>(*pEvent))) ||
           QWidget::eventFilter(pWatched, pEvent);
}

bool CMediaView::TakeKey(const QKeyEvent& key) {
    switch (key.key()) {
    case Qt::Key_Space:
        Toggle();
        return true;
    case Qt::Key_Left:
        m_pPlace->triggerAction(QSlider::SliderSingleStepSub);
        return true;
    case Qt::Key_Right:
        m_pPlace->triggerAction(QSlider::SliderSingleStepAdd);
        return true;
    case Qt::Key_Up:
        m_pVolume->triggerAction(QSlider::SliderPageStepAdd);
        return true;
    case Qt::Key_Down:
        m_pVolume->triggerAction(QSlider::SliderPageStepSub);
        return true;
    case Qt::Key_F11:
        m_pPlayer->SetFullScreen(false);
        return true;
    default:
        return false;
    }
}

void CMediaView::hideEvent(QHideEvent* pEvent) {
    QWidget::hideEvent(pEvent);
    // Not when the whole window is minimised.
    if (!pEvent->spontaneous())
        Clear();
}

void CMediaView::resizeEvent(QResizeEvent* pEvent) {
    QWidget::resizeEvent(pEvent);
    // The rows have their new widths when the layout has run.
    QMetaObject::invokeMethod(this, &CMediaView::ShowName, Qt::QueuedConnection);
}

void CMediaView::changeEvent(QEvent* pEvent) {
    QWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::FontChange)
        ShowName();
}
