#include "objects/TableCommands.h"

#include "objects/frmMenu.h"

#include <QAction>

bool TableCommands::Available()
{
    return false;
}

void TableCommands::PrepareMenu(frmMenu &menu, CDocument &, const HtmlElement &)
{
    menu.Item(QStringLiteral("mnuInsertTable"))->setEnabled(Available());
}

long TableCommands::InsertTable(CDocument &)
{
    return -1;
}
