#include "platform/base/EndRequest.h"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace Platform {

namespace {

constexpr std::array c_signals{SIGTERM, SIGHUP, SIGINT};

std::atomic<int> g_nWriteEnd{-1};

// Nothing but a write is safe here.
extern "C" void TellOfSignal(int /*nSignal*/) {
    const int nError = errno;
    const char c = 1;
    (void)!::write(g_nWriteEnd, &c, 1);
    errno = nError;
}

// Who starts the program with a signal ignored means it.
void Arm() {
    struct sigaction action {};
    action.sa_handler = &TellOfSignal;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int nSignal : c_signals) {
        struct sigaction old {};
        if (::sigaction(nSignal, nullptr, &old) == 0 && old.sa_handler != SIG_IGN)
            ::sigaction(nSignal, &action, nullptr);
    }
}

} // namespace

struct CEndRequest::Pipe {
    std::array<int, 2> Ends{-1, -1};
    std::unique_ptr<QSocketNotifier> pNotifier;
};

CEndRequest::CEndRequest(std::function<void()> end) : m_pPipe(std::make_unique<Pipe>()) {
    if (::pipe2(m_pPipe->Ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    const int nReadEnd = m_pPipe->Ends[0];
    g_nWriteEnd = m_pPipe->Ends[1];
    m_pPipe->pNotifier = std::make_unique<QSocketNotifier>(nReadEnd, QSocketNotifier::Read);
    QObject::connect(m_pPipe->pNotifier.get(), &QSocketNotifier::activated, m_pPipe->pNotifier.get(),
                     [nReadEnd, end = std::move(end)] {
                         char c = 0;
                         while (::read(nReadEnd, &c, 1) == 1) {
                         }
                         end();
                         Arm();
                     });
    Arm();
}

CEndRequest::~CEndRequest() {
    if (g_nWriteEnd.exchange(-1) < 0)
        return;
    for (const int nSignal : c_signals) {
        struct sigaction old {};
        if (::sigaction(nSignal, nullptr, &old) == 0 && old.sa_handler == &TellOfSignal)
            ::signal(nSignal, SIG_DFL);
    }
    m_pPipe->pNotifier.reset();
    for (const int nEnd : m_pPipe->Ends)
        ::close(nEnd);
}

} // namespace Platform
