#include "platform/ui/engine/NetGate.h"

#include "foundation/Proxy.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>
#include <QtEndian>

#include <optional>

namespace {

constexpr char c_cVersion = 5;
constexpr char c_cConnect = 1;
constexpr char c_cGranted = 0, c_cRefused = 2;
/// What one side has sent and the other not yet taken.
constexpr qint64 c_nMaxWaiting = 1024 * 1024;
/// A connection that has not said by then where it wants to is none of the engine's.
constexpr int c_nGreetingMilliseconds = 10000;

/// Of a proxy that names none; as the program's own transfers take it.
constexpr quint16 c_nProxyPort = 1080;

using SPlace = CNetGate::SPlace;

/// The wish to be connected: four bytes, then the host in one of three forms and the port. Nothing as long as
/// it isn't there as a whole; a port of 0 when it is none that we know.
std::optional<SPlace> ReadWish(QTcpSocket& client) {
    const QByteArray bytes = client.peek(4 + 1 + 255 + 2);
    if (bytes.size() < 5)
        return std::nullopt;
    enum : char { Ipv4 = 1, Name = 3, Ipv6 = 4 };
    const char cForm = bytes[3];
    const qsizetype nStart = cForm == Name ? 5 : 4;
    const qsizetype nHost = cForm == Ipv4 ? 4 : cForm == Ipv6 ? 16 : cForm == Name ? quint8(bytes[4]) : 0;
    if (bytes[0] != c_cVersion || bytes[1] != c_cConnect || nHost == 0)
        return SPlace{};
    if (bytes.size() < nStart + nHost + 2)
        return std::nullopt;
    const char* pHost = bytes.constData() + nStart;
    SPlace place{{}, qFromBigEndian<quint16>(pHost + nHost)};
    if (cForm == Name)
        place.strHost = QString::fromLatin1(pHost, nHost);
    else if (cForm == Ipv4)
        place.strHost = QHostAddress(qFromBigEndian<quint32>(pHost)).toString();
    else
        place.strHost = QHostAddress(reinterpret_cast<const quint8*>(pHost)).toString();
    client.read(nStart + nHost + 2);
    return place;
}

/// The proxy that leads to a place, as the environment names it: with or without a scheme, a name and a
/// password. One that isn't known as any leads nowhere, as for the program's own transfers.
QNetworkProxy ProxyTo(const QByteArray& scheme, const SPlace& place) {
    const QString strHost = place.strHost.contains(u':') ? u'[' + place.strHost + u']' : place.strHost;
    const QByteArray address = Torvane::Net::ProxyFor(scheme, strHost.toLatin1()).Address;
    if (address.isEmpty())
        return QNetworkProxy::NoProxy;
    const QUrl url(QString::fromUtf8(address.contains("://") ? address : "http://" + address));
    const bool bSocks = url.scheme().startsWith(QLatin1String("socks"));
    return {bSocks ? QNetworkProxy::Socks5Proxy : QNetworkProxy::HttpProxy, url.host(),
            quint16(url.port(c_nProxyPort)), url.userName(QUrl::FullyDecoded),
            url.password(QUrl::FullyDecoded)};
}

void Reply(QTcpSocket& client, char cAnswer) {
    const char reply[] = {c_cVersion, cAnswer, 0, 1, 0, 0, 0, 0, 0, 0};
    client.write(reply, sizeof reply);
}

/// The bytes of a handshake that a client begins, in the order in which they are to be read; past their end
/// it gives zeros.
class CHello {
public:
    explicit CHello(QByteArrayView bytes) : m_bytes(bytes) {}
    bool IsAtEnd() const { return m_bytes.isEmpty(); }
    int Number(int nBytes) {
        int nValue = 0;
        for (const char c : Take(nBytes))
            nValue = nValue * 256 + quint8(c);
        return nValue;
    }
    QByteArrayView Take(qsizetype nBytes) {
        const QByteArrayView taken = m_bytes.first(qMin(nBytes, m_bytes.size()));
        m_bytes = m_bytes.sliced(taken.size());
        return taken;
    }
    /// A part that has its length, of so many bytes, before it.
    QByteArrayView Part(int nBytes) { return Take(Number(nBytes)); }

private:
    QByteArrayView m_bytes;
};

constexpr char c_cHandshake = 0x16;
constexpr int c_nRecordHead = 5;

/// Whether the first record of a connection by TLS asks for a protocol of the web by name, as browsers do for
/// pages and for sockets, and not for calls.
bool NamesProtocolOfWeb(QByteArrayView record) {
    constexpr int c_nHelloHead = 1 + 3 + 2 + 32, c_nProtocols = 16;
    CHello hello(record.sliced(c_nRecordHead));
    hello.Take(c_nHelloHead);
    hello.Part(1);
    hello.Part(2);
    hello.Part(1);
    CHello extensions(hello.Part(2));
    while (!extensions.IsAtEnd()) {
        const int nKind = extensions.Number(2);
        CHello extension(extensions.Part(2));
        if (nKind != c_nProtocols)
            continue;
        CHello names(extension.Part(2));
        while (!names.IsAtEnd()) {
            const QByteArrayView name = names.Part(1);
            if (name == "h2" || name == "http/1.1")
                return true;
        }
    }
    return false;
}

/// Whether a connection begins as one to a place of the web does: with the name of a method or with TLS that
/// names the web. What relays calls begins otherwise, and is asked for without the guard. Nothing as long as
/// too little has come.
std::optional<bool> BeginsAsWeb(QTcpSocket& client) {
    constexpr int c_nMaxRecord = 0x4000;
    const QByteArray bytes = client.peek(c_nRecordHead + c_nMaxRecord);
    if (bytes.isEmpty())
        return std::nullopt;
    if (bytes[0] != c_cHandshake)
        return bytes[0] >= 'A' && bytes[0] <= 'Z';
    if (bytes.size() < c_nRecordHead)
        return std::nullopt;
    const int nRecord = qFromBigEndian<quint16>(bytes.constData() + 3);
    if (nRecord > c_nMaxRecord)
        return false;
    if (bytes.size() < c_nRecordHead + nRecord)
        return std::nullopt;
    return NamesProtocolOfWeb(QByteArrayView(bytes).first(c_nRecordHead + nRecord));
}

/// Carries over what one side says, no faster than the other takes it.
void Carry(QTcpSocket* pFrom, QTcpSocket* pTo) {
    const auto carry = [pFrom, pTo = QPointer(pTo)] {
        if (pTo && pTo->bytesToWrite() < c_nMaxWaiting)
            pTo->write(pFrom->read(c_nMaxWaiting));
    };
    pFrom->setReadBufferSize(c_nMaxWaiting);
    QObject::connect(pFrom, &QTcpSocket::readyRead, pTo, carry);
    QObject::connect(pTo, &QTcpSocket::bytesWritten, pFrom, carry);
    QObject::connect(pFrom, &QTcpSocket::disconnected, pTo, [pFrom, pTo] {
        pTo->write(pFrom->readAll());
        pTo->disconnectFromHost();
    });
    carry();
}

} // namespace

