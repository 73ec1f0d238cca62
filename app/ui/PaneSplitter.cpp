#include "app/ui/PaneSplitter.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>

namespace {

constexpr int c_nLeastLeft = 150;
/// A press so near to the edge of the window is meant for the edge.
constexpr int c_nEdge = 2;
constexpr int c_nMarkWidth = 2;

class CPaneHandle : public QSplitterHandle {
public:
    using QSplitterHandle::QSplitterHandle;

protected:
    void mousePressEvent(QMouseEvent* pEvent) override {
        const QRect inside = splitter()->rect().adjusted(c_nEdge, c_nEdge, -c_nEdge, -c_nEdge);
        m_bDragging = pEvent->button() == Qt::LeftButton && inside.contains(InSplitter(*pEvent));
        m_nOffset = pEvent->position().toPoint().x();
        if (m_bDragging)
            QSplitterHandle::mousePressEvent(pEvent);
    }
    void mouseMoveEvent(QMouseEvent* pEvent) override {
        if (!m_bDragging || !(pEvent->buttons() & Qt::LeftButton))
            return;
        const int nHalf = qMax(c_nLeastLeft, splitter()->width() / 2);
        moveSplitter(qBound(c_nLeastLeft, InSplitter(*pEvent).x() - m_nOffset, nHalf));
    }
    void mouseReleaseEvent(QMouseEvent* pEvent) override {
        m_bDragging = false;
        QSplitterHandle::mouseReleaseEvent(pEvent);
    }

private:
    QPoint InSplitter(const QMouseEvent& event) const {
        return splitter()->mapFromGlobal(event.globalPosition().toPoint());
    }

    bool m_bDragging = false;
    int m_nOffset = 0;
};

} // namespace

CPaneSplitter::CPaneSplitter(QWidget* pParent) : QSplitter(Qt::Horizontal, pParent) {
    setChildrenCollapsible(false);
}

QSplitterHandle* CPaneSplitter::createHandle() {
    return new CPaneHandle(orientation(), this);
}

CPaneMark::CPaneMark(QWidget* pWindow) : QWidget(pWindow) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, const QWidget* pNow) {
        // The focus is nowhere while a menu or another window has it.
        if (m_pPane && pNow != nullptr && pNow != m_pPane && !m_pPane->isAncestorOf(pNow))
            Drop();
    });
}

void CPaneMark::ShowAround(QWidget* pPane) {
    Drop();
    m_pPane = pPane;
    m_pPane->installEventFilter(this);
    Place();
    show();
    raise();
}

bool CPaneMark::eventFilter(QObject* pWatched, QEvent* pEvent) {
    if (pEvent->type() == QEvent::Hide)
        Drop();
    else if (pEvent->type() == QEvent::Resize || pEvent->type() == QEvent::Move)
        Place();
    return QWidget::eventFilter(pWatched, pEvent);
}

void CPaneMark::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), palette().highlight());
}

void CPaneMark::Place() {
    setGeometry(QRect(m_pPane->mapTo(parentWidget(), QPoint(0, 0)), m_pPane->size()));
    setMask(QRegion(rect()) -
            QRegion(rect().adjusted(c_nMarkWidth, c_nMarkWidth, -c_nMarkWidth, -c_nMarkWidth)));
}

void CPaneMark::Drop() {
    if (m_pPane)
        m_pPane->removeEventFilter(this);
    m_pPane.clear();
    hide();
}
