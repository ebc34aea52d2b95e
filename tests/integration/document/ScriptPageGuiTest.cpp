// Pages whose server script was wrapped in markers: the markers must come
// back from the server as they were sent, and the script's output is kept
// out of editing.

#include "DocumentWindow.h"
#include "aspfilter/ASPMarkers.h"
#include "aspfilter/CASPFilter.h"
#include "document/CDocument.h"
#include "support/MError.h"

#include <gtest/gtest.h>

namespace {

QByteArray block(long id)
{
    const QByteArray n = ASPMarkers::FormatID(id).toLatin1();
    return "<span style=\"keldasp:true\"><span style=\"display:none\">keldaspIN#" + n + "</span><b>out</b><!--keldaspOUT#"
        + n + "--></span>";
}

} // namespace

// A loop on the server repeated a block: the page is refused and the file
// on the server is its original source again at once.
TEST(ScriptPage, RepeatedMarkersRefuseThePageAndPutTheOriginalBack)
{
    TestServers &servers = TestServers::shared();
    document_test::Screen screen;
    screen.open(QStringLiteral("loop/page.htm"), "<html><body>" + block(0) + block(0) + "</body></html>");
    CDocument doc;
    ASSERT_EQ(doc.Init(&screen.window), 1);
    const QString original = QStringLiteral("<html><body><%for i=1 to 2%>x<%next%></body></html>");
    doc.SetOriginalASPDoc(original);
    CASPFilter filter;
    EXPECT_EQ(doc.IsEditable(filter), 0);
    EXPECT_EQ(QString::fromLatin1(servers.readWebFile(QStringLiteral("loop/page.htm"))), original);
}

TEST(ScriptPage, ScriptOutputIsNotEditable)
{
    document_test::Screen screen;
    screen.open(QStringLiteral("loop/out.htm"), "<html><body><p>text</p>" + block(0) + "</body></html>");
    CDocument doc;
    ASSERT_EQ(doc.Init(&screen.window), 1);
    CASPFilter filter;
    ASSERT_EQ(doc.SetASPFilter(&filter), 1);
    EXPECT_TRUE(doc.IsASPDocument());
    const HtmlElement b = screen.browser.Document().getElementsByTagName(QStringLiteral("B")).first();
    EXPECT_EQ(b.styleValue(QStringLiteral("keldasp")), QStringLiteral("true"));
    EXPECT_EQ(b.parentElement().contentEditable(), QStringLiteral("false"));
    ASSERT_EQ(doc.EditOn(true), 1);
    EXPECT_EQ(b.parentElement().contentEditable(), QStringLiteral("false"));
    doc.EditOn(false);
}
