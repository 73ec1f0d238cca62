#include "office/SlideText.h"

#include "office/PageCleaner.h"

#include <QSet>
#include <QXmlStreamReader>

using namespace Qt::Literals::StringLiterals;

namespace Torvane::Office {
namespace {

constexpr qsizetype c_nMaxTitle = 60;
constexpr int c_nMaxListDepth = 9;

/// Collects a slide's paragraphs and opens and closes the lists around them.
class CTextWriter {
public:
    void Paragraph(const QString& strText, const QByteArray& html, int nDepth) {
        if (strText.isEmpty())
            return;
        // A list goes down by one level at a time.
        nDepth = qMin(qMin(nDepth, m_nDepth + 1), c_nMaxListDepth);
        while (m_nDepth > nDepth)
            CloseList();
        if (nDepth == 0) {
            m_out += "<p>" + html + "</p>\n";
            return;
        }
        if (m_nDepth == nDepth)
            m_out += "</li>\n";
        else
            m_out += "<ul>\n";
        m_out += "<li>" + html;
        m_nDepth = nDepth;
    }

    void Raw(const QByteArray& html) {
        EndLists();
        m_out += html;
    }

    QByteArray Take() {
        EndLists();
        QByteArray out;
        out.swap(m_out);
        return out;
    }

private:
    void CloseList() {
        m_out += "</li></ul>\n";
        --m_nDepth;
    }
    void EndLists() {
        while (m_nDepth > 0)
            CloseList();
    }

    QByteArray m_out;
    int m_nDepth = 0;
};

class CSlideReader {
public:
    explicit CSlideReader(QIODevice& file) : m_xml(&file) {}

    QList<CSlide> Run() {
        while (!m_xml.atEnd()) {
            const auto token = m_xml.readNext();
            if (token == QXmlStreamReader::StartElement)
                Start();
            else if (token == QXmlStreamReader::EndElement)
                End();
            else if (token == QXmlStreamReader::Characters && m_bParagraph)
                AddText(m_xml.text().toString());
        }
        // A presentation that ends in the middle of a slide has that slide too.
        if (m_bSlide)
            EndSlide();
        return m_slides;
    }

private:
    QString Attribute(QStringView strName) const {
        for (const auto& attribute : m_xml.attributes()) {
            if (attribute.qualifiedName() == strName)
                return attribute.value().toString();
        }
        return QString();
    }

    /// Parts of a slide that are no text of it.
    bool IsPassedOver(const QString& strName) const {
        static const QSet<QString> names = {u"presentation:notes"_s, u"office:annotation"_s,
                                            u"draw:object"_s,        u"office:binary-data"_s,
                                            u"svg:title"_s,          u"svg:desc"_s,
                                            u"anim:par"_s,           u"office:event-listeners"_s,
                                            u"office:forms"_s,       u"office:scripts"_s,
                                            u"office:settings"_s,    u"office:master-styles"_s};
        if (names.contains(strName))
            return true;
        const QString strClass = Attribute(u"presentation:class");
        return Attribute(u"presentation:placeholder") == u"true" || strClass == u"page-number" ||
               strClass == u"footer" || strClass == u"header" || strClass == u"date-time";
    }

    void Start() {
        const QString strName = m_xml.qualifiedName().toString();
        if (IsPassedOver(strName))
            return m_xml.skipCurrentElement();
        if (strName == u"style:style")
            m_strStyle = Attribute(u"style:name");
        else if (strName == u"style:drawing-page-properties")
            NoteHidden();
        else if (strName == u"draw:page")
            StartSlide();
        else if (m_bSlide)
            StartInSlide(strName);
    }

    void NoteHidden() {
        if (Attribute(u"presentation:visibility") == u"hidden")
            m_hiddenStyles.insert(m_strStyle);
    }

    void StartSlide() {
        if (m_bSlide)
            EndSlide();
        m_bSlide = true;
        m_slide = CSlide();
        m_slide.bHidden = m_hiddenStyles.contains(Attribute(u"draw:style-name"));
        m_strFirstLine.clear();
        m_nListDepth = m_nItemDepth = 0;
    }

