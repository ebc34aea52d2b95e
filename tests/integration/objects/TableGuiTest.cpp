// Tables of a page under edit in the real page engine: the rows and
// columns of the text menu's "Table" items with their warnings, and cell
// merges, each saved to the fixture server with nothing but the table's
// bytes changed.

#include "ObjectPage.h"
#include "config/MGlobalProjectObjects.h"
#include "objects/CHTMLTable.h"
#include "objects/TableElement.h"

#include <gtest/gtest.h>

namespace {

using object_test::EditedPage;
using Q = UserQuestions;

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
    void TearDown() override { Q::EndScript(); }

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
        EXPECT_EQ(saved.mid(end), kTail);
        return saved.mid(start, end - start).toStdString();
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
        TableElement(table()).InsertCell(1, -1);
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
