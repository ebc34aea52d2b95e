// A site over explicit TLS: every session protects both channels before its
// login and its data, and a certificate the system does not vouch for is
// trusted by the user only, once, and refused when it changes.

#include "TransferSite.h"
#include "TestEnvironment.h"
#include "history/CRollback.h"
#include "platform/CReg.h"
#include "platform/CurlErrorMap.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"
#include "transfer/TransferActionScope.h"

#include <QRegularExpression>

#include <QMap>

#include <gtest/gtest.h>

using namespace transfer_test;

namespace {

class FtpsSite : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        UserQuestions::Script({});
        servers().clearFtpLog();
        // A certificate an earlier test trusted is not this test's.
        CReg::SaveSetting(QStringLiteral("settings"), QStringLiteral("tlspin0"), QString());
    }
    void TearDown() override
    {
        UserQuestions::EndScript();
        MError::ClearError();
    }

    // The demo site over the FTPS server, its certificate trusted or not.
    static SiteRecord tlsSite(bool trusted)
    {
        SiteRecord site = demoSite();
        useExplicitTls(site, servers());
        if (!trusted)
            site.tlsfingerprint = site.tlskeypin = QString();
        return site;
    }

    static long logon()
    {
        CFTPS ftp;
        return ftp.Logon();
    }

    static QString storedPin() { return CReg::GetSetting(QStringLiteral("settings"), QStringLiteral("tlspin0")); }
};

// The commands of each session of the log, in order.
QMap<int, QStringList> sessions()
{
    QMap<int, QStringList> bySession;
    for (const FtpLogEntry &entry : servers().ftpLog())
        bySession[entry.session].append(entry.command + QLatin1Char(' ') + entry.argument);
    return bySession;
}

} // namespace

TEST_F(FtpsSite, ASaveWithItsRevisionProtectsBothChannelsBeforeAnyLoginOrData)
{
    useSites({tlsSite(true)});
    servers().writeWebFile(QStringLiteral("tls/page.htm"), "<P>old</P>");
    servers().clearFtpLog();
    {
        TransferActionScope action;
        ASSERT_EQ(CRollback().BackupPage(QStringLiteral("/www/tls/page.htm")), 1)
            << MError::ErrorDescription().toStdString();
        ASSERT_EQ(CFTPS().SendPage("<P>new</P>", QStringLiteral("/tls/page.htm")), 1)
            << MError::ErrorDescription().toStdString();
    }
    EXPECT_EQ(servers().readWebFile(QStringLiteral("tls/page.htm")), QByteArray("<P>new</P>"));

    const QMap<int, QStringList> log = sessions();
    ASSERT_FALSE(log.isEmpty());
    for (const QStringList &commands : log) {
        const QString all = commands.join(QLatin1Char('|'));
        EXPECT_EQ(commands.value(0), QStringLiteral("AUTH TLS")) << all.toStdString();
        const qsizetype prot = commands.indexOf(QStringLiteral("PROT P"));
        const qsizetype firstData = commands.indexOf(QStringLiteral("EPSV "));
        EXPECT_TRUE(firstData < 0 || (prot >= 0 && prot < firstData)) << all.toStdString();
        EXPECT_FALSE(all.contains(QStringLiteral("OUTOFORDER"))) << all.toStdString();
        // Every data connection resumed the control connection's TLS session.
        EXPECT_EQ(commands.count(QStringLiteral("DATATLS reused")),
                  commands.filter(QRegularExpression(QStringLiteral("^(EPSV|PASV) "))).size())
            << all.toStdString();
        EXPECT_FALSE(all.contains(QStringLiteral("DATATLS new"))) << all.toStdString();
    }
}

TEST_F(FtpsSite, AnUnknownCertificateIsShownOnceAndTrustedForTheSiteOnYes)
{
    const SiteRecord expected = tlsSite(true);
    useSites({tlsSite(false)});
    UserQuestions::Script({UserQuestions::vbYes});
    ASSERT_EQ(logon(), 1) << MError::ErrorDescription().toStdString();
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    const QString question = UserQuestions::ShownSoFar().first().text;
    EXPECT_TRUE(question.contains(expected.tlsfingerprint)) << question.toStdString();
    EXPECT_TRUE(question.contains(expected.baseaddress)) << question.toStdString();
    EXPECT_TRUE(question.contains(QStringLiteral("127.0.0.1"))) << question.toStdString(); // the subject
    EXPECT_EQ(MGlobalProjectObjects::URLDATA[0].tlskeypin, expected.tlskeypin);
    EXPECT_EQ(storedPin(), expected.tlskeypin);

    UserQuestions::Script({});
    EXPECT_EQ(logon(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());
}

TEST_F(FtpsSite, NoToAnUnknownCertificateSendsNeitherUserNorPassword)
{
    const SiteRecord site = tlsSite(false);
    useSites({site});
    UserQuestions::Script({UserQuestions::vbNo});
    EXPECT_EQ(logon(), 0);
    EXPECT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_EQ(MError::ErrorNumber(), ControlError::CertificateUntrusted);
    EXPECT_TRUE(MError::ErrorDescription().contains(site.baseaddress)) << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("nothing was sent")));
    EXPECT_EQ(servers().ftpCommands(QStringLiteral("USER")), 0);
    EXPECT_TRUE(MGlobalProjectObjects::URLDATA[0].tlskeypin.isEmpty());
    EXPECT_TRUE(storedPin().isEmpty());
}

// The site trusted another certificate than the one the server shows now;
// and an address that asks for TLS from a server without it.
TEST_F(FtpsSite, AChangedCertificateOrAServerWithoutTlsIsRefusedWithoutSendingTheLogin)
{
    SiteRecord site = tlsSite(true);
    const QString shown = site.tlsfingerprint;
    const TlsCertificateInfo other = TlsCertificateProbe::Describe(
        QSslCertificate::fromPath(TestEnvironment::fixturesFolder() + QStringLiteral("/servers/https-cert.pem")).value(0));
    site.tlsfingerprint = other.fingerprint;
    site.tlskeypin = other.keyPin;
    useSites({site});
    EXPECT_EQ(logon(), 0);
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty()) << "a changed certificate is not offered for trust";
    EXPECT_EQ(MError::ErrorNumber(), ControlError::CertificateChanged);
    const QString text = MError::ErrorDescription();
    EXPECT_TRUE(text.contains(site.baseaddress) && text.contains(other.fingerprint) && text.contains(shown))
        << text.toStdString();
    EXPECT_EQ(MGlobalProjectObjects::URLDATA[0].tlskeypin, other.keyPin);

    MError::ClearError();
    site = demoSite();
    site.baseurl = QStringLiteral("ftpes://127.0.0.1:%1").arg(servers().ftpPort());
    useSites({site});
    EXPECT_EQ(logon(), 0);
    EXPECT_EQ(MError::ErrorNumber(), ControlError::TlsRefused);
    EXPECT_TRUE(MError::ErrorDescription().contains(site.baseaddress));
    EXPECT_EQ(servers().ftpCommands(QStringLiteral("USER")), 0);
}
