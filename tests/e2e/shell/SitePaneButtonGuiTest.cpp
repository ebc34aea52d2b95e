// The pane button "Site view" of the main window opens the site pane with
// the tree of the site in use, and a double click on a page of it shows the
// page in the browser.

#include "DemoSite.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "fileviews/SitePane.h"
#include "fileviews/SiteTreeKeys.h"
#include "fileviews/SiteTreeWidget.h"
#include "platform/PageScriptCall.h"
#include "shell/frmVindrell.h"
#include "support/UserQuestions.h"

#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

TEST(SitePaneButton, OpensTheTreeOfTheSiteAndAPageFromIt)
{
    TestServers &servers = TestServers::shared();
    UserQuestions::Script({});
    frmVindrell window;
    MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers)};
    MGlobalProjectObjects::lCurrentURL = 0;
    window.show();
    auto *button = window.findChild<QPushButton *>(QStringLiteral("cmdPane4"));
    ASSERT_TRUE(button->isEnabled());
    button->click();
    ASSERT_TRUE(window.sitePane()->isVisible());
    SiteTreeWidget *tree = window.sitePane()->tvwSiteTree;
    const QString page = SiteTreeKeys::RootKey(servers.httpBase()) + QStringLiteral("/frame1.htm");
    ASSERT_NE(tree->Node(page), nullptr);

    tree->scrollToItem(tree->Node(page));
    const QPoint at = tree->visualItemRect(tree->Node(page)).center();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, at);
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return window.browser()->LocationURL() == page; }, 20000))
        << window.browser()->LocationURL().toStdString();

    button->click();
    EXPECT_TRUE(window.sitePane()->isHidden());
    UserQuestions::EndScript();
}
