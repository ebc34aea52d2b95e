// The grid of a table's cells: spans read as the page engine reads them,
// ragged and overlapping tables made regular, and the merges keeping every
// square covered once on hundreds of generated tables.

#include "objects/TableGrid.h"

#include <QHash>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

using Grid = TableGrid;
using Section = TableGrid::SectionIn;

// Rows of cells given as "colSpan/rowSpan" pairs, ids from 1 in reading
// order, rows numbered from 1001.
QList<Section> table(const QList<QList<QList<std::pair<long, long>>>> &sections)
{
    QList<Section> out;
    int cellId = 1, rowId = 1001;
    for (const auto &section : sections) {
        out.append(Section());
        for (const auto &row : section) {
            TableGrid::RowIn r{rowId++, {}};
            for (auto [cs, rs] : row)
                r.cells.append({cellId++, cs, rs});
            out.last().append(r);
        }
    }
    return out;
}

// Every square covered by exactly one cell, every row as wide as the
// table, and the layout, read afresh, puts each cell where the model has it.
void expectRegular(const Grid &grid, const QString &what)
{
    Grid again;
    again.SetTableStructure(grid.Layout());
    ASSERT_EQ(again.Overlaps(), 0) << what.toStdString();
    ASSERT_EQ(again.Gaps(), 0) << what.toStdString();
    ASSERT_EQ(again.Width(), grid.Width()) << what.toStdString();
    ASSERT_EQ(again.Rows(), grid.Rows()) << what.toStdString();
    long area = 0;
    for (const Section &s : grid.Layout())
        for (const auto &row : s)
            for (const auto &cell : row.cells) {
                area += cell.colSpan * cell.rowSpan;
                long r1, c1, r2, c2;
                ASSERT_TRUE(grid.GetSqrIndex(cell.id, r1, c1));
                ASSERT_TRUE(again.GetSqrIndex(cell.id, r2, c2));
                ASSERT_EQ(std::make_pair(r1, c1), std::make_pair(r2, c2)) << what.toStdString();
            }
    ASSERT_EQ(area, long(grid.Rows()) * grid.Width()) << what.toStdString();
}

int cellAt(const Grid &grid, int row, int col)
{
    const TableSquare &s = grid.Square(row, col);
    const auto layout = grid.Layout();
    int r = 0;
    for (const Section &section : layout)
        for (const auto &rowIn : section)
            if (r++ == s.lOriginRow)
                return rowIn.cells.value(s.lCellIndex).id;
    return 0;
}

} // namespace

TEST(TableGrid, SpansAreReadAsTheEngineReadsThem)
{
    // colspan 0 is 1 and 1001 is 1000; rowspan 0 runs to the end of its
    // section and 9 stops there; the next section starts afresh.
    Grid grid;
    grid.SetTableStructure(table({{{{0, 1}, {1001, 0}}, {{1, 9}}, {}}, {{{1, 1}}}}));
    EXPECT_EQ(grid.Width(), 1001);
    EXPECT_EQ(grid.Square(0, 1).lColSpan, 1000);
    EXPECT_EQ(grid.Square(2, 500).lRowSpan, 3);
    EXPECT_EQ(grid.Square(1, 0).lRowSpan, 2);
    EXPECT_EQ(grid.Square(3, 0).lOriginRow, 3);
    EXPECT_EQ(grid.Square(3, 1).lUsed, 0);

    // A colspan reaching over a square taken from above is cut back there.
    grid.SetTableStructure(table({{{{1, 2}, {1, 1}}, {{1, 1}, {3, 1}}}}));
    EXPECT_EQ(grid.Overlaps(), 0);
    grid.SetTableStructure(table({{{{1, 1}, {1, 2}}, {{2, 1}, {1, 1}}}}));
    EXPECT_EQ(grid.Overlaps(), 1);
    EXPECT_EQ(grid.Square(1, 0).lColSpan, 1);
    EXPECT_EQ(grid.Square(1, 2).lCellIndex, 1);
}

