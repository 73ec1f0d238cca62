#include "office/Conversion.h"

#include "office/OutputFile.h"
#include "office/PageCleaner.h"
#include "office/SlidePages.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace Torvane::Office {
namespace {

// Sharp on a projector, and small enough for a school's network.
constexpr int c_nSlidePixels = 1600;
// A drawn slide is smaller and sharper as PNG; one with a photograph is not.
constexpr qint64 c_nLargePng = 200'000;

/// Ends early once the conversion may not go on.
class CStoppableFile : public QFile {
public:
    CStoppableFile(const CConverter& converter, const QString& strPath)
        : QFile(strPath), m_converter(converter) {}

protected:
    qint64 readData(char* pData, qint64 nMax) override {
        return m_converter.State() == EConversion::Done ? QFile::readData(pData, nMax) : -1;
    }

private:
    const CConverter& m_converter;
};

/// Moves the pictures that a page names out of the converter's output, under names that any server and any
/// system can keep.
class CPictureMover {
public:
    CPictureMover(const CConverter& converter, const QString& strStem)
        : m_strFrom(converter.Path(u"out"_s)), m_strTo(converter.Path(u"files"_s)),
          m_strAddress(QString::fromLatin1(QUrl::toPercentEncoding(strStem + u".files"_s)) + u'/') {}

