#include "companions/docexport/PaperColor.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

using Channels = std::array<int, 3>;

constexpr int c_nShade = 0x33;
constexpr int c_nLeastColorful = 0x44;
/// In parts of 255: yellow is lighter, orange darker.
constexpr int c_nLightest = 190;

QString ByName(const QString& strName) {
    static const QHash<QString, QString> names = {
        {u"red"_s, u"#ff0000"_s},         {u"blue"_s, u"#0000ff"_s},       {u"green"_s, u"#008000"_s},
        {u"maroon"_s, u"#800000"_s},      {u"navy"_s, u"#000080"_s},       {u"purple"_s, u"#800080"_s},
        {u"olive"_s, u"#808000"_s},       {u"teal"_s, u"#008080"_s},       {u"fuchsia"_s, u"#ff00ff"_s},
        {u"magenta"_s, u"#ff00ff"_s},     {u"lime"_s, u"#00ff00"_s},       {u"aqua"_s, u"#00ffff"_s},
        {u"cyan"_s, u"#00ffff"_s},        {u"orange"_s, u"#ffa500"_s},     {u"brown"_s, u"#a52a2a"_s},
        {u"crimson"_s, u"#dc143c"_s},     {u"darkred"_s, u"#8b0000"_s},    {u"darkblue"_s, u"#00008b"_s},
        {u"darkgreen"_s, u"#006400"_s},   {u"firebrick"_s, u"#b22222"_s},  {u"orangered"_s, u"#ff4500"_s},
        {u"tomato"_s, u"#ff6347"_s},      {u"royalblue"_s, u"#4169e1"_s},  {u"steelblue"_s, u"#4682b4"_s},
        {u"darkorange"_s, u"#ff8c00"_s},  {u"chocolate"_s, u"#d2691e"_s},  {u"indigo"_s, u"#4b0082"_s},
        {u"seagreen"_s, u"#2e8b57"_s},    {u"dodgerblue"_s, u"#1e90ff"_s}, {u"deeppink"_s, u"#ff1493"_s},
        {u"forestgreen"_s, u"#228b22"_s}, {u"mediumblue"_s, u"#0000cd"_s}, {u"darkviolet"_s, u"#9400d3"_s},
    };
    return names.value(strName, strName);
}

std::optional<Channels> Read(const QString& strColor) {
    static const QRegularExpression digits(u"^#?([0-9a-f]{3}|[0-9a-f]{6})$"_s);
    static const QRegularExpression numbers(u"^rgba?\\(\\s*(\\d{1,3})[\\s,]+(\\d{1,3})[\\s,]+(\\d{1,3})"_s);
    const QString strPlain = ByName(strColor.trimmed().toLower());
    if (const auto match = digits.match(strPlain); match.hasMatch()) {
        QString strDigits = match.captured(1);
        if (strDigits.size() == 3)
            strDigits = strDigits.replace(QRegularExpression(u"(.)"_s), u"\\1\\1"_s);
        const int nColor = strDigits.toInt(nullptr, 16);
        return Channels{nColor >> 16, (nColor >> 8) & 0xff, nColor & 0xff};
    }
    if (const auto match = numbers.match(strPlain); match.hasMatch())
        return Channels{qMin(match.captured(1).toInt(), 255), qMin(match.captured(2).toInt(), 255),
                        qMin(match.captured(3).toInt(), 255)};
    return std::nullopt;
}

} // namespace

QByteArray PaperColor(const QString& strColor) {
    std::optional<Channels> color = Read(strColor);
    if (!color)
        return {};
    for (int& nChannel : *color)
        nChannel = (nChannel + c_nShade / 2) / c_nShade * c_nShade;
    const auto [r, g, b] = *color;
    const auto [pLeast, pMost] = std::minmax_element(color->begin(), color->end());
    if (*pMost - *pLeast < c_nLeastColorful || (299 * r + 587 * g + 114 * b) / 1000 > c_nLightest)
        return {};
    return QByteArray::number(r << 16 | g << 8 | b, 16).rightJustified(6, '0').toUpper();
}
