#include "content/BookTree.h"

#include "content/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/SysInfo.h"

#include <QSet>

#include <algorithm>
#include <utility>

struct CBookTree::Line {
    Line* pParent = nullptr;
    int nRow = 0;
    /// -1 for a heading.
    qint32 nId = -1;
    ETreeLine Kind = ETreeLine::Node;
    /// Whether the children have been read; without it none of them stands here.
    bool bRead = false;
    /// Made when somebody first looks at the line; null for a heading.
    std::unique_ptr<CBookNode> pNode = {};
    Lines children = {};

    int ChildCount() const { return static_cast<int>(children.size()); }
    Line& Child(int nChild) const { return *children[static_cast<std::size_t>(nChild)]; }
    void Number(int nFrom) {
        for (int nChild = nFrom; nChild < ChildCount(); ++nChild)
            Child(nChild).nRow = nChild;
    }
};

CBookTree::CBookTree(QObject* pParent) : QAbstractItemModel(pParent) {}

CBookTree::~CBookTree() = default;

// Lines.

CBookTree::Line* CBookTree::At(const QModelIndex& index) const {
    return static_cast<Line*>(index.internalPointer());
}

QModelIndex CBookTree::IndexOf(const Line& line) const {
    return createIndex(line.nRow, 0, &line);
}

QModelIndex CBookTree::GetRoot() const {
    return m_top.empty() ? QModelIndex() : IndexOf(*m_top.back());
}

ETreeLine CBookTree::LineOf(const QModelIndex& index) const {
    return index.isValid() ? At(index)->Kind : ETreeLine::None;
}

qint32 CBookTree::IdOf(const QModelIndex& index) const {
    return index.isValid() ? At(index)->nId : -1;
}

CBookNode* CBookTree::NodeOf(const QModelIndex& index) const {
    return IdOf(index) >= 0 ? &Node(*At(index)) : nullptr;
}

CBookNode& CBookTree::Node(Line& line) const {
    if (line.pNode == nullptr)
        line.pNode = std::make_unique<CBookNode>(*m_pCourse, Store().GetNode(line.nId));
    return *line.pNode;
}

/// Makes the nodes of all children in one go.
void CBookTree::ReadNodes(const Line& parent) const {
    if (std::ranges::all_of(parent.children, [](const Line* pChild) { return pChild->pNode != nullptr; }))
        return;
    QList<NodeHeader> headers;
    Store().GetChildren(parent.nId, headers);
    for (const NodeHeader& header : headers) {
        Line* pLine = m_lines.value(header.Id);
        if (pLine != nullptr && pLine->pParent == &parent && pLine->pNode == nullptr)
            pLine->pNode = std::make_unique<CBookNode>(*m_pCourse, header);
    }
}

void CBookTree::ReadAllTitles() const {
    for (const Line* pLine : m_lines)
        ReadNodes(*pLine);
}

QModelIndex CBookTree::Find(qint32 nId) const {
    const Line* pLine = m_lines.value(nId);
    return pLine == nullptr ? QModelIndex() : IndexOf(*pLine);
}

QModelIndex CBookTree::Reveal(qint32 nId) {
    if (m_pCourse == nullptr)
        return {};
    // Up from the node to a line that stands, then down again.
    QList<qint32> way;
    QSet<qint32> seen;
    qint32 nStep = nId;
    while (!m_lines.contains(nStep) && nStep > c_nRootNodeId && !seen.contains(nStep)) {
        seen.insert(nStep);
        way.append(nStep);
        nStep = Store().GetField(nStep, QStringLiteral("ParentId")).toInt();
    }
    while (!way.isEmpty()) {
        Line* pLine = m_lines.value(nStep);
        if (pLine == nullptr)
            return {};
        LoadChildren(*pLine);
        nStep = way.takeLast();
    }
    return Find(nId);
}

