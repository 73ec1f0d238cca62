#include "companions/docexport/PageTable.h"

#include "companions/docexport/TextLine.h"
#include "foundation/HtmlTree.h"

#include <algorithm>
#include <array>
#include <numeric>

using namespace Qt::StringLiterals;
using namespace HtmlTree;

namespace {

/// More than a word processor's tables have.
constexpr int c_nMaxColumns = 60;
constexpr int c_nMaxRows = 10000;
/// In characters of Latin script: how many the sheet's width holds in texts of each size, and for how many a
/// column may rather break its lines.
constexpr std::array<double, 3> c_rooms = {86, 100, 120};
constexpr int c_nWidest = 60;
/// The styles of the texts draw those of the smallest narrower.
constexpr std::array<double, 3> c_margins = {3, 3, 1};
constexpr int c_nShortest = 2;
/// A short text had better stay in one line, and longer words may be broken.
constexpr int c_nShort = 8;
constexpr int c_nLongestWord = 20;
/// Of a character, and what a picture takes at least unless it is smaller.
constexpr double c_dPixels = 7;
constexpr double c_dLeastPicture = 18;

int WidthOf(QChar c) {
    return c.unicode() >= 0x2e80 ? 2 : 1;
}

class CTableReader {
public:
    explicit CTableReader(const PictureWidth& widthOfPicture) : m_widthOfPicture(widthOfPicture) {}

    PageTable Read(const GumboNode* pTable) {
        Collect(pTable, false);
        FindPlaces();
        // One cell with a border is a frame around something that is to be seen.
        const int nLeastColumns = AttributeValue(pTable->v.element, "border").toInt() > 0 ? 1 : 2;
        m_table.IsLayout = m_nColumns < nLeastColumns || m_nColumns > c_nMaxColumns ||
                           m_table.Rows.size() > c_nMaxRows || HoldsLayout(pTable);
        // As many as no cell reaches out of.
        qsizetype nReach = m_table.HeaderRows;
        for (qsizetype i = m_table.HeaderRows; i + 1 < m_table.Rows.size() && IsHeaderRow(m_table.Rows[i]);
             ++i) {
            for (const PageTable::Cell& cell : m_table.Rows[i].Cells)
                nReach = qMax(nReach, i + cell.RowSpan);
            if (nReach == i + 1)
                m_table.HeaderRows = int(nReach);
        }
        if (m_table.HeaderRows >= m_table.Rows.size())
            m_table.HeaderRows = 0;
        if (!m_table.IsLayout)
            FindShares();
        return m_table;
    }

private:
    void Collect(const GumboNode* pPart, bool bHead) {
        for (unsigned i = 0; i < pPart->v.element.children.length; ++i) {
            const GumboNode* pChild = ChildAt(pPart, i);
            if (!IsElement(pChild))
                continue;
            const QByteArray name = TagName(pChild->v.element);
            if (name == "caption" && !m_table.Caption)
                m_table.Caption = pChild;
            else if (name == "thead" || name == "tbody" || name == "tfoot")
                Collect(pChild, name == "thead" && m_table.Rows.isEmpty());
            else if (name == "tr")
                TakeRow(pChild, bHead);
        }
    }

    void TakeRow(const GumboNode* pRow, bool bHead) {
        PageTable::Row row;
        for (unsigned i = 0; i < pRow->v.element.children.length; ++i) {
            const GumboNode* pCell = ChildAt(pRow, i);
            if (!IsElement(pCell))
                continue;
            const GumboElement& element = pCell->v.element;
            row.Cells.append({pCell, 0, qBound(1, AttributeValue(element, "colspan").toInt(), c_nMaxColumns),
                              qBound(1, AttributeValue(element, "rowspan").toInt(), c_nMaxRows),
                              element.tag == GUMBO_TAG_TH});
        }
        if (row.Cells.isEmpty())
            return;
        m_table.Rows.append(row);
        if (bHead)
            m_table.HeaderRows = int(m_table.Rows.size());
    }