    void StartInSlide(const QString& strName) {
        if (strName == u"draw:frame" || strName == u"draw:custom-shape")
            m_bTitle = Attribute(u"presentation:class") == u"title";
        else if (strName == u"text:p" || strName == u"text:h")
            StartParagraph();
        else if (strName == u"text:list")
            ++m_nListDepth;
        else if (strName == u"text:list-item")
            ++m_nItemDepth;
        else if (strName == u"table:table")
            m_writer.Raw("<table>\n");
        else if (strName == u"table:table-row")
            m_writer.Raw("<tr>");
        else if (strName == u"table:table-cell")
            m_writer.Raw("<td>");
        else if (m_bParagraph)
            StartInParagraph(strName);
    }

    void StartInParagraph(const QString& strName) {
        if (strName == u"text:s" || strName == u"text:tab") {
            AddText(u" "_s);
        } else if (strName == u"text:line-break") {
            m_strText += u' ';
            m_strHtml += u"<br>"_s;
        } else if (strName == u"text:a") {
            const QString strAddress = Attribute(u"xlink:href");
            m_bLink = !m_bLink && !strAddress.startsWith(u'#') && IsKeptLink(strAddress);
            if (m_bLink)
                m_strHtml += u"<a target=\"_blank\" rel=\"noopener\" href=\""_s + strAddress.toHtmlEscaped() +
                             u"\">"_s;
        }
    }

    void StartParagraph() {
        EndParagraph();
        m_bParagraph = true;
    }

    void AddText(const QString& strText) {
        for (const QChar c : strText) {
            // Blanks that stand together are one, as in a page.
            if (c.isSpace() && (m_strText.isEmpty() || m_strText.back() == u' '))
                continue;
            m_strText += c.isSpace() ? QChar(u' ') : c;
            m_strHtml += QString(m_strText.back()).toHtmlEscaped();
        }
    }

    void EndLink() {
        if (m_bLink)
            m_strHtml += u"</a>"_s;
        m_bLink = false;
    }

    void EndParagraph() {
        EndLink();
        const QString strLine = m_strText.simplified();
        if (m_bParagraph && m_bTitle && !strLine.isEmpty())
            m_slide.strTitle += (m_slide.strTitle.isEmpty() ? u""_s : u" "_s) + strLine;
        else if (m_bParagraph && m_strFirstLine.isEmpty())
            m_strFirstLine = strLine;
        if (m_bParagraph)
            m_writer.Paragraph(strLine, m_strHtml.toUtf8(),
                               m_nListDepth > 0 && m_nItemDepth > 0 ? m_nItemDepth : 0);
        m_bParagraph = false;
        m_strText.clear();
        m_strHtml.clear();
    }

    void End() {
        const QString strName = m_xml.qualifiedName().toString();
        if (!m_bSlide)
            return;
        if (strName == u"draw:page")
            EndSlide();
        else if (strName == u"draw:frame" || strName == u"draw:custom-shape")
            m_bTitle = false;
        else if (strName == u"text:p" || strName == u"text:h")
            EndParagraph();
        else if (strName == u"text:list")
            --m_nListDepth;
        else if (strName == u"text:list-item")
            --m_nItemDepth;
        else if (strName == u"table:table")
            m_writer.Raw("</table>\n");
        else if (strName == u"table:table-row")
            m_writer.Raw("</tr>\n");
        else if (strName == u"table:table-cell")
            m_writer.Raw("</td>");
        else if (strName == u"text:a")
            EndLink();
    }

    void EndSlide() {
        EndParagraph();
        if (m_slide.strTitle.isEmpty())
            m_slide.strTitle = m_strFirstLine;
        if (m_slide.strTitle.size() > c_nMaxTitle)
            m_slide.strTitle = m_slide.strTitle.left(c_nMaxTitle) + u'…';
        m_slide.text = m_writer.Take();
        m_slides.append(m_slide);
        m_bSlide = m_bTitle = false;
    }

    QXmlStreamReader m_xml;
    QList<CSlide> m_slides;
    QString m_strStyle;
    QSet<QString> m_hiddenStyles;
    bool m_bSlide = false;
    CSlide m_slide;
    bool m_bTitle = false;
    QString m_strFirstLine;
    int m_nListDepth = 0;
    int m_nItemDepth = 0;
    CTextWriter m_writer;
    bool m_bParagraph = false;
    QString m_strText;
    QString m_strHtml;
    bool m_bLink = false;
};

} // namespace

QList<CSlide> ReadSlides(QIODevice& file) {
    return CSlideReader(file).Run();
}

} // namespace Torvane::Office
