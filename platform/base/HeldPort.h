#pragma once

#include <QtGlobal>

#include <memory>

namespace Platform {

/// A TCP port of this machine, taken from other programs while the object lives. Nothing listens on it.
class CHeldPort {
public:
    /// Port 0 takes one of the system's choosing. Null when the port can't be had.
    static std::unique_ptr<CHeldPort> Take(quint16 nPort);
    ~CHeldPort();
    CHeldPort(const CHeldPort&) = delete;
    CHeldPort& operator=(const CHeldPort&) = delete;

    quint16 GetPort() const;

private:
    explicit CHeldPort(int nSocket) : m_nSocket(nSocket) {}

    int m_nSocket;
};

} // namespace Platform
