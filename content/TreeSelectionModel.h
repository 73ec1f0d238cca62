#pragma once

#include <QItemSelectionModel>
#include <QPersistentModelIndex>

#include <functional>

/// The selection of the tree: exactly the current line, and it moves only where it may. Whoever wants to move
/// it (mouse, keys, type-ahead, a command) passes here, and is asked once; a refusal leaves the selection as
/// it is, so that nothing flickers.
class CTreeSelectionModel : public QItemSelectionModel {
public:
    using MayMove = std::function<bool(const QModelIndex&)>;
    using Moved = std::function<void()>;

    /// moved is called when all who listen to the selection are through with it: unlike them it may close
    /// the course, and take the lines away.
    CTreeSelectionModel(QAbstractItemModel* pModel, MayMove mayMove, Moved moved, QObject* pParent = nullptr);

    using QItemSelectionModel::select;
    void setCurrentIndex(const QModelIndex& index, QItemSelectionModel::SelectionFlags command) override;
    void select(const QItemSelection& selection, QItemSelectionModel::SelectionFlags command) override;

    /// Moves where it may; false when it stays.
    bool Select(const QModelIndex& index);
    /// Moves without asking.
    void Force(const QModelIndex& index);
    /// Lets go of the selection without a word to anyone: its line is about to be removed.
    void Drop();

    /// Runs a step of a view in which nothing moves; the line that it wanted to select.
    QModelIndex WantedBy(const std::function<void()>& step);

private:
    MayMove m_mayMove;
    Moved m_moved;
    bool m_bAsking = false;
    bool m_bOwnSelect = false;
    /// Where a wish is noted instead of being followed.
    QPersistentModelIndex* m_pWanted = nullptr;
};
