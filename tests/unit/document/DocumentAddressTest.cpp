#include "config/MGlobalProjectObjects.h"
#include "document/AddressPath.h"
#include "document/DocumentAddress.h"

#include <gtest/gtest.h>

namespace {

SiteRecord Site(const QString &baseaddress, const QString &active = QStringLiteral("1"))
{
    SiteRecord site;
    site.baseaddress = baseaddress;
    site.isactive = active;
    site.indexfile = QStringLiteral("index.htm");
    return site;
}

class DocumentAddressSites : public ::testing::Test
{
protected:
    void SetUp() override
    {
        MGlobalProjectObjects::URLDATA = {Site(QStringLiteral("http://host")),
                                          Site(QStringLiteral("http://host/sub/")),
                                          Site(QStringLiteral("http://other/"), QStringLiteral("0"))};
        MGlobalProjectObjects::lCurrentURL = -1;
    }
    void TearDown() override { MGlobalProjectObjects::URLDATA.clear(); }
};

} // namespace

// The last active record that starts the address wins, so a site in a
// subfolder is chosen over its host; an inactive site is never chosen.
TEST_F(DocumentAddressSites, SelectsTheLastActiveMatchingSite)
{
    bool found = false;
    EXPECT_TRUE(DocumentAddress::GetCurrentURLIndex(QStringLiteral("http://host/sub/a.htm"), found));
    EXPECT_EQ(MGlobalProjectObjects::lCurrentURL, 1);
    EXPECT_TRUE(DocumentAddress::GetCurrentURLIndex(QStringLiteral("http://host/other.htm"), found));
    EXPECT_EQ(MGlobalProjectObjects::lCurrentURL, 0);
    // Equal to the base with and without its final "/".
    EXPECT_TRUE(DocumentAddress::GetCurrentURLIndex(QStringLiteral("http://host/sub"), found));
    EXPECT_EQ(MGlobalProjectObjects::lCurrentURL, 1);
    EXPECT_FALSE(DocumentAddress::GetCurrentURLIndex(QStringLiteral("http://other/a.htm"), found));
    EXPECT_FALSE(found);
}

// A site moved to https, a host name in capitals and an escaped folder are
// the same site; a folder that merely begins with the same letters, another
// case in the path, or "www." the record does not allow are not.
TEST_F(DocumentAddressSites, MatchesLikeABrowserSeesTheSite)
{
    auto &sites = MGlobalProjectObjects::URLDATA;
    sites.push_back(Site(QStringLiteral("http://www.shop.example/Vår butik/")));
    sites.push_back(Site(QStringLiteral("http://alias.example")));
    sites.back().wwwalias = true;
    bool found = false;
    for (const char *address : {"https://host/sub/a.htm", "http://HOST/sub/", "https://host:8443/sub/x/"}) {
        DocumentAddress::GetCurrentURLIndex(QString::fromLatin1(address), found);
        EXPECT_TRUE(found && MGlobalProjectObjects::lCurrentURL == 1) << address;
    }
    DocumentAddress::GetCurrentURLIndex(QStringLiteral("http://host/subway/a.htm"), found);
    EXPECT_EQ(MGlobalProjectObjects::lCurrentURL, 0);
    DocumentAddress::GetCurrentURLIndex(QStringLiteral("https://www.shop.example/V%C3%A5r%20butik/a.htm"), found);
    EXPECT_EQ(MGlobalProjectObjects::lCurrentURL, 3);
    for (const char *address : {"http://www.shop.example/vår butik/a.htm", "http://shop.example/Vår butik/a.htm",
                                "http://host:8080/a.htm", "ftp://host/a.htm"}) {
        EXPECT_FALSE(DocumentAddress::GetCurrentURLIndex(QString::fromUtf8(address), found)) << address;
    }
    DocumentAddress::GetCurrentURLIndex(QStringLiteral("https://www.alias.example/a.htm"), found);
    EXPECT_EQ(MGlobalProjectObjects::lCurrentURL, 4);
    EXPECT_TRUE(DocumentAddress::IsSiteHome(QStringLiteral("https://host/sub"), QStringLiteral("http://host/sub/")));
    EXPECT_FALSE(DocumentAddress::IsSiteHome(QStringLiteral("https://host/sub/a/"), QStringLiteral("http://host/sub/")));
}

