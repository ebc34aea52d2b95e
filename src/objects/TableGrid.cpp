#include "objects/TableGrid.h"

#include <algorithm>

namespace {

// A colspan of 0 or less is 1, as the engine reads it.
long EngineColSpan(long raw)
{
    return std::clamp(raw, 1L, TableGrid::MaxColSpan);
}

// A rowspan of 0 runs to the end of the section; below 0 it is 1; none
// reaches past the end of its section.
long EngineRowSpan(long raw, int row, int sectionEnd)
{
    const long left = sectionEnd - row;
    if (raw == 0)
        return left;
    return std::min(std::clamp(raw, 1L, TableGrid::MaxRowSpan), left);
}

} // namespace

// The engine's own placing: each cell goes to the first free column of its
// row at or after the last cell's end. A colspan that would reach over a
// square taken from above is cut back there and counted as an overlap.
long TableGrid::SetTableStructure(const QList<SectionIn> &sections)
{
    m_allRows.clear();
    m_rows.clear();
    m_cells.clear();
    m_joins.clear();
    m_overlaps = 0;
    m_nextNewId = -1;
    for (int s = 0; s < sections.size(); ++s)
        for (const RowIn &row : sections[s]) {
            m_rows.append(m_allRows.size());
            m_allRows.append({row.id, s, false});
        }
    QList<QList<bool>> taken(m_rows.size());
    auto isTaken = [&](int r, int c) { return c < taken[r].size() && taken[r][c]; };
    int r = 0;
    for (const SectionIn &section : sections)
        for (const RowIn &row : section) {
            const int end = SectionEnd(r);
            int cursor = 0;
            for (const CellIn &cell : row.cells) {
                while (isTaken(r, cursor))
                    ++cursor;
                Placed p;
                p.id = cell.id;
                p.row = r;
                p.col = cursor;
                p.rawCol = EngineColSpan(cell.colSpan);
                p.rawRow = EngineRowSpan(cell.rowSpan, r, end);
                int span = 0;
                while (span < p.rawCol && !isTaken(r, cursor + span))
                    ++span;
                if (span < p.rawCol)
                    ++m_overlaps;
                p.colSpan = span;
                p.rowSpan = int(p.rawRow);
                for (int y = r; y < p.bottom(); ++y) {
                    if (taken[y].size() < p.end())
                        taken[y].resize(p.end());
                    for (int x = p.col; x < p.end(); ++x)
                        taken[y][x] = true;
                }
                m_cells.append(p);
                cursor = p.end();
            }
            ++r;
        }
    Place();
    return 1;
}

int TableGrid::SectionEnd(int row) const
{
    const int section = m_allRows[m_rows[row]].section;
    int end = row;
    while (end < m_rows.size() && m_allRows[m_rows[end]].section == section)
        ++end;
    return end;
}

// The squares from the cells' places; the index of a cell in its row is
// its rank among the cells that start in that row.
void TableGrid::Place()
{
    m_width = 0;
    for (const Placed &p : m_cells)
        if (!p.removed)
            m_width = std::max(m_width, p.end());
    m_grid = QList<QList<TableSquare>>(m_rows.size(), QList<TableSquare>(m_width));
    for (int r = 0; r < m_rows.size(); ++r)
        for (int c = 0; c < m_width; ++c) {
            m_grid[r][c].lRow = r;
            m_grid[r][c].lCol = c;
        }
    for (int i = 0; i < m_cells.size(); ++i) {
        const Placed &p = m_cells[i];
        if (p.removed)
            continue;
        int k = 0;
        for (const Placed &q : m_cells)
            if (!q.removed && q.row == p.row && q.col < p.col)
                ++k;
        for (int y = p.row; y < p.bottom(); ++y)
            for (int x = p.col; x < p.end(); ++x) {
                TableSquare &s = m_grid[y][x];
                s.lCellIndex = k;
                s.lUsed = 1;
                s.lOriginRow = p.row;
                s.lOriginCol = p.col;
                s.lColSpan = p.colSpan;
                s.lRowSpan = p.rowSpan;
            }
    }
}

const TableSquare &TableGrid::Square(int row, int col) const
{
    static const TableSquare outside;
    if (row < 0 || row >= m_grid.size() || col < 0 || col >= m_width)
        return outside;
    return m_grid[row][col];
}

int TableGrid::Gaps() const
{
    int gaps = 0;
    for (const auto &row : m_grid)
        for (const TableSquare &s : row)
            gaps += s.lUsed ? 0 : 1;
    return gaps;
}

