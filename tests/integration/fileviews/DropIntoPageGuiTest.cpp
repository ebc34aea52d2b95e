// A page and a picture dragged from the site tree into an editable page on
// the real engine: they arrive as the link and the picture of the drag's
// HTML, with the id that tells the page's drop handler what came.

#include "SiteTreeDriver.h"
#include "config/MGlobalProjectObjects.h"
#include "fileviews/CSiteTreeView.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "support/MError.h"

#include <QMimeData>

#include <gtest/gtest.h>

#include <memory>

using namespace fileviews_test;

namespace {

QString body(WebBrowser &browser)
{
    return PageScriptCall::run(browser.page(), QStringLiteral("document.body.innerHTML"), QString()).toString();
}

} // namespace

TEST(DropIntoPage, ALinkAndAPictureArriveWithTheirId)
{
    MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers())};
    MGlobalProjectObjects::lCurrentURL = 0;
    servers().writeWebFile(QStringLiteral("droptarget.htm"),
                           "<html><body contenteditable=\"true\" style=\"margin:0\"><p id=\"p\">here</p></body></html>");
    WebBrowser browser;
    browser.resize(600, 400);
    browser.show();
    browser.Navigate2(servers().httpBase() + QStringLiteral("/droptarget.htm"), WebBrowser::NavNoReadFromCache);
    ASSERT_TRUE(browser.waitUntilComplete());
    ASSERT_TRUE(waitFor([&] { return body(browser).contains(QStringLiteral("here")); }));

    SitePane pane;
    pane.show();
    pane.Open();
    TreeHands hands{pane.tvwSiteTree};
    hands.key(QStringLiteral("img"), Qt::Key_Right);

    std::unique_ptr<QMimeData> page(pane.SiteTree().DragData(hands.node(QStringLiteral("index.htm"))));
    const QString pageId = CSiteTreeView::g_strDragId;
    dropOn(browser.focusProxy(), page.get(), QPoint(40, 10));
    ASSERT_TRUE(waitFor([&] { return body(browser).contains(QStringLiteral("id=\"%1\"").arg(pageId)); }))
        << body(browser).toStdString();
    EXPECT_TRUE(body(browser).contains(QStringLiteral("href=\"%1/index.htm\"").arg(root()))) << body(browser).toStdString();

    std::unique_ptr<QMimeData> picture(pane.SiteTree().DragData(hands.node(QStringLiteral("img/logo.png"))));
    dropOn(browser.focusProxy(), picture.get(), QPoint(40, 10));
    ASSERT_TRUE(waitFor([&] { return body(browser).contains(QStringLiteral("<img")); })) << body(browser).toStdString();
    EXPECT_TRUE(body(browser).contains(QStringLiteral("src=\"%1/img/logo.png\"").arg(root()))) << body(browser).toStdString();
    CSiteTreeView::g_boolSiteTreeDrag = false;
}
