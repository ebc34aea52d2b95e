// The FTP trace through an HTTP proxy tunnel that asks for a password: the
// CONNECT shows, its credentials don't.

#include "platform/FtpControl.h"

#include "ProxyServers.h"
#include "TestServers.h"

#include <QCoreApplication>
#include <QStringList>

#include <gtest/gtest.h>

TEST(FtpProxyTrace, TunnelCredentialsAndLogonPasswordNeverReachTheTrace)
{
    TestServers &servers = TestServers::shared();
    ProxyServers proxies(true);
    FtpControl ftp;
    ftp.RemoteHost = QStringLiteral("127.0.0.1");
    ftp.RemotePort = servers.ftpPort();
    ftp.User = QString::fromLatin1(TestServers::User);
    ftp.Password = QString::fromLatin1(TestServers::Password);
    ftp.FirewallType = 1;
    ftp.FirewallHost = QStringLiteral("127.0.0.1");
    ftp.FirewallPort = proxies.httpPort();
    ftp.FirewallUser = QString::fromLatin1(ProxyServers::ProxyUser);
    ftp.FirewallPassword = QString::fromLatin1(ProxyServers::ProxyPassword);
    QStringList trace;
    QObject::connect(&ftp, &FtpControl::PITrail, &ftp,
                     [&trace](int, const QString &line) { trace.append(line); });

    ASSERT_EQ(ftp.Logon(), 1) << ftp.ErrorDescription().toStdString();
    // A listing opens a data connection, which is tunnelled with its own
    // CONNECT and credentials.
    EXPECT_EQ(ftp.ListDirectoryLong(), 1) << ftp.ErrorDescription().toStdString();
    ftp.Logoff();
    QCoreApplication::sendPostedEvents(&ftp);

    const QString all = trace.join(QLatin1Char('\n'));
    const QByteArray credentials = QByteArray(ProxyServers::ProxyUser) + ':' + ProxyServers::ProxyPassword;
    EXPECT_GE(all.count(QStringLiteral("CONNECT 127.0.0.1:")), 2) << all.toStdString();
    EXPECT_GE(all.count(QStringLiteral("Proxy-Authorization: ****")), 2) << all.toStdString();
    EXPECT_TRUE(trace.contains(QStringLiteral("PASS ****"))) << all.toStdString();
    for (const QByteArray &secret : {QByteArray(ProxyServers::ProxyPassword), credentials.toBase64(),
                                    QByteArray(TestServers::Password)})
        EXPECT_FALSE(all.contains(QString::fromLatin1(secret))) << secret.constData() << "\n"
                                                                 << all.toStdString();
}