TEST_F(DocumentAddressSites, SubDomainLevelCountsFoldersOfTheCurrentSite)
{
    MGlobalProjectObjects::lCurrentURL = 1;
    EXPECT_EQ(DocumentAddress::CalculateNumberSubDomainLevel(), 1);
    EXPECT_EQ(DocumentAddress::SubDomainLevel(QStringLiteral("http://host/a/b")), 2);
    EXPECT_EQ(DocumentAddress::SubDomainLevel(QStringLiteral("http://host/")), 0);
    MGlobalProjectObjects::lCurrentURL = -1;
    EXPECT_EQ(DocumentAddress::CalculateNumberSubDomainLevel(), 0);
}

TEST(DocumentAddress, ShortensPaths)
{
    QString path = QStringLiteral("/~user/news/a.htm");
    DocumentAddress::ShortenDocumentPath(path, 1);
    EXPECT_EQ(path, QStringLiteral("/news/a.htm"));
    DocumentAddress::ShortenDocumentPath(path, 5);
    EXPECT_EQ(path, QStringLiteral("/a.htm"));

    QString out;
    DocumentAddress::ShortenServerPath(QStringLiteral("/a/b/c.htm"), out, 2, QStringLiteral("absolute"));
    EXPECT_EQ(out, QStringLiteral("/c.htm"));
    DocumentAddress::ShortenServerPath(QStringLiteral("../../img/x.gif"), out, 1);
    EXPECT_EQ(out, QStringLiteral("../img/x.gif"));
    DocumentAddress::ShortenServerPath(QStringLiteral("../.."), out, 1);
    EXPECT_EQ(out, QStringLiteral("."));
}

// Escapes are read as UTF-8 first, in the page's code page when they are
// no UTF-8; the case stays; Encode is the way back.
TEST(DocumentAddress, PathsDecodeInFullAndKeepTheirCase)
{
    EXPECT_EQ(AddressPath::Decode(QStringLiteral("/%C3%A4ta/Index%20%26%2B.htm")), QStringLiteral("/äta/Index &+.htm"));
    EXPECT_EQ(AddressPath::Decode(QStringLiteral("/R%E4KSM%C5RG%d6s")), QStringLiteral("/RäKSMÅRGÖs"));
    EXPECT_EQ(AddressPath::Decode(QStringLiteral("/%E4"), QStringLiteral("iso-8859-7")), QStringLiteral("/δ"));
    EXPECT_EQ(AddressPath::Encode(QStringLiteral("/äta/a b#.htm")), QStringLiteral("/%C3%A4ta/a%20b%23.htm"));
    EXPECT_EQ(AddressPath::Decode(AddressPath::Encode(QStringLiteral("/Ünï/%.htm"))), QStringLiteral("/Ünï/%.htm"));
}

// The address-to-file steps of a document: a blank page is refused, a file
// address keeps the browser's own location, a folder address is resolved
// from the record or left for the server.
TEST(DocumentAddress, ServerPathOfAddresses)
{
    SiteRecord site = Site(QStringLiteral("http://host/~user/"));
    site.subindex = {QStringLiteral("/news/start.htm"), QString(), QStringLiteral("/late/x.htm")};
    QString url;
    EXPECT_EQ(DocumentAddress::ServerPathOf(QStringLiteral("/blank"), QStringLiteral("about:blank"), site, 1, url), -1);
    EXPECT_EQ(DocumentAddress::ServerPathOf(QStringLiteral("blank"), QStringLiteral("about:blank"), site, 1, url), -1);
    EXPECT_EQ(DocumentAddress::ServerPathOf(QStringLiteral("/~user/a.htm"), QStringLiteral("http://host/~user/a.htm"),
                                            site, 1, url), 1);
    EXPECT_TRUE(url.isEmpty());
    EXPECT_EQ(DocumentAddress::ServerPathOf(QStringLiteral("/~user/"), QStringLiteral("http://host/~user"), site, 1, url),
              1);
    EXPECT_EQ(url, QStringLiteral("index.htm"));
    EXPECT_EQ(DocumentAddress::ServerPathOf(QStringLiteral("/~user/news/"), QStringLiteral("http://host/~user/news/"),
                                            site, 1, url), 1);
    EXPECT_EQ(url, QStringLiteral("/news/start.htm"));
    // Another folder on a server that tells the cases apart.
    EXPECT_EQ(DocumentAddress::ServerPathOf(QStringLiteral("/~user/NEWS/"), QStringLiteral("http://host/~user/NEWS/"),
                                            site, 1, url), DocumentAddress::kAskServer);
    EXPECT_EQ(url, QStringLiteral("/NEWS/"));
    // Entries behind an empty one are not searched.
    EXPECT_EQ(DocumentAddress::ServerPathOf(QStringLiteral("/~user/late/"), QStringLiteral("http://host/~user/late/"),
                                            site, 1, url), DocumentAddress::kAskServer);
    EXPECT_EQ(url, QStringLiteral("/late/"));
    EXPECT_EQ(DocumentAddress::ServerPathOf(QStringLiteral("/~user/r%E4k/"), QStringLiteral("http://host/~user/r%E4k/"),
                                            site, 1, url), DocumentAddress::kAskServer);
    EXPECT_EQ(url, QStringLiteral("/räk/"));
    EXPECT_EQ(DocumentAddress::ServerPathOf(QStringLiteral("/~user/R%C3%A4k/"), QStringLiteral("https://host/~user/R%C3%A4k/"),
                                            site, 1, url), DocumentAddress::kAskServer);
    EXPECT_EQ(url, QStringLiteral("/Räk/"));
}

