#pragma once

#include "server/HttpMessage.h"

/// One request and its reply over the transfer library; the only file pair that knows it.
namespace Torvane::Net {

struct TransferRequest {
    HttpUrl Url;
    bool bHead = false;
    bool bPost = false;
    QByteArray strAgent;
    /// Whole lines without their line ends, sent as they stand.
    QByteArrayList Headers;
    QByteArray Body;
    /// A reply with more bytes of headers fails.
    qsizetype nMaxHeaders = 0;
};

struct TransferReply {
    /// Status line and headers of the last reply, CR LF behind each, without the empty line. Empty for a
    /// reply that has none.
    QByteArray Headers;
    QByteArray Body;
};

/// Throws CHttpClientException.
TransferReply RunTransfer(const TransferRequest& request, const CHttpClient::WaitStep& waitStep);

/// The proxy that the environment names for this host, or an empty text. Hosts of this machine never have
/// one.
QByteArray ProxyFor(QByteArrayView host);

} // namespace Torvane::Net
