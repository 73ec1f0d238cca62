#include "companions/compiler/SearchIndex.h"

#include "companions/compiler/FrameParts.h"
#include "companions/compiler/SourceFile.h"
#include "course/BookDatabase.h"
#include "foundation/Exceptions.h"
#include "foundation/PageText.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "platform/base/NativePath.h"
#include "video/Outline.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <bit>

using namespace Qt::StringLiterals;

namespace SearchIndex {
namespace {

/// Of one node. Whoever looks for a word behind it looks in the page.
constexpr qsizetype c_nMaxText = 100'000;
/// Of a site, as its pages lie on the disk.
constexpr qint64 c_nBytesInPart = qint64{1} << 20;
constexpr qint64 c_nBytesOfSite = qint64{32} << 20;
constexpr qsizetype c_nPagesOfSite = 3000;
constexpr quint32 c_nFilterBits = 1 << 16;
constexpr quint32 c_nLeastFilterBits = 1 << 8;

bool IsNameStart(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

/// Reads the text of markup in one pass, forgiving whatever is wrong in it.
class CTextReader {
public:
    explicit CTextReader(const QString& strHtml) : m_strHtml(strHtml) {}

    QString Read() {
        m_strOut.reserve(qMin(m_strHtml.size() / 2, c_nMaxText));
        while (m_nAt < m_strHtml.size() && m_strOut.size() < c_nMaxText) {
            const QChar c = m_strHtml[m_nAt];
            if (c == u'<')
                Tag();
            else if (c == u'&')
                Entity();
            else
                Put(m_strHtml[m_nAt++]);
        }
        return m_strOut;
    }

private:
    void Put(QChar c) {
        if (c.isSpace() || c.unicode() < 0x20) {
            m_bSpace = true;
            return;
        }
        if (m_bSpace && !m_strOut.isEmpty())
            m_strOut += u' ';
        m_bSpace = false;
        m_strOut += c;
    }

    void SkipTo(QStringView strEnd) {
        const qsizetype nEnd = m_strHtml.indexOf(strEnd, m_nAt, Qt::CaseInsensitive);
        m_nAt = nEnd < 0 ? m_strHtml.size() : nEnd + strEnd.size();
    }

    void Tag() {
        const QStringView rest = QStringView(m_strHtml).mid(m_nAt);
        if (rest.startsWith(u"<!--")) {
            m_nAt += 4;
            return SkipTo(u"-->");
        }
        const bool bEnd = rest.size() > 1 && rest[1] == u'/';
        const qsizetype nName = bEnd ? 2 : 1;
        if (rest.size() <= nName || !(IsNameStart(rest[nName]) || rest[nName] == u'!' || rest[nName] == u'?'))
            return Put(m_strHtml[m_nAt++]);
        qsizetype nNameEnd = nName;
        while (nNameEnd < rest.size() && rest[nNameEnd].isLetterOrNumber())
            ++nNameEnd;
        const QString strName = LowerAscii(rest.mid(nName, nNameEnd - nName).toString());
        m_nAt += nNameEnd;
        SkipAttributes();
        static const QSet<QString> inlines = {
            u"a"_s,   u"b"_s,   u"i"_s,    u"u"_s,     u"s"_s,   u"em"_s,   u"strong"_s, u"span"_s, u"font"_s,
            u"sub"_s, u"sup"_s, u"code"_s, u"small"_s, u"big"_s, u"mark"_s, u"wbr"_s,    u"img"_s};
        m_bSpace = m_bSpace || !inlines.contains(strName);
        if (!bEnd && (strName == "script"_L1 || strName == "style"_L1 || strName == "title"_L1 ||
                      strName == "template"_L1)) {
            SkipTo(QString(u"</"_s + strName));
            SkipAttributes();
        }
    }

    void SkipAttributes() {
        QChar cQuote;
        for (; m_nAt < m_strHtml.size(); ++m_nAt) {
            const QChar c = m_strHtml[m_nAt];
            if (!cQuote.isNull())
                cQuote = c == cQuote ? QChar() : cQuote;
            else if (c == u'"' || c == u'\'')
                cQuote = c;
            else if (c == u'>') {
                ++m_nAt;
                return;
            }
        }
    }

    void Entity() {
        static const QHash<QString, char16_t> names = {
            {u"nbsp"_s, u' '},       {u"lt"_s, u'<'},          {u"gt"_s, u'>'},
            {u"amp"_s, u'&'},        {u"quot"_s, u'"'},        {u"apos"_s, u'\''},
            {u"ldquo"_s, u'\u201c'}, {u"rdquo"_s, u'\u201d'},  {u"lsquo"_s, u'\u2018'},
            {u"rsquo"_s, u'\u2019'}, {u"hellip"_s, u'\u2026'}, {u"mdash"_s, u'\u2014'},
            {u"ndash"_s, u'\u2013'}, {u"middot"_s, u'\u00b7'}, {u"times"_s, u'\u00d7'},
            {u"copy"_s, u'\u00a9'}};
        constexpr qsizetype c_nLongest = 10;
        // Looked for no further than that: in a page without any it would take the square of its length.
        const qsizetype nLength = QStringView(m_strHtml).mid(m_nAt, c_nLongest + 1).indexOf(u';');
        if (nLength < 0)
            return Put(m_strHtml[m_nAt++]);
        const QString strName = m_strHtml.mid(m_nAt + 1, nLength - 1);
        char32_t nCode = names.value(strName);
        if (strName.startsWith(u'#')) {
            const bool bHex = strName.mid(1, 1).toLower() == "x"_L1;
            nCode = strName.mid(bHex ? 2 : 1).toUInt(nullptr, bHex ? 16 : 10);
        }
        if (nCode == 0 || nCode > QChar::LastValidCodePoint || QChar::isSurrogate(nCode))
            return Put(m_strHtml[m_nAt++]);
        m_nAt += nLength + 1;
        for (const char16_t c : QChar::fromUcs4(nCode))
            Put(c);
    }

    const QString& m_strHtml;
    QString m_strOut;
    qsizetype m_nAt = 0;
    bool m_bSpace = false;
};

/// As the script folds what it compares: full-width forms count as plain ones, capitals as small ones.
char16_t Folded(QChar c) {
    if (c.unicode() >= 0xff01 && c.unicode() <= 0xff5e)
        c = QChar(char16_t(c.unicode() - 0xfee0));
    if (c == u'\u0130') // in small letters it is two characters
        return u'i';
    return c.toLower().unicode();
}

/// Beside these a blank is the author's taste ("第 1 章"), and the script finds the words without it, too.
bool IsWide(char16_t c) {
    return c >= 0x2e80;
}

/// A bit for each pair of neighbouring characters that occurs, also across blanks that need not be.
class CFilter {
public:
    void Add(const QString& strText) {
        char16_t cBefore = 0;
        char16_t cInWord = 0;
        for (const QChar c : strText) {
            const char16_t cHere = Folded(c);
            if (cBefore)
                SetPair(cBefore, cHere);
            if (!c.isSpace()) {
                if (cInWord != cBefore && (IsWide(cInWord) || IsWide(cHere)))
                    SetPair(cInWord, cHere);
                cInWord = cHere;
            }
            cBefore = cHere;
        }
    }

    /// As small as it can be while it still tells much: folded while few bits are set.
    QByteArray Bits() const {
        QByteArray bits = m_bits;
        while (quint32(bits.size()) * 8 > c_nLeastFilterBits && CountSet(bits) * 8 <= bits.size() * 8) {
            const qsizetype nHalf = bits.size() / 2;
            for (qsizetype i = 0; i < nHalf; ++i)
                bits[i] = char(bits[i] | bits[i + nHalf]);
            bits.resize(nHalf);
        }
        return bits;
    }

private:
    void SetPair(char16_t cFirst, char16_t cSecond) {
        Set((quint32(cFirst) * 40503u + quint32(cSecond) * 30011u) >> 2);
    }
    void Set(quint32 nHash) {
        const quint32 nBit = nHash % c_nFilterBits;
        m_bits[qsizetype(nBit / 8)] = char(m_bits[qsizetype(nBit / 8)] | (1 << (nBit % 8)));
    }
    static qsizetype CountSet(const QByteArray& bits) {
        qsizetype nCount = 0;
        for (const char c : bits)
            nCount += std::popcount(static_cast<unsigned char>(c));
        return nCount;
    }

    QByteArray m_bits = QByteArray(c_nFilterBits / 8, '\0');
};

void AppendQuoted(QByteArray& out, const QString& strText) {
    const QByteArray text = strText.toUtf8();
    out += '"';
    qsizetype nFrom = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool bQuoted = text[i] == '"' || text[i] == '\\';
        if (!bQuoted && static_cast<unsigned char>(text[i]) >= 0x20)
            continue;
        out.append(text.constData() + nFrom, i - nFrom);
        if (bQuoted)
            out += '\\';
        nFrom = bQuoted ? i : i + 1;
    }
    out.append(text.constData() + nFrom, text.size() - nFrom);
    out += '"';
}

/// None for a file that can't be read or is too large.
QString ReadText(const CSitePlan& plan, const QString& strSource) {
    try {
        const std::optional<QByteArray> bytes = ReadSourceText(plan.Tree().NativePath(strSource));
        return bytes ? PageText::Decode(*bytes).Text : QString();
    } catch (const Torvane::CRunException&) {
        return {};
    }
}

QString FileText(const CSitePlan& plan, const QString& strSource) {
    if (IsPageFile(strSource))
        return PlainText(ReadText(plan, strSource));
    if (LowerAscii(Torvane::File::Extension(strSource)) != ".txt"_L1)
        return {};
    return ReadText(plan, strSource).left(c_nMaxText).simplified();
}

/// What the page calls itself, or its file's name.
QString PageTitle(const QString& strPage, const QString& strSource) {
    constexpr qsizetype c_nLongest = 200;
    static const QRegularExpression title(u"<title[^>]{0,200}>([^<]{1,1000})</title"_s,
                                          QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = title.match(strPage);
    const QString strTitle = match.hasMatch() ? PlainText(match.captured(1)).left(c_nLongest) : QString();
    return strTitle.isEmpty() ? strSource.mid(strSource.lastIndexOf(u'/') + 1) : strTitle;
}

/// The pages around the slides of a presentation repeat what stands on them.
bool IsSlideFrame(const CSitePlan& plan, const QString& strSource) {
    static const QStringList frames = {u"torvaneframe.htm"_s, u"frame.htm"_s, u"fullscreen.htm"_s};
    const QString strFolder = FolderOf(strSource) + u'/';
    return frames.contains(LowerAscii(strSource.mid(strFolder.size()))) &&
           !plan.Tree().FindFile(strFolder + u"pres.xml"_s).isEmpty();
}

/// Below the node's folder. A slide shows in the viewer around it.
QString PageAddress(const CSitePlan& plan, const SitePages& pages, const QString& strSource) {
    const QString& strFirst = plan.Of(pages.Node).Source;
    const QString strName = plan.Tree().OutputName(strSource);
    const QString strFolder = strFirst.section(u'/', 0, 0);
    if (IsSlideFrame(plan, strFirst) && FolderOf(strFirst) == FolderOf(strSource))
        return RelativeAddress(strFolder, plan.Tree().OutputName(strFirst)) + u'#' +
               EncodeAddress(strName.mid(strName.lastIndexOf(u'/') + 1));
    return RelativeAddress(strFolder, strName);
}

/// Whether a node shows pages of its own that lead on to others.
bool ShowsSite(const CSitePlan& plan, int nNode) {
    const NodePlan& node = plan.Of(nNode);
    const StoreRow& row = plan.Model().Nodes()[nNode].Row;
    return node.View == ENodeView::Embedded && row.Type != NodeType::c_nInSiteLink &&
           IsPageFile(node.Source) && node.Source.startsWith(QString(plan.NodeFolder(nNode) + u'/'));
}

const QByteArray c_partBegin = "vorelSearch.part(";
const QByteArray c_pagesBegin = "vorelSearch.pages(";

} // namespace

QString PlainText(const QString& strHtml) {
    return CTextReader(strHtml).Read();
}

QString NodeText(const CSitePlan& plan, int nNode, const QString& strPage) {
    const NodePlan& node = plan.Of(nNode);
    const StoreRow& row = plan.Model().Nodes()[nNode].Row;
    switch (node.View) {
    case ENodeView::Page:
        if (node.PagePath.isEmpty())
            return {}; // a link to a page that is found by itself
        return strPage.isEmpty() ? FileText(plan, node.Source) : PlainText(strPage);
    case ENodeView::Embedded:
        return FileText(plan, node.Source);
    case ENodeView::Address:
        return node.Source;
    case ENodeView::Video: {
        QStringList names;
        ReadOutline(Platform::FromNative(plan.Tree().NativePath(node.Source)) + OutlineFileBelow(), names);
        return names.join(u' ');
    }
    case ENodeView::Picture:
    case ENodeView::Player:
    case ENodeView::Download:
        return QString(row.FileName + u' ' + row.Comment).simplified();
    default:
        return {};
    }
}

int PartCount(const CSitePlan& plan) {
    return int((plan.Model().Nodes().size() + c_nNodesInPart - 1) / c_nNodesInPart);
}

QString PartName(int nPart) {
    return FrameParts::c_strSearchFolder + u'/' + QString::number(nPart) + u".js"_s;
}

QString IndexName() {
    return FrameParts::c_strSearchFolder + u"/index.js"_s;
}

QByteArray Part(const CSitePlan& plan, int nPart, const QStringList& texts) {
    CFilter filter;
    QByteArray list;
    for (qsizetype i = 0; i < texts.size(); ++i) {
        filter.Add(plan.Model().Nodes()[nPart * c_nNodesInPart + i].Row.Title);
        filter.Add(texts[i]);
        list += i ? ",\n" : "";
        AppendQuoted(list, texts[i]);
    }
    return c_partBegin + QByteArray::number(nPart) + ",\"" + filter.Bits().toBase64() + "\",[\n" + list +
           "\n]);\n";
}

QList<SitePages> PagesOfSites(const CSitePlan& plan, QList<int>& cut) {
    QList<SitePages> all;
    for (int i = 0; i < plan.Model().Nodes().size(); ++i) {
        if (!ShowsSite(plan, i))
            continue;
        const QString& strFirst = plan.Of(i).Source;
        const QString strName = FrameParts::c_strSearchFolder + u"/n"_s +
                                QString::number(plan.Model().Nodes()[i].Row.Id) + u"-"_s;
        qint64 nBytes = 0;
        qint64 nPartBegin = -c_nBytesInPart;
        qsizetype nPages = 0;
        int nParts = 0;
        for (const QString& strSource : plan.Tree().FilesBelow(FolderOf(strFirst))) {
            if (strSource == strFirst || !IsPageFile(strSource) || plan.IsFramedPage(strSource) ||
                IsSlideFrame(plan, strSource))
                continue;
            if (nBytes >= c_nBytesOfSite || nPages >= c_nPagesOfSite) {
                cut.append(i);
                break;
            }
            if (nBytes - nPartBegin >= c_nBytesInPart) {
                all.append({i, strName + QString::number(nParts++) + u".js"_s, {}});
                nPartBegin = nBytes;
            }
            all.last().Sources.append(strSource);
            nBytes += plan.Tree().StateOf(strSource).nSize;
            ++nPages;
        }
    }
    return all;
}

QByteArray PagesPart(const CSitePlan& plan, const SitePages& pages) {
    CFilter filter;
    QByteArray list;
    for (const QString& strSource : pages.Sources) {
        const QString strPage = ReadText(plan, strSource);
        const QString strTitle = PageTitle(strPage, strSource);
        const QString strText = PlainText(strPage);
        if (strText.isEmpty())
            continue;
        filter.Add(strTitle);
        filter.Add(strText);
        list += list.isEmpty() ? "[" : ",\n[";
        AppendQuoted(list, PageAddress(plan, pages, strSource));
        list += ',';
        AppendQuoted(list, strTitle);
        list += ',';
        AppendQuoted(list, strText);
        list += ']';
    }
    return c_pagesBegin + '"' + filter.Bits().toBase64() + "\",[\n" + list + "\n]);\n";
}

QByteArray FilterOf(const QByteArray& part) {
    const qsizetype nBegin = part.indexOf('"') + 1;
    const qsizetype nEnd = part.indexOf('"', nBegin);
    if (!(part.startsWith(c_partBegin) || part.startsWith(c_pagesBegin)) || nBegin == 0 || nEnd < 0)
        return {};
    return part.mid(nBegin, nEnd - nBegin);
}

QByteArray Index(const CSitePlan& plan, const QList<SitePages>& sites, const QList<QByteArray>& filters) {
    QByteArray out = "vorelSearch.course({size:" + QByteArray::number(c_nNodesInPart) + ",nodes:[\n";
    const QList<SiteNode>& nodes = plan.Model().Nodes();
    for (int i = 0; i < nodes.size(); ++i) {
        const NodePlan& node = plan.Of(i);
        out += i ? ",\n[" : "[";
        AppendQuoted(out, nodes[i].Row.Title);
        out += ',';
        const QString strFragment = node.PagePath.isEmpty() ? node.Fragment : QString();
        AppendQuoted(out,
                     node.TargetIsAddress ? node.Target : RelativeAddress({}, node.Target) + strFragment);
        out += ',' + QByteArray::number(nodes[i].Parent) + ',' + QByteArray::number(node.OpenType) + ']';
    }
    out += "\n],filters:[\n";
    const int nParts = PartCount(plan);
    for (int i = 0; i < nParts; ++i)
        out += (i ? ",\n\"" : "\"") + filters[i] + '"';
    out += "\n],sites:[\n";
    for (int i = 0; i < sites.size(); ++i) {
        const QString strFile = sites[i].Name.mid(FrameParts::c_strSearchFolder.size() + 1);
        out += (i ? ",\n[\"" : "[\"") + strFile.toUtf8() + "\"," + QByteArray::number(sites[i].Node) + ",\"" +
               filters[nParts + i] + "\"]";
    }
    return out + "\n]});\n";
}

} // namespace SearchIndex
