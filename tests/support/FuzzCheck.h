#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What a fuzz target claims about every input; a claim that fails ends the run with the input kept.
inline void Check(bool bHolds) {
    if (!bHolds) {
        std::fputs("a claim does not hold\n", stderr);
        std::abort();
    }
}
