#include "editor/PastedStyle.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace PastedHtml {

namespace {

/// Bounds of what a hostile text may make us read and hold; of the sheets, all together.
constexpr qsizetype c_nMaxClasses = 5000;
constexpr qsizetype c_nMaxSheets = 2'000'000;
constexpr qsizetype c_nMaxStyle = 10'000;
constexpr qsizetype c_nMaxValue = 200;
constexpr qsizetype c_nMaxClassNames = 2000;

/// In the order of the alphabet.
constexpr std::array<QStringView, 32> c_read = {u"background",
                                                u"background-color",
                                                u"border",
                                                u"border-bottom",
                                                u"border-bottom-style",
                                                u"border-collapse",
                                                u"border-left",
                                                u"border-left-style",
                                                u"border-right",
                                                u"border-right-style",
                                                u"border-style",
                                                u"border-top",
                                                u"border-top-style",
                                                u"color",
                                                u"display",
                                                u"font-style",
                                                u"font-weight",
                                                u"height",
                                                u"margin-left",
                                                u"mso-break-type",
                                                u"mso-element",
                                                u"mso-hide",
                                                u"mso-list",
                                                u"mso-special-character",
                                                u"page-break-before",
                                                u"text-align",
                                                u"text-decoration",
                                                u"text-decoration-line",
                                                u"vertical-align",
                                                u"visibility",
                                                u"white-space",
                                                u"width"};

struct Rgb {
    int nRed, nGreen, nBlue;
};

std::optional<Rgb> NamedColour(const QString& strName) {
    static const QHash<QString, Rgb> names = {
        {u"red"_s, {255, 0, 0}},          {u"blue"_s, {0, 0, 255}},       {u"green"_s, {0, 128, 0}},
        {u"yellow"_s, {255, 255, 0}},     {u"orange"_s, {255, 165, 0}},   {u"purple"_s, {128, 0, 128}},
        {u"navy"_s, {0, 0, 128}},         {u"teal"_s, {0, 128, 128}},     {u"maroon"_s, {128, 0, 0}},
        {u"olive"_s, {128, 128, 0}},      {u"lime"_s, {0, 255, 0}},       {u"aqua"_s, {0, 255, 255}},
        {u"cyan"_s, {0, 255, 255}},       {u"fuchsia"_s, {255, 0, 255}},  {u"magenta"_s, {255, 0, 255}},
        {u"pink"_s, {255, 192, 203}},     {u"brown"_s, {165, 42, 42}},    {u"gold"_s, {255, 215, 0}},
        {u"darkblue"_s, {0, 0, 139}},     {u"darkred"_s, {139, 0, 0}},    {u"darkgreen"_s, {0, 100, 0}},
        {u"darkcyan"_s, {0, 139, 139}},   {u"crimson"_s, {220, 20, 60}},  {u"darkmagenta"_s, {139, 0, 139}},
        {u"darkyellow"_s, {128, 128, 0}}, {u"tomato"_s, {255, 99, 71}},   {u"royalblue"_s, {65, 105, 225}},
        {u"turquoise"_s, {64, 224, 208}}, {u"violet"_s, {238, 130, 238}}, {u"skyblue"_s, {135, 206, 235}}};
    const auto it = names.find(strName);
    return it == names.end() ? std::nullopt : std::optional(*it);
}

std::optional<Rgb> HexColour(const QString& strDigits) {
    bool bNumber = false;
    const uint n = strDigits.toUInt(&bNumber, 16);
    if (bNumber && strDigits.size() == 6)
        return Rgb{int(n >> 16), int(n >> 8 & 0xFF), int(n & 0xFF)};
    constexpr int c_nTwice = 17; // "a" stands for "aa"
    if (bNumber && strDigits.size() == 3)
        return Rgb{int(n >> 8) * c_nTwice, int(n >> 4 & 0xF) * c_nTwice, int(n & 0xF) * c_nTwice};
    return std::nullopt;
}

/// "rgb(1, 2, 3)" and "rgba(1, 2, 3, 0.5)", without what stands before the bracket.
std::optional<Rgb> FunctionColour(const QString& strArguments) {
    static const QRegularExpression parts(u"[\\s,/]+"_s);
    const QStringList numbers = strArguments.split(parts, Qt::SkipEmptyParts);
    if (numbers.size() < 3 || (numbers.size() > 3 && numbers[3].toDouble() == 0))
        return std::nullopt;
    const auto at = [&](int n) { return std::clamp(int(numbers[n].toDouble()), 0, 255); };
    return Rgb{at(0), at(1), at(2)};
}

bool IsBold(const QString& strWeight) {
    return strWeight.startsWith(u"bold") || strWeight.toInt() >= 600;
}

} // namespace

