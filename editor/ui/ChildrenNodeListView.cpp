#include "editor/ui/ChildrenNodeListView.h"

#include "editor/Texts.h"
#include "editor/ui/ChildrenModel.h"
#include "editor/ui/ShowFailure.h"
#include "foundation/SysInfo.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/Pictures.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QShortcut>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

constexpr int c_nColumnWidth = 200;
constexpr QSize c_imageSize(18, 18);
constexpr int c_nSideWidth = 160;
constexpr int c_nTitleHeight = 18;
constexpr int c_nMargin = 12;
constexpr int c_nSidePicture = 324;

/// Shows under the mouse what a column or the window cuts off.
class CCutTips : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    bool helpEvent(QHelpEvent* pEvent, QAbstractItemView* pView, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        const QRect seen = option.rect & pView->viewport()->rect();
        const bool bWhole = option.rect.left() >= 0 && sizeHint(option, index).width() <= seen.width();
        if (pEvent->type() != QEvent::ToolTip || bWhole)
            return QStyledItemDelegate::helpEvent(pEvent, pView, option, index);
        QToolTip::showText(pEvent->globalPos(), DialogParts::TipOf(index.data().toString()),
                           pView->viewport(), option.rect);
        return true;
    }
};

} // namespace

CChildrenNodeListView::CChildrenNodeListView(INodeViewHost& host, QWidget* pParent)
    : CBookShowView(host, pParent), m_pTitle(new QLabel(this)), m_pSelected(new QLabel(this)),
      m_pList(new QTreeView(this)),
      m_pChildren(new CChildrenModel(
          // Out of sight the view shows no node but keeps its lines, and the course may go.
          [this] { return m_pNode == nullptr ? nullptr : m_pNode->GetCourse().GetDatabase(); }, this)) {
    setObjectName(QStringLiteral("CChildrenNodeListView"));
    setPalette(QPalette(Qt::black, Qt::white, Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::white));
    setAutoFillBackground(true);

    m_pTitle->setObjectName(QStringLiteral("nodeTitle"));
    m_pTitle->setTextFormat(Qt::PlainText);
    m_pTitle->setWordWrap(true);
    m_pTitle->setFixedWidth(c_nSideWidth);
    QFont bold = font();
    bold.setPixelSize(c_nTitleHeight);
    bold.setBold(true);
    m_pTitle->setFont(bold);
    m_pSelected->setObjectName(QStringLiteral("selectedTitle"));
    m_pSelected->setTextFormat(Qt::PlainText);
    m_pSelected->setWordWrap(true);
    m_pSelected->setFixedWidth(c_nSideWidth);

    m_pList->setObjectName(QStringLiteral("childrenList"));
    m_pList->setAccessibleName(EditorTexts::c_strChildColumn);
    m_pList->setModel(m_pChildren);
    m_pList->setItemDelegate(new CCutTips(m_pList));
    m_pList->setRootIsDecorated(false);
    m_pList->setUniformRowHeights(true);
    m_pList->setIconSize(c_imageSize);
    m_pList->header()->setStretchLastSection(false);
    for (int nColumn = 0; nColumn < 2; ++nColumn)
        m_pList->header()->resizeSection(nColumn, c_nColumnWidth);
    m_pList->setPalette(palette());

    auto* pPicture = new QLabel(this);
    pPicture->setObjectName(QStringLiteral("sidePicture"));
    pPicture->setPixmap(Pictures::Resource(CSysInfo::Instance().GetSysDataFolder(false), c_nSidePicture));
    auto* pSide = new QVBoxLayout;
    pSide->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    pSide->setSpacing(c_nMargin);
    pSide->addWidget(m_pTitle);
    pSide->addWidget(pPicture);
    pSide->addWidget(m_pSelected);
    pSide->addStretch(1);
    auto* pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addLayout(pSide);
    pLayout->addWidget(m_pList, 1);

    connect(m_pList->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) {
                m_pSelected->setText(index.siblingAtColumn(0).data().toString());
                // As the focus comes by a key, the toolkit makes the first line the current one and selects
                // none.
                m_pList->selectionModel()->select(index, QItemSelectionModel::ClearAndSelect |
                                                             QItemSelectionModel::Rows);
            });
    const auto open = [this](const QModelIndex& index) {
        if (index.isValid())
            m_host.SelectNode(m_pChildren->IdOf(index));
    };
    connect(m_pList, &QTreeView::doubleClicked, this, open);
    // Not the list's own activation: some desktops let a single click do that.
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* pEnter = new QShortcut(key, m_pList, nullptr, nullptr, Qt::WidgetShortcut);
        connect(pEnter, &QShortcut::activated, this, [this, open] { open(m_pList->currentIndex()); });
    }
}

void CChildrenNodeListView::ShowNode() {
    m_pChildren->Clear();
    m_pSelected->clear();
    m_pTitle->setText(m_pNode == nullptr ? QString() : m_pNode->GetTitle());
    if (m_pNode != nullptr)
        ShowFailure(this, [this] { m_pChildren->Show(m_pNode->GetId()); });
}
