// The FTP control over SFTP against the test servers' SFTP server: the
// same calls, events and replies as over FTP, and the host key checked
// before the login.

#include "platform/CurlErrorMap.h"
#include "platform/FtpControl.h"
#include "platform/SshHostKeys.h"

#include "TestServers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

TestServers &servers()
{
    return TestServers::shared();
}

class FtpControlSftpTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ftp.Sftp = true;
        ftp.RemoteHost = QStringLiteral("127.0.0.1");
        ftp.RemotePort = servers().sftpPort();
        ftp.User = QString::fromLatin1(TestServers::User);
        ftp.Password = QString::fromLatin1(TestServers::Password);
        ftp.SshKnownHosts = folder.filePath(QStringLiteral("ssh_known_hosts"));
        ftp.SshTrustedKeys = folder.filePath(QStringLiteral("trusted"));
        QObject::connect(&ftp, &FtpControl::PITrail, &ftp,
                         [this](int direction, const QString &line) { trail << QString::number(direction) + line; });
    }

    void trustServer(const QString &fingerprint)
    {
        SshHostKeys(ftp.SshTrustedKeys).Trust(ftp.RemoteHost, ftp.RemotePort, QStringLiteral("ssh-ed25519"), fingerprint);
    }

    void logon()
    {
        trustServer(servers().sftpHostKey());
        ASSERT_EQ(ftp.Logon(), 1) << ftp.ErrorDescription().toStdString();
    }

    QStringList names()
    {
        QStringList listed;
        const auto c = QObject::connect(&ftp, &FtpControl::DirList, &ftp,
                                        [&listed](const QString &, const QString &name, bool isDir, qint64,
                                                  const QDateTime &) { listed << name + (isDir ? "/" : ""); });
        EXPECT_EQ(ftp.ListEntries(), 1) << ftp.ErrorDescription().toStdString();
        QObject::disconnect(c);
        return listed;
    }

    QString local(const QString &name, const QByteArray &bytes = {})
    {
        const QString path = folder.filePath(name);
        QFile file(path);
        if (!bytes.isNull() && file.open(QIODevice::WriteOnly))
            file.write(bytes);
        return path;
    }

    QTemporaryDir folder;
    FtpControl ftp;
    QStringList trail;
};

} // namespace

// The host key: unknown keys are refused with the key named, so the user
// can be asked; a trusted key carries the login; a key that differs from
// the trusted one is refused as changed, and neither sends the password.
TEST_F(FtpControlSftpTest, HostKeyUnknownTrustedAndChanged)
{
    EXPECT_EQ(ftp.Logon(), 0);
    EXPECT_EQ(ftp.ErrorNumber(), ControlError::HostKeyUnknown);
    EXPECT_EQ(ftp.HostKeyFingerprint(), servers().sftpHostKey());
    EXPECT_EQ(ftp.HostKeyType(), QStringLiteral("ssh-ed25519"));
    EXPECT_FALSE(ftp.Connected());

    trustServer(QStringLiteral("SHA256:AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA"));
    EXPECT_EQ(ftp.Logon(), 0);
    EXPECT_EQ(ftp.ErrorNumber(), ControlError::HostKeyChanged);

    logon();
    EXPECT_TRUE(ftp.Connected());
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/"));
}

// A key the user's own known_hosts holds for the server is taken as it is.
TEST_F(FtpControlSftpTest, KnownHostsOfTheUserAreRead)
{
    // The same host and port under another key in known_hosts: changed.
    QFile known(ftp.SshKnownHosts);
    ASSERT_TRUE(known.open(QIODevice::WriteOnly));
    known.write(QStringLiteral("[127.0.0.1]:%1 ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIGxvb2sgYXQgbWUsIEkgYW0gYSBrZXkgb2Yg\n")
                    .arg(ftp.RemotePort).toUtf8());
    known.close();
    trustServer(servers().sftpHostKey());
    EXPECT_EQ(ftp.Logon(), 0);
    EXPECT_EQ(ftp.ErrorNumber(), ControlError::HostKeyChanged);
}

