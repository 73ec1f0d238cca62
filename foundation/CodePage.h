#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// The code page of the program's files, ciphers and wire: GB18030, whose one- and two-byte codes are GBK, so
/// that no character that a person types is ever lost. Text in memory is QString; this is the one place that
/// converts.
namespace CodePage {

QByteArray Encode(QStringView strText);

/// Brings the conversion tables into memory, which takes some 15 ms from a disk. For a thread beside the
/// start.
void Prepare();

/// Bytes that are no text become U+FFFD; never throws.
QString Decode(QByteArrayView bytes);

/// How many bytes the text takes in the code page.
qsizetype ByteLength(QStringView strText);

/// The longest head of the text that takes at most nBytes bytes, ending on a character boundary.
QString Cut(const QString& strText, qsizetype nBytes);

} // namespace CodePage
