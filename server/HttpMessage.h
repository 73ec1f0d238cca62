#pragma once

#include "server/HttpClient.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <functional>
#include <optional>

/// The texts that go over the wire and come back, as plain functions over bytes.
namespace Torvane::Net {

struct HttpUrl {
    QByteArray strScheme;
    QByteArray strHost;
    quint16 nPort = 80;
    /// Path with its query, raw; begins with "/".
    QByteArray strPath;
};

/// Throws Torvane::CRunException for a text that is no URL of "http" or "https", for one whose parts are too
/// long (scheme 15, host 255, path with query 1,023 bytes), and for one that would break the request line.
HttpUrl SplitUrl(QByteArrayView url);

/// The status number of a response's first line; 400 when there is none.
int ParseStatus(QByteArrayView headers);

/// The value of the first header of this name, in any letter case and without the blanks around it.
std::optional<QByteArray> HeaderValue(QByteArrayView headers, QByteArrayView name);

/// The decimal value of "Content-Length"; negative when the header is missing.
qint64 ParseContentLength(QByteArrayView headers);

/// Letters and digits stand, white space becomes "+", any other byte "%XX".
QByteArray EncodeFormValue(QByteArrayView value);
QByteArray BuildFormBody(const QList<CHttpParameter>& parameters);

/// A boundary that occurs in no parameter. nextRandom gives numbers that are not negative.
QByteArray ChooseBoundary(const QList<CHttpParameter>& parameters, const std::function<int()>& nextRandom);
QByteArray BuildMultipartBody(const QList<CHttpParameter>& parameters, QByteArrayView boundary);

} // namespace Torvane::Net
