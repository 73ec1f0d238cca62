#pragma once

#include <QByteArray>
#include <QString>

#include <limits>

/// Whole text files in the code page.

/// The lines of a file joined by a line feed, the last line feed dropped. CR LF and LF both end a line. A
/// file that can't be opened gives an empty text.
QString ReadTextFile(const QString& strPath);

/// Replaces the file as a whole or not at all; line feeds are written as CR LF. False when it can't be
/// written.
bool WriteTextFile(const QString& strPath, const QString& strText);

/// The first bytes of a file, by default all of them. Throws Torvane::File::CFileException.
QByteArray ReadFileBytes(const QString& strPath, qint64 nMaxBytes = std::numeric_limits<qint64>::max());

/// Replaces the file as a whole or not at all: written beside, flushed to the disk, renamed. Throws
/// Torvane::File::CFileException.
void ReplaceFile(const QString& strPath, const QByteArray& bytes);
