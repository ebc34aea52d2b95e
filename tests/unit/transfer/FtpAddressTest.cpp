// The scheme of a site's FTP address says how its connection is protected.

#include "platform/FtpControl.h"
#include "transfer/FtpAddress.h"

#include <gtest/gtest.h>

TEST(FtpAddress, SchemeSetsProtectionAndDefaultPort)
{
    struct Case { const char *address; bool anyCase; bool explicitTls; bool implicitTls; const char *host; int port; };
    const Case cases[] = {
        {"ftp.site.test", true, false, false, "ftp.site.test", 21},
        {"FTP://ftp.site.test:2121/", true, false, false, "ftp.site.test", 2121},
        {"ftpes://ftp.site.test/", true, true, false, "ftp.site.test", 21},
        {"FtpS://ftp.site.test", true, false, true, "ftp.site.test", 990},
        {"ftps://ftp.site.test:2990", false, false, true, "ftp.site.test", 2990},
        {"FTPES://ftp.site.test", false, false, false, "FTPES://ftp.site.test", 21}, // Init: as written only
    };
    for (const Case &c : cases) {
        FtpControl control;
        const FtpAddress address = FtpAddress::Parse(QString::fromLatin1(c.address), c.anyCase);
        address.ApplyTo(control);
        EXPECT_EQ(control.UseTls, c.explicitTls) << c.address;
        EXPECT_EQ(control.ImplicitTls, c.implicitTls) << c.address;
        EXPECT_EQ(control.RemoteHost, QString::fromLatin1(c.host)) << c.address;
        EXPECT_EQ(control.RemotePort, c.port) << c.address;
    }
    // A plain and a protected session to one host are never shared.
    EXPECT_NE(FtpAddress::Parse(QStringLiteral("ftp://h"), true).AccountHost(),
              FtpAddress::Parse(QStringLiteral("ftpes://h"), true).AccountHost());
}

TEST(FtpAddress, SftpSchemeSpeaksSshOnPort22)
{
    FtpControl control;
    const FtpAddress address = FtpAddress::Parse(QStringLiteral("SFTP://ssh.site.test/"), true);
    address.ApplyTo(control);
    EXPECT_TRUE(control.Sftp);
    EXPECT_FALSE(control.UseTls || control.ImplicitTls);
    EXPECT_EQ(control.RemoteHost, QStringLiteral("ssh.site.test"));
    EXPECT_EQ(control.RemotePort, 22);
    FtpAddress::Parse(QStringLiteral("sftp://ssh.site.test:2222"), true).ApplyTo(control);
    EXPECT_EQ(control.RemotePort, 2222);
    EXPECT_NE(address.AccountHost(), FtpAddress::Parse(QStringLiteral("ssh.site.test"), true).AccountHost());
}
