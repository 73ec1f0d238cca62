#pragma once

#include "companions/fetch/FetchProgress.h"

#include <QByteArray>
#include <QString>

/// Largest reply that is taken.
inline constexpr qint64 c_nMaxArchiveBytes = qint64{256} * 1024 * 1024;

struct DownloadLimits {
    qint64 nMaxBytes = c_nMaxArchiveBytes;
    long nConnectSeconds = 30;
    /// How long the server may be silent.
    long nSilentSeconds = 60;
};

/// Fetches an address of "http" or "https" into a new file. Only a whole reply of status 200 counts; anything
/// else throws Torvane::CRunException with the reason, and CFetchCancelled when the person has stopped it.
/// Address: raw bytes. strFile: native path.
void Download(const QByteArray& address, const QString& strFile, FetchProgress& progress,
              const DownloadLimits& limits = {});
