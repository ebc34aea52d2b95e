#include "objects/TableElement.h"

#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

// cellLike(like, make): the cell make() puts into the page, turned into a
// th where the cell it stands beside or was split from is one, so that a
// header row or column grows by header cells. Of a header's attributes
// only scope comes along: it says whether the cell heads its row or its
// column, which holds for the new cell as much; the rest (ids, spans,
// looks) belongs to the author's one cell, and a new td takes nothing
// from its neighbour either. Every cell and row put in is known as added
// (in the editor's world only, never in the page): the page's reader
// marks them for the save, which then never gives them the author's tags.
const QString kCellLike = QStringLiteral(
    "const added = e => { e.__keldaAdded = true; return e; };"
    "const cellLike = (like, make) => { const c = added(make());"
    "  if (!like || like.localName !== 'th') return c;"
    "  const h = added(c.ownerDocument.createElement('th')); c.replaceWith(h);"
    "  if (like.hasAttribute('scope')) h.setAttribute('scope', like.getAttribute('scope'));"
    "  return h; };");

} // namespace

// The script gets the table as t and the arguments as a; __kelda is the
// editor's runtime in its own script world, which hands out the handles.
QVariant TableElement::Run(const QString &body, const QVariantList &args, const QString &position) const
{
    WebBrowser *browser = m_table.browser();
    if (m_table.isNull() || !browser) {
        PageScriptCall::callOnHandle(nullptr, 0, QString(), {}, position);
        return {};
    }
    const QByteArray json = QJsonDocument(QJsonArray::fromVariantList(args)).toJson(QJsonDocument::Compact);
    const QString script = QStringLiteral("(function(){const K=__kelda, t=K.el(%1), a=%2;%3})()")
                               .arg(m_table.handle())
                               .arg(QString::fromUtf8(json), body);
    return PageScriptCall::run(browser->page(), script, position);
}

QList<long> TableElement::CellCounts() const
{
    QList<long> counts;
    const QVariantList list = Run(QStringLiteral("return Array.prototype.map.call(t.rows, r => r.cells.length);"), {},
                                  QStringLiteral("TableElement.CellCounts"))
                                  .toList();
    for (const QVariant &v : list)
        counts.append(v.toLongLong());
    return counts;
}

// The row goes into the section of the row it stands next to: the table's
// own insertRow counts the footer's rows last whatever their place in the
// file, so a row put below the last body row of a table whose TFOOT comes
// first would land in the footer (or, with several TBODYs, at the top of
// the next one). Its cells take the kinds of that row's cells one by one,
// its last cell serving for any beyond its end: that row is of the same
// section, so a row put in a head of th cells is a header row, and one
// put in a body whose first column is of th cells has a th there too.
HtmlElement TableElement::InsertRowBeside(long rowIndex, bool below, long cells)
{
    const int handle = Run(kCellLike +
                               QStringLiteral("const ref = t.rows[a[0]], p = ref.parentNode, at = a[1] ? 1 : 0, near = ref.cells;"
                                              "const r = added(p === t ? t.insertRow(ref.rowIndex + at) : p.insertRow(ref.sectionRowIndex + at));"
                                              "for (let i = 0; i < a[2]; i++)"
                                              "  cellLike(near[Math.min(i, near.length - 1)], () => r.insertCell()).innerHTML = '&nbsp;';"
                                              "return K.id(r);"),
                           {qlonglong(rowIndex), below, qlonglong(cells)}, QStringLiteral("TableElement.InsertRowBeside"))
                           .toInt();
    return handle ? HtmlElement(m_table.browser(), handle) : HtmlElement();
}

HtmlElement TableElement::InsertCell(long rowIndex, long position, long beside)
{
    const int handle = Run(kCellLike +
                               QStringLiteral("const row = t.rows[a[0]], n = row.cells.length;"
                                              "const like = row.cells[a[2] < 0 ? n - 1 : Math.min(a[2], n - 1)];"
                                              "const c = cellLike(like, () => row.insertCell(a[1])); c.innerHTML = '&nbsp;';"
                                              "return K.id(c);"),
                           {qlonglong(rowIndex), qlonglong(position), qlonglong(beside)}, QStringLiteral("TableElement.InsertCell"))
                           .toInt();
    return handle ? HtmlElement(m_table.browser(), handle) : HtmlElement();
}

bool TableElement::DeleteRow(long rowIndex)
{
    return Run(QStringLiteral("t.deleteRow(a[0]); return true;"), {qlonglong(rowIndex)},
               QStringLiteral("TableElement.DeleteRow"))
        .toBool();
}

