// Sizes for the questions before a transfer, and links made relative to
// the page they are dropped on.

#include "config/MGlobalProjectObjects.h"
#include "fileviews/MTreeViewTypes.h"

#include <gtest/gtest.h>

TEST(MTreeViewTypes, SizesChangeUnitAboveAThousandAndAMillion)
{
    const std::pair<double, const char *> table[] = {
        {0, "0 byte"},          {1000, "1000 byte"},      {1001, "1.00 kB"},    {1500, "1.50 kB"},
        {1000000, "1000.00 kB"}, {1000001, "1.00 MB"},     {2500000, "2.50 MB"}, {5e9, "5000.00 MB"},
    };
    for (const auto &[size, text] : table)
        EXPECT_EQ(MTreeViewTypes::FormatSizeString(size), QString::fromLatin1(text)) << size;
}

namespace {
struct Link
{
    const char *target;
    const char *base;
    long status;
    const char *result;
};

void Check(const Link &link)
{
    QString result = QStringLiteral("stale");
    EXPECT_EQ(MTreeViewTypes::GetRelativePath(QString::fromLatin1(link.target), QString::fromLatin1(link.base), result),
              link.status)
        << link.target << " from " << link.base;
    EXPECT_EQ(result, QString::fromLatin1(link.result)) << link.target << " from " << link.base;
}
} // namespace

TEST(MTreeViewTypes, ALinkClimbsFromTheFolderOfThePage)
{
    MGlobalProjectObjects::URLDATA = {};
    MGlobalProjectObjects::lCurrentURL = -1;
    const Link table[] = {
        {"", "http://h/a/p.htm", -1, ""},
        {"http://h/a/x.htm", "", -1, ""},
        {"http://h/a/p.htm", "http://h/a/p.htm", 1, "p.htm"},
        {"p.htm", "p.htm", -1, ""},
        {"http://h/a/x.htm", "http://h/a/p.htm", 1, "./x.htm"},
        {"http://h/a/img/x.gif", "http://h/a/p.htm", 1, "./img/x.gif"},
        {"http://h/x.htm", "http://h/a/p.htm", 1, "../x.htm"},
        {"http://h/b/x.htm", "http://h/a/c/p.htm", 1, "../../b/x.htm"},
        {"http://h/a/x.htm", "http://h//a/p.htm", 1, "./x.htm"},
        {"http://H/a/x.htm", "http://h/a/p.htm", 1, "./x.htm"},
        {"http://h/A/x.htm", "http://h/a/p.htm", 1, "../A/x.htm"},
        {"h/a/x.htm", "h/a/p.htm", 1, "./x.htm"},
        {"http://other/a/x.htm", "http://h/a/p.htm", 1, "http://other/a/x.htm"},
        {"http://h/a/b/", "http://h/a/p.htm", 1, "./b/"},
    };
    for (const Link &link : table)
        Check(link);
}

// A site in a folder below its host gives its links without "./".
TEST(MTreeViewTypes, ASiteBelowItsHostHasNoDotSlash)
{
    SiteRecord site;
    site.baseaddress = QStringLiteral("http://h/site/");
    MGlobalProjectObjects::URLDATA = {site};
    MGlobalProjectObjects::lCurrentURL = 0;
    Check({"http://h/site/x.htm", "http://h/site/p.htm", 1, "x.htm"});
    Check({"http://h/site/img/x.gif", "http://h/site/news/p.htm", 1, "../img/x.gif"});
    MGlobalProjectObjects::URLDATA = {};
    MGlobalProjectObjects::lCurrentURL = -1;
}
