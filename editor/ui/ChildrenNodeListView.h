#pragma once

#include "content/ui/BookShowView.h"

class QLabel;
class QTreeWidget;
class QTreeWidgetItem;

/// Lists the children of a node that has no content of its own.
class CChildrenNodeListView : public CBookShowView {
    Q_OBJECT
public:
    CChildrenNodeListView(INodeViewHost& host, QWidget* pParent);

    void ShowNode() override;

private:
    void FillList();

    QLabel* m_pTitle;
    QLabel* m_pSelected;
    QTreeWidget* m_pList;
};
