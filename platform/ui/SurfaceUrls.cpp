#include "platform/ui/SurfaceUrls.h"

#include "foundation/CodePage.h"
#include "foundation/Urls.h"
#include "platform/base/NativePath.h"

#include <QFileInfo>

#include <cctype>
#include <utility>

namespace SurfaceUrls {

namespace {

const QLatin1String c_strFilePrefix("file:");
/// Longer than any name of a file.
constexpr qsizetype c_nMaxName = 1024;

bool IsDrivePath(QStringView strText) {
    return strText.size() >= 3 && strText[1] == u':' && strText[0].unicode() < 128 && strText[0].isLetter() &&
           (strText[2] == u'\\' || strText[2] == u'/');
}

bool MustEscape(QChar c) {
    constexpr QStringView c_strEscaped = u" #%^&[]{}\"<>?";
    return c.unicode() < 0x20 || c.unicode() == 0x7F || c.unicode() == 0xA0 || c_strEscaped.contains(c);
}

/// Splits "path?query#fragment" behind the path.
qsizetype EndOfPath(QStringView strText) {
    for (qsizetype i = 0; i < strText.size(); ++i) {
        if (strText[i] == u'?' || strText[i] == u'#')
            return i;
    }
    return strText.size();
}

/// A "%" without two digits behind it stands for itself.
QByteArray BytesOf(const QString& strText) {
    const QByteArray text = strText.toUtf8();
    const auto isDigit = [&](qsizetype n) { return n < text.size() && std::isxdigit(uchar(text[n])) != 0; };
    QByteArray result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool bEscape = text[i] == '%' && isDigit(i + 1) && isDigit(i + 2);
        result += bEscape ? static_cast<char>(text.mid(i + 1, 2).toInt(nullptr, 16)) : text[i];
        i += bEscape ? 2 : 0;
    }
    return result;
}

/// Name by name: old pages escape a name in the code page, and the engine those of the folders in UTF-8.
QString Decode(const QString& strText) {
    QStringList names = strText.split(u'/');
    for (QString& strName : names) {
        const QByteArray bytes = BytesOf(strName);
        strName = QString::fromUtf8(bytes);
        if (strName.contains(QChar::ReplacementCharacter))
            strName = CodePage::Decode(bytes);
    }
    return names.join(u'/');
}

/// The bare name at which a file URL points, with those escapes that the engine has not made itself.
QString NameWithEscapes(const QUrl& url) {
    QByteArray name = url.path(QUrl::FullyEncoded).toLatin1();
    name = name.mid(name.lastIndexOf('/') + 1);
    QByteArray result;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const int nByte = name[i] == '%' ? name.mid(i + 1, 2).toInt(nullptr, 16) : 0;
        result += nByte >= 0x80 ? static_cast<char>(nByte) : name[i];
        i += nByte >= 0x80 ? 2 : 0;
    }
    return QString::fromUtf8(result);
}

/// The scheme of an absolute reference, lower-case and without the colon; empty for a relative one.
QString SchemeOf(const QString& strText) {
    const qsizetype nColon = strText.indexOf(u':');
    if (nColon < 2)
        return {};
    for (const QChar c : QStringView(strText).left(nColon)) {
        const bool bPlain =
            c.unicode() < 128 && (c.isLetterOrNumber() || c == u'+' || c == u'-' || c == u'.');
        if (!bPlain)
            return {};
    }
    return strText.left(nColon).toLower();
}

/// The backslash path of what stands behind "file:" and before query and fragment; empty for another machine.
QString AfterScheme(QString strRest) {
    strRest.replace(u'\\', u'/');
    qsizetype nSlashes = 0;
    while (nSlashes < strRest.size() && strRest[nSlashes] == u'/')
        ++nSlashes;
    QString strBody = strRest.mid(nSlashes);
    if (IsDrivePath(strBody))
        return Decode(strBody).replace(u'/', u'\\');
    if (nSlashes == 2) {
        const QLatin1String strLocal("localhost/");
        if (!strBody.startsWith(strLocal, Qt::CaseInsensitive))
            return {};
        strBody = strBody.mid(strLocal.size());
    }
    return Platform::FromNative(u'/' + Decode(strBody));
}

} // namespace

QString PathToReference(const QString& strPath) {
    QString strResult = QStringLiteral("file:///");
    for (const QChar c : strPath) {
        if (c == u'\\')
            strResult += u'/';
        else if (MustEscape(c))
            strResult += QString::fromLatin1(QUrl::toPercentEncoding(QString(c)));
        else
            strResult += c;
    }
    return strResult;
}

