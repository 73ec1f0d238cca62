#include "companions/docexport/PageTable.h"

#include "companions/docexport/TextLine.h"
#include "foundation/HtmlTree.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;
using namespace HtmlTree;

namespace {

/// More than a word processor's tables have.
constexpr int c_nMaxColumns = 60;
constexpr int c_nMaxRows = 10000;
/// In characters of Latin script: how many the sheet's width holds, how many of them a column has at least,
/// and for how many one may rather break its lines. What a short column needs it gets in full.
constexpr int c_nSheet = 75;
constexpr int c_nNarrowest = 6;
constexpr int c_nWidest = 60;
constexpr int c_nShort = 16;
constexpr int c_nMargins = 4;

class CTableReader {
public:
    PageTable Read(const GumboNode* pTable) {
        Collect(pTable, false);
        FindPlaces();
        m_table.IsLayout = m_nColumns < 2 || m_nColumns > c_nMaxColumns || m_table.Rows.size() > c_nMaxRows ||
                           HoldsLayout(pTable);
        while (m_table.HeaderRows + 1 < m_table.Rows.size() && IsHeaderRow(m_table.Rows[m_table.HeaderRows]))
            ++m_table.HeaderRows;
        if (m_table.HeaderRows >= m_table.Rows.size())
            m_table.HeaderRows = 0;
        if (!m_table.IsLayout)
            FindShares();
        return m_table;
    }

private:
    static const GumboNode* ChildAt(const GumboNode* pNode, unsigned i) {
        return static_cast<const GumboNode*>(pNode->v.element.children.data[i]);
    }

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
            if (!cell.IsHeader || cell.RowSpan > 1)
                return false;
        }
        return true;
    }

    /// Tables within, headings, or pictures without borders around them.
    static bool HoldsLayout(const GumboNode* pTable) {
        const GumboElement& table = pTable->v.element;
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

    static int Percent(const GumboNode* pNode) {
        const QString strStyle = StyleValue(pNode->v.element, u"width"_s);
        const QString strWidth =
            strStyle.isEmpty() ? QString::fromUtf8(AttributeValue(pNode->v.element, "width")) : strStyle;
        return strWidth.endsWith(u'%') ? qBound(0, int(strWidth.chopped(1).toDouble()), 100) : 0;
    }

    static int LengthOf(const GumboNode* pCell) {
        int nLongest = 0;
        int nLine = 0;
        for (const QChar c : TextBelow(pCell)) {
            nLine = c == u'\n' ? 0 : nLine + (c.unicode() >= 0x2e80 ? 2 : 1);
            nLongest = qMax(nLongest, nLine);
        }
        return nLongest;
    }

    /// As the page says it, else by what has to stand in the columns.
    void FindShares() {
        QList<double> said(m_nColumns, 0);
        QList<double> needed(m_nColumns, c_nNarrowest);
        for (const PageTable::Row& row : m_table.Rows) {
            for (const PageTable::Cell& cell : row.Cells) {
                if (cell.ColumnSpan != 1)
                    continue;
                said[cell.Column] = qMax(said[cell.Column], double(Percent(cell.Node)));
                needed[cell.Column] =
                    qMax(needed[cell.Column], double(qMin(LengthOf(cell.Node) + c_nMargins, c_nWidest)));
            }
        }
        if (said.contains(0))
            said = Fitted(needed);
        const double dSum = std::accumulate(said.begin(), said.end(), 0.0);
        for (const double dWeight : said)
            m_table.Shares.append(qMax(1, int(dWeight * 100 / dSum)));
        // What the rounding leaves goes where it is seen least.
        QList<int>& shares = m_table.Shares;
        *std::max_element(shares.begin(), shares.end()) +=
            qMax(0, 100 - std::accumulate(shares.begin(), shares.end(), 0));
    }

    /// Widths that don't take their room from short columns.
    static QList<double> Fitted(QList<double> needed) {
        double dShort = 0;
        double dLong = 0;
        for (const double dNeed : needed)
            (dNeed <= c_nShort ? dShort : dLong) += dNeed;
        const double dRoom = c_nSheet - dShort;
        if (dLong <= dRoom || dRoom < c_nSheet / 3.0)
            return needed;
        for (double& dNeed : needed) {
            if (dNeed > c_nShort)
                dNeed *= dRoom / dLong;
        }
        return needed;
    }

    PageTable m_table;
    int m_nColumns = 0;
};

} // namespace

int PageTable::ShareOf(const Cell& cell) const {
    int nShare = 0;
    for (int i = cell.Column; i < qMin(cell.Column + cell.ColumnSpan, int(Shares.size())); ++i)
        nShare += Shares[i];
    return nShare;
}

PageTable ReadTable(const GumboNode* pTable) {
    return CTableReader().Read(pTable);
}
