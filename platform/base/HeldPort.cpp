#include "platform/base/HeldPort.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Platform {

std::unique_ptr<CHeldPort> CHeldPort::Take(quint16 nPort) {
    const int nSocket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (nSocket < 0)
        return nullptr;
    std::unique_ptr<CHeldPort> pHeld(new CHeldPort(nSocket));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(nPort);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    if (::bind(nSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return nullptr;
    return pHeld;
}

CHeldPort::~CHeldPort() {
    ::close(m_nSocket);
}

quint16 CHeldPort::GetPort() const {
    sockaddr_in address{};
    socklen_t nSize = sizeof address;
    ::getsockname(m_nSocket, reinterpret_cast<sockaddr*>(&address), &nSize);
    return ntohs(address.sin_port);
}

} // namespace Platform
