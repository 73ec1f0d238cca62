#include "companions/docexport/ForeignMarkup.h"

#include "companions/docexport/PrintedPage.h"
#include "foundation/HtmlTree.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;
using namespace HtmlTree;

namespace {

constexpr qsizetype c_nMaxFormula = qsizetype{64} * 1024;
/// The converter goes down a formula by recursion, and more than once.
constexpr int c_nMaxFormulaDepth = 60;
/// What a drawing may take from others, and the style sheet.
constexpr qsizetype c_nMaxTaken = qsizetype{1} << 20;
constexpr qsizetype c_nMaxStyle = qsizetype{128} * 1024;

bool IsXmlName(const QByteArray& name) {
    static const QRegularExpression pattern(u"^[A-Za-z_][A-Za-z0-9_.-]*$"_s);
    return pattern.match(QString::fromLatin1(name)).hasMatch();
}

bool IsDrawn(const GumboNode* pNode) {
    return IsElement(pNode) && pNode->v.element.tag_namespace == GUMBO_NAMESPACE_SVG;
}

/// As XML spells it, empty for one that it can't.
QByteArray NameOf(const GumboElement& element) {
    GumboStringPiece piece = element.original_tag;
    gumbo_tag_from_original_text(&piece);
    const char* szDrawn = piece.data && element.tag_namespace == GUMBO_NAMESPACE_SVG
                              ? gumbo_normalize_svg_tagname(&piece)
                              : nullptr;
    const QByteArray name = szDrawn ? QByteArray(szDrawn) : TagName(element);
    return IsXmlName(name) ? name : QByteArray();
}

QByteArray AttributeName(const GumboAttribute& attribute) {
    QByteArray name(attribute.name);
    const qsizetype nColon = name.indexOf(':');
    const QByteArray bare = name.mid(nColon + 1);
    if (!IsXmlName(bare) || attribute.attr_namespace == GUMBO_ATTR_NAMESPACE_XMLNS)
        return {};
    if (attribute.attr_namespace == GUMBO_ATTR_NAMESPACE_XLINK)
        return "xlink:" + bare;
    if (attribute.attr_namespace == GUMBO_ATTR_NAMESPACE_XML)
        return "xml:" + bare;
    return nColon < 0 && bare != "xmlns" ? bare : QByteArray();
}

/// Writes an element with all of the same kind that is in it, and text.
class CXmlCopy {
public:
    explicit CXmlCopy(qsizetype nMaxBytes = std::numeric_limits<qsizetype>::max()) : m_nMaxBytes(nMaxBytes) {}

    void Write(const GumboNode* pNode, const QByteArray& attributes = {}, const QByteArray& begin = {}) {
        const GumboElement& element = pNode->v.element;
        const QByteArray name = NameOf(element);
        // What is of pages, and what runs, is nothing that could be drawn here.
        if (name.isEmpty() || name == "foreignObject" || name == "script" || m_out.size() > m_nMaxBytes)
            return;
        m_nDepth = std::max(m_nDepth, ++m_nLevel);
        m_out += '<' + name + attributes;
        WriteAttributes(element, attributes);
        m_out += '>' + begin;
        for (unsigned i = 0; i < element.children.length; ++i) {
            const GumboNode* pChild = ChildAt(pNode, i);
            if (IsElement(pChild)) {
                if (pChild->v.element.tag_namespace == element.tag_namespace)
                    Write(pChild);
            } else if (pChild->type != GUMBO_NODE_COMMENT) {
                const QString strText = QString::fromUtf8(pChild->v.text.text);
                m_out += MarkupText(strText);
                if (name == "style")
                    TakeReferences(strText);
            }
        }
        m_out += "</" + name + '>';
        --m_nLevel;
    }