TitleTaken CBookTree::TakenBelow(const QModelIndex& parent, const QModelIndex& except) const {
    const Line& line = *At(parent);
    ReadNodes(line);
    QSet<QString> titles;
    titles.reserve(line.ChildCount());
    for (Line* pChild : line.children) {
        if (!except.isValid() || pChild != At(except))
            titles.insert(Node(*pChild).GetTitle());
    }
    return [titles](const QString& strTitle) { return titles.contains(strTitle); };
}

// Reading.

void CBookTree::Load(CCourse& course) {
    Clear();
    beginResetModel();
    m_pCourse = &course;
    try {
        std::unique_ptr<CBookNode> pRoot = CBookNode::Root(course);
        AddTopLine(ETreeLine::School, CSysInfo::Instance().GetSchoolName());
        AddTopLine(ETreeLine::Course, course.GetInfo().Name);
        Line& root = AddTopLine(ETreeLine::Root, course.GetInfo().TeacherName);
        root.nId = pRoot->GetId();
        root.pNode = std::move(pRoot);
        m_lines.insert(root.nId, &root);
        root.children = MakeLines(root, Store().GetChildIds(root.nId));
        root.bRead = true;
        const auto below = Store().GetGrandchildIds(root.nId);
        for (Line* pChild : root.children) {
            pChild->children = MakeLines(*pChild, below.value(pChild->nId));
            pChild->bRead = true;
        }
    } catch (...) {
        endResetModel();
        Clear();
        throw;
    }
    endResetModel();
}

void CBookTree::Clear() {
    beginResetModel();
    m_pCourse = nullptr;
    m_top.clear();
    m_lines.clear();
    m_blocks.clear();
    endResetModel();
}

CBookTree::Line& CBookTree::AddTopLine(ETreeLine kind, const QString& strText) {
    m_topTexts[m_top.size()] = strText;
    Line& line = m_blocks.emplace_back(1).front();
    line.Kind = kind;
    line.nRow = static_cast<int>(m_top.size());
    m_top.push_back(&line);
    return line;
}

void CBookTree::ShowCourseInfo() {
    if (m_pCourse == nullptr)
        return;
    const CCourseInfo& info = m_pCourse->GetInfo();
    m_topTexts = {m_topTexts[0], info.Name, info.TeacherName};
    Q_EMIT dataChanged(index(1, 0), GetRoot());
    try {
        NodeOf(GetRoot())->ReadTitle();
    } catch (const Torvane::CRunException&) {
        // The course has said so itself where it took the name over.
    }
}

CBookDatabase& CBookTree::Store() const {
    CBookDatabase* pDatabase = m_pCourse->GetDatabase();
    if (pDatabase == nullptr)
        throw Torvane::CRunException(ContentText::c_strNoStore);
    return *pDatabase;
}

CBookTree::Lines CBookTree::MakeLines(Line& parent, const QList<qint32>& ids) {
    if (ids.isEmpty())
        return {};
    Lines lines;
    lines.reserve(static_cast<std::size_t>(ids.size()));
    std::vector<Line>& block = m_blocks.emplace_back();
    block.reserve(static_cast<std::size_t>(ids.size()));
    m_lines.reserve(m_lines.size() + ids.size());
    int nRow = parent.ChildCount();
    for (const qint32 nId : ids) {
        // A node stands in the tree once: a damaged store could lead round and round.
        Line*& pKnown = m_lines[nId];
        if (pKnown != nullptr)
            continue;
        pKnown = &block.emplace_back(Line{.pParent = &parent, .nRow = nRow++, .nId = nId});
        lines.push_back(pKnown);
    }
    return lines;
}

/// Adds lines that MakeLines made for this parent.
void CBookTree::Hang(Line& parent, const Lines& lines) {
    if (lines.empty())
        return;
    const int nFirst = parent.ChildCount();
    beginInsertRows(IndexOf(parent), nFirst, nFirst + static_cast<int>(lines.size()) - 1);
    parent.children.insert(parent.children.end(), lines.begin(), lines.end());
    endInsertRows();
}

void CBookTree::LoadChildren(Line& line) {
    if (line.bRead)
        return;
    const QList<qint32> ids = Store().GetChildIds(line.nId);
    line.bRead = true;
    Hang(line, MakeLines(line, ids));
}

