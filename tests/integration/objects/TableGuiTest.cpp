// Tables of a page under edit in the real page engine: a new table put in
// through its dialog, the rows and columns of the text menu's "Table" items
// with their warnings, cell merges and the properties dialog, each saved to
// the fixture server with nothing but the table's bytes changed.

#include "../fileviews/SiteTreeDriver.h"
#include "ObjectPage.h"
#include "fileviews/SiteFileDialogs.h"
#include "platform/LocalPictureScheme.h"
#include "config/MGlobalProjectObjects.h"
#include "objects/CHTMLTable.h"
#include "objects/TableElement.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QComboBox>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using object_test::EditedPage;
using Q = UserQuestions;
using fileviews_test::click;
using fileviews_test::onModal;
using fileviews_test::type;

const QByteArray kHead = "<!DOCTYPE html>\n<html><head><title>Tables</title></head><body>\n"
                         "<p id=\"before\">Before the table.</p>\n";
const QByteArray kTail = "\n<p>After the table, &amp; its <b>bold</b> words.</p>\n</body></html>\n";

class Tables : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        MGlobalProjectObjects::UseTidy = false;
        save_test::setSaveDate();
        Q::Script({});
    }
    void TearDown() override
    {
        SiteFileDialogs::EndScript();
        Q::EndScript();
    }

    void open(const QByteArray &table)
    {
        m_path = QStringLiteral("objects/table%1.htm").arg(++m_pages);
        page.open(m_path, kHead + table + kTail);
    }
    // The right click in the middle of the element (a cell's offsets are
    // from its table, so the engine is asked where it stands in the view)
    // and the pick of an item of its menu.
    MenuPick pick(const QString &id, const QString &item)
    {
        const QVariantList at = PageScriptCall::run(page.screen.browser.page(),
                                                    QStringLiteral("(function(){const r = __kelda.el(%1).getBoundingClientRect();"
                                                                   "return [r.left + r.width / 2, r.top + r.height / 2];})()")
                                                        .arg(page.byId(id).handle()),
                                                    QStringLiteral("test"))
                                    .toList();
        MenuPick picked(item);
        EXPECT_TRUE(page.rightClick(QPoint(at.value(0).toInt(), at.value(1).toInt())));
        return picked;
    }
    QList<long> counts() { return TableElement(table()).CellCounts(); }
    HtmlElement table() { return page.page().getElementsByTagName(QStringLiteral("TABLE")).value(0); }

    // Saves the page and gives the table as the server now has it, after
    // checking that all around it kept its bytes.
    std::string savedTable()
    {
        EXPECT_EQ(page.doc->Save(), 1) << MError::ErrorDescription().toStdString();
        const QByteArray saved = save_test::serverFile(m_path);
        const qsizetype start = saved.indexOf("<table"), end = saved.lastIndexOf("</table>") + 8;
        EXPECT_GT(start, 0);
        const QByteArray body = kHead.mid(kHead.indexOf("<body>"));
        EXPECT_EQ(saved.mid(saved.indexOf("<body>"), body.size()), body);
        EXPECT_EQ(saved.mid(end).toStdString(), kTail.toStdString());
        return saved.mid(start, end - start).toStdString();
    }
    // Saves the page and gives its body as the server now has it, to be
    // held against bodyWith: for pages whose tags are not the engine's.
    std::string savedBody()
    {
        EXPECT_EQ(page.doc->Save(), 1) << MError::ErrorDescription().toStdString();
        const QByteArray saved = save_test::serverFile(m_path);
        return saved.mid(saved.indexOf("<body>")).toStdString();
    }
    static std::string bodyWith(const QByteArray &markup)
    {
        return (kHead.mid(kHead.indexOf("<body>")) + markup + kTail).toStdString();
    }

    EditedPage page;
    QString m_path;
    int m_pages = 0;
};

} // namespace

