#include "content/ui/PicturePane.h"

#include "foundation/Paths.h"
#include "platform/base/NativePath.h"

#include <QPainter>

void CPicturePane::Load(const QString& strPath) {
    m_picture = Torvane::File::IsFile(strPath) ? QPixmap(Platform::ToNative(strPath)) : QPixmap();
    m_scaled = QPixmap();
    update();
}

void CPicturePane::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    if (!m_picture.isNull()) {
        const QSize room = size() * devicePixelRatioF();
        const QSize fitting = m_picture.size().scaled(room, Qt::KeepAspectRatio);
        if (m_scaled.size() != fitting) {
            m_scaled = m_picture.scaled(fitting, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            m_scaled.setDevicePixelRatio(devicePixelRatioF());
        }
        QRect place(QPoint(), m_scaled.deviceIndependentSize().toSize());
        place.moveCenter(rect().center());
        painter.drawPixmap(place.topLeft(), m_scaled);
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
