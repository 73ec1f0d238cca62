#include "companions/VRM/ui/LiveView.h"

#include "companions/VRM/FilmRun.h"
#include "companions/VRM/Texts.h"
#include "platform/ui/DialogParts.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

using DialogParts::Named;

namespace {

/// How many steps the bar has, each a decibel.
constexpr int c_nLevels = 60;
constexpr int c_nLevelHeight = 10;
constexpr int c_nTextMargin = 8;
/// A microphone that works hears a little even in a quiet room. Decibels.
constexpr double c_dSilence = -66;
/// So long nobody is silent.
constexpr int c_nSilentMilliseconds = 4000;
constexpr int c_nTickMilliseconds = 500;

} // namespace

CLiveView::CLiveView(const QByteArray& prefix, QWidget* pParent)
    : QWidget(pParent), m_pPicture(Named(new QLabel(this), QByteArray(prefix + "Picture").constData(),
                                         RecorderText::c_strLivePicture)),
      m_pLevel(
          Named(new QProgressBar(this), QByteArray(prefix + "Level").constData(), RecorderText::c_strLevel)),
      m_pSilent(Named(new QLabel(RecorderText::c_strSilent, this), QByteArray(prefix + "Silent").constData(),
                      RecorderText::c_strSilent)) {
    m_pPicture->setFixedSize(c_nLiveWidth, c_nLiveHeight);
    m_pPicture->setAlignment(Qt::AlignCenter);
    m_pPicture->setWordWrap(true);
    m_pPicture->setTextFormat(Qt::PlainText);
    m_pPicture->setMargin(c_nTextMargin);
    QPalette dark = m_pPicture->palette();
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    m_pPicture->setPalette(dark);
    m_pPicture->setAutoFillBackground(true);
    m_pLevel->setRange(0, c_nLevels);
    m_pLevel->setTextVisible(false);
    m_pLevel->setFixedHeight(c_nLevelHeight);
    m_pLevel->hide();
    m_pLevel->setToolTip(RecorderText::c_strLevel);
    m_pSilent->setWordWrap(true);
    setFixedWidth(c_nLiveWidth);
    m_pSilent->setMinimumHeight(m_pSilent->heightForWidth(c_nLiveWidth));
    QPalette red = m_pSilent->palette();
    red.setColor(QPalette::WindowText, Qt::red);
    m_pSilent->setPalette(red);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins({});
    pLayout->addWidget(m_pPicture);
    pLayout->addWidget(m_pLevel);
    pLayout->addWidget(m_pSilent);
    connect(&m_tick, &QTimer::timeout, this, &CLiveView::WatchSilence);
    End();
}

void CLiveView::Begin(bool bSound, const QString& strText) {
    End(strText);
    m_pLevel->setVisible(bSound);
    m_heard.start();
    if (bSound)
        m_tick.start(c_nTickMilliseconds);
}

void CLiveView::End(const QString& strText) {
    m_tick.stop();
    m_pSilent->hide();
    m_pLevel->setValue(0);
    m_pPicture->setMargin(c_nTextMargin);
    // A text that is the same would leave the picture.
    m_pPicture->clear();
    m_pPicture->setText(strText);
    m_pPicture->setAccessibleDescription(strText);
}

void CLiveView::ShowPicture(const QByteArray& pixels) {
    const QImage picture(reinterpret_cast<const uchar*>(pixels.constData()), c_nLiveWidth, c_nLiveHeight,
                         qsizetype{c_nLiveWidth} * 3, QImage::Format_RGB888);
    m_pPicture->setMargin(0);
    m_pPicture->setPixmap(QPixmap::fromImage(picture));
}

void CLiveView::ShowLevel(double dLevel) {
    if (dLevel > c_dSilence)
        m_heard.restart();
    m_pLevel->setValue(qBound(0, c_nLevels + static_cast<int>(dLevel), c_nLevels));
}

void CLiveView::WatchSilence() {
    m_pSilent->setVisible(m_heard.hasExpired(c_nSilentMilliseconds));
}
