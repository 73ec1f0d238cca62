#pragma once

#include "platform/ui/WebEngine.h"

#include <QEventLoop>

#include <memory>

/// One call that waits for the engine. It is held in shared ownership by the waiting function and by whatever
/// may answer it, so that a late answer, or the end of the engine meanwhile, finds it alive.
class CBlockingCall {
public:
    CBlockingCall() = default;
    Q_DISABLE_COPY_MOVE(CBlockingCall)

    /// The first answer counts; later ones are dropped.
    void Finish(SEngineAnswer answer);

    /// Waits without the person's input, and answers TimeOut after the limit and Gone when the loop was left
    /// without an answer.
    static SEngineAnswer Wait(const std::shared_ptr<CBlockingCall>& pCall, int nMilliseconds);

    /// Connections made with this as their context end with the call.
    QObject* Context() { return &m_loop; }

private:
    QEventLoop m_loop;
    bool m_bDone = false;
    SEngineAnswer m_answer;
};
