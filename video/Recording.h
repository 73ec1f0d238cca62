#pragma once

#include "course/CourseInfo.h"
#include "platform/base/People.h"

#include <QString>

/// The film of a lecture as its folder's project file names it.

/// The project file's path.
QString RecorderProjectPath(const QString& strFolder);
/// The film's path, "<folder>\<name>.asf"; empty when the project file names none.
QString FilmPath(const QString& strFolder);
/// Whether a film stands in the folder.
bool HasFilm(const QString& strFolder);

/// The film while it is being recorded. Until then it is none, by its name too: a recorder that was ended by
/// force has made no lecture. A pause begins a new part; 0 is the first.
QString WorkingFilmPath(const QString& strFolder, qsizetype nPart = 0);
/// The same of an earlier recording that came to no end, while the recorder is at it again.
QString KeptFilmPath(const QString& strFolder, qsizetype nPart = 0);
/// Beside them: when which slide showed.
QString WorkingTimesPath(const QString& strFolder);
QString KeptTimesPath(const QString& strFolder);
/// Whether a file of that name, beside a project file, is a film that the recorder has not ended: no part of
/// the lecture.
bool IsUnfinishedFilm(const QString& strName);
/// Whether somebody has recorded in the folder, even if not to the end.
bool HoldsRecording(const QString& strFolder);

/// What starts the recorder on a project file: a blank before the path, tabs behind it.
QString RecorderCommandLine(const QString& strProgramFolder, const QString& strProjectPath,
                            const QByteArray& modulus, quint32 nSeed);

/// Has a lecture recorded into the folder (without a trailing backslash) by the recorder beside the program,
/// and returns when the recorder has ended; the windows are painted meanwhile. bWriteProject writes the
/// folder's project file first. True when a film stands there then; failures are shown, and a recorder that
/// was left without recording is none.
bool RecordVideo(const QString& strFolder, bool bWriteProject, const CCourseInfo& info,
                 Torvane::Dialog::MFC::IPeople& people);
