#include "companions/compiler/Navigation.h"

#include "companions/compiler/FrameParts.h"
#include "companions/compiler/Texts.h"
#include "course/BookDatabase.h"

using namespace Qt::StringLiterals;

namespace {

/// A course of up to this many nodes has its whole tree on each page.
constexpr qsizetype c_nWholeTree = 300;
/// How many siblings a large course shows on each side of the page's own branch, on the level of the page
/// and on those above, and how many levels above.
constexpr int c_nSiblingsAround = 20;
constexpr int c_nSiblingsAbove = 10;
constexpr qsizetype c_nLevelsAbove = 12;
/// Deeper lists of the site map are written beside each other: browsers flatten them somewhere anyway.
constexpr int c_nMapLevels = 30;

QByteArray Escaped(const QString& strText) {
    return strText.toHtmlEscaped().toUtf8();
}

/// The nodes from below the root down to a node, the last ones where there are many.
QList<int> PathTo(const QList<SiteNode>& nodes, int nNode, qsizetype nMost) {
    QList<int> path;
    for (int n = nNode; n > 0 && path.size() < nMost; n = nodes[n].Parent)
        path.prepend(n);
    return path;
}

} // namespace

CNavigation::CNavigation(const CSitePlan& plan)
    : m_plan(plan), m_nodes(plan.Model().Nodes()),
      m_blocks(new Block[std::size_t(m_nodes.size() / c_nNodesInBlock + 1)]) {
    m_places.resize(m_nodes.size());
    for (const SiteNode& node : m_nodes) {
        for (int nPlace = 0; nPlace < node.Children.size(); ++nPlace)
            m_places[node.Children[nPlace]] = nPlace;
    }
}

CNavigation::Link CNavigation::MakeLink(int nNode) const {
    static const QByteArray newWindow = FrameParts::HiddenHint(CompilerText::c_strNewWindow).toUtf8();
    const NodePlan& node = m_plan.Of(nNode);
    Link link;
    link.Title = Escaped(m_nodes[nNode].Row.Title);
    link.IsOutside = node.TargetIsAddress;
    // A node with a page of its own keeps the fragment for what that page embeds.
    const QString strFragment = node.PagePath.isEmpty() ? node.Fragment : QString();
    link.Address =
        Escaped(node.TargetIsAddress ? node.Target : RelativeAddress({}, node.Target) + strFragment);
    link.Text = link.Title;
    if (node.OpenType != 0) {
        link.Attributes =
            " target=\"_blank\" rel=\"noopener\" data-open=\"" + QByteArray::number(node.OpenType) + '"';
        link.Text += newWindow;
    }
    return link;
}

/// A page shows some dozens of nodes: where few pages are written, few links are made.
const CNavigation::Link& CNavigation::LinkOf(int nNode) const {
    const int nFirst = nNode / c_nNodesInBlock * c_nNodesInBlock;
    Block& block = m_blocks[std::size_t(nNode / c_nNodesInBlock)];
    std::call_once(block.Once, [&] {
        for (int i = nFirst; i < qMin(nFirst + c_nNodesInBlock, int(m_nodes.size())); ++i)
            block.Links.append(MakeLink(i));
    });
    return block.Links[nNode - nFirst];
}

void CNavigation::AppendLink(QByteArray& out, int nNode, const QByteArray& up, const QByteArray& more) const {
    const Link& link = LinkOf(nNode);
    out += "<a href=\"";
    if (!link.IsOutside)
        out += up;
    out += link.Address + '"' + more + link.Attributes + '>';
}

/// Opens and closes a branch by mouse and keyboard. It stands beside the link: one in the other could not be
/// told apart by those who don't see them.
void CNavigation::AppendSwitch(QByteArray& out, int nNode, bool bOpen) const {
    static const QByteArray below = Escaped(CompilerText::c_strBelow) + "\"></summary>\n<ul>\n";
    out += bOpen ? "<details open><summary aria-label=\"" : "<details><summary aria-label=\"";
    out += LinkOf(nNode).Title + below;
}

