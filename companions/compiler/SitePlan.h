#pragma once

#include "companions/compiler/References.h"
#include "companions/compiler/SiteModel.h"
#include "companions/compiler/SourceTree.h"

#include <QHash>
#include <QList>
#include <QString>

/// What a node's page in the site shows.
enum class ENodeView {
    Page,     ///< a page of the built-in editor, within the frame
    List,     ///< the automatic list of the children
    Empty,    ///< nothing yet
    Embedded, ///< a page or text of its own, in a frame within the frame
    Picture,
    Player,   ///< a recording that browsers play
    Download, ///< a file for another program
    Video,    ///< a recorded lecture
    Address,  ///< an address outside the course
    Missing,  ///< content that is not there
};

/// Where a node's content comes from and where it stands in the site.
struct NodePlan {
    ENodeView View = ENodeView::Empty;
    /// 0 in the site's frame, 1 new window, 2 maximised, 3 full screen.
    int OpenType = 0;
    /// The node's own page, relative to the site's root; empty when its content opens by itself.
    QString PagePath;
    /// Where its links lead: relative to the site's root, or an address of its own.
    QString Target;
    bool TargetIsAddress = false;
    /// Where in the content an in-site link leads, with its "#".
    QString Fragment;
    /// The content's file in the node resource folder; for a video its folder.
    QString Source;
};

/// Decides every page's place and every node's target before anything is written, so that any page can link
/// to any other.
class CSitePlan {
public:
    /// Throws Torvane::CRunException when nodes have content and the folder for it is gone.
    CSitePlan(const CSiteModel& model, const CSourceTree& tree);

    const CSiteModel& Model() const { return m_model; }
    const CSourceTree& Tree() const { return m_tree; }
    const CReferences& References() const { return m_references; }
    const NodePlan& Of(int nNode) const { return m_plans[nNode]; }
    /// What the teacher should know of: content that is missing, addresses that can't be used.
    const QStringList& Notes() const { return m_notes; }

    /// Files of the resource folder that go to the site: those of the nodes in the tree and of the skin, and
    /// what nodes show from elsewhere. The pages that are written anew are not among them.
    QStringList FilesToCopy() const;
    /// Of the tree's folders, that of a node in the tree or of the skin.
    bool IsPublished(const QString& strSource) const { return m_references.IsPublished(strSource); }

    /// The source file of an editor page, which the site has within a frame.
    bool IsFramedPage(const QString& strSource) const { return m_framed.contains(strSource); }

    /// The node's folder below the resource folder, in the disk's letter case.
    const QString& NodeFolder(int nNode) const { return m_folders[nNode]; }

private:
    void CheckFolder() const;
    QString FolderFor(qint32 nId) const;
    void LookUpFiles();
    void PlanNode(int nNode);
    void PlanPage(int nNode, NodePlan& plan);
    void PlanFile(int nNode, NodePlan& plan);
    void PlanAddress(int nNode, NodePlan& plan);
    void PlanVideo(int nNode, NodePlan& plan);
    void PlanInSiteLink(int nNode);
    void TakeOwnPage(int nNode, NodePlan& plan);
    void TakeFile(int nNode, NodePlan& plan);
    void MarkMissing(int nNode, NodePlan& plan);
    void NotePassedOver();

    const CSiteModel& m_model;
    const CSourceTree& m_tree;
    CReferences m_references;
    QList<NodePlan> m_plans;
    /// Of each node, below the resource folder.
    QStringList m_folders;
    QHash<QString, int> m_nodeOfSource;
    QSet<QString> m_framed;
    QStringList m_notes;
};
