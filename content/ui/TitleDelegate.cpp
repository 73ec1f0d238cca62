#include "content/ui/TitleDelegate.h"

#include "content/BookTree.h"
#include "content/Texts.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/Pictures.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QStyle>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nLineHeight = 22;

} // namespace

CTitleDelegate::CTitleDelegate(const QString& strSystemData, QAbstractItemView* pView,
                               const std::array<int, TreeImage::c_nImages>& images)
    : QStyledItemDelegate(pView), m_view(*pView) {
    for (size_t nImage = 0; nImage < m_images.size(); ++nImage)
        m_images[nImage] = Pictures::ResourceIcon(strSystemData, images[nImage]);
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
    // The place to write is white, whatever colour the template gives the tree.
    QPalette colors = QApplication::palette(pEdit);
    for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Text})
        colors.setColor(role, colors.color(role));
    pEdit->setPalette(colors);
    return pEdit;
}

void CTitleDelegate::setEditorData(QWidget* pEditor, const QModelIndex& index) const {
    auto* pEdit = qobject_cast<QLineEdit*>(pEditor);
    pEdit->setText(index.data(Qt::EditRole).toString());
    pEdit->selectAll();
}

void CTitleDelegate::setModelData(QWidget* pEditor, QAbstractItemModel*, const QModelIndex& index) const {
    const auto* pEdit = qobject_cast<QLineEdit*>(pEditor);
    // A title that came with line breaks stays as it is unless it is changed.
    const bool bChanged = pEdit->text() != index.data(Qt::EditRole).toString();
    Q_EMIT TitleTyped(bChanged ? DialogParts::TextOf(*pEdit) : pEdit->text());
}

void CTitleDelegate::updateEditorGeometry(QWidget* pEditor, const QStyleOptionViewItem& option,
                                          const QModelIndex& index) const {
    QStyleOptionViewItem detailed = option;
    initStyleOption(&detailed, index);
    QRect place = pEditor->style()->subElementRect(QStyle::SE_ItemViewItemText, &detailed, option.widget);
    // A new title may be much longer than the one it replaces.
    place.setRight(m_view.viewport()->width() - 1);
    pEditor->setGeometry(place);
}

bool CTitleDelegate::helpEvent(QHelpEvent* pEvent, QAbstractItemView* pView,
                               const QStyleOptionViewItem& option, const QModelIndex& index) {
    // What the pane cuts off.
    const QRect seen = option.rect & m_view.viewport()->rect();
    const bool bWhole = option.rect.left() >= 0 && sizeHint(option, index).width() <= seen.width();
    if (pEvent->type() != QEvent::ToolTip || bWhole)
        return QStyledItemDelegate::helpEvent(pEvent, pView, option, index);
    const QString strTitle = OneLine(index.data().toString()).toHtmlEscaped();
    QToolTip::showText(pEvent->globalPos(), u"<p style='white-space:pre'>%1</p>"_s.arg(strTitle),
                       m_view.viewport(), option.rect);
    return true;
}
