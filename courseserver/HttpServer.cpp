#include "courseserver/HttpServer.h"

#include "foundation/Exceptions.h"

#include <QFile>

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <vector>

namespace {

constexpr size_t c_nMaxConnections = 400;
constexpr qint64 c_nSendSilence = 30'000;
constexpr qint64 c_nSendAtMost = 600'000;
constexpr qint64 c_nDrain = 2'000;
constexpr qint64 c_nAcceptPause = 50;
constexpr qint64 c_nFileBlock = qint64{64} * 1024;

qint64 Now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

class CDescriptor {
public:
    explicit CDescriptor(int n = -1) : m_n(n) {}
    ~CDescriptor() {
        if (m_n >= 0)
            ::close(m_n);
    }
    CDescriptor(CDescriptor&& other) noexcept : m_n(other.m_n) { other.m_n = -1; }
    CDescriptor& operator=(CDescriptor&& other) noexcept {
        std::swap(m_n, other.m_n);
        return *this;
    }
    int Get() const { return m_n; }

private:
    int m_n;
};

QByteArray StatusWords(int nStatus) {
    switch (nStatus) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 414:
        return "URI Too Long";
    default:
        return "Internal Server Error";
    }
}

QByteArray WriteHead(const HttpReply& reply, qint64 nLength) {
    QByteArray head =
        "HTTP/1.0 " + QByteArray::number(reply.nStatus) + ' ' + StatusWords(reply.nStatus) + "\r\n";
    for (const QByteArray& line : reply.Headers)
        head += line + "\r\n";
    return head + "Content-Type: " + reply.strContentType +
           "\r\nContent-Length: " + QByteArray::number(nLength) + "\r\nConnection: close\r\n\r\n";
}

[[noreturn]] void ThrowSystemError(const QString& strWhat) {
    throw Torvane::CRunException(strWhat + QStringLiteral(": ") +
                                 QString::fromLocal8Bit(std::strerror(errno)));
}

} // namespace

struct CHttpServer::Connection {
    enum class EPhase { Reading, Sending, Draining, Closed };

    CDescriptor Socket;
    QByteArray strPeer;
    EPhase Phase = EPhase::Reading;
    CRequestReader Reader;
    QByteArray Out;
    qsizetype nSent = 0;
    std::shared_ptr<QFile> pFile;
    qint64 nDeadline = 0;
    qint64 nSendEnd = 0;

    void Read(const State& server);
    void Answer(const State& server, CRequestReader::EState state);
    void Send();
    void Drain();
    bool MoreToSend();
};

struct CHttpServer::State {
    Handler Handle;
    FaultStep OnFault;
    CDescriptor Listener;
    CDescriptor WakeRead;
    CDescriptor WakeWrite;
    quint16 nPort = 0;
    qint64 nRequestTimeout = 10'000;
    /// No connection is taken before then.
    qint64 nAcceptFrom = 0;
    std::vector<Connection> Connections;

    HttpReply Reply(const HttpRequest& request, CRequestReader::EState state, const QByteArray& peer) const;
    void Accept();
    void Serve(Connection& connection, short nEvents);
    bool WaitAndServe();
};

void CHttpServer::Connection::Read(const State& server) {
    char block[4096];
    const ssize_t nRead = ::recv(Socket.Get(), block, sizeof block, 0);
    if (nRead == 0 || (nRead < 0 && errno != EAGAIN && errno != EINTR)) {
        Phase = EPhase::Closed;
        return;
    }
    if (nRead < 0)
        return;
    const auto state = Reader.Feed(QByteArrayView(block, nRead));
    if (state != CRequestReader::EState::More)
        Answer(server, state);
}

HttpReply CHttpServer::State::Reply(const HttpRequest& request, CRequestReader::EState state,
                                    const QByteArray& peer) const {
    HttpReply fault;
    if (state == CRequestReader::EState::TooLong) {
        fault.nStatus = 414;
    } else if (state == CRequestReader::EState::Bad) {
        fault.nStatus = 400;
    } else if (request.strMethod != "GET" && request.strMethod != "HEAD") {
        fault.nStatus = 405;
        fault.Headers << "Allow: GET, HEAD";
    } else {
        try {
            return Handle(request, peer);
        } catch (...) {
            // One request that fails must not take the server along.
            fault.nStatus = 500;
        }
    }
    OnFault(peer, fault.nStatus);
    return fault;
}

void CHttpServer::Connection::Answer(const State& server, CRequestReader::EState state) {
    const HttpRequest& request = Reader.GetRequest();
    const HttpReply reply = server.Reply(request, state, strPeer);
    pFile = reply.pFile;
    Out = WriteHead(reply, pFile ? pFile->size() : reply.Body.size());
    if (request.strMethod == "HEAD")
        pFile.reset();
    else if (!pFile)
        Out += reply.Body;
    Phase = EPhase::Sending;
    nDeadline = Now() + c_nSendSilence;
    nSendEnd = Now() + c_nSendAtMost;
}

bool CHttpServer::Connection::MoreToSend() {
    if (nSent < Out.size())
        return true;
    nSent = 0;
    Out = pFile ? pFile->read(c_nFileBlock) : QByteArray();
    return !Out.isEmpty();
}