/// Writes the tree as nested lists, the branch of the current node open.
class CNavigation::CTreeWriter {
public:
    CTreeWriter(const CNavigation& navigation, QByteArray& out, int nCurrent, const QByteArray& up)
        : m_navigation(navigation), m_nodes(navigation.m_nodes), m_out(out), m_up(up), m_nCurrent(nCurrent),
          m_bWhole(m_nodes.size() <= c_nWholeTree),
          m_path(PathTo(m_nodes, nCurrent, m_bWhole ? m_nodes.size() : c_nLevelsAbove)) {}

    void Write() {
        m_out += "<ul class=\"tree\">\n";
        const int nTop = m_path.isEmpty() ? 0 : m_nodes[m_path[0]].Parent;
        if (nTop == 0 && m_nodes[0].Row.Type != NodeType::c_nEmpty)
            WriteLeaf(0);
        WriteChildren(nTop, 0);
        m_out += "</ul>\n";
    }

private:
    void WriteLink(int nNode) {
        static const QByteArray current = " aria-current=\"page\"";
        m_navigation.AppendLink(m_out, nNode, m_up, nNode == m_nCurrent ? current : QByteArray());
        m_out += m_navigation.LinkOf(nNode).Text + "</a>";
    }

    void WriteLeaf(int nNode) {
        m_out += "<li>";
        WriteLink(nNode);
        m_out += "</li>\n";
    }

    void WriteNode(int nNode, qsizetype nLevel) {
        const bool bOnPath = nLevel < m_path.size() && m_path[nLevel] == nNode;
        // A node whose content opens by itself has no page on which its children would show.
        const bool bShowsChildren = bOnPath || m_bWhole || m_navigation.m_plan.Of(nNode).PagePath.isEmpty();
        if (m_nodes[nNode].Children.isEmpty() || !bShowsChildren)
            return WriteLeaf(nNode);
        m_out += "<li class=\"branch\">";
        WriteLink(nNode);
        m_navigation.AppendSwitch(m_out, nNode, bOnPath);
        WriteChildren(nNode, bOnPath ? nLevel + 1 : m_path.size());
        m_out += "</ul>\n</details></li>\n";
    }

    void WriteChildren(int nParent, qsizetype nLevel) {
        const QList<int>& children = m_nodes[nParent].Children;
        qsizetype nFirst = 0;
        qsizetype nEnd = children.size();
        if (!m_bWhole) {
            const bool bOwnLevel = nLevel + 1 >= m_path.size();
            const qsizetype nAround = bOwnLevel ? c_nSiblingsAround : c_nSiblingsAbove;
            const qsizetype nAt = nLevel < m_path.size() ? m_navigation.m_places[m_path[nLevel]] : 0;
            nFirst = qBound(qsizetype(0), nAt - nAround, qMax(nEnd - 2 * nAround - 1, qsizetype(0)));
            nEnd = qMin(nFirst + 2 * nAround + 1, nEnd);
        }
        for (qsizetype i = nFirst; i < nEnd; ++i)
            WriteNode(children[i], nLevel);
        if (nEnd - nFirst < children.size())
            WriteMore(nParent);
    }

    void WriteMore(int nParent) {
        const NodePlan& plan = m_navigation.m_plan.Of(nParent);
        m_out += "<li class=\"more\">";
        if (nParent > 0 && plan.View == ENodeView::List)
            m_navigation.AppendLink(m_out, nParent, m_up);
        else
            m_out += "<a href=\"" + m_up + c_szSiteMap + PlaceInMap(nParent) + "\">";
        m_out +=
            CompilerText::c_strMoreSiblings.arg(m_nodes[nParent].Children.size()).toUtf8() + "</a></li>\n";
    }

    /// The map begins with what lies below a root that shows nothing of its own.
    QByteArray PlaceInMap(int nNode) const {
        const StoreRow& row = m_nodes[nNode].Row;
        return nNode == 0 && row.Type == NodeType::c_nEmpty ? QByteArray()
                                                            : "#n" + QByteArray::number(row.Id);
    }

    const CNavigation& m_navigation;
    const QList<SiteNode>& m_nodes;
    QByteArray& m_out;
    const QByteArray& m_up;
    int m_nCurrent;
    bool m_bWhole;
    QList<int> m_path;
};

void CNavigation::AppendTree(QByteArray& out, int nCurrent, const QByteArray& up) const {
    CTreeWriter(*this, out, nCurrent, up).Write();
}

