#include "companions/docexport/DocLinks.h"

#include "course/BookDatabase.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// Where references to nodes are led, a name that no node's folder has.
constexpr QChar c_nodeMark = u'@';
} // namespace

CDocLinks::CDocLinks(const CSitePlan& plan)
    : m_tree(plan.Tree()), m_references(plan.Tree(), plan.Model().Paths().GetNodeResourceFolder(false)) {
    const QList<SiteNode>& nodes = plan.Model().Nodes();
    for (int i = 0; i < nodes.size(); ++i) {
        const StoreRow& row = nodes[i].Row;
        const QString strMark = c_nodeMark + QString::number(row.Id);
        m_references.MapFolder(plan.NodeFolder(row.Id), strMark);
        m_nodesById.insert(row.Id, i);
        const NodePlan& node = plan.Of(i);
        if (row.Type == NodeType::c_nInSiteLink || node.Source.isEmpty() || node.View == ENodeView::Address ||
            m_nodes.contains(node.Source))
            continue;
        m_nodes.insert(node.Source, i);
        m_references.MapToPage(node.Source, strMark);
    }
}

CDocLinks::Target CDocLinks::Find(const QString& strReference, const QString& strFolder) const {
    using EKind = Target::EKind;
    const CReferences::Result result = m_references.Rewrite(strReference, {strFolder, QString()});
    if (result.Found == CReferences::EFound::Missing)
        return {EKind::Missing, result.Text, -1};
    if (result.Found == CReferences::EFound::Unchanged)
        return IsOutsideAddress(strReference.trimmed()) ? Target{EKind::Outside, strReference.trimmed(), -1}
                                                        : Target{};
    const QString strPath = result.Text.section(u'#', 0, 0).section(u'?', 0, 0);
    if (strPath.startsWith(c_nodeMark)) {
        const qint32 nId = strPath.mid(1).toInt();
        return {EKind::Node, BookmarkOf(nId), m_nodesById.value(nId)};
    }
    return {EKind::File, m_tree.FindFile(QUrl::fromPercentEncoding(strPath.toUtf8())), -1};
}
