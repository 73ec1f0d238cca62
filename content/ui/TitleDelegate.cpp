#include "content/ui/TitleDelegate.h"

#include "content/Texts.h"

#include <QLineEdit>
#include <QStyle>

namespace {

constexpr int c_nLineHeight = 22;
/// A new title may be much longer than the one it replaces.
constexpr int c_nMinEditWidth = 180;

} // namespace

QSize CTitleDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    // Whoever reads with large letters has them whole.
    size.setHeight(std::max(c_nLineHeight, option.fontMetrics.height()));
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