    const QByteArray& Out() const { return m_out; }
    int Depth() const { return m_nDepth; }
    bool HasClasses() const { return m_bClasses; }
    const QSet<QString>& Names() const { return m_names; }
    /// In their order, each once.
    const QStringList& References() const { return m_references; }

private:
    void WriteAttributes(const GumboElement& element, const QByteArray& given) {
        QSet<QByteArray> written;
        for (unsigned i = 0; i < element.attributes.length; ++i) {
            const auto& attribute = *static_cast<const GumboAttribute*>(element.attributes.data[i]);
            const QByteArray name = AttributeName(attribute);
            if (name.isEmpty() || written.contains(name) || given.contains(QByteArray(' ' + name + "=\"")))
                continue;
            written.insert(name);
            const QString strValue = QString::fromUtf8(attribute.value);
            m_out += ' ' + name + "=\"" + MarkupText(strValue) + '"';
            m_bClasses = m_bClasses || name == "class";
            if (name == "id")
                m_names.insert(strValue);
            if ((name == "href" || name == "xlink:href") && strValue.trimmed().startsWith(u'#'))
                Refer(strValue.trimmed().mid(1));
            TakeReferences(strValue);
        }
    }
    void TakeReferences(const QString& strText) {
        static const QRegularExpression pattern(u"url\\(\\s*[\"']?#([^\"')]+)"_s);
        if (!strText.contains("url("_L1))
            return;
        for (auto it = pattern.globalMatch(strText); it.hasNext();)
            Refer(it.next().captured(1).trimmed());
    }
    void Refer(const QString& strName) {
        if (!m_references.contains(strName))
            m_references.append(strName);
    }

    const qsizetype m_nMaxBytes;
    QByteArray m_out;
    int m_nLevel = 0;
    int m_nDepth = 0;
    bool m_bClasses = false;
    QSet<QString> m_names;
    QStringList m_references;
};

} // namespace

QByteArray FormulaMarkup(const GumboNode* pFormula) {
    CXmlCopy copy(c_nMaxFormula);
    copy.Write(pFormula, " xmlns=\"http://www.w3.org/1998/Math/MathML\"");
    const bool bFormula = copy.Out().size() <= c_nMaxFormula && copy.Depth() <= c_nMaxFormulaDepth;
    return bFormula ? copy.Out() : QByteArray();
}

void CPageDrawings::LookAround() {
    if (std::exchange(m_bLooked, true))
        return;
    ForEachElement(m_pPage, [this](const GumboNode* pNode) {
        const GumboElement& element = pNode->v.element;
        if (element.tag == GUMBO_TAG_STYLE && !IsDrawn(pNode) && m_style.size() < c_nMaxStyle)
            m_style += MarkupText(TextOf(pNode)) + '\n';
        if (!IsDrawn(pNode))
            return;
        const QString strName = QString::fromUtf8(AttributeValue(element, "id"));
        // The first of a name is the one that is meant.
        if (!strName.isEmpty() && !m_named.contains(strName))
            m_named.insert(strName, pNode);
    });
}

QByteArray CPageDrawings::Read(const GumboNode* pDrawing, const QByteArray& color) {
    LookAround();
    CXmlCopy look;
    look.Write(pDrawing);
    QByteArray taken;
    QSet<QString> known = look.Names();
    bool bClasses = look.HasClasses();
    QStringList wanted = look.References();
    for (qsizetype i = 0; i < wanted.size() && taken.size() < c_nMaxTaken; ++i) {
        const GumboNode* pNamed = known.contains(wanted[i]) ? nullptr : m_named.value(wanted[i]);
        known.insert(wanted[i]);
        if (!pNamed)
            continue;
        CXmlCopy copy(c_nMaxTaken);
        copy.Write(pNamed);
        if (copy.Out().size() > c_nMaxTaken)
            continue;
        taken += copy.Out();
        known += copy.Names();
        wanted += copy.References();
        bClasses = bClasses || copy.HasClasses();
    }
    QByteArray begin;
    if (bClasses && !m_style.isEmpty() && m_style.size() <= c_nMaxStyle)
        begin += "<style>" + m_style + "</style>";
    if (!taken.isEmpty())
        begin += "<defs>" + taken + "</defs>";
    QByteArray attributes =
        " xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\"";
    if (!color.isEmpty() && AttributeValue(pDrawing->v.element, "color").isEmpty())
        attributes += " color=\"#" + color + '"';
    CXmlCopy copy;
    copy.Write(pDrawing, attributes, begin);
    return copy.Out();
}

bool CPageDrawings::IsStock(const GumboNode* pDrawing) {
    static const QSet<QByteArray> kept = {"defs",           "symbol",   "title",  "desc",   "style",
                                          "metadata",       "marker",   "mask",   "filter", "linearGradient",
                                          "radialGradient", "clipPath", "pattern"};
    bool bAny = false;
    for (unsigned i = 0; i < pDrawing->v.element.children.length; ++i) {
        const GumboNode* pChild = ChildAt(pDrawing, i);
        if (!IsElement(pChild))
            continue;
        const QByteArray name = NameOf(pChild->v.element);
        if (!kept.contains(name) && !(name == "g" && IsStock(pChild)))
            return false;
        bAny = bAny || (name != "title" && name != "desc" && name != "metadata");
    }
    return bAny;
}