CNetGate& CNetGate::Instance() {
    // It lives as long as the engine, which stays until the process ends.
    static auto* const s_pGate = new CNetGate;
    return *s_pGate;
}

CNetGate::CNetGate() {
    setProxy(QNetworkProxy::NoProxy);
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* pClient = nextPendingConnection())
            Greet(pClient);
    });
    listen(QHostAddress::LocalHost);
}

void CNetGate::Allow(const void* pOwner, const QUrl& url) {
    const bool bSecure = url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("wss");
    // An address of the sixth version stands in brackets in a URL alone, where host() leaves them out.
    const SPlace place{url.host(QUrl::FullyEncoded), quint16(url.port(bSecure ? 443 : 80))};
    m_allowed[pOwner].insert(place.Name(), bSecure ? "https" : "http");
}

void CNetGate::Withdraw(const void* pOwner) {
    m_allowed.remove(pOwner);
}

QByteArray CNetGate::AllowedScheme(const QString& strPlace) const {
    for (const auto& places : m_allowed) {
        if (places.contains(strPlace))
            return places.value(strPlace);
    }
    return {};
}

/// The client names the ways in which it can prove itself, and is told that it need not.
void CNetGate::Greet(QTcpSocket* pClient) {
    connect(pClient, &QTcpSocket::disconnected, pClient, &QObject::deleteLater);
    auto* pTimer = new QTimer(pClient);
    connect(pTimer, &QTimer::timeout, pClient, &QTcpSocket::abort);
    pTimer->start(c_nGreetingMilliseconds);
    connect(pClient, &QTcpSocket::readyRead, pTimer, [this, pClient, pTimer, bGreeted = false]() mutable {
        if (!bGreeted) {
            const QByteArray bytes = pClient->peek(2);
            const qint64 nGreeting = 2 + (bytes.size() < 2 ? 0 : quint8(bytes[1]));
            if (bytes.size() < 2 || pClient->bytesAvailable() < nGreeting)
                return;
            pClient->read(nGreeting);
            const char reply[] = {c_cVersion, 0};
            pClient->write(reply, sizeof reply);
            bGreeted = true;
        }
        if (const auto wish = ReadWish(*pClient)) {
            // With the timer this handler goes too.
            pTimer->deleteLater();
            pClient->disconnect(pTimer);
            Grant(pClient, *wish);
        }
    });
}

/// The engine is told that it is connected before it is: nobody hears of a connection that says nothing, or
/// nothing that a place of the web is told.
void CNetGate::Grant(QTcpSocket* pClient, const SPlace& place) {
    if (AllowedScheme(place.Name()).isEmpty()) {
        Reply(*pClient, c_cRefused);
        pClient->disconnectFromHost();
        return;
    }
    pClient->setReadBufferSize(c_nMaxWaiting);
    Reply(*pClient, c_cGranted);
    auto* pFirst = new QObject(pClient);
    const auto onFirst = [this, pClient, pFirst, place] {
        const std::optional<bool> ofWeb = BeginsAsWeb(*pClient);
        if (!ofWeb)
            return;
        pClient->disconnect(pFirst);
        pFirst->deleteLater();
        // The place may have been closed meanwhile.
        const QByteArray scheme = AllowedScheme(place.Name());
        if (*ofWeb && !scheme.isEmpty())
            Connect(pClient, place, scheme);
        else
            pClient->abort();
    };
    connect(pClient, &QTcpSocket::readyRead, pFirst, onFirst);
    onFirst();
}

void CNetGate::Connect(QTcpSocket* pClient, const SPlace& place, const QByteArray& scheme) {
    auto* pFar = new QTcpSocket(pClient);
    pFar->setProxy(ProxyTo(scheme, place));
    connect(pFar, &QTcpSocket::connected, pClient, [pClient, pFar] {
        Carry(pFar, pClient);
        Carry(pClient, pFar);
    });
    connect(pFar, &QTcpSocket::errorOccurred, pClient, [pClient] { pClient->disconnectFromHost(); });
    pFar->connectToHost(place.strHost, place.nPort);
}
