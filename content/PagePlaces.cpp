#include "content/PagePlaces.h"

#include "content/InSiteLink.h"
#include "content/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/PageAnchors.h"
#include "foundation/PageText.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"
#include "office/SlideList.h"

namespace PagePlaces {

namespace {

/// A larger page is none that anybody wrote, and its tree would take as many times the memory.
constexpr qint64 c_nMaxPage = 32 * 1024 * 1024;

Found AnchorsIn(const QString& strPath) {
    QByteArray bytes;
    try {
        bytes = ReadFileBytes(strPath, c_nMaxPage + 1);
    } catch (const Torvane::CException&) {
        return {{}, ContentText::c_strNoPlaces};
    }
    if (bytes.size() > c_nMaxPage)
        return {{}, ContentText::c_strPageTooLarge};
    QList<Place> places;
    for (const PageAnchors::Anchor& anchor : PageAnchors::Find(PageText::Decode(bytes).Text)) {
        if (anchor.bOffered)
            places.append({anchor.strName, anchor.strText});
    }
    if (!places.isEmpty())
        places.prepend({{}, ContentText::c_strWholePage});
    return {places, ContentText::c_strNoPlaces};
}

Found SlidesIn(const QString& strFolder) {
    QList<Place> places;
    for (const Torvane::Office::SlideEntry& slide : Torvane::Office::SlidesIn(strFolder))
        places.append({slide.strFile, slide.strTitle});
    return {places, ContentText::c_strNoPlaces};
}

} // namespace

bool MayHave(const QString& strPlace) {
    return Torvane::File::IsHtmlFile(InSiteLink::PathOf(strPlace));
}

Found Of(const QString& strPlace) {
    const QString strPath = InSiteLink::PathOf(strPlace);
    if (!Torvane::File::IsHtmlFile(strPath))
        return {{}, ContentText::c_strNoPagePlaces};
    return Torvane::Office::IsSlideViewer(strPath) ? SlidesIn(Torvane::File::ParentFolder(strPath))
                                                   : AnchorsIn(strPath);
}

qsizetype IndexOf(const QList<Place>& places, const QString& strPlace) {
    const QString strName = strPlace.mid(PageOf(strPlace).size() + 1);
    qsizetype nLike = -1;
    for (qsizetype i = 0; i < places.size(); ++i) {
        if (places[i].strName == strName)
            return i;
        if (nLike < 0 && EqualsIgnoringCase(places[i].strName, strName))
            nLike = i;
    }
    return nLike;
}

QString PageOf(const QString& strPlace) {
    const qsizetype nHash = strPlace.indexOf(u'#');
    return nHash > 0 ? strPlace.left(nHash) : strPlace;
}

} // namespace PagePlaces
