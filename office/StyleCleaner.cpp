#include "office/PageCleaner.h"

#include <QSet>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace Torvane::Office {
namespace {

bool IsKeptProperty(const QString& strName) {
    static const QSet<QString> names = {u"background"_s,
                                        u"background-color"_s,
                                        u"border"_s,
                                        u"border-bottom"_s,
                                        u"border-collapse"_s,
                                        u"border-color"_s,
                                        u"border-left"_s,
                                        u"border-right"_s,
                                        u"border-style"_s,
                                        u"border-top"_s,
                                        u"border-width"_s,
                                        u"clear"_s,
                                        u"color"_s,
                                        u"column-count"_s,
                                        u"float"_s,
                                        u"font-family"_s,
                                        u"font-size"_s,
                                        u"font-style"_s,
                                        u"font-variant"_s,
                                        u"font-weight"_s,
                                        u"height"_s,
                                        u"letter-spacing"_s,
                                        u"line-height"_s,
                                        u"list-style-type"_s,
                                        u"margin"_s,
                                        u"margin-bottom"_s,
                                        u"margin-left"_s,
                                        u"margin-right"_s,
                                        u"margin-top"_s,
                                        u"padding"_s,
                                        u"padding-bottom"_s,
                                        u"padding-left"_s,
                                        u"padding-right"_s,
                                        u"padding-top"_s,
                                        u"text-align"_s,
                                        u"text-decoration"_s,
                                        u"text-indent"_s,
                                        u"text-transform"_s,
                                        u"vertical-align"_s,
                                        u"white-space"_s,
                                        u"width"_s};
    return names.contains(strName);
}

// Fonts that the converter names where a document names none, or one that this machine lacks.
bool IsDefaultFont(const QString& strFamily) {
    const QString strFirst = strFamily.section(u',', 0, 0).remove(u'"').remove(u'\'').trimmed();
    return strFirst.isEmpty() || strFirst.startsWith(u"Noto S") || strFirst.startsWith(u"DejaVu") ||
           strFirst.startsWith(u"Liberation") || strFirst.startsWith(u"Lohit") || strFirst == u"OpenSymbol" ||
           strFirst == u"serif" || strFirst == u"sans-serif";
}

/// Whether what ends there is the name of a function that only computes a colour. There are more functions
/// that load something than one can list.
bool EndsInColorFunction(QStringView strHead) {
    qsizetype nName = strHead.size();
    while (nName > 0 && !u" ,/\"'()"_s.contains(strHead[nName - 1]))
        --nName;
    const QStringView strName = strHead.mid(nName);
    for (const QStringView strKnown : {u"rgb", u"rgba", u"hsl", u"hsla"}) {
        if (strName.compare(strKnown, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

/// Words, numbers, texts in quotes and colours: nothing that a browser could load, or read on beyond its end.
bool IsPlainValue(const QString& strValue) {
    if (strValue.isEmpty() || strValue.contains(u"/*"_s))
        return false;
    QChar quote;
    bool bInFunction = false;
    for (qsizetype i = 0; i < strValue.size(); ++i) {
        const QChar c = strValue[i];
        if (u"<>\\{}@"_s.contains(c) || c < u' ')
            return false;
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
        } else if (c == u'"' || c == u'\'') {
            quote = c;
        } else if (c == u'[' || c == u']' || (c == u')' && !bInFunction)) {
            return false;
        } else if (c == u'(') {
            if (bInFunction || !EndsInColorFunction(QStringView(strValue).left(i)))
                return false;
            bInFunction = true;
        } else if (c == u')') {
            bInFunction = false;
        }
    }
    return quote.isNull() && !bInFunction;
}

// The converter counts from the height of a font's lines, a page from the size of its letters.
QString LineHeight(const QString& strValue) {
    constexpr double c_dLinesPerSize = 1.4;
    bool bNumber = false;
    const double dShare = strValue.chopped(1).toDouble(&bNumber);
    return strValue.endsWith(u'%') && bNumber ? QString::number(dShare / 100 * c_dLinesPerSize) : strValue;
}

} // namespace

QString CleanStyle(const QString& strDeclarations) {
    QStringList kept;
    for (const QString& strOne : strDeclarations.split(u';')) {
        const qsizetype nColon = strOne.indexOf(u':');
        const QString strName = strOne.left(qMax(nColon, qsizetype(0))).trimmed().toLower();
        const QString strValue = strOne.mid(nColon + 1).simplified();
        if (!IsKeptProperty(strName) || !IsPlainValue(strValue) || strValue == u"transparent")
            continue;
        if (strName == u"font-family" && IsDefaultFont(strValue))
            continue;
        kept.append(strName + u": "_s + (strName == u"line-height" ? LineHeight(strValue) : strValue));
    }
    return kept.join(u"; "_s);
}

bool IsKeptLink(const QString& strAddress) {
    const QString strLower = strAddress.trimmed().toLower();
    for (const QString& strHead : {u"http://"_s, u"https://"_s, u"ftp://"_s, u"mailto:"_s, u"#"_s}) {
        if (strLower.startsWith(strHead))
            return strLower.size() > strHead.size();
    }
    return false;
}

} // namespace Torvane::Office
