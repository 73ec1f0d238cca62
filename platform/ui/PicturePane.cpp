#include "platform/ui/PicturePane.h"

#include "platform/ui/Pictures.h"

#include <QPainter>
#include <QPromise>
#include <QThreadPool>

#include <memory>

namespace {

/// After this long an old picture would be taken for the new one.
constexpr int c_nSlowMilliseconds = 200;

} // namespace

CPicturePane::CPicturePane(QWidget* pParent) : QWidget(pParent) {
    m_slow.setSingleShot(true);
    m_slow.setInterval(c_nSlowMilliseconds);
    connect(&m_slow, &QTimer::timeout, this, [this] {
        m_picture = QPixmap();
        update();
    });
    connect(&m_reading, &QFutureWatcherBase::finished, this, &CPicturePane::Take);
}

CPicturePane::~CPicturePane() {
    m_reading.cancel();
}

void CPicturePane::Load(const QString& strPath) {
    m_reading.cancel();
    m_strPath = strPath;
    m_room = QSize();
    if (strPath.isEmpty())
        m_picture = QPixmap();
    else
        m_slow.start();
    update();
}

void CPicturePane::Ask() {
    m_room = size();
    m_dRatio = devicePixelRatioF();
    // A window that is being drawn larger asks again and again.
    m_reading.cancel();
    const auto pPromise = std::make_shared<QPromise<QImage>>();
    m_reading.setFuture(pPromise->future());
    QThreadPool::globalInstance()->start([pPromise, strPath = m_strPath, room = m_room, dRatio = m_dRatio] {
        pPromise->start();
        if (!pPromise->isCanceled())
            pPromise->addResult(Pictures::FittedImage(strPath, room, dRatio));
        pPromise->finish();
    });
}

void CPicturePane::Take() {
    if (m_reading.isCanceled() || m_reading.future().resultCount() == 0)
        return;
    m_slow.stop();
    m_picture = QPixmap::fromImage(m_reading.result());
    update();
}

void CPicturePane::paintEvent(QPaintEvent*) {
    if (!m_strPath.isEmpty() && (m_room != size() || !qFuzzyCompare(m_dRatio, devicePixelRatioF())))
        Ask();
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    if (!m_picture.isNull()) {
        QSizeF shown = m_picture.deviceIndependentSize();
        // For the moment until a picture for a smaller room is there.
        if (shown.width() > width() || shown.height() > height())
            shown.scale(size(), Qt::KeepAspectRatio);
        QRectF place(QPointF(), shown);
        place.moveCenter(rect().toRectF().center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(place.toRect(), m_picture);
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
