#pragma once

#include <QString>

#include <optional>

class CBookNode;

/// The rules of links to places inside a course, apart from the dialog in which one is chosen. A place is a
/// page as a document tells its own URL ("file://Z:\…\Content.htm#a", see PathToDocumentUrl), an address of
/// the web, or the bare path of a file that is no page.
namespace InSiteLink {

struct Preview {
    /// What the browser surface loads; empty where strText alone shows.
    QString strTarget;
    /// Markup in place of a page.
    QString strText;
    /// The place until the surface knows better.
    QString strPlace;
    /// An address of the web.
    bool bNetwork = false;
};

/// What shows when the node is chosen. A presentation shows its own frame page, in which one can step from
/// slide to slide. Throws Torvane::CRunException when the store can't be read.
Preview PreviewOf(const CBookNode& node);

/// The node in whose folder a link leads, with the course's folder of nodes; -1 for none.
qint32 NodeOf(const QString& strLink, const QString& strNodeResourceFolder);

/// What shows when a link's node is chosen by the link: the place to which it leads. Throws like PreviewOf.
Preview PreviewAt(const CBookNode& node, const QString& strLink);

/// What a browser surface loads for a node's content: its path, or for a link into a page the page's URL with
/// the fragment.
struct Address {
    QString strTarget;
    /// An address of the web.
    bool bNetwork = false;
};
/// Throws like PreviewOf.
Address AddressOf(const CBookNode& node);

/// The place where the surface stands, by its URL and, where the page has a slide frame, by that frame's.
QString PlaceOf(const QString& strUrl, const QString& strSlideUrl);

/// The file of a place inside the course, in the disk's letter case; empty for every other place.
QString PathOf(const QString& strPlace);

/// A place as a person reads it, with the native path.
QString ShownPlace(const QString& strPlace);

/// The place that a person means with a text of that form; any other text comes back. What ends a file's name
/// in an address ends it here, too.
QString TypedPlace(const QString& strShown);

/// The link to a place; none where there is nothing that could be linked to inside the course, whose folder
/// of nodes is given. A slide is linked to through the page that a compiled site has for it.
std::optional<QString> LinkTo(const QString& strPlace, const QString& strNodeResourceFolder);

/// A link as a node of its own stores it: "n13\content.htm#a".
QString StoredPath(const QString& strLink, const QString& strNodeResourceFolder);

/// A link as another node's page refers to it: "../n13/content.htm#a".
QString PageReference(const QString& strLink, const QString& strNodeResourceFolder);

} // namespace InSiteLink