TEST(DocumentAddress, FolderPathLosesTheFtpRoot)
{
    EXPECT_EQ(DocumentAddress::FolderPath(QStringLiteral("/www/sub/"), 0, QStringLiteral("/www")), QStringLiteral("/sub/"));
    EXPECT_EQ(DocumentAddress::FolderPath(QStringLiteral("/sub/"), 0, QStringLiteral("/")), QStringLiteral("/sub/"));
    EXPECT_EQ(DocumentAddress::FolderPath(QStringLiteral("/www2/Sub/"), 0, QStringLiteral("/www")),
              QStringLiteral("/www2/Sub/"));
}

TEST(DocumentAddress, SubIndexTakesTheEmptyFirstPlace)
{
    QStringList list = {QString()};
    DocumentAddress::AddSubIndex(list, QStringLiteral("/a/i.htm"));
    DocumentAddress::AddSubIndex(list, QStringLiteral("/b/i.htm"));
    EXPECT_EQ(list, (QStringList{QStringLiteral("/a/i.htm"), QStringLiteral("/b/i.htm")}));
}

TEST(DocumentAddress, ExtensionsDecideEditing)
{
    bool noEdit = false;
    EXPECT_EQ(DocumentAddress::CheckExtension(QStringLiteral(".HTML"), noEdit), 1);
    EXPECT_EQ(DocumentAddress::CheckExtension(DocumentAddress::ExtensionOf(QStringLiteral("/a.ASP?id=3")), noEdit), 1);
    EXPECT_FALSE(noEdit);
    EXPECT_EQ(DocumentAddress::CheckExtension(QStringLiteral(".php"), noEdit), 1);
    EXPECT_TRUE(noEdit);
    EXPECT_EQ(DocumentAddress::CheckExtension(QStringLiteral(".gif"), noEdit), -1);
    EXPECT_EQ(DocumentAddress::CheckExtension(DocumentAddress::ExtensionOf(QStringLiteral("/folder/noext")), noEdit), -1);
}

TEST(DocumentAddress, FullAddresses)
{
    EXPECT_EQ(DocumentAddress::DocumentFullAddress(QStringLiteral("http://host/sub/"), QStringLiteral("/sub/i.htm")),
              QStringLiteral("http://host/sub/i.htm"));
    EXPECT_EQ(DocumentAddress::DocumentFullAddress(QStringLiteral("http://host/a.htm"), QString()),
              QStringLiteral("http://host/a.htm"));
    EXPECT_EQ(DocumentAddress::FullPath(QStringLiteral("http://host/sub/"), QStringLiteral("/sub/i.htm")),
              QStringLiteral("http://host/sub/i.htm"));
    EXPECT_EQ(DocumentAddress::FullPath(QStringLiteral("http://host/"), QStringLiteral("index.htm")),
              QStringLiteral("http://host/index.htm"));
}
