#include "foundation/HtmlTree.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <cstring>
#include <vector>

namespace HtmlTree {
namespace {

constexpr std::size_t c_nMaxDepth = 2000;
/// The parser compares each with all before it.
constexpr int c_nMaxAttributes = 5000;
/// It may go through all open elements for each tag: some seconds of that.
constexpr std::size_t c_nMaxSteps = 80'000'000;
/// Formatting that nobody ends is made anew in each paragraph behind it: so many steps for an element.
constexpr std::size_t c_nStepsOfFormatting = 16;

bool IsAsciiLetter(char c) {
    return (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
}

bool IsSpace(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f';
}

struct TagEnd {
    int nAttributes = 0;
    /// With a slash that belongs to no attribute.
    bool bEndsItself = false;
};

/// The end of a tag, from behind its name, as the parser finds it.
qsizetype EndOfTag(const QByteArray& html, qsizetype n, TagEnd& end) {
    while (n < html.size() && html[n] != '>') {
        end.bEndsItself = html[n] == '/';
        if (IsSpace(html[n]) || html[n] == '/') {
            ++n;
            continue;
        }
        ++end.nAttributes;
        // A name may begin with the sign that else ends it.
        for (++n; n < html.size() && !IsSpace(html[n]) && !strchr("/>=", html[n]);)
            ++n;
        while (n < html.size() && IsSpace(html[n]))
            ++n;
        if (n >= html.size() || html[n] != '=')
            continue;
        for (++n; n < html.size() && IsSpace(html[n]);)
            ++n;
        if (n < html.size() && (html[n] == '"' || html[n] == '\'')) {
            n = html.indexOf(html[n], n + 1);
            if (n < 0)
                return html.size();
            ++n;
        } else {
            while (n < html.size() && !IsSpace(html[n]) && html[n] != '>')
                ++n;
        }
    }
    return n;
}

/// Elements that authors leave open and the parser closes by itself.
bool ClosesItself(const QByteArray& name) {
    static const QSet<QByteArray> names = {"p",  "li", "dt",     "dd",    "tr",    "td",   "th",
                                           "rt", "rp", "option", "tbody", "thead", "tfoot"};
    return names.contains(name);
}

/// Those of them that keep an element without rules of its own from being ended.
bool IsBlockThatClosesItself(const QByteArray& name) {
    return name == "p" || name == "li" || name == "dt" || name == "dd";
}

/// Elements with whose end those of them surely end that are in it.
bool EndsWhatIsInIt(const QByteArray& name) {
    static const QSet<QByteArray> names = {"div", "ul", "ol", "dl", "table", "center", "blockquote"};
    return names.contains(name);
}

/// An element with those that the parser puts between it and the next of its kind.
std::size_t LevelsOf(const QByteArray& name) {
    constexpr std::size_t c_nTable = 4;
    if (IsBlockThatClosesItself(name))
        return 0;
    if (name == "table")
        return c_nTable;
    return name == "ul" || name == "ol" || name == "dl" ? 2 : 1;
}

/// Elements behind which most end tags don't reach what was opened before. A cell is one too, but always
/// stands in a table.
bool IsBarrier(const QByteArray& name) {
    static const QSet<QByteArray> names = {
        "applet", "marquee", "object", "table", "template", "select", "foreignobject",
        "desc",   "mi",      "mo",     "mn",    "ms",       "mtext",  "annotation-xml"};
    return names.contains(name);
}

/// Elements that only a barrier keeps from being ended by their tag.
const QSet<QByteArray>& Formatting() {
    static const QSet<QByteArray> names = {"a", "b",     "big",    "code",   "em", "font", "i",
                                           "s", "small", "strike", "strong", "tt", "u",    "nobr"};
    return names;
}

bool IsFormatting(const QByteArray& name) {
    return Formatting().contains(name);
}

bool IsCell(const QByteArray& name) {
    return name == "td" || name == "th";
}

/// Elements with whose beginning a cell ends.
bool IsOfTable(const QByteArray& name) {
    return IsCell(name) || name == "tr" || name == "tbody" || name == "thead" || name == "tfoot";
}

/// The same, but they keep an element that has no rules of its own from being ended.
bool IsBlock(const QByteArray& name) {
    static const QSet<QByteArray> names = {
        "address", "article", "aside",   "blockquote", "body",       "button",  "center",   "details",
        "dir",     "div",     "dl",      "fieldset",   "figcaption", "figure",  "footer",   "form",
        "h1",      "h2",      "h3",      "h4",         "h5",         "h6",      "header",   "hgroup",
        "head",    "html",    "listing", "main",       "menu",       "nav",     "noscript", "ol",
        "pre",     "ul",      "section", "summary",    "caption",    "frameset"};
    return names.contains(name);
}

/// What is in these is text.
bool IsRaw(const QByteArray& name) {
    static const QSet<QByteArray> names = {"style", "script", "textarea", "title",
                                           "xmp",   "iframe", "noembed",  "noframes"};
    return names.contains(name);
}

/// Where the end tag of such an element begins, or the end of all.
qsizetype EndOfRaw(const QByteArray& html, qsizetype n, const QByteArray& name) {
    for (n = html.indexOf("</", n); n >= 0; n = html.indexOf("</", n + 2)) {
        const qsizetype nEnd = n + 2 + name.size();
        if (nEnd < html.size() && qstrnicmp(html.constData() + n + 2, name.constData(), name.size()) == 0 &&
            (IsSpace(html[nEnd]) || html[nEnd] == '/' || html[nEnd] == '>'))
            return n;
    }
    return html.size();
}

/// The end of a remark, or of another thing between angle brackets that is no tag.
qsizetype EndOfRemark(const QByteArray& html, qsizetype n) {
    if (html.mid(n, 4) != "<!--") {
        const qsizetype nEnd = html.indexOf('>', n + 2);
        return nEnd < 0 ? html.size() : nEnd;
    }
    const qsizetype nText = n + 4;
    for (n = html.indexOf("--", n + 2); n >= 0; n = html.indexOf("--", n + 1)) {
        if (html.mid(n + 2, 1) == ">")
            return n + 2;
        if (n >= nText && html.mid(n + 2, 2) == "!>")
            return n + 3;
    }
    return html.size();
}

/// The elements that are open by the tags alone. An end tag takes away its own element only: what else it
/// ends stays, as if it had been left open.
class COpenElements {
public:
    void Open(const QByteArray& name) {
        m_nSteps += m_nDepth + c_nStepsOfFormatting * m_nFormatting;
        const bool bByItself = IsBlockThatClosesItself(name);
        if (IsOfTable(name)) {
            EndCell();
            BeginCell(name);
        }
        if (!bByItself && ClosesItself(name))
            return;
        static const QByteArray paragraph("p");
        const bool bBlock = bByItself || IsBlock(name);
        const bool bBarrier = !bBlock && IsBarrier(name);
        // What it ends that was left open.
        if (bByItself)
            Close(name);
        if (bBlock && name != paragraph)
            Close(paragraph);
        m_open[name].push_back(++m_nLast);
        m_nDepth += LevelsOf(name);
        m_nFormatting += !bBlock && IsFormatting(name);
        if (bBarrier)
            m_barriers.push_back(m_nLast);
        if (bBarrier || bBlock)
            m_blocks.push_back(m_nLast);
    }

    void Close(const QByteArray& name) {
        m_nSteps += m_nDepth;
        // Other end tags of a table may have nothing to end.
        if (name == "tr" || name == "table")
            EndCell();
        const auto it = m_open.find(name);
        if (it == m_open.end() || it->empty() || IsBehind(name, it->back()))
            return;
        const qsizetype nOpened = it->back();
        Remove(name, *it);
        if (IsBlockThatClosesItself(name) || !EndsWhatIsInIt(name))
            return;
        static const QByteArray inIt[] = {"p", "li", "dt", "dd"};
        for (const QByteArray& each : inIt) {
            const auto in = m_open.find(each);
            while (in != m_open.end() && !in->empty() && in->back() > nOpened)
                Remove(in.key(), *in);
        }
    }

    bool IsTooMuch() const { return m_nDepth > c_nMaxDepth || m_nSteps > c_nMaxSteps; }

private:
    /// In these a cell is an element like others.
    bool IsInDrawing() const { return !m_open.value("svg").empty() || !m_open.value("math").empty(); }

    /// In the table that was opened last.
    void BeginCell(const QByteArray& name) {
        const std::vector<qsizetype> tables = m_open.value("table");
        const bool bInTable = !tables.empty() && !m_barriers.empty() && tables.back() == m_barriers.back();
        if (IsCell(name) && bInTable && !IsInDrawing())
            m_cells.push_back(++m_nLast);
    }

    /// With a cell ends the formatting that was left open in it.
    void EndCell() {
        if (m_cells.empty() || m_barriers.empty() || m_barriers.back() > m_cells.back() || IsInDrawing())
            return;
        for (const QByteArray& name : Formatting()) {
            const auto in = m_open.find(name);
            while (in != m_open.end() && !in->empty() && in->back() > m_cells.back())
                Remove(name, *in);
        }
        m_cells.pop_back();
    }

    void Remove(const QByteArray& name, std::vector<qsizetype>& opened) {
        for (std::vector<qsizetype>* pList : {&m_barriers, &m_blocks}) {
            if (const auto found = std::lower_bound(pList->begin(), pList->end(), opened.back());
                found != pList->end() && *found == opened.back())
                pList->erase(found);
        }
        opened.pop_back();
        m_nDepth -= LevelsOf(name);
        m_nFormatting -= !IsBlockThatClosesItself(name) && IsFormatting(name);
    }

    /// Whether something was opened since that the end tag doesn't reach over.
    bool IsBehind(const QByteArray& name, qsizetype nOpened) const {
        // Most nest rightly. The barriers are among the blocks.
        if (m_blocks.empty() || m_blocks.back() <= nOpened)
            return false;
        // These end whatever is in them.
        if (name == "table" || name == "template" || name == "select")
            return false;
        // An item reaches over neither its list nor another.
        const bool bOwnRules = name == "p" || IsFormatting(name) || IsBlock(name) || IsBarrier(name);
        const std::vector<qsizetype>& list = bOwnRules ? m_barriers : m_blocks;
        return !list.empty() && list.back() > nOpened;
    }

    /// The numbers of the open elements, in the order in which they were opened.
    QHash<QByteArray, std::vector<qsizetype>> m_open;
    std::vector<qsizetype> m_barriers;
    std::vector<qsizetype> m_blocks;
    std::vector<qsizetype> m_cells;
    qsizetype m_nLast = 0;
    std::size_t m_nDepth = 0;
    std::size_t m_nFormatting = 0;
    std::size_t m_nSteps = 0;
};

/// Follows a drawing or a formula as long as it is sure that the parser takes it for one: in these a tag may
/// end itself, and a flat drawing of thousands of shapes is not a deep one. What is nested in a wrong order,
/// or holds what belongs to pages, is no longer sure.
class CForeignContent {
public:
    /// Whether the start tag ends itself.
    bool Open(const QByteArray& name, bool bEndsItself) {
        // Nothing else may be skipped wherever the parser should turn out to be: it makes these of nothing
        // but a drawing, or leaves them out.
        static const QSet<QByteArray> endThemselves = {
            "path", "rect", "circle", "ellipse", "line", "polyline", "polygon", "use",   "stop",
            "g",    "text", "tspan",  "image",   "defs", "animate",  "set",     "mspace"};
        if (name == "svg" || name == "math") {
            // Behind one that ends itself the parser is in the page again.
            if (!bEndsItself)
                m_open.push_back(name);
            return false;
        }
        if (m_open.empty())
            return false;
        if (HoldsPage(m_open.back()) || BelongsToPages(name)) {
            m_open.clear();
            return false;
        }
        if (bEndsItself && endThemselves.contains(name))
            return true;
        m_open.push_back(name);
        return false;
    }
    void Close(const QByteArray& name) {
        if (m_open.empty())
            return;
        if (m_open.back() == name)
            m_open.pop_back();
        else
            m_open.clear();
    }
    void BeUnsure() { m_open.clear(); }

private:
    static bool HoldsPage(const QByteArray& name) {
        static const QSet<QByteArray> names = {
            "title", "desc", "foreignobject", "annotation-xml", "annotation", "mi", "mo",
            "mn",    "ms",   "mtext"};
        return names.contains(name);
    }
    static bool BelongsToPages(const QByteArray& name) {
        static const QSet<QByteArray> names = {
            "body",     "br",     "button",  "caption", "col",      "colgroup", "dd",   "dl",
            "dt",       "em",     "embed",   "frame",   "frameset", "head",     "hr",   "html",
            "img",      "input",  "li",      "meta",    "object",   "optgroup", "span", "option",
            "p",        "ruby",   "script",  "sub",     "template", "select",   "sup",  "var",
            "textarea", "iframe", "marquee", "applet",  "keygen"};
        return names.contains(name) || IsBlock(name) || IsOfTable(name) ||
               (IsFormatting(name) && name != "a") || name == "table";
    }

    std::vector<QByteArray> m_open;
};

/// The nodes of a tree, parents first.
std::vector<GumboNode*> NodesOf(GumboNode* pRoot) {
    std::vector<GumboNode*> nodes = {pRoot};
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!IsElement(nodes[i]))
            continue;
        const GumboVector& children = nodes[i]->v.element.children;
        for (unsigned nChild = 0; nChild < children.length; ++nChild)
            nodes.push_back(static_cast<GumboNode*>(children.data[nChild]));
    }
    return nodes;
}

/// The parser frees a tree by recursion: a deep one is laid flat before.
void LayFlat(GumboNode* pRoot) {
    const std::vector<GumboNode*> nodes = NodesOf(pRoot);
    for (GumboNode* pNode : nodes) {
        if (IsElement(pNode))
            pNode->v.element.children.length = 0;
    }
    GumboVector& all = pRoot->v.element.children;
    kGumboDefaultOptions.deallocator(kGumboDefaultOptions.userdata, all.data);
    all.data = static_cast<void**>(
        kGumboDefaultOptions.allocator(kGumboDefaultOptions.userdata, nodes.size() * sizeof(void*)));
    all.length = all.capacity = unsigned(nodes.size() - 1);
    std::copy(nodes.begin() + 1, nodes.end(), all.data);
}

void AddText(const GumboNode* pNode, QString& strText) {
    if (!IsElement(pNode)) {
        if (pNode->type != GUMBO_NODE_COMMENT)
            strText += QString::fromUtf8(pNode->v.text.text);
        return;
    }
    for (unsigned i = 0; i < pNode->v.element.children.length; ++i)
        AddText(ChildAt(pNode, i), strText);
}

} // namespace

