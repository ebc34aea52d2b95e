#include "objects/CHTMLTable.h"

#include "document/CDocument.h"
#include "objects/TableElement.h"
#include "objects/frmMenu.h"
#include "objects/frmTableProperties.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QAction>
#include <QMenu>

#include <algorithm>

namespace {

QString Text(long id)
{
    return MResources::LoadResourceString(id);
}

// The question about a table whose rows differ; true for OK.
bool GoOnWithUnevenTable(const QString &prompt)
{
    return UserQuestions::MsgBox(prompt, UserQuestions::vbOKCancel, Text(18015)) == UserQuestions::vbOK;
}

} // namespace

long CHTMLTable::Init(CDocument *CDocument_p, const HtmlElement &pointed)
{
    m_Document = CDocument_p;
    m_boolInTable = false;
    m_Cell = m_Table = HtmlElement();
    for (HtmlElement e = pointed; !e.isNull(); e = e.parentElement()) {
        const QString tag = e.tagName().toLower();
        if (tag == QLatin1String("td") || tag == QLatin1String("th")) {
            m_Cell = e;
            HtmlElement t = e.parentElement();
            while (!t.isNull() && t.tagName().toLower() != QLatin1String("table"))
                t = t.parentElement();
            m_Table = t;
            m_boolInTable = !t.isNull();
            return 1;
        }
        if (tag == QLatin1String("table")) {
            m_Table = e;
            m_boolInTable = true;
            return 1;
        }
        if (tag == QLatin1String("html") || tag == QLatin1String("body") || tag.isEmpty())
            return 1;
    }
    return 1;
}

void CHTMLTable::Prepare(frmMenu &menu)
{
    menu.Item(QStringLiteral("mnuTbl"))->setEnabled(m_boolInTable);
    QAction *properties = menu.Item(QStringLiteral("mnuTblProperties"));
    properties->setEnabled(m_boolInTable);
    menu.Menu(QStringLiteral("mnuTbl"))->insertSeparator(properties);
    const std::pair<const char *, long (CHTMLTable::*)()> items[] = {
        {"mnuTblInsertRowAbove", &CHTMLTable::m_mnuTblInsertRowAbove_Click},
        {"mnuTblInsertRowBelow", &CHTMLTable::m_mnuTblInsertRowBelow_Click},
        {"mnuTblInsertColLeft", &CHTMLTable::m_mnuTblInsertColLeft_Click},
        {"mnuTblInsertColRight", &CHTMLTable::m_mnuTblInsertColRight_Click},
        {"mnuTblDeleteRow", &CHTMLTable::m_mnuTblDeleteRow_Click},
        {"mnuTblDeleteCol", &CHTMLTable::m_mnuTblDeleteCol_Click},
        {"mnuTblProperties", &CHTMLTable::m_mnuTblProperties_Click}};
    for (const auto &[name, handler] : items)
        connect(menu.Item(QString::fromLatin1(name)), &QAction::triggered, this, [this, handler] { (this->*handler)(); });
}

QString CHTMLTable::ShowMenu(const QPoint &at)
{
    frmMenu menu;
    Prepare(menu);
    return menu.PopupMenu(QStringLiteral("mnuHTMLText"), at);
}

// The row is the cell's parent and the table the one found for the cell,
// which also holds for a row that sits in the table without a section.
// The document is dirty afterwards even where the user stopped at a
// warning: the engine may have acted before the question.
long CHTMLTable::RunCommand(const QString &position, Command command)
{
    if (!m_boolInTable)
        return 1;
    long result = 0;
    if (m_Cell.isNull()) {
        MError::SetErrorIfClear(91, QStringLiteral("Object variable not set"), position);
    } else {
        const HtmlElement row = m_Cell.parentElement();
        TableElement table(m_Table);
        const long rowIndex = row.property(QStringLiteral("rowIndex")).toLongLong();
        const long cellIndex = m_Cell.property(QStringLiteral("cellIndex")).toLongLong();
        if (MError::ErrorNumber() == 0)
            result = command(table, rowIndex, cellIndex);
        if (m_Document)
            m_Document->SetDirty();
    }
    if (MError::ErrorNumber() != 0) {
        MError::ShowError();
        return 0;
    }
    return result;
}

long CHTMLTable::m_mnuTblInsertRowAbove_Click()
{
    return RunCommand(QStringLiteral("CHTMLTable.m_mnuTblInsertRowAbove_Click"), &insertTableRowAbove);
}

long CHTMLTable::m_mnuTblInsertRowBelow_Click()
{
    return RunCommand(QStringLiteral("CHTMLTable.m_mnuTblInsertRowBelow_Click"), &insertTableRowBelow);
}

long CHTMLTable::m_mnuTblInsertColLeft_Click()
{
    return RunCommand(QStringLiteral("CHTMLTable.m_mnuTblInsertColLeft_Click"), &insertTableCol);
}

long CHTMLTable::m_mnuTblInsertColRight_Click()
{
    return RunCommand(QStringLiteral("CHTMLTable.m_mnuTblInsertColRight_Click"), &insertTableColRight);
}

