#include "companions/docexport/Pieces.h"

#include "companions/common/FileFault.h"
#include "companions/docexport/Package.h"
#include "companions/docexport/PrintedPage.h"
#include "companions/docexport/Texts.h"
#include "companions/docexport/WordXml.h"
#include "foundation/Exceptions.h"

#include <QFile>
#include <QHash>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

constexpr char c_text[] = "word/document.xml";
constexpr char c_relations[] = "word/_rels/document.xml.rels";
constexpr char c_types[] = "[Content_Types].xml";
constexpr char c_numbering[] = "word/numbering.xml";
constexpr QByteArrayView c_media = "word/media/";

/// Our own bookmarks, which differ already, are above.
constexpr int c_nTheirIds = 1'000'000;
constexpr int c_nIdsOfPiece = 10'000'000;

/// Of a piece: what keeps its names from those of others.
QByteArray Prefix(qsizetype nPiece) {
    return nPiece == 0 ? QByteArray() : 'p' + QByteArray::number(nPiece);
}

QByteArray MediaName(const QByteArray& name, qsizetype nPiece) {
    return QByteArray(name).insert(c_media.size(), Prefix(nPiece));
}

/// The lists of the document, as the pieces number them and as it does.
class CNumbers {
public:
    /// How the document numbers a piece's lists.
    QHash<QByteArray, QByteArray> Take(const QByteArray& numbering) {
        for (const QByteArray& kind : Elements(numbering, "<w:abstractNum ", "</w:abstractNum>")) {
            const QByteArray id = Value(kind, "w:abstractNumId=\"");
            if (!m_kinds.contains(id)) {
                m_kinds.insert(id);
                m_kindsXml += kind;
                if (!kind.contains("w:numFmt w:val=\"bullet\""))
                    m_counted.insert(id);
            }
        }
        QHash<QByteArray, QByteArray> numbers;
        for (const QByteArray& list : Elements(numbering, "<w:num ", "</w:num>")) {
            const QByteArray kind = Value(list, "<w:abstractNumId w:val=\"");
            const QByteArray id = Value(list, "w:numId=\"");
            const QByteArray shared = m_counted.contains(kind) ? QByteArray() : m_shared.value(kind);
            const QByteArray number = shared.isEmpty() ? QByteArray::number(++m_nLast) : shared;
            numbers.insert(id, number);
            if (!shared.isEmpty())
                continue;
            m_shared.insert(kind, number);
            m_listsXml += QByteArray(list).replace(QByteArray("w:numId=\"" + id + '"'),
                                                   QByteArray("w:numId=\"" + number + '"'));
        }
        return numbers;
    }
    /// The first piece's part, with the lists of all.
    QByteArray Joined(const QByteArray& numbering) const {
        qsizetype nBegin = numbering.indexOf("<w:abstractNum ");
        if (nBegin < 0)
            nBegin = numbering.indexOf("</w:numbering>");
        return numbering.left(nBegin) + m_kindsXml + m_listsXml + "</w:numbering>";
    }

private:
    static QList<QByteArray> Elements(const QByteArray& xml, const QByteArray& begin, const QByteArray& end) {
        QList<QByteArray> elements;
        for (qsizetype nAt = xml.indexOf(begin); nAt >= 0; nAt = xml.indexOf(begin, nAt)) {
            const qsizetype nEnd = xml.indexOf(end, nAt);
            if (nEnd < 0)
                break;
            elements.append(xml.mid(nAt, nEnd + end.size() - nAt));
            nAt = nEnd;
        }
        return elements;
    }
    static QByteArray Value(const QByteArray& xml, const QByteArray& before) {
        const qsizetype nAt = xml.indexOf(before);
        const qsizetype nBegin = nAt + before.size();
        return nAt < 0 ? QByteArray() : xml.mid(nBegin, xml.indexOf('"', nBegin) - nBegin);
    }

    QSet<QByteArray> m_kinds;
    /// The kinds of which each list begins anew.
    QSet<QByteArray> m_counted;
    QHash<QByteArray, QByteArray> m_shared;
    QByteArray m_kindsXml;
    QByteArray m_listsXml;
    int m_nLast = 0;
};

