#include "server/ServerWait.h"

namespace {

/// A quick answer would only have a window flash. And a heartbeat comes unasked, and is over before anybody
/// notices: one that takes longer says what is going on.
constexpr qint64 c_nSilentMilliseconds = 1000;

} // namespace

CServerWait::CServerWait(Torvane::Dialog::MFC::IPeople& people, Status* pStatus, const QString& strText)
    : m_people(people), m_pStatus(pStatus), m_strText(strText) {
    m_waited.start();
    if (m_pStatus)
        m_pStatus->AllowCancel(true);
}

CServerWait::~CServerWait() {
    if (m_pStatus)
        m_pStatus->AllowCancel(false);
}

bool CServerWait::Step() {
    if (!m_pStatus && m_waited.hasExpired(c_nSilentMilliseconds)) {
        m_pOwn = m_people.OpenStatus();
        m_pOwn->ShowStatus(m_strText);
        m_pOwn->AllowCancel(true);
        m_pStatus = m_pOwn.get();
    }
    if (m_pStatus)
        return m_pStatus->KeepWaiting();
    m_people.KeepPainting();
    return true;
}