TEST(TableGrid, RaggedRowsAreFilledWithNewCellsAtTheirEnds)
{
    Grid grid;
    grid.SetTableStructure(table({{{{1, 1}, {1, 1}, {1, 1}}, {{1, 1}}, {}}}));
    EXPECT_EQ(grid.Gaps(), 5);
    EXPECT_EQ(grid.Square(1, 1).lCellIndex, -1);
    grid.Normalise();
    expectRegular(grid, QStringLiteral("ragged"));
    const auto changes = grid.Changes();
    ASSERT_EQ(changes.size(), 2);
    EXPECT_EQ(changes[0].kind, TableGrid::Change::InsertCell);
    EXPECT_EQ(changes[0].other, 1002);
    EXPECT_EQ(changes[0].after, 4);
    EXPECT_EQ(changes[0].colSpan, 2);
    EXPECT_EQ(changes[1].other, 1003);
    EXPECT_EQ(changes[1].after, 0);
    EXPECT_EQ(changes[1].colSpan, 3);
}

TEST(TableGrid, PlainMergesJoinTheContent)
{
    Grid grid;
    grid.SetTableStructure(table({{{{1, 1}, {1, 1}}, {{1, 1}, {1, 1}}}}));
    ASSERT_TRUE(grid.MergeRight(1));
    EXPECT_EQ(grid.Square(0, 1).lColSpan, 2);
    auto changes = grid.Changes();
    ASSERT_EQ(changes.size(), 3);
    EXPECT_EQ(changes[0].kind, TableGrid::Change::Join);
    EXPECT_EQ(changes[0].id, 1);
    EXPECT_EQ(changes[0].other, 2);
    EXPECT_TRUE(changes[0].separator.isEmpty());
    EXPECT_EQ(changes[1].kind, TableGrid::Change::SetSpans);
    EXPECT_EQ(changes[2].kind, TableGrid::Change::RemoveCell);

    // Down from the wide cell into a row of two narrower ones: refused.
    EXPECT_FALSE(grid.CanMergeDown(1));
    grid.SetTableStructure(table({{{{1, 1}, {1, 1}}, {{1, 1}, {1, 1}}}}));
    ASSERT_TRUE(grid.MergeDown(1));
    changes = grid.Changes();
    EXPECT_EQ(changes[0].separator, QStringLiteral("<BR>"));
    EXPECT_EQ(grid.Square(1, 0).lRowSpan, 2);
    EXPECT_FALSE(grid.CanMergeDown(1)); // the last row

    // Merging the left one into the right leaves the content in order.
    grid.SetTableStructure(table({{{{1, 1}, {1, 1}}}}));
    ASSERT_TRUE(grid.MergeLeft(2));
    EXPECT_TRUE(grid.Changes()[0].before);
    EXPECT_EQ(cellAt(grid, 0, 0), 2);
}

TEST(TableGrid, MergesAcrossUnevenSpansLeaveNewCellsWhereNeeded)
{
    Grid grid;
    // A cell two rows high can't take a neighbour one row high.
    grid.SetTableStructure(table({{{{1, 2}, {1, 1}}, {{1, 1}}}}));
    EXPECT_FALSE(grid.CanMergeRight(1));
    // The other way round the cell takes the upper row of the tall one, whose
    // lower row becomes a new empty cell.
    ASSERT_TRUE(grid.MergeLeft(2));
    expectRegular(grid, QStringLiteral("left into a tall cell"));
    EXPECT_LT(cellAt(grid, 1, 0), 0);

    // One row high into three rows high: the neighbour's lower two rows
    // become a new empty cell in the next row.
    grid.SetTableStructure(table({{{{1, 1}, {1, 3}}, {{1, 1}}, {{1, 1}}}}));
    ASSERT_TRUE(grid.MergeRight(1));
    expectRegular(grid, QStringLiteral("right into a tall cell"));
    EXPECT_LT(cellAt(grid, 1, 1), 0);
    EXPECT_EQ(grid.Square(1, 1).lRowSpan, 2);
    EXPECT_EQ(grid.Square(1, 1).lOriginRow, 1);

    // Down into a wider cell that starts further left: it keeps its left
    // part and its content, a new empty cell takes the columns right of
    // the cell.
    grid.SetTableStructure(table({{{{1, 1}, {1, 1}, {1, 1}}, {{3, 1}}}}));
    ASSERT_TRUE(grid.MergeDown(2));
    expectRegular(grid, QStringLiteral("down into a wider cell"));
    EXPECT_EQ(cellAt(grid, 1, 0), 4);
    EXPECT_EQ(grid.Square(1, 0).lColSpan, 1);
    EXPECT_LT(cellAt(grid, 1, 2), 0);
    for (const auto &c : grid.Changes())
        EXPECT_NE(c.kind, TableGrid::Change::Join);

    // A row left with no cell of its own goes, and the spans through it
    // shrink.
    grid.SetTableStructure(table({{{{1, 1}}, {{1, 1}}}}));
    ASSERT_TRUE(grid.MergeDown(1));
    EXPECT_EQ(grid.Rows(), 1);
    EXPECT_EQ(grid.Square(0, 0).lRowSpan, 1);
    EXPECT_EQ(grid.Changes().last().kind, TableGrid::Change::RemoveRow);
    EXPECT_EQ(grid.Changes().last().id, 1002);
}

