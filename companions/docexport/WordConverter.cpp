#include "companions/docexport/WordConverter.h"

#include "companions/docexport/Package.h"
#include "companions/docexport/Pieces.h"
#include "companions/docexport/PrintedPage.h"
#include "office/OutputFile.h"
#include "platform/base/FileCalls.h"
#include "platform/base/Process.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <cerrno>

using namespace Qt::StringLiterals;
using Torvane::CRunException;
using Torvane::Office::EConversion;

namespace {

constexpr qint64 c_nLimitMs = 3'600'000;
/// The page numbers are not worth more: the document stands without them.
constexpr qint64 c_nLayoutLimitMs = 1'800'000;
constexpr quint64 c_nMaxFileBytes = quint64{2} << 30;
/// One page may be that large; what takes more than this would slow the whole machine.
const QString c_strMemory = u"-M4g"_s;

constexpr char c_documentPart[] = "word/document.xml";

QString PandocProgram() {
    return Platform::FindSystemProgram(u"pandoc"_s);
}

QByteArray CoreProperties(const CWordConverter::Course& course) {
    const QByteArray now = QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toUtf8();
    const auto time = [&now](const char* szName) -> QByteArray {
        return "<dcterms:" + QByteArray(szName) + " xsi:type=\"dcterms:W3CDTF\">" + now +
               "</dcterms:" + szName + '>';
    };
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
           "<cp:coreProperties "
           "xmlns:cp=\"http://schemas.openxmlformats.org/package/2006/metadata/core-properties\""
           " xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns:dcterms=\"http://purl.org/dc/terms/\""
           " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"><dc:title>" +
           MarkupText(course.Name) + "</dc:title><dc:creator>" + MarkupText(course.Teacher) +
           "</dc:creator><dc:language>zh-CN</dc:language>" + time("created") + time("modified") +
           "</cp:coreProperties>";
}

/// Word can be told to fill in the page numbers of the table of contents as it opens the document.
QByteArray Settings(bool bAskForNumbers) {
    QByteArray settings = Package::ReferencePart(u"settings.xml"_s);
    return !bAskForNumbers ? settings
                           : settings.replace("<w:compat>", "<w:updateFields w:val=\"true\"/><w:compat>");
}

/// The parts but the text.
void Finish(Package::Part& part, const CWordConverter::Course& course, bool bAskForNumbers) {
    if (part.Name == "docProps/core.xml")
        part.Bytes = CoreProperties(course);
    else if (part.Name == "word/settings.xml")
        part.Bytes = Settings(bAskForNumbers);
    else if (part.Name == "word/numbering.xml")
        part.Bytes = WordXml::CloserLists(part.Bytes);
}

/// The pages of the outline's entries, in their order.
QList<int> OutlinePages(const QString& strPath) {
    QList<int> pages;
    QFile file(strPath);
    if (!file.open(QIODevice::ReadOnly))
        return pages;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == "item"_L1)
            pages.append(xml.attributes().value("page"_L1).toInt());
    }
    return xml.hasError() ? QList<int>() : pages;
}

} // namespace

CWordConverter::CWordConverter(DocProgress& progress)
    : m_progress(progress), m_converter([this] { return !m_progress.bCancelled; }, c_nLimitMs) {
    if (PandocProgram().isEmpty())
        throw CRunException(DocText::c_strNoConverter);
    if (!m_converter.IsReady() || !QDir().mkpath(PictureFolder()) ||
        !QDir().mkpath(m_converter.Path(u"pandoc"_s)))
        throw CRunException(DocText::c_strNoTemporary.arg(
            QDir::tempPath(), Platform::SystemErrorText(m_converter.IsOutOfSpace() ? ENOSPC : EACCES)));
}

void CWordConverter::WriteInput(const QString& strName, const QByteArray& bytes) const {
    if (!Torvane::Office::WriteBytes(m_converter.Path(strName), bytes))
        throw CRunException(DocText::c_strCannotWrite.arg(
            m_converter.Path(strName),
            Platform::SystemErrorText(m_converter.IsOutOfSpace() ? ENOSPC : EACCES)));
}