/// What a piece points to outside of its text, for the first one's part.
QByteArray Relations(const QByteArray& xml, qsizetype nPiece) {
    QByteArray relations;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != "Relationship"_L1)
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        const QString strType = attributes.value("Type"_L1).toString();
        const bool bPicture = strType.endsWith("/image"_L1);
        if (!bPicture && !strType.endsWith("/hyperlink"_L1))
            continue;
        QString strTarget = attributes.value("Target"_L1).toString();
        if (bPicture && strTarget.startsWith("media/"_L1))
            strTarget.insert(qsizetype(qstrlen("media/")), QString::fromLatin1(Prefix(nPiece)));
        relations += "<Relationship Id=\"" + Prefix(nPiece) + attributes.value("Id"_L1).toUtf8() +
                     "\" Type=\"" + MarkupText(strType) + "\" Target=\"" + MarkupText(strTarget) + '"';
        if (const auto mode = attributes.value("TargetMode"_L1); !mode.isEmpty())
            relations += " TargetMode=\"" + mode.toUtf8() + '"';
        relations += "/>";
    }
    return relations;
}

QByteArray MediaTypes(const QByteArray& xml, qsizetype nPiece) {
    QByteArray types;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != "Override"_L1)
            continue;
        const QByteArray name = reader.attributes().value("PartName"_L1).mid(1).toUtf8();
        if (name.startsWith(c_media))
            types += "<Override PartName=\"/" + MediaName(name, nPiece) + "\" ContentType=\"" +
                     MarkupText(reader.attributes().value("ContentType"_L1).toString()) + "\"/>";
    }
    return types;
}

/// Changes each value that stands between the two texts.
void ChangeValues(QByteArray& xml, const QByteArray& before, const QByteArray& behind,
                  const std::function<QByteArray(const QByteArray&)>& change) {
    QByteArray out;
    qsizetype nTaken = 0;
    for (qsizetype nAt = xml.indexOf(before); nAt >= 0; nAt = xml.indexOf(before, nAt)) {
        nAt += before.size();
        const qsizetype nEnd = xml.indexOf('"', nAt);
        if (nEnd < 0 || !QByteArrayView(xml).sliced(nEnd).startsWith(behind))
            continue;
        out += QByteArrayView(xml).sliced(nTaken, nAt - nTaken);
        out += change(xml.mid(nAt, nEnd - nAt));
        nTaken = nAt = nEnd;
    }
    if (nTaken > 0)
        xml = out + xml.mid(nTaken);
}

/// A piece's text, with names and numbers that no other piece has, between the first one's head and foot.
class CPieceText {
public:
    CPieceText(qsizetype nPiece, const QHash<QByteArray, QByteArray>& numbers, QByteArray& foot)
        : m_nPiece(nPiece), m_numbers(numbers), m_foot(foot) {}

    QByteArray Take(const QByteArray& block) {
        QByteArray text = m_paragraphs.Take(block);
        if (m_bHead && !text.isEmpty()) {
            m_bHead = false;
            if (m_nPiece > 0)
                text.remove(0, text.indexOf("<w:body>") + qsizetype(qstrlen("<w:body>")));
        }
        if (block.isEmpty()) {
            const qsizetype nFoot = text.lastIndexOf("<w:sectPr");
            if (nFoot < 0)
                throw Torvane::CRunException(DocText::c_strBrokenDocument);
            if (m_nPiece == 0)
                m_foot = text.mid(nFoot);
            text.truncate(nFoot);
        }
        Rename(text);
        return text;
    }

private:
    void Rename(QByteArray& text) const {
        ChangeValues(text, "<w:numId w:val=\"", {},
                     [this](const QByteArray& number) { return m_numbers.value(number, number); });
        if (m_nPiece == 0)
            return;
        const auto addToId = [this](const QByteArray& id) -> QByteArray {
            const int nId = id.toInt();
            return nId >= c_nTheirIds ? id : QByteArray::number(nId + int(m_nPiece) * c_nIdsOfPiece);
        };
        ChangeValues(text, "<w:bookmarkStart w:id=\"", {}, addToId);
        ChangeValues(text, "<w:bookmarkEnd w:id=\"", {}, addToId);
        ChangeValues(text, " id=\"", "\" name=\"Picture\"", addToId);
        for (const char* szName : {"r:embed=\"", "<w:hyperlink r:id=\""})
            ChangeValues(text, szName, {},
                         [this](const QByteArray& id) -> QByteArray { return Prefix(m_nPiece) + id; });
    }

