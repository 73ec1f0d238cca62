#pragma once

#include <QHash>
#include <QTcpServer>

class QTcpSocket;

/// The one way of the engine to the network: a SOCKS proxy of this process, which leads on to places that the
/// guard of a page has let through, and to no other. A page can open connections that no guard sees (calls,
/// hints, what a later engine may bring); all of them come here. Where the environment names a proxy, the way
/// leads on through that one.
class CNetGate : public QTcpServer {
    Q_OBJECT
public:
    struct SPlace {
        QString strHost;
        quint16 nPort = 0;
        QString Name() const { return strHost.toLower() + u':' + QString::number(nPort); }
    };

    /// Listens from its first use on. Where that fails, the engine's connections end nowhere.
    static CNetGate& Instance();

    /// Lets connections to the place of a web address through, on behalf of an owner.
    void Allow(const void* pOwner, const QUrl& url);
    /// The owner's places are closed again. What is connected stays so.
    void Withdraw(const void* pOwner);

private:
    CNetGate();
    void Greet(QTcpSocket* pClient);
    void Grant(QTcpSocket* pClient, const SPlace& place);
    void Connect(QTcpSocket* pClient, const SPlace& place, const QByteArray& scheme);
    /// The scheme by which the place was let through; empty when it wasn't.
    QByteArray AllowedScheme(const QString& strPlace) const;

    /// Names of places, each with its scheme for a proxy.
    QHash<const void*, QHash<QString, QByteArray>> m_allowed;
};