void CWordConverter::Check(EConversion eEnd) const {
    if (eEnd == EConversion::Cancelled)
        throw CDocCancelled();
    if (eEnd == EConversion::TimedOut)
        throw CRunException(DocText::c_strTimedOut);
}

QString CWordConverter::RunPandoc(int nPiece) {
    const QString strOutput = m_converter.Path(u"out/%1.docx"_s.arg(nPiece));
    const QStringList arguments{u"+RTS"_s, c_strMemory, u"-RTS"_s,
                                // The person's own styles and filters have no say.
                                u"--data-dir"_s, m_converter.Path(u"pandoc"_s), u"--from"_s, u"html"_s,
                                u"--to"_s, u"docx"_s, u"--lua-filter"_s, m_converter.Path(u"filter.lua"_s),
                                u"--reference-doc"_s, m_converter.Path(u"reference.docx"_s),
                                u"--resource-path"_s, PictureFolder(), u"--output"_s, strOutput,
                                PiecePath(nPiece)};
    QMap<QString, QString> environment{{u"LC_ALL"_s, u"C.UTF-8"_s},
                                       {u"TMPDIR"_s, m_converter.Path(u"tmp"_s)}};
    // Nothing that it is given names an address; this door is closed all the same.
    for (const QString& strName : {u"http_proxy"_s, u"https_proxy"_s, u"HTTP_PROXY"_s, u"HTTPS_PROXY"_s})
        environment.insert(strName, u"http://127.0.0.1:9"_s);
    // Its memory is bounded by its own option: it reserves far more addresses than it uses.
    const auto eEnd = Platform::RunGroup({PandocProgram(), arguments, environment, 0, c_nMaxFileBytes},
                                         [this] { return m_converter.State() == EConversion::Done; });
    Check(m_converter.State());
    if (eEnd != Platform::EProgramEnd::Ended)
        throw CRunException(DocText::c_strNoConverter);
    if (QFileInfo(strOutput).size() <= 0)
        throw CRunException(
            m_converter.IsOutOfSpace()
                ? DocText::c_strNoTemporary.arg(QDir::tempPath(), Platform::SystemErrorText(ENOSPC))
                : DocText::c_strConverterFailed);
    return strOutput;
}

void CWordConverter::Join(const QStringList& pieces, const QString& strTo) const {
    try {
        JoinPieces(pieces, strTo);
    } catch (const CRunException&) {
        // A full volume leaves half a piece.
        if (m_converter.IsOutOfSpace())
            throw CRunException(
                DocText::c_strNoTemporary.arg(QDir::tempPath(), Platform::SystemErrorText(ENOSPC)));
        throw;
    }
}

void CWordConverter::WriteDocument(const QString& strFrom, const QString& strTo, const Course& course,
                                   const QHash<QString, int>& pages, bool bAskForNumbers) const {
    WordXml::CFinisher finisher(pages);
    Package::Rewrite(strFrom, strTo,
                     {c_documentPart, [&](const QByteArray& block) { return finisher.Take(block); },
                      [&](Package::Part& part) { Finish(part, course, bAskForNumbers); }});
}

/// The pages of a document's headings; none when they can't be told.
QList<int> CWordConverter::LayOut(const QString& strDocument) {
    const QString strPdf = m_converter.Path(u"out/layout.pdf"_s);
    QFile::remove(strPdf);
    EConversion eEnd = m_converter.Convert(strDocument, u"pdf:writer_pdf_Export"_s, u"layout.pdf"_s);
    const QString strReader = Platform::FindSystemProgram(u"pdftohtml"_s);
    const QString strOutline = m_converter.Path(u"out/outline"_s);
    QFile::remove(strOutline + u".xml"_s);
    if (eEnd == EConversion::Done && !strReader.isEmpty()) {
        // The text of one page and the outline of all.
        Platform::RunGroup({strReader,
                            {u"-xml"_s, u"-i"_s, u"-f"_s, u"1"_s, u"-l"_s, u"1"_s, strPdf, strOutline},
                            {},
                            0,
                            c_nMaxFileBytes},
                           [this] { return m_converter.State() == EConversion::Done; });
        eEnd = m_converter.State();
    }
    if (eEnd == EConversion::Cancelled)
        throw CDocCancelled();
    return eEnd == EConversion::Done ? OutlinePages(strOutline + u".xml"_s) : QList<int>();
}