void CBookTree::Read(const QModelIndex& index) {
    if (!IsHeadItem(LineOf(index)))
        LoadChildren(*At(index));
}

void CBookTree::Reload(const QModelIndex& index) {
    Line& line = *At(index);
    if (line.ChildCount() > 0)
        RemoveRows(line, 0, line.ChildCount() - 1);
    line.bRead = false;
    LoadAhead(index);
}

void CBookTree::ReadNew(const QModelIndex& index) {
    Line& line = *At(index);
    const QList<qint32> ids = Store().GetChildIds(line.nId);
    line.bRead = true;
    Hang(line, MakeLines(line, ids));
    LoadAhead(index);
}

void CBookTree::LoadAhead(const QModelIndex& index) {
    if (IsHeadItem(LineOf(index)))
        return;
    Line& line = *At(index);
    LoadChildren(line);
    if (std::ranges::all_of(line.children, [](const Line* pChild) { return pChild->bRead; }))
        return;
    const auto below = Store().GetGrandchildIds(line.nId);
    for (Line* pChild : line.children) {
        if (!std::exchange(pChild->bRead, true))
            Hang(*pChild, MakeLines(*pChild, below.value(pChild->nId)));
    }
}

// Changing.

QModelIndex CBookTree::Add(const QModelIndex& parent, const QString& strTitle) {
    Line& line = *At(parent);
    LoadChildren(line);
    std::unique_ptr<CBookNode> pNode = Node(line).AddChild(strTitle);
    Line& added = m_blocks.emplace_back(1).front();
    added.pParent = &line;
    added.nRow = line.ChildCount();
    added.bRead = true;
    added.nId = pNode->GetId();
    added.pNode = std::move(pNode);
    m_lines.insert(added.nId, &added);
    Hang(line, {&added});
    if (added.nRow > 0 && !IsBehind(added, line.Child(added.nRow - 1)))
        Arrange(line);
    return IndexOf(added);
}

/// False in a damaged store alone, where a number of siblings is no place behind them.
bool CBookTree::IsBehind(const Line& line, const Line& other) const {
    const auto place = [this](const Line& sibling) {
        return Store().GetField(sibling.nId, QStringLiteral("Index")).toInt();
    };
    try {
        return place(line) > place(other);
    } catch (const Torvane::CRunException&) {
        return false;
    }
}

bool CBookTree::Rename(const QModelIndex& index, const QString& strTitle) {
    if (!NodeOf(index)->SetTitle(strTitle))
        return false;
    Q_EMIT dataChanged(index, index);
    return true;
}

bool CBookTree::Move(const QModelIndex& index, bool bUp) {
    Line& line = *At(index);
    if (!(bUp ? Node(line).MoveUp() : Node(line).MoveDown()))
        return false;
    Arrange(*line.pParent);
    return true;
}

bool CBookTree::MoveBelow(const QModelIndex& index, const QModelIndex& target) {
    Line& line = *At(index);
    Line& newParent = *At(target);
    Q_ASSERT(line.pParent != &newParent);
    LoadChildren(newParent);
    if (!Node(line).MoveBelow(newParent.nId))
        return false;
    Line& oldParent = *line.pParent;
    MoveRow(oldParent, line.nRow, newParent, 0);
    Arrange(oldParent);
    Arrange(newParent);
    return true;
}

void CBookTree::MoveRow(Line& from, int nFrom, Line& to, int nTo) {
    const bool bDown = &from == &to && nTo > nFrom;
    beginMoveRows(IndexOf(from), nFrom, nFrom, IndexOf(to), bDown ? nTo + 1 : nTo);
    Line& moved = from.Child(nFrom);
    from.children.erase(from.children.begin() + nFrom);
    moved.pParent = &to;
    to.children.insert(to.children.begin() + nTo, &moved);
    from.Number(&from == &to ? std::min(nFrom, nTo) : nFrom);
    if (&from != &to)
        to.Number(nTo);
    endMoveRows();
}

