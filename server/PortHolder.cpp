#include "server/PortHolder.h"

#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "foundation/TextFile.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr qsizetype c_nMaxPorts = 64;

int OpenBound(quint16 nPort) {
    const int nSocket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (nSocket < 0)
        return -1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(nPort);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    if (::bind(nSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return nSocket;
    ::close(nSocket);
    return -1;
}

} // namespace

CPortHolder::CPortHolder(const QString& strPath) : m_strPath(strPath) {}

CPortHolder::~CPortHolder() {
    for (const int nSocket : m_sockets)
        ::close(nSocket);
}

void CPortHolder::Run() {
    if (!Torvane::File::IsFile(m_strPath))
        return;
    QByteArray text;
    try {
        text = ReadFileBytes(m_strPath);
    } catch (const Torvane::CRunException&) {
        return;
    }
    if (text.isEmpty())
        return;
    text.replace('\r', QByteArrayView());
    const QByteArrayList lines = text.split('\n');
    for (const QByteArray& line : lines.mid(0, c_nMaxPorts)) {
        const qint32 nPort = ParseInt(QString::fromLatin1(line));
        const int nSocket = nPort >= 0 && nPort <= 65535 ? OpenBound(static_cast<quint16>(nPort)) : -1;
        if (nSocket >= 0)
            m_sockets.append(nSocket);
    }
}

QList<quint16> CPortHolder::GetPorts() const {
    QList<quint16> ports;
    for (const int nSocket : m_sockets) {
        sockaddr_in address{};
        socklen_t nSize = sizeof address;
        if (::getsockname(nSocket, reinterpret_cast<sockaddr*>(&address), &nSize) == 0)
            ports.append(ntohs(address.sin_port));
    }
    return ports;
}
