#pragma once

#include "tests/support/FuzzCheck.h"
#include "tests/support/TempFolder.h"

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