    /// A cell stands in the first column that no cell from above reaches into.
    void FindPlaces() {
        QList<int> taken;
        for (qsizetype nRow = 0; nRow < m_table.Rows.size(); ++nRow) {
            int nColumn = 0;
            for (PageTable::Cell& cell : m_table.Rows[nRow].Cells) {
                cell.RowSpan = qMin(cell.RowSpan, int(m_table.Rows.size() - nRow));
                while (nColumn < taken.size() && taken[nColumn] > 0)
                    ++nColumn;
                cell.Column = nColumn;
                nColumn += cell.ColumnSpan;
                if (taken.size() < nColumn)
                    taken.resize(nColumn);
                for (int i = cell.Column; i < nColumn; ++i)
                    taken[i] = qMax(taken[i], cell.RowSpan);
                if (nColumn > c_nMaxColumns)
                    break;
            }
            for (int& nRows : taken)
                nRows = qMax(0, nRows - 1);
        }
        m_nColumns = int(taken.size());
    }

    static bool IsHeaderRow(const PageTable::Row& row) {
        for (const PageTable::Cell& cell : row.Cells) {
            if (!cell.IsHeader)
                return false;
        }
        return true;
    }

    /// It says so, or holds tables, headings, or pictures without borders around them.
    static bool HoldsLayout(const GumboNode* pTable) {
        const GumboElement& table = pTable->v.element;
        const QByteArray role = AttributeValue(table, "role").trimmed().toLower();
        if (role == "presentation" || role == "none")
            return true;
        const bool bBordered = AttributeValue(table, "border").toInt() > 0 ||
                               AttributeValue(table, "style").contains("border") ||
                               !AttributeValue(table, "class").isEmpty();
        bool bLayout = false;
        ForEachElement(pTable, [&](const GumboNode* pNode) {
            const GumboTag tag = pNode->v.element.tag;
            bLayout = bLayout || (tag == GUMBO_TAG_TABLE && pNode != pTable) ||
                      (tag >= GUMBO_TAG_H1 && tag <= GUMBO_TAG_H6) || (tag == GUMBO_TAG_IMG && !bBordered);
        });
        return bLayout;
    }

    struct Said {
        double Percent = 0;
        double Pixels = 0;
    };
    static Said WidthSaid(const GumboNode* pNode) {
        const QString strStyle = StyleValue(pNode->v.element, u"width"_s);
        QString strWidth = strStyle.isEmpty() ? AttributeText(pNode->v.element, "width") : strStyle;
        if (strWidth.endsWith(u'%'))
            return {qBound(0.0, strWidth.chopped(1).toDouble(), 100.0), 0};
        if (strWidth.endsWith("px"_L1) || strWidth.endsWith("pt"_L1))
            strWidth.chop(2);
        return {0, qBound(0.0, strWidth.toDouble(), 10000.0)};
    }

    /// What a column takes for its longest word, for short texts to stay in a line, and for all to do so.
    struct Need {
        double Word = c_nShortest;
        double Short = c_nShortest;
        double All = c_nShortest;
        double Picture = 0;

        void Take(const QString& strText) {
            int nLine = 0;
            int nWord = 0;
            const auto endLine = [&] {
                All = qMax(All, double(qMin(nLine, c_nWidest)));
                Short = qMax(Short, double(qMin(nLine, c_nShort)));
                nLine = nWord = 0;
            };
            for (const QChar c : strText) {
                if (c == u'\n') {
                    endLine();
                    continue;
                }
                nLine += WidthOf(c);
                nWord = WidthOf(c) > 1 || c.isSpace() ? 0 : nWord + 1;
                Word = qMax(Word, double(qMin(nWord, c_nLongestWord)));
            }
            endLine();
            Short = qMax(Short, Word);
        }
    };

