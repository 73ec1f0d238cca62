#pragma once

#include "content/ui/BookShowView.h"

class QLabel;
class QTreeView;
class CChildrenModel;

/// Lists the children of a node that has no content of its own.
class CChildrenNodeListView : public CBookShowView {
    Q_OBJECT
public:
    CChildrenNodeListView(INodeViewHost& host, QWidget* pParent);

    void ShowNode() override;

private:
    QLabel* m_pTitle;
    QLabel* m_pSelected;
    QTreeView* m_pList;
    CChildrenModel* m_pChildren;
};
