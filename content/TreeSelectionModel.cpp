#include "content/TreeSelectionModel.h"

#include <QScopedValueRollback>
#include <QSignalBlocker>

#include <utility>

CTreeSelectionModel::CTreeSelectionModel(QAbstractItemModel* pModel, MayMove mayMove, Moved moved,
                                         QObject* pParent)
    : QItemSelectionModel(pModel, pParent), m_mayMove(std::move(mayMove)), m_moved(std::move(moved)) {}

void CTreeSelectionModel::setCurrentIndex(const QModelIndex& index, QItemSelectionModel::SelectionFlags) {
    if (m_pWanted == nullptr)
        Select(index);
    else
        *m_pWanted = index;
}

bool CTreeSelectionModel::Select(const QModelIndex& index) {
    // Asking may show a question; what comes meanwhile is not a wish of the person's.
    if (m_bAsking || !index.isValid())
        return false;
    if (index == currentIndex())
        return true;
    const QPersistentModelIndex target(index);
    bool bMayMove = false;
    {
        const QScopedValueRollback asking(m_bAsking, true);
        bMayMove = m_mayMove(index);
    }
    // The course may have been closed behind the question.
    if (!bMayMove || !target.isValid())
        return false;
    Force(target);
    return target.isValid() && currentIndex() == target;
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
    m_moved();
}

void CTreeSelectionModel::Drop() {
    const QSignalBlocker silent(this);
    const QScopedValueRollback own(m_bOwnSelect, true);
    clear();
}

QModelIndex CTreeSelectionModel::WantedBy(const std::function<void()>& step) {
    QPersistentModelIndex wanted;
    const QScopedValueRollback noted(m_pWanted, &wanted);
    step();
    return wanted;
}
