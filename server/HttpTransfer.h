#pragma once

#include "server/HttpMessage.h"

/// One request and its reply. The transfer library, which alone can do it, stands behind the module in
/// transfer/.
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
    /// The empty line behind the headers came.
    bool bHeadersEnded = false;
    QByteArray Body;
};

/// Loads the module at the first request, and waits for it as for the reply. Throws CHttpClientException;
/// CCancelledException of that family when the wait step answered false.
TransferReply RunTransfer(const TransferRequest& request, const CHttpClient::WaitStep& waitStep);

/// What the module exports, under the name of c_szTransferFunction. The error is what failed, and empty when
/// nothing did; the reply then holds what had come until then. The library is initialised at the first call:
/// a request without a host does nothing else.
using TransferFunction = void (*)(const TransferRequest& request, const CHttpClient::WaitStep& waitStep,
                                  TransferReply& reply, QString& strError);
inline constexpr const char* c_szTransferFunction = "VorelRunTransfer";

} // namespace Torvane::Net
