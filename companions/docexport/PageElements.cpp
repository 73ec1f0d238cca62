#include "companions/docexport/PageElements.h"

#include "companions/docexport/TextLine.h"
#include "foundation/HtmlTree.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace HtmlTree;

bool IsHidden(const GumboElement& element) {
    return StyleValue(element, u"display"_s) == "none"_L1 ||
           gumbo_get_attribute(&element.attributes, "hidden") ||
           (element.tag_namespace == GUMBO_NAMESPACE_SVG && AttributeValue(element, "display") == "none") ||
           // Formulas that scripts have set stand there twice: once as signs in places.
           (element.tag == GUMBO_TAG_SPAN &&
            AttributeValue(element, "class").split(' ').contains("katex-html"));
}

bool IsDropped(const GumboElement& element, const QByteArray& name) {
    static const QSet<QByteArray> names = {"script", "style",    "head",     "title",  "meta",   "link",
                                           "base",   "template", "noscript", "select", "input",  "button",
                                           "option", "nav",      "textarea", "map",    "param",  "noframes",
                                           "rp",     "math",     "svg",      "canvas", "source", "bgsound"};
    return names.contains(name) || element.tag_namespace != GUMBO_NAMESPACE_HTML;
}

bool IsMedium(const QByteArray& name) {
    static const QSet<QByteArray> names = {"object", "embed", "applet", "iframe", "video", "audio", "frame"};
    return names.contains(name);
}

bool IsBlock(const QByteArray& name) {
    static const QSet<QByteArray> names = {
        "p",       "div",     "center",   "address", "dl",      "dt",         "dd",   "form",   "fieldset",
        "legend",  "section", "article",  "aside",   "header",  "footer",     "main", "figure", "figcaption",
        "details", "summary", "frameset", "marquee", "caption", "blockquote", "li",   "hgroup"};
    return names.contains(name);
}

bool IsHeading(const QByteArray& name) {
    return name.size() == 2 && name[0] == 'h' && name[1] >= '1' && name[1] <= '6';
}

bool IsList(const QByteArray& name) {
    return name == "ul" || name == "ol" || name == "menu" || name == "dir";
}

bool IsPositive(const QString& strLength) {
    return !strLength.startsWith(u'-') && strLength.contains(QRegularExpression(u"[1-9]"_s));
}

int Pixels(const GumboElement& element, const char* szName, int nWhole) {
    static const QHash<QString, double> units = {{u""_s, 1},           {u"px"_s, 1},  {u"pt"_s, 96 / 72.0},
                                                 {u"pc"_s, 16},        {u"in"_s, 96}, {u"cm"_s, 96 / 2.54},
                                                 {u"mm"_s, 96 / 25.4}, {u"em"_s, 16}, {u"rem"_s, 16}};
    static const QRegularExpression length(u"^\\s*([0-9]*\\.?[0-9]+)\\s*([a-z]*|%)\\s*$"_s);
    for (const QString& strValue :
         {StyleValue(element, QString::fromLatin1(szName)), AttributeText(element, szName).toLower()}) {
        const auto match = length.match(strValue);
        const QString strUnit = match.captured(2);
        const double dUnit = strUnit == u"%"_s ? nWhole / 100.0 : units.value(strUnit);
        const double dValue = match.captured(1).toDouble() * dUnit;
        if (match.hasMatch() && dValue >= 1 && dValue < 100000)
            return int(dValue);
    }
    return 0;
}

bool HoldsListsAlone(const GumboNode* pList) {
    bool bAny = false;
    for (unsigned i = 0; i < pList->v.element.children.length; ++i) {
        const GumboNode* pChild = ChildAt(pList, i);
        if (IsBlank(pChild))
            continue;
        if (!IsElement(pChild) || !IsList(TagName(pChild->v.element)))
            return false;
        bAny = true;
    }
    return bAny;
}

QString TitleOf(const GumboNode* pDrawing) {
    for (unsigned i = 0; i < pDrawing->v.element.children.length; ++i) {
        const GumboNode* pChild = ChildAt(pDrawing, i);
        if (IsElement(pChild) && TagName(pChild->v.element) == "title")
            return TextOf(pChild).simplified();
    }
    return {};
}

QString NameOfMedium(const GumboNode* pMedium) {
    QString strName;
    ForEachElement(pMedium, [&](const GumboNode* pInner) {
        for (const char* szName : {"src", "data", "value", "code"}) {
            const QString strValue = QString::fromUtf8(AttributeValue(pInner->v.element, szName));
            if (strName.isEmpty() && strValue.contains(u'.') && !strValue.contains("clsid"_L1))
                strName = QUrl::fromPercentEncoding(strValue.mid(strValue.lastIndexOf(u'/') + 1).toUtf8());
        }
    });
    return strName;
}