TEST_F(Tables, EvenTableTakesRowsAndColumnsWithoutAQuestion)
{
    open("<table border=\"1\">\n<tr><td id=\"a1\">a1</td><td id=\"a2\" colspan=\"2\">a2</td></tr>\n"
         "<tr><td id=\"b1\">b1</td><td id=\"b2\">b2</td></tr>\n</table>");
    MenuPick outside = pick(QStringLiteral("before"), QString());
    EXPECT_TRUE(outside.shown);
    EXPECT_FALSE(outside.enabled.contains(QStringLiteral("mnuTbl")));

    // Above the first row: as many cells as the old first row.
    EXPECT_TRUE(pick(QStringLiteral("a1"), QStringLiteral("mnuTblInsertRowAbove")).enabled.contains(QStringLiteral("mnuTbl")));
    EXPECT_EQ(counts(), (QList<long>{2, 2, 2}));
    // The spanning cell counts as one: right of it is cell index 2.
    pick(QStringLiteral("a2"), QStringLiteral("mnuTblInsertColRight"));
    EXPECT_EQ(counts(), (QList<long>{3, 3, 3}));
    pick(QStringLiteral("b1"), QStringLiteral("mnuTblDeleteCol"));
    pick(QStringLiteral("b2"), QStringLiteral("mnuTblInsertRowBelow"));
    EXPECT_EQ(counts(), (QList<long>{2, 2, 2, 2}));
    pick(QStringLiteral("a2"), QStringLiteral("mnuTblDeleteRow"));
    EXPECT_EQ(counts(), (QList<long>{2, 2, 2}));
    EXPECT_TRUE(Q::ShownSoFar().isEmpty()) << Q::ShownSoFar().value(0).text.toStdString();

    EXPECT_EQ(savedTable(), std::string("<table border=\"1\">\n<tr><td>&nbsp;</td><td>&nbsp;</td></tr>\n"
                                        "<tr><td id=\"b2\">b2</td><td>&nbsp;</td></tr>\n"
                                        "<tr><td>&nbsp;</td><td>&nbsp;</td></tr></table>"));
}

TEST_F(Tables, UnevenTableWarnsAndCancelLeavesItAsItWas)
{
    open("<table>\n<tr><td>x1</td><td>x2</td><td id=\"x3\">x3</td></tr>\n"
         "<tr><td>y1</td><td id=\"y2\">y2</td><td>y3</td></tr>\n<tr><td id=\"z1\">z1</td></tr>\n</table>");
    const QString before = table().outerHTML();
    Q::Script({Q::vbCancel, Q::vbCancel, Q::vbOK, Q::vbOK});
    pick(QStringLiteral("x3"), QStringLiteral("mnuTblDeleteCol"));
    pick(QStringLiteral("z1"), QStringLiteral("mnuTblInsertRowBelow"));
    EXPECT_EQ(table().outerHTML(), before);
    bool dirty = false;
    page.doc->GetDirty(dirty);
    EXPECT_TRUE(dirty);

    // Rows of 3, 3 and 1 lose the third cell; the short row loses its
    // only one and goes.
    pick(QStringLiteral("x3"), QStringLiteral("mnuTblDeleteCol"));
    EXPECT_EQ(counts(), (QList<long>{2, 2}));
    // A column left of cell 5 in rows of 2 and 6: the short row gets its
    // new cell at its end.
    for (int i = 0; i < 4; ++i)
        TableElement(table()).InsertCell(1, -1, -1);
    ASSERT_EQ(counts(), (QList<long>{2, 6}));
    TableElement uneven(table());
    EXPECT_EQ(CHTMLTable::insertTableCol(uneven, 0, 5), 1);
    EXPECT_EQ(counts(), (QList<long>{3, 7}));
    EXPECT_EQ(page.page().getElementsByTagName(QStringLiteral("TR")).value(1).children().value(5).innerHTML(),
              QStringLiteral("&nbsp;"));

    const QList<Q::Shown> shown = Q::ShownSoFar();
    ASSERT_EQ(shown.size(), 4);
    EXPECT_EQ(shown[0].title, QStringLiteral("The table is not symmetric"));
    EXPECT_EQ(shown[0].text, QStringLiteral("The table is not symmetric. It does not have the same number of columns in "
                                            "each row. This could have undesirable consequences when deleting a row. Continue?"));
    EXPECT_EQ(shown[1].text, QStringLiteral("The table is not symmetric. It does not have the same number of columns in "
                                            "each row. This could have undesirable consequences when inserting a new row.\n"
                                            "Click 'OK' to continue or 'Cancel' to cancel."));
    EXPECT_EQ(shown[3].text, QStringLiteral("There are rows with different number of columns; if you continue, new "
                                            "cells will be added to the rows having the least number of columns."));
    EXPECT_EQ(shown[3].style, long(Q::vbOKCancel));
}

