#pragma once

#include <QString>
#include <QStringList>

/// Appends the pieces of the text between separators to the list. There is always a piece after the last
/// separator: an empty text gives one empty piece, and "a," gives "a" and an empty piece.
void SplitText(const QString& strText, QStringList& list, QChar cSeparator);

/// A decimal number as C's atol reads it: leading blanks, a sign, digits; whatever follows is ignored, no
/// digits give 0. Values beyond 32 bits stop at the limits.
qint32 ParseInt(QStringView strText);

/// The text with ASCII letters in lower case; every other character stays.
QString LowerAscii(const QString& strText);

/// Equality that does not tell the case of ASCII letters.
bool EqualsIgnoringCase(QStringView strA, QStringView strB);
