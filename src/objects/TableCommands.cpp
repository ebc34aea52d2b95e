#include "objects/TableCommands.h"

#include "document/CDocument.h"
#include "objects/CHTMLTable.h"
#include "objects/frmMenu.h"
#include "objects/frmTableSettings.h"
#include "platform/HtmlTextRange.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QAction>
#include <QLineEdit>

namespace {

enum Text : long { txtInsertTable = 17629, txtRows = 18009, txtCols = 18010, txtBorderWidth = 18008,
                   txtBadSize = 18023 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// Whole numbers only; a blank around them is forgiven.
bool ReadWhole(const QLineEdit *box, long low, long high, long &value)
{
    bool ok = false;
    value = box->text().trimmed().toLong(&ok);
    return ok && value >= low && value <= high;
}

// The largest table the dialog makes at once: a bigger one is no page a
// visitor can read, and would hold the window while the engine builds it.
constexpr long kMaxRows = 500;
constexpr long kMaxCols = 100;
constexpr long kMaxBorder = 100;

} // namespace

// The table object lives as long as the menu: the menu's items call it.
void TableCommands::PrepareMenu(frmMenu &menu, CDocument &document, const HtmlElement &pointed)
{
    menu.Item(QStringLiteral("mnuInsertTable"))->setEnabled(true);
    auto *table = new CHTMLTable;
    table->setParent(&menu);
    if (!table->Init(&document, pointed))
        MError::LogError();
    table->Prepare(menu);
}

// An entry that is no whole number in its range is named, and the dialog
// comes back with what the user typed: the table goes in whole or not at
// all.
bool TableCommands::ReadSizes(const frmTableSettings &form, Sizes &sizes)
{
    const struct
    {
        const QLineEdit *box;
        long caption, low, high;
        long *value;
    } fields[] = {{form.txtBorderSize, txtBorderWidth, 0, kMaxBorder, &sizes.border},
                  {form.txtNumRows, txtRows, 1, kMaxRows, &sizes.rows},
                  {form.txtNumCols, txtCols, 1, kMaxCols, &sizes.cols}};
    for (const auto &field : fields) {
        if (ReadWhole(field.box, field.low, field.high, *field.value))
            continue;
        QString name = L(field.caption);
        if (name.endsWith(QLatin1Char(':')))
            name.chop(1);
        UserQuestions::MsgBox(L(txtBadSize).arg(name, field.box->text(), QString::number(field.low), QString::number(field.high)),
                              UserQuestions::vbExclamation, L(txtInsertTable));
        return false;
    }
    return true;
}

// The attributes a new table gets besides its border: centred, nine
// tenths of the page wide, a pixel of padding and spacing.
QString TableCommands::NewTableHTML(const Sizes &sizes)
{
    QString row = QStringLiteral("<tr>");
    for (long c = 0; c < sizes.cols; ++c)
        row += QStringLiteral("<td>&nbsp;</td>");
    row += QStringLiteral("</tr>");
    QString html = QStringLiteral("<table border=\"%1\" cellpadding=\"1\" cellspacing=\"1\" align=\"center\" width=\"90%\"><tbody>")
                       .arg(sizes.border);
    for (long r = 0; r < sizes.rows; ++r)
        html += row;
    return html + QStringLiteral("</tbody></table>");
}

// The whole table goes into the page in one step, so a failure leaves no
// part of it behind.
long TableCommands::InsertTable(CDocument &document, HtmlTextRange &range)
{
    frmTableSettings form;
    form.HideLayout();
    form.setWindowTitle(L(txtInsertTable));
    form.txtBorderSize->setText(QStringLiteral("1"));
    form.txtNumRows->setText(QStringLiteral("3"));
    form.txtNumCols->setText(QStringLiteral("3"));
    Sizes sizes;
    do {
        form.Show();
        if (form.Cancelled())
            return -1;
    } while (!ReadSizes(form, sizes));
    range.pasteHTML(NewTableHTML(sizes));
    if (MError::ErrorNumber() != 0)
        return 0;
    document.SetDirty();
    return 1;
}
