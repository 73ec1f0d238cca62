#pragma once

#include <QTreeWidget>

namespace Torvane::Control::MFC {

/// A tree with a check box for each node. A node with children shows what these say: checked, not checked, or
/// in part; checking it checks all of them.
class CTriStateTreeCtrl : public QTreeWidget {
    Q_OBJECT
public:
    explicit CTriStateTreeCtrl(QWidget* pParent = nullptr);

    /// Nodes that are added from now on get a box, drawn in the window's own style.
    void LoadStateImage() { m_bBoxes = true; }

    struct NodeData {
        QString strText;
        bool bChecked = false;
    };
    /// Adds a node as the last child, or at the top for null. The tree owns it. What the data say of the box
    /// holds as long as the node has no children.
    QTreeWidgetItem* AddNode(QTreeWidgetItem* pParent, const NodeData& node);

    /// Checked, be it in part alone.
    bool IsItemChecked(const QTreeWidgetItem* pItem) const;

private:
    bool m_bBoxes = false;
};

} // namespace Torvane::Control::MFC
