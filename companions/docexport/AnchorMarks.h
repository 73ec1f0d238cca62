#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>

/// The places within pages that links of the document lead to, as bookmarks. A page may lead to a place in
/// one that is read later: so every place is marked, and the marks that nothing leads to go in the end.
class CAnchorMarks {
public:
    /// A link's target, with its "#". The anchor is spelled as its page spells it.
    QString LinkTo(qint32 nNodeId, const QString& strAnchor);
    /// The markup of a place; empty when the page has had that anchor already.
    QByteArray MarkOf(qint32 nNodeId, const QString& strAnchor);

    /// A piece of the document's text, which cuts no mark or link in two, when all pages are written: marks
    /// that no link leads to are left out, and links to places that no page has lead to their nodes.
    QByteArray Finished(const QByteArray& text) const;

private:
    struct Place {
        int Number = 0;
        bool IsMarked = false;
        bool IsWanted = false;
    };
    Place& PlaceOf(qint32 nNodeId, const QString& strAnchor);

    QHash<qint32, QHash<QString, Place>> m_places;
    /// By their bookmarks: those that are both marked and wanted.
    QSet<QByteArray> m_kept;
};
