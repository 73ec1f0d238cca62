#include "companions/docexport/AnchorMarks.h"

#include "companions/docexport/DocLinks.h"

using namespace Qt::StringLiterals;

namespace {

// Text and attributes of pages are escaped and can't hold these.
constexpr QByteArrayView c_mark = "<span id=\"";
constexpr QByteArrayView c_markEnd = "\"></span>";
constexpr QByteArrayView c_link = "<a href=\"#";

QString BookmarkOf(qint32 nNodeId, int nNumber) {
    return CDocLinks::BookmarkOf(nNodeId) + u'_' + QString::number(nNumber);
}

} // namespace

CAnchorMarks::Place& CAnchorMarks::PlaceOf(qint32 nNodeId, const QString& strAnchor) {
    QHash<QString, Place>& places = m_places[nNodeId];
    Place& place = places[strAnchor];
    if (place.Number == 0)
        place.Number = int(places.size());
    return place;
}

QString CAnchorMarks::LinkTo(qint32 nNodeId, const QString& strAnchor) {
    Place& place = PlaceOf(nNodeId, strAnchor);
    const QString strBookmark = BookmarkOf(nNodeId, place.Number);
    place.IsWanted = true;
    if (place.IsMarked)
        m_kept.insert(strBookmark.toLatin1());
    return u'#' + strBookmark;
}

QByteArray CAnchorMarks::MarkOf(qint32 nNodeId, const QString& strAnchor) {
    Place& place = PlaceOf(nNodeId, strAnchor);
    if (place.IsMarked)
        return {};
    place.IsMarked = true;
    const QByteArray bookmark = BookmarkOf(nNodeId, place.Number).toLatin1();
    if (place.IsWanted)
        m_kept.insert(bookmark);
    return c_mark + bookmark + c_markEnd;
}

QByteArray CAnchorMarks::Finished(const QByteArray& text) const {
    QByteArray out;
    out.reserve(text.size());
    qsizetype nTaken = 0;
    for (qsizetype nAt = text.indexOf('<'); nAt >= 0; nAt = text.indexOf('<', nAt + 1)) {
        const QByteArrayView rest = QByteArrayView(text).sliced(nAt);
        const bool bMark = rest.startsWith(c_mark);
        if (!bMark && !rest.startsWith(c_link))
            continue;
        const qsizetype nName = nAt + (bMark ? c_mark.size() : c_link.size());
        const qsizetype nEnd = text.indexOf('"', nName);
        const QByteArray bookmark = text.mid(nName, nEnd - nName);
        const qsizetype nPlace = bookmark.indexOf('_');
        if (nEnd < 0 || nPlace < 0 || m_kept.contains(bookmark))
            continue;
        out += QByteArrayView(text).sliced(nTaken, (bMark ? nAt : nName + nPlace) - nTaken);
        nTaken = bMark ? nEnd + c_markEnd.size() : nEnd;
    }
    return out + QByteArrayView(text).sliced(nTaken).toByteArray();
}
