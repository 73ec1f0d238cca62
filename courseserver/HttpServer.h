#pragma once

#include "courseserver/HttpRequest.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <functional>
#include <memory>

class QFile;

struct HttpReply {
    int nStatus = 200;
    QByteArray strContentType = "text/plain; charset=GBK";
    /// Whole lines without their line ends.
    QByteArrayList Headers;
    QByteArray Body;
    /// An open file that is sent instead of the body.
    std::shared_ptr<QFile> pFile;
};

/// A small HTTP/1.0 server: one thread, one reply a connection. Slow clients time out, and their number and
/// what each may hold in memory are bounded.
class CHttpServer {
public:
    using Handler = std::function<HttpReply(const HttpRequest&, const QByteArray& peer)>;
    /// Told of each request that the server itself refuses, with the status of the reply.
    using FaultStep = std::function<void(const QByteArray& peer, int nStatus)>;

    CHttpServer(Handler handler, FaultStep onFault);
    ~CHttpServer();
    CHttpServer(const CHttpServer&) = delete;
    CHttpServer& operator=(const CHttpServer&) = delete;

    /// Port 0 lets the system choose. Throws Torvane::CRunException when the port can't be had.
    void Listen(const QString& strAddress, quint16 nPort);
    quint16 GetPort() const;

    /// How long a client may take for its request; 10 seconds unless told.
    void SetRequestTimeout(int nMilliseconds);

    /// Serves until Stop.
    void Run();
    /// May be called from any thread and from a signal handler, also before Run.
    void Stop();

private:
    struct Connection;
    struct State;
    std::unique_ptr<State> m_pState;
};
