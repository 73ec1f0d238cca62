#pragma once

#include "companions/docexport/Texts.h"
#include "foundation/Exceptions.h"

#include <atomic>

/// How far the export is. The worker writes, whoever shows it reads; both at any time.
struct DocProgress {
    enum class EStage { ReadingCourse, ReadingNodes, Converting, Numbering, Saving };

    std::atomic<EStage> Stage = EStage::ReadingCourse;
    std::atomic<int> nNodes = 0;
    std::atomic<int> nTotal = 0;
    std::atomic<int> nConverted = 0;
    std::atomic<int> nPieces = 0;
    std::atomic<int> nLaidOut = 0;
    std::atomic<int> nLayouts = 0;
    /// The person's wish to stop. Comes too late once the stage is Saving.
    std::atomic<bool> bCancelled = false;
};

/// Thrown where the person has stopped the export.
class CDocCancelled : public Torvane::CRunException {
public:
    CDocCancelled() : CRunException(DocText::c_strCancelled) {}
};
