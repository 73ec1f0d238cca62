#pragma once

#include <QByteArray>

/// How a film got onto the disk, by what ffmpeg said on its error stream. Neither its exit code nor the
/// file's size tells: it may leave half a film and end as if nothing had been.
enum class EFilmWriting { Whole, Cut, DiskFull };

EFilmWriting HowFilmWasWritten(const QByteArray& faults);
