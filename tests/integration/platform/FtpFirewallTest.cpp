// The FTP control behind firewalls: a SOCKS5 server and an HTTP CONNECT
// tunnel carry both the control and the passive data connections.

#include "platform/FtpControl.h"

#include "ProxyServers.h"
#include "TestServers.h"

#include <gtest/gtest.h>

namespace {

TestServers &servers()
{
    return TestServers::shared();
}

// Logs on through the firewall set up in `ftp`, lists and fetches a page,
// and gives the page as it arrived.
QByteArray fetchIndex(FtpControl &ftp)
{
    ftp.RemoteHost = QStringLiteral("127.0.0.1");
    ftp.RemotePort = servers().ftpPort();
    ftp.User = QString::fromLatin1(TestServers::User);
    ftp.Password = QString::fromLatin1(TestServers::Password);
    ftp.FirewallHost = QStringLiteral("127.0.0.1");
    QByteArray page;
    int entries = 0;
    QObject::connect(&ftp, &FtpControl::Transfer, &ftp,
                     [&page](qint64, const QByteArray &text) { page += text; });
    QObject::connect(&ftp, &FtpControl::DirList, &ftp, [&entries] { ++entries; });
    EXPECT_EQ(ftp.Logon(), 1) << ftp.ErrorDescription().toStdString();
    EXPECT_EQ(ftp.SetRemotePath(QStringLiteral("www")), 1);
    EXPECT_EQ(ftp.ListDirectoryLong(), 1) << ftp.ErrorDescription().toStdString();
    EXPECT_GT(entries, 3);
    ftp.RemoteFile = QStringLiteral("index.htm");
    EXPECT_EQ(ftp.Download(), 1) << ftp.ErrorDescription().toStdString();
    ftp.Logoff();
    return page;
}

} // namespace

TEST(FtpFirewall, Socks5WithPassword)
{
    ProxyServers proxies(true);
    FtpControl ftp;
    ftp.FirewallType = 3;
    ftp.FirewallPort = proxies.socksPort();
    ftp.FirewallUser = QString::fromLatin1(ProxyServers::ProxyUser);
    ftp.FirewallPassword = QString::fromLatin1(ProxyServers::ProxyPassword);
    servers().clearFtpLog();
    EXPECT_EQ(fetchIndex(ftp), servers().readWebFile(QStringLiteral("index.htm")));
    EXPECT_EQ(servers().ftpLogins(), 1);

    FtpControl refused;
    refused.FirewallType = 3;
    refused.FirewallPort = proxies.socksPort();
    refused.FirewallHost = QStringLiteral("127.0.0.1");
    refused.RemoteHost = QStringLiteral("127.0.0.1");
    refused.RemotePort = servers().ftpPort();
    EXPECT_EQ(refused.Logon(), 0);
}

TEST(FtpFirewall, HttpConnectTunnel)
{
    ProxyServers proxies;
    FtpControl ftp;
    ftp.FirewallType = 1;
    ftp.FirewallPort = proxies.httpPort();
    EXPECT_EQ(fetchIndex(ftp), servers().readWebFile(QStringLiteral("index.htm")));
    // The tunnel carried the data connections too, not only the control one.
    EXPECT_GE(proxies.httpLog().count(QStringLiteral("CONNECT")), 3);
}
