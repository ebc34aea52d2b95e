#include "config/MGlobalProjectObjects.h"
#include "history/CRollback.h"

#include <gtest/gtest.h>

// The viewing copy is addressed from the page's own folder; the folder
// above the web root leaves the path but never the host name.
TEST(HistoryPaths, ViewAddressDropsTheFtpRootFromThePathOnly)
{
    SiteRecord site;
    site.baseaddress = QStringLiteral("http://www.example.se");
    const QString name = QStringLiteral("4711.html");
    site.ftproot = QStringLiteral("www");
    EXPECT_EQ(CRollback::ViewAddress(site, QStringLiteral("/www/sub/p.htm"), name),
              QStringLiteral("http://www.example.se/sub/4711.html"));
    site.ftproot = QStringLiteral("/");
    EXPECT_EQ(CRollback::ViewAddress(site, QStringLiteral("/www/p.htm"), name),
              QStringLiteral("http://www.example.se/www/4711.html"));
    site.ftproot.clear();
    EXPECT_EQ(CRollback::ViewAddress(site, QStringLiteral("p.htm"), name), QStringLiteral("http://www.example.se/4711.html"));
    EXPECT_EQ(CRollback::HistoryFolder(site), QStringLiteral("/_resetp"));
}
