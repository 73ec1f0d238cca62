#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

/// Rules on backslash paths and what stands at them. Every path here is in backslash form. Queries look at
/// the first 260 code page bytes of a path, ending on a character boundary.
namespace Torvane::File {

enum class EPathKind { Nothing = 0, File = 1, Folder = 2 };

constexpr int c_nMaxPathBytes = 260;

/// Whether it takes more than that. It may be given in two parts.
bool IsPathTooLong(QStringView path, QStringView more = {});

EPathKind GetPathKind(const QString& strPath);
/// A plain file: what only blocks or never ends when it is read (a pipe, a device) is none.
bool IsFile(const QString& strPath);
bool IsFolder(const QString& strPath);

/// True when the folder holds nothing but "." and ".."; also when it can't be listed.
bool IsFolderEmpty(const QString& strPath);

/// A drive or a share comes first. Any other path would be looked for wherever the program was started.
bool IsAbsolute(const QString& strPath);

/// Index of the last occurrence at or before the start (negative: from the end); -1 for an empty text, a zero
/// character or no occurrence.
qsizetype FindLastChar(const QString& strText, QChar c, qsizetype nStart = -1);

/// The address of the first occurrence that lies wholly between start and end; null when there is none.
const char* FindBytes(const char* pStart, const char* pEnd, QByteArrayView bytes);

/// Removes one trailing occurrence in place; 1 if removed, else 0.
int TrimTrailingChar(QString& strText, QChar c);

QString AddBackslash(const QString& strPath);
QString WithoutBackslash(const QString& strPath);

/// The folder with or without a trailing backslash, as the flag says.
QString FolderForm(const QString& strPath, bool bBackslash);

/// What follows the last backslash, or the whole text.
QString BareName(const QString& strPath);

/// What stands before the last backslash, without it; empty when there is none.
QString ParentFolder(const QString& strPath);

/// From the last "." of the bare name to its end, dot included; empty when there is none.
QString Extension(const QString& strPath);

/// A web page, by its extension: ".htm" or ".html".
bool IsHtmlFile(const QString& strPath);

/// The bare name up to its last ".", or the whole bare name.
QString FileTitle(const QString& strPath);

/// True if path's beginning equals base ignoring ASCII case, and base ends with the separator or the
/// separator follows it in path.
bool IsPathUnder(const QString& strBase, const QString& strPath, QChar cSeparator);

/// What of path lies below base (as IsPathUnder finds it), without a leading separator; empty in any other
/// case. Cut to 260 bytes.
QString RelativeTail(const QString& strBase, const QString& strPath, QChar cSeparator);

/// A bare name that is free in the folder. strName may be a bare name or a path. An empty stem becomes the
/// local time as year, month, day, hour, minute; a name that is taken gets "[random number]" behind its stem.
QString MakeUniqueName(const QString& strName, const QString& strFolder);
/// The same for an empty folder, which need not be looked into then.
QString NameInEmptyFolder(const QString& strName);

/// Where a found path lands when the source root is laid over the target root.
QString ResolveAgainstBase(const QString& strSourceRoot, const QString& strTargetRoot,
                           const QString& strFound);

/// An address that begins with one of the schemes that the program knows.
bool IsWholeAddress(const QString& strText);

} // namespace Torvane::File
