#pragma once

#include "companions/fetch/FetchProgress.h"

#include <QString>

struct UnpackLimits {
    qint64 nMaxBytes = qint64{512} * 1024 * 1024;
    int nMaxEntries = 20000;
};

/// Unpacks a ZIP or a tar (also a gzipped one) into a folder that exists and is empty. Names without the mark
/// of UTF-8 are in the code page. Only plain files and folders come out, never outside the folder, and no
/// more than the limits say, counted as the bytes come out. strTargetFolder is where the folder will end up;
/// all paths are native. Throws Torvane::CRunException, CFetchCancelled among them; the folder then holds a
/// part.
///
/// The process's working folder is strFolder meanwhile: the archive library takes relative paths alone, so
/// that nothing can name a place of its own.
void Unpack(const QString& strArchive, const QString& strFolder, const QString& strTargetFolder,
            FetchProgress& progress, const UnpackLimits& limits = {});
