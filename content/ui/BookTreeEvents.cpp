// What the person does in the tree with mouse and keys.
#include "content/ui/BookTreeView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QMouseEvent>
#include <QStatusTipEvent>

#include <utility>

void CBookTreeView::mousePressEvent(QMouseEvent* pEvent) {
    // The right button selects when its menu comes: here too would ask the view for leave twice.
    if (pEvent->button() != Qt::LeftButton)
        return;
    // The left one selects when it goes up: until then this may become a drag, which leaves the selection,
    // and a page that is being edited, alone.
    m_pressedAt = pEvent->position().toPoint();
    m_pressed = m_actions.GetSelection().WantedBy([&] { QTreeView::mousePressEvent(pEvent); });
}

void CBookTreeView::mouseMoveEvent(QMouseEvent* pEvent) {
    if (pEvent->buttons() == Qt::NoButton)
        return QTreeView::mouseMoveEvent(pEvent);
    // A pressed mouse that wanders over other lines selects none of them.
    const int nWay = (pEvent->position().toPoint() - m_pressedAt).manhattanLength();
    if (pEvent->buttons() == Qt::LeftButton && nWay >= QApplication::startDragDistance() &&
        m_actions.MayDrag(m_pressed))
        Drag(std::exchange(m_pressed, QPersistentModelIndex()));
}

void CBookTreeView::mouseReleaseEvent(QMouseEvent* pEvent) {
    if (pEvent->button() != Qt::LeftButton)
        return;
    QTreeView::mouseReleaseEvent(pEvent);
    const QModelIndex pressed = std::exchange(m_pressed, QPersistentModelIndex());
    if (pressed.isValid() && indexAt(pEvent->position().toPoint()) == pressed)
        m_actions.GetSelection().Select(pressed);
}

void CBookTreeView::keyboardSearch(const QString& strTyped) {
    m_actions.ReadAllTitles();
    QTreeView::keyboardSearch(strTyped);
}

void CBookTreeView::mouseDoubleClickEvent(QMouseEvent* pEvent) {
    if (pEvent->button() == Qt::LeftButton)
        m_actions.ShowSelection();
    QTreeView::mouseDoubleClickEvent(pEvent);
}

void CBookTreeView::contextMenuEvent(QContextMenuEvent* pEvent) {
    const bool bMouse = pEvent->reason() == QContextMenuEvent::Mouse;
    const QPersistentModelIndex line(bMouse ? indexAt(pEvent->pos()) : currentIndex());
    const std::span<const int> commands = m_actions.OpenMenu(line);
    if (commands.empty())
        return;
    if (!bMouse)
        scrollTo(line);
    QMenu* pMenu = MakeMenu(commands);
    pMenu->popup(bMouse ? pEvent->globalPos() : viewport()->mapToGlobal(visualRect(line).bottomLeft()));
}

QMenu* CBookTreeView::MakeMenu(std::span<const int> commands) {
    auto* pMenu = new QMenu(this);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    pMenu->setObjectName(QStringLiteral("treeMenu"));
    for (const int nCommand : commands) {
        if (nCommand == 0) {
            pMenu->addSeparator();
            continue;
        }
        const TreeCommand::Row& row = *TreeCommand::Find(nCommand);
        QAction* pAction = pMenu->addAction(row.strText.toString());
        pAction->setObjectName(QStringLiteral("command_%1").arg(nCommand));
        pAction->setStatusTip(row.strStatus.toString());
        pAction->setEnabled(IsCommandEnabled(nCommand));
        connect(pAction, &QAction::triggered, this, [this, nCommand] { RunCommand(nCommand); });
    }
    // A menu that stands for itself keeps its hints to itself; here the main window's status bar has them.
    connect(pMenu, &QMenu::hovered, this, [this](QAction* pAction) { pAction->showStatusText(this); });
    connect(pMenu, &QMenu::aboutToHide, this, [this] {
        QStatusTipEvent none{QString()};
        QApplication::sendEvent(this, &none);
    });
    return pMenu;
}

void CBookTreeView::resizeEvent(QResizeEvent* pEvent) {
    // A selected line shines over the whole pane, and a long one can still be scrolled to.
    header()->setMinimumSectionSize(viewport()->width());
    QTreeView::resizeEvent(pEvent);
}

QModelIndex CBookTreeView::HiddenBy(const QModelIndex& index) const {
    QModelIndex closed;
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) {
        if (!isExpanded(above))
            closed = above;
    }
    return closed;
}

void CBookTreeView::SelectWhatHides(const QModelIndex& index) {
    const QPersistentModelIndex line(index);
    // Commands would work on a line that nobody sees.
    if (HiddenBy(currentIndex()) != index || !m_actions.GetSelection().Select(index))
        return;
    // A node with content opens when it is selected; here it was just closed.
    if (line.isValid())
        collapse(line);
}

QModelIndex CBookTreeView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    // A line in a closed branch has no neighbours: the keys go on from the branch.
    const QModelIndex current = currentIndex();
    const QModelIndex closed = HiddenBy(current);
    if (closed.isValid())
        return closed;
    if (action == MoveLeft && current.isValid())
        return MoveOut(current);
    // The headings are never selected: the first line for Home and the page keys is the root.
    const QModelIndex next = QTreeView::moveCursor(action, modifiers);
    if (!next.isValid() || !IsHeadItem(m_tree.LineOf(next)))
        return next;
    scrollToTop();
    return m_tree.GetRoot();
}

/// The toolkit closes no branch while the pane is scrolled sideways, and closes leaves that it once opened.
QModelIndex CBookTreeView::MoveOut(const QModelIndex& index) {
    if (m_tree.rowCount(index) == 0 || !isExpanded(index))
        return index.parent().isValid() ? index.parent() : index;
    collapse(index);
    return index;
}
