#pragma once

#include <QString>

#include <functional>

/// Fetches a URL and makes a file of the answer's body, asking goOn every few milliseconds, on whatever
/// thread it is called. Follows a few redirections. False, with no file made, when the server doesn't answer
/// well within a minute, the file can't be written, or goOn says no; also when the answer is empty or a web
/// page, as a network's login page is, whatever its status says.
bool DownloadUrlToFile(const QString& strUrl, const QString& strPath, const std::function<bool()>& goOn);