void TreeDeleter::operator()(GumboOutput* pOutput) const {
    if (IsDeep(pOutput->root))
        LayFlat(pOutput->root);
    gumbo_destroy_output(&kGumboDefaultOptions, pOutput);
}

Tree Parse(const QByteArray& html) {
    // With each error the parser would keep the names of all elements that are open.
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0;
    return Tree(gumbo_parse_with_options(&options, html.constData(), size_t(html.size())));
}

bool IsVoid(const QByteArray& name) {
    static const QSet<QByteArray> names = {"area",  "base",  "br",    "col",    "embed",   "hr",
                                           "img",   "input", "link",  "meta",   "param",   "source",
                                           "track", "wbr",   "frame", "keygen", "bgsound", "basefont"};
    return names.contains(name);
}

bool IsTooDeep(const QByteArray& html) {
    COpenElements open;
    // Up to there end tags may be mere text.
    qsizetype nText = 0;
    // In these other rules hold for text.
    bool bForeign = false;
    CForeignContent foreign;
    for (qsizetype i = html.indexOf('<'); i >= 0 && i + 1 < html.size(); i = html.indexOf('<', i + 1)) {
        const bool bEnd = html[i + 1] == '/';
        const qsizetype nName = i + 1 + bEnd;
        qsizetype nEnd = nName;
        while (nEnd < html.size() &&
               (IsAsciiLetter(html[nEnd]) || (nEnd > nName && isdigit(uchar(html[nEnd])))))
            ++nEnd;
        if (nEnd == nName) {
            if (bForeign && html.mid(i, 9) == "<![CDATA[" && i >= nText)
                nText = html.indexOf("]]>", i) < 0 ? html.size() : html.indexOf("]]>", i);
            if (i >= nText && (bEnd || html[nName] == '!' || html[nName] == '?'))
                i = EndOfRemark(html, i);
            continue;
        }
        const QByteArray name = html.mid(nName, nEnd - nName).toLower();
        const qsizetype nPlainName = nEnd;
        while (nEnd < html.size() && !IsSpace(html[nEnd]) && html[nEnd] != '/' && html[nEnd] != '>')
            ++nEnd;
        const bool bText = i < nText;
        TagEnd end;
        // A quote in mere text holds nothing.
        i = bText ? nEnd - 1 : EndOfTag(html, nEnd, end);
        if (end.nAttributes > c_nMaxAttributes)
            return true;
        if (bText || nEnd > nPlainName)
            foreign.BeUnsure();
        else if (bEnd)
            foreign.Close(name);
        else if (foreign.Open(name, end.bEndsItself))
            continue;
        if (IsVoid(name))
            continue;
        if (bEnd) {
            if (!bText)
                open.Close(name);
            if (open.IsTooMuch())
                return true;
            continue;
        }
        open.Open(name);
        if (open.IsTooMuch())
            return true;
        if (IsBlockThatClosesItself(name))
            continue;
        bForeign = bForeign || name == "svg" || name == "math" || name == "select";
        if (!IsRaw(name) || bText)
            continue;
        const qsizetype nRaw = EndOfRaw(html, i, name);
        if (bForeign)
            nText = nRaw;
        else
            i = nRaw - 1;
    }
    return false;
}

