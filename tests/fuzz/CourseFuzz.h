#pragma once

#include "tests/support/TempFolder.h"

#include <cstdio>
#include <cstdlib>

/// The input as a file in a folder that one run of the target keeps.
inline const CTempFolder& FuzzFolder() {
    static const CTempFolder folder;
    return folder;
}

inline QString FuzzFile(const QString& strName, const std::uint8_t* pData, std::size_t nSize) {
    FuzzFolder().Write(strName,
                       QByteArray(reinterpret_cast<const char*>(pData), static_cast<qsizetype>(nSize)));
    return FuzzFolder().Path(strName);
}

/// A rule that every input must keep.
inline void FuzzCheck(bool bHolds, const char* pszRule) {
    if (bHolds)
        return;
    std::fprintf(stderr, "broken: %s\n", pszRule);
    std::abort();
}
