#include "companions/VRM/ui/SlidePicture.h"

#include <QMouseEvent>
#include <QPainter>

namespace {

constexpr int c_nThousand = 1000;
constexpr double c_dUsualRatio = 4.0 / 3;

} // namespace

CSlidePicture::CSlidePicture(QWidget* pParent) : QWidget(pParent) {
    setMouseTracking(true);
    setMinimumSize(320, 240);
}

void CSlidePicture::Show(const QString& strPicture) {
    m_picture = QPixmap(strPicture);
    update();
}

double CSlidePicture::GetRatio() const {
    return m_picture.isNull() ? c_dUsualRatio : double(m_picture.width()) / m_picture.height();
}

QRect CSlidePicture::Place() const {
    QRect place(QPoint(), m_picture.size().scaled(size(), Qt::KeepAspectRatio));
    place.moveCenter(rect().center());
    return place;
}

void CSlidePicture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    if (m_picture.isNull())
        return;
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(Place(), m_picture);
}

void CSlidePicture::mouseMoveEvent(QMouseEvent* pEvent) {
    const QRect place = Place();
    const QPoint at = pEvent->position().toPoint() - place.topLeft();
    if (!place.isEmpty() && QRect(QPoint(), place.size()).contains(at))
        Q_EMIT PointerMoved(at.x() * c_nThousand / place.width(), at.y() * c_nThousand / place.height());
}
