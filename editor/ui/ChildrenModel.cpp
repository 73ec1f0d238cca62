#include "editor/ui/ChildrenModel.h"

#include "editor/DisplayRules.h"
#include "editor/Texts.h"
#include "foundation/SysInfo.h"
#include "platform/ui/Pictures.h"

namespace {

constexpr int c_images[] = {326, 345};
constexpr int c_nTitleColumn = 0;
constexpr int c_nColumns = 2;

} // namespace

CChildrenModel::CChildrenModel(HasChildren hasChildren, QObject* pParent)
    : QAbstractTableModel(pParent), m_hasChildren(std::move(hasChildren)) {
    const QString strFolder = CSysInfo::Instance().GetSysDataFolder(false);
    for (std::size_t nImage = 0; nImage < m_images.size(); ++nImage)
        m_images[nImage] = Pictures::ResourceIcon(strFolder, c_images[nImage]);
}

void CChildrenModel::Show(QList<NodeHeader> children) {
    beginResetModel();
    m_children = std::move(children);
    m_folders.assign(static_cast<std::size_t>(m_children.size()), std::nullopt);
    endResetModel();
}

qint32 CChildrenModel::IdOf(const QModelIndex& index) const {
    return index.isValid() ? m_children[index.row()].Id : NodeHeader().Id;
}

int CChildrenModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_children.size());
}

int CChildrenModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : c_nColumns;
}

bool CChildrenModel::IsFolder(int nRow) const {
    std::optional<bool>& known = m_folders[static_cast<std::size_t>(nRow)];
    if (!known)
        known = m_hasChildren(m_children[nRow].Id);
    return known.value_or(false);
}

QVariant CChildrenModel::data(const QModelIndex& index, int nRole) const {
    if (!index.isValid())
        return {};
    const NodeHeader& child = m_children[index.row()];
    const bool bTitle = index.column() == c_nTitleColumn;
    if (nRole == Qt::DisplayRole && bTitle)
        return child.Title;
    if (nRole == (bTitle ? Qt::DecorationRole : Qt::DisplayRole)) {
        const auto row = DisplayRules::RowOfChild(child.Type, IsFolder(index.row()));
        return bTitle ? QVariant(m_images[static_cast<std::size_t>(row.nImage)]) : QVariant(row.strType);
    }
    return {};
}

QVariant CChildrenModel::headerData(int nSection, Qt::Orientation orientation, int nRole) const {
    if (orientation != Qt::Horizontal || nRole != Qt::DisplayRole)
        return {};
    return nSection == c_nTitleColumn ? EditorTexts::c_strChildColumn : EditorTexts::c_strTypeColumn;
}