    /// As the page says it, else by what has to stand in the columns.
    void FindShares() {
        QList<Said> said(m_nColumns);
        QList<Need> needs(m_nColumns);
        for (const PageTable::Row& row : m_table.Rows) {
            for (const PageTable::Cell& cell : row.Cells) {
                if (cell.ColumnSpan != 1)
                    continue;
                const Said width = WidthSaid(cell.Node);
                said[cell.Column].Percent = qMax(said[cell.Column].Percent, width.Percent);
                said[cell.Column].Pixels = qMax(said[cell.Column].Pixels, width.Pixels);
                needs[cell.Column].Take(TextBelow(cell.Node).trimmed());
                ForEachElement(cell.Node, [&](const GumboNode* pNode) {
                    if (pNode->v.element.tag == GUMBO_TAG_IMG)
                        needs[cell.Column].Picture =
                            qMax(needs[cell.Column].Picture, m_widthOfPicture(pNode->v.element) / c_dPixels);
                });
            }
        }
        QList<double> widths = Fitted(needs);
        for (double Said::*unit : {&Said::Pixels, &Said::Percent}) {
            if (std::all_of(said.begin(), said.end(), [&](const Said& width) { return width.*unit > 0; }))
                std::transform(said.begin(), said.end(), widths.begin(),
                               [&](const Said& width) { return width.*unit; });
        }
        const double dSum = Sum(widths);
        for (const double dWidth : widths)
            m_table.Shares.append(dWidth * 100 / dSum);
    }

    static double Sum(const QList<double>& widths) {
        return std::accumulate(widths.begin(), widths.end(), 0.0);
    }
    /// Widths between two, as the room allows.
    static QList<double> Between(const QList<double>& least, const QList<double>& most, double dRoom) {
        const double dWish = Sum(most) - Sum(least);
        const double dPart = dWish > 0 ? qBound(0.0, (dRoom - Sum(least)) / dWish, 1.0) : 1;
        QList<double> widths;
        for (qsizetype i = 0; i < least.size(); ++i)
            widths.append(least[i] + (most[i] - least[i]) * dPart);
        return widths;
    }

    /// Words are not broken where smaller text can help, and short texts only where there is no room.
    QList<double> Fitted(const QList<Need>& needs) {
        const auto sum = [&](double Need::*part, size_t nSize) {
            double dSum = 0;
            for (const Need& need : needs)
                dSum += need.*part + c_margins[nSize];
            return dSum;
        };
        size_t nSize = 0;
        while (nSize + 1 < c_rooms.size() && sum(&Need::Word, nSize) > c_rooms[nSize])
            ++nSize;
        if (nSize == 0 && sum(&Need::Short, 0) > c_rooms[0])
            nSize = 1;
        m_table.Text = PageTable::EText(nSize);
        const double dRoom = c_rooms[nSize];
        QList<double> words, shorts, all;
        for (const Need& need : needs) {
            // Pictures take what is free beside the words: they are made smaller, but not to thumbnails.
            const double dLeast = qMax(need.Word, qMin(need.Picture, c_dLeastPicture));
            words.append(dLeast + c_margins[nSize]);
            shorts.append(qMax(need.Short, dLeast) + c_margins[nSize]);
            all.append(qMax(need.All, qMin(need.Picture, double(c_nWidest))) + c_margins[nSize]);
        }
        return Sum(shorts) > dRoom ? Between(words, shorts, dRoom) : Between(shorts, all, dRoom);
    }

    const PictureWidth& m_widthOfPicture;
    PageTable m_table;
    int m_nColumns = 0;
};

} // namespace

double PageTable::ShareOf(const Cell& cell) const {
    double dShare = 0;
    for (int i = cell.Column; i < qMin(cell.Column + cell.ColumnSpan, int(Shares.size())); ++i)
        dShare += Shares[i];
    return dShare;
}

PageTable ReadTable(const GumboNode* pTable, const PictureWidth& widthOfPicture) {
    return CTableReader(widthOfPicture).Read(pTable);
}

QByteArray CellAlignment(const GumboNode* pCell) {
    QByteArray alignment = AlignmentOf(pCell->v.element);
    if (alignment.isEmpty() && IsElement(pCell->parent))
        alignment = AlignmentOf(pCell->parent->v.element);
    for (const GumboNode* pIn = pCell; alignment.isEmpty() && pIn;) {
        const GumboNode* pFirst = nullptr;
        for (unsigned i = 0; i < pIn->v.element.children.length && !pFirst; ++i) {
            if (!IsBlank(ChildAt(pIn, i)))
                pFirst = ChildAt(pIn, i);
        }
        pIn = pFirst && IsElement(pFirst) ? pFirst : nullptr;
        if (pIn)
            alignment = TagName(pIn->v.element) == "center" ? "center" : AlignmentOf(pIn->v.element);
    }
    return alignment == "center" || alignment == "right" ? alignment : QByteArray();
}
