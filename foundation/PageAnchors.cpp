#include "foundation/PageAnchors.h"

#include "foundation/CodePage.h"
#include "foundation/HtmlTree.h"
#include "foundation/Text.h"

#include <algorithm>
#include <array>

namespace PageAnchors {

using namespace HtmlTree;

namespace {

constexpr qsizetype c_nMaxText = 60;

template <std::size_t nCount>
bool IsOneOf(GumboTag tag, const std::array<GumboTag, nCount>& tags) {
    return std::find(tags.begin(), tags.end(), tag) != tags.end();
}

bool BreaksLine(GumboTag tag) {
    static constexpr std::array tags = {
        GUMBO_TAG_P,     GUMBO_TAG_DIV,    GUMBO_TAG_H1,     GUMBO_TAG_H2,         GUMBO_TAG_H3,
        GUMBO_TAG_H4,    GUMBO_TAG_H5,     GUMBO_TAG_H6,     GUMBO_TAG_LI,         GUMBO_TAG_UL,
        GUMBO_TAG_OL,    GUMBO_TAG_DL,     GUMBO_TAG_DT,     GUMBO_TAG_DD,         GUMBO_TAG_TABLE,
        GUMBO_TAG_TR,    GUMBO_TAG_TD,     GUMBO_TAG_TH,     GUMBO_TAG_BR,         GUMBO_TAG_HR,
        GUMBO_TAG_PRE,   GUMBO_TAG_CENTER, GUMBO_TAG_FORM,   GUMBO_TAG_BLOCKQUOTE, GUMBO_TAG_SECTION,
        GUMBO_TAG_ASIDE, GUMBO_TAG_HEADER, GUMBO_TAG_FOOTER, GUMBO_TAG_ARTICLE,    GUMBO_TAG_CAPTION};
    return IsOneOf(tag, tags);
}

/// What stands in these is no text of the page.
bool HidesText(GumboTag tag) {
    static constexpr std::array tags = {GUMBO_TAG_SCRIPT,   GUMBO_TAG_STYLE,    GUMBO_TAG_TITLE,
                                        GUMBO_TAG_TEXTAREA, GUMBO_TAG_SELECT,   GUMBO_TAG_NOSCRIPT,
                                        GUMBO_TAG_IFRAME,   GUMBO_TAG_NOFRAMES, GUMBO_TAG_TEMPLATE};
    return IsOneOf(tag, tags);
}

/// The id of these serves scripts and style sheets.
bool IsNoPlace(GumboTag tag) {
    static constexpr std::array tags = {
        GUMBO_TAG_HTML,   GUMBO_TAG_HEAD,  GUMBO_TAG_BODY,     GUMBO_TAG_LINK,   GUMBO_TAG_META,
        GUMBO_TAG_BASE,   GUMBO_TAG_INPUT, GUMBO_TAG_TEXTAREA, GUMBO_TAG_SELECT, GUMBO_TAG_OPTION,
        GUMBO_TAG_BUTTON, GUMBO_TAG_LABEL, GUMBO_TAG_FORM,     GUMBO_TAG_MAP,    GUMBO_TAG_AREA,
        GUMBO_TAG_OBJECT, GUMBO_TAG_EMBED, GUMBO_TAG_PARAM,    GUMBO_TAG_IFRAME, GUMBO_TAG_FRAME,
        GUMBO_TAG_SVG,    GUMBO_TAG_CANVAS};
    return HidesText(tag) || IsOneOf(tag, tags);
}

/// One reading of a page: its text in lines, and where in it the anchors stand.
class CReader {
public:
    void Walk(const GumboNode* pNode) {
        if (pNode->type == GUMBO_NODE_TEXT)
            AddText(QString::fromUtf8(pNode->v.text.text));
        else if (pNode->type == GUMBO_NODE_WHITESPACE)
            AddText(QStringLiteral(" "));
        if (!IsElement(pNode))
            return;
        const GumboElement& element = pNode->v.element;
        AddAnchor(QString::fromUtf8(AttributeValue(element, "id")), element);
        if (element.tag == GUMBO_TAG_A)
            AddAnchor(QString::fromUtf8(AttributeValue(element, "name")), element);
        const bool bLine = BreaksLine(element.tag);
        if (bLine)
            EndLine();
        for (unsigned i = 0; !HidesText(element.tag) && i < element.children.length; ++i)
            Walk(static_cast<const GumboNode*>(element.children.data[i]));
        if (bLine)
            EndLine();
    }