TableGrid::Placed *TableGrid::Find(int cellId)
{
    for (Placed &p : m_cells)
        if (!p.removed && p.id == cellId)
            return &p;
    return nullptr;
}

const TableGrid::Placed *TableGrid::Find(int cellId) const
{
    return const_cast<TableGrid *>(this)->Find(cellId);
}

TableGrid::Placed *TableGrid::Owner(int row, int col)
{
    for (Placed &p : m_cells)
        if (!p.removed && row >= p.row && row < p.bottom() && col >= p.col && col < p.end())
            return &p;
    return nullptr;
}

const TableGrid::Placed *TableGrid::Owner(int row, int col) const
{
    return const_cast<TableGrid *>(this)->Owner(row, col);
}

bool TableGrid::GetSqrIndex(int cellId, long &row, long &col) const
{
    const Placed *p = Find(cellId);
    if (!p)
        return false;
    row = p->row;
    col = p->col;
    return true;
}

// Each run of squares no cell covers in a row gets one new empty cell, no
// wider than a cell can be.
void TableGrid::Normalise()
{
    bool added = false;
    for (int r = 0; r < m_rows.size(); ++r)
        for (int c = 0; c < m_width; ++c) {
            if (m_grid[r][c].lUsed)
                continue;
            int end = c;
            while (end < m_width && end - c < MaxColSpan && !m_grid[r][end].lUsed)
                ++end;
            AddCell(r, c, 1, end - c);
            added = true;
            c = end - 1;
        }
    if (added)
        Place();
}

void TableGrid::AddCell(int row, int col, int rowSpan, int colSpan, int like)
{
    Placed p;
    p.id = m_nextNewId--;
    p.row = row;
    p.col = col;
    p.rowSpan = rowSpan;
    p.colSpan = colSpan;
    p.rawCol = p.rawRow = 0;
    p.like = like;
    m_cells.append(p);
}

// The neighbour across the given column, if it covers every row the cell
// covers: only then can the two become one rectangle.
const TableGrid::Placed *TableGrid::Neighbour(const Placed &cell, int col) const
{
    if (col < 0 || col >= m_width)
        return nullptr;
    const Placed *m = Owner(cell.row, col);
    if (!m || m->row > cell.row || m->bottom() < cell.bottom() || cell.colSpan + m->colSpan > MaxColSpan)
        return nullptr;
    return m;
}

bool TableGrid::CanMergeRight(int cellId) const
{
    const Placed *p = Find(cellId);
    return p && Neighbour(*p, p->end());
}

bool TableGrid::CanMergeLeft(int cellId) const
{
    const Placed *p = Find(cellId);
    return p && Neighbour(*p, p->col - 1);
}

// Downwards the cell takes the next row within its section, from a cell
// below that is at least as wide.
bool TableGrid::CanMergeDown(int cellId) const
{
    const Placed *p = Find(cellId);
    if (!p || p->bottom() >= SectionEnd(p->row))
        return false;
    const Placed *b = Owner(p->bottom(), p->col);
    return b && b->row == p->bottom() && b->col <= p->col && b->end() >= p->end() && p->rowSpan < MaxRowSpan;
}

bool TableGrid::MergeRight(int cellId)
{
    return MergeAcross(cellId, true);
}

bool TableGrid::MergeLeft(int cellId)
{
    return MergeAcross(cellId, false);
}

// The cell takes the neighbour's columns over its own rows. Where the
// neighbour began higher up, that upper part stays with it and keeps its
// content; otherwise its content joins the cell's and it goes. A part that
// reaches below the cell becomes a new empty cell.
bool TableGrid::MergeAcross(int cellId, bool toTheRight)
{
    Normalise();
    Placed *e = Find(cellId);
    if (!e || !Neighbour(*e, toTheRight ? e->end() : e->col - 1))
        return false;
    Placed *m = Owner(e->row, toTheRight ? e->end() : e->col - 1);
    const int top = e->row, bottom = e->bottom();
    const int mTop = m->row, mBottom = m->bottom(), mCol = m->col, mSpan = m->colSpan, mId = m->id;
    e->colSpan += mSpan;
    if (!toTheRight)
        e->col = mCol;
    if (mTop < top) {
        m->rowSpan = top - mTop;
    } else {
        Join(*e, *m, !toTheRight, QString());
    }
    if (mBottom > bottom)
        AddCell(bottom, mCol, mBottom - bottom, mSpan, mId);
    DropEmptyRows();
    Place();
    return true;
}