void CHttpServer::Connection::Send() {
    if (MoreToSend()) {
        const ssize_t nWritten = ::send(Socket.Get(), Out.constData() + nSent,
                                        static_cast<size_t>(Out.size() - nSent), MSG_NOSIGNAL);
        if (nWritten < 0 && errno != EAGAIN && errno != EINTR) {
            Phase = EPhase::Closed;
            return;
        }
        if (nWritten > 0) {
            nSent += nWritten;
            nDeadline = qMin(Now() + c_nSendSilence, nSendEnd);
        }
    }
    if (MoreToSend())
        return;
    // Closing with unread bytes would reset the connection and take the reply away from the client.
    ::shutdown(Socket.Get(), SHUT_WR);
    Phase = EPhase::Draining;
    nDeadline = Now() + c_nDrain;
}

void CHttpServer::Connection::Drain() {
    char block[4096];
    const ssize_t nRead = ::recv(Socket.Get(), block, sizeof block, 0);
    if (nRead == 0 || (nRead < 0 && errno != EAGAIN && errno != EINTR))
        Phase = EPhase::Closed;
}

void CHttpServer::State::Accept() {
    sockaddr_storage address{};
    socklen_t nSize = sizeof address;
    CDescriptor socket(::accept4(Listener.Get(), reinterpret_cast<sockaddr*>(&address), &nSize,
                                 SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (socket.Get() < 0) {
        // Without a descriptor to spare the connection stays in the queue, and asking again would spin.
        nAcceptFrom = Now() + c_nAcceptPause;
        return;
    }
    char name[INET6_ADDRSTRLEN] = "";
    if (address.ss_family == AF_INET)
        ::inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in&>(address).sin_addr, name, sizeof name);
    Connection connection;
    connection.Socket = std::move(socket);
    connection.strPeer = name;
    connection.nDeadline = Now() + nRequestTimeout;
    Connections.push_back(std::move(connection));
}

void CHttpServer::State::Serve(Connection& connection, short nEvents) {
    if (nEvents != 0) {
        switch (connection.Phase) {
        case Connection::EPhase::Reading:
            connection.Read(*this);
            break;
        case Connection::EPhase::Sending:
            connection.Send();
            break;
        case Connection::EPhase::Draining:
            connection.Drain();
            break;
        case Connection::EPhase::Closed:
            break;
        }
    }
    if (Now() > connection.nDeadline)
        connection.Phase = Connection::EPhase::Closed;
}

bool CHttpServer::State::WaitAndServe() {
    std::vector<pollfd> waits{{WakeRead.Get(), POLLIN, 0}};
    qint64 nUntil = Now() + 3'600'000;
    for (const Connection& connection : Connections) {
        const bool bSending = connection.Phase == Connection::EPhase::Sending;
        waits.push_back({connection.Socket.Get(), static_cast<short>(bSending ? POLLOUT : POLLIN), 0});
        nUntil = qMin(nUntil, connection.nDeadline);
    }
    const bool bRoom = Connections.size() < c_nMaxConnections && Now() >= nAcceptFrom;
    if (Now() < nAcceptFrom)
        nUntil = qMin(nUntil, nAcceptFrom);
    waits.push_back({bRoom ? Listener.Get() : -1, POLLIN, 0});
    const int nWait = static_cast<int>(qMax<qint64>(0, nUntil - Now() + 1));
    if (::poll(waits.data(), waits.size(), nWait) < 0 && errno != EINTR)
        return false;
    if (waits.front().revents != 0)
        return false;
    for (size_t n = 0; n < Connections.size(); ++n)
        Serve(Connections[n], waits[n + 1].revents);
    std::erase_if(Connections, [](const Connection& c) { return c.Phase == Connection::EPhase::Closed; });
    if (waits.back().revents != 0)
        Accept();
    return true;
}

CHttpServer::CHttpServer(Handler handler, FaultStep onFault) : m_pState(std::make_unique<State>()) {
    m_pState->Handle = std::move(handler);
    m_pState->OnFault = std::move(onFault);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        ThrowSystemError(QStringLiteral("pipe"));
    m_pState->WakeRead = CDescriptor(ends[0]);
    m_pState->WakeWrite = CDescriptor(ends[1]);
}

CHttpServer::~CHttpServer() = default;

void CHttpServer::Listen(const QString& strAddress, quint16 nPort) {
    CDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(nPort);
    if (socket.Get() < 0)
        ThrowSystemError(QStringLiteral("socket"));
    if (::inet_pton(AF_INET, strAddress.toLatin1().constData(), &address.sin_addr) != 1)
        throw Torvane::CRunException(QStringLiteral("no such address: ") + strAddress);
    const int nOn = 1;
    ::setsockopt(socket.Get(), SOL_SOCKET, SO_REUSEADDR, &nOn, sizeof nOn);
    socklen_t nSize = sizeof address;
    if (::bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), nSize) != 0 ||
        ::listen(socket.Get(), SOMAXCONN) != 0 ||
        ::getsockname(socket.Get(), reinterpret_cast<sockaddr*>(&address), &nSize) != 0)
        ThrowSystemError(strAddress + QLatin1Char(':') + QString::number(nPort));
    m_pState->Listener = std::move(socket);
    m_pState->nPort = ntohs(address.sin_port);
}

quint16 CHttpServer::GetPort() const {
    return m_pState->nPort;
}

void CHttpServer::SetRequestTimeout(int nMilliseconds) {
    m_pState->nRequestTimeout = nMilliseconds;
}

void CHttpServer::Run() {
    while (m_pState->WaitAndServe()) {
    }
}

void CHttpServer::Stop() {
    const char c = 0;
    // A full pipe has been told already.
    [[maybe_unused]] const ssize_t nWritten = ::write(m_pState->WakeWrite.Get(), &c, 1);
}