TEST_F(FtpControlSftpTest, WrongPasswordIsRefusedWith530)
{
    ftp.Password = QStringLiteral("wrong-sftp");
    trustServer(servers().sftpHostKey());
    EXPECT_EQ(ftp.Logon(), 0);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QLatin1String("530"))) << ftp.ErrorDescription().toStdString();
}

// A key file logs on with its passphrase in the password field; a wrong
// passphrase is a refused login.
TEST_F(FtpControlSftpTest, KeyFileLogsOnWithItsPassphrase)
{
    ftp.SshPrivateKey = servers().sftpUserKey();
    ftp.Password = QString::fromLatin1(TestServers::SftpKeyPassphrase);
    logon();
    ftp.Logoff();
    ftp.Password = QStringLiteral("not-the-passphrase");
    EXPECT_EQ(ftp.Logon(), 0);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QLatin1String("530"))) << ftp.ErrorDescription().toStdString();
}

// Uploads, downloads, sizes, listings, renames, folders and deletes, with
// the replies callers test and a trail that says what was done.
TEST_F(FtpControlSftpTest, FilesAndFoldersKeepTheFtpContract)
{
    logon();
    ASSERT_EQ(ftp.SetRemotePath(QStringLiteral("www")), 1) << ftp.ErrorDescription().toStdString();
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/www"));
    EXPECT_EQ(ftp.SetRemotePath(QStringLiteral("/no-such-folder")), 0);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QLatin1String("550"))) << ftp.ErrorDescription().toStdString();
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/www"));

    const QByteArray page("<p>one\r\ntwo\n</p>");
    ftp.LocalFile = local(QStringLiteral("up.htm"), page);
    ftp.RemoteFile = QStringLiteral("sftp up.htm");
    ASSERT_EQ(ftp.Upload(), 1) << ftp.ErrorDescription().toStdString();
    EXPECT_EQ(servers().readWebFile(QStringLiteral("sftp up.htm")), page);
    qint64 size = -1;
    ASSERT_EQ(ftp.QuerySize(QStringLiteral("sftp up.htm"), size), 1);
    EXPECT_EQ(size, page.size());
    EXPECT_EQ(ftp.QuerySize(QStringLiteral("missing.htm"), size), 0);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QLatin1String("550")));

    ftp.LocalFile = local(QStringLiteral("down.htm"));
    ftp.Overwrite = true;
    ASSERT_EQ(ftp.Download(), 1) << ftp.ErrorDescription().toStdString();
    QFile down(ftp.LocalFile);
    ASSERT_TRUE(down.open(QIODevice::ReadOnly));
    EXPECT_EQ(down.readAll(), page);

    // SFTP refuses to rename onto an existing file: the reply says 550,
    // and the rename onto a free name goes through.
    servers().writeWebFile(QStringLiteral("taken.htm"), "old");
    EXPECT_EQ(ftp.Rename(QStringLiteral("sftp up.htm"), QStringLiteral("taken.htm")), 0);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QLatin1String("550"))) << ftp.ErrorDescription().toStdString();
    EXPECT_TRUE(ftp.Connected());
    ASSERT_EQ(ftp.Rename(QStringLiteral("sftp up.htm"), QStringLiteral("moved.htm")), 1);

    ASSERT_EQ(ftp.MakeDirectory(QStringLiteral("new folder")), 1) << ftp.ErrorDescription().toStdString();
    ftp.RemoteFile.clear(); // a name in RemoteFile is the mask of a listing
    const QStringList listed = names();
    EXPECT_TRUE(listed.contains(QStringLiteral("moved.htm")));
    EXPECT_TRUE(listed.contains(QStringLiteral("new folder/")));
    EXPECT_FALSE(listed.contains(QStringLiteral("./")) || listed.contains(QStringLiteral("../")));
    ASSERT_EQ(ftp.RemoveDirectory(QStringLiteral("new folder")), 1);
    // Names travel quoted: a quote or a backslash in one stays in it.
    const QString odd = QStringLiteral("say \"hi\" \\ bye");
    ASSERT_EQ(ftp.MakeDirectory(odd), 1) << ftp.ErrorDescription().toStdString();
    EXPECT_TRUE(QFileInfo(servers().webRoot() + QLatin1Char('/') + odd).isDir());
    ASSERT_EQ(ftp.RemoveDirectory(odd), 1);
    ASSERT_EQ(ftp.DeleteFile(QStringLiteral("moved.htm")), 1);
    EXPECT_EQ(ftp.DeleteFile(QStringLiteral("moved.htm")), 0);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QLatin1String("550")));
    EXPECT_FALSE(QFile::exists(servers().webRoot() + QStringLiteral("/moved.htm")));

    EXPECT_TRUE(trail.contains(QStringLiteral("0rename \"/www/sftp up.htm\" \"/www/moved.htm\""))) << trail.join('\n').toStdString();
    EXPECT_TRUE(trail.contains(QStringLiteral("1213 %1").arg(page.size()))) << trail.join(QLatin1Char('\n')).toStdString();
}

