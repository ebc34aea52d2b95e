// A page saved through each kind of firewall the proxy settings offer, and
// what a firewall refuses said in words: a wrong password, a web proxy that
// won't tunnel to FTP, and active mode, which no proxy carries.

#include "CachingProxy.h"
#include "ProxyServers.h"
#include "Socks4Proxy.h"
#include "TransferSite.h"
#include "platform/FirewallFailure.h"
#include "transfer/CFTPS.h"

#include <gtest/gtest.h>

using namespace transfer_test;

namespace {

const QString kPage = QStringLiteral("replace/proxied.htm");
const QString kUrl = QStringLiteral("/replace/proxied.htm");

class ProxySave : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        useSites({demoSite()});
        servers().writeWebFile(kPage, pageOf(3000, 'o'));
    }
    void TearDown() override
    {
        MGlobalProjectObjects::Proxy = ProxySettings();
        MError::ClearError();
    }

    static void firewall(const char *type, quint16 port, bool password = false, const char *secret = ProxyServers::ProxyPassword)
    {
        ProxySettings &p = MGlobalProjectObjects::Proxy;
        p = ProxySettings();
        p.useFTP = true;
        p.serverSOCKSServerType = QString::fromLatin1(type);
        p.serverSOCKSname = QStringLiteral("127.0.0.1");
        p.serverSOCKSPort = QString::number(port);
        p.usesockspassword = password;
        if (password) {
            p.serverSOCKSUser = QString::fromLatin1(ProxyServers::ProxyUser);
            p.serverSOCKSPassWord = QString::fromLatin1(secret);
        }
    }

    // A save by a client of its own, so that no connection of another
    // test is reused; the page on the server afterwards.
    static long save(const QByteArray &page)
    {
        CFTPS client;
        return client.SendPage(page, kUrl);
    }
};

} // namespace

TEST_F(ProxySave, ThePageGoesThroughSocks5Socks4AndATunnelWithTheirPasswords)
{
    ProxyServers guarded(true);
    Socks4Proxy socks4;

    firewall("5", guarded.socksPort(), true);
    const QByteArray viaSocks5 = pageOf(4000, '5');
    EXPECT_EQ(save(viaSocks5), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(servers().readWebFile(kPage), viaSocks5);

    firewall("4", socks4.port());
    const QByteArray viaSocks4 = pageOf(4100, '4');
    EXPECT_EQ(save(viaSocks4), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(servers().readWebFile(kPage), viaSocks4);
    // The control connection and the data connections of the upload.
    EXPECT_GE(socks4.log().count(QStringLiteral("connect")), 2) << socks4.log().toStdString();

    firewall("6", guarded.httpPort(), true);
    const QByteArray viaTunnel = pageOf(4200, 't');
    EXPECT_EQ(save(viaTunnel), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(servers().readWebFile(kPage), viaTunnel);
    EXPECT_GE(guarded.httpLog().count(QStringLiteral("CONNECT")), 2);
}

TEST_F(ProxySave, AWrongPasswordIsToldAsTheProxysRefusalAndTheServerKeepsThePage)
{
    ProxyServers guarded(true);
    const QByteArray before = servers().readWebFile(kPage);
    for (const char *type : {"5", "6"}) {
        SCOPED_TRACE(type);
        firewall(type, type[0] == '5' ? guarded.socksPort() : guarded.httpPort(), true, "wrong");
        MError::ClearError();
        EXPECT_EQ(save(pageOf(100, 'w')), 0);
        EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("refused the user name or password")))
            << MError::ErrorDescription().toStdString();
        EXPECT_EQ(servers().readWebFile(kPage), before);
    }
}

TEST_F(ProxySave, AWebProxyThatWontTunnelToFtpIsRefusedWithTheReason)
{
    // A proxy that tunnels only to port 443 stops the control connection.
    CachingProxy squid(true);
    firewall("6", squid.port());
    EXPECT_EQ(save(pageOf(100, 'x')), 0);
    EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("refused to open a tunnel to the FTP server")))
        << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("nothing can be uploaded, renamed or deleted")));

    // One that tunnels to the FTP port alone lets the logon through and
    // stops the first data connection.
    ProxyServers controlOnly(false, servers().ftpPort());
    firewall("6", controlOnly.httpPort());
    MError::ClearError();
    EXPECT_EQ(save(pageOf(100, 'y')), 0);
    EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("refused the tunnel to its data port")))
        << MError::ErrorDescription().toStdString();
}

TEST_F(ProxySave, ActiveModeThroughAProxyIsRefusedBeforeAnythingIsSent)
{
    ProxyServers open;
    SiteRecord active = demoSite();
    active.passivemode = false;
    useSites({active});
    firewall("5", open.socksPort());
    servers().clearFtpLog();
    const QByteArray before = servers().readWebFile(kPage);
    EXPECT_EQ(save(pageOf(100, 'a')), 0);
    EXPECT_TRUE(MError::ErrorDescription().startsWith(FirewallFailure::ActiveModeRefused().left(40)))
        << MError::ErrorDescription().toStdString();
    EXPECT_EQ(servers().ftpLogins(), 0);
    EXPECT_EQ(servers().readWebFile(kPage), before);
}

TEST_F(ProxySave, AConnectionOpenedBeforeTheFirewallChangedIsLeftAtTheNextCall)
{
    Socks4Proxy socks; // speaks SOCKS5 too, and logs what it carries
    CFTPS client;      // one client for all three saves, as the main window's
    const auto carried = [&] { return socks.log().count(QStringLiteral("connect")); };

    EXPECT_EQ(client.SendPage(pageOf(3100, 'd'), kUrl), 1) << MError::ErrorDescription().toStdString();
    const int direct = carried();

    firewall("5", socks.port());
    servers().clearFtpLog();
    const QByteArray viaSocks = pageOf(3200, 's');
    EXPECT_EQ(client.SendPage(viaSocks, kUrl), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(servers().readWebFile(kPage), viaSocks);
    EXPECT_EQ(servers().ftpLogins(), 1);
    // The new control connection and the upload's data connection.
    EXPECT_GE(carried() - direct, 2) << socks.log().toStdString();

    // Turned off, the firewall is left the same way.
    MGlobalProjectObjects::Proxy = ProxySettings();
    servers().clearFtpLog();
    const int proxied = carried();
    EXPECT_EQ(client.SendPage(pageOf(3300, 'b'), kUrl), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(servers().ftpLogins(), 1);
    EXPECT_EQ(carried(), proxied);
}
