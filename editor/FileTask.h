#pragma once

#include "content/StatusTask.h"
#include "foundation/Exceptions.h"

#include <utility>

/// One piece of work with files behind a status window, which says strStatus.
class CFileTask : public CStatusTask {
public:
    CFileTask(Torvane::Dialog::MFC::IPeople& people, QString strStatus,
              std::function<void(Torvane::File::IWalkFilter*)> work)
        : CStatusTask(people, QString()), m_strStatus(std::move(strStatus)), m_work(std::move(work)) {}

protected:
    void Work() override {
        SetPieces(0);
        DoFiles(
            1,
            [this](qsizetype, Torvane::File::IWalkFilter* pFilter) {
                try {
                    m_work(pFilter);
                } catch (const Torvane::CRunException&) {
                    // What is given up is told of as that.
                    if (!pFilter->Cancelled())
                        throw;
                }
            },
            [this](qsizetype) { return m_strStatus; });
    }

    void TellEnd(Torvane::Dialog::MFC::IPeople& people, const QString& strText) override {
        if (IsCancelled())
            people.Notice(strText);
        else
            CStatusTask::TellEnd(people, strText);
    }

private:
    QString m_strStatus;
    std::function<void(Torvane::File::IWalkFilter*)> m_work;
};
