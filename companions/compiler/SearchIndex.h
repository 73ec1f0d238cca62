#pragma once

#include "companions/compiler/SitePlan.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// What the site's search reads: script files, so that it works from a disk as well as from a server. The
/// index holds titles and addresses of all nodes and, for each part of the course, a filter that tells which
/// parts can't hold a word; the texts lie in the parts, of which the script loads those that the filters
/// leave. A part holds the texts of c_nNodesInPart nodes that follow each other in the tree, so that a
/// changed page changes one part and a line of the index. The pages of an imported site behind its first one
/// are found each by itself and lie in parts of their own.
namespace SearchIndex {

constexpr int c_nNodesInPart = 64;

/// What a visitor reads of a page or a part of one, in one line.
QString PlainText(const QString& strHtml);

/// The text for which a node is found, besides its title. Reads the node's file, unless its page is at hand
/// as strPage; a file that can't be read gives none.
QString NodeText(const CSitePlan& plan, int nNode, const QString& strPage = {});

int PartCount(const CSitePlan& plan);
/// Relative to the site's root.
QString PartName(int nPart);
QString IndexName();

/// A part's file; texts are of the part's nodes in their order.
QByteArray Part(const CSitePlan& plan, int nPart, const QStringList& texts);
/// Some pages of an imported site or an Office file.
struct SitePages {
    int Node = -1;
    /// Of the part, relative to the site's root.
    QString Name;
    QStringList Sources;
};
/// All parts of this kind, by what the tree tells. Of a huge site the first pages count; its node goes to
/// cut.
QList<SitePages> PagesOfSites(const CSitePlan& plan, QList<int>& cut);
/// The file of one. Reads its pages; those that can't be read are left out.
QByteArray PagesPart(const CSitePlan& plan, const SitePages& pages);

/// The filter of a part's file, of which the beginning suffices (c_nFilterEnd bytes); empty for what is none.
QByteArray FilterOf(const QByteArray& part);
constexpr qint64 c_nFilterEnd = 12000;

/// The file of titles and filters, one of each part: first those of nodes, then those of sites.
QByteArray Index(const CSitePlan& plan, const QList<SitePages>& sites, const QList<QByteArray>& filters);

} // namespace SearchIndex
