#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace Platform {

/// Watches a folder with all below it, and tells when anything in it has changed: names, sizes, contents.
/// Many changes shortly after one another are told once. The callback comes from the event loop of the thread
/// that made the watcher, and is called again after a while where it answers false. Ends with the object, or
/// of itself when the folder goes.
class CFolderWatcher {
public:
    /// The folder is in backslash form. One that can't be watched is told of never.
    CFolderWatcher(const QString& strFolder, std::function<bool()> changed);
    ~CFolderWatcher();
    CFolderWatcher(const CFolderWatcher&) = delete;
    CFolderWatcher& operator=(const CFolderWatcher&) = delete;

    /// False once it has ended of itself, and where nothing could be watched.
    bool IsWatching() const;

private:
    class CWatch;
    std::unique_ptr<CWatch> m_pWatch;
};

} // namespace Platform
