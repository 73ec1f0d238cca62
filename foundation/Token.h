#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// The token that carries a digest and a challenge to the course server: RSA over seven 32-bit words, with a
/// key that both sides make from two key texts.

/// strDigest has 32 hexadecimal characters. The result is the number's 32-bit words, least significant first,
/// in base 36, joined by ".".
QByteArray SignToken(QByteArrayView digest, quint32 nTick, quint32 nRandom, QByteArrayView keyOne,
                     QByteArrayView keyTwo);

struct OpenedToken {
    QByteArray digest;
    quint32 nTick = 0;
    quint32 nRandom = 0;
};

/// What the server does: the public exponent opens the token. Nothing when the text is no token of this key.
std::optional<OpenedToken> OpenToken(QByteArrayView token, QByteArrayView keyOne, QByteArrayView keyTwo);
