// The marked page goes through the real server and the real page engine:
// the markers must survive both, and the text the engine gives back must
// turn into the page's script again, every block in its place.

#include "aspfilter/CASPFilter.h"
#include "support/MError.h"
#include "TestServers.h"

#include <QEventLoop>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineView>

#include <gtest/gtest.h>

namespace {

// Loads the address and gives the doctype and outerHTML of the document
// element, as the editor would serialise the page at Save.
QString servedThroughEngine(const QString &address)
{
    QWebEngineView view;
    QEventLoop loop;
    bool loaded = false;
    QObject::connect(view.page(), &QWebEnginePage::loadFinished, &loop, [&](bool ok) {
        loaded = ok;
        loop.quit();
    });
    // A guard against a hang, not a measure: the page is local.
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    view.load(QUrl(address));
    loop.exec();
    EXPECT_TRUE(loaded) << address.toStdString();

    QString html;
    view.page()->runJavaScript(
        QStringLiteral("(document.doctype ? new XMLSerializer().serializeToString(document.doctype) : '')"
                       " + document.documentElement.outerHTML"),
        [&](const QVariant &result) {
            html = result.toString();
            loop.quit();
        });
    loop.exec();
    return html;
}

struct Edit
{
    QString original;
    QString marked;
    QString served;
};

// FilterIn, upload of the marked page, load through the server, and the
// immediate upload of the rebuilt source, as an edit session does it.
Edit openForEdit(CASPFilter &filter, const QString &page)
{
    TestServers &servers = TestServers::shared();
    Edit edit;
    edit.original = QString::fromLatin1(servers.readWebFile(page));
    edit.marked = edit.original;
    EXPECT_EQ(filter.FilterIn(edit.marked), 1) << MError::ErrorDescription().toStdString();
    servers.writeWebFile(page, edit.marked.toLatin1());
    edit.served = servedThroughEngine(servers.httpBase() + QStringLiteral("/") + page);
    QString rebuilt;
    EXPECT_EQ(filter.FilterOut(rebuilt, true), 1);
    EXPECT_EQ(rebuilt, edit.original);
    servers.writeWebFile(page, rebuilt.toLatin1());
    return edit;
}

} // namespace

TEST(ASPFilterServed, SavedPageGetsEveryBlockBackInItsPlace)
{
    MError::ClearError();
    CASPFilter filter;
    const Edit edit = openForEdit(filter, QStringLiteral("asp/layout.asp"));
    EXPECT_EQ(filter.IsEditable(edit.original), 1);
    ASSERT_TRUE(edit.served.contains(QStringLiteral("keldaspIN#00002</span>layout<!--keldaspOUT#00002-->")))
        << edit.served.toStdString();
    EXPECT_TRUE(edit.served.contains(QStringLiteral("value=\"roses\"")));

    // The user's edit, then the page engine's text goes out.
    QString saved = edit.served;
    saved.replace(QStringLiteral("Edit this text."), QStringLiteral("Edited."));
    ASSERT_EQ(filter.FilterOut(saved, false), 1);
    SCOPED_TRACE(saved.toStdString());
    EXPECT_FALSE(saved.contains(QStringLiteral("keldasp")));
    EXPECT_TRUE(saved.startsWith(QStringLiteral(
        "<%@ Language=VBScript %><% Option Explicit %><%\r\nDim w, q\r\nw = 40\r\nq = \"roses\"\r\n%><html>")))
        << "directive, Option Explicit and the block before <HTML> lead the page";
    EXPECT_TRUE(saved.endsWith(QStringLiteral("</html><% response.write \"<!-- served -->\" %>")));
    EXPECT_TRUE(saved.contains(QStringLiteral("Garden <%= \"layout\" %></h1>")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<HR id=\"rule\" width=\"<%= w %>\">")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<INPUT id=\"query\" name=\"q\" value=\"<%= q %>\">")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<!--#include file=\"../footer.inc\"-->")));
    EXPECT_FALSE(saved.contains(QStringLiteral("all rights reserved")));
    EXPECT_TRUE(saved.contains(QStringLiteral("Edited.")));

    // The saved page runs on the server again.
    TestServers::shared().writeWebFile(QStringLiteral("asp/layout.asp"), saved.toLatin1());
    const QString again = servedThroughEngine(TestServers::shared().httpBase() + QStringLiteral("/asp/layout.asp"));
    EXPECT_TRUE(again.contains(QStringLiteral("Edited.")));
    EXPECT_TRUE(again.contains(QStringLiteral("value=\"roses\"")));
}

TEST(ASPFilterServed, BlockInALoopBringsItsMarkersBackMoreThanOnce)
{
    MError::ClearError();
    CASPFilter filter;
    const Edit edit = openForEdit(filter, QStringLiteral("news.asp"));
    const qsizetype item = edit.marked.indexOf(QStringLiteral("<%= i %>"));
    ASSERT_GT(item, 0);
    const QString id = edit.marked.mid(edit.marked.lastIndexOf(QStringLiteral("keldaspIN#"), item) + 10, 5);
    EXPECT_EQ(edit.marked.count(QStringLiteral("keldaspIN#") + id), 1);
    EXPECT_EQ(edit.served.count(QStringLiteral("keldaspIN#") + id), 3);
    EXPECT_EQ(edit.served.count(QStringLiteral("keldaspOUT#") + id), 3);
    // The link's address is script inside an <A> tag: not editable anyway.
    EXPECT_EQ(filter.IsEditable(edit.original), 0);
}

TEST(ASPFilterServed, CellWhoseTagIsScriptIsRefusedAtSaveNotTornApart)
{
    // The engine moves the wrapper's spans out of the table, so cutting by
    // the wrappers would take the table's own tags with it.
    MError::ClearError();
    TestServers::shared().writeWebFile(
        QStringLiteral("asp/cell.asp"),
        "<HTML><BODY><TABLE><TR><TD width=\"<%= 70 %>\">Left</TD></TR></TABLE></BODY></HTML>");
    CASPFilter filter;
    const Edit edit = openForEdit(filter, QStringLiteral("asp/cell.asp"));
    QString saved = edit.served;
    EXPECT_EQ(filter.FilterOut(saved, false), 0);
    EXPECT_EQ(saved, edit.served);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CASPFilter.FilterOut"));
    MError::ClearError();
}