/// A large document is laid out in parts, each of which begins a sheet.
QHash<QString, int> CWordConverter::FindPages(const Course& course, const QStringList& pieces) {
    const auto& layouts = course.Text.Layouts;
    m_progress.nLayouts = int(layouts.size());
    m_progress.Stage = DocProgress::EStage::Numbering;
    m_converter.StartLimit(c_nLayoutLimitMs);
    const bool bParts = layouts.size() > 1;
    const QString strEnd = bParts ? RunPandoc(course.Text.Pieces) : QString();
    const QString strJoined = m_converter.Path(u"part.docx"_s);
    const QString strDocument = m_converter.Path(u"layout.docx"_s);
    QHash<QString, int> pages;
    int nBefore = 0;
    for (qsizetype i = 0; i < layouts.size(); ++i) {
        const bool bLast = i + 1 == layouts.size();
        const int nPiece = layouts[i].FirstPiece;
        const qsizetype nHeading = layouts[i].FirstHeading;
        QStringList part =
            pieces.mid(nPiece, (bLast ? course.Text.Pieces : layouts[i + 1].FirstPiece) - nPiece);
        if (!bLast)
            part.append(strEnd);
        Join(part, strJoined);
        WriteDocument(strJoined, strDocument, course, {}, false);
        QList<int> found = LayOut(strDocument);
        // Only when each heading has its entry can it be told which is whose.
        const qsizetype nHeadings = (bLast ? course.Headings.size() : layouts[i + 1].FirstHeading) - nHeading;
        if (found.size() != nHeadings + !bLast)
            return {};
        for (qsizetype n = 0; n < nHeadings; ++n)
            pages.insert(course.Headings[nHeading + n].Bookmark, nBefore + found[n]);
        if (!bLast)
            nBefore += found.last() - 1;
        m_progress.nLaidOut = int(i + 1);
    }
    return pages;
}

CWordConverter::Result CWordConverter::Make(const Course& course) {
    m_progress.Stage = DocProgress::EStage::Converting;
    QFile filter(u":/docexport/filter.lua"_s);
    if (!filter.open(QIODevice::ReadOnly))
        throw CRunException(DocText::c_strConverterFailed);
    WriteInput(u"filter.lua"_s, filter.readAll());
    Package::Write(m_converter.Path(u"reference.docx"_s),
                   Package::ReferenceDocument(course.Name, course.Colors));
    m_progress.nPieces = course.Text.Pieces;
    QStringList pieces;
    for (int i = 0; i < course.Text.Pieces; ++i) {
        pieces.append(RunPandoc(i));
        m_progress.nConverted = i + 1;
    }
    const QHash<QString, int> pages = FindPages(course, pieces);
    const bool bNumbered = !pages.isEmpty() || course.Headings.isEmpty();
    const QString strJoined = m_converter.Path(u"pandoc.docx"_s);
    Join(pieces, strJoined);
    for (const QString& strPiece : pieces)
        QFile::remove(strPiece);
    const QString strMade = m_converter.Path(u"course.docx"_s);
    WriteDocument(strJoined, strMade, course, pages, !bNumbered);
    WordXml::CHeadingCount headings;
    if (!Package::ReadBlocks(strMade, c_documentPart,
                             [&](const QByteArray& block) { headings.Take(block); }) ||
        headings.Count() != course.Headings.size())
        throw CRunException(DocText::c_strBrokenDocument);
    return {strMade, bNumbered};
}