// Merges over the grid, in the page and on the server: content joined
// without a separator to the right and after a line break downwards, a
// tall neighbour leaving its lower part as a new empty cell, and a ragged
// row filled so that the rows stay as wide as the table.
TEST_F(Tables, MergedCellsAreSavedWithOnlyTheTableChanged)
{
    open("<table border=\"1\">\n<tr><td id=\"a\">a</td><td id=\"b\" rowspan=\"3\">b</td></tr>\n"
         "<tr><td id=\"c\">c</td></tr>\n<tr><td id=\"d\">d</td></tr>\n<tr><td id=\"e\">e</td></tr>\n</table>");
    TableElement t(table());
    ASSERT_TRUE(t.Merge(page.byId(QStringLiteral("a")), TableElement::Right));
    ASSERT_TRUE(t.Merge(page.byId(QStringLiteral("c")), TableElement::Down));
    EXPECT_FALSE(t.CanMerge(page.byId(QStringLiteral("e")), TableElement::Down));
    page.doc->SetDirty();
    // The row that only d began is gone, and the spans through it shrank.
    EXPECT_EQ(savedTable(), std::string("<table border=\"1\">\n<tr><td id=\"a\" colspan=\"2\">ab</td></tr>\n"
                                        "<tr><td id=\"c\">c<br>d</td><td></td></tr>\n\n"
                                        "<tr><td id=\"e\">e</td><td></td></tr>\n</table>"));
}

namespace {

// A picture of the user's disk for a background, and the site's img
// folder chosen for it in the site tree.
QString cellPicture(const QTemporaryDir &home, const QString &name)
{
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(qRgb(20, 160, 60));
    const QString path = home.filePath(name);
    EXPECT_TRUE(image.save(path));
    SiteFileDialogs::Script({path});
    onModal(QStringLiteral("frmSiteTree"), [](QWidget *dialog) {
        fileviews_test::TreeHands hands{dialog->findChild<SiteTreeWidget *>(QStringLiteral("tvwSiteTree"))};
        QTest::mouseClick(hands.tree->viewport(), Qt::LeftButton, {}, hands.at(QStringLiteral("img")));
        click(dialog, "cmdOk");
    });
    return path;
}

void chooseColor(QWidget *dialog, const char *button, QColor color)
{
    onModal(QStringLiteral("dlgChooseColor"), [color](QWidget *colors) {
        static_cast<QColorDialog *>(colors)->setCurrentColor(color);
        static_cast<QColorDialog *>(colors)->accept();
    });
    click(dialog, button);
}

// A list item picked with the arrow keys, as a user picks it.
void keyInList(QWidget *dialog, const char *list, Qt::Key key)
{
    auto *combo = dialog->findChild<QComboBox *>(QString::fromLatin1(list));
    combo->setFocus();
    QTest::keyClick(combo, key);
}

void clickArrow(QWidget *dialog, const char *name)
{
    QTest::mouseClick(dialog->findChild<QAbstractButton *>(QString::fromLatin1(name)), Qt::LeftButton);
}

// The changes one session of the properties dialog opened on cell c
// makes: the table's, a merge, the cell's color and picture, its row's
// height; each seen in the page while the dialog is still open.
void changeEverything(EditedPage &page, QWidget *dialog, const QTemporaryDir &home)
{
    keyInList(dialog, "cmbAlignment", Qt::Key_Up); // from "Not set" to "left"
    type(dialog, "txtLineSize", QStringLiteral("3"));
    clickArrow(dialog, "UpDownCellPaddingUp");
    click(dialog, "cmdMergeColsRight");
    chooseColor(dialog, "cmdSetCelColor", QColor(0x33, 0x66, 0x99));
    cellPicture(home, QStringLiteral("table_cell.png"));
    click(dialog, "cmdSetCellImage");
    type(dialog, "txtRowHeight", QStringLiteral("40"));

    const HtmlElement table = page.byId(QStringLiteral("t"));
    EXPECT_EQ(table.getAttribute(QStringLiteral("align")).toString(), QStringLiteral("left"));
    EXPECT_EQ(table.getAttribute(QStringLiteral("cellpadding")).toString(), QStringLiteral("3"));
    EXPECT_EQ(page.byId(QStringLiteral("c")).getAttribute(QStringLiteral("colspan")).toString(), QStringLiteral("2"));
    EXPECT_EQ(page.byId(QStringLiteral("c")).getAttribute(QStringLiteral("bgcolor")).toString(), QStringLiteral("#336699"));
    EXPECT_TRUE(page.byId(QStringLiteral("c")).getAttribute(QStringLiteral("background")).toString().startsWith(
        QString::fromLatin1(LocalPictureScheme::Name())));
    EXPECT_EQ(dialog->findChild<QLineEdit *>(QStringLiteral("txtCellImage"))->text(), home.filePath(QStringLiteral("table_cell.png")));
}

const QByteArray kPropertiesTable = "<table id=\"t\" border=\"1\" cellpadding=\"2\">\n"
                                    "<tr><td id=\"a\">a</td><td id=\"b\">b</td></tr>\n"
                                    "<tr><td id=\"c\">c</td><td id=\"d\">d</td></tr>\n</table>";

} // namespace

