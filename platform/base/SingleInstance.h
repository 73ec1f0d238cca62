#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace Platform {

/// One process of a name for each person and display: the first holds a local socket under that name; a later
/// one asks the first, through it, to come to the front.
class CSingleInstance {
public:
    explicit CSingleInstance(const QString& strName);
    ~CSingleInstance();
    CSingleInstance(const CSingleInstance&) = delete;
    CSingleInstance& operator=(const CSingleInstance&) = delete;

    /// True when another instance has a window and was told to bring it to the front; it is waited for half a
    /// second, and one that is busy longer does it when it is done. An instance that holds the name without a
    /// window (it is still starting, or closing) counts as none: this process goes on as if it were the
    /// first.
    bool ActivateOther();

    /// To be called when the window exists: from now on later instances are answered, and activate is called
    /// on this thread's event loop for each. Needs a running application object.
    void Listen(std::function<void()> activate);

private:
    struct Socket;
    QString m_strName;
    std::unique_ptr<Socket> m_pSocket;
};

} // namespace Platform
