#include "config/MGlobalProjectObjects.h"
#include "history/CRollback.h"

#include <gtest/gtest.h>

namespace {
SiteRecord site(const QString &ftproot)
{
    SiteRecord record;
    record.baseaddress = QStringLiteral("http://www.example.se");
    record.ftproot = ftproot;
    return record;
}
} // namespace

TEST(HistoryPaths, FolderSitsUnderTheWebRootPathWithSingleSlashes)
{
    EXPECT_EQ(CRollback::HistoryFolder(site(QString())), QStringLiteral("/_resetp"));
    EXPECT_EQ(CRollback::HistoryFolder(site(QStringLiteral("/"))), QStringLiteral("/_resetp"));
    EXPECT_EQ(CRollback::HistoryFolder(site(QStringLiteral("/www/"))), QStringLiteral("/www/_resetp"));
    EXPECT_EQ(CRollback::HistoryFolder(site(QStringLiteral("www"))), QStringLiteral("www/_resetp"));
}

// The viewing copy is addressed from the page's own folder; the folder
// above the web root leaves the path but never the host name.
TEST(HistoryPaths, ViewAddressDropsTheFtpRootFromThePathOnly)
{
    const QString name = QStringLiteral("4711.html");
    EXPECT_EQ(CRollback::ViewAddress(site(QStringLiteral("www")), QStringLiteral("/www/sub/p.htm"), name),
              QStringLiteral("http://www.example.se/sub/4711.html"));
    EXPECT_EQ(CRollback::ViewAddress(site(QStringLiteral("/")), QStringLiteral("/www/p.htm"), name),
              QStringLiteral("http://www.example.se/www/4711.html"));
    EXPECT_EQ(CRollback::ViewAddress(site(QString()), QStringLiteral("p.htm"), name),
              QStringLiteral("http://www.example.se/4711.html"));
}
