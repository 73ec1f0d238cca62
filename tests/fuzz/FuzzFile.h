#pragma once

#include "tests/support/FuzzCheck.h"
#include "tests/support/TempFolder.h"

/// A folder that one run of the target keeps, in memory, where a flush takes no time.
inline const CTempFolder& FuzzFolder() {
    static const CTempFolder folder(CTempFolder::InMemory());
    return folder;
}

/// The input as a file there.
inline QString FuzzFile(const QString& strName, const std::uint8_t* pData, std::size_t nSize) {
    FuzzFolder().Write(strName, FuzzBytes(pData, nSize));
    return FuzzFolder().Path(strName);
}
