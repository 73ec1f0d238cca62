// What the person does in the tree with mouse and keys.
#include "content/ui/BookTreeView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QMouseEvent>
#include <QStatusTipEvent>

void CBookTreeView::mousePressEvent(QMouseEvent* pEvent) {
    // The right button selects when its menu comes: here too would ask the view for leave twice.
    if (pEvent->button() == Qt::RightButton)
        return;
    QTreeWidget::mousePressEvent(pEvent);
}

void CBookTreeView::mouseMoveEvent(QMouseEvent* pEvent) {
    // A pressed mouse that wanders over other lines selects none of them.
    if (pEvent->buttons() == Qt::NoButton)
        QTreeWidget::mouseMoveEvent(pEvent);
}

void CBookTreeView::mouseDoubleClickEvent(QMouseEvent* pEvent) {
    if (pEvent->button() == Qt::LeftButton)
        Guarded([&] { ShowSelection(SelectedItem()); });
    QTreeWidget::mouseDoubleClickEvent(pEvent);
}

void CBookTreeView::contextMenuEvent(QContextMenuEvent* pEvent) {
    const bool bMouse = pEvent->reason() == QContextMenuEvent::Mouse;
    QTreeWidgetItem* pItem = bMouse ? itemAt(pEvent->pos()) : SelectedItem();
    if (IsHeadItem(LineOf(pItem)) || (pItem != SelectedItem() && !Select(pItem)))
        return;
    if (pItem->childCount() > 0 && pItem != m_pRootItem)
        return;

    QMenu* pMenu = MakeMenu(pItem == m_pRootItem ? TreeCommand::RootMenu() : TreeCommand::NodeMenu());
    pMenu->popup(bMouse ? pEvent->globalPos() : viewport()->mapToGlobal(visualItemRect(pItem).bottomLeft()));
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
    QTreeWidget::resizeEvent(pEvent);
}

void CBookTreeView::closeEditor(QWidget* pEditor, QAbstractItemDelegate::EndEditHint) {
    // Neither Tab nor an arrow goes on to edit the next title.
    QTreeWidget::closeEditor(pEditor, QAbstractItemDelegate::NoHint);
    Guarded([&] { FinishRename(); });
}
