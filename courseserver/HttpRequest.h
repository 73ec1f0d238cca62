#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Reading a request, whatever arrives: the target keeps its bytes above 127 and its blanks.

struct HttpRequest {
    QByteArray strMethod;
    /// Path and query, raw; begins with "/".
    QByteArray strTarget;

    /// What stands before the first "?", with runs of "/" made one.
    QByteArray Path() const;
    /// What stands behind the first "?".
    QByteArray Query() const;
};

/// Collects the bytes of one request, at most 8 KB of them.
class CRequestReader {
public:
    enum class EState { More, Done, Bad, TooLong };

    /// To be called until it answers something else than More; later bytes are ignored.
    EState Feed(QByteArrayView bytes);
    const HttpRequest& GetRequest() const { return m_request; }

private:
    EState ParseRequestLine(QByteArrayView line);

    QByteArray m_buffer;
    HttpRequest m_request;
    EState m_state = EState::More;
};
