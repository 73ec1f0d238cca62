#include "editor/PastedText.h"

#include "editor/PastedHtml.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace PastedHtml {

namespace {

constexpr QChar c_hardBlank = u'\u00A0';

/// From the Chinese and Japanese blocks: no blank stands between two of these.
bool IsWide(QChar c) {
    const char16_t n = c.unicode();
    return (n >= 0x2E80 && n < 0xA4D0) || (n >= 0xF900 && n < 0xFB00) || (n >= 0xFE30 && n < 0xFE50) ||
           (n >= 0xFF00 && n < 0xFFEF);
}

} // namespace

QString Escaped(const QString& strText) {
    return strText.toHtmlEscaped().replace(c_hardBlank, u"&nbsp;"_s);
}

void DropJunk(QString& strText) {
    strText.removeIf([](QChar c) {
        const char16_t n = c.unicode();
        const bool bControl = (n < 0x20 && n != u'\n' && n != u'\t' && n != u'\r') || n == 0x7F;
        return bControl || n == 0x200B || n == 0x2060 || n == 0xFEFF || n == 0xFFFC;
    });
}

QString WithBlanks(const QString& strText) {
    constexpr int c_nTab = 4;
    QString strResult;
    for (const QChar c : strText) {
        if (c == u'\t')
            strResult += QString(c_nTab, c_hardBlank);
        else if (c == u' ' && (strResult.isEmpty() || strResult.back() == u' '))
            strResult += c_hardBlank;
        else
            strResult += c;
    }
    return strResult;
}

QString Flowing(const QString& strText, bool bBlankLineEnds) {
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r'; };
    QString strResult;
    for (qsizetype n = 0; n < strText.size();) {
        const qsizetype nStart = n;
        bool bLineEnd = false;
        for (; n < strText.size() && isBlank(strText[n]); ++n)
            bLineEnd = bLineEnd || strText[n] == u'\n';
        if (n > nStart) {
            const bool bBetween = bLineEnd && !bBlankLineEnds && nStart > 0 && n < strText.size() &&
                                  IsWide(strText[nStart - 1]) && IsWide(strText[n]);
            if (!bBetween)
                strResult += u' ';
            continue;
        }
        const auto isWord = [&](qsizetype nAt) {
            return nAt >= 0 && nAt < strText.size() && !isBlank(strText[nAt]) && strText[nAt] != c_hardBlank;
        };
        const bool bLone = strText[n] == c_hardBlank && isWord(n - 1) && isWord(n + 1);
        strResult += bLone ? QChar(u' ') : strText[n];
        ++n;
    }
    return strResult;
}

QString FromPlainText(QString strText) {
    DropJunk(strText);
    strText.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    if (strText.endsWith(u'\n'))
        strText.chop(1);
    QStringList lines;
    for (const QString& strLine : strText.split(u'\n'))
        lines.append(Escaped(WithBlanks(strLine)));
    return lines.join(u"<br>"_s);
}

} // namespace PastedHtml
