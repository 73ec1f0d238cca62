#pragma once

#include <QItemSelectionModel>

#include <functional>

/// The selection of the tree: exactly the current line, and it moves only where it may. Whoever wants to move
/// it (mouse, keys, type-ahead, a command) passes here, and is asked once; a refusal leaves the selection as
/// it is, so that nothing flickers.
class CTreeSelectionModel : public QItemSelectionModel {
    Q_OBJECT
public:
    using MayMove = std::function<bool(const QModelIndex&)>;

    CTreeSelectionModel(QAbstractItemModel* pModel, MayMove mayMove, QObject* pParent);

    using QItemSelectionModel::select;
    void setCurrentIndex(const QModelIndex& index, QItemSelectionModel::SelectionFlags command) override;
    void select(const QItemSelection& selection, QItemSelectionModel::SelectionFlags command) override;

    /// Moves without asking.
    void Force(const QModelIndex& index);
    /// Lets go of the selection without a word to anyone: its line is about to be removed.
    void Drop();

private:
    MayMove m_mayMove;
    bool m_bAsking = false;
    bool m_bOwnSelect = false;
};
