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

    /// True when another instance runs and said that it has brought its window to the front. An instance that
    /// holds the name but does not answer within half a second (it is still starting, or closing) counts as
    /// none: this process goes on as if it were the first.
    bool ActivateOther();

    /// From now on answers later instances: activate is called on this thread's event loop for each. Needs a
    /// running application object.
    void Listen(std::function<void()> activate);

private:
    struct Socket;
    QString m_strName;
    std::unique_ptr<Socket> m_pSocket;
};

} // namespace Platform
