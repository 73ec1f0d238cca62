#include "courseserver/ReplayGuard.h"

namespace {

constexpr qint64 c_nRepeatWithin = 5'000;
constexpr qsizetype c_nMaxTokens = 16 * 1024;

} // namespace

bool CReplayGuard::Accept(const QByteArray& token, const QByteArray& query, qint64 nNow) {
    while (!m_order.isEmpty() &&
           (m_order.size() > c_nMaxTokens || m_seen.value(m_order.head()).nTime + m_nMemory < nNow))
        m_seen.remove(m_order.dequeue());
    const size_t nQuery = qHash(query);
    if (const auto it = m_seen.constFind(token); it != m_seen.constEnd())
        return it->nQuery == nQuery && nNow - it->nTime <= c_nRepeatWithin;
    m_seen.insert(token, {nQuery, nNow});
    m_order.enqueue(token);
    return true;
}