// The dialog's defaults, an entry that is no number refused in words with
// the dialog back, then the table in the page and on the server.
TEST_F(Tables, ANewTableGoesInThroughItsDialogAndIsSaved)
{
    open("<p id=\"here\">Table here</p>");
    Q::Script({Q::vbOK});
    QStringList defaults;
    onModal(QStringLiteral("frmTableSettings"), [&defaults](QWidget *dialog) {
        defaults << dialog->windowTitle();
        for (const char *box : {"txtBorderSize", "txtNumRows", "txtNumCols"})
            defaults << dialog->findChild<QLineEdit *>(QString::fromLatin1(box))->text();
        EXPECT_FALSE(dialog->findChild<QWidget *>(QStringLiteral("frmLayout"))->isVisible());
        type(dialog, "txtNumRows", QStringLiteral("two"));
        onModal(QStringLiteral("frmTableSettings"), [](QWidget *again) {
            EXPECT_EQ(again->findChild<QLineEdit *>(QStringLiteral("txtNumRows"))->text(), QStringLiteral("two"));
            type(again, "txtNumRows", QStringLiteral("2"));
            type(again, "txtNumCols", QStringLiteral("4"));
            type(again, "txtBorderSize", QStringLiteral("0"));
            click(again, "cmdOk");
        });
        click(dialog, "cmdOk");
    });
    EXPECT_TRUE(pick(QStringLiteral("here"), QStringLiteral("mnuInsertTable")).enabled.contains(QStringLiteral("mnuInsertTable")));
    EXPECT_EQ(defaults, (QStringList{QStringLiteral("Insert table"), QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("3")}));
    ASSERT_EQ(Q::ShownSoFar().size(), 1);
    EXPECT_EQ(Q::ShownSoFar()[0].text, QStringLiteral("The table was not inserted: Rows must be a whole number from 1 to 500, "
                                                      "and \"two\" is not. Correct it and choose OK again."));

    const QByteArray row = "<tr>" + QByteArray("<td>&nbsp;</td>").repeated(4) + "</tr>";
    EXPECT_EQ(savedBody(), bodyWith("<p id=\"here\">Table here<table border=\"0\" cellpadding=\"1\" cellspacing=\"1\" "
                                    "align=\"center\" width=\"90%\"><tbody>" + row + row + "</tbody></table></p>"));
}

// Every change shows in the page as it is made; OK keeps them, and the
// save changes the table's bytes only, with the cell's picture uploaded.
TEST_F(Tables, PropertiesChangedInTheDialogAreSavedWithOnlyTheTableChanged)
{
    QTemporaryDir home;
    open(kPropertiesTable);
    onModal(QStringLiteral("frmTableProperties"), [this, &home](QWidget *dialog) {
        changeEverything(page, dialog, home);
        click(dialog, "cmdOk");
    });
    pick(QStringLiteral("c"), QStringLiteral("mnuTblProperties"));
    EXPECT_EQ(savedTable(), std::string("<table id=\"t\" border=\"3\" cellpadding=\"3\" align=\"left\">\n"
                                        "<tr><td id=\"a\">a</td><td id=\"b\">b</td></tr>\n<tr height=\"40\">"
                                        "<td id=\"c\" colspan=\"2\" bgcolor=\"#336699\" background=\"../img/table_cell.png\">cd</td>"
                                        "</tr>\n</table>"));
    const QString uploaded = fileviews_test::web(QStringLiteral("img/table_cell.png"));
    EXPECT_EQ(fileviews_test::bytesOf(uploaded), fileviews_test::bytesOf(home.filePath(QStringLiteral("table_cell.png"))));
    QFile::remove(uploaded);
}

