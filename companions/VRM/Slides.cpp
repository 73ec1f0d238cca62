#include "companions/VRM/Slides.h"

#include "companions/VRM/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "office/SlideList.h"
#include "platform/base/NativePath.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;
using Torvane::CRunException;
using Torvane::Office::EConversion;

namespace {

const QString c_strPage = u"\\slides.htm"_s;
const QString c_strFiles = u"\\slides.files"_s;

QString FailureText(EConversion eEnd) {
    switch (eEnd) {
    case EConversion::NoConverter:
        return RecorderText::c_strNoConverter;
    case EConversion::NoSpace:
        return RecorderText::c_strNoSpace;
    default:
        return RecorderText::c_strNotConverted;
    }
}

} // namespace

void RemoveSlides(const QString& strFolder) {
    Torvane::File::TryDeleteFolder(strFolder + c_strFiles);
    QFile::remove(Platform::ToNativeExact(strFolder + c_strPage));
}

SSlides ConvertSlides(const QString& strPresentation, const QString& strFolder,
                      const Torvane::Office::MayGoOn& mayGoOn) {
    const EConversion eEnd =
        Torvane::Office::SaveOfficeFileAsHtm(strPresentation, strFolder + c_strPage, mayGoOn);
    if (eEnd != EConversion::Done)
        throw CRunException(FailureText(eEnd));
    SSlides slides;
    const QString strFiles = Platform::ToNative(strFolder + c_strFiles);
    for (const Torvane::Office::SlideEntry& entry : Torvane::Office::SlidesIn(strFolder + c_strFiles)) {
        const QString strBase = strFiles + u'/' + QFileInfo(entry.strFile).completeBaseName();
        slides.Pages.append(u"slides.files/"_s + entry.strFile);
        slides.Pictures.append(strBase + (QFile::exists(strBase + u".png"_s) ? u".png"_s : u".jpg"_s));
        slides.Titles.append(entry.strTitle.isEmpty()
                                 ? RecorderText::c_strUntitled.arg(slides.Titles.size() + 1)
                                 : entry.strTitle);
    }
    if (slides.Pages.isEmpty()) {
        RemoveSlides(strFolder);
        throw CRunException(RecorderText::c_strNotConverted);
    }
    // The lecture has a page of its own.
    QFile::remove(Platform::ToNativeExact(strFolder + c_strPage));
    return slides;
}

QByteArray SlidePage(const QString& strTitle, const QStringList& pages, double dRatio) {
    QFile part(u":/recorder/ppt.htm"_s);
    if (!part.open(QIODevice::ReadOnly))
        return {};
    // The names are ours: letters, figures, "." and "/".
    QString strPages;
    for (const QString& strPage : pages)
        strPages += u'"' + strPage + u"\",\n"_s;
    return part.readAll()
        .replace("%TITLE%", strTitle.toHtmlEscaped().toUtf8())
        .replace("%FIRST%", pages.value(0).toUtf8())
        .replace("%RATIO%", QByteArray::number(dRatio, 'f', 4))
        .replace("%PAGES%", strPages.toUtf8());
}
