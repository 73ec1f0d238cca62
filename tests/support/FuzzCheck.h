#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What a fuzz target claims about every input; a claim that fails ends the run with the input kept.
inline void Check(bool bHolds, const char* szClaim = "a claim does not hold") {
    if (!bHolds) {
        std::fprintf(stderr, "%s\n", szClaim);
        std::abort();
    }
}
