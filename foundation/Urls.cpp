#include "foundation/Urls.h"

#include "foundation/Paths.h"
#include "foundation/Text.h"

#include <array>

namespace Torvane::File {
namespace {

struct Escape {
    const char16_t* szPlain;
    const char16_t* szCoded;
};

// Applied from the top. "%" stands behind the blank and "#" on purpose: that is what pages hold.
constexpr std::array<Escape, 9> c_escapes{{{u" ", u"%20"},
                                           {u"#", u"%23"},
                                           {u"%", u"%25"},
                                           {u"^", u"%5E"},
                                           {u"&", u"%26"},
                                           {u"[", u"%5B"},
                                           {u"]", u"%5D"},
                                           {u"{", u"%7B"},
                                           {u"}", u"%7D"}}};

} // namespace

bool IsLocalRef(const QString& strText) {
    return LowerAscii(strText).contains(QLatin1String("file://")) || IsFile(strText);
}

QString FileUrlToPath(const QString& strUrl) {
    QString str = LowerAscii(strUrl);
    if (str.startsWith(QLatin1String("file:///")))
        str.remove(0, 8);
    else if (str.startsWith(QLatin1String("file://")))
        str.remove(0, str.indexOf(QLatin1String(":\\")) >= 1 ? 7 : 5);
    else
        return str;
    str.replace(u'/', u'\\');
    // Once each: a second pass would decode the "%25" that "%2525" stands for.
    for (const Escape& escape : c_escapes)
        str.replace(LowerAscii(QString::fromUtf16(escape.szCoded)), QString::fromUtf16(escape.szPlain));
    return str;
}

QString PathToFileUrl(const QString& strPath) {
    if (strPath.contains(QLatin1String("://")))
        return strPath;
    QString str = strPath;
    for (const Escape& escape : c_escapes)
        str.replace(QString::fromUtf16(escape.szPlain), QString::fromUtf16(escape.szCoded));
    str.replace(u'\\', u'/');
    return QStringLiteral("file:///") + str;
}

QString MakeRelativeUrl(const QString& strUrl, const QString& strBaseFolder) {
    const QString strLower = LowerAscii(strUrl);
    if (!IsLocalRef(strLower))
        return strLower;
    const qsizetype nFragment = strLower.indexOf(u'#');
    const QString strFragment = nFragment < 0 ? QString() : strLower.mid(nFragment);
    const QString strPath = FileUrlToPath(nFragment < 0 ? strLower : strLower.left(nFragment));
    QString strBelow = RelativeTail(LowerAscii(strBaseFolder), strPath, u'\\') + strFragment;
    return strBelow.replace(u'\\', u'/');
}

FileAndFragment SplitLink(const QString& strLink, const std::function<bool(const QString&)>& isFile) {
    const qsizetype nFirst = strLink.indexOf(u'#');
    if (nFirst < 0 || isFile(strLink))
        return {strLink, {}};
    for (qsizetype n = nFirst; n >= 0; n = strLink.indexOf(u'#', n + 1)) {
        if (isFile(strLink.left(n)))
            return {strLink.left(n), strLink.mid(n)};
    }
    return {strLink.left(nFirst), strLink.mid(nFirst)};
}

} // namespace Torvane::File
