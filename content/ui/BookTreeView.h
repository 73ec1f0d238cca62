#pragma once

#include "content/BookNode.h"
#include "content/TreeCommands.h"
#include "content/ViewKind.h"
#include "platform/base/People.h"

#include <QPersistentModelIndex>
#include <QTreeWidget>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class CTreeSelectionModel;
class QMenu;

/// The left-hand tree: shows the open course, is the only place where nodes are added, renamed and removed,
/// and decides which view shows the selected node. The rules stand in content/; this class shows, collects
/// and forwards. Failures inside its own events and commands are shown here; LoadTree throws.
class CBookTreeView : public QTreeWidget {
    Q_OBJECT
public:
    CBookTreeView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people, QWidget* pParent = nullptr);
    ~CBookTreeView() override;

    /// Fills the tree from an opened course and selects its root. Throws Torvane::CRunException, with an
    /// empty tree, when the store can't be read.
    void LoadTree(CCourse& course);
    /// Empties the tree and frees all nodes: no view may show one any more.
    void ResetTree();
    /// The course's name and its teacher as they are now.
    void ShowCourseInfo();

    /// A colour word of a template: red in the low byte, then green and blue.
    void SetBackColor(quint32 nColor);

    /// Null when no node is selected. Owned by the tree until ResetTree.
    CBookNode* GetSelectedNode() const;
    /// Opens the tree down to the node and selects it.
    void SelectNode(qint32 nId);

    /// Whether a tree command is enabled for the present selection.
    bool IsCommandEnabled(int nCommand) const;
    /// Runs a tree command; false when the id is none of the tree's.
    bool RunCommand(int nCommand);

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

protected Q_SLOTS:
    void closeEditor(QWidget* pEditor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    // Lines and their nodes.
    ETreeLine LineOf(const QTreeWidgetItem* pItem) const;
    CBookNode& NodeOf(const QTreeWidgetItem* pItem) const;
    QTreeWidgetItem* SelectedItem() const;
    TreeSelection Selection() const;
    TitleTaken TakenBelow(const QTreeWidgetItem* pParent, const QTreeWidgetItem* pExcept = nullptr) const;

    // Loading.
    void FillTree(CCourse& course);
    QTreeWidgetItem* MakeItem(std::unique_ptr<CBookNode> pNode);
    QTreeWidgetItem* AddHeading(const QString& strText, int nImage);
    void LoadChildren(QTreeWidgetItem* pItem);
    void LoadAhead(QTreeWidgetItem* pItem);
    void SetImage(QTreeWidgetItem* pItem, int nImage);
    void UpdateImage(QTreeWidgetItem* pItem);

    // Selection.
    bool MaySelect(const QModelIndex& index);
    void TakeSelection(QTreeWidgetItem* pItem, QTreeWidgetItem* pOld);
    /// False when the line may not be selected now.
    bool Select(QTreeWidgetItem* pItem);
    void ShowSelection(QTreeWidgetItem* pItem);

    QMenu* MakeMenu(std::span<const int> commands);

    // Commands; each begins with a selection that its action allows.
    void RunAction(TreeCommand::EAction action);
    /// The question with OK and Cancel. Also false when the selected line went meanwhile: a box lets the
    /// program run on, and a lost session closes the course.
    bool Confirm(const QString& strQuestion);
    QTreeWidgetItem* AddBelow(QTreeWidgetItem* pParent, const QString& strTitle);
    void AddNode();
    void AddChild();
    bool ConfirmChildBelowContent(const QTreeWidgetItem* pItem);
    bool AddMany(QTreeWidgetItem* pParent);
    void AddManySiblings();
    void AddManyChildren();
    void StartRename(QTreeWidgetItem* pItem);
    void FinishRename();
    void StoreTitle(QTreeWidgetItem* pItem, const QString& strTitle);
    void DeleteNode();
    void RemoveSelectedItem();
    void MoveNode(bool bUp);
    /// Moves the line beside the selected one to its other side: the selected line itself never leaves the
    /// tree.
    void MoveNeighbour(QTreeWidgetItem* pParent, int nFrom, int nTo);
    void ClearContent();
    void CreateContent();
    void EditContent();

    /// Runs a step of an event or command and shows what it throws; nothing may pass into the event loop.
    void Guarded(const std::function<void()>& step);

    INodeViewHost& m_host;
    Torvane::Dialog::MFC::IPeople& m_people;
    CCourse* m_pCourse = nullptr;
    CTreeSelectionModel* m_pSelection = nullptr;
    std::array<QIcon, 6> m_images;
    QTreeWidgetItem* m_pSchoolItem = nullptr;
    QTreeWidgetItem* m_pCourseItem = nullptr;
    QTreeWidgetItem* m_pRootItem = nullptr;
    /// A line's data word is an index into it. Only grows while a course is open: a view may show a node
    /// whose line is gone.
    std::vector<std::unique_ptr<CBookNode>> m_nodes;

    QPersistentModelIndex m_edited;
    std::optional<QString> m_typedTitle;
};
