// Where a page is saved on the server, from the site record and address.

#include "document/CSendPath.h"

#include <gtest/gtest.h>

namespace {

QString sendPath(const QString &baseaddress, const QString &ftproot, const QString &url,
                 const QString &pathname)
{
    SiteRecord site;
    site.baseaddress = baseaddress;
    site.ftproot = ftproot;
    QString out;
    EXPECT_EQ(CSendPath::GetPreparedSendPath(site, url, pathname, out), 1);
    return out;
}

} // namespace

TEST(SendPath, DecodesTheAddressAndJoinsTheFtpRoot)
{
    const QString host = QStringLiteral("http://www.example.se");
    EXPECT_EQ(sendPath(host, QString(), QString(), QStringLiteral("/my%20page.htm")),
              QStringLiteral("/my page.htm"));
    EXPECT_EQ(sendPath(host, QString(), QString(), QStringLiteral("/a%26b.htm")), QStringLiteral("/a&b.htm"));
    EXPECT_EQ(sendPath(host, QStringLiteral("/www/"), QString(), QStringLiteral("/p.htm")),
              QStringLiteral("/www/p.htm"));
    EXPECT_EQ(sendPath(host, QStringLiteral("/www"), QString(), QStringLiteral("/p.htm")),
              QStringLiteral("/www/p.htm"));
    EXPECT_EQ(sendPath(host, QStringLiteral("www"), QString(), QStringLiteral("p.htm")),
              QStringLiteral("www/p.htm"));
    EXPECT_EQ(sendPath(host, QStringLiteral("/www"), QString(), QStringLiteral("/www/p.htm")),
              QStringLiteral("/www/p.htm"));
    EXPECT_EQ(sendPath(host, QString(), QString(), QStringLiteral("/~anna/sub/p.htm")),
              QStringLiteral("/sub/p.htm"));
}

TEST(SendPath, SiteInASubfolderLosesItsLevelsButAnOwnPathDoesNot)
{
    const QString deep = QStringLiteral("http://host/a/b/");
    EXPECT_EQ(CSendPath::CalculateNumberSubDomainLevel(deep), 2);
    EXPECT_EQ(CSendPath::CalculateNumberSubDomainLevel(QStringLiteral("http://host")), 0);
    EXPECT_EQ(sendPath(deep, QStringLiteral("/www"), QString(), QStringLiteral("/a/b/c/p%20q.htm")),
              QStringLiteral("/www/c/p q.htm"));
    EXPECT_EQ(sendPath(deep, QString(), QStringLiteral("/a/b/p.htm"), QStringLiteral("/x.htm")),
              QStringLiteral("/a/b/p.htm"));
    EXPECT_EQ(CSendPath::ShortenDocumentPath(QStringLiteral("/a/p.htm"), 3), QStringLiteral("/p.htm"));
}

TEST(SendPath, TildeWithoutAFolderBehindStays)
{
    EXPECT_EQ(CSendPath::RemoveTildePart(QStringLiteral("/~anna")), QStringLiteral("/~anna"));
    EXPECT_EQ(CSendPath::RemoveTildePart(QStringLiteral("/x/~anna/p.htm")), QStringLiteral("/x/p.htm"));
}