void CBookTree::Arrange(Line& parent) {
    QList<qint32> ids;
    try {
        ids = Store().GetChildIds(parent.nId);
    } catch (const Torvane::CRunException&) {
        // The store has taken the change; an order that can't be read stays as it is shown.
    }
    int nRow = 0;
    for (const qint32 nId : ids) {
        const Line* pLine = m_lines.value(nId);
        // A damaged store may name a child twice: its first place counts.
        if (pLine == nullptr || pLine->pParent != &parent || pLine->nRow < nRow)
            continue;
        // A line that steps one down is a neighbour that steps one up: one move either way.
        if (pLine->nRow != nRow)
            MoveRow(parent, pLine->nRow, parent, nRow);
        ++nRow;
    }
}

void CBookTree::Forget(const QList<qint32>& ids) {
    const QSet<qint32> gone(ids.begin(), ids.end());
    // The topmost lines alone; what hangs below goes with them.
    QHash<Line*, QList<int>> rows;
    for (const qint32 nId : ids) {
        const Line* pLine = m_lines.value(nId);
        if (pLine != nullptr && pLine->pParent != nullptr && !gone.contains(pLine->pParent->nId))
            rows[pLine->pParent].append(pLine->nRow);
    }
    for (auto it = rows.begin(); it != rows.end(); ++it) {
        // From the back, so that the rows in front keep their numbers; neighbours in one go.
        std::ranges::sort(*it, std::greater());
        while (!it->isEmpty()) {
            const int nLast = it->takeFirst();
            int nFirst = nLast;
            while (!it->isEmpty() && it->first() == nFirst - 1)
                nFirst = it->takeFirst();
            RemoveRows(*it.key(), nFirst, nLast);
        }
        // Where a damaged store has gaps or doubles, closing the gap may have changed the order.
        Arrange(*it.key());
    }
}

void CBookTree::RemoveRows(Line& parent, int nFirst, int nLast) {
    beginRemoveRows(IndexOf(parent), nFirst, nLast);
    const auto begin = parent.children.begin() + nFirst;
    const auto end = parent.children.begin() + nLast + 1;
    Lines removed(begin, end);
    parent.children.erase(begin, end);
    parent.Number(nFirst);
    // Nobody finds them from here on. Breadth first: nothing limits how deep a tree is.
    for (std::size_t nLine = 0; nLine < removed.size(); ++nLine) {
        m_lines.remove(removed[nLine]->nId);
        const Lines below = std::move(removed[nLine]->children);
        removed.insert(removed.end(), below.begin(), below.end());
    }
    endRemoveRows();
}

// The model's questions.

QModelIndex CBookTree::index(int nRow, int nColumn, const QModelIndex& parent) const {
    const Lines& lines = parent.isValid() ? At(parent)->children : m_top;
    if (nColumn != 0 || nRow < 0 || nRow >= static_cast<int>(lines.size()))
        return {};
    return createIndex(nRow, 0, lines[static_cast<std::size_t>(nRow)]);
}

QModelIndex CBookTree::parent(const QModelIndex& index) const {
    const Line* pParent = index.isValid() ? At(index)->pParent : nullptr;
    return pParent == nullptr ? QModelIndex() : IndexOf(*pParent);
}

int CBookTree::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? At(parent)->ChildCount() : static_cast<int>(m_top.size());
}

bool CBookTree::hasChildren(const QModelIndex& parent) const {
    return rowCount(parent) > 0;
}

int CBookTree::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant CBookTree::data(const QModelIndex& index, int nRole) const {
    if (!index.isValid() || (nRole != Qt::DisplayRole && nRole != Qt::EditRole))
        return {};
    Line& line = *At(index);
    if (line.pParent == nullptr)
        return m_topTexts[static_cast<std::size_t>(line.nRow)];
    try {
        return Node(line).GetTitle();
    } catch (const Torvane::CRunException&) {
        // The next look asks again; whoever wants more than a look is told.
        return {};
    }
}

Qt::ItemFlags CBookTree::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags all = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    return IsFixedItem(LineOf(index)) ? all : all | Qt::ItemIsEditable;
}
