#pragma once

#include "companions/compiler/SitePlan.h"

#include <QByteArray>
#include <QList>

#include <memory>
#include <mutex>

/// The ways from page to page: the tree beside each page, the path above it, its neighbours below it, and the
/// site map. They stand on every page, so they are written straight as UTF-8 bytes, from what is known of
/// each node once. All of it is plain HTML that works by keyboard and without scripts. May be used by several
/// threads at once.
class CNavigation {
public:
    explicit CNavigation(const CSitePlan& plan);

    /// A link to a node: the opening tag, with what the node's open type asks for. "up" leads from the page
    /// to the site's root ("../" for each folder), more stands among the attributes.
    void AppendLink(QByteArray& out, int nNode, const QByteArray& up, const QByteArray& more = {}) const;

    /// The tree, for the page of a node, -1 for pages of no node. A small course has its whole tree on each
    /// page; of a larger one a page shows its path, siblings and children, or the site would grow with the
    /// square of the course.
    void AppendTree(QByteArray& out, int nCurrent, const QByteArray& up) const;
    /// Links to the nodes above a node.
    void AppendPath(QByteArray& out, int nNode, const QByteArray& up) const;
    /// Links to the pages before and behind a node's, in the order of the tree.
    void AppendNeighbours(QByteArray& out, int nNode, const QByteArray& up) const;
    /// The whole tree, for the page in the site's root. Each node has the anchor "n<Id>".
    QByteArray SiteMap() const;

    static constexpr const char* c_szStartPage = "index.html";
    static constexpr const char* c_szSiteMap = "sitemap.html";

private:
    struct Link {
        QByteArray Address;
        QByteArray Attributes;
        QByteArray Title;
        /// For whoever can't see that a new window opens.
        QByteArray Text;
        bool IsOutside = false;
    };
    /// Links that are made together when the first of them is asked for.
    struct Block {
        std::once_flag Once;
        QList<Link> Links;
    };
    static constexpr int c_nNodesInBlock = 64;
    Link MakeLink(int nNode) const;
    const Link& LinkOf(int nNode) const;
    class CTreeWriter;
    class CMapWriter;

    void AppendSwitch(QByteArray& out, int nNode, bool bOpen) const;
    bool IsStation(int nNode) const;

    const CSitePlan& m_plan;
    const QList<SiteNode>& m_nodes;
    /// Of each node among its siblings.
    QList<int> m_places;
    std::unique_ptr<Block[]> m_blocks;
};
