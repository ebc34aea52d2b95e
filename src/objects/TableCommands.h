#pragma once

#include "platform/HtmlElement.h"

class CDocument;
class frmMenu;

// The table commands of the text menu: inserting a table through its
// dialog, and the rows, columns and properties of the table the caret
// stands in. The text menu asks here what to offer and hands the picks
// over; until the table dialog exists nothing is offered and the insert
// item stays disabled.
class TableCommands
{
public:
    // Whether a table can be inserted at all.
    static bool Available();
    // Sets the table items of the menu for a caret in the cell (null when
    // the caret is outside any table) and connects their handlers.
    static void PrepareMenu(frmMenu &menu, CDocument &document, const HtmlElement &cell);
    // A new table at the selection through the table dialog. 1 inserted
    // (the document is marked), -1 nothing done, 0 failed (error pending).
    static long InsertTable(CDocument &document);
};
