#pragma once

#include <QByteArray>
#include <QString>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <thread>

/// A raw socket on the loopback address that takes one connection after the other, records what comes, and
/// sends whatever bytes it was told to, be they HTTP or not.
class CStrangeServer {
public:
    enum class EEnd {
        Close,
        /// Sends its bytes again and again until the client goes away.
        Repeat,
        /// Says nothing more, and keeps the connection open.
        Hang
    };

    explicit CStrangeServer(const QByteArray& reply, EEnd end = EEnd::Close)
        : m_reply(reply), m_end(end), m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t nSize = sizeof address;
        if (::bind(m_listener, reinterpret_cast<const sockaddr*>(&address), nSize) != 0 ||
            ::listen(m_listener, 8) != 0 ||
            ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &nSize) != 0)
            qFatal("no loopback socket");
        m_nPort = ntohs(address.sin_port);
        m_thread = std::thread([this] { Serve(); });
    }
    ~CStrangeServer() {
        m_bStop = true;
        m_thread.join();
        ::close(m_listener);
    }
    Q_DISABLE_COPY(CStrangeServer)

    QByteArray Url(const QByteArray& path = "/") const { return "http://" + Host() + path; }
    QByteArray Host() const { return "127.0.0.1:" + QByteArray::number(m_nPort); }

    /// What the last client sent. To be asked for when its request has ended.
    QByteArray Received() {
        m_bStop = true;
        if (m_thread.joinable())
            m_thread.join();
        m_thread = std::thread([] {});
        return m_received;
    }

private:
    bool Wait(int nSocket, short nEvents) const {
        while (!m_bStop) {
            pollfd wait{nSocket, nEvents, 0};
            if (::poll(&wait, 1, 10) > 0)
                return true;
        }
        return false;
    }
    void Serve() {
        while (Wait(m_listener, POLLIN)) {
            const int nClient = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
            m_received.clear();
            ReadRequest(nClient);
            Answer(nClient);
            ::close(nClient);
        }
    }
    void ReadRequest(int nClient) {
        char block[4096];
        while (!IsWhole() && Wait(nClient, POLLIN)) {
            const ssize_t nRead = ::recv(nClient, block, sizeof block, 0);
            if (nRead <= 0)
                return;
            m_received.append(block, nRead);
        }
    }
    bool IsWhole() const {
        const qsizetype nEnd = m_received.indexOf("\r\n\r\n");
        const qsizetype nLength = m_received.indexOf("Content-Length: ");
        if (nEnd < 0 || nLength < 0 || nLength > nEnd)
            return nEnd >= 0;
        const QByteArray number = m_received.sliced(nLength + 16);
        return m_received.size() >= nEnd + 4 + number.first(number.indexOf('\r')).toInt();
    }
    void Answer(int nClient) const {
        do {
            for (qsizetype nSent = 0; nSent < m_reply.size() && Wait(nClient, POLLOUT);) {
                const ssize_t n = ::send(nClient, m_reply.constData() + nSent,
                                         static_cast<size_t>(m_reply.size() - nSent), MSG_NOSIGNAL);
                if (n < 0)
                    return;
                nSent += n;
            }
        } while (m_end == EEnd::Repeat && !m_bStop);
        if (m_end == EEnd::Hang)
            Wait(nClient, POLLIN);
    }

    QByteArray m_reply;
    EEnd m_end;
    int m_listener;
    int m_nPort = 0;
    QByteArray m_received;
    std::atomic<bool> m_bStop{false};
    std::thread m_thread;
};