long CHTMLTable::m_mnuTblDeleteRow_Click()
{
    return RunCommand(QStringLiteral("CHTMLTable.m_mnuTblDeleteRow_Click"), &deleteTableRow);
}

long CHTMLTable::m_mnuTblDeleteCol_Click()
{
    return RunCommand(QStringLiteral("CHTMLTable.m_mnuTblDeleteCol_Click"), &deleteTableCol);
}

// The dialog changes the page as the user goes; its dirty flag says
// whether anything stayed changed.
long CHTMLTable::m_mnuTblProperties_Click()
{
    if (!m_boolInTable)
        return 1;
    frmTableProperties form;
    form.SetDocument(m_Document);
    form.SetHTMLTable(m_Table);
    form.SetCurrentCell(m_Cell);
    const long shown = form.Show();
    if (form.GetDirty() && m_Document)
        m_Document->SetDirty();
    if (shown == 0) {
        MError::ShowError();
        return 0;
    }
    return 1;
}

// Both counts start at 1, so a table without rows reads as even.
long CHTMLTable::checkTable(TableElement &table, long &lSmallest_p, long &lLargest_p)
{
    const QList<long> counts = table.CellCounts();
    if (MError::ErrorNumber() != 0)
        return 0;
    lLargest_p = 1;
    for (long n : counts)
        lLargest_p = std::max(lLargest_p, n);
    lSmallest_p = lLargest_p;
    for (long n : counts)
        lSmallest_p = std::min(lSmallest_p, n);
    return 1;
}

long CHTMLTable::insertTableRowAbove(TableElement &table, long lRowIndex_p, long)
{
    return insertTableRow(table, lRowIndex_p, false);
}

long CHTMLTable::insertTableRowBelow(TableElement &table, long lRowIndex_p, long)
{
    return insertTableRow(table, lRowIndex_p, true);
}

// The new row takes as many cells as the row above it, or at the top as
// the old first row. The rows' order here is the order they are shown in
// (head, bodies, foot), so the row above is the one the user sees above.
long CHTMLTable::insertTableRow(TableElement &table, long lRowIndex_p, bool below)
{
    long smallest = 1, largest = 1;
    if (!checkTable(table, smallest, largest))
        return 0;
    if (smallest != largest && !GoOnWithUnevenTable(Text(18016) + QLatin1Char('\n') + Text(18017)))
        return 1;
    const QList<long> counts = table.CellCounts();
    const long above = below ? lRowIndex_p : lRowIndex_p - 1;
    table.InsertRowBeside(lRowIndex_p, below, counts.value(std::max(above, 0L)));
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

long CHTMLTable::insertTableCol(TableElement &table, long, long lCellIndex_p)
{
    return insertColumn(table, lCellIndex_p, lCellIndex_p);
}

long CHTMLTable::insertTableColRight(TableElement &table, long, long lCellIndex_p)
{
    return insertColumn(table, lCellIndex_p + 1, lCellIndex_p);
}

// A row with fewer cells than the index gets its new cell at its end. In
// each row the new cell is of the kind of the cell in the column the user
// stood in (its last cell in a short row): a column put in beside a
// header column of th cells, on its side, is one too, and from a td
// column the user puts a column of td cells on either side.
long CHTMLTable::insertColumn(TableElement &table, long lCellIndex_p, long lBesideIndex_p)
{
    long smallest = 1, largest = 1;
    if (!checkTable(table, smallest, largest))
        return 0;
    if (smallest < lCellIndex_p && !GoOnWithUnevenTable(Text(18018)))
        return 1;
    const QList<long> counts = table.CellCounts();
    for (int r = 0; r < counts.size() && MError::ErrorNumber() == 0; ++r)
        table.InsertCell(r, counts[r] < lCellIndex_p ? smallest : lCellIndex_p, lBesideIndex_p);
    return MError::ErrorNumber() == 0 ? 1 : 0;
}

long CHTMLTable::deleteTableRow(TableElement &table, long lRowIndex_p, long)
{
    return table.DeleteRow(lRowIndex_p) ? 1 : 0;
}

// A short row loses its last cell, and a row left without cells goes.
long CHTMLTable::deleteTableCol(TableElement &table, long, long lCellIndex_p)
{
    long smallest = 1, largest = 1;
    if (!checkTable(table, smallest, largest))
        return 0;
    if (smallest != largest && !GoOnWithUnevenTable(Text(18019)))
        return 1;
    const QList<long> counts = table.CellCounts();
    for (int r = 0; r < counts.size() && MError::ErrorNumber() == 0; ++r) {
        if (counts[r] > lCellIndex_p)
            table.DeleteCell(r, lCellIndex_p);
        else if (counts[r] > 0)
            table.DeleteCell(r, counts[r] - 1);
    }
    const QList<long> after = table.CellCounts();
    for (long r = after.size() - 1; r >= 0 && MError::ErrorNumber() == 0; --r)
        if (after[r] == 0)
            table.DeleteRow(r);
    return MError::ErrorNumber() == 0 ? 1 : 0;
}
