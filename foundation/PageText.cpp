#include "foundation/PageText.h"

#include "foundation/CodePage.h"

#include <QStringDecoder>
#include <QStringEncoder>

namespace PageText {
namespace {

QByteArray DeclaredCharset(const QByteArray& bytes) {
    const QByteArray head = bytes.left(4096).toLower();
    const qsizetype nAt = head.indexOf("charset");
    if (nAt < 0)
        return QByteArray();
    qsizetype n = nAt + 7;
    while (n < head.size() && (head[n] == ' ' || head[n] == '=' || head[n] == '"' || head[n] == '\''))
        ++n;
    qsizetype nEnd = n;
    while (nEnd < head.size() && (isalnum(uchar(head[nEnd])) || head[nEnd] == '-' || head[nEnd] == '_'))
        ++nEnd;
    return head.mid(n, nEnd - n);
}

bool IsCodePage(const QByteArray& charset) {
    return charset.isEmpty() || charset.startsWith("gb") || charset == "x-gbk";
}

} // namespace

Decoded Decode(const QByteArray& bytes) {
    if (const auto marked = QStringConverter::encodingForData(bytes)) {
        QStringDecoder decoder(*marked);
        return {decoder(bytes), QStringConverter::nameForEncoding(*marked), true};
    }
    const QByteArray charset = DeclaredCharset(bytes);
    // "utf-16" said in ASCII letters can't be true.
    if (!IsCodePage(charset) && !charset.startsWith("utf-16")) {
        QStringDecoder decoder(charset.constData());
        if (decoder.isValid()) {
            const QString strText = decoder(bytes);
            if (!decoder.hasError())
                return {strText, charset, false};
        }
    }
    return {CodePage::Decode(bytes), "GB18030", false};
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