std::optional<QString> CanonicalReference(const QString& strText) {
    const QString strTrimmed = strText.trimmed();
    if (IsDrivePath(strTrimmed))
        return PathToReference(QString(strTrimmed).replace(u'/', u'\\'));
    if (!strTrimmed.startsWith(c_strFilePrefix, Qt::CaseInsensitive))
        return std::nullopt;
    const QString strRest = strTrimmed.mid(c_strFilePrefix.size());
    const qsizetype nEnd = EndOfPath(strRest);
    const QString strPath = AfterScheme(strRest.left(nEnd));
    if (strPath.isEmpty())
        return std::nullopt;
    return QString(PathToReference(strPath) + QStringView(strRest).mid(nEnd));
}

QString ReportedReference(const QString& strText, const QString& strResolved) {
    if (const auto strCanonical = CanonicalReference(strText))
        return *strCanonical;
    if (!SchemeOf(strText.trimmed()).isEmpty())
        return strText;
    return CanonicalReference(strResolved).value_or(strResolved);
}

QString UrlToPath(const QUrl& url) {
    if (url.scheme() != QLatin1String("file"))
        return {};
    const QString strEncoded = QString::fromLatin1(
        url.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment).toEncoded(QUrl::FullyEncoded));
    return AfterScheme(strEncoded.mid(c_strFilePrefix.size()));
}

QString DocumentUrl(const QUrl& url) {
    const QString strPath = UrlToPath(url);
    if (strPath.isEmpty())
        return url.toString();
    const QString strFragment =
        url.hasFragment() ? QString(u'#' + url.fragment(QUrl::FullyDecoded)) : QString();
    return Torvane::File::PathToDocumentUrl(strPath) + strFragment;
}

QString FindOnDisk(const QUrl& url) {
    const QString strPath = UrlToPath(url);
    if (strPath.isEmpty())
        return {};
    // PathToFileUrl escapes a blank and "#" twice, and "%" once.
    QString strAsWritten = strPath;
    strAsWritten.replace(QLatin1String("%20"), QLatin1String(" "))
        .replace(QLatin1String("%23"), QLatin1String("#"));
    const QString strParent = strPath.left(strPath.lastIndexOf(u'\\') + 1);
    QStringList candidates{strPath, strAsWritten, Decode(strPath), strParent + NameWithEscapes(url)};
    candidates.removeDuplicates();
    for (const QString& strCandidate : std::as_const(candidates)) {
        const QString strNative = Platform::ToNative(strCandidate);
        if (QFileInfo::exists(strNative))
            return strNative;
    }
    return {};
}

QUrl MeantByLink(const QUrl& url) {
    if (url.scheme() != QLatin1String("file") || !(url.hasQuery() || url.hasFragment()) ||
        !FindOnDisk(url).isEmpty())
        return url;
    const QString strPath = UrlToPath(url);
    QString strTail = url.hasQuery() ? u'?' + url.query(QUrl::FullyDecoded) : QString();
    if (url.hasFragment())
        strTail += u'#' + url.fragment(QUrl::FullyDecoded);
    for (qsizetype nEnd = 1; nEnd < qMin(strTail.size(), c_nMaxName);) {
        nEnd += EndOfPath(QStringView(strTail).mid(nEnd));
        const QString strNative = Platform::ToNative(strPath + strTail.left(nEnd));
        if (QFileInfo(strNative).isFile()) {
            QUrl meant = QUrl::fromLocalFile(strNative);
            if (nEnd < strTail.size())
                meant.setFragment(strTail.mid(nEnd + 1), QUrl::DecodedMode);
            return meant;
        }
        ++nEnd;
    }
    return url;
}

QUrl EngineUrl(const QString& strTarget) {
    const QString strTrimmed = strTarget.trimmed();
    if (strTrimmed == QLatin1String("about:blank"))
        return QUrl(strTrimmed);
    if (IsDrivePath(strTrimmed) || strTrimmed.startsWith(u'/'))
        return QUrl::fromLocalFile(Platform::ToNative(strTarget));
    if (strTrimmed.startsWith(c_strFilePrefix, Qt::CaseInsensitive)) {
        const QString strRest = strTrimmed.mid(c_strFilePrefix.size());
        const qsizetype nEnd = EndOfPath(strRest);
        const QString strPath = AfterScheme(strRest.left(nEnd));
        if (strPath.isEmpty())
            return {};
        QUrl url = QUrl::fromLocalFile(Platform::ToNative(strPath));
        const QString strFound = FindOnDisk(url);
        if (!strFound.isEmpty())
            url = QUrl::fromLocalFile(strFound);
        const QUrl tail(QStringLiteral("x:/") + strRest.mid(nEnd));
        if (tail.hasQuery())
            url.setQuery(tail.query(QUrl::FullyEncoded));
        if (tail.hasFragment())
            url.setFragment(tail.fragment(QUrl::FullyEncoded));
        return url;
    }
    const QString strScheme = SchemeOf(strTrimmed);
    if (strScheme == QLatin1String("http") || strScheme == QLatin1String("https"))
        return QUrl(strTrimmed);
    return {};
}

} // namespace SurfaceUrls