bool IsDeep(const GumboNode* pRoot) {
    struct Place {
        const GumboNode* pNode;
        unsigned nNext;
    };
    // By hand, since recursion is what a deep tree forbids.
    std::vector<Place> way = {{pRoot, 0}};
    while (!way.empty()) {
        Place& place = way.back();
        if (!IsElement(place.pNode) || place.nNext == place.pNode->v.element.children.length) {
            way.pop_back();
            continue;
        }
        const GumboNode* pChild = ChildAt(place.pNode, place.nNext++);
        if (way.size() > c_nMaxDepth)
            return true;
        way.push_back({pChild, 0});
    }
    return false;
}

QByteArray TagName(const GumboElement& element) {
    // Nothing ends plain text, so within a frame it can only be preformatted text.
    if (element.tag == GUMBO_TAG_PLAINTEXT)
        return "pre";
    if (element.tag != GUMBO_TAG_UNKNOWN)
        return gumbo_normalized_tagname(element.tag);
    GumboStringPiece piece = element.original_tag;
    gumbo_tag_from_original_text(&piece);
    return QByteArray(piece.data, qsizetype(piece.length)).toLower();
}

bool IsElement(const GumboNode* pNode) {
    return pNode->type == GUMBO_NODE_ELEMENT || pNode->type == GUMBO_NODE_TEMPLATE;
}

QByteArray AttributeValue(const GumboElement& element, const char* szName) {
    const GumboAttribute* pAttribute = gumbo_get_attribute(&element.attributes, szName);
    return pAttribute ? QByteArray(pAttribute->value) : QByteArray();
}

QString AttributeText(const GumboElement& element, const char* szName) {
    return QString::fromUtf8(AttributeValue(element, szName)).trimmed();
}

const GumboNode* ChildAt(const GumboNode* pElement, unsigned i) {
    return static_cast<const GumboNode*>(pElement->v.element.children.data[i]);
}

QString TextOf(const GumboNode* pNode) {
    QString strText;
    AddText(pNode, strText);
    return strText;
}

void ForEachElement(const GumboNode* pNode, const std::function<void(const GumboNode*)>& visit) {
    if (!IsElement(pNode))
        return;
    visit(pNode);
    const GumboVector& children = pNode->v.element.children;
    for (unsigned i = 0; i < children.length; ++i)
        ForEachElement(static_cast<const GumboNode*>(children.data[i]), visit);
}

} // namespace HtmlTree
