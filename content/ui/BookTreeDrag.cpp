// A branch of the tree taken elsewhere with the mouse.
#include "content/ui/BookTreeView.h"

#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>

#include <utility>

namespace {

/// Nothing outside this window takes it.
const QString c_strMimeType = QStringLiteral("application/x-vorel-node");
/// The picture of the line hangs beside the pointer, so that the target stays in sight.
constexpr QPoint c_hotSpot(-12, -8);
/// How much of the frame's colour lies over the line in it, of 255.
constexpr int c_nTint = 48;
/// A dragged line that rests on a closed one opens it.
constexpr int c_nOpenMilliseconds = 700;

} // namespace

void CBookTreeView::Drag(const QModelIndex& index) {
    m_dragged = index;
    auto* pMimeData = new QMimeData;
    pMimeData->setData(c_strMimeType, QByteArrayLiteral("node"));
    auto* pDrag = new QDrag(this);
    pDrag->setMimeData(pMimeData);
    pDrag->setPixmap(PictureOf(index));
    pDrag->setHotSpot(c_hotSpot);
    const bool bDropped = pDrag->exec(Qt::MoveAction) == Qt::MoveAction;

    m_rest.stop();
    stopAutoScroll();
    m_under = QPersistentModelIndex();
    const QPersistentModelIndex source = std::exchange(m_dragged, QPersistentModelIndex());
    const QPersistentModelIndex target = m_dropTarget;
    SetDropTarget(QModelIndex());
    // The questions come now that the mouse is free again.
    if (bDropped && source.isValid() && target.isValid()) {
        m_actions.Drop(source, target);
        // The course may have been closed behind a question.
        if (source.isValid() && source.parent() == target)
            scrollTo(source);
    }
}

QPixmap CBookTreeView::PictureOf(const QModelIndex& index) const {
    const QRect line = visualRect(index);
    const int nWidth = std::min(line.width(), sizeHintForIndex(index).width());
    QPixmap picture = viewport()->grab(QRect(line.topLeft(), QSize(nWidth, line.height())));
    QPainter painter(&picture);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(0, 0, nWidth - 1, line.height() - 1);
    return picture;
}

void CBookTreeView::SetDropTarget(const QModelIndex& index) {
    if (m_dropTarget == index)
        return;
    m_dropTarget = index;
    viewport()->update();
}

void CBookTreeView::Aim(const QPoint& at) {
    const QModelIndex under = indexAt(at);
    if (m_under != under) {
        m_under = under;
        m_rest.start(c_nOpenMilliseconds);
    }
    SetDropTarget(m_actions.MayDrop(m_dragged, under) ? under : QModelIndex());
}

void CBookTreeView::OpenUnderDrag() {
    if (m_dragged.isValid() && m_under != m_dragged)
        expand(m_under);
}

void CBookTreeView::dragEnterEvent(QDragEnterEvent* pEvent) {
    // Files and texts from elsewhere have no place here.
    if (!m_dragged.isValid())
        return pEvent->ignore();
    setState(DraggingState);
    pEvent->acceptProposedAction();
}

void CBookTreeView::dragMoveEvent(QDragMoveEvent* pEvent) {
    // Scrolls at the edges.
    QAbstractItemView::dragMoveEvent(pEvent);
    if (m_dragged.isValid())
        Aim(pEvent->position().toPoint());
    pEvent->setDropAction(Qt::MoveAction);
    pEvent->setAccepted(m_dropTarget.isValid());
}

void CBookTreeView::dragLeaveEvent(QDragLeaveEvent* pEvent) {
    m_rest.stop();
    m_under = QPersistentModelIndex();
    SetDropTarget(QModelIndex());
    QTreeView::dragLeaveEvent(pEvent);
}

void CBookTreeView::dropEvent(QDropEvent* pEvent) {
    // Drag goes on from here.
    if (m_dragged.isValid())
        Aim(pEvent->position().toPoint());
    pEvent->setDropAction(Qt::MoveAction);
    pEvent->setAccepted(m_dropTarget.isValid());
    stopAutoScroll();
    setState(NoState);
}

void CBookTreeView::paintEvent(QPaintEvent* pEvent) {
    QTreeView::paintEvent(pEvent);
    if (!m_dropTarget.isValid())
        return;
    const QColor highlight = palette().color(QPalette::Highlight);
    QColor tint = highlight;
    tint.setAlpha(c_nTint);
    QPainter painter(viewport());
    painter.setBrush(tint);
    const bool bSelected = m_dropTarget == currentIndex();
    painter.setPen(QPen(bSelected ? palette().color(QPalette::HighlightedText) : highlight, 2));
    painter.drawRect(visualRect(m_dropTarget).intersected(viewport()->rect()).adjusted(1, 1, -1, -1));
}
