#pragma once

#include "platform/HtmlDocument.h"
#include "platform/HtmlElement.h"

#include <QObject>
#include <QPoint>

#include <functional>

class CDocument;
class TableElement;
class frmMenu;

// What the text menu offers for the table under the pointer: its "Table"
// submenu with the insert and remove of rows and columns. These count
// cells, not grid columns: a cell spanning two columns is one cell. A table
// whose rows differ in their number of cells is warned about first. It
// lives for one menu, like the text object that holds it.
class CHTMLTable : public QObject
{
    Q_OBJECT

public:
    // Finds the table from the element under the pointer: a td or a th
    // makes the current cell and its table, a table (clicked on its frame)
    // gives the table without a cell. Anything else is no table. 1.
    // A th counts as a cell because header rows and columns are in most
    // tables authors write; a menu that refused them would leave no way to
    // add to a header or to take a row or column with a header cell away.
    long Init(CDocument *CDocument_p, const HtmlElement &pointed);
    bool InTable() const { return m_boolInTable; }
    HtmlElement CurrentCell() const { return m_Cell; }
    HtmlElement CurrentTable() const { return m_Table; }

    // Enables the "Table" submenu of the text menu when a table was found
    // and connects its items; the text object calls this on its menu.
    void Prepare(frmMenu &menu);
    // The text menu on its own with only the table's items working; gives
    // the picked item's name.
    QString ShowMenu(const QPoint &at);

    long m_mnuTblInsertRowAbove_Click();
    long m_mnuTblInsertRowBelow_Click();
    long m_mnuTblInsertColLeft_Click();
    long m_mnuTblInsertColRight_Click();
    long m_mnuTblDeleteRow_Click();
    long m_mnuTblDeleteCol_Click();
    // The properties dialog of the table, with the cell under the pointer
    // as its current cell.
    long m_mnuTblProperties_Click();

    static long checkTable(TableElement &table, long &lSmallest_p, long &lLargest_p);
    // The caret's row is lRowIndex_p; the new row goes next to it in its
    // own section (head, body or foot).
    static long insertTableRowAbove(TableElement &table, long lRowIndex_p, long lCellIndex_p);
    static long insertTableRowBelow(TableElement &table, long lRowIndex_p, long lCellIndex_p);
    // The new column goes at the cell index (to the left of the caret's
    // cell); the right-hand command puts it one further.
    static long insertTableCol(TableElement &table, long lRowIndex_p, long lCellIndex_p);
    static long insertTableColRight(TableElement &table, long lRowIndex_p, long lCellIndex_p);
    static long deleteTableRow(TableElement &table, long lRowIndex_p, long lCellIndex_p);
    static long deleteTableCol(TableElement &table, long lRowIndex_p, long lCellIndex_p);

private:
    using Command = long (*)(TableElement &, long, long);
    static long insertTableRow(TableElement &table, long lRowIndex_p, bool below);
    static long insertColumn(TableElement &table, long lCellIndex_p, long lBesideIndex_p);
    long RunCommand(const QString &position, Command command);

    CDocument *m_Document = nullptr;
    HtmlElement m_Cell;
    HtmlElement m_Table;
    bool m_boolInTable = false;
};
