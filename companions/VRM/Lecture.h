#pragma once

#include "companions/VRM/LectureTimes.h"
#include "companions/VRM/RecorderRequest.h"
#include "companions/VRM/Slides.h"

#include <functional>

/// Makes a lecture of the film that was recorded under WorkingFilmPath: the slide page, the outline, the
/// scripts, the film's name in the project file, and, once all that stands, the film with its markers and
/// commands. progress as WriteAsfScript has it. Throws Torvane::CRunException; the recorded film stays then,
/// and it may be tried again.
void WriteLecture(const SRecorderRequest& request, const SSlides& slides, double dRatio,
                  const CLectureTimes& times, const std::function<bool(qint64, qint64)>& progress);

/// The recorded film becomes the lecture's as it is, without markers and commands; it takes next to no room.
/// In how many files it stands, of which the first plays: its parts, where they could not be joined. 0 when
/// even that is not possible; it stays where it is then.
qsizetype KeepFilmAlone(const SRecorderRequest& request, const SSlides& slides);

/// Which part of a film stands where: WorkingFilmPath or KeptFilmPath.
using FilmParts = QString (*)(const QString& strFolder, qsizetype nPart);

/// Makes the first part of the film all of it. lengths as JoinFilms has them. A part that was broken off does
/// not tell how long it is, so that nobody can go to a place in it: bMend writes the film anew even where it
/// is the only one. Throws Torvane::CRunException; the parts stay then.
void JoinParts(const QString& strFolder, FilmParts parts, const QList<qint64>& lengths, bool bMend,
               const std::function<bool()>& mayGoOn);

/// Lays what an earlier recorder has left half done in the folder aside, to KeptFilmPath. False when there is
/// nothing.
bool KeepEarlierFilm(const QString& strFolder);
void RemoveKeptFilm(const QString& strFolder);

/// Removes all that was made for a lecture that is given up: only the project file stays, and a kept film.
void RemoveLecture(const QString& strFolder);
