#pragma once

#include <QString>

/// Long lines of a page's source, which a text box would lay out as a whole at every key. In the box such a
/// line is folded: broken in pieces, with an invisible mark on either side of the break that no text of a
/// page holds. Taking the marks and one break between each two away gives the text back, whatever was typed
/// there.
namespace SourceLines {

/// The first of a pair of invisible characters that don't stand in the text; null when it holds all that
/// there are.
QChar MarkFor(const QString& strText);
QChar SecondMark(QChar mark);

/// Whether a line is longer than what a box shows without delay.
bool HasLongLine(const QString& strText);

/// Each long line in pieces, broken behind a tag or a blank where there is one.
QString Fold(const QString& strText, QChar mark);
QString Unfold(const QString& strText, QChar mark);

/// The text with characters that a text box takes for line ends, or for its own, as references of markup.
QString WithReferences(QString strText);

} // namespace SourceLines