bool TableElement::DeleteCell(long rowIndex, long cellIndex)
{
    return Run(QStringLiteral("t.rows[a[0]].deleteCell(a[1]); return true;"), {qlonglong(rowIndex), qlonglong(cellIndex)},
               QStringLiteral("TableElement.DeleteCell"))
        .toBool();
}

// The rows in the table's order, a new section wherever the parent of the
// rows changes; the spans as the cells' properties give them.
QList<TableGrid::SectionIn> TableElement::Snapshot() const
{
    const QVariantList rows =
        Run(QStringLiteral("let last = null, s = -1;"
                           "return Array.prototype.map.call(t.rows, r => {"
                           "  if (r.parentNode !== last) { last = r.parentNode; s++; }"
                           "  return [s, K.id(r), Array.prototype.map.call(r.cells, c => [K.id(c), c.colSpan, c.rowSpan])];"
                           "});"),
            {}, QStringLiteral("TableElement.Snapshot"))
            .toList();
    QList<TableGrid::SectionIn> sections;
    for (const QVariant &v : rows) {
        const QVariantList row = v.toList();
        while (sections.size() <= row.value(0).toInt())
            sections.append(TableGrid::SectionIn());
        TableGrid::RowIn in{row.value(1).toInt(), {}};
        for (const QVariant &c : row.value(2).toList()) {
            const QVariantList cell = c.toList();
            in.cells.append({cell.value(0).toInt(), cell.value(1).toLongLong(), cell.value(2).toLongLong()});
        }
        sections.last().append(in);
    }
    return sections;
}

// A span of 1 is written by leaving the attribute out, so a cell that
// comes back to one cell's size reads as it did before it was merged. A
// new cell is of the kind of the cell it was split from, or else of the
// cell before it in its row (the first one at the row's start).
bool TableElement::Apply(const QList<TableGrid::Change> &changes)
{
    QVariantList list;
    for (const TableGrid::Change &c : changes)
        list.append(QVariant(QVariantList{int(c.kind), c.id, c.other, c.after, c.before, c.separator,
                                          qlonglong(c.colSpan), qlonglong(c.rowSpan), c.like}));
    return Run(kCellLike +
               QStringLiteral(
                   "const made = {}, el = id => id < 0 ? made[id] : K.el(id);"
                   "const span = (e, name, v) => { if (v === 1) e.removeAttribute(name); else e.setAttribute(name, String(v)); };"
                   "for (const [kind, id, other, after, before, sep, cs, rs, like] of a[0]) {"
                   "  if (kind === 0) { const e = el(id), o = el(other);"
                   "    e.innerHTML = before ? o.innerHTML + sep + e.innerHTML : e.innerHTML + sep + o.innerHTML; }"
                   "  else if (kind === 1) { const row = K.el(other), next = after ? el(after) : row.cells[0];"
                   "    const c = cellLike((like && el(like)) || next, () => row.ownerDocument.createElement('td'));"
                   "    if (cs !== 1) c.colSpan = cs; if (rs !== 1) c.rowSpan = rs;"
                   "    if (after) next.insertAdjacentElement('afterend', c); else row.insertBefore(c, row.cells[0] || null);"
                   "    made[id] = c; }"
                   "  else if (kind === 2) { const e = el(id);"
                   "    if (e.colSpan !== cs) span(e, 'colspan', cs); if (e.rowSpan !== rs) span(e, 'rowspan', rs); }"
                   "  else el(id).remove();"
                   "}"
                   "return true;"),
               {QVariant(list)}, QStringLiteral("TableElement.Apply"))
        .toBool();
}

bool TableElement::CanMerge(const HtmlElement &cell, Direction direction) const
{
    TableGrid grid;
    grid.SetTableStructure(Snapshot());
    grid.Normalise();
    switch (direction) {
    case Right: return grid.CanMergeRight(cell.handle());
    case Left: return grid.CanMergeLeft(cell.handle());
    case Down: return grid.CanMergeDown(cell.handle());
    }
    return false;
}

// A ragged table is made regular in the same step: the new cells its short
// rows get are what lets the merge keep every row as wide as the table.
bool TableElement::Merge(const HtmlElement &cell, Direction direction)
{
    TableGrid grid;
    grid.SetTableStructure(Snapshot());
    const bool merged = direction == Right  ? grid.MergeRight(cell.handle())
                        : direction == Left ? grid.MergeLeft(cell.handle())
                                            : grid.MergeDown(cell.handle());
    return merged && Apply(grid.Changes());
}