    QString operator()(const QString& strReference) {
        if (const auto it = m_moved.find(strReference); it != m_moved.end())
            return *it;
        const QString strName = QUrl::fromPercentEncoding(strReference.toUtf8());
        const QString strEnding = QFileInfo(strName).suffix().toLower();
        // Not SVG: opened by itself it is a page that may hold scripts.
        static const QStringList endings = {u"png"_s, u"jpg"_s, u"jpeg"_s, u"gif"_s, u"bmp"_s, u"webp"_s};
        // Only what the converter wrote beside the page: a name with a folder or an address leads elsewhere.
        if (strName.contains(u'/') || !endings.contains(strEnding) || !QDir().mkpath(m_strTo))
            return QString();
        const QString strNew = u"image%1.%2"_s.arg(m_moved.size() + 1, 3, 10, QChar(u'0')).arg(strEnding);
        if (!QFile::rename(m_strFrom + u'/' + strName, m_strTo + u'/' + strNew))
            return QString();
        return *m_moved.insert(strReference, m_strAddress + strNew);
    }

private:
    QString m_strFrom;
    QString m_strTo;
    QString m_strAddress;
    QHash<QString, QString> m_moved;
};

EConversion ReadPlainText(CConverter& converter, const QString& strSource, QString& strText) {
    const EConversion eEnd = converter.Convert(strSource, u"txt:Text (encoded):UTF8"_s, u"source.txt"_s);
    if (eEnd == EConversion::Done) {
        strText = QString::fromUtf8(ReadWhole(converter.Path(u"out/source.txt"_s)).value_or(QByteArray()));
        // The mark of the coding would be a part of the first label.
        if (strText.startsWith(QChar::ByteOrderMark))
            strText.remove(0, 1);
    }
    // The page is worth having without it.
    return eEnd == EConversion::Failed ? EConversion::Done : eEnd;
}

EConversion MakePage(CConverter& converter, EKind eKind, const QString& strSource, const QString& strStem,
                     const QString& strTitle) {
    const QString strFilter = eKind == EKind::Sheet ? u"html:HTML (StarCalc)"_s : u"html:HTML (StarWriter)"_s;
    const EConversion eEnd = converter.Convert(strSource, strFilter, u"source.html"_s);
    if (eEnd != EConversion::Done)
        return eEnd;
    const auto html = ReadWhole(converter.Path(u"out/source.html"_s));
    if (!html)
        return EConversion::Failed;
    QString strPlainText;
    if (eKind == EKind::Document && html->contains("<ol")) {
        const EConversion eText = ReadPlainText(converter, strSource, strPlainText);
        if (eText != EConversion::Done)
            return eText;
    }
    CPictureMover mover(converter, strStem);
    const auto mayGoOn = [&converter] { return converter.State() == EConversion::Done; };
    const auto page = CleanPage(eKind, *html, strTitle, std::ref(mover), strPlainText, mayGoOn);
    if (const EConversion eState = converter.State(); eState != EConversion::Done)
        return eState;
    return page && WriteBytes(converter.Path(u"page.htm"_s), *page) ? EConversion::Done : EConversion::Failed;
}

QStringList FilesOf(const QString& strFolder, const QString& strPattern) {
    return QDir(strFolder).entryList({strPattern}, QDir::Files, QDir::Name);
}

/// Draws the page once more as JPEG, and keeps the smaller file of the two. Answers its name.
QString SmallerPicture(CConverter& converter, const QString& strPdf, int nPage, const QString& strPng) {
    const QString strFolder = converter.Path(u"files"_s);
    const QString strTrial = converter.Path(u"tmp"_s);
    const QString strNumber = QString::number(nPage);
    converter.DrawPages(strPdf,
                        {u"-jpeg"_s, u"-jpegopt"_s, u"quality=86"_s, u"-scale-to"_s,
                         QString::number(c_nSlidePixels), u"-f"_s, strNumber, u"-l"_s, strNumber},
                        strTrial);
    const QStringList made = FilesOf(strTrial, u"p*.jpg"_s);
    if (made.isEmpty())
        return strPng;
    const QFileInfo jpeg(strTrial + u'/' + made.first());
    const QString strName = QFileInfo(strPng).completeBaseName() + u".jpg"_s;
    const bool bSmaller = jpeg.size() > 0 && jpeg.size() < QFileInfo(strFolder + u'/' + strPng).size() &&
                          QFile::rename(jpeg.filePath(), strFolder + u'/' + strName);
    QFile::remove(bSmaller ? strFolder + u'/' + strPng : jpeg.filePath());
    return bSmaller ? strName : strPng;
}

/// The pictures of all pages of the PDF file in the folder "files", in order.
EConversion DrawSlides(CConverter& converter, const QString& strPdf, QStringList& pictures) {
    const QString strFolder = converter.Path(u"files"_s);
    QDir().mkpath(strFolder);
    const EConversion eEnd =
        converter.DrawPages(strPdf, {u"-png"_s, u"-scale-to"_s, QString::number(c_nSlidePixels)}, strFolder);
    if (eEnd != EConversion::Done)
        return eEnd;
    for (const QString& strDrawn : FilesOf(strFolder, u"p*.png"_s)) {
        QString strName = u"slide%1.png"_s.arg(pictures.size() + 1, 4, 10, QChar(u'0'));
        const QString strPath = strFolder + u'/' + strName;
        if (!QFile::rename(strFolder + u'/' + strDrawn, strPath))
            return EConversion::Failed;
        if (QFileInfo(strPath).size() > c_nLargePng)
            strName = SmallerPicture(converter, strPdf, int(pictures.size()) + 1, strName);
        pictures.append(strName);
    }
    return pictures.isEmpty() ? EConversion::Failed : converter.State();
}

/// The texts that belong to the pictures. Those of hidden slides have none.
QList<CSlide> ShownSlides(const QList<CSlide>& all, qsizetype nPictures) {
    QList<CSlide> shown;
    for (const CSlide& slide : all) {
        if (!slide.bHidden || all.size() == nPictures)
            shown.append(slide);
    }
    shown.resize(nPictures);
    return shown;
}

EConversion MakePresentation(CConverter& converter, const QString& strSource, const QString& strStem,
                             const QString& strTitle) {
    EConversion eEnd = converter.Convert(strSource, u"fodp"_s, u"source.fodp"_s);
    if (eEnd != EConversion::Done)
        return eEnd;
    CStoppableFile file(converter, converter.Path(u"out/source.fodp"_s));
    if (!file.open(QIODevice::ReadOnly))
        return EConversion::Failed;
    const QList<CSlide> all = ReadSlides(file);
    const bool bAllHidden =
        std::all_of(all.begin(), all.end(), [](const CSlide& slide) { return slide.bHidden; });
    // A presentation with nothing but hidden slides is shown as if they were none.
    const QString strFilter =
        u"pdf:impress_pdf_Export:{\"ExportHiddenSlides\":{\"type\":\"boolean\",\"value\":\"%1\"}}"_s.arg(
            bAllHidden ? u"true"_s : u"false"_s);
    eEnd = converter.Convert(strSource, strFilter, u"source.pdf"_s);
    QStringList pictures;
    if (eEnd == EConversion::Done)
        eEnd = DrawSlides(converter, converter.Path(u"out/source.pdf"_s), pictures);
    if (eEnd != EConversion::Done)
        return eEnd;
    const bool bWritten =
        WriteSlidePages(converter.Path(u"files"_s), strTitle, ShownSlides(all, pictures.size()), pictures) &&
        WriteBytes(converter.Path(u"page.htm"_s), PresentationPage(strStem, strTitle));
    return bWritten ? EConversion::Done : EConversion::Failed;
}

} // namespace

EConversion MakePages(CConverter& converter, EKind eKind, const QString& strSource, const QString& strStem,
                      const QString& strTitle) {
    return eKind == EKind::Presentation ? MakePresentation(converter, strSource, strStem, strTitle)
                                        : MakePage(converter, eKind, strSource, strStem, strTitle);
}

} // namespace Torvane::Office
