#include "office/SlidePages.h"

#include "office/OutputFile.h"
#include "office/Parts.h"
#include "office/Texts.h"

#include <QUrl>
#include <QXmlStreamWriter>

using namespace Qt::Literals::StringLiterals;

namespace Torvane::Office {
namespace {

QByteArray Escaped(const QString& strText) {
    return strText.toHtmlEscaped().toUtf8();
}

QString TitleOf(const QList<CSlide>& slides, qsizetype nIndex) {
    return slides[nIndex].strTitle.isEmpty() ? Texts::c_strSlide.arg(nIndex + 1) : slides[nIndex].strTitle;
}

QByteArray Outline(const QList<CSlide>& slides) {
    QByteArray out;
    for (qsizetype i = 0; i < slides.size(); ++i)
        out += "<li><a href=\"" + SlideName(i).toUtf8() + "\" target=\"PPTSld\">" +
               Escaped(TitleOf(slides, i)) + "</a></li>\n";
    return out;
}

QByteArray SlideList(const QString& strTitle, const QList<CSlide>& slides) {
    QByteArray out;
    QXmlStreamWriter xml(&out);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(u"presentation"_s);
    xml.writeAttribute(u"title"_s, strTitle);
    for (qsizetype i = 0; i < slides.size(); ++i) {
        xml.writeEmptyElement(u"slide"_s);
        xml.writeAttribute(u"href"_s, SlideName(i));
        xml.writeAttribute(u"title"_s, TitleOf(slides, i));
    }
    xml.writeEndDocument();
    return out;
}

QByteArray Neighbour(qsizetype nIndex, qsizetype nCount) {
    return nIndex < 0 || nIndex >= nCount ? QByteArray("hidden")
                                          : "href=\"" + SlideName(nIndex).toUtf8() + '"';
}

} // namespace

QString SlideName(qsizetype nIndex) {
    return u"slide%1.htm"_s.arg(nIndex + 1, 4, 10, QChar(u'0'));
}

bool WriteSlidePages(const QString& strFolder, const QString& strTitle, const QList<CSlide>& slides,
                     const QStringList& pictures) {
    const auto write = [&](const QString& strName, const QByteArray& bytes) {
        return WriteBytes(strFolder + u'/' + strName, bytes);
    };
    for (qsizetype i = 0; i < slides.size(); ++i) {
        const QByteArray text = slides[i].text;
        if (!write(SlideName(i), Part(u"slide.htm"_s, {{"TITLE", Escaped(TitleOf(slides, i))},
                                                       {"PICTURE", pictures[i].toUtf8()},
                                                       {"TEXT", text},
                                                       {"HASTEXT", text.isEmpty() ? " hidden" : ""},
                                                       {"PREVIOUS", Neighbour(i - 1, slides.size())},
                                                       {"NEXT", Neighbour(i + 1, slides.size())}})))
            return false;
    }
    const QMap<QByteArray, QByteArray> values = {{"TITLE", Escaped(strTitle)},
                                                 {"COUNT", QByteArray::number(slides.size())},
                                                 {"OUTLINE", Outline(slides)}};
    return write(u"frame.htm"_s, Part(u"frame.htm"_s, values)) &&
           write(u"fullscreen.htm"_s, Part(u"fullscreen.htm"_s, values)) &&
           write(u"pres.xml"_s, SlideList(strTitle, slides)) &&
           write(u"slides.css"_s, Part(u"slides.css"_s)) && write(u"slide.js"_s, Part(u"slide.js"_s)) &&
           write(u"frame.js"_s, Part(u"frame.js"_s));
}

QByteArray PresentationPage(const QString& strStem, const QString& strTitle) {
    const QByteArray address =
        QUrl::toPercentEncoding(strStem + u".files"_s).replace('\'', "%27") + "/frame.htm";
    return Part(u"presentation.htm"_s, {{"TITLE", Escaped(strTitle)}, {"ADDRESS", address}});
}

} // namespace Torvane::Office
