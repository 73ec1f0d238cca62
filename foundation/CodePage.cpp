#include "foundation/CodePage.h"

#include <QStringConverter>

#include <algorithm>

namespace CodePage {
namespace {

// ICU, which Qt carries anyway, maps every character to GB18030 and back, and every character of GBK to its
// GBK bytes; the C library's converter has no code for 24 private characters. Opening it costs under 0.1 ms,
// and pure ASCII, which is most of what is read at the start, never opens it.
//
// One character stands apart: the euro sign, which the code page of the field writes as the single byte 0x80
// while GB18030 has two bytes for it. It is written as 0x80; both forms are read.
constexpr char16_t c_cEuro = 0x20AC;
constexpr char c_cEuroByte = '\x80';

QStringEncoder& Encoder() {
    static thread_local QStringEncoder encoder("GB18030", QStringConverter::Flag::Stateless);
    return encoder;
}

QStringDecoder& Decoder() {
    static thread_local QStringDecoder decoder("GB18030", QStringConverter::Flag::Stateless);
    return decoder;
}

bool IsAscii(QStringView strText) {
    return std::all_of(strText.begin(), strText.end(), [](QChar c) { return c.unicode() < 0x80; });
}

bool IsAscii(QByteArrayView bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<uchar>(c) < 0x80; });
}

// The converter drops or mangles half a surrogate pair.
QString WithWholePairs(QStringView strText) {
    QString str = strText.toString();
    for (qsizetype i = 0; i < str.size(); ++i) {
        if (!str[i].isSurrogate())
            continue;
        if (str[i].isHighSurrogate() && i + 1 < str.size() && str[i + 1].isLowSurrogate())
            ++i;
        else
            str[i] = QChar::ReplacementCharacter;
    }
    return str;
}

// How many bytes the character that begins here takes.
qsizetype CharacterLength(QByteArrayView bytes, qsizetype nAt) {
    const auto at = [&](qsizetype n) { return n < bytes.size() ? static_cast<uchar>(bytes[n]) : 0; };
    if (at(nAt) <= 0x80 || at(nAt) == 0xFF || nAt + 1 >= bytes.size())
        return 1;
    if (at(nAt + 1) >= '0' && at(nAt + 1) <= '9')
        return at(nAt + 2) >= 0x81 && at(nAt + 3) >= '0' && at(nAt + 3) <= '9' ? 4 : 1;
    return at(nAt + 1) >= 0x40 && at(nAt + 1) != 0x7F && at(nAt + 1) != 0xFF ? 2 : 1;
}

// The byte of the euro sign may be the second of a character too, so it is looked for character by character.
qsizetype FindEuro(QByteArrayView bytes, qsizetype nFrom) {
    for (qsizetype i = nFrom; i < bytes.size(); i += CharacterLength(bytes, i)) {
        if (bytes[i] == c_cEuroByte)
            return i;
    }
    return -1;
}

QString DecodePiece(QByteArrayView bytes) {
    // An unfinished character at the end would be dropped without a trace; a line feed can't finish one.
    QByteArray piece(bytes.data(), bytes.size());
    piece.append('\n');
    QString str = Decoder().decode(piece);
    str.chop(1);
    return str;
}

} // namespace

QByteArray Encode(QStringView strText) {
    if (IsAscii(strText))
        return strText.toLatin1();
    if (!strText.isValidUtf16())
        return Encode(WithWholePairs(strText));
    if (!strText.contains(QChar(c_cEuro)))
        return Encoder().encode(strText);
    QByteArray bytes;
    qsizetype nFrom = 0;
    for (qsizetype n = strText.indexOf(QChar(c_cEuro)); n >= 0; n = strText.indexOf(QChar(c_cEuro), nFrom)) {
        bytes += Encode(strText.mid(nFrom, n - nFrom)) + c_cEuroByte;
        nFrom = n + 1;
    }
    return bytes + Encode(strText.mid(nFrom));
}

void Prepare() {
    // One character of two bytes brings the tables' common pages along.
    Encode(Decode("\xCA\xBE"));
}

QString Decode(QByteArrayView bytes) {
    if (IsAscii(bytes))
        return QString::fromLatin1(bytes);
    if (!bytes.contains(c_cEuroByte))
        return DecodePiece(bytes);
    QString strText;
    qsizetype nFrom = 0;
    for (qsizetype n = FindEuro(bytes, 0); n >= 0; n = FindEuro(bytes, nFrom)) {
        strText += DecodePiece(bytes.sliced(nFrom, n - nFrom));
        strText += QChar(c_cEuro);
        nFrom = n + 1;
    }
    return strText + DecodePiece(bytes.sliced(nFrom));
}

qsizetype ByteLength(QStringView strText) {
    return IsAscii(strText) ? strText.size() : Encode(strText).size();
}

QString Cut(const QString& strText, qsizetype nBytes) {
    // No character takes more than four bytes.
    if (strText.size() * 4 <= nBytes)
        return strText;
    if (IsAscii(strText))
        return strText.left(std::max<qsizetype>(nBytes, 0));
    qsizetype nTaken = 0;
    qsizetype nAt = 0;
    while (nAt < strText.size()) {
        const bool bPair =
            strText[nAt].isHighSurrogate() && nAt + 1 < strText.size() && strText[nAt + 1].isLowSurrogate();
        const qsizetype nUnits = bPair ? 2 : 1;
        nTaken += ByteLength(QStringView(strText).mid(nAt, nUnits));
        if (nTaken > nBytes)
            break;
        nAt += nUnits;
    }
    return strText.left(nAt);
}

} // namespace CodePage
