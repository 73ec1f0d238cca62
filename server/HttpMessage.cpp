#include "server/HttpMessage.h"

#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Text.h"
#include "server/Texts.h"

#include <algorithm>

namespace Torvane::Net {

namespace {

constexpr qsizetype c_nMaxScheme = 15;
constexpr qsizetype c_nMaxHost = 255;
constexpr qsizetype c_nMaxPath = 1023;
constexpr int c_nUnreadableStatus = 400;

bool IsAsciiAlnum(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsWhiteSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

[[noreturn]] void ThrowInvalid(QByteArrayView url, const QString& strReason) {
    throw CRunException(ServerText::c_strInvalidUrl.arg(strReason, CodePage::Decode(url)));
}

/// Separates host and port; false when either is none.
bool SplitAuthority(QByteArrayView authority, HttpUrl& result) {
    // Name and password of an address are understood, and sent nowhere.
    authority = authority.sliced(authority.lastIndexOf('@') + 1);
    qsizetype nHostEnd = authority.indexOf(':');
    if (authority.startsWith('[')) {
        nHostEnd = authority.indexOf(']') + 1;
        if (nHostEnd == 0)
            return false;
    } else if (nHostEnd < 0) {
        nHostEnd = authority.size();
    }
    result.strHost = authority.first(nHostEnd).toByteArray();
    const auto badInHost = [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == 0x7F; };
    if (result.strHost.isEmpty() || std::any_of(result.strHost.begin(), result.strHost.end(), badInHost))
        return false;
    const QByteArrayView rest = authority.sliced(nHostEnd);
    if (rest.isEmpty() || rest == ":")
        return true;
    bool bNumber = false;
    const uint nPort = rest.startsWith(':') ? rest.sliced(1).toByteArray().toUInt(&bNumber) : 0;
    if (!bNumber || nPort == 0 || nPort > 65535)
        return false;
    result.nPort = static_cast<quint16>(nPort);
    return true;
}

} // namespace

HttpUrl SplitUrl(QByteArrayView url) {
    HttpUrl result;
    const qsizetype nColon = url.indexOf("://");
    if (nColon <= 0)
        ThrowInvalid(url, ServerText::c_strUrlScheme);
    result.strScheme = url.first(nColon).toByteArray().toLower();
    if (result.strScheme.size() > c_nMaxScheme)
        ThrowInvalid(url, ServerText::c_strUrlTooLong);
    if (result.strScheme != "http" && result.strScheme != "https")
        ThrowInvalid(url, ServerText::c_strUrlScheme);
    result.nPort = result.strScheme == "https" ? 443 : 80;

    const QByteArrayView rest = url.sliced(nColon + 3);
    const auto* pEnd = std::find_if(rest.begin(), rest.end(), [](char c) { return c == '/' || c == '?'; });
    const qsizetype nAuthority = pEnd - rest.begin();
    if (!SplitAuthority(rest.first(nAuthority), result))
        ThrowInvalid(url, ServerText::c_strUrlNotValid);
    result.strPath = rest.sliced(nAuthority).toByteArray();
    if (result.strHost.size() > c_nMaxHost || result.strPath.size() > c_nMaxPath)
        ThrowInvalid(url, ServerText::c_strUrlTooLong);
    if (!result.strPath.startsWith('/'))
        result.strPath.prepend('/');
    // A line end would let an address write headers of its own.
    const auto breaksLine = [](char c) { return c == '\r' || c == '\n' || c == '\0'; };
    if (std::any_of(result.strPath.begin(), result.strPath.end(), breaksLine))
        ThrowInvalid(url, ServerText::c_strUrlNotValid);
    return result;
}

int ParseStatus(QByteArrayView headers) {
    const qsizetype nEnd = headers.indexOf('\n');
    if (nEnd < 0)
        return c_nUnreadableStatus;
    const QList<QByteArray> pieces = headers.first(nEnd).toByteArray().split(' ');
    if (pieces.size() < 2)
        return c_nUnreadableStatus;
    return ParseInt(QString::fromLatin1(pieces[1]));
}

std::optional<QByteArray> HeaderValue(QByteArrayView headers, QByteArrayView name) {
    const QList<QByteArray> lines = headers.toByteArray().split('\n');
    for (const QByteArray& line : lines) {
        const qsizetype nColon = line.indexOf(':');
        if (nColon > 0 && line.first(nColon).trimmed().compare(name, Qt::CaseInsensitive) == 0)
            return line.sliced(nColon + 1).trimmed();
    }
    return std::nullopt;
}

qint64 ParseContentLength(QByteArrayView headers) {
    const auto length = HeaderValue(headers, "Content-Length");
    return length ? ParseInt(QString::fromLatin1(*length)) : -1;
}

QByteArray EncodeFormValue(QByteArrayView value) {
    static constexpr char c_digits[] = "0123456789ABCDEF";
    QByteArray result;
    result.reserve(value.size());
    for (const char c : value) {
        if (IsAsciiAlnum(c)) {
            result.append(c);
        } else if (IsWhiteSpace(c)) {
            result.append('+');
        } else {
            const auto n = static_cast<unsigned char>(c);
            result.append('%').append(c_digits[n >> 4]).append(c_digits[n & 15]);
        }
    }
    return result;
}

QByteArray BuildFormBody(const QList<CHttpParameter>& parameters) {
    QByteArrayList pairs;
    for (const CHttpParameter& parameter : parameters)
        pairs.append(parameter.strName + '=' + EncodeFormValue(parameter.strValue));
    return pairs.join('&');
}

QByteArray ChooseBoundary(const QList<CHttpParameter>& parameters, const std::function<int()>& nextRandom) {
    static constexpr char c_alphabet[] = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                         "`-=~!@#$%^&*()_+[]\\{}|;':\",./<>?";
    constexpr int c_nCharacters = sizeof(c_alphabet) - 1;
    constexpr int c_nDrawn = 16;
    for (;;) {
        QByteArray boundary(15, '-');
        for (int n = 0; n < c_nDrawn; ++n)
            boundary.append(c_alphabet[nextRandom() % c_nCharacters]);
        const auto holds = [&](const CHttpParameter& parameter) {
            return parameter.Kind == CHttpParameter::EKind::Text ? parameter.strValue.contains(boundary)
                                                                 : parameter.FileData.contains(boundary);
        };
        if (std::none_of(parameters.begin(), parameters.end(), holds))
            return boundary;
    }
}

QByteArray BuildMultipartBody(const QList<CHttpParameter>& parameters, QByteArrayView boundary) {
    const QByteArray delimiter = "--" + boundary.toByteArray();
    QByteArray body;
    for (const CHttpParameter& parameter : parameters) {
        body += delimiter + "\r\nContent-Disposition: form-data; name=\"" + parameter.strName + '"';
        if (parameter.Kind == CHttpParameter::EKind::Text) {
            body += "\r\n\r\n" + parameter.strValue + "\r\n";
        } else {
            body += "; filename=\"" + parameter.strFileName +
                    "\"\r\nContent-Length: " + QByteArray::number(parameter.FileData.size()) + "\r\n\r\n" +
                    parameter.FileData + "\r\n";
        }
    }
    return body + delimiter + "--\r\n";
}

} // namespace Torvane::Net
