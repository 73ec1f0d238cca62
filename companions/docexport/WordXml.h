#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QXmlStreamReader>

/// The pieces of WordprocessingML that the converter doesn't write.
namespace WordXml {

/// A node's heading.
struct Heading {
    QString Title;
    /// 1 to 9.
    int Level = 1;
    /// A letter and then letters and digits.
    QString Bookmark;
    enum class ESheet {
        /// One of the first level begins a sheet, a deeper one none.
        ByLevel,
        /// One of the first level that stands on the sheet that has been begun.
        Shared,
        Own
    };
    ESheet Sheet = ESheet::ByLevel;
};

QByteArray Paragraph(const QByteArray& styleId, const QString& strText);
/// nNumber tells bookmarks from each other.
QByteArray HeadingParagraph(const Heading& heading, int nNumber);
/// The table of contents: a field that a word processor can update, filled in already. Page numbers are
/// marks, which Finished replaces.
QByteArray Contents(const QString& strTitle, const QList<Heading>& headings);

/// Cuts a text that comes in blocks so that no paragraph's properties are cut in two.
class CWholeParagraphs {
public:
    /// What is ready with the next block; an empty one ends the text.
    QByteArray Take(const QByteArray& block);

private:
    QByteArray m_pending;
};

/// Gives the document's text the pages of bookmarks in the table of contents, and the properties of
/// paragraphs and pictures as the format wants them. A bookmark without a page gets none.
class CFinisher {
public:
    /// The pages must outlive the object.
    explicit CFinisher(const QHash<QString, int>& pages) : m_pages(pages) {}
    /// The next piece of the text, what is ready of it; an empty one ends it.
    QByteArray Take(const QByteArray& block);

private:
    QByteArray Finished(const QByteArray& text) const;

    const QHash<QString, int>& m_pages;
    CWholeParagraphs m_text;
};

/// The lists' numbers and points, closer to the margin than the converter puts them.
QByteArray CloserLists(QByteArray numbering);

/// How many headings of nodes the document has.
class CHeadingCount {
public:
    void Take(const QByteArray& block);
    /// -1 when what was taken isn't well-formed, or is not whole.
    int Count() const;

private:
    QXmlStreamReader m_xml;
    int m_nCount = 0;
};

} // namespace WordXml
