#pragma once

#include <QByteArray>
#include <QString>

/// Whole text files in the code page.

/// The lines of a text joined by a line feed, the last line feed dropped. CR LF and LF both end a line.
QString JoinLines(QString strText);

/// The lines of a file, joined. A file that can't be opened gives an empty text.
QString ReadTextFile(const QString& strPath);

/// Replaces the file as a whole or not at all; line feeds are written as CR LF. False when it can't be
/// written.
bool WriteTextFile(const QString& strPath, const QString& strText);

/// Far more than any text of the system takes, and what is read is in memory several times over.
constexpr qint64 c_nMaxWholeFile = qint64{256} * 1024 * 1024;

/// The first bytes of a plain file, by default all of them. Throws Torvane::File::CFileException, also when
/// they are more than c_nMaxWholeFile.
QByteArray ReadFileBytes(const QString& strPath, qint64 nMaxBytes = c_nMaxWholeFile + 1);

/// Replaces the file as a whole or not at all: written beside, flushed to the disk, renamed. Throws
/// Torvane::File::CFileException.
void ReplaceFile(const QString& strPath, const QByteArray& bytes);