// A server that falls silent after the login ends the call with the
// time-out, as over FTP.
TEST_F(FtpControlSftpTest, ASilentServerTimesOut)
{
    logon();
    servers().setFtpFaults({{QStringLiteral("sftp_silent_remove"), true}});
    ftp.Timeout = 1;
    EXPECT_EQ(ftp.DeleteFile(QStringLiteral("/www/index.htm")), 0);
    servers().clearFtpFaults();
    EXPECT_EQ(ftp.ErrorNumber(), ControlError::TimedOut) << ftp.ErrorDescription().toStdString();
    EXPECT_FALSE(ftp.Connected());
}

// A rename the server refuses is a 550 on a session that still stands; one
// whose connection breaks is a lost connection, although libssh2 words it
// with the status of the refusal before it.
TEST_F(FtpControlSftpTest, ARenameCutOffIsNotTakenForARefusal)
{
    logon();
    servers().writeWebFile(QStringLiteral("stays.htm"), "a");
    servers().writeWebFile(QStringLiteral("there.htm"), "b");
    EXPECT_EQ(ftp.Rename(QStringLiteral("/www/stays.htm"), QStringLiteral("/www/there.htm")), 0);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QLatin1String("550"))) << ftp.ErrorDescription().toStdString();
    EXPECT_TRUE(ftp.Connected());

    servers().setFtpFaults({{QStringLiteral("drop_on"), QStringLiteral("^SFTP_RENAME")}});
    EXPECT_EQ(ftp.Rename(QStringLiteral("/www/stays.htm"), QStringLiteral("/www/moved.htm")), 0);
    servers().clearFtpFaults();
    EXPECT_EQ(ftp.ErrorNumber(), ControlError::NoConnection) << ftp.ErrorDescription().toStdString();
    EXPECT_FALSE(ftp.Connected());
    EXPECT_EQ(servers().readWebFile(QStringLiteral("stays.htm")), QByteArray("a"));
}

// Raw text with no SFTP meaning is refused and never sent; MDTM answers
// with the file's time as FTP servers give it.
TEST_F(FtpControlSftpTest, RawCommandsWithoutSftpMeaningAreRefused)
{
    logon();
    trail.clear();
    EXPECT_EQ(ftp.Command(QStringLiteral("FEAT")), 0);
    EXPECT_EQ(ftp.ErrorNumber(), ControlError::Protocol);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QLatin1String("502"))) << ftp.ErrorDescription().toStdString();
    EXPECT_EQ(trail.filter(QRegularExpression(QStringLiteral("^0"))).size(), 0);
    EXPECT_TRUE(ftp.Connected());

    servers().writeWebFile(QStringLiteral("dated.htm"), "x");
    ASSERT_EQ(ftp.Command(QStringLiteral("MDTM /www/dated.htm")), 1) << ftp.ErrorDescription().toStdString();
    EXPECT_TRUE(trail.last().contains(QRegularExpression(QStringLiteral("^1213 \\d{14}$")))) << trail.last().toStdString();
}
