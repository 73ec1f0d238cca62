#include "platform/base/SlowStep.h"

namespace {

constexpr qint64 c_nPaintMilliseconds = 40;

} // namespace

CSlowStep::CSlowStep(Torvane::Dialog::MFC::IPeople& people, const QString& strText, const QString& strTitle)
    : m_people(people), m_strText(strText), m_strTitle(strTitle) {
    m_painted.start();
}

CSlowStep::~CSlowStep() = default;

void CSlowStep::SetText(const QString& strText) {
    m_strText = strText;
    m_bNewText = true;
}

bool CSlowStep::GoOn(qint64 nDone, qint64 nTotal) {
    if (m_pStatus == nullptr && m_painted.elapsed() < m_people.GetPatience()) {
        m_people.KeepPainting();
        return true;
    }
    if (m_pStatus != nullptr && m_painted.elapsed() < c_nPaintMilliseconds)
        return true;
    if (m_pStatus == nullptr) {
        m_pStatus = m_people.OpenStatus();
        m_pStatus->SetTitle(m_strTitle);
        m_pStatus->ShowStatus(m_strText);
        m_pStatus->AllowCancel(true);
    } else if (m_bNewText) {
        m_pStatus->ShowStatus(m_strText);
    }
    m_bNewText = false;
    m_pStatus->ShowProgress(nDone, nTotal);
    const bool bGoOn = m_pStatus->KeepWaiting();
    m_painted.restart();
    return bGoOn;
}

void CSlowStep::Pause() {
    m_pStatus.reset();
    m_painted.restart();
}
