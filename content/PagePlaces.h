#pragma once

#include <QList>
#include <QString>

/// The places inside a page, of which a person chooses one for a link. Places of the course are told as
/// InSiteLink has them ("file://Z:\…\Content.htm#a").
namespace PagePlaces {

struct Place {
    /// An anchor's name or a slide's file, as the fragment of an address says it; empty for the whole page.
    QString strName;
    /// The text at the anchor, or the slide's title.
    QString strText;
};

/// Whether a page can have places for a link: it is one of the course, and not of the web.
bool MayHave(const QString& strPlace);

struct Found {
    QList<Place> places;
    /// What to tell a person where there are none.
    QString strWhyNone;
};

/// The places of the page at which a place stands: its slides where it shows a presentation, else its
/// anchors behind the page as a whole. Reads the page's file; never throws, from any thread.
Found Of(const QString& strPlace);

/// The place within the list at which a place stands; -1 for none.
qsizetype IndexOf(const QList<Place>& places, const QString& strPlace);

/// A place without what follows its page.
QString PageOf(const QString& strPlace);

} // namespace PagePlaces
