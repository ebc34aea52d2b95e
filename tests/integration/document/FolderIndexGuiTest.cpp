// A folder address is bound to the file the web server gives for it: asked
// of the server the first time, taken from the site record after that.

#include "DocumentWindow.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "document/CDocument.h"
#include "platform/PageScriptCall.h"
#include "support/MError.h"

#include <gtest/gtest.h>

namespace {

void useDemoSite()
{
    TestServers &servers = TestServers::shared();
    SiteRecord site;
    site.userid = QString::fromLatin1(TestServers::User);
    site.password = QString::fromLatin1(TestServers::Password);
    site.baseurl = QStringLiteral("127.0.0.1:%1").arg(servers.ftpPort());
    site.baseaddress = servers.httpBase();
    site.ftproot = QStringLiteral("/www");
    site.isactive = QStringLiteral("1");
    site.indexfile = QStringLiteral("index.htm");
    MGlobalProjectObjects::URLDATA = {site};
    MGlobalProjectObjects::lCurrentURL = 0;
}

void load(WebBrowser &browser, const QString &address)
{
    browser.Navigate2(address, WebBrowser::NavNoReadFromCache);
    PageScriptCall::pumpUntil([&] { return browser.ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
    EXPECT_TRUE(browser.waitUntilComplete());
}

} // namespace

TEST(FolderIndex, ServerFirstThenSubIndexWithoutFtp)
{
    TestServers &servers = TestServers::shared();
    useDemoSite();
    const QByteArray served = "<html><body><p>served page</p></body></html>\n";
    const QByteArray other = "<html><body><p>other page</p></body></html>\n";
    servers.writeWebFile(QStringLiteral("zeta/a.htm"), other);
    servers.writeWebFile(QStringLiteral("zeta/default.htm"), served);
    servers.writeWebFile(QStringLiteral("zeta/notes.txt"), "plain");

    WebBrowser browser;
    browser.resize(800, 600);
    browser.show();
    document_test::Window window(&browser);
    load(browser, servers.httpBase() + QStringLiteral("/zeta/"));

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
    useDemoSite();
    servers.writeWebFile(QStringLiteral("empty/readme.txt"), "no pages");
    WebBrowser browser;
    browser.resize(800, 600);
    browser.show();
    document_test::Window window(&browser);
    load(browser, servers.httpBase() + QStringLiteral("/empty/"));
    MError::ClearError();
    CDocument doc;
    EXPECT_EQ(doc.Init(&window), 0);
    EXPECT_EQ(MError::ErrorNumber(), 90000);
}