// Cancel after the same changes puts the table back: the saved page is
// the page as it was, to the byte, and no picture went up.
TEST_F(Tables, CancelOfThePropertiesLeavesTheTableByteForByte)
{
    QTemporaryDir home;
    open(kPropertiesTable);
    // Saved once first, so that the page holds what every save writes
    // into its head.
    page.doc->SetDirty();
    ASSERT_EQ(page.doc->Save(), 1) << MError::ErrorDescription().toStdString();
    const QByteArray before = save_test::serverFile(m_path);
    onModal(QStringLiteral("frmTableProperties"), [this, &home](QWidget *dialog) {
        changeEverything(page, dialog, home);
        click(dialog, "cmdAbort");
    });
    pick(QStringLiteral("c"), QStringLiteral("mnuTblProperties"));
    page.doc->SetDirty();
    EXPECT_EQ(page.doc->Save(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(save_test::serverFile(m_path).toStdString(), before.toStdString());
    EXPECT_FALSE(QFile::exists(fileviews_test::web(QStringLiteral("img/table_cell.png"))));
}

// A table as written by hand: upper case, values unquoted, no <tbody>,
// comments and odd white space between rows, cells without end tags, a
// space that is a character reference. Its first row deleted, then one
// session of the properties dialog on the new first row: two attributes
// new to the table's tag, its border, its width emptied, a merge and the
// row's height. The
// file keeps the author's bytes everywhere but in those values.
TEST_F(Tables, HandWrittenTableKeepsItsMarkupThroughSeveralChangesInOneSave)
{
    open("<TABLE BORDER=1  WIDTH=80% id=t>\n<!-- first row -->\n<TR>\n   <TD id=a>a&nbsp;one</TD>\n\t<TD id=b>b</TD>\n</TR>\n"
         "<!-- second row -->\n<TR><TD id=c ALIGN=right>c&amp;d<TD id=d>d</TR>\n<!-- third row -->\n<TR><TD>e&nbsp;<TD>f</TR>\n</TABLE>");
    pick(QStringLiteral("a"), QStringLiteral("mnuTblDeleteRow"));
    onModal(QStringLiteral("frmTableProperties"), [](QWidget *dialog) {
        keyInList(dialog, "cmbAlignment", Qt::Key_Up);
        clickArrow(dialog, "UpDownCellPaddingUp");
        type(dialog, "txtLineSize", QStringLiteral("3"));
        type(dialog, "txtTableWidth", QString());
        click(dialog, "cmdMergeColsRight");
        type(dialog, "txtRowHeight", QStringLiteral("40"));
        click(dialog, "cmdOk");
    });
    pick(QStringLiteral("c"), QStringLiteral("mnuTblProperties"));
    EXPECT_EQ(savedBody(), bodyWith("<TABLE BORDER=\"3\" id=t align=\"left\" cellpadding=\"1\">\n<!-- first row -->\n\n"
                                    "<!-- second row -->\n<TR height=\"40\"><TD id=c ALIGN=right colspan=\"2\">c&amp;dd</TR>\n"
                                    "<!-- third row -->\n<TR><TD>e&nbsp;<TD>f</TR>\n</TABLE>"));
}

// A head, a foot written before the bodies and two bodies: rows put in
// below the last row of each body stay in that body, and a column reaches
// every section. An emptied border box takes the border off. Everything
// else keeps the author's markup.
TEST_F(Tables, RowsGoIntoTheSectionOfTheRowTheyWerePutNextTo)
{
    open("<table id=\"t\" border=\"1\">\n<THEAD><tr><th>h1</th><th>h2</th></tr></THEAD>\n"
         "<TFOOT><tr><td>f1</td><td>f2</td></tr></TFOOT>\n<TBODY><tr><td id=\"a1\">a1</td><td>a2</td></tr></TBODY>\n"
         "<TBODY><tr><td id=\"b1\">b1</td><td>b2</td></tr>\n<tr><td id=\"c1\">c1</td><td>c2</td></tr></TBODY>\n</table>");
    pick(QStringLiteral("a1"), QStringLiteral("mnuTblInsertRowBelow"));
    pick(QStringLiteral("c1"), QStringLiteral("mnuTblInsertRowBelow"));
    pick(QStringLiteral("b1"), QStringLiteral("mnuTblInsertRowAbove"));
    pick(QStringLiteral("c1"), QStringLiteral("mnuTblInsertColRight"));
    onModal(QStringLiteral("frmTableProperties"), [](QWidget *dialog) {
        type(dialog, "txtLineSize", QString());
        click(dialog, "cmdOk");
    });
    pick(QStringLiteral("a1"), QStringLiteral("mnuTblProperties"));
    const std::string row = "<tr><td>&nbsp;</td><td>&nbsp;</td><td>&nbsp;</td></tr>";
    EXPECT_EQ(savedTable(), "<table id=\"t\">\n<THEAD><tr><th>h1</th><th>&nbsp;</th><th>h2</th></tr></THEAD>\n"
                            "<TFOOT><tr><td>f1</td><td>&nbsp;</td><td>f2</td></tr></TFOOT>\n"
                            "<TBODY><tr><td id=\"a1\">a1</td><td>&nbsp;</td><td>a2</td></tr>" + row + "</TBODY>\n"
                            "<TBODY>" + row + "<tr><td id=\"b1\">b1</td><td>&nbsp;</td><td>b2</td></tr>\n"
                            "<tr><td id=\"c1\">c1</td><td>&nbsp;</td><td>c2</td></tr>" + row + "</TBODY>\n</table>");
}

// Header cells as authors write them: a head row of th cells and a first
// column of row headers, in hand-written markup. Every command works from
// a th; a new cell is a th where it stands for one (a header's scope comes
// along) and a td where it stands for a data cell, also where a merge
// leaves the lower part of a tall data cell beside a row header.
TEST_F(Tables, HeaderCellsTakeEveryCommandAndNewCellsBesideThemAreHeaders)
{
    open("<TABLE id=t BORDER=1>\n<THEAD>\n  <TR><TH id=corner>Cost</TH>  <TH id=jan SCOPE=col>Jan</TH><TH id=feb SCOPE=col>Feb</TH></TR>\n"
         "</THEAD>\n<TBODY>\n  <TR><TH id=rent scope=row>Rent</TH><TD>10</TD><TD>11</TD></TR>\n"
         "  <TR><TH id=food scope=row>Food</TH><TD>5</TD><TD>6</TD></TR>\n</TBODY>\n</TABLE>\n"
         "<TABLE id=u>\n<TR><TH id=q1 scope=row>Q1</TH><TD ROWSPAN=2>high</TD></TR>\n<TR><TH scope=row>Q2</TH></TR>\n</TABLE>");
    pick(QStringLiteral("feb"), QStringLiteral("mnuTblInsertColRight"));
    pick(QStringLiteral("jan"), QStringLiteral("mnuTblInsertRowBelow"));
    pick(QStringLiteral("food"), QStringLiteral("mnuTblInsertRowAbove"));
    pick(QStringLiteral("rent"), QStringLiteral("mnuTblDeleteRow"));
    pick(QStringLiteral("jan"), QStringLiteral("mnuTblDeleteCol"));
    onModal(QStringLiteral("frmTableProperties"), [](QWidget *dialog) {
        keyInList(dialog, "cmbCellHAlign", Qt::Key_Up); // from "Not set" to "right"
        click(dialog, "cmdMergeColsRight");
        click(dialog, "cmdOk");
    });
    pick(QStringLiteral("corner"), QStringLiteral("mnuTblProperties"));
    onModal(QStringLiteral("frmTableProperties"), [](QWidget *dialog) {
        click(dialog, "cmdMergeColsRight");
        click(dialog, "cmdOk");
    });
    pick(QStringLiteral("q1"), QStringLiteral("mnuTblProperties"));
    EXPECT_TRUE(Q::ShownSoFar().isEmpty()) << Q::ShownSoFar().value(0).text.toStdString();

    // A new cell or row is written as the engine writes it, also where it
    // stands in the place of a removed one of the author's.
    EXPECT_EQ(savedBody(),
              bodyWith("<TABLE id=t BORDER=1>\n<THEAD>\n  <TR><TH id=corner align=\"right\" colspan=\"2\">CostFeb</TH>  "
                       "<th scope=\"col\">&nbsp;</th></TR>\n"
                       "<tr><th>&nbsp;</th><th scope=\"col\">&nbsp;</th><th scope=\"col\">&nbsp;</th></tr></THEAD>\n<TBODY>\n  \n"
                       "  <tr><th scope=\"row\">&nbsp;</th><td>&nbsp;</td><td>&nbsp;</td></tr>"
                       "<TR><TH id=food scope=row>Food</TH><TD>6</TD><td>&nbsp;</td></TR>\n</TBODY>\n</TABLE>\n"
                       "<TABLE id=u>\n<TR><TH id=q1 scope=row colspan=\"2\">Q1high</TH></TR>\n<TR><TH scope=row>Q2</TH><td></td></TR>\n"
                       "</TABLE>"));
}
