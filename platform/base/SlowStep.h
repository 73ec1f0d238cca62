#pragma once

#include "platform/base/People.h"

#include <QElapsedTimer>

#include <memory>

/// A step that may take long. Once it has lasted a moment, the person sees a status window with the progress,
/// and may give the step up.
class CSlowStep {
public:
    CSlowStep(Torvane::Dialog::MFC::IPeople& people, const QString& strText,
              const QString& strTitle = QString());
    ~CSlowStep();
    CSlowStep(const CSlowStep&) = delete;
    CSlowStep& operator=(const CSlowStep&) = delete;

    /// What the step is at now; shown when the window is painted next.
    void SetText(const QString& strText);
    /// Called between any two pieces of the step, however small; false when the person has given it up.
    bool GoOn(qint64 nDone, qint64 nTotal);
    /// Called behind a box: how long the person reads is no part of the step.
    void Pause();

private:
    Torvane::Dialog::MFC::IPeople& m_people;
    QString m_strText;
    QString m_strTitle;
    bool m_bNewText = false;
    QElapsedTimer m_painted;
    std::unique_ptr<Torvane::Dialog::MFC::CShowStatusDlg> m_pStatus;
};
