// A folder address is bound to the file the web server gives for it: asked
// of the server the first time, taken from the site record after that.

#include "DocumentWindow.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "document/CDocument.h"
#include "support/MError.h"

#include <gtest/gtest.h>


TEST(FolderIndex, ServerFirstThenSubIndexWithoutFtp)
{
    TestServers &servers = TestServers::shared();
    document_test::useDemoSite();
    const QByteArray served = "<html><body><p>served page</p></body></html>\n";
    const QByteArray other = "<html><body><p>other page</p></body></html>\n";
    servers.writeWebFile(QStringLiteral("zeta/a.htm"), other);
    servers.writeWebFile(QStringLiteral("zeta/default.htm"), served);
    servers.writeWebFile(QStringLiteral("zeta/notes.txt"), "plain");

    document_test::Screen screen;
    WebBrowser &browser = screen.browser;
    document_test::Window &window = screen.window;
    document_test::load(browser, servers.httpBase() + QStringLiteral("/zeta/"));

    servers.clearFtpLog();
    CDocument first;
    ASSERT_EQ(first.Init(&window), 1) << MError::ErrorDescription().toStdString();
    QString url;
    first.GetURL(url);
    EXPECT_EQ(url, QStringLiteral("/zeta/default.htm"));
    EXPECT_GT(servers.ftpLogins(), 0);
    EXPECT_TRUE(MGlobalProjectObjects::URLDATA[0].subindex.contains(QStringLiteral("/zeta/default.htm")));
    // The probed pages are back as they were.
    EXPECT_EQ(servers.readWebFile(QStringLiteral("zeta/default.htm")), served);
    EXPECT_EQ(servers.readWebFile(QStringLiteral("zeta/a.htm")), other);

    servers.clearFtpLog();
    CDocument second;
    ASSERT_EQ(second.Init(&window), 1);
    second.GetURL(url);
    EXPECT_EQ(url, QStringLiteral("/zeta/default.htm"));
    EXPECT_TRUE(servers.ftpLog().isEmpty());
}

// A folder whose pages the server never gives is refused with its own error.
TEST(FolderIndex, FolderWithoutServedPageIsRefused)
{
    TestServers &servers = TestServers::shared();
    document_test::useDemoSite();
    servers.writeWebFile(QStringLiteral("empty/readme.txt"), "no pages");
    document_test::Screen screen;
    WebBrowser &browser = screen.browser;
    document_test::Window &window = screen.window;
    document_test::load(browser, servers.httpBase() + QStringLiteral("/empty/"));
    MError::ClearError();
    CDocument doc;
    EXPECT_EQ(doc.Init(&window), 0);
    EXPECT_EQ(MError::ErrorNumber(), 90000);
}
