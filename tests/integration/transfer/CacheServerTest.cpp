// The check for caching servers: a real caching proxy (squid) that holds an
// older copy of the test page's address is found; the direct road passes.
// The test page is gone from the server whatever the outcome.

#include "CachingProxy.h"
#include "CurlClient.h"
#include "TransferSite.h"
#include "transfer/CFTPS.h"

#include <QDir>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace transfer_test;

namespace {

// Test pages are named by the time of day, "ddhhmmss.html".
QStringList testPagesIn(const QString &folder)
{
    static const QRegularExpression name(QStringLiteral("^\\d{8}\\.html$"));
    QStringList found;
    for (const QString &entry : QDir(folder).entryList(QDir::Files))
        if (name.match(entry).hasMatch())
            found << entry;
    return found;
}

class CacheServers : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        useSites({demoSite()});
        MGlobalProjectObjects::Proxy = ProxySettings();
    }
    void TearDown() override
    {
        MGlobalProjectObjects::Proxy = ProxySettings();
        EXPECT_TRUE(testPagesIn(servers().webRoot()).isEmpty());
        EXPECT_TRUE(testPagesIn(servers().ftpRoot()).isEmpty());
        MError::ClearError();
    }
};

} // namespace

TEST_F(CacheServers, ACacheThatHoldsAnOlderCopyIsFound)
{
    CachingProxy proxy;
    MGlobalProjectObjects::Proxy.use = true;
    MGlobalProjectObjects::Proxy.serverHTTPname = QStringLiteral("127.0.0.1");
    MGlobalProjectObjects::Proxy.serverHTTPPort = QString::number(proxy.port());
    // The cache has seen every address the test page may get in the next
    // minutes, when another page stood there: it answers with that copy.
    const QDateTime now = QDateTime::currentDateTime();
    for (int second = -2; second < 120; ++second) {
        const QString name = now.addSecs(second).toString(QStringLiteral("ddhhmmss")) + QStringLiteral(".html");
        servers().writeWebFile(name, "an older page");
        const CurlClient::Result seen = CurlClient::httpGet(servers().httpBase() + QLatin1Char('/') + name, proxy.address());
        ASSERT_EQ(seen.body, "an older page") << seen.error.toStdString();
        removeWebFile(name);
    }
    CFTPS client;
    ASSERT_EQ(client.Logon(), 1);
    EXPECT_EQ(client.CheckCacheInOneFolder(QStringLiteral("/www"), servers().httpBase()), -1);
    EXPECT_EQ(MError::ErrorNumber(), 0) << MError::ErrorDescription().toStdString();
}

// The start folder (above the web root) shows nothing; the search goes on
// level by level and finds the web root, where the page shows both ways.
TEST_F(CacheServers, TheDirectRoadPasses)
{
    servers().clearFtpLog();
    CFTPS client;
    EXPECT_EQ(client.CheckForCacheServers(0), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(MError::ErrorNumber(), 0);
    EXPECT_GE(servers().ftpCommands(QStringLiteral("DELE")), 2);
}