void CNavigation::AppendPath(QByteArray& out, int nNode, const QByteArray& up) const {
    static const QByteArray begin =
        "<nav class=\"crumbs\" aria-label=\"" + Escaped(CompilerText::c_strPath) + "\"><ol>\n<li>";
    static const QByteArray home = Escaped(CompilerText::c_strHome) + "</a></li>\n";
    out += begin + "<a href=\"" + up + c_szStartPage + "\">" + home;
    for (const int nAbove : PathTo(m_nodes, m_nodes[nNode].Parent, c_nLevelsAbove)) {
        out += "<li>";
        AppendLink(out, nAbove, up);
        out += LinkOf(nAbove).Text + "</a></li>\n";
    }
    out += "</ol></nav>\n";
}

/// Whether a reader who goes from page to page comes by.
bool CNavigation::IsStation(int nNode) const {
    return !m_plan.Of(nNode).PagePath.isEmpty() && m_plan.Of(nNode).OpenType == 0 &&
           (nNode > 0 || m_nodes[0].Row.Type != NodeType::c_nEmpty);
}

void CNavigation::AppendNeighbours(QByteArray& out, int nNode, const QByteArray& up) const {
    int nBefore = nNode - 1;
    while (nBefore >= 0 && !IsStation(nBefore))
        --nBefore;
    int nBehind = nNode + 1;
    while (nBehind < m_nodes.size() && !IsStation(nBehind))
        ++nBehind;
    static const QByteArray begin =
        "<nav class=\"pager\" aria-label=\"" + Escaped(CompilerText::c_strNeighbours) + "\">\n";
    static const QByteArray before = "<span>" + Escaped(CompilerText::c_strBefore) + "</span> ";
    static const QByteArray behind = "<span>" + Escaped(CompilerText::c_strBehind) + "</span> ";
    if (nBefore < 0 && nBehind >= m_nodes.size())
        return;
    out += begin;
    if (nBefore >= 0) {
        AppendLink(out, nBefore, up, " rel=\"prev\" class=\"prev\"");
        out += before + LinkOf(nBefore).Text + "</a>\n";
    }
    if (nBehind < m_nodes.size()) {
        AppendLink(out, nBehind, up, " rel=\"next\" class=\"next\"");
        out += behind + LinkOf(nBehind).Text + "</a>\n";
    }
    out += "</nav>\n";
}

/// Writes the whole tree. By hand and not by recursion: a chain of any length must not exhaust the stack.
class CNavigation::CMapWriter {
public:
    explicit CMapWriter(const CNavigation& navigation)
        : m_navigation(navigation), m_nodes(navigation.m_nodes), m_bOpen(m_nodes.size() <= c_nWholeTree) {}

    QByteArray Write() {
        m_out = "<ul class=\"map tree\">\n";
        // The nodes stand in the order of the tree, each parent before its children.
        for (int i = m_nodes[0].Row.Type == NodeType::c_nEmpty ? 1 : 0; i < m_nodes.size(); ++i)
            WriteNode(i);
        while (!m_open.isEmpty())
            Close();
        return m_out + "</ul>\n";
    }

private:
    void Close() {
        m_out += "</ul></details></li>\n";
        m_open.removeLast();
    }

    void WriteNode(int nNode) {
        const SiteNode& node = m_nodes[nNode];
        while (!m_open.isEmpty() && m_nodes[m_open.last()].Depth >= node.Depth)
            Close();
        const bool bNests = nNode > 0 && !node.Children.isEmpty() && m_open.size() < c_nMapLevels;
        m_out += "<li id=\"n" + QByteArray::number(node.Row.Id) + (bNests ? "\" class=\"branch\">" : "\">");
        m_navigation.AppendLink(m_out, nNode, {});
        m_out += m_navigation.LinkOf(nNode).Text + "</a>";
        if (!bNests) {
            m_out += "</li>\n";
            return;
        }
        m_navigation.AppendSwitch(m_out, nNode, m_bOpen || m_open.isEmpty());
        m_open.append(nNode);
    }

    const CNavigation& m_navigation;
    const QList<SiteNode>& m_nodes;
    QByteArray m_out;
    QList<int> m_open;
    bool m_bOpen;
};

QByteArray CNavigation::SiteMap() const {
    return CMapWriter(*this).Write();
}
