#pragma once

#include "platform/HtmlElement.h"

class CDocument;
class HtmlTextRange;
class frmMenu;
class frmTableSettings;

// The table commands of the text menu: inserting a table through its
// dialog, and the rows, columns and properties of the table the caret
// stands in. The text menu asks here what to offer and hands the picks
// over.
class TableCommands
{
public:
    // Sets the table items of the menu for the element under the pointer
    // and connects their handlers.
    static void PrepareMenu(frmMenu &menu, CDocument &document, const HtmlElement &pointed);
    // A new table at the range through the table dialog. 1 inserted (the
    // document is marked), -1 nothing done, 0 failed (error pending).
    static long InsertTable(CDocument &document, HtmlTextRange &range);

    // The sizes typed in the dialog, checked: false (with the reason shown)
    // when one isn't a whole number in its range.
    struct Sizes
    {
        long border = 1, rows = 3, cols = 3;
    };
    static bool ReadSizes(const frmTableSettings &form, Sizes &sizes);
    // The markup of a new table of the sizes, every cell holding a
    // non-breaking space.
    static QString NewTableHTML(const Sizes &sizes);
};
