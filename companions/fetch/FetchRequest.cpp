#include "companions/fetch/FetchRequest.h"

#include "companions/fetch/Texts.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "platform/base/NativePath.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

bool IsWholePath(QStringView strPath) {
    return strPath.startsWith(u'/') ||
           (strPath.size() > 2 && strPath[0].isLetter() && strPath[1] == u':' && strPath[2] == u'\\');
}

} // namespace

FetchRequest ReadFetchArgument(const QString& strArgument) {
    qsizetype nComma = strArgument.indexOf(u',', qMax(strArgument.indexOf(u'?'), qsizetype(0)));
    while (nComma >= 0 && !IsWholePath(QStringView(strArgument).sliced(nComma + 1)))
        nComma = strArgument.indexOf(u',', nComma + 1);
    if (nComma <= 0)
        throw Torvane::CRunException(FetchText::c_strUsage);

    // A template that is there in another letter case is the one to be replaced.
    QString strTarget = Platform::ToNative(strArgument.mid(nComma + 1));
    while (strTarget.endsWith(u'/'))
        strTarget.chop(1);
    FetchRequest request{CodePage::Encode(QStringView(strArgument).first(nComma)), strTarget,
                         strTarget.mid(strTarget.lastIndexOf(u'/') + 1)};
    const QStringList parts = strTarget.split(u'/');
    // The folder above the templates takes the unfinished one.
    if (parts.size() < 3 || parts.contains(u"."_s) || parts.contains(u".."_s) ||
        strTarget.contains(QChar(u'\0')))
        throw Torvane::CRunException(FetchText::c_strBadTarget.arg(strArgument.mid(nComma + 1)));
    return request;
}
