// What the person does in the tree with mouse and keys.
#include "content/Texts.h"
#include "content/ui/BookTreeView.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>

void CBookTreeView::keyPressEvent(QKeyEvent* pEvent) {
    if (pEvent->key() == Qt::Key_F2 && pEvent->modifiers() == Qt::NoModifier) {
        if (IsCommandEnabled(TreeCommand::c_nRename))
            RunCommand(TreeCommand::c_nRename);
        return;
    }
    QTreeWidget::keyPressEvent(pEvent);
}

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

    auto* pMenu = new QMenu(this);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    pMenu->setObjectName(QStringLiteral("treeMenu"));
    const auto add = [&](int nCommand, const QString& strText, const QString& strHint = QString()) {
        QAction* pAction = pMenu->addAction(strText);
        pAction->setStatusTip(strHint.isEmpty() ? strText : strHint);
        pAction->setObjectName(QStringLiteral("command%1").arg(nCommand));
        pAction->setEnabled(IsCommandEnabled(nCommand));
        connect(pAction, &QAction::triggered, this, [this, nCommand] { RunCommand(nCommand); });
    };
    if (pItem != m_pRootItem)
        add(TreeCommand::c_nEditContentInTree, ContentText::c_strEditContentCommand);
    add(TreeCommand::c_nExport, ContentText::c_strExportCommand, ContentText::c_strExportHint);
    add(TreeCommand::c_nImport, ContentText::c_strImportCommand, ContentText::c_strImportHint);
    pMenu->addSeparator();
    if (pItem != m_pRootItem)
        add(TreeCommand::c_nAddNodeInTree, ContentText::c_strAddNodeCommand);
    add(TreeCommand::c_nAddChildInTree, ContentText::c_strAddChildCommand);
    if (pItem != m_pRootItem) {
        add(TreeCommand::c_nRenameInTree, ContentText::c_strRenameCommand);
        add(TreeCommand::c_nMoveUpInTree, ContentText::c_strMoveUpCommand);
        add(TreeCommand::c_nMoveDownInTree, ContentText::c_strMoveDownCommand);
        pMenu->addSeparator();
        add(TreeCommand::c_nClearContentInTree, ContentText::c_strClearContentCommand);
        add(TreeCommand::c_nDeleteInTree, ContentText::c_strDeleteCommand);
    }
    pMenu->popup(bMouse ? pEvent->globalPos() : viewport()->mapToGlobal(visualItemRect(pItem).bottomLeft()));
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
