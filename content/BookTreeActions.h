#pragma once

#include "content/BookTree.h"
#include "content/TreeCommands.h"
#include "content/TreeDialogs.h"
#include "content/TreeSelectionModel.h"
#include "content/ViewKind.h"
#include "platform/base/People.h"

#include <functional>
#include <optional>
#include <span>

/// The window over the tree, as the tree's commands see it.
class ITreeWindow {
public:
    virtual ~ITreeWindow() = default;
    virtual void Expand(const QModelIndex& index) = 0;
    /// Opens a line's title for typing; what was typed comes back through FinishRename.
    virtual void EditTitle(const QModelIndex& index) = 0;
};

class IVideoMaker;

/// What a person can do with the tree: its selection, and the commands with their questions and messages. The
/// window in front of it shows and forwards; nothing here needs one. Failures are shown to the person; only
/// Open throws.
class CBookTreeActions {
public:
    /// All of them must outlive this object.
    CBookTreeActions(CBookTree& tree, ITreeWindow& window, ITreeDialogs& dialogs, INodeViewHost& host,
                     Torvane::Dialog::MFC::IPeople& people);
    ~CBookTreeActions();
    CBookTreeActions(const CBookTreeActions&) = delete;
    CBookTreeActions& operator=(const CBookTreeActions&) = delete;

    /// Who records lectures; none are recorded before. Must outlive this object.
    void SetVideoMaker(IVideoMaker& videos) { m_pVideos = &videos; }

    CTreeSelectionModel& GetSelection() { return m_selection; }

    /// Fills the tree. Throws Torvane::CRunException, with an empty tree, when the store can't be read.
    void Open(CCourse& course);
    /// Empties the tree and frees all nodes: no view may show one any more.
    void Close();

    /// Null when no node is selected.
    CBookNode* GetSelectedNode() const;
    /// The selected line and its node's type, as the rules look at them.
    TreeSelection Selection() const;
    /// Opens the tree down to the node and selects it.
    void SelectNode(qint32 nId);
    /// Shows the selected node in the view that is its own.
    void ShowSelection();
    void LoadAhead(const QModelIndex& index);
    /// A search by typed letters is about to look at every line.
    void ReadAllTitles();

    bool IsEnabled(int nCommand) const;
    /// False when the id is none of the tree's.
    bool Run(int nCommand);
    /// Selects a line for its context menu and gives the menu's commands; none where no menu opens.
    std::span<const int> OpenMenu(const QModelIndex& index);
    /// The commands of a line's context menu; none where it has none.
    std::span<const int> MenuOf(const QModelIndex& index) const;

    /// The end of typing a title; nothing for a cancelled one. Selects the line unless the store fails.
    void FinishRename(const QModelIndex& index, const std::optional<QString>& typed);

    bool MayDrag(const QModelIndex& index) const;
    bool MayDrop(const QModelIndex& source, const QModelIndex& target) const;
    /// Moves the source below the target, as its first child, where that may be.
    void Drop(const QModelIndex& source, const QModelIndex& target);

private:
    bool MaySelect(const QModelIndex& index);
    bool HasChildren(const QModelIndex& index) const { return m_tree.rowCount(index) > 0; }
    /// Runs a step and shows what it throws; nothing may pass into the event loop.
    void Guarded(const std::function<void()>& step);
    void RunAction(const TreeCommand::Row& command);
    /// The question with OK and Cancel. Also false when the line went meanwhile: a box lets the program run
    /// on, and a lost session closes the course.
    bool Confirm(const QString& strQuestion, const QPersistentModelIndex& line,
                 Torvane::Dialog::MFC::BoxDefault byEnter = Torvane::Dialog::MFC::BoxDefault::First);

    void AddNode();
    void AddChild();
    bool ConfirmChildBelowContent(const QPersistentModelIndex& line);
    bool AddMany(const QPersistentModelIndex& parent);
    bool AddTitles(const QPersistentModelIndex& parent, const QStringList& titles);
    void AddManySiblings();
    void AddManyChildren();
    void StartRename(const QPersistentModelIndex& line);
    void Rename(const QPersistentModelIndex& line, const QString& strTitle);
    void StoreTitle(const QPersistentModelIndex& line, const QString& strTitle);
    void SetCustomTitles();
    void DeleteNode();
    void TakeAway(const QList<qint32>& gone);
    void MoveNode(bool bUp);
    bool ConfirmDrop(const QPersistentModelIndex& source, const QPersistentModelIndex& target);
    /// A view that lists children shows them as they are now.
    void ShowAgainWhereListed(const QModelIndex& one, const QModelIndex& other);
    void ClearContent();
    void CreateContent(EContentKind preset);
    bool ConfirmContent(const QPersistentModelIndex& line);
    bool LeaveEditor(CBookNode& node);
    void ShowCreated(const QPersistentModelIndex& line, EContentKind kind);
    void ShowImported(const QPersistentModelIndex& line);
    void EditContent(const QPersistentModelIndex& line);
    void SetOpenType();
    void Export();
    void Import();

    CBookTree& m_tree;
    ITreeWindow& m_window;
    ITreeDialogs& m_dialogs;
    INodeViewHost& m_host;
    Torvane::Dialog::MFC::IPeople& m_people;
    IVideoMaker* m_pVideos = nullptr;
    CTreeSelectionModel m_selection;
};
