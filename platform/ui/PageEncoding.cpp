#include "platform/ui/PageEncoding.h"

#include "foundation/CodePage.h"

#include <QRegularExpression>

namespace PageEncoding {

namespace {

/// As far as the engine itself looks for a declaration.
constexpr qsizetype c_nDeclarationBytes = 1024;

/// A text that was pasted or set with a declaration of its own says UTF-8 and is written in the code page all
/// the same: hardly a character of it is UTF-8 then.
bool IsNoUtf8(const QByteArray& bytes) {
    qsizetype nGood = 0, nBad = 0;
    for (const QChar c : QString::fromUtf8(bytes)) {
        if (c == QChar::ReplacementCharacter)
            ++nBad;
        else if (c.unicode() > 127)
            ++nGood;
    }
    return nBad > nGood;
}

} // namespace

bool SaysItsEncoding(const QByteArray& bytes) {
    for (const char* szMark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
        if (bytes.startsWith(szMark))
            return true;
    }
    const QByteArray head = bytes.left(c_nDeclarationBytes).toLower();
    return head.contains("<meta") && head.contains("charset");
}

bool IsBodyText(const QByteArray& bytes) {
    static const QRegularExpression s_tag(QStringLiteral("<(html|head|body|frameset|!doctype)[\\s>/]"),
                                          QRegularExpression::CaseInsensitiveOption);
    return !s_tag.match(QString::fromLatin1(bytes)).hasMatch();
}

std::optional<QString> TextIfMisread(const QByteArray& bytes, const QString& strCharacterSet, bool bStrict) {
    const QString strSet = strCharacterSet.toLower();
    const bool bUtf8 = strSet == u"utf-8";
    if (bUtf8 && IsNoUtf8(bytes))
        return CodePage::Decode(bytes);
    if ((!bStrict && bUtf8) || SaysItsEncoding(bytes))
        return std::nullopt;
    const QString strText = CodePage::Decode(bytes);
    // The code page writes the euro sign as a byte that the engine doesn't know.
    const bool bSameCodes = strSet == u"gb18030" || strSet == u"gbk";
    return bSameCodes && !strText.contains(u'€') ? std::nullopt : std::optional(strText);
}

} // namespace PageEncoding
