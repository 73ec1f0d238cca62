#include "companions/common/FilmFault.h"

EFilmWriting HowFilmWasWritten(const QByteArray& faults) {
    if (faults.contains("No space left on device") || faults.contains("Disk quota exceeded"))
        return EFilmWriting::DiskFull;
    return faults.contains("Error writing trailer") ? EFilmWriting::Cut : EFilmWriting::Whole;
}
