#pragma once

#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"

#include <atomic>

/// How far the compiling is. Its threads write, whoever shows it reads; all at any time.
struct CompileProgress {
    enum class EStage { ReadingCourse, Writing };

    std::atomic<EStage> Stage = EStage::ReadingCourse;
    std::atomic<int> nDone = 0;
    std::atomic<int> nTotal = 0;
    /// How many films are being converted at this moment.
    std::atomic<int> nFilms = 0;
    /// The person's wish to stop.
    std::atomic<bool> bCancelled = false;
};

/// Thrown where the person has stopped the compiling.
class CCompileCancelled : public Torvane::CRunException {
public:
    CCompileCancelled() : CRunException(CompilerText::c_strCancelled) {}
};

inline void StopIfCancelled(const CompileProgress& progress) {
    if (progress.bCancelled)
        throw CCompileCancelled();
}
