#include "content/ui/BookTreeView.h"

#include "content/Texts.h"
#include "content/ui/TitleDelegate.h"
#include "content/ui/TreeSelectionModel.h"
#include "course/TemplateStore.h"
#include "foundation/Exceptions.h"
#include "foundation/SysInfo.h"
#include "foundation/Text.h"
#include "platform/ui/Pictures.h"

#include <QHeaderView>
#include <QSet>

#include <stdexcept>

namespace {

// Data of a line: the index of its node, and which of the six images it shows.
constexpr int c_nNodeRole = Qt::UserRole;
constexpr int c_nImageRole = Qt::UserRole + 1;

namespace Image {
constexpr int c_nSchool = 0;
constexpr int c_nCourse = 1;
constexpr int c_nRoot = 2;
constexpr int c_nCollapsed = 3;
constexpr int c_nExpanded = 4;
constexpr int c_nLeaf = 5;
} // namespace Image
constexpr std::array c_imageResources{136, 139, 140, 141, 339, 142};

constexpr quint32 c_nFirstBackColor = 0xFFFAF4;

} // namespace

CBookTreeView::CBookTreeView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people, QWidget* pParent)
    : QTreeWidget(pParent), m_host(host), m_people(people) {
    setObjectName(QStringLiteral("CBookTreeView"));
    setAccessibleName(ContentText::c_strTreeName);
    setHeaderHidden(true);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setResizeContentsPrecision(0); // the visible lines alone
    setUniformRowHeights(true);
    setIconSize(QSize(18, 18));
    setEditTriggers(NoEditTriggers);
    SetBackColor(c_nFirstBackColor);
    const QString strSystemData = CSysInfo::Instance().GetSysDataFolder(false);
    for (size_t nImage = 0; nImage < m_images.size(); ++nImage)
        m_images[nImage] = Pictures::ResourceIcon(strSystemData, c_imageResources[nImage]);

    auto* pDelegate = new CTitleDelegate(this);
    setItemDelegate(pDelegate);
    connect(pDelegate, &CTitleDelegate::TitleTyped, this,
            [this](const QString& strTitle) { m_typedTitle = strTitle; });

    QItemSelectionModel* pOld = selectionModel();
    m_pSelection = new CTreeSelectionModel(
        model(), [this](const QModelIndex& index) { return MaySelect(index); }, this);
    setSelectionModel(m_pSelection);
    delete pOld;

    connect(m_pSelection, &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index, const QModelIndex& old) {
                TakeSelection(itemFromIndex(index), itemFromIndex(old));
            });
    connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* pItem) {
        Guarded([&] { LoadAhead(pItem); });
        UpdateImage(pItem);
    });
    connect(this, &QTreeWidget::itemCollapsed, this, &CBookTreeView::UpdateImage);
}

CBookTreeView::~CBookTreeView() {
    // The lines go without being asked where the selection moves.
    m_pSelection->Drop();
    disconnect(this, nullptr, this, nullptr);
    disconnect(m_pSelection, nullptr, this, nullptr);
}

void CBookTreeView::Guarded(const std::function<void()>& step) {
    try {
        step();
    } catch (const Torvane::CException& e) {
        m_people.Error(e.GetMessage());
    } catch (const std::exception& e) {
        m_people.Error(QString::fromLocal8Bit(e.what()));
    }
}

void CBookTreeView::SetBackColor(quint32 nColor) {
    const auto byte = [nColor](int nShift) { return static_cast<int>(nColor >> nShift & 0xFF); };
    QPalette colors = palette();
    colors.setColor(QPalette::Base, QColor(byte(0), byte(8), byte(16)));
    setPalette(colors);
}

// Lines and their nodes.

ETreeLine CBookTreeView::LineOf(const QTreeWidgetItem* pItem) const {
    if (pItem == nullptr)
        return ETreeLine::None;
    if (pItem == m_pSchoolItem)
        return ETreeLine::School;
    if (pItem == m_pCourseItem)
        return ETreeLine::Course;
    return pItem == m_pRootItem ? ETreeLine::Root : ETreeLine::Node;
}

