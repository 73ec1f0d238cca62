#include "platform/ui/engine/BlockingCall.h"

#include <QTimer>

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
    if (!pCall->m_bDone)
        pCall->m_loop.exec(QEventLoop::ExcludeUserInputEvents);
    // The program's end leaves every loop.
    pCall->Finish({EState::Gone, {}, {}});
    return pCall->m_answer;
}
