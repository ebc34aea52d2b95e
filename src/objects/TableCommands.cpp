#include "objects/TableCommands.h"

#include "objects/CHTMLTable.h"
#include "objects/frmMenu.h"
#include "support/MError.h"

#include <QAction>

bool TableCommands::Available()
{
    return false;
}

// The table object lives as long as the menu: the menu's items call it.
void TableCommands::PrepareMenu(frmMenu &menu, CDocument &document, const HtmlElement &cell)
{
    menu.Item(QStringLiteral("mnuInsertTable"))->setEnabled(Available());
    auto *table = new CHTMLTable;
    table->setParent(&menu);
    if (!table->Init(&document, cell))
        MError::LogError();
    table->Prepare(menu);
}

long TableCommands::InsertTable(CDocument &)
{
    return -1;
}
