#include "platform/ui/PageEncoding.h"

#include "foundation/CodePage.h"

#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>

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

/// Hardly any text of the code page is right as UTF-8 for so many characters of three bytes.
constexpr qsizetype c_nSureCharacters = 12;

bool IsSurelyUtf8(const QByteArray& bytes) {
    const auto nLong = std::count_if(bytes.begin(), bytes.end(), [](char c) { return (c & 0xF0) == 0xE0; });
    // A text of the code page that was misread once already is right as UTF-8 too.
    return nLong >= c_nSureCharacters && bytes.isValidUtf8() && !bytes.contains("\xEF\xBF\xBD");
}

std::optional<QStringConverter::Encoding> WideEncoding(const QByteArray& bytes) {
    if (bytes.startsWith(QByteArrayView("<\0", 2)))
        return QStringConverter::Utf16LE;
    if (bytes.startsWith(QByteArrayView("\0<", 2)))
        return QStringConverter::Utf16BE;
    return std::nullopt;
}

} // namespace

QString TextOf(const QByteArray& bytes) {
    if (const auto wide = WideEncoding(bytes))
        return QStringDecoder(*wide).decode(bytes);
    return IsSurelyUtf8(bytes) ? QString::fromUtf8(bytes) : CodePage::Decode(bytes);
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
    if (bUtf8 && IsNoUtf8(bytes))
        return CodePage::Decode(bytes);
    if (bUtf8 && IsSurelyUtf8(bytes))
        return std::nullopt;
    if ((!bStrict && bUtf8) || SaysItsEncoding(bytes))
        return std::nullopt;
    const QString strText = TextOf(bytes);
    // The code page writes the euro sign as a byte that the engine doesn't know.
    const bool bSameCodes = strSet == u"gb18030" || strSet == u"gbk";
    return bSameCodes && !strText.contains(u'€') ? std::nullopt : std::optional(strText);
}

} // namespace PageEncoding
