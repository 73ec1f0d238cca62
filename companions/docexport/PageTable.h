#pragma once

#include <QByteArray>
#include <QList>

#include <gumbo.h>

#include <functional>

/// A table of a page, taken apart. The nodes belong to the page's tree.
struct PageTable {
    struct Cell {
        const GumboNode* Node = nullptr;
        int Column = 0;
        int ColumnSpan = 1;
        int RowSpan = 1;
        bool IsHeader = false;
    };
    struct Row {
        QList<Cell> Cells;
    };

    const GumboNode* Caption = nullptr;
    QList<Row> Rows;
    /// How many rows at the top are headings of columns.
    int HeaderRows = 0;
    /// It only puts things beside each other, and has nothing to do with rows and columns.
    bool IsLayout = false;
    /// How much of the width each column has, in percent.
    QList<double> Shares;
    /// How small its text must be for the columns to find room on a sheet.
    enum class EText { Normal, Small, Smallest };
    EText Text = EText::Normal;

    double ShareOf(const Cell& cell) const;
};

/// How wide a picture (an img element) would like to stand, in pixels of 1/96 inch; 0 for none.
using PictureWidth = std::function<int(const GumboElement& picture)>;

PageTable ReadTable(const GumboNode* pTable, const PictureWidth& widthOfPicture);

/// "center" or "right" for what stands so in the cell, by the cell, its row, or the paragraph in it.
QByteArray CellAlignment(const GumboNode* pCell);
