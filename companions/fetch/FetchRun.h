#pragma once

#include "companions/fetch/TemplateFetcher.h"

/// How a fetching ended, with a sentence for the person.
struct FetchOutcome {
    enum class EEnd { Done, Cancelled, Failed };
    EEnd eEnd = EEnd::Failed;
    QString strText;
};

/// Fetches a template; never throws.
FetchOutcome RunFetch(const FetchRequest& request, FetchProgress& progress, const FetchLimits& limits = {});

/// How far it is, in a line.
QString DescribeProgress(const FetchProgress& progress);
