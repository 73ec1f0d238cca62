#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace Torvane::Office {

/// The numbers of list items as a reader of the document sees them: "一、", "（2）". The converter's pages
/// count 1, 2, 3 for all of them, its plain text tells them before each paragraph.
class CListLabels {
public:
    /// The document as plain text; empty where labels are not wanted.
    explicit CListLabels(const QString& strPlainText);

    /// The label of the next paragraph with that text, looked for behind the last one that was found; empty
    /// for none.
    QString Take(const QString& strText);

private:
    /// Of the paragraphs that may have one, in order.
    QStringList m_labels;
    /// By a paragraph's text without blanks: where its labels stand, upwards.
    QHash<QString, QList<qsizetype>> m_places;
    qsizetype m_nNext = 0;
};

} // namespace Torvane::Office
