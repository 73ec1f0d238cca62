#include "content/ui/TitleDelegate.h"

#include "content/BookTree.h"
#include "content/Texts.h"
#include "platform/ui/Pictures.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QStyle>

namespace {

constexpr int c_nLineHeight = 22;
/// A new title may be much longer than the one it replaces.
constexpr int c_nMinEditWidth = 180;

} // namespace

CTitleDelegate::CTitleDelegate(const QString& strSystemData, QAbstractItemView* pView)
    : QStyledItemDelegate(pView), m_view(*pView) {
    for (size_t nImage = 0; nImage < m_images.size(); ++nImage)
        m_images[nImage] = Pictures::ResourceIcon(strSystemData, TreeImage::c_resources[nImage]);
}

void CTitleDelegate::initStyleOption(QStyleOptionViewItem* pOption, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(pOption, index);
    const auto& tree = static_cast<const CBookTree&>(*index.model());
    const int nImage = TreeImage::Of(tree.LineOf(index), tree.rowCount(index) > 0,
                                     pOption->state.testFlag(QStyle::State_Open));
    pOption->icon = m_images[static_cast<size_t>(nImage)];
    pOption->decorationSize = m_view.iconSize();
    pOption->features |= QStyleOptionViewItem::HasDecoration;
    pOption->font.setBold(index == m_view.currentIndex());
    pOption->fontMetrics = QFontMetrics(pOption->font);
}

QString CTitleDelegate::displayText(const QVariant& value, const QLocale&) const {
    return OneLine(value.toString());
}

QSize CTitleDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    // As wide as the line is when it is selected, so that selecting moves nothing.
    QStyleOptionViewItem bold = option;
    initStyleOption(&bold, index);
    bold.font.setBold(true);
    bold.fontMetrics = QFontMetrics(bold.font);
    QSize size = m_view.style()->sizeFromContents(QStyle::CT_ItemViewItem, &bold, QSize(), &m_view);
    // Whoever reads with large letters has them whole.
    size.setHeight(std::max(c_nLineHeight, bold.fontMetrics.height()));
    return size;
}

QWidget* CTitleDelegate::createEditor(QWidget* pParent, const QStyleOptionViewItem&,
                                      const QModelIndex&) const {
    auto* pEdit = new QLineEdit(pParent);
    pEdit->setObjectName(QStringLiteral("titleEdit"));
    pEdit->setAccessibleName(ContentText::c_strTitleEdit);
    pEdit->setFrame(false);
    return pEdit;
}

void CTitleDelegate::setEditorData(QWidget* pEditor, const QModelIndex& index) const {
    auto* pEdit = qobject_cast<QLineEdit*>(pEditor);
    pEdit->setText(index.data(Qt::EditRole).toString());
    pEdit->selectAll();
}

void CTitleDelegate::setModelData(QWidget* pEditor, QAbstractItemModel*, const QModelIndex&) const {
    Q_EMIT TitleTyped(qobject_cast<QLineEdit*>(pEditor)->text());
}

void CTitleDelegate::updateEditorGeometry(QWidget* pEditor, const QStyleOptionViewItem& option,
                                          const QModelIndex& index) const {
    QStyleOptionViewItem detailed = option;
    initStyleOption(&detailed, index);
    QRect place = pEditor->style()->subElementRect(QStyle::SE_ItemViewItemText, &detailed, option.widget);
    place.setWidth(std::max(place.width(), c_nMinEditWidth));
    if (pEditor->parentWidget() != nullptr)
        place.setRight(
            std::min(place.right(), std::max(place.left() + 40, pEditor->parentWidget()->width() - 1)));
    pEditor->setGeometry(place);
}