// The cell grows by one row into the cell below. A wider cell below keeps
// its content in its part to the left (or to the right where nothing is
// left of the cell); the rest becomes new empty cells. One just as wide
// is joined to the cell, after a line break.
bool TableGrid::MergeDown(int cellId)
{
    Normalise();
    if (!CanMergeDown(cellId))
        return false;
    Placed *e = Find(cellId);
    Placed *b = Owner(e->bottom(), e->col);
    const int below = e->bottom(), col = e->col, end = e->end();
    const int bCol = b->col, bEnd = b->end(), bRows = b->rowSpan, bId = b->id;
    e->rowSpan += 1;
    const bool split = bCol < col || bEnd > end;
    if (bCol < col) {
        b->colSpan = col - bCol;
    } else if (bEnd > end) {
        b->col = end;
        b->colSpan = bEnd - end;
    } else {
        Join(*e, *b, false, QStringLiteral("<BR>"));
    }
    if (split && bCol < col && bEnd > end)
        AddCell(below, end, bRows, bEnd - end, bId);
    if (bRows > 1)
        AddCell(below + 1, col, bRows - 1, end - col, bId);
    DropEmptyRows();
    Place();
    return true;
}

// The cell takes in the other one's content, and the other goes. A new
// cell has nothing in the page yet: where one of the two is new, the one
// that is in the page takes the joined place, so no content is lost.
void TableGrid::Join(Placed &cell, Placed &other, bool otherFirst, const QString &separator)
{
    if (cell.id < 0 && other.id > 0) {
        std::swap(cell.id, other.id);
        std::swap(cell.rawCol, other.rawCol);
        std::swap(cell.rawRow, other.rawRow);
    }
    if (cell.id > 0 && other.id > 0)
        m_joins.append({Change::Join, cell.id, other.id, 0, otherFirst, separator, 1, 1, 0});
    other.removed = true;
}

// A row in which no cell starts any more goes, and the cells that ran
// through it are one row shorter.
void TableGrid::DropEmptyRows()
{
    for (int r = m_rows.size() - 1; r >= 0; --r) {
        const bool empty = std::none_of(m_cells.cbegin(), m_cells.cend(),
                                        [r](const Placed &p) { return !p.removed && p.row == r; });
        if (!empty)
            continue;
        m_allRows[m_rows[r]].removed = true;
        m_rows.removeAt(r);
        for (Placed &p : m_cells) {
            if (p.removed)
                continue;
            if (p.row < r && p.bottom() > r)
                --p.rowSpan;
            else if (p.row > r)
                --p.row;
        }
    }
}

QList<TableGrid::SectionIn> TableGrid::Layout() const
{
    QList<SectionIn> sections;
    int lastSection = -1;
    for (int r = 0; r < m_rows.size(); ++r) {
        const RowInfo &info = m_allRows[m_rows[r]];
        if (info.section != lastSection) {
            sections.append(SectionIn());
            lastSection = info.section;
        }
        QList<const Placed *> starting;
        for (const Placed &p : m_cells)
            if (!p.removed && p.row == r)
                starting.append(&p);
        std::sort(starting.begin(), starting.end(), [](const Placed *a, const Placed *b) { return a->col < b->col; });
        RowIn row{info.id, {}};
        for (const Placed *p : starting)
            row.cells.append({p->id, p->colSpan, p->rowSpan});
        sections.last().append(row);
    }
    return sections;
}

QList<TableGrid::Change> TableGrid::Changes() const
{
    QList<Change> changes = m_joins;
    for (const SectionIn &section : Layout())
        for (const RowIn &row : section) {
            int after = 0;
            for (const CellIn &cell : row.cells) {
                if (cell.id < 0)
                    changes.append({Change::InsertCell, cell.id, row.id, after, false, QString(), cell.colSpan,
                                    cell.rowSpan, Find(cell.id)->like});
                after = cell.id;
            }
        }
    for (const Placed &p : m_cells)
        if (!p.removed && p.id > 0 && (p.colSpan != p.rawCol || p.rowSpan != p.rawRow))
            changes.append({Change::SetSpans, p.id, 0, 0, false, QString(), p.colSpan, p.rowSpan, 0});
    for (const Placed &p : m_cells)
        if (p.removed && p.id > 0)
            changes.append({Change::RemoveCell, p.id, 0, 0, false, QString(), 1, 1, 0});
    for (const RowInfo &row : m_allRows)
        if (row.removed)
            changes.append({Change::RemoveRow, row.id, 0, 0, false, QString(), 1, 1, 0});
    return changes;
}
