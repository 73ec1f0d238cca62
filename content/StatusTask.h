#pragma once

#include "foundation/FolderWalk.h"
#include "platform/base/SlowStep.h"

#include <QScopeGuard>
#include <QStringList>
#include <QThreadPool>

#include <atomic>
#include <functional>

/// Says in strText, which has places for the number and for the list, what a job could not take along. Names
/// a few of them; nothing for none.
void TellLeftOut(Torvane::Dialog::MFC::IPeople& people, const QString& strText, const QStringList& leftOut);

/// A long job of many pieces behind a status window in which the person can give it up. The job itself runs
/// on the interface thread, which alone uses the store; what it does with files runs beside it, so that the
/// windows go on being painted and a cancel is heard at once, however large a file and however slow a disk
/// is.
class CStatusTask {
public:
    enum class EState { Started = 0, Done = 1, Cancelled = 2 };

    CStatusTask(Torvane::Dialog::MFC::IPeople& people, const QString& strTitle);
    virtual ~CStatusTask() = default;
    CStatusTask(const CStatusTask&) = delete;
    CStatusTask& operator=(const CStatusTask&) = delete;

    /// Runs the job; a failure is shown, and so is that the person gave up. True when it came to its end.
    bool Run();

protected:
    /// Throws Torvane::CRunException.
    virtual void Work() = 0;
    /// Shows why the job did not come to its end.
    virtual void TellEnd(Torvane::Dialog::MFC::IPeople& people, const QString& strText);

    /// Says what the job is at, and looks whether to go on: throws when the person has given up.
    void SetStatus(const QString& strText);
    void ThrowIfCancelled();
    bool IsCancelled() const { return m_eState == EState::Cancelled; }

    /// Shows a box in the middle of the job: how long the person reads is no part of it. No transaction of
    /// the store may be open, since a box lets the program run on.
    template <typename Box>
    auto Ask(Box box) {
        m_step.Pause();
        const auto pause = qScopeGuard([this] { m_step.Pause(); });
        return box(m_people);
    }

    /// From now on the job has so many pieces, none of which is done.
    void SetPieces(qsizetype nPieces);
    /// How many pieces are done whole.
    qsizetype GetDone() const { return m_nDone; }

    /// The work of one piece with files. It touches neither the store nor a window, and returns early when
    /// the filter says so.
    using FileWork = std::function<void(qsizetype nPiece, Torvane::File::IWalkFilter* pFilter)>;
    /// What the status says meanwhile.
    using StatusOf = std::function<QString(qsizetype nPiece)>;
    /// Does the pieces up to nEnd that are not done yet. Throws what the work throws, and when the person has
    /// given up. meanwhile is called on this thread every few milliseconds, and may look at what the pieces
    /// that are done have left; what it throws ends the work too.
    void DoFiles(qsizetype nEnd, const FileWork& work, const StatusOf& statusOf,
                 const std::function<void()>& meanwhile = {});

    /// Work with files that a cancel neither ends nor leaves out; the windows are painted meanwhile. Throws
    /// what the work throws.
    void Tidy(const std::function<void()>& work);

private:
    void Look();
    void DoPieces(qsizetype nEnd, const FileWork& work);

    Torvane::Dialog::MFC::IPeople& m_people;
    CSlowStep m_step;
    QThreadPool m_threads;
    qsizetype m_nPieces = 0;
    /// Counted by the thread beside, while it runs.
    std::atomic<qsizetype> m_nDone = 0;
    /// Set here, and looked at by the thread beside.
    std::atomic<EState> m_eState = EState::Started;
};
