#include "editor/ui/ChildrenNodeListView.h"

#include "editor/DisplayRules.h"
#include "editor/Texts.h"
#include "editor/ui/ShowFailure.h"
#include "foundation/SysInfo.h"
#include "platform/ui/Pictures.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int c_nColumnWidth = 200;
constexpr QSize c_imageSize(18, 18);
constexpr int c_nSideWidth = 160;
constexpr int c_nTitleHeight = 18;
constexpr int c_nMargin = 12;
constexpr int c_nSidePicture = 324;
constexpr int c_images[] = {326, 345};
constexpr int c_nIdRole = Qt::UserRole;

} // namespace

CChildrenNodeListView::CChildrenNodeListView(INodeViewHost& host, QWidget* pParent)
    : CBookShowView(host, pParent), m_pTitle(new QLabel(this)), m_pSelected(new QLabel(this)),
      m_pList(new QTreeWidget(this)) {
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
    m_pList->setHeaderLabels({EditorTexts::c_strChildColumn, EditorTexts::c_strTypeColumn});
    m_pList->setRootIsDecorated(false);
    m_pList->setUniformRowHeights(true);
    m_pList->setIconSize(c_imageSize);
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

    connect(m_pList, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* pItem) {
        m_pSelected->setText(pItem == nullptr ? QString() : pItem->text(0));
    });
    const auto open = [this](const QTreeWidgetItem* pItem) {
        if (pItem != nullptr)
            m_host.SelectNode(pItem->data(0, c_nIdRole).toInt());
    };
    connect(m_pList, &QTreeWidget::itemDoubleClicked, this, open);
    // Not the list's own activation: some desktops let a single click do that.
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* pEnter = new QShortcut(key, m_pList, nullptr, nullptr, Qt::WidgetShortcut);
        connect(pEnter, &QShortcut::activated, this, [this, open] { open(m_pList->currentItem()); });
    }
}

void CChildrenNodeListView::ShowNode() {
    m_pList->clear();
    m_pSelected->clear();
    m_pTitle->setText(m_pNode == nullptr ? QString() : m_pNode->GetTitle());
    if (m_pNode == nullptr)
        return;
    ShowFailure(this, [this] { FillList(); });
}

void CChildrenNodeListView::FillList() {
    const QString strFolder = CSysInfo::Instance().GetSysDataFolder(false);
    const QIcon images[] = {Pictures::ResourceIcon(strFolder, c_images[0]),
                            Pictures::ResourceIcon(strFolder, c_images[1])};
    CBookDatabase* pDatabase = m_pNode->GetCourse().GetDatabase();
    const QList<NodeHeader> children = m_pNode->GetChildren();
    QList<QTreeWidgetItem*> items;
    for (const NodeHeader& child : children) {
        const auto row = DisplayRules::RowOfChild(child.Type, pDatabase != nullptr &&
                                                                  pDatabase->GetChildrenCount(child.Id) > 0);
        auto* pItem = new QTreeWidgetItem({child.Title, row.strType});
        pItem->setIcon(0, images[row.nImage]);
        pItem->setData(0, c_nIdRole, child.Id);
        items.append(pItem);
    }
    m_pList->addTopLevelItems(items);
}
