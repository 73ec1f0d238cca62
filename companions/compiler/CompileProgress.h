#pragma once

#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"

#include <QStringList>

#include <atomic>
#include <mutex>

/// How far the compiling is. Its threads write, whoever shows it reads; all at any time.
struct CompileProgress {
    enum class EStage { ReadingCourse, Writing };

    std::atomic<EStage> Stage = EStage::ReadingCourse;
    std::atomic<int> nDone = 0;
    std::atomic<int> nTotal = 0;
    /// Recorded lectures that are done, and all of them.
    std::atomic<int> nLecturesDone = 0;
    std::atomic<int> nLectures = 0;
    /// The titles of the lectures whose films are being converted at this moment.
    QStringList Films() const {
        const std::scoped_lock lock(m_mutex);
        return m_films;
    }
    void BeginFilm(const QString& strTitle) {
        const std::scoped_lock lock(m_mutex);
        m_films.append(strTitle);
    }
    void EndFilm(const QString& strTitle) {
        const std::scoped_lock lock(m_mutex);
        m_films.removeOne(strTitle);
    }
    /// The person's wish to stop.
    std::atomic<bool> bCancelled = false;

private:
    mutable std::mutex m_mutex;
    QStringList m_films;
};

/// Thrown where the person has stopped the compiling.
class CCompileCancelled : public Torvane::CRunException {
public:
    CCompileCancelled() : CRunException(CompilerText::c_strCancelled) {}
};

inline void StopIfCancelled(const CompileProgress& progress) {
    if (progress.bCancelled)
        throw CCompileCancelled();
}
