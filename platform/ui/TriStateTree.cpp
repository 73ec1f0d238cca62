#include "platform/ui/TriStateTree.h"

namespace Torvane::Control::MFC {

CTriStateTreeCtrl::CTriStateTreeCtrl(QWidget* pParent) : QTreeWidget(pParent) {
    setHeaderHidden(true);
    setUniformRowHeights(true);
}

QTreeWidgetItem* CTriStateTreeCtrl::AddNode(QTreeWidgetItem* pParent, const NodeData& node) {
    auto* pItem = pParent ? new QTreeWidgetItem(pParent) : new QTreeWidgetItem(this);
    pItem->setText(0, node.strText);
    if (m_bBoxes) {
        pItem->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
                        Qt::ItemIsAutoTristate);
        pItem->setCheckState(0, node.bChecked ? Qt::Checked : Qt::Unchecked);
    }
    return pItem;
}

bool CTriStateTreeCtrl::IsItemChecked(const QTreeWidgetItem* pItem) const {
    return pItem->checkState(0) != Qt::Unchecked;
}

} // namespace Torvane::Control::MFC
