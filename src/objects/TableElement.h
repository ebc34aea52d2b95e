#pragma once

#include "objects/TableGrid.h"
#include "platform/HtmlElement.h"

#include <QList>

// A table of the page seen through its rows and cells: the counts the row
// and column commands go by, the engine's own insert and delete of rows
// and cells, the snapshot the grid is built from and the grid's changes
// carried out in the page. Each is one round trip to the page.
class TableElement
{
public:
    explicit TableElement(const HtmlElement &table) : m_table(table) {}

    const HtmlElement &Element() const { return m_table; }

    // cells.length of each row, in the order of the table's rows.
    QList<long> CellCounts() const;
    // A new row right above or below the row at the index, in that row's
    // own section, with the given number of cells, each holding a
    // non-breaking space and of the kind (th or td) of the cell at its
    // place in that row; gives the row.
    HtmlElement InsertRowBeside(long rowIndex, bool below, long cells);
    // A new cell holding a non-breaking space in the row, at the position
    // (-1 at its end), of the kind of the row's cell at index beside as it
    // stood before (-1 or past the end: the row's last cell).
    HtmlElement InsertCell(long rowIndex, long position, long beside);
    bool DeleteRow(long rowIndex);
    bool DeleteCell(long rowIndex, long cellIndex);

    enum Direction { Right, Left, Down };
    // Whether the cell can take in its neighbour that way, and the merge
    // itself, done over the grid of the table as it now stands.
    bool CanMerge(const HtmlElement &cell, Direction direction) const;
    bool Merge(const HtmlElement &cell, Direction direction);

    QList<TableGrid::SectionIn> Snapshot() const;
    // Carries the grid's changes out on the cells and rows of the page.
    bool Apply(const QList<TableGrid::Change> &changes);

private:
    QVariant Run(const QString &body, const QVariantList &args, const QString &position) const;

    HtmlElement m_table;
};
