#include "editor/PastedLists.h"

#include "editor/PastedElements.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace HtmlTree;

namespace PastedHtml {

namespace {

/// A style says what it says at its beginning, and a label stands among the first elements of its item: no
/// more is looked at, since a hostile text could have it done again and again.
constexpr qsizetype c_nMaxStyle = 2000;
constexpr int c_nMaxLooks = 30;

QString StyleOf(const GumboNode* pNode) {
    return QString::fromUtf8(AttributeValue(pNode->v.element, "style").left(c_nMaxStyle));
}

/// Where an office program writes the label of a list's item, for readers that know no lists.
const GumboNode* FindLabel(const GumboNode* pNode, int& nLooks) {
    for (unsigned i = 0; i < pNode->v.element.children.length && nLooks < c_nMaxLooks; ++i) {
        const GumboNode* pChild = ChildAt(pNode, i);
        if (!IsElement(pChild))
            continue;
        ++nLooks;
        static const QRegularExpression ignore(u"mso-list:\\s*ignore"_s,
                                               QRegularExpression::CaseInsensitiveOption);
        if (StyleOf(pChild).contains(ignore))
            return pChild;
        if (const GumboNode* pFound = FindLabel(pChild, nLooks))
            return pFound;
    }
    return nullptr;
}

bool IsInSymbolFont(const GumboNode* pLabel, const GumboNode* pParagraph) {
    bool bSymbol = false;
    const auto look = [&](const GumboNode* pNode) {
        const QString strStyle = StyleOf(pNode).toLower();
        bSymbol = bSymbol || strStyle.contains(u"symbol") || strStyle.contains(u"wingdings");
    };
    ForEachElement(pLabel, look);
    for (const GumboNode* pNode = pLabel->parent; pNode != pParagraph; pNode = pNode->parent)
        look(pNode);
    return bSymbol;
}

} // namespace

std::optional<OfficeItem> ReadOfficeItem(const GumboNode* pNode) {
    const QByteArray name = NameOf(pNode);
    if (name != "p" && name != "div")
        return std::nullopt;
    static const QRegularExpression level(u"mso-list:\\s*[^;]*level(\\d)"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = level.match(StyleOf(pNode));
    if (!match.hasMatch())
        return std::nullopt;
    OfficeItem item{pNode, std::max(match.captured(1).toInt(), 1), false, 0, {}};
    int nLooks = 0;
    const GumboNode* pLabel = FindLabel(pNode, nLooks);
    const QString strLabel = pLabel ? TextOf(pLabel).simplified() : QString();
    static const QRegularExpression letters(u"[\\p{L}\\p{N}]"_s);
    if (!strLabel.contains(letters) || strLabel == u"o" || IsInSymbolFont(pLabel, pNode))
        return item;
    static const QRegularExpression number(u"^(\\d{1,5})[.、．)）]?$"_s), letter(u"^([a-zA-Z])[.、．)）]$"_s);
    item.bOrdered = true;
    if (const auto digits = number.match(strLabel); digits.hasMatch()) {
        item.nNumber = digits.captured(1).toInt();
        return item;
    }
    if (const auto one = letter.match(strLabel); one.hasMatch()) {
        const QChar c = one.captured(1).front();
        item.cType = c.isLower() ? u'a' : u'A';
        item.nNumber = c.unicode() - item.cType.unicode() + 1;
        return item;
    }
    return std::nullopt;
}

} // namespace PastedHtml
