#pragma once

#include <QByteArray>
#include <QString>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <atomic>
#include <future>

/// A server on the loopback address that takes one connection after the other, records what comes, and sends
/// whatever bytes it was told to, be they HTTP or not.
class CStrangeServer {
public:
    enum class EEnd {
        Close,
        /// Sends its bytes again and again until the client goes away.
        Repeat,
        /// Says nothing more, and keeps the connection open.
        Hang
    };

    explicit CStrangeServer(const QByteArray& reply, EEnd end = EEnd::Close) : m_reply(reply), m_end(end) {
        std::promise<quint16> port;
        m_pThread.reset(QThread::create([this, &port] {
            QTcpServer listener;
            if (!listener.listen(QHostAddress::LocalHost))
                qFatal("no loopback socket");
            port.set_value(listener.serverPort());
            while (!m_bStop) {
                if (!listener.waitForNewConnection(10))
                    continue;
                QTcpSocket& client = *listener.nextPendingConnection();
                ReadRequest(client);
                Answer(client);
                client.close();
            }
        }));
        m_pThread->start();
        m_nPort = port.get_future().get();
    }
    ~CStrangeServer() { Stop(); }
    Q_DISABLE_COPY(CStrangeServer)

    QByteArray Url(const QByteArray& path = "/") const { return "http://" + Host() + path; }
    QByteArray Host() const { return "127.0.0.1:" + QByteArray::number(m_nPort); }

    /// What the last client sent. To be asked for when its request has ended.
    QByteArray Received() {
        Stop();
        return m_received;
    }

private:
    void Stop() {
        m_bStop = true;
        m_pThread->wait();
    }
    bool IsHeard(const QTcpSocket& client) const {
        return !m_bStop && client.state() == QAbstractSocket::ConnectedState;
    }
    void ReadRequest(QTcpSocket& client) {
        m_received.clear();
        while (!IsWhole() && (client.bytesAvailable() > 0 || IsHeard(client))) {
            client.waitForReadyRead(10);
            m_received += client.readAll();
        }
    }
    bool IsWhole() const {
        const qsizetype nEnd = m_received.indexOf("\r\n\r\n");
        const qsizetype nLength = m_received.indexOf("Content-Length: ");
        if (nEnd < 0 || nLength < 0 || nLength > nEnd)
            return nEnd >= 0;
        const QByteArray number = m_received.sliced(nLength + 16);
        return m_received.size() >= nEnd + 4 + number.first(number.indexOf('\r')).toInt();
    }
    void Answer(QTcpSocket& client) const {
        do {
            client.write(m_reply);
            while (client.bytesToWrite() > 0 && IsHeard(client))
                client.waitForBytesWritten(10);
        } while (m_end == EEnd::Repeat && IsHeard(client));
        while (m_end == EEnd::Hang && IsHeard(client))
            client.waitForDisconnected(10);
    }

    QByteArray m_reply;
    EEnd m_end;
    quint16 m_nPort = 0;
    QByteArray m_received;
    std::atomic<bool> m_bStop{false};
    std::unique_ptr<QThread> m_pThread;
};