CBookNode& CBookTreeView::NodeOf(const QTreeWidgetItem* pItem) const {
    const auto nNode = pItem->data(0, c_nNodeRole).toULongLong();
    if (nNode >= m_nodes.size())
        throw std::out_of_range("invalid vector<T> subscript");
    return *m_nodes[nNode];
}

QTreeWidgetItem* CBookTreeView::SelectedItem() const {
    return currentItem();
}

CBookNode* CBookTreeView::GetSelectedNode() const {
    QTreeWidgetItem* pItem = SelectedItem();
    return IsHeadItem(LineOf(pItem)) ? nullptr : &NodeOf(pItem);
}

TreeSelection CBookTreeView::Selection() const {
    const CBookNode* pNode = GetSelectedNode();
    return {LineOf(SelectedItem()), pNode == nullptr ? NodeType::c_nEmpty : pNode->GetType()};
}

TitleTaken CBookTreeView::TakenBelow(const QTreeWidgetItem* pParent, const QTreeWidgetItem* pExcept) const {
    QSet<QString> titles;
    titles.reserve(pParent->childCount());
    for (int nRow = 0; nRow < pParent->childCount(); ++nRow) {
        if (pParent->child(nRow) != pExcept)
            titles.insert(pParent->child(nRow)->text(0));
    }
    return [titles](const QString& strTitle) { return titles.contains(strTitle); };
}

// Loading.

void CBookTreeView::LoadTree(CCourse& course) {
    ResetTree();
    m_pCourse = &course;
    try {
        FillTree(course);
    } catch (...) {
        ResetTree();
        throw;
    }
    Select(m_pRootItem);
    setFocus();
}

void CBookTreeView::FillTree(CCourse& course) {
    const CSysInfo& settings = CSysInfo::Instance();
    SetBackColor(CTemplateStore(settings.GetTemplatesFolder(false)).GetBackColor(course.GetTemplateName()));

    std::unique_ptr<CBookNode> pRoot = CBookNode::Root(course);
    m_pSchoolItem = AddHeading(settings.GetSchoolName(), Image::c_nSchool);
    m_pCourseItem = AddHeading(course.GetInfo().Name, Image::c_nCourse);
    m_pRootItem = MakeItem(std::move(pRoot));
    m_pRootItem->setText(0, course.GetInfo().TeacherName);
    m_pRootItem->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    SetImage(m_pRootItem, Image::c_nRoot);
    addTopLevelItem(m_pRootItem);

    LoadChildren(m_pRootItem);
    LoadAhead(m_pRootItem);
    m_pRootItem->setExpanded(true);
}

void CBookTreeView::ShowCourseInfo() {
    if (!m_pCourseItem || !m_pRootItem)
        return;
    const CCourseInfo& info = m_pCourse->GetInfo();
    m_pCourseItem->setText(0, info.Name);
    m_pRootItem->setText(0, info.TeacherName);
    try {
        if (NodeOf(m_pRootItem).GetTitle() != info.TeacherName)
            NodeOf(m_pRootItem).SetTitle(info.TeacherName);
    } catch (const Torvane::CRunException&) {
        // The course has said so itself where it took the name over.
    }
}

void CBookTreeView::ResetTree() {
    m_pSelection->Drop();
    m_edited = QPersistentModelIndex();
    m_typedTitle.reset();
    m_pSchoolItem = m_pCourseItem = m_pRootItem = nullptr;
    clear();
    m_nodes.clear();
    m_pCourse = nullptr;
}

QTreeWidgetItem* CBookTreeView::AddHeading(const QString& strText, int nImage) {
    auto* pItem = new QTreeWidgetItem(QStringList{strText});
    pItem->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    pItem->setData(0, c_nNodeRole, 0);
    SetImage(pItem, nImage);
    addTopLevelItem(pItem);
    return pItem;
}

QTreeWidgetItem* CBookTreeView::MakeItem(std::unique_ptr<CBookNode> pNode) {
    auto* pItem = new QTreeWidgetItem(QStringList{pNode->GetTitle()});
    pItem->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable);
    pItem->setData(0, c_nNodeRole, static_cast<qulonglong>(m_nodes.size()));
    SetImage(pItem, Image::c_nLeaf);
    m_nodes.push_back(std::move(pNode));
    return pItem;
}

