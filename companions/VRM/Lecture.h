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

/// The recorded film becomes the lecture's as it is, without markers and commands; it takes no room. False
/// when even that is not possible; it stays where it is then.
bool KeepFilmAlone(const SRecorderRequest& request);

/// Removes all that was made for a lecture that is given up: only the project file stays.
void RemoveLecture(const QString& strFolder);
