#pragma once

#include <QByteArray>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

inline QByteArray FuzzBytes(const std::uint8_t* pData, std::size_t nSize) {
    return {reinterpret_cast<const char*>(pData), static_cast<qsizetype>(nSize)};
}

/// What a fuzz target claims about every input; a claim that fails ends the run with the input kept.
inline void Check(bool bHolds, const char* szClaim = "a claim does not hold") {
    if (!bHolds) {
        std::fprintf(stderr, "%s\n", szClaim);
        std::abort();
    }
}