// Generated tables with every kind of span, out-of-range ones too, made
// regular and then merged at random until nothing more merges.
TEST(TableGrid, EveryTableStaysRegularThroughRandomMerges)
{
    QRandomGenerator random(20261124);
    const long colSpans[] = {1, 1, 1, 2, 3, 0, -2, 1001};
    const long rowSpans[] = {1, 1, 1, 2, 3, 0, -1, 70000};
    int merges = 0;
    for (int n = 0; n < 200; ++n) {
        QList<Section> sections;
        int cellId = 1, rowId = 100000;
        for (int s = 0, count = random.bounded(1, 4); s < count; ++s) {
            sections.append(Section());
            for (int r = 0, rows = random.bounded(1, 6); r < rows; ++r) {
                TableGrid::RowIn row{rowId++, {}};
                for (int c = 0, cells = random.bounded(0, 6); c < cells; ++c)
                    row.cells.append({cellId++, random.bounded(60) ? colSpans[random.bounded(7)] : colSpans[7],
                                      rowSpans[random.bounded(8)]});
                sections.last().append(row);
            }
        }
        Grid grid;
        grid.SetTableStructure(sections);
        grid.Normalise();
        QString name = QStringLiteral("table %1:").arg(n);
        for (const Section &s : sections) {
            name += QStringLiteral(" |");
            for (const auto &row : s) {
                name += QStringLiteral(" [");
                for (const auto &c : row.cells)
                    name += QStringLiteral(" %1/%2").arg(c.colSpan).arg(c.rowSpan);
                name += QStringLiteral("]");
            }
        }
        expectRegular(grid, name);
        // Content comes along: a cell goes only by a join into one that
        // stays, or where it kept no square (split parts keep theirs).
        QHash<int, int> joinedInto;
        for (int step = 0; step < 30; ++step) {
            const auto layout = grid.Layout();
            QList<int> ids;
            for (const Section &s : layout)
                for (const auto &row : s)
                    for (const auto &cell : row.cells)
                        ids.append(cell.id);
            if (ids.isEmpty())
                break;
            const int id = ids[random.bounded(int(ids.size()))];
            const int kind = random.bounded(3);
            const bool can = kind == 0 ? grid.CanMergeRight(id) : kind == 1 ? grid.CanMergeLeft(id) : grid.CanMergeDown(id);
            const bool did = kind == 0 ? grid.MergeRight(id) : kind == 1 ? grid.MergeLeft(id) : grid.MergeDown(id);
            ASSERT_EQ(can, did) << name.toStdString();
            merges += did;
            expectRegular(grid, name + QStringLiteral(" step %1").arg(step));
        }
        for (const auto &c : grid.Changes())
            if (c.kind == TableGrid::Change::Join)
                joinedInto.insert(c.other, c.id);
        for (const auto &c : grid.Changes())
            if (c.kind == TableGrid::Change::RemoveCell) {
                EXPECT_TRUE(joinedInto.contains(c.id)) << name.toStdString();
            }
    }
    EXPECT_GT(merges, 1000);
}
