#pragma once

#include <QByteArray>
#include <QHash>
#include <QQueue>

/// Remembers the tokens seen lately, so that a request that someone overheard can't be sent again. The very
/// same request within a few seconds passes: a proxy may repeat one whose reply got lost.
class CReplayGuard {
public:
    explicit CReplayGuard(qint64 nMemory) : m_nMemory(nMemory) {}

    /// False for a token that came before in another request, or too long ago. Times in milliseconds.
    bool Accept(const QByteArray& token, const QByteArray& query, qint64 nNow);

private:
    struct Seen {
        size_t nQuery = 0;
        qint64 nTime = 0;
    };
    qint64 m_nMemory;
    QHash<QByteArray, Seen> m_seen;
    QQueue<QByteArray> m_order;
};
