// Where a page is saved on the server, from the site record and address.

#include "document/CSendPath.h"

#include <gtest/gtest.h>

TEST(SendPath, FromSiteAndAddress)
{
    struct Case { const char *base, *root, *url, *pathname, *expected; };
    const Case cases[] = {
        {"http://h", "", "", "/my%20page.htm", "/my page.htm"},
        {"http://h", "", "", "/a%26b.htm", "/a&b.htm"},
        {"http://h", "/www/", "", "/p.htm", "/www/p.htm"},
        {"http://h", "/www", "", "/p.htm", "/www/p.htm"},
        {"http://h", "www", "", "p.htm", "www/p.htm"},
        {"http://h", "/www", "", "/www/p.htm", "/www/p.htm"},
        {"http://h", "/www", "", "/www2/P.htm", "/www/www2/P.htm"},
        {"https://h", "", "", "/Products/%C3%84ta.htm", "/Products/\xC3\x84ta.htm"},
        {"http://h", "", "", "/~anna/sub/p.htm", "/sub/p.htm"},
        {"http://h", "", "", "/~anna", "/~anna"},
        // A site in a subfolder loses its levels; the document's own path does not.
        {"http://h/a/b/", "/www", "", "/a/b/c/p%20q.htm", "/www/c/p q.htm"},
        {"http://h/a/b/", "", "/a/b/p.htm", "/x.htm", "/a/b/p.htm"},
        {"http://h/a/b/c", "", "", "/a/p.htm", "/p.htm"},
    };
    for (const Case &c : cases) {
        SiteRecord site;
        site.baseaddress = QString::fromLatin1(c.base);
        site.ftproot = QString::fromLatin1(c.root);
        QString out;
        EXPECT_EQ(CSendPath::GetPreparedSendPath(site, QString::fromLatin1(c.url), QString::fromLatin1(c.pathname), out), 1);
        EXPECT_EQ(out, QString::fromUtf8(c.expected)) << c.base << " " << c.pathname;
    }
}