    const qsizetype m_nPiece;
    const QHash<QByteArray, QByteArray>& m_numbers;
    QByteArray& m_foot;
    WordXml::CWholeParagraphs m_paragraphs;
    bool m_bHead = true;
};

class CJoin {
public:
    CJoin(const QStringList& pieces, const QString& strTo) : m_pieces(pieces), m_strTo(strTo) {}

    void Run() {
        for (qsizetype i = 0; i < m_pieces.size(); ++i)
            ReadSmallParts(i);
        const QString strText = m_strTo + u".text"_s;
        QFile::remove(strText);
        for (qsizetype i = 0; i < m_pieces.size(); ++i)
            AppendText(i, strText);
        QFile text(strText);
        if (!text.open(QIODevice::Append) || text.write(m_foot) != m_foot.size() || !text.flush())
            throw Torvane::CRunException(DocText::c_strCannotWrite.arg(strText, FileFaultText(text)));
        text.close();
        Package::CWriter writer(m_strTo);
        for (qsizetype i = 0; i < m_pieces.size(); ++i)
            CopyParts(i, writer);
        writer.AddFile(c_text, strText);
        writer.Close();
        QFile::remove(strText);
    }

private:
    void ForEachPart(qsizetype nPiece, const std::function<void(Package::CReader&)>& take) const {
        Package::CReader in(m_pieces[nPiece]);
        while (in.Next())
            take(in);
        if (!in.IsGood())
            throw Torvane::CRunException(DocText::c_strBrokenDocument);
    }
    void ReadSmallParts(qsizetype nPiece) {
        m_numbers.append(QHash<QByteArray, QByteArray>());
        ForEachPart(nPiece, [&](Package::CReader& in) {
            if (in.Name() == c_numbering)
                m_numbers.last() = m_lists.Take(in.Rest());
            else if (in.Name() == c_relations && nPiece > 0)
                m_relations += Relations(in.Rest(), nPiece);
            else if (in.Name() == c_types && nPiece > 0)
                m_types += MediaTypes(in.Rest(), nPiece);
        });
    }
    void AppendText(qsizetype nPiece, const QString& strText) {
        CPieceText text(nPiece, m_numbers[nPiece], m_foot);
        ForEachPart(nPiece, [&](Package::CReader& in) {
            if (in.Name() == c_text)
                Package::AppendFiltered(in, strText,
                                        [&text](const QByteArray& block) { return text.Take(block); });
        });
    }
    void CopyParts(qsizetype nPiece, Package::CWriter& writer) const {
        ForEachPart(nPiece, [&](Package::CReader& in) {
            const bool bMedia = in.Name().startsWith(c_media);
            if (in.Name() == c_text || (nPiece > 0 && !bMedia))
                return;
            Package::Part part{bMedia ? MediaName(in.Name(), nPiece) : in.Name(), in.Rest()};
            if (part.Name == c_numbering)
                part.Bytes = m_lists.Joined(part.Bytes);
            else if (part.Name == c_relations)
                part.Bytes.replace("</Relationships>", QByteArray(m_relations + "</Relationships>"));
            else if (part.Name == c_types)
                part.Bytes.replace("</Types>", QByteArray(m_types + "</Types>"));
            writer.Add(part);
        });
    }

    const QStringList& m_pieces;
    const QString m_strTo;
    CNumbers m_lists;
    QList<QHash<QByteArray, QByteArray>> m_numbers;
    QByteArray m_relations;
    QByteArray m_types;
    QByteArray m_foot;
};

} // namespace

void JoinPieces(const QStringList& pieces, const QString& strTo) {
    CJoin(pieces, strTo).Run();
}
