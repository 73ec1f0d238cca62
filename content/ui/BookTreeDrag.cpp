// A branch of the tree taken elsewhere with the mouse.
#include "content/ui/BookTreeView.h"

#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>
#include <QStyleOption>

namespace {

/// Nothing outside this window takes it.
const QString c_strMimeType = QStringLiteral("application/x-vorel-node");
/// The picture of the line hangs beside the pointer, so that the target stays in sight.
constexpr QPoint c_hotSpot(-12, -8);

} // namespace

void CBookTreeView::startDrag(Qt::DropActions) {
    m_dragged = m_pressed;
    auto* pMimeData = new QMimeData;
    pMimeData->setData(c_strMimeType, QByteArray::number(m_tree.NodeOf(m_dragged)->GetId()));
    auto* pDrag = new QDrag(this);
    pDrag->setMimeData(pMimeData);
    pDrag->setPixmap(PictureOf(m_dragged));
    pDrag->setHotSpot(c_hotSpot);
    pDrag->exec(Qt::MoveAction);

    // The questions come when the mouse is free again.
    const QPersistentModelIndex target = m_dropTarget;
    const QPersistentModelIndex source = std::exchange(m_dragged, QPersistentModelIndex());
    SetDropTarget(QModelIndex());
    m_pressed = QPersistentModelIndex();
    if (source.isValid() && target.isValid())
        m_actions.Drop(source, target);
}

QPixmap CBookTreeView::PictureOf(const QModelIndex& index) const {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QRect line = visualRect(index);
    const int nWidth = std::min(line.width(), itemDelegate()->sizeHint(option, index).width());
    return viewport()->grab(QRect(line.topLeft(), QSize(nWidth, line.height())));
}

void CBookTreeView::SetDropTarget(const QModelIndex& index) {
    if (m_dropTarget == index)
        return;
    m_dropTarget = index;
    viewport()->update();
}

void CBookTreeView::dragEnterEvent(QDragEnterEvent* pEvent) {
    // Files and texts from elsewhere have no place here.
    if (!m_dragged.isValid())
        return pEvent->ignore();
    setState(DraggingState);
    pEvent->acceptProposedAction();
}

void CBookTreeView::dragMoveEvent(QDragMoveEvent* pEvent) {
    // Opens a line that the drag rests on, and scrolls at the edges.
    QTreeView::dragMoveEvent(pEvent);
    const QModelIndex target = indexAt(pEvent->position().toPoint());
    const bool bMay = m_dragged.isValid() && m_actions.MayDrop(m_dragged, target);
    SetDropTarget(bMay ? target : QModelIndex());
    pEvent->setDropAction(Qt::MoveAction);
    pEvent->setAccepted(bMay);
}

void CBookTreeView::dragLeaveEvent(QDragLeaveEvent* pEvent) {
    SetDropTarget(QModelIndex());
    QTreeView::dragLeaveEvent(pEvent);
}

void CBookTreeView::dropEvent(QDropEvent* pEvent) {
    // startDrag goes on from here, with the target that was shown last.
    pEvent->setDropAction(Qt::MoveAction);
    pEvent->setAccepted(m_dropTarget.isValid());
    stopAutoScroll();
    setState(NoState);
}

void CBookTreeView::paintEvent(QPaintEvent* pEvent) {
    QTreeView::paintEvent(pEvent);
    if (!m_dropTarget.isValid())
        return;
    QPainter painter(viewport());
    QStyleOption frame;
    frame.initFrom(this);
    frame.rect = visualRect(m_dropTarget);
    style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemDrop, &frame, &painter, this);
}
