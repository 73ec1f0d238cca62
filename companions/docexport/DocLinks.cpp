#include "companions/docexport/DocLinks.h"

#include "course/BookDatabase.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// Where references to the folders of nodes are led: what no file's name can hold, and then the node's
/// number.
constexpr QChar c_nodeMark = u'\0';
} // namespace

CDocLinks::CDocLinks(const CSitePlan& plan)
    : m_plan(plan), m_references(plan.Tree(), plan.Model().Paths().GetNodeResourceFolder(false)) {
    const QList<SiteNode>& nodes = plan.Model().Nodes();
    for (int i = 0; i < nodes.size(); ++i) {
        const StoreRow& row = nodes[i].Row;
        m_references.MapFolder(plan.NodeFolder(i), c_nodeMark + QString::number(i));
        const NodePlan& node = plan.Of(i);
        if (row.Type != NodeType::c_nInSiteLink && node.View != ENodeView::Address &&
            !node.Source.isEmpty() && !m_nodes.contains(node.Source))
            m_nodes.insert(node.Source, i);
    }
}

CDocLinks::Target CDocLinks::Find(const QString& strReference, const QString& strFolder) const {
    using EKind = Target::EKind;
    const CReferences::Result result = m_references.Rewrite(strReference, {strFolder, QString()});
    if (result.Found == CReferences::EFound::Missing)
        return {EKind::Missing, result.Dead, -1};
    if (result.Found == CReferences::EFound::Unchanged)
        return IsOutsideAddress(strReference.trimmed()) ? Target{EKind::Outside, strReference.trimmed(), -1}
                                                        : Target{};
    const QString strAddress = result.Text.section(u'#', 0, 0).section(u'?', 0, 0);
    const QString strPath = QUrl::fromPercentEncoding(strAddress.toUtf8());
    if (strPath.startsWith(c_nodeMark))
        return NodeTarget(strPath.mid(1).toInt());
    const QString strFile = m_plan.Tree().FindFile(strPath);
    const int nNode = NodeOf(strFile);
    if (nNode < 0)
        return {EKind::File, strFile, -1};
    Target target = NodeTarget(nNode);
    target.IsDeadAnchor = !result.Dead.isEmpty();
    if (!target.IsDeadAnchor)
        target.Anchor = AnchorOf(result.Text);
    return target;
}

QString CDocLinks::AnchorOf(const QString& strAddress) {
    return QUrl::fromPercentEncoding(strAddress.section(u'#', 1).toUtf8());
}

CDocLinks::Target CDocLinks::NodeTarget(int nNode) const {
    if (nNode < 0 || nNode >= m_plan.Model().Nodes().size())
        return {};
    return {Target::EKind::Node, BookmarkOf(m_plan.Model().Nodes()[nNode].Row.Id), nNode};
}
