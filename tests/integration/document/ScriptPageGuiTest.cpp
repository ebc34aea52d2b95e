// Pages whose server script was marked with comments: every marked region
// must come back from the server once and in order, and its output is
// kept out of editing.

#include "DocumentWindow.h"
#include "aspfilter/CASPFilter.h"
#include "aspfilter/ScriptRegions.h"
#include "document/CDocument.h"
#include "support/MError.h"

#include <gtest/gtest.h>

namespace {

QByteArray region(int index, const QByteArray &output)
{
    return ScriptRegions::MarkerIn(index).toLatin1() + output + ScriptRegions::MarkerOut(index).toLatin1();
}

} // namespace

// A loop the server ran around a marked region (from an include the editor
// can't see into) repeated it: the page is refused when editing begins,
// with the reason, and nothing is saved.
TEST(ScriptPage, RepeatedRegionRefusesThePageAtEdit)
{
    document_test::Screen screen;
    screen.open(QStringLiteral("loop/page.htm"), "<html><body>" + region(0, "x") + region(0, "x") + "</body></html>");
    CDocument doc;
    ASSERT_EQ(doc.Init(&screen.window), 1);
    EXPECT_EQ(doc.KeepSource("<html><body><%=x%></body></html>"), 0);
    CASPFilter filter;
    EXPECT_EQ(doc.IsEditable(filter), 0);
    EXPECT_FALSE(doc.RefusalReason().isEmpty());
}

TEST(ScriptPage, ScriptOutputIsNotEditable)
{
    document_test::Screen screen;
    screen.open(QStringLiteral("loop/out.htm"), "<html><body><p>text</p>" + region(0, "<b>out</b>") + "</body></html>");
    CDocument doc;
    ASSERT_EQ(doc.Init(&screen.window), 1);
    ASSERT_EQ(doc.KeepSource("<html><body><p>text</p><%=\"<b>out</b>\"%></body></html>"), 1) << doc.RefusalReason().toStdString();
    CASPFilter filter;
    ASSERT_EQ(doc.IsEditable(filter), 1);
    ASSERT_EQ(doc.SetASPFilter(&filter), 1);
    EXPECT_TRUE(doc.IsASPDocument());
    const HtmlElement b = screen.browser.Document().getElementsByTagName(QStringLiteral("B")).first();
    EXPECT_EQ(b.contentEditable(), QStringLiteral("false"));
    ASSERT_EQ(doc.EditOn(true), 1);
    EXPECT_EQ(b.contentEditable(), QStringLiteral("false"));
    doc.EditOn(false);
}
