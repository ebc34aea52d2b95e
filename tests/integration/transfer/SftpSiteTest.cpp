// A site over SFTP: its host key is shown once and trusted for the server on
// Yes, refused on No and refused with a warning when it changed; a trusted
// key carries the save with its revision and the two-rename replace.

#include "TransferSite.h"
#include "history/CRollback.h"
#include "platform/CurlErrorMap.h"
#include "platform/SshHostKeys.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"
#include "transfer/TransferActionScope.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace transfer_test;

namespace {

class SftpSite : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        UserQuestions::Script({});
        QFile::remove(SshHostKeys::DefaultFile()); // no key of an earlier test
        SiteRecord site = demoSite();
        site.baseurl = QStringLiteral("sftp://127.0.0.1:%1").arg(servers().sftpPort());
        useSites({site});
    }
    void TearDown() override
    {
        UserQuestions::EndScript();
        MError::ClearError();
    }

    static long logon()
    {
        CFTPS ftp;
        return ftp.Logon();
    }

    static QString trusted() { return SshHostKeys().Trusted(QStringLiteral("127.0.0.1"), servers().sftpPort()); }
};

} // namespace

TEST_F(SftpSite, AnUnknownHostKeyIsShownOnceAndTrustedOnYes)
{
    UserQuestions::Script({UserQuestions::vbYes});
    ASSERT_EQ(logon(), 1) << MError::ErrorDescription().toStdString();
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    const QString question = UserQuestions::ShownSoFar().first().text;
    EXPECT_TRUE(question.contains(servers().sftpHostKey()) && question.contains(QStringLiteral("ssh-ed25519"))
                && question.contains(demoSite().baseaddress))
        << question.toStdString();
    EXPECT_EQ(trusted(), servers().sftpHostKey());

    UserQuestions::Script({});
    EXPECT_EQ(logon(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());
}

TEST_F(SftpSite, NoToAnUnknownHostKeyOrAChangedKeyRefusesTheLogon)
{
    UserQuestions::Script({UserQuestions::vbNo});
    EXPECT_EQ(logon(), 0);
    EXPECT_EQ(MError::ErrorNumber(), ControlError::HostKeyUnknown);
    EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("nothing was sent")));
    EXPECT_TRUE(trusted().isEmpty());

    MError::ClearError();
    const QString other = QStringLiteral("SHA256:0000000000000000000000000000000000000000000");
    SshHostKeys().Trust(QStringLiteral("127.0.0.1"), servers().sftpPort(), QStringLiteral("ssh-ed25519"), other);
    UserQuestions::Script({});
    EXPECT_EQ(logon(), 0);
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty()) << "a changed key is not offered for trust";
    EXPECT_EQ(MError::ErrorNumber(), ControlError::HostKeyChanged);
    const QString text = MError::ErrorDescription();
    EXPECT_TRUE(text.startsWith(QStringLiteral("WARNING")) && text.contains(servers().sftpHostKey())
                && text.contains(demoSite().baseaddress))
        << text.toStdString();
    EXPECT_EQ(trusted(), other);
}

// SFTP servers refuse to rename onto a file: the session learns it at the
// first replace, and the page and its revision are whole on the server.
TEST_F(SftpSite, ASaveWithItsRevisionReplacesThePageByTwoRenames)
{
    SshHostKeys().Trust(QStringLiteral("127.0.0.1"), servers().sftpPort(), QStringLiteral("ssh-ed25519"),
                        servers().sftpHostKey());
    servers().writeWebFile(QStringLiteral("sftp/page.htm"), "<P>old</P>");
    for (const char *page : {"<P>new</P>", "<P>newer</P>"}) {
        TransferActionScope action;
        ASSERT_EQ(CRollback().BackupPage(QStringLiteral("/www/sftp/page.htm")), 1)
            << MError::ErrorDescription().toStdString();
        ASSERT_EQ(CFTPS().SendPage(page, QStringLiteral("/sftp/page.htm")), 1) << MError::ErrorDescription().toStdString();
        EXPECT_EQ(servers().readWebFile(QStringLiteral("sftp/page.htm")), QByteArray(page));
    }
    const QStringList left = QDir(servers().webRoot() + QStringLiteral("/sftp")).entryList(QDir::Files);
    EXPECT_EQ(left.filter(QStringLiteral("kelda-")), QStringList());
}

// A key file whose passphrase is not in the site's password field: asked for
// until right (the wrong one refused), then known for the rest of the run.
// A key file that is gone is named in the error, and nothing is asked.
TEST_F(SftpSite, AKeyFileLogsOnWithThePassphraseAskedFor)
{
    SshHostKeys().Trust(QStringLiteral("127.0.0.1"), servers().sftpPort(), QStringLiteral("ssh-ed25519"),
                        servers().sftpHostKey());
    SiteRecord site = MGlobalProjectObjects::URLDATA.front();
    site.password.clear();
    site.sshkey = servers().sftpUserKey();
    useSites({site});
    UserQuestions::Script({UserQuestions::vbOK, UserQuestions::vbOK});
    UserQuestions::ScriptTexts({QStringLiteral("not-it"), QString::fromLatin1(TestServers::SftpKeyPassphrase)});
    ASSERT_EQ(logon(), 1) << MError::ErrorDescription().toStdString();
    const QList<UserQuestions::Shown> asked = UserQuestions::ShownSoFar();
    ASSERT_EQ(asked.size(), 2);
    EXPECT_TRUE(asked.first().text.contains(site.sshkey) && asked.first().text.contains(site.baseaddress))
        << asked.first().text.toStdString();

    UserQuestions::Script({});
    EXPECT_EQ(logon(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());

    site.sshkey += QStringLiteral(".gone");
    useSites({site});
    EXPECT_EQ(logon(), 0);
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());
    EXPECT_TRUE(MError::ErrorDescription().contains(site.sshkey)) << MError::ErrorDescription().toStdString();
}
