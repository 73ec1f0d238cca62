#include "platform/base/FolderWatcher.h"

#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>
#include <unordered_map>

namespace Platform {

namespace {

constexpr int c_nQuietMs = 300;
/// Under changes without end they are told this often.
constexpr int c_nLongestMs = 2000;
/// All programs of the person share one limit, so a single folder takes no more than its part.
constexpr size_t c_nMostFolders = 4096;

constexpr uint32_t c_nMask = IN_ATTRIB | IN_MODIFY | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                             IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW | IN_EXCL_UNLINK;

} // namespace

class CFolderWatcher::CWatch {
public:
    CWatch(QByteArray folder, std::function<bool()> changed)
        : m_folder(std::move(folder)), m_changed(std::move(changed)) {
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Tell(); });
        Begin();
    }
    ~CWatch() { End(); }
    CWatch(const CWatch&) = delete;
    CWatch& operator=(const CWatch&) = delete;

    bool IsWatching() const { return m_nHandle >= 0; }

private:
    void Begin() {
        m_nHandle = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
        if (m_nHandle < 0)
            return;
        m_nTop = AddFolder(m_folder);
        if (m_nTop < 0) {
            End();
            return;
        }
        m_pNotifier = std::make_unique<QSocketNotifier>(m_nHandle, QSocketNotifier::Read);
        QObject::connect(m_pNotifier.get(), &QSocketNotifier::activated, m_pNotifier.get(),
                         [this] { Read(); });
    }

    /// Stops watching; what has not been told stays untold.
    void End() {
        m_timer.stop();
        m_pNotifier.reset();
        m_folders.clear();
        if (m_nHandle >= 0)
            ::close(m_nHandle);
        m_nHandle = -1;
    }

    /// Watches a folder with all below it; what the system's limits don't allow is left out. The watch comes
    /// before the listing, so that a folder made meanwhile is seen by one of them. Answers the folder's own
    /// number, below 0 when it has none.
    int AddFolder(const QByteArray& top) {
        int nTop = -1;
        std::vector<QByteArray> open{top};
        while (!open.empty() && m_folders.size() < c_nMostFolders) {
            const QByteArray path = std::move(open.back());
            open.pop_back();
            const int nWatch = ::inotify_add_watch(m_nHandle, path.constData(), c_nMask);
            if (nWatch < 0)
                continue;
            if (nTop < 0)
                nTop = nWatch;
            m_folders[nWatch] = path;
            CFolder folder;
            std::vector<CFolderEntry> entries;
            if (folder.Open(path, false) != 0 || folder.List(entries) != 0)
                continue;
            for (const CFolderEntry& entry : entries) {
                if (entry.eType == EEntryType::Folder)
                    open.push_back(path + '/' + entry.name);
            }
        }
        return nTop;
    }

    /// A folder that was moved away is no longer this one's part, wherever it is now.
    void RemoveFolder(const QByteArray& top) {
        const QByteArray below = top + '/';
        std::erase_if(m_folders, [&](const auto& each) {
            const bool bBelow = each.second == top || each.second.startsWith(below);
            if (bBelow)
                ::inotify_rm_watch(m_nHandle, each.first);
            return bBelow;
        });
    }

    /// One piece: the rest comes with the loop's next turn, so that a storm of changes lets others in.
    void Read() {
        alignas(inotify_event) std::array<char, 16384> buffer{};
        const ssize_t nBytes = ::read(m_nHandle, buffer.data(), buffer.size());
        bool bLost = false;
        for (ssize_t nAt = 0; nAt < nBytes;) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + nAt, sizeof event);
            const char* const pName = buffer.data() + nAt + sizeof event;
            nAt += static_cast<ssize_t>(sizeof event + event.len);
            if (event.wd == m_nTop && (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT)) != 0) {
                End();
                return;
            }
            if ((event.mask & IN_IGNORED) != 0) {
                m_folders.erase(event.wd);
                continue;
            }
            bLost |= (event.mask & IN_Q_OVERFLOW) != 0;
            Follow(event, event.len == 0 ? QByteArray() : QByteArray(pName));
            NoteChange();
        }
        if (bLost) {
            // Which folders came and went is not known any more.
            End();
            Begin();
            if (m_nHandle >= 0)
                NoteChange();
        }
    }

    void Follow(const inotify_event& event, const QByteArray& name) {
        const auto folder = m_folders.find(event.wd);
        if (folder == m_folders.end() || (event.mask & IN_ISDIR) == 0 || name.isEmpty())
            return;
        const QByteArray path = folder->second + '/' + name;
        if ((event.mask & IN_MOVED_FROM) != 0)
            RemoveFolder(path);
        else if ((event.mask & (IN_CREATE | IN_MOVED_TO)) != 0)
            AddFolder(path);
    }

    void NoteChange() {
        if (!m_timer.isActive())
            m_sinceFirst.start();
        m_timer.start(qBound(0, c_nLongestMs - static_cast<int>(m_sinceFirst.elapsed()), c_nQuietMs));
    }

    /// The listener may end the watcher.
    void Tell() {
        const std::function<bool()> changed = m_changed;
        const QPointer<QTimer> pTimer(&m_timer);
        if (!changed() && pTimer && !pTimer->isActive())
            pTimer->start(c_nLongestMs);
    }

    QByteArray m_folder;
    std::function<bool()> m_changed;
    int m_nHandle = -1;
    int m_nTop = -1;
    /// By the system's number: the path. No number is given twice.
    std::unordered_map<int, QByteArray> m_folders;
    std::unique_ptr<QSocketNotifier> m_pNotifier;
    QTimer m_timer;
    QElapsedTimer m_sinceFirst;
};

CFolderWatcher::CFolderWatcher(const QString& strFolder, std::function<bool()> changed)
    : m_pWatch(std::make_unique<CWatch>(NativeBytes(strFolder), std::move(changed))) {}

CFolderWatcher::~CFolderWatcher() = default;

bool CFolderWatcher::IsWatching() const {
    return m_pWatch->IsWatching();
}

} // namespace Platform
