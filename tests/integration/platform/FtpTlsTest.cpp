// The FTP control with explicit TLS: a trusted certificate lets it log on;
// an unknown one, or no TLS at all, is refused. (Data connections under TLS
// are not tried: the libcurl of this system and the test server disagree
// on them even with the curl tool itself.)

#include "platform/FtpControl.h"

#include "FtpsServer.h"

#include <gtest/gtest.h>

namespace {

void aim(FtpControl &ftp, const FtpsServer &server)
{
    ftp.RemoteHost = QStringLiteral("127.0.0.1");
    ftp.RemotePort = server.port();
    ftp.User = QString::fromLatin1(FtpsServer::User);
    ftp.Password = QString::fromLatin1(FtpsServer::Password);
}

} // namespace

TEST(FtpTls, TrustedCertificateCarriesTheSession)
{
    FtpsServer server;
    FtpControl ftp;
    aim(ftp, server);
    ftp.UseTls = true;
    ftp.TlsCaFile = server.certificate();
    ASSERT_EQ(ftp.Logon(), 1) << ftp.ErrorDescription().toStdString();
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/"));

    FtpControl untrusting;
    aim(untrusting, server);
    untrusting.UseTls = true;
    EXPECT_EQ(untrusting.Logon(), 0);

    FtpControl plain;
    aim(plain, server);
    EXPECT_EQ(plain.Logon(), 0);
    EXPECT_EQ(plain.ErrorNumber(), 530); // refused at the user name already
    EXPECT_TRUE(plain.ErrorDescription().startsWith(QStringLiteral("550")))
        << plain.ErrorDescription().toStdString();
}
