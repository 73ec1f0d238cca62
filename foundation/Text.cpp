#include "foundation/Text.h"

#include <limits>

namespace {

char16_t LowerUnit(QChar c) {
    const char16_t n = c.unicode();
    return n >= u'A' && n <= u'Z' ? static_cast<char16_t>(n + (u'a' - u'A')) : n;
}

} // namespace

void SplitText(const QString& strText, QStringList& list, QChar cSeparator) {
    list += strText.split(cSeparator);
}

qint32 ParseInt(QStringView strText) {
    qsizetype nAt = 0;
    const auto unit = [&] { return nAt < strText.size() ? strText[nAt].unicode() : u'\0'; };
    while (unit() == u' ' || (unit() >= u'\t' && unit() <= u'\r'))
        ++nAt;
    const bool bNegative = unit() == u'-';
    if (bNegative || unit() == u'+')
        ++nAt;
    constexpr qint64 c_nBeyond = qint64{std::numeric_limits<qint32>::max()} + 1;
    qint64 nValue = 0;
    for (; unit() >= u'0' && unit() <= u'9'; ++nAt)
        nValue = std::min(nValue * 10 + (unit() - u'0'), c_nBeyond);
    if (bNegative)
        nValue = -nValue;
    return static_cast<qint32>(std::min<qint64>(nValue, std::numeric_limits<qint32>::max()));
}

QString LowerAscii(const QString& strText) {
    QString strLower = strText;
    for (QChar& c : strLower)
        c = QChar(LowerUnit(c));
    return strLower;
}

bool EqualsIgnoringCase(QStringView strA, QStringView strB) {
    if (strA.size() != strB.size())
        return false;
    for (qsizetype i = 0; i < strA.size(); ++i) {
        if (LowerUnit(strA[i]) != LowerUnit(strB[i]))
            return false;
    }
    return true;
}
