#include "platform/ui/PageEncoding.h"

#include "foundation/CodePage.h"
#include "foundation/PageText.h"

#include <QRegularExpression>

namespace PageEncoding {

namespace {

/// As far as the engine itself looks for a declaration.
constexpr qsizetype c_nDeclarationBytes = 1024;

/// Whether some character takes four bytes, which the code page has only in its newest form.
bool HasFourByteCodes(const QByteArray& bytes) {
    const auto isLead = [](char ch) {
        return static_cast<uchar>(ch) > 0x80 && static_cast<uchar>(ch) < 0xFF;
    };
    for (qsizetype n = 0; n + 1 < bytes.size(); n += isLead(bytes[n]) ? 2 : 1) {
        if (isLead(bytes[n]) && bytes[n + 1] >= '0' && bytes[n + 1] <= '9')
            return true;
    }
    return false;
}

} // namespace

QString TextOf(const QByteArray& bytes) {
    return PageText::Decode(bytes).Text;
}

bool SaysItsEncoding(const QByteArray& bytes) {
    for (const char* szMark : {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
        if (bytes.startsWith(szMark))
            return true;
    }
    const QByteArray head = bytes.left(c_nDeclarationBytes).toLower();
    return head.contains("<meta") && head.contains("charset");
}

bool IsBodyText(const QByteArray& bytes) {
    // Within these a tag is text.
    static const QRegularExpression s_raw(
        QStringLiteral(
            "<!--.*?(?:-->|\\z)|<(script|style|xmp|iframe|noembed|noframes|textarea)\\b.*?(?:</\\1|\\z)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression s_tag(QStringLiteral("<(html|head|body|frameset|!doctype)[\\s>/]"),
                                          QRegularExpression::CaseInsensitiveOption);
    const QString strText = QString::fromLatin1(bytes);
    return !s_tag.match(strText).hasMatch() || !s_tag.match(QString(strText).remove(s_raw)).hasMatch();
}

std::optional<QString> TextIfMisread(const QByteArray& bytes, const QString& strCharacterSet, bool bStrict) {
    const QString strSet = strCharacterSet.toLower();
    const bool bUtf8 = strSet == u"utf-8";
    if (bUtf8 && PageText::IsNoUtf8(bytes))
        return CodePage::Decode(bytes);
    if (bUtf8 && PageText::IsSurelyUtf8(bytes))
        return std::nullopt;
    if (strSet == u"gbk" && HasFourByteCodes(bytes))
        return TextOf(bytes);
    if ((!bStrict && bUtf8) || SaysItsEncoding(bytes))
        return std::nullopt;
    const QString strText = TextOf(bytes);
    // The code page writes the euro sign as a byte that the engine doesn't know.
    const bool bSameCodes = strSet == u"gb18030" || strSet == u"gbk";
    return bSameCodes && !strText.contains(u'€') ? std::nullopt : std::optional(strText);
}

} // namespace PageEncoding
