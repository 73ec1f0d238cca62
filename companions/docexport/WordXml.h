#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

/// The pieces of WordprocessingML that the converter doesn't write.
namespace WordXml {

/// A node's heading.
struct Heading {
    QString Title;
    /// 1 to 9.
    int Level = 1;
    /// A letter and then letters and digits.
    QString Bookmark;
};

QByteArray Paragraph(const QByteArray& styleId, const QString& strText);
/// nNumber tells bookmarks from each other.
QByteArray HeadingParagraph(const Heading& heading, int nNumber);
/// The table of contents: a field that a word processor can update, filled in already. Page numbers are
/// marks, which Finished replaces.
QByteArray Contents(const QString& strTitle, const QList<Heading>& headings);

/// The document's text with the pages of bookmarks in the table of contents, and with the properties of
/// paragraphs and pictures as the format wants them. A bookmark without a page gets none.
QByteArray Finished(const QByteArray& document, const QHash<QString, int>& pages);

/// How many headings of nodes the document has; -1 when it isn't well-formed.
int CountHeadings(const QByteArray& document);

} // namespace WordXml
