#include "objects/TableElement.h"

#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"

#include <QJsonArray>
#include <QJsonDocument>

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
// the next one).
HtmlElement TableElement::InsertRowBeside(long rowIndex, bool below, long cells)
{
    const int handle = Run(QStringLiteral("const ref = t.rows[a[0]], p = ref.parentNode, at = a[1] ? 1 : 0;"
                                          "const r = p === t ? t.insertRow(ref.rowIndex + at) : p.insertRow(ref.sectionRowIndex + at);"
                                          "for (let i = 0; i < a[2]; i++) r.insertCell().innerHTML = '&nbsp;';"
                                          "return K.id(r);"),
                           {qlonglong(rowIndex), below, qlonglong(cells)}, QStringLiteral("TableElement.InsertRowBeside"))
                           .toInt();
    return handle ? HtmlElement(m_table.browser(), handle) : HtmlElement();
}

HtmlElement TableElement::InsertCell(long rowIndex, long position)
{
    const int handle = Run(QStringLiteral("const c = t.rows[a[0]].insertCell(a[1]); c.innerHTML = '&nbsp;';"
                                          "return K.id(c);"),
                           {qlonglong(rowIndex), qlonglong(position)}, QStringLiteral("TableElement.InsertCell"))
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
// comes back to one cell's size reads as it did before it was merged.
bool TableElement::Apply(const QList<TableGrid::Change> &changes)
{
    QVariantList list;
    for (const TableGrid::Change &c : changes)
        list.append(QVariant(QVariantList{int(c.kind), c.id, c.other, c.after, c.before, c.separator,
                                          qlonglong(c.colSpan), qlonglong(c.rowSpan)}));
    return Run(QStringLiteral(
                   "const made = {}, el = id => id < 0 ? made[id] : K.el(id);"
                   "const span = (e, name, v) => { if (v === 1) e.removeAttribute(name); else e.setAttribute(name, String(v)); };"
                   "for (const [kind, id, other, after, before, sep, cs, rs] of a[0]) {"
                   "  if (kind === 0) { const e = el(id), o = el(other);"
                   "    e.innerHTML = before ? o.innerHTML + sep + e.innerHTML : e.innerHTML + sep + o.innerHTML; }"
                   "  else if (kind === 1) { const row = K.el(other), td = row.ownerDocument.createElement('td');"
                   "    if (cs !== 1) td.colSpan = cs; if (rs !== 1) td.rowSpan = rs;"
                   "    if (after) el(after).insertAdjacentElement('afterend', td); else row.insertBefore(td, row.cells[0] || null);"
                   "    made[id] = td; }"
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