    QList<Anchor> Result() const {
        QList<Anchor> anchors;
        for (const Found& found : m_found)
            anchors.append({found.strName, LineAt(found.nAt), found.bOffered});
        return anchors;
    }

private:
    struct Found {
        QString strName;
        qsizetype nAt;
        bool bOffered;
    };

    void AddAnchor(const QString& strName, const GumboElement& element) {
        if (strName.isEmpty() || m_names.contains(strName))
            return;
        m_names.insert(strName);
        const bool bMark =
            strName == QLatin1StringView("innerlink") || strName == QLatin1StringView("innerfile");
        m_found.append({strName, m_strText.size(), !bMark && !IsNoPlace(element.tag)});
    }

    void AddText(const QString& strText) {
        for (const QChar c : strText) {
            if (!c.isSpace())
                m_strText += c;
            else if (!m_strText.isEmpty() && !m_strText.back().isSpace())
                m_strText += u' ';
        }
    }

    void EndLine() {
        if (m_strText.endsWith(u' '))
            m_strText.back() = u'\n';
        else if (!m_strText.isEmpty() && !m_strText.endsWith(u'\n'))
            m_strText += u'\n';
    }

    QString LineAt(qsizetype nAt) const {
        // One more, to see whether the line goes on; and what may stand before it.
        const QString strText = m_strText.mid(nAt, c_nMaxText + 3).trimmed();
        QString strLine = strText.left(strText.indexOf(u'\n') < 0 ? strText.size() : strText.indexOf(u'\n'));
        if (strLine.size() > c_nMaxText) {
            const bool bHalf = strLine[c_nMaxText - 1].isHighSurrogate();
            strLine = strLine.left(c_nMaxText - bHalf) + u'…';
        }
        return strLine.trimmed();
    }

    QString m_strText;
    QSet<QString> m_names;
    QList<Found> m_found;
};

} // namespace

QList<Anchor> Find(const QString& strPage) {
    const QByteArray html = strPage.toUtf8();
    if (IsTooDeep(html))
        return {};
    const Tree tree = Parse(html);
    if (IsDeep(tree->root))
        return {};
    CReader reader;
    reader.Walk(tree->root);
    return reader.Result();
}

QStringList Readings(const QString& strFragment) {
    QStringList list{strFragment};
    if (strFragment.contains(u'%')) {
        list.append(QString::fromUtf8(QByteArray::fromPercentEncoding(strFragment.toUtf8())));
        list.append(CodePage::Decode(QByteArray::fromPercentEncoding(CodePage::Encode(strFragment))));
    }
    return list;
}

CNames::CNames(const QStringList& names) {
    for (const QString& strName : names) {
        const QString strLower = LowerAscii(strName);
        if (strLower != strName && !m_exact.contains(strLower) && !m_byLower.contains(strLower))
            m_byLower.insert(strLower, strName);
        m_exact.insert(strName);
    }
}

QString CNames::Meant(const QString& strFragment) const {
    const QStringList readings = Readings(strFragment);
    for (const QString& strReading : readings) {
        if (m_exact.contains(strReading))
            return strReading;
    }
    for (const QString& strReading : readings) {
        const QString strLower = LowerAscii(strReading);
        if (const auto found = m_byLower.constFind(strLower); found != m_byLower.constEnd())
            return *found;
        if (m_exact.contains(strLower))
            return strLower;
    }
    return {};
}

} // namespace PageAnchors
