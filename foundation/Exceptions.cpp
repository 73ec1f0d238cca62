#include "foundation/Exceptions.h"

#include "foundation/CodePage.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"

namespace Torvane::File {
namespace {

constexpr int c_nMaxMessageBytes = 1023;

QString WithReason(const QString& strText, int nSystemError) {
    const QString strMessage = CodePage::Cut(strText, c_nMaxMessageBytes);
    return nSystemError == 0 ? strMessage : strMessage + u'(' + FormatSystemError(nSystemError) + u')';
}

} // namespace

CFileException::CFileException(const QString& strText, int nSystemError)
    : CRunException(WithReason(strText, nSystemError)), m_nSystemError(nSystemError) {}

CFileException::CFileException(const QString& strMessage, const QString& strPath, int nSystemError)
    : CFileException(strMessage.arg(Platform::ToShown(strPath)), nSystemError) {}

CFileException::CFileException(const QString& strMessage, const QString& strFrom, const QString& strTo,
                               int nSystemError)
    : CFileException(strMessage.arg(Platform::ToShown(strFrom), Platform::ToShown(strTo)), nSystemError) {}

QString FormatSystemError(int nCode) {
    const QString strText = Platform::SystemErrorText(nCode);
    return strText.isEmpty() ? QStringLiteral("Unknown Error!") : CodePage::Cut(strText, c_nMaxMessageBytes);
}

} // namespace Torvane::File
