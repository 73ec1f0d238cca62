#include "content/StatusTask.h"

#include "content/Texts.h"
#include "foundation/Exceptions.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>

namespace {

/// The windows are painted as often at least.
constexpr std::chrono::milliseconds c_lookPause(10);

class CCancelFilter : public Torvane::File::IWalkFilter {
public:
    explicit CCancelFilter(const std::atomic<CStatusTask::EState>& eState) : m_eState(eState) {}
    bool Cancelled() override { return m_eState == CStatusTask::EState::Cancelled; }
    bool AcceptFile(const QString&) override { return true; }
    bool AcceptFolder(const QString&) override { return true; }

private:
    const std::atomic<CStatusTask::EState>& m_eState;
};

/// So many paths are named.
constexpr qsizetype c_nNamedLeftOut = 10;

} // namespace

void TellLeftOut(Torvane::Dialog::MFC::IPeople& people, const QString& strText, const QStringList& leftOut) {
    if (leftOut.isEmpty())
        return;
    QStringList named = leftOut.mid(0, c_nNamedLeftOut);
    if (named.size() < leftOut.size())
        named.append(QStringLiteral("…"));
    people.Warn(strText.arg(leftOut.size()).arg(named.join(u'\n')));
}

CStatusTask::CStatusTask(Torvane::Dialog::MFC::IPeople& people, const QString& strTitle)
    : m_people(people), m_step(people, QString(), strTitle) {
    m_threads.setMaxThreadCount(1);
}

bool CStatusTask::Run() {
    try {
        Work();
        m_step.Pause();
        m_eState = EState::Done;
    } catch (const Torvane::CRunException& e) {
        m_step.Pause();
        TellEnd(m_people, e.GetMessage());
    }
    return m_eState == EState::Done;
}

void CStatusTask::TellEnd(Torvane::Dialog::MFC::IPeople& people, const QString& strText) {
    people.Error(strText);
}

void CStatusTask::SetStatus(const QString& strText) {
    m_step.SetText(strText);
    ThrowIfCancelled();
}

void CStatusTask::SetPieces(qsizetype nPieces) {
    m_nPieces = nPieces;
    m_nDone = 0;
}

void CStatusTask::DoFiles(qsizetype nEnd, const FileWork& work, const StatusOf& statusOf,
                          const std::function<void()>& meanwhile) {
    if (m_nDone >= nEnd)
        return ThrowIfCancelled();
    // Shared, since the thread is still leaving the task when its end is already known here.
    const auto pTask = std::make_shared<std::packaged_task<void()>>([&] { DoPieces(nEnd, work); });
    std::future<void> end = pTask->get_future();
    m_threads.start([pTask] { (*pTask)(); });
    try {
        while (end.wait_for(c_lookPause) != std::future_status::ready) {
            // Also as long as no status window stands.
            m_people.KeepPainting();
            m_step.SetText(statusOf(std::min<qsizetype>(m_nDone, nEnd - 1)));
            Look();
            if (meanwhile)
                meanwhile();
        }
    } catch (...) {
        m_eState = EState::Cancelled;
        end.wait();
        throw;
    }
    end.get();
    ThrowIfCancelled();
}

void CStatusTask::Tidy(const std::function<void()>& work) {
    const auto pTask = std::make_shared<std::packaged_task<void()>>(work);
    std::future<void> end = pTask->get_future();
    m_threads.start([pTask] { (*pTask)(); });
    while (end.wait_for(c_lookPause) != std::future_status::ready)
        m_people.KeepPainting();
    end.get();
}

void CStatusTask::DoPieces(qsizetype nEnd, const FileWork& work) {
    CCancelFilter filter(m_eState);
    for (qsizetype nPiece = m_nDone; nPiece < nEnd && !filter.Cancelled(); ++nPiece) {
        work(nPiece, &filter);
        if (!filter.Cancelled())
            m_nDone = nPiece + 1;
    }
}

void CStatusTask::Look() {
    if (!m_step.GoOn(m_nDone, m_nPieces))
        m_eState = EState::Cancelled;
}

void CStatusTask::ThrowIfCancelled() {
    if (m_eState != EState::Cancelled)
        Look();
    if (m_eState == EState::Cancelled)
        throw Torvane::CRunException(ContentText::c_strCancelled);
}
