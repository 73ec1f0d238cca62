#pragma once

#include <QString>

/// The text between the elements of what is pasted, and its blanks.
namespace PastedHtml {

/// As markup.
QString Escaped(const QString& strText);
/// Characters that show nothing and only disturb searching; those that join letters and emoji stay.
void DropJunk(QString& strText);
/// Blanks as hard ones where markup would show fewer of them.
QString WithBlanks(const QString& strText);
/// Blanks and line ends as markup reads them: one blank, and none where a line ends between two Chinese
/// characters, unless lines end at blanks alone. A lone hard blank between two words is an ordinary one.
QString Flowing(const QString& strText, bool bBlankLineEnds);

} // namespace PastedHtml
