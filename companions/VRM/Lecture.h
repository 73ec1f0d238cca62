#pragma once

#include "companions/VRM/LectureTimes.h"
#include "companions/VRM/RecorderRequest.h"
#include "companions/VRM/Slides.h"

#include <functional>

/// The film while it is being recorded: a recording that is cut short by the machine is still one.
QString RecordedFilmPath(const QString& strFolder);

/// Makes a lecture of what was recorded: the film with its markers and commands, the slide page, the outline,
/// the scripts, and the film's name in the project file. progress as WriteAsfScript has it. Throws
/// Torvane::CRunException; the recorded film stays then.
void WriteLecture(const SRecorderRequest& request, const SSlides& slides, double dRatio,
                  const CLectureTimes& times, const std::function<bool(qint64, qint64)>& progress);

/// Removes all that was made for a lecture that is given up: only the project file stays.
void RemoveLecture(const QString& strFolder);
