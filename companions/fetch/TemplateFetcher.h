#pragma once

#include "companions/fetch/Download.h"
#include "companions/fetch/FetchProgress.h"
#include "companions/fetch/FetchRequest.h"
#include "companions/fetch/Unpack.h"

struct FetchLimits {
    DownloadLimits Network;
    UnpackLimits Archive;
};

/// Fetches a template and puts it into its place; how many files it has. Blocks; progress may be read
/// meanwhile from another thread. Throws Torvane::CRunException, CFetchCancelled among them: what stood in
/// the target's place still stands there then.
int FetchTemplate(const FetchRequest& request, FetchProgress& progress, const FetchLimits& limits = {});
