#pragma once

#include "companions/fetch/Texts.h"
#include "foundation/Exceptions.h"

#include <atomic>

/// How far the fetching is. The worker writes, whoever shows it reads; both at any time.
struct FetchProgress {
    enum class EStage { Connecting, Receiving, Unpacking, Replacing };

    std::atomic<EStage> Stage = EStage::Connecting;
    std::atomic<qint64> nReceived = 0;
    /// Bytes of the whole; 0 while the server has not said.
    std::atomic<qint64> nTotal = 0;
    std::atomic<int> nFiles = 0;
    /// The person's wish to stop. Comes too late once the stage is Replacing.
    std::atomic<bool> bCancelled = false;
};

/// Thrown where the person has stopped the fetching.
class CFetchCancelled : public Torvane::CRunException {
public:
    CFetchCancelled() : CRunException(FetchText::c_strCancelled) {}
};
