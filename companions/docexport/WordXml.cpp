#include "companions/docexport/WordXml.h"

#include "companions/docexport/PrintedPage.h"

using namespace Qt::StringLiterals;

namespace WordXml {
namespace {

/// Above those that the converter gives.
constexpr int c_nFirstBookmarkId = 1'000'000;
/// Text of pages never stands in such a tag, and its "<" is escaped.
constexpr QByteArrayView c_mark = "<w:t>@";
constexpr QByteArrayView c_markEnd = "</w:t>";
constexpr int c_nMaxLevel = 9;

QByteArray Run(const QString& strText) {
    return "<w:r><w:t xml:space=\"preserve\">" + MarkupText(strText) + "</w:t></w:r>";
}

QByteArray FieldMark(const char* szKind) {
    return "<w:r><w:fldChar w:fldCharType=\"" + QByteArray(szKind) + "\"/></w:r>";
}

QByteArray FieldBegin(const QByteArray& instruction) {
    return FieldMark("begin") + "<w:r><w:instrText xml:space=\"preserve\"> " + instruction +
           " </w:instrText></w:r>" + FieldMark("separate");
}

QByteArray Entry(const Heading& heading, const QByteArray& before, const QByteArray& behind) {
    const QByteArray bookmark = heading.Bookmark.toUtf8();
    return "<w:p><w:pPr><w:pStyle w:val=\"TOC" + QByteArray::number(heading.Level) + "\"/></w:pPr>" + before +
           "<w:hyperlink w:anchor=\"" + bookmark + "\" w:history=\"1\">" + Run(heading.Title) +
           "<w:r><w:tab/></w:r>" + FieldBegin("PAGEREF " + bookmark + " \\h") + "<w:r>" +
           c_mark.toByteArray() + bookmark + c_markEnd.toByteArray() + "</w:r>" + FieldMark("end") +
           "</w:hyperlink>" + behind + "</w:p>";
}

/// Rows of a few lines go to the next sheet as a whole; large ones may be cut, or they would leave gaps.
void KeepRowsWhole(QByteArray& text) {
    constexpr QByteArrayView row = "<w:tr>";
    constexpr QByteArrayView properties = "<w:trPr>";
    constexpr qsizetype c_nFewLines = 6000;
    QByteArray out;
    qsizetype nTaken = 0;
    for (qsizetype nAt = text.indexOf(row); nAt >= 0; nAt = text.indexOf(row, nAt)) {
        nAt += row.size();
        const qsizetype nEnd = text.indexOf("</w:tr>", nAt);
        if (nEnd < 0)
            break;
        if (nEnd - nAt > c_nFewLines)
            continue;
        const bool bProperties = QByteArrayView(text).sliced(nAt).startsWith(properties);
        const qsizetype nPlace = bProperties ? nAt + properties.size() : nAt;
        out += QByteArrayView(text).sliced(nTaken, nPlace - nTaken);
        out += bProperties ? "<w:cantSplit/>" : "<w:trPr><w:cantSplit/></w:trPr>";
        nTaken = nPlace;
    }
    if (nTaken > 0)
        text = out + text.mid(nTaken);
}

} // namespace

QByteArray Paragraph(const QByteArray& styleId, const QString& strText) {
    return "<w:p><w:pPr><w:pStyle w:val=\"" + styleId + "\"/></w:pPr>" + Run(strText) + "</w:p>";
}

QByteArray HeadingParagraph(const Heading& heading, int nNumber) {
    const QByteArray id = QByteArray::number(c_nFirstBookmarkId + nNumber);
    return "<w:p><w:pPr><w:pStyle w:val=\"Heading" + QByteArray::number(heading.Level) + "\"/>" +
           (heading.Sheet == Heading::ESheet::Shared ? "<w:pageBreakBefore w:val=\"0\"/>"
            : heading.Sheet == Heading::ESheet::Own  ? "<w:pageBreakBefore/>"
                                                     : "") +
           "</w:pPr><w:bookmarkStart w:id=\"" + id + "\" w:name=\"" + heading.Bookmark.toUtf8() + "\"/>" +
           Run(heading.Title) + "<w:bookmarkEnd w:id=\"" + id + "\"/></w:p>";
}

QByteArray Contents(const QString& strTitle, const QList<Heading>& headings) {
    QByteArray xml = "<w:sdt><w:sdtPr><w:docPartObj><w:docPartGallery w:val=\"Table of Contents\"/>"
                     "<w:docPartUnique/></w:docPartObj></w:sdtPr><w:sdtContent>" +
                     Paragraph("TOCHeading", strTitle);
    const QByteArray field = FieldBegin("TOC \\o \"1-" + QByteArray::number(c_nMaxLevel) + "\" \\h \\z \\u");
    const QByteArray end = FieldMark("end");
    if (headings.isEmpty())
        xml += "<w:p>" + field + end + "</w:p>";
    // A paragraph for the end alone could be a sheet of its own.
    for (qsizetype i = 0; i < headings.size(); ++i)
        xml +=
            Entry(headings[i], i == 0 ? field : QByteArray(), i + 1 == headings.size() ? end : QByteArray());
    return xml + "</w:sdtContent></w:sdt>";
}

QByteArray CWholeParagraphs::Take(const QByteArray& block) {
    m_pending += block;
    const qsizetype nEnd = block.isEmpty() ? m_pending.size() : m_pending.lastIndexOf("<w:p>");
    if (nEnd <= 0)
        return {};
    const QByteArray ready = m_pending.left(nEnd);
    m_pending.remove(0, nEnd);
    return ready;
}

QByteArray CFinisher::Take(const QByteArray& block) {
    return Finished(m_text.Take(block));
}

QByteArray CFinisher::Finished(const QByteArray& document) const {
    constexpr QByteArrayView numbering = "<w:pPr><w:numPr>";
    constexpr QByteArrayView numberingEnd = "</w:numPr>";
    QByteArray out;
    out.reserve(document.size());
    qsizetype nAt = 0;
    const auto takeTo = [&](qsizetype nEnd) {
        out += QByteArrayView(document).sliced(nAt, nEnd - nAt);
        nAt = nEnd;
    };
    // The contents stand before all lists.
    for (qsizetype nMark = document.indexOf(c_mark); nMark >= 0; nMark = document.indexOf(c_mark, nAt)) {
        const qsizetype nName = nMark + c_mark.size();
        const qsizetype nEnd = document.indexOf(c_markEnd, nName);
        const int nPage = m_pages.value(QString::fromUtf8(document.mid(nName, nEnd - nName)));
        takeTo(nName - 1);
        if (nPage > 0)
            out += QByteArray::number(nPage);
        nAt = nEnd;
    }
    for (qsizetype nList = document.indexOf(numbering, nAt); nList >= 0;
         nList = document.indexOf(numbering, nAt)) {
        const qsizetype nNumber = nList + numbering.size() - qsizetype(qstrlen("<w:numPr>"));
        const qsizetype nStyle = document.indexOf(numberingEnd, nList) + numberingEnd.size();
        takeTo(nNumber);
        // A paragraph's style comes before its number.
        if (QByteArrayView(document).sliced(nStyle).startsWith("<w:pStyle")) {
            const qsizetype nEnd = document.indexOf('>', nStyle) + 1;
            out += document.mid(nStyle, nEnd - nStyle) + document.mid(nNumber, nStyle - nNumber);
            nAt = nEnd;
        }
    }
    takeTo(document.size());
    KeepRowsWhole(out);
    // Without a distance of its own a picture is moved aside by some readers.
    out.replace("<wp:inline>", "<wp:inline distT=\"0\" distB=\"0\" distL=\"0\" distR=\"0\">");
    return out;
}

QByteArray CloserLists(QByteArray numbering) {
    constexpr int c_nTheirStep = 720;
    constexpr int c_nOurStep = 420;
    for (int i = 1; i <= c_nMaxLevel; ++i) {
        const QByteArray theirs = "w:left=\"" + QByteArray::number(i * c_nTheirStep) + "\" w:hanging=\"480\"";
        const QByteArray ours = "w:left=\"" + QByteArray::number((i + 1) * c_nOurStep) + "\" w:hanging=\"" +
                                QByteArray::number(c_nOurStep) + '"';
        numbering.replace(theirs, ours);
    }
    return numbering;
}

void CHeadingCount::Take(const QByteArray& block) {
    m_xml.addData(block);
    while (!m_xml.atEnd()) {
        if (m_xml.readNext() == QXmlStreamReader::StartElement && m_xml.name() == "pStyle"_L1 &&
            m_xml.attributes().value("w:val"_L1).startsWith("Heading"_L1))
            ++m_nCount;
    }
}

int CHeadingCount::Count() const {
    return m_xml.hasError() || !m_xml.atEnd() ? -1 : m_nCount;
}

} // namespace WordXml
