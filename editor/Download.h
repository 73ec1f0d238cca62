#pragma once

#include <QString>

#include <functional>

/// Fetches a URL and makes a file of the answer's body, calling whileWaiting every few milliseconds. Follows
/// a few redirections. False, with no file made, when the server doesn't answer well within a minute or the
/// file can't be written.
bool DownloadUrlToFile(const QString& strUrl, const QString& strPath,
                       const std::function<void()>& whileWaiting);
