#include "platform/ui/PageEncoding.h"

#include "foundation/CodePage.h"

namespace PageEncoding {

namespace {

/// As far as the engine itself looks for a declaration.
constexpr qsizetype c_nDeclarationBytes = 1024;

} // namespace

bool SaysItsEncoding(const QByteArray& bytes) {
    for (const char* szMark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
        if (bytes.startsWith(szMark))
            return true;
    }
    const QByteArray head = bytes.left(c_nDeclarationBytes).toLower();
    return head.contains("<meta") && head.contains("charset");
}

std::optional<QString> TextIfMisread(const QByteArray& bytes, const QString& strCharacterSet, bool bStrict) {
    const QString strSet = strCharacterSet.toLower();
    if ((!bStrict && strSet == u"utf-8") || SaysItsEncoding(bytes))
        return std::nullopt;
    const QString strText = CodePage::Decode(bytes);
    // The code page writes the euro sign as a byte that the engine doesn't know.
    const bool bSameCodes = strSet == u"gb18030" || strSet == u"gbk";
    return bSameCodes && !strText.contains(u'€') ? std::nullopt : std::optional(strText);
}

} // namespace PageEncoding
