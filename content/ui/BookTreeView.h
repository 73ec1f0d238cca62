#pragma once

#include "content/BookNode.h"
#include "content/ViewKind.h"
#include "platform/base/People.h"

#include <QTreeWidget>

#include <memory>
#include <vector>

/// The left-hand tree: shows the open course, is the only place where nodes are added, renamed and removed,
/// and decides which view shows the selected node. The rules stand in content/; this class shows, collects
/// and forwards.
class CBookTreeView : public QTreeWidget {
    Q_OBJECT
public:
    CBookTreeView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people, QWidget* pParent = nullptr);
    ~CBookTreeView() override;

    /// Fills the tree from an opened course and selects its root.
    void LoadTree(CCourse& course);
    /// Empties the tree and frees all nodes.
    void ResetTree();

    CBookNode* GetSelectedNode() const;
    /// Opens the tree down to the node and selects it.
    void SelectNode(qint32 nId);

    /// Whether a tree command is enabled for the present selection.
    bool IsCommandEnabled(int nCommand) const;
    /// Runs a tree command; false when the id is none of the tree's.
    bool RunCommand(int nCommand);
};