QString ChosenColour(const QString& strValue) {
    static const QRegularExpression word(u"#([0-9a-f]{3,8})|rgba?\\(([^)]*)\\)|([a-z]+)"_s);
    constexpr int c_nLeastSpread = 48;
    auto it = word.globalMatch(strValue.left(200).toLower());
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        const auto colour = match.hasCaptured(1)   ? HexColour(match.captured(1))
                            : match.hasCaptured(2) ? FunctionColour(match.captured(2))
                                                   : NamedColour(match.captured(3));
        if (!colour)
            continue;
        const auto [nLeast, nMost] = std::minmax({colour->nRed, colour->nGreen, colour->nBlue});
        if (nMost - nLeast < c_nLeastSpread)
            return {};
        return u"#%1%2%3"_s.arg(colour->nRed, 2, 16, QChar(u'0'))
            .arg(colour->nGreen, 2, 16, QChar(u'0'))
            .arg(colour->nBlue, 2, 16, QChar(u'0'));
    }
    return {};
}

QString LengthOf(const QString& strValue) {
    static const QRegularExpression number(u"^(\\d{1,5}(?:\\.\\d{1,6})?)(px|pt|%)?$"_s);
    constexpr double c_dPixelsPerPoint = 96.0 / 72;
    const QRegularExpressionMatch match = number.match(strValue.trimmed());
    if (!match.hasMatch())
        return {};
    const QString strUnit = match.captured(2);
    const int nValue = qRound(match.captured(1).toDouble() * (strUnit == u"pt" ? c_dPixelsPerPoint : 1));
    if (nValue < 1 || nValue > (strUnit == u"%" ? 100 : 9999))
        return {};
    return QString::number(nValue) + (strUnit == u"%" ? strUnit : QString());
}

void CDeclarations::Add(QStringView strDeclarations) {
    for (const QStringView one : strDeclarations.split(u';')) {
        const qsizetype nColon = one.indexOf(u':');
        const QString strName =
            one.first(std::clamp<qsizetype>(nColon, 0, c_nMaxValue)).trimmed().toString().toLower();
        if (std::binary_search(c_read.begin(), c_read.end(), QStringView(strName)))
            m_values.insert(strName, one.sliced(nColon + 1).trimmed().left(c_nMaxValue).toString().toLower());
    }
}

bool CDeclarations::Holds(const QString& strName, const QString& strPart) const {
    return m_values.value(strName).contains(strPart);
}

void CDeclarations::Apply(Format& format) const {
    if (const QString strWeight = (*this)[u"font-weight"_s]; !strWeight.isEmpty() && strWeight != u"inherit")
        format.bBold = IsBold(strWeight);
    if (const QString strStyle = (*this)[u"font-style"_s]; !strStyle.isEmpty() && strStyle != u"inherit")
        format.bItalic = strStyle.startsWith(u"italic") || strStyle.startsWith(u"oblique");
    for (const QString& strName : {u"text-decoration"_s, u"text-decoration-line"_s}) {
        format.bUnderline = format.bUnderline || Holds(strName, u"underline"_s);
        format.bStrike = format.bStrike || Holds(strName, u"line-through"_s);
    }
    const QString strVertical = (*this)[u"vertical-align"_s];
    if (strVertical == u"super")
        format.Vertical = Format::EVertical::Super;
    else if (strVertical == u"sub")
        format.Vertical = Format::EVertical::Sub;
    if (const QString strColour = (*this)[u"color"_s]; !strColour.isEmpty() && strColour != u"inherit")
        format.strColour = ChosenColour(strColour);
}

QString CDeclarations::Align() const {
    const QString strAlign = (*this)[u"text-align"_s];
    if (strAlign.endsWith(u"center"))
        return u"center"_s;
    return strAlign == u"right" || strAlign == u"end" ? u"right"_s : QString();
}

