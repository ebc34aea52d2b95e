#pragma once

// The site records the transfer tests work on: the fixture's FTP server,
// seen through its two accounts.

#include "DemoSite.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "support/MError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace transfer_test {

inline TestServers &servers()
{
    return TestServers::shared();
}

inline QString ftpAddress()
{
    return QStringLiteral("127.0.0.1:%1").arg(servers().ftpPort());
}

// "demo" logs on above the web root, which is then its ftproot.
inline SiteRecord demoSite()
{
    return demoSiteRecord(servers());
}

// "webmaster" logs on in the web root itself.
inline SiteRecord webmasterSite()
{
    SiteRecord site = demoSite();
    site.userid = QString::fromLatin1(TestServers::WebUser);
    site.password = QString::fromLatin1(TestServers::WebPassword);
    site.ftproot.clear();
    return site;
}

inline void useSites(std::vector<SiteRecord> sites, long current = 0)
{
    MGlobalProjectObjects::URLDATA = std::move(sites);
    MGlobalProjectObjects::lCurrentURL = current;
}

inline bool webFileExists(const QString &relativePath)
{
    return QFile::exists(servers().webRoot() + QLatin1Char('/') + relativePath);
}

inline void removeWebFile(const QString &relativePath)
{
    QFile::remove(servers().webRoot() + QLatin1Char('/') + relativePath);
}

// The path of a file in the server's web root.
inline QString webPath(const QString &relativePath)
{
    return servers().webRoot() + QLatin1Char('/') + relativePath;
}

// Writes a file, making its folders first.
inline void writeFileAt(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

// A page of n bytes in lines that end in CRLF, different for each seed.
inline QByteArray pageOf(qsizetype n, char seed)
{
    QByteArray page;
    page.reserve(n);
    while (page.size() < n) {
        page.append("<P>line ");
        page.append(seed);
        page.append(QByteArray::number(page.size()));
        page.append("</P>\r\n");
    }
    page.truncate(n);
    return page;
}

} // namespace transfer_test
