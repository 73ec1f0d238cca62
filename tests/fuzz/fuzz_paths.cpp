// Addresses and paths out of pages: conversions end, and no path of another drive reaches this disk.
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "foundation/Urls.h"
#include "platform/base/NativePath.h"
#include "platform/base/Process.h"
#include "tests/support/FuzzCheck.h"

using namespace Torvane::File;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize) {
    const QString strText = QString::fromUtf8(FuzzBytes(pData, nSize));
    const QString strPath = FileUrlToPath(strText);
    Check(LowerAscii(strPath) == strPath);
    Check(PathToFileUrl(strText).contains(QLatin1String("://")));
    const QString strNative = Platform::ToNativeExact(strPath);
    if (strPath.size() > 1 && strPath[1] == u':' && strPath[0] >= u'a' && strPath[0] < u'z')
        Check(strNative.startsWith(QLatin1String("/dev/null/")));
    Check(!strNative.contains(u'\\') && !strNative.contains(QChar(u'\0')));
    GetPathKind(strPath);
    const QString strTail = RelativeTail(strText.left(strText.size() / 2), strText, u'\\');
    Check(strText.endsWith(strTail) || strTail.size() >= c_nMaxPathBytes / 4);
    ResolveAgainstBase(strText.left(strText.size() / 3), strText.mid(strText.size() / 2), strText);
    Platform::SplitCommandLine(strText);
    ParseInt(strText);
    return 0;
}
