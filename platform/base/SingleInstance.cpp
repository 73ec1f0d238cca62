#include "platform/base/SingleInstance.h"

#include <QSocketNotifier>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace Platform {

namespace {

constexpr int c_nAnswerMilliseconds = 500;
constexpr int c_nWaitingStarts = 8;

/// The display in a word for a socket's name. ":0" and ":0.0" are one: some terminals write the screen behind
/// it. Of a long name the end tells one display from another.
QByteArray DisplayName() {
    QByteArray display = qgetenv("DISPLAY");
    const qsizetype nScreen = display.indexOf('.', qMax(qsizetype(0), display.lastIndexOf(':')));
    if (nScreen >= 0)
        display.truncate(nScreen);
    return qgetenv("WAYLAND_DISPLAY").right(20) + display.right(20);
}

/// An address in the abstract name space: nothing stays on the disk when a process dies.
struct Address {
    sockaddr_un Data{};
    socklen_t nLength = 0;

    explicit Address(const QString& strName) {
        // A window can only be brought to the front of the display that it is on.
        const QByteArray name = strName.toUtf8().left(32) + "-instance-" +
                                QByteArray::number(static_cast<uint>(getuid())) + "-" + DisplayName();
        Data.sun_family = AF_UNIX;
        std::memcpy(Data.sun_path + 1, name.constData(), static_cast<std::size_t>(name.size()));
        nLength = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 +
                                         static_cast<std::size_t>(name.size()));
    }
    const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&Data); }
};

} // namespace

struct CSingleInstance::Socket {
    int nHandle = -1;
    std::unique_ptr<QSocketNotifier> pNotifier;
    ~Socket() {
        pNotifier.reset();
        if (nHandle >= 0)
            ::close(nHandle);
    }
};

CSingleInstance::CSingleInstance(const QString& strName)
    : m_strName(strName), m_pSocket(std::make_unique<Socket>()) {
    const Address address(m_strName);
    m_pSocket->nHandle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (m_pSocket->nHandle >= 0 && ::bind(m_pSocket->nHandle, address.Get(), address.nLength) != 0) {
        ::close(m_pSocket->nHandle);
        m_pSocket->nHandle = -1;
    }
}

CSingleInstance::~CSingleInstance() = default;

bool CSingleInstance::ActivateOther() {
    if (m_pSocket->nHandle >= 0)
        return false;
    const Address address(m_strName);
    const int nHandle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (nHandle < 0)
        return false;
    // Who has the name but no window yet refuses. EAGAIN: so many wait already that one more changes nothing.
    bool bThere = ::connect(nHandle, address.Get(), address.nLength) == 0 || errno == EAGAIN;
    if (bThere) {
        pollfd wait{nHandle, POLLIN, 0};
        char cAnswer = 0;
        // No answer in time: it is busy, and will come to the front when it is done. An end without an
        // answer: it was closing.
        if (::poll(&wait, 1, c_nAnswerMilliseconds) == 1)
            bThere = ::read(nHandle, &cAnswer, 1) == 1;
    }
    ::close(nHandle);
    return bThere;
}

void CSingleInstance::Listen(std::function<void()> activate) {
    if (m_pSocket->nHandle < 0)
        return;
    const int nListener = m_pSocket->nHandle;
    if (::listen(nListener, c_nWaitingStarts) != 0)
        return;
    m_pSocket->pNotifier = std::make_unique<QSocketNotifier>(nListener, QSocketNotifier::Read);
    QObject::connect(m_pSocket->pNotifier.get(), &QSocketNotifier::activated, m_pSocket->pNotifier.get(),
                     [nListener, activate = std::move(activate)] {
                         const int nPeer = ::accept4(nListener, nullptr, nullptr, SOCK_CLOEXEC);
                         if (nPeer < 0)
                             return;
                         activate();
                         const char cAnswer = '1';
                         (void)::send(nPeer, &cAnswer, 1, MSG_NOSIGNAL);
                         ::close(nPeer);
                     });
}

} // namespace Platform
