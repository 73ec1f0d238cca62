#pragma once

#include "course/BookDatabase.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>
#include <QList>

#include <array>
#include <functional>

/// A node's children. What a line shows is read when it is first looked at: a node may have many thousands,
/// of which a window holds some thirty.
class CChildrenModel : public QAbstractTableModel {
    Q_OBJECT
public:
    /// The store to read from, or null when there is none now.
    using Store = std::function<CBookDatabase*()>;

    CChildrenModel(Store store, QObject* pParent);

    /// Throws Torvane::CRunException, with no lines, when the store can't be read.
    void Show(qint32 nParentId);
    void Clear();
    qint32 IdOf(const QModelIndex& index) const { return m_ids[index.row()]; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int nRole) const override;
    QVariant headerData(int nSection, Qt::Orientation orientation, int nRole) const override;
    /// Reads all titles at once where typed letters look for one.
    QModelIndexList match(const QModelIndex& start, int nRole, const QVariant& value, int nHits,
                          Qt::MatchFlags flags) const override;

private:
    struct Child {
        QString strTitle;
        int nImage;
        QString strType;
    };
    const Child* Read(qint32 nId) const;
    void ReadTitles() const;

    Store m_store;
    std::array<QIcon, 2> m_images;
    qint32 m_nParentId = -1;
    QList<qint32> m_ids;
    // What was read so far.
    mutable QHash<qint32, Child> m_children;
    mutable QHash<qint32, QString> m_titles;
};
