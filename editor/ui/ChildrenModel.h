#pragma once

#include "course/BookDatabase.h"

#include <QAbstractTableModel>
#include <QIcon>

#include <array>
#include <functional>
#include <optional>
#include <vector>

/// A node's children with their titles and types. Whether a child has children of its own is asked only for
/// the lines that are looked at: a node may have many thousands.
class CChildrenModel : public QAbstractTableModel {
    Q_OBJECT
public:
    /// Nothing when it can't be said now, which is asked again at the next look.
    using HasChildren = std::function<std::optional<bool>(qint32 nId)>;

    CChildrenModel(HasChildren hasChildren, QObject* pParent);

    void Show(QList<NodeHeader> children);
    /// -1 for no line.
    qint32 IdOf(const QModelIndex& index) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int nRole) const override;
    QVariant headerData(int nSection, Qt::Orientation orientation, int nRole) const override;

private:
    bool IsFolder(int nRow) const;

    HasChildren m_hasChildren;
    std::array<QIcon, 2> m_images;
    QList<NodeHeader> m_children;
    /// What is known of each line so far.
    mutable std::vector<std::optional<bool>> m_folders;
};
