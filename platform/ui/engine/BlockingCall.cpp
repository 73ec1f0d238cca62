#include "platform/ui/engine/BlockingCall.h"

#include <QCursor>
#include <QGuiApplication>
#include <QTimer>

namespace {

constexpr int c_nCursorMilliseconds = 500;

/// The wait cursor, until it goes.
class CWaitCursor {
public:
    CWaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~CWaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(CWaitCursor)
};

} // namespace

void CBlockingCall::Finish(SEngineAnswer answer) {
    if (m_bDone)
        return;
    m_bDone = true;
    m_answer = std::move(answer);
    m_loop.quit();
}

SEngineAnswer CBlockingCall::Wait(const std::shared_ptr<CBlockingCall>& pCall, int nMilliseconds) {
    using EState = SEngineAnswer::EState;
    QTimer::singleShot(nMilliseconds, pCall->Context(), [pWeak = std::weak_ptr(pCall)] {
        if (const auto pSelf = pWeak.lock())
            pSelf->Finish({EState::TimeOut, {}, {}});
    });
    std::unique_ptr<CWaitCursor> pCursor;
    QTimer::singleShot(c_nCursorMilliseconds, pCall->Context(), [pWeak = std::weak_ptr(pCall), &pCursor] {
        if (const auto pSelf = pWeak.lock(); pSelf && !pSelf->m_bDone)
            pCursor = std::make_unique<CWaitCursor>();
    });
    if (!pCall->m_bDone)
        pCall->m_loop.exec(QEventLoop::ExcludeUserInputEvents);
    // The program's end leaves every loop.
    pCall->Finish({EState::Gone, {}, {}});
    return pCall->m_answer;
}
