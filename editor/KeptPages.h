#pragma once

#include "course/CoursePaths.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

/// The text of a page as it was being edited. It stands beside the course from the first seconds of editing
/// until the page is saved or given up, so that a crash or a power cut costs no work.
struct KeptPage {
    /// The file that holds it, or will.
    QString strPath;
    qint32 nNode = -1;
    QString strTitle;
    QDateTime Time;
    /// What the page on disk was when editing began, as HashOfPage says.
    QByteArray PageHash;
    /// The text was being typed in the source box, and may be anything.
    bool bInSource = false;
    QString strHtml;
};

/// The files of kept pages: "<course>\Data\Unsaved\N<id>-<random>.htm". Each is a web page in UTF-8 that any
/// browser opens; a comment in its first line says what it is. Nothing else of a course looks into that
/// folder.
namespace KeptPages {

/// A name that no other program working on the same course uses.
QString NewPath(const CCoursePaths& paths, qint32 nNode);

/// The folder for the pictures that were pasted into the page and lie nowhere else before its save: beside
/// the kept text's file, with a trailing backslash. It may not stand.
QString PicturesFolder(const QString& strPath);

/// Whether a path leads into such a folder, of whatever page and course.
bool IsInPictures(const QString& strPath);

/// Whether such a folder stands, and whether a text refers to it.
bool HasPictures(const QString& strPath);
bool RefersToPictures(const QString& strText, const QString& strPath);

/// Removes that folder, unless the page's saved text still refers to it.
void RemovePictures(const QString& strPath, const QString& strSavedText);

/// Removes such folders when their text is no longer kept, no page refers to them, and they are older than
/// any editing lasts.
void RemoveOrphans(const CCoursePaths& paths);

/// Replaces the file as a whole and flushes it to the disk; the folder is made where it is missing, in a
/// course that stands. May run on any thread. Throws Torvane::File::CFileException.
void Write(const KeptPage& page);

/// All of a course, or one node's, newest first. What can't be read, or is no kept page, is passed over, and
/// so is, for this time, what goes beyond a hundred files or 200 MB.
QList<KeptPage> Read(const CCoursePaths& paths, std::optional<qint32> onlyNode = std::nullopt);

/// Removes the file, and leaves its pictures. One that can't be removed stays, and will be offered once more.
void Remove(const QString& strPath);

/// MD5 of the file's bytes; empty when there is none.
QByteArray HashOfPage(const QString& strPagePath);

/// Puts the text into a page of its own, "<course>\未保存的网页\<title>.htm", where its node is gone or can't
/// take it; its path. The pictures that were pasted into it are copied along, and stay where they are. Throws
/// Torvane::CRunException.
QString PutBeside(const KeptPage& page, const CCoursePaths& paths);

} // namespace KeptPages
