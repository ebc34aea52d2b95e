#pragma once

#include <QList>
#include <QString>

// One square of a table's grid. A square no cell covers (a gap at the end
// of a short row) keeps -1 in every field but its position.
struct TableSquare
{
    long lRow = -1;
    long lCol = -1;
    long lCellIndex = -1; // index of the covering cell in the cells of its own row
    long lUsed = 0;
    long lOriginCol = -1;
    long lOriginRow = -1;
    long lColSpan = -1;
    long lRowSpan = -1;
};

// The grid of a table, built from a snapshot of its sections, rows and
// cells with their spans; no page engine in it. Each cell fills rowspan x
// colspan squares from the first free column of its row, and the spans are
// read the way the engine reads them (colspan 1 to 1000, rowspan 0 to the
// end of the section, none past the section's end).
//
// A table whose cells overlap or whose rows differ in width is taken as it
// is and counted; Normalise then makes it regular (overlapping spans cut
// back, gaps filled with new empty cells) and the merges keep it so: every
// square covered by exactly one cell and every row as wide as the table.
// Changes() lists what the page must do to follow the model.
class TableGrid
{
public:
    struct CellIn
    {
        int id = 0;       // the engine's handle of the cell
        long colSpan = 1; // the spans as the cell's properties give them
        long rowSpan = 1;
    };
    struct RowIn
    {
        int id = 0;
        QList<CellIn> cells;
    };
    using SectionIn = QList<RowIn>;

    // What the page does to follow the model, in this order: joins, new
    // cells (left to right, row by row), spans, removed cells, removed rows.
    struct Change
    {
        enum Kind { Join, InsertCell, SetSpans, RemoveCell, RemoveRow } kind;
        int id = 0;        // the cell or row concerned; a new cell has a negative id
        int other = 0;     // Join: the cell whose content comes in; InsertCell: the row
        int after = 0;     // InsertCell: the cell it follows in its row, 0 for first
        bool before = false; // Join: the content that comes in goes first
        QString separator;   // Join
        long colSpan = 1;
        long rowSpan = 1;
        int like = 0; // InsertCell: the cell it is a part of, whose kind it takes; 0 for none
    };

    static constexpr long MaxColSpan = 1000;
    static constexpr long MaxRowSpan = 65534;

    long SetTableStructure(const QList<SectionIn> &sections);

    int Rows() const { return m_rows.size(); }
    int Width() const { return m_width; }
    const TableSquare &Square(int row, int col) const;
    // Cells whose spans reached over squares already taken, and squares no
    // cell covers, as the snapshot came in.
    int Overlaps() const { return m_overlaps; }
    int Gaps() const;

    // Grid row and column of the top left square of the cell.
    bool GetSqrIndex(int cellId, long &row, long &col) const;

    void Normalise();

    bool CanMergeRight(int cellId) const;
    bool CanMergeLeft(int cellId) const;
    bool CanMergeDown(int cellId) const;
    bool MergeRight(int cellId);
    bool MergeLeft(int cellId);
    bool MergeDown(int cellId);

    // The table as it now stands, in the snapshot's form.
    QList<SectionIn> Layout() const;
    QList<Change> Changes() const;

private:
    struct Placed
    {
        int id = 0;
        int row = 0, col = 0, rowSpan = 1, colSpan = 1;
        long rawCol = 1, rawRow = 1; // as the snapshot gave them; new cells 0
        int like = 0;                // a new cell: the cell it was split from
        bool removed = false;
        int end() const { return col + colSpan; }
        int bottom() const { return row + rowSpan; }
    };
    struct RowInfo
    {
        int id = 0;
        int section = 0;
        bool removed = false;
    };

    void Place();
    int SectionEnd(int row) const;
    Placed *Owner(int row, int col);
    const Placed *Owner(int row, int col) const;
    Placed *Find(int cellId);
    const Placed *Find(int cellId) const;
    const Placed *Neighbour(const Placed &cell, int col) const;
    bool MergeAcross(int cellId, bool toTheRight);
    void AddCell(int row, int col, int rowSpan, int colSpan, int like = 0);
    void Join(Placed &cell, Placed &other, bool otherFirst, const QString &separator);
    void DropEmptyRows();

    QList<RowInfo> m_allRows; // every row of the snapshot, removed ones too
    QList<int> m_rows;        // indexes into m_allRows of the rows still there
    QList<Placed> m_cells;
    QList<Change> m_joins;
    QList<QList<TableSquare>> m_grid;
    int m_width = 0;
    int m_overlaps = 0;
    int m_nextNewId = -1;
};
