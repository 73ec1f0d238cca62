#include "editor/ui/ChildrenModel.h"

#include "editor/DisplayRules.h"
#include "editor/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/SysInfo.h"
#include "platform/ui/Pictures.h"

namespace {

constexpr int c_images[] = {326, 345};
constexpr int c_nTitleColumn = 0;
constexpr int c_nColumns = 2;

} // namespace

CChildrenModel::CChildrenModel(Store store, QObject* pParent)
    : QAbstractTableModel(pParent), m_store(std::move(store)) {
    const QString strFolder = CSysInfo::Instance().GetSysDataFolder(false);
    for (std::size_t nImage = 0; nImage < m_images.size(); ++nImage)
        m_images[nImage] = Pictures::ResourceIcon(strFolder, c_images[nImage]);
}

void CChildrenModel::Show(qint32 nParentId) {
    Clear();
    CBookDatabase* pStore = m_store();
    if (pStore == nullptr)
        return;
    const QList<qint32> ids = pStore->GetChildIds(nParentId);
    beginResetModel();
    m_nParentId = nParentId;
    m_ids = ids;
    endResetModel();
}

void CChildrenModel::Clear() {
    beginResetModel();
    m_ids.clear();
    m_children.clear();
    m_titles.clear();
    endResetModel();
}

/// Null when it can't be read now; the next look tries again. No time for a message: the line is being
/// painted.
const CChildrenModel::Child* CChildrenModel::Read(qint32 nId) const {
    const auto known = m_children.constFind(nId);
    if (known != m_children.cend())
        return &*known;
    CBookDatabase* pStore = m_store();
    if (pStore == nullptr)
        return nullptr;
    try {
        const NodeHeader header = pStore->GetNode(nId);
        const auto row = DisplayRules::RowOfChild(header.Type, pStore->GetChildrenCount(nId) > 0);
        return &*m_children.insert(nId, {header.Title, row.nImage, row.strType});
    } catch (const Torvane::CRunException&) {
        return nullptr;
    }
}

void CChildrenModel::ReadTitles() const {
    CBookDatabase* pStore = m_store();
    if (!m_titles.isEmpty() || pStore == nullptr)
        return;
    try {
        QList<NodeHeader> children;
        pStore->GetChildren(m_nParentId, children);
        m_titles.reserve(children.size());
        for (const NodeHeader& child : children)
            m_titles.insert(child.Id, child.Title);
    } catch (const Torvane::CRunException&) {
        // The letters find nothing then.
    }
}

int CChildrenModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_ids.size());
}

int CChildrenModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : c_nColumns;
}

QVariant CChildrenModel::data(const QModelIndex& index, int nRole) const {
    const bool bTitle = index.column() == c_nTitleColumn;
    if (!index.isValid() || (nRole != Qt::DisplayRole && (nRole != Qt::DecorationRole || !bTitle)))
        return {};
    const qint32 nId = IdOf(index);
    if (bTitle && nRole == Qt::DisplayRole) {
        if (const auto title = m_titles.constFind(nId); title != m_titles.cend())
            return *title;
    }
    const Child* pChild = Read(nId);
    if (pChild == nullptr)
        return {};
    if (!bTitle)
        return pChild->strType;
    return nRole == Qt::DisplayRole ? QVariant(pChild->strTitle)
                                    : m_images[static_cast<std::size_t>(pChild->nImage)];
}

QModelIndexList CChildrenModel::match(const QModelIndex& start, int nRole, const QVariant& value, int nHits,
                                      Qt::MatchFlags flags) const {
    ReadTitles();
    return QAbstractTableModel::match(start, nRole, value, nHits, flags);
}

QVariant CChildrenModel::headerData(int nSection, Qt::Orientation orientation, int nRole) const {
    if (orientation != Qt::Horizontal || nRole != Qt::DisplayRole)
        return {};
    return nSection == c_nTitleColumn ? EditorTexts::c_strChildColumn : EditorTexts::c_strTypeColumn;
}
