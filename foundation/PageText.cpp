#include "foundation/PageText.h"

#include "foundation/CodePage.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>

namespace PageText {
namespace {

/// The name behind "charset" in the text, if it is there.
QByteArray NameIn(const QByteArray& text) {
    const qsizetype nAt = text.indexOf("charset");
    if (nAt < 0)
        return QByteArray();
    qsizetype n = nAt + 7;
    while (n < text.size() && (text[n] == ' ' || text[n] == '=' || text[n] == '"' || text[n] == '\''))
        ++n;
    qsizetype nEnd = n;
    while (nEnd < text.size() && (isalnum(uchar(text[nEnd])) || text[nEnd] == '-' || text[nEnd] == '_'))
        ++nEnd;
    return text.mid(n, nEnd - n);
}

/// What a page or a style sheet says itself; a page may also write of such declarations.
QByteArray DeclaredCharset(const QByteArray& bytes) {
    const QByteArray head = bytes.left(4096).toLower();
    if (head.startsWith("@charset"))
        return NameIn(head);
    for (qsizetype n = head.indexOf("<meta"); n >= 0; n = head.indexOf("<meta", n + 1)) {
        const QByteArray name = NameIn(head.mid(n, head.indexOf('>', n) - n));
        if (!name.isEmpty())
            return name;
    }
    return QByteArray();
}

bool IsCodePage(const QByteArray& charset) {
    return charset.startsWith("gb") || charset == "x-gbk";
}

std::optional<QStringConverter::Encoding> WideEncoding(const QByteArray& bytes) {
    if (bytes.startsWith(QByteArrayView("<\0", 2)))
        return QStringConverter::Utf16LE;
    if (bytes.startsWith(QByteArrayView("\0<", 2)))
        return QStringConverter::Utf16BE;
    return std::nullopt;
}

/// Hardly any text of the code page is right as UTF-8 for so many characters of three bytes.
constexpr qsizetype c_nSureCharacters = 12;

/// The text in the encoding that a page declares, unless its bytes belie it.
std::optional<QString> AsDeclared(const QByteArray& bytes, const QByteArray& charset) {
    // "utf-16" said in ASCII letters can't be true.
    if (charset.isEmpty() || charset.startsWith("utf-16"))
        return std::nullopt;
    QStringDecoder decoder(charset.constData());
    if (!decoder.isValid())
        return std::nullopt;
    const QString strText = decoder(bytes);
    const bool bRight = !decoder.hasError() || (charset == "utf-8" && !IsNoUtf8(bytes));
    return bRight ? std::optional(strText) : std::nullopt;
}

} // namespace

bool IsNoUtf8(const QByteArray& bytes) {
    qsizetype nGood = 0, nBad = 0;
    for (const QChar c : QString::fromUtf8(bytes)) {
        if (c == QChar::ReplacementCharacter)
            ++nBad;
        else if (c.unicode() > 127)
            ++nGood;
    }
    return nBad > 0 && nBad >= nGood;
}

bool IsSurelyUtf8(const QByteArray& bytes) {
    const auto nLong = std::count_if(bytes.begin(), bytes.end(), [](char c) { return (c & 0xF0) == 0xE0; });
    // A text of the code page that was misread once already is right as UTF-8 too.
    return nLong >= c_nSureCharacters && bytes.isValidUtf8() && !bytes.contains("\xEF\xBF\xBD");
}

Decoded Decode(const QByteArray& bytes) {
    if (const auto marked = QStringConverter::encodingForData(bytes)) {
        QStringDecoder decoder(*marked);
        return {decoder(bytes), QStringConverter::nameForEncoding(*marked), true};
    }
    if (const auto wide = WideEncoding(bytes)) {
        QStringDecoder decoder(*wide);
        return {decoder(bytes), QStringConverter::nameForEncoding(*wide), false, true};
    }
    const QByteArray charset = DeclaredCharset(bytes);
    if (!IsCodePage(charset)) {
        if (const auto strText = AsDeclared(bytes, charset))
            return {*strText, charset};
        if (IsSurelyUtf8(bytes))
            return {QString::fromUtf8(bytes), "UTF-8", false, true};
    }
    return {CodePage::Decode(bytes), "GB18030", false, false, !IsCodePage(charset)};
}

std::optional<QByteArray> Encode(const Decoded& page) {
    if (page.Charset == "GB18030")
        return CodePage::Encode(page.Text);
    QStringEncoder encoder(page.Charset.constData(),
                           page.HasMark ? QStringEncoder::Flag::WriteBom : QStringEncoder::Flag::Default);
    if (!encoder.isValid())
        return std::nullopt;
    const QByteArray bytes = encoder(page.Text);
    return encoder.hasError() ? std::nullopt : std::optional(bytes);
}

} // namespace PageText