void CBookTreeView::LoadChildren(QTreeWidgetItem* pItem) {
    const QList<NodeHeader> children = NodeOf(pItem).GetChildren();
    if (pItem->childCount() > 0)
        qDeleteAll(pItem->takeChildren());
    if (children.isEmpty())
        return;
    QList<QTreeWidgetItem*> items;
    items.reserve(children.size());
    for (const NodeHeader& header : children)
        items.append(MakeItem(std::make_unique<CBookNode>(*m_pCourse, header)));
    pItem->addChildren(items);
}

void CBookTreeView::LoadAhead(QTreeWidgetItem* pItem) {
    if (IsHeadItem(LineOf(pItem)))
        return;
    for (int nRow = 0; nRow < pItem->childCount(); ++nRow) {
        QTreeWidgetItem* pChild = pItem->child(nRow);
        if (pChild->childCount() == 0) {
            LoadChildren(pChild);
            UpdateImage(pChild);
        }
    }
}

void CBookTreeView::SetImage(QTreeWidgetItem* pItem, int nImage) {
    const QVariant shown = pItem->data(0, c_nImageRole);
    if (shown.isValid() && shown.toInt() == nImage)
        return;
    pItem->setData(0, c_nImageRole, nImage);
    pItem->setIcon(0, m_images[static_cast<size_t>(nImage)]);
}

void CBookTreeView::UpdateImage(QTreeWidgetItem* pItem) {
    if (IsFixedItem(LineOf(pItem)))
        return;
    if (pItem->childCount() == 0)
        SetImage(pItem, Image::c_nLeaf);
    else
        SetImage(pItem, pItem->isExpanded() ? Image::c_nExpanded : Image::c_nCollapsed);
}

// Selection.

bool CBookTreeView::MaySelect(const QModelIndex& index) {
    return !IsHeadItem(LineOf(itemFromIndex(index))) && m_host.LeaveCurrentView(true);
}

void CBookTreeView::TakeSelection(QTreeWidgetItem* pItem, QTreeWidgetItem* pOld) {
    const auto setBold = [](QTreeWidgetItem* pLine, bool bBold) {
        QFont font = pLine->font(0);
        font.setBold(bBold);
        pLine->setFont(0, font);
    };
    if (pOld != nullptr)
        setBold(pOld, false);
    if (pItem == nullptr)
        return;
    setBold(pItem, true);
    Guarded([&] { ShowSelection(pItem); });
}

bool CBookTreeView::Select(QTreeWidgetItem* pItem) {
    setCurrentItem(pItem);
    return currentItem() == pItem;
}

void CBookTreeView::ShowSelection(QTreeWidgetItem* pItem) {
    if (IsHeadItem(LineOf(pItem)))
        return;
    CBookNode& node = NodeOf(pItem);
    const bool bHasChildren = pItem->childCount() > 0;
    const QPersistentModelIndex line(indexFromItem(pItem));
    m_host.ShowNodeView(KindOfSelection(node, bHasChildren), &node);
    // The course may have been closed while the views changed.
    if (bHasChildren && line.isValid() && node.HasContent()) {
        pItem->setExpanded(true);
        UpdateImage(pItem);
    }
}

void CBookTreeView::SelectNode(qint32 nId) {
    if (m_pCourse == nullptr)
        return;
    Guarded([&] {
        QList<qint32> path;
        QSet<qint32> seen;
        CBookDatabase& store = *m_pCourse->GetDatabase();
        for (qint32 nStep = nId; nStep != c_nRootNodeId && !seen.contains(nStep);
             nStep = store.GetField(nStep, QStringLiteral("ParentId")).toInt()) {
            seen.insert(nStep);
            path.prepend(nStep);
        }
        QTreeWidgetItem* pItem = m_pRootItem;
        for (const qint32 nStep : path) {
            if (pItem->childCount() == 0)
                LoadChildren(pItem);
            int nRow = 0;
            while (nRow < pItem->childCount() && NodeOf(pItem->child(nRow)).GetId() != nStep)
                ++nRow;
            if (nRow == pItem->childCount())
                return;
            pItem->setExpanded(true);
            pItem = pItem->child(nRow);
        }
        Select(pItem);
    });
}
