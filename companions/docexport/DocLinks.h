#pragma once

#include "companions/compiler/References.h"
#include "companions/compiler/SitePlan.h"

#include <QHash>
#include <QString>

/// Finds what the references of the course's pages mean in a document, where a node is a bookmark.
class CDocLinks {
public:
    /// The plan must outlive the object.
    explicit CDocLinks(const CSitePlan& plan);

    struct Target {
        enum class EKind { Nothing, Node, Outside, File, Missing };
        EKind Kind = EKind::Nothing;
        /// A bookmark without its "#", an address, the file's name below the resource folder, or what is
        /// missing.
        QString Text;
        /// The node's place in the model.
        int Node = -1;
        /// The place in the node's page, as that spells it; empty for the page as a whole.
        QString Anchor = {};
        /// The node has no such place.
        bool IsDeadAnchor = false;
    };
    /// strFolder is the page's folder below the resource folder.
    Target Find(const QString& strReference, const QString& strFolder) const;

    static QString BookmarkOf(qint32 nNodeId) { return QStringLiteral("n%1").arg(nNodeId); }
    /// What an address says behind its "#"; empty for nothing.
    static QString AnchorOf(const QString& strAddress);
    /// The node whose content that file is; -1 for none.
    int NodeOf(const QString& strSource) const { return m_nodes.value(strSource, -1); }

private:
    Target NodeTarget(int nNode) const;

    const CSitePlan& m_plan;
    CReferences m_references;
    QHash<QString, int> m_nodes;
};
