#include "content/ui/TreeSelectionModel.h"

#include <QPersistentModelIndex>
#include <QScopedValueRollback>
#include <QSignalBlocker>

CTreeSelectionModel::CTreeSelectionModel(QAbstractItemModel* pModel, MayMove mayMove, QObject* pParent)
    : QItemSelectionModel(pModel, pParent), m_mayMove(std::move(mayMove)) {}

void CTreeSelectionModel::setCurrentIndex(const QModelIndex& index, QItemSelectionModel::SelectionFlags) {
    // Asking may show a question; what comes meanwhile is not a wish of the person's.
    if (m_bAsking || !index.isValid() || index == currentIndex())
        return;
    const QPersistentModelIndex target(index);
    bool bMayMove = false;
    {
        const QScopedValueRollback asking(m_bAsking, true);
        bMayMove = m_mayMove(index);
    }
    // The course may have been closed behind the question.
    if (bMayMove && target.isValid())
        Force(target);
}

void CTreeSelectionModel::select(const QItemSelection& selection,
                                 QItemSelectionModel::SelectionFlags command) {
    if (m_bOwnSelect)
        QItemSelectionModel::select(selection, command);
}

void CTreeSelectionModel::Force(const QModelIndex& index) {
    {
        const QScopedValueRollback own(m_bOwnSelect, true);
        QItemSelectionModel::select(QItemSelection(index, index),
                                    QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    QItemSelectionModel::setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

void CTreeSelectionModel::Drop() {
    const QSignalBlocker silent(this);
    const QScopedValueRollback own(m_bOwnSelect, true);
    clear();
}
