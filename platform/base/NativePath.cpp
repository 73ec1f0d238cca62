#include "platform/base/NativePath.h"

#include <QByteArrayView>

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

namespace Platform {
namespace {

// Below a device nothing can exist and nothing can be created, so a drive or share that this machine does not
// have fails like an absent one, and never lands in the root folder.
constexpr auto c_szNowhere = u"/dev/null/";

bool IsAsciiLetter(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool EqualsIgnoringCase(QByteArrayView a, QByteArrayView b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

bool HasDrive(const QString& strPath) {
    return strPath.size() >= 2 && strPath[1] == u':' && IsAsciiLetter(strPath[0]);
}

QString Nowhere(QString strPath) {
    strPath.replace(QChar(u'\0'), QChar(u'_'));
    return QString::fromUtf16(c_szNowhere) + strPath;
}

bool IsNowhere(const QString& strNative) {
    return strNative.startsWith(QString::fromUtf16(c_szNowhere));
}

bool Exists(const QByteArray& path) {
    struct stat state {};
    return ::lstat(path.constData(), &state) == 0;
}

// The name in the folder that differs from the wanted one by the case of ASCII letters alone; of several the
// first in byte order, so that the answer does not hang on the order of the listing. Empty when there is
// none.
QByteArray FindIgnoringCase(const QByteArray& folder, QByteArrayView wanted) {
    const std::unique_ptr<DIR, int (*)(DIR*)> pFolder(::opendir(folder.constData()), &::closedir);
    QByteArray best;
    if (!pFolder)
        return best;
    while (const dirent* pEntry = ::readdir(pFolder.get())) {
        const QByteArrayView name(pEntry->d_name);
        if (EqualsIgnoringCase(name, wanted) && (best.isEmpty() || name < best))
            best = name.toByteArray();
    }
    return best;
}

} // namespace

QString ToNativeExact(const QString& strPath) {
    QString strNative = strPath;
    strNative.replace(u'\\', u'/');
    if (strNative.contains(QChar(u'\0')))
        return Nowhere(strNative);
    if (HasDrive(strNative)) {
        const bool bRooted = strNative.size() == 2 || strNative[2] == u'/';
        if ((strNative[0] != u'Z' && strNative[0] != u'z') || !bRooted)
            return Nowhere(strNative);
        return strNative.size() == 2 ? QStringLiteral("/") : strNative.mid(2);
    }
    if (strPath.startsWith(QLatin1String("\\\\")))
        return Nowhere(strNative.mid(2));
    return strNative;
}

QString ToShown(const QString& strPath) {
    QString strNative = ToNativeExact(strPath);
    return IsNowhere(strNative) ? strPath : strNative;
}

QString ToNative(const QString& strPath) {
    QString strNative = ToNativeExact(strPath);
    const QByteArray native = strNative.toUtf8();
    if (native.isEmpty() || Exists(native) || IsNowhere(strNative))
        return strNative;

    QByteArray found;
    qsizetype nFrom = 0;
    if (native.startsWith('/')) {
        found = "/";
        nFrom = 1;
    }
    while (nFrom < native.size()) {
        qsizetype nEnd = native.indexOf('/', nFrom);
        if (nEnd < 0)
            nEnd = native.size();
        const QByteArray name = native.mid(nFrom, nEnd - nFrom);
        if (!name.isEmpty() && !Exists(found + name)) {
            const QByteArray other = FindIgnoringCase(found.isEmpty() ? QByteArray(".") : found, name);
            if (other.isEmpty())
                return QString::fromUtf8(found + native.mid(nFrom));
            found += other;
        } else {
            found += name;
        }
        if (nEnd < native.size())
            found += '/';
        nFrom = nEnd + 1;
    }
    return QString::fromUtf8(found);
}

QByteArray NativeBytes(const QString& strPath) {
    return ToNative(strPath).toUtf8();
}

QString FromNative(const QString& strNative) {
    if (HasDrive(strNative) || strNative.startsWith(u'\\'))
        return strNative;
    QString strPath = strNative.startsWith(u'/') ? QStringLiteral("Z:") + strNative : strNative;
    return strPath.replace(u'/', u'\\');
}

} // namespace Platform
