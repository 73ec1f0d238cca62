#pragma once

#include "content/BookTreeActions.h"
#include "content/ui/TreeDialogs.h"

#include <QPersistentModelIndex>
#include <QTimer>
#include <QTreeView>

#include <optional>
#include <span>

class QMenu;

/// The left-hand tree: shows the open course, and is the only place where nodes are added, renamed, moved and
/// removed. The lines stand in CBookTree, what a person can do with them in CBookTreeActions; this class
/// draws, and forwards mouse and keys. LoadTree alone throws.
class CBookTreeView : public QTreeView, private ITreeWindow {
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
    void ShowCourseInfo() { m_tree.ShowCourseInfo(); }

    /// Records lectures; outlives the view.
    void SetVideoMaker(IVideoMaker& videos) { m_actions.SetVideoMaker(videos); }

    /// A colour word of a template: red in the low byte, then green and blue.
    void SetBackColor(quint32 nColor);

    /// Null when no node is selected. Owned by the tree until ResetTree.
    CBookNode* GetSelectedNode() const { return m_actions.GetSelectedNode(); }
    /// Opens the tree down to the node and selects it.
    void SelectNode(qint32 nId) { m_actions.SelectNode(nId); }

    /// Brings a line into sight, upright and sideways, and moves nothing that is in sight already.
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    void keyboardSearch(const QString& strTyped) override;

    /// Whether a tree command is enabled for the present selection.
    bool IsCommandEnabled(int nCommand) const { return m_actions.IsEnabled(nCommand); }
    /// Runs a tree command; false when the id is none of the tree's.
    bool RunCommand(int nCommand);
    /// Takes over a title that is being typed, before anything else happens to the course.
    void FinishTyping();

Q_SIGNALS:
    /// Another line is selected.
    void SelectionMoved();

protected:
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void initViewItemOption(QStyleOptionViewItem* pOption) const override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;
    void dragLeaveEvent(QDragLeaveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;

protected Q_SLOTS:
    void closeEditor(QWidget* pEditor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void Expand(const QModelIndex& index) override { expand(index); }
    void EditTitle(const QModelIndex& index) override;
    QMenu* MakeMenu(std::span<const int> commands);
    /// The outermost closed line that hides this one; no line where none does.
    QModelIndex HiddenBy(const QModelIndex& index) const;
    /// Takes the selection to a branch that was closed over it.
    void SelectWhatHides(const QModelIndex& index);
    /// Closes an open branch; of any other line the one that it stands below.
    QModelIndex MoveOut(const QModelIndex& index);
    void FollowMoved(const QModelIndex& from, int nFirst, int nLast, const QModelIndex& to);
    /// Scrolls until nEnough pixels of the line are in sight, where the line and the pane are as wide.
    void ShowSideways(const QModelIndex& index, int nEnough);

    /// Returns when the mouse has let go of the line, or the drag was given up.
    void Drag(const QModelIndex& index);
    QPixmap PictureOf(const QModelIndex& index) const;
    /// What the dragged line is over now, in the viewport.
    void Aim(const QPoint& at);
    void SetDropTarget(const QModelIndex& index);
    void OpenUnderDrag();

    CBookTree m_tree;
    CTreeDialogs m_dialogs;
    CBookTreeActions m_actions;

    QPersistentModelIndex m_edited;
    std::optional<QString> m_typedTitle;
    /// The line under the pressed mouse, which a drag takes along, and where in the viewport that was.
    QPersistentModelIndex m_pressed;
    QPoint m_pressedAt;
    /// While a drag is under way: its line, the one that it is over, and that one if it would take it.
    QPersistentModelIndex m_dragged;
    QPersistentModelIndex m_under;
    QPersistentModelIndex m_dropTarget;
    QTimer m_rest;
};