QString CDeclarations::Length(const QString& strName) const {
    return LengthOf((*this)[strName]);
}

bool CDeclarations::HasBorder() const {
    static const QRegularExpression drawn(u"\\b(solid|double|dashed|dotted|ridge|groove|inset|outset)\\b"_s);
    for (auto it = m_values.begin(); it != m_values.end(); ++it) {
        if (it.key().startsWith(u"border") && drawn.match(it.value().left(200)).hasMatch())
            return true;
    }
    return false;
}

bool CDeclarations::IsHidden() const {
    return (*this)[u"display"_s] == u"none" || (*this)[u"visibility"_s] == u"hidden" ||
           (*this)[u"mso-hide"_s] == u"all" || Holds(u"mso-element"_s, u"comment"_s) ||
           Holds(u"mso-special-character"_s, u"comment"_s);
}

std::optional<bool> CDeclarations::KeepsBlanks() const {
    const QString strSpace = (*this)[u"white-space"_s];
    if (strSpace.isEmpty() || strSpace == u"inherit")
        return std::nullopt;
    return strSpace.startsWith(u"pre") || strSpace == u"break-spaces";
}

CStyleSheet::CStyleSheet(const GumboNode* pRoot) {
    qsizetype nRead = 0;
    HtmlTree::ForEachElement(pRoot, [&](const GumboNode* pNode) {
        const GumboElement& element = pNode->v.element;
        if (element.tag != GUMBO_TAG_STYLE || element.children.length != 1 || nRead >= c_nMaxSheets)
            return;
        const auto* pText = static_cast<const GumboNode*>(element.children.data[0]);
        if (HtmlTree::IsElement(pText))
            return;
        const QByteArrayView text(pText->v.text.text);
        const QString strSheet = QString::fromUtf8(text.first(std::min(text.size(), c_nMaxSheets - nRead)));
        nRead += strSheet.size();
        Read(strSheet);
    });
}

void CStyleSheet::Read(QStringView strSheet) {
    qsizetype nAt = 0;
    while (m_classes.size() < c_nMaxClasses) {
        const qsizetype nOpen = strSheet.indexOf(u'{', nAt);
        const qsizetype nClose = nOpen < 0 ? -1 : strSheet.indexOf(u'}', nOpen);
        if (nClose < 0)
            return;
        AddRule(strSheet.sliced(nAt, nOpen - nAt).toString(), strSheet.sliced(nOpen + 1, nClose - nOpen - 1));
        nAt = nClose + 1;
    }
}

void CStyleSheet::AddRule(QString strSelectors, QStringView strDeclarations) {
    static const QRegularExpression lone(u"^[a-z0-9]*\\.([\\w-]+)$"_s);
    // Office programs put their sheets into comments.
    strSelectors.remove(u"<!--"_s).remove(u"-->"_s);
    if (const qsizetype nComment = strSelectors.lastIndexOf(u"*/"_s); nComment >= 0)
        strSelectors.remove(0, nComment + 2);
    QSet<QString> classes;
    for (const QStringView strSelector : QStringView(strSelectors).split(u',')) {
        const QRegularExpressionMatch match = lone.match(strSelector.trimmed().toString().toLower());
        if (match.hasMatch())
            classes.insert(match.captured(1));
    }
    if (classes.isEmpty())
        return;
    CDeclarations declarations;
    declarations.Add(strDeclarations);
    for (const QString& strClass : std::as_const(classes))
        m_classes[strClass].Add(declarations);
}

CDeclarations CStyleSheet::Of(const GumboElement& element, const QString& strClass) const {
    CDeclarations declarations;
    const QString strNames = strClass.left(c_nMaxClassNames).toLower();
    for (const QStringView strName : QStringView(strNames).split(u' ', Qt::SkipEmptyParts)) {
        if (const auto it = m_classes.constFind(strName.toString()); it != m_classes.constEnd())
            declarations.Add(*it);
    }
    declarations.Add(QString::fromUtf8(HtmlTree::AttributeValue(element, "style").left(c_nMaxStyle)));
    return declarations;
}

} // namespace PastedHtml
