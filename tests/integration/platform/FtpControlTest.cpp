// The FTP control against the real test server: one login per object, the
// folder it stands in, listings, transfers in both modes, raw commands and
// each class of failure provoked for real.

#include "platform/CurlErrorMap.h"
#include "platform/FtpControl.h"

#include "TestServers.h"
#include "VsftpdServer.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

TestServers &servers()
{
    return TestServers::shared();
}

struct Listed
{
    QString name;
    bool isDir;
    qint64 size;
};

class FtpControlTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ftp.RemoteHost = QStringLiteral("127.0.0.1");
        ftp.RemotePort = servers().ftpPort();
        ftp.User = QString::fromLatin1(TestServers::User);
        ftp.Password = QString::fromLatin1(TestServers::Password);
    }

    void TearDown() override
    {
        servers().clearFtpFaults();
        ftp.Logoff();
    }

    void logon()
    {
        ASSERT_EQ(ftp.Logon(), 1) << ftp.ErrorDescription().toStdString();
    }

    QList<Listed> listLong()
    {
        QList<Listed> entries;
        QObject::connect(&ftp, &FtpControl::DirList, &ftp,
                         [&entries](const QString &, const QString &name, bool isDir, qint64 size,
                                    const QDateTime &) { entries.append({name, isDir, size}); });
        EXPECT_EQ(ftp.ListDirectoryLong(), 1) << ftp.ErrorDescription().toStdString();
        QObject::disconnect(&ftp, &FtpControl::DirList, &ftp, nullptr);
        return entries;
    }

    QString localFile(const QString &name, const QByteArray &bytes = QByteArray())
    {
        const QString path = local.filePath(name);
        if (!bytes.isNull()) {
            QFile file(path);
            file.open(QIODevice::WriteOnly);
            file.write(bytes);
        }
        return path;
    }

    static QByteArray readFile(const QString &path)
    {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    FtpControl ftp;
    QTemporaryDir local;
};

const Listed *find(const QList<Listed> &entries, const QString &name)
{
    for (const Listed &entry : entries)
        if (entry.name == name)
            return &entry;
    return nullptr;
}

} // namespace

TEST_F(FtpControlTest, OneObjectIsOneLoginAcrossCalls)
{
    servers().clearFtpLog();
    QStringList trail;
    QObject::connect(&ftp, &FtpControl::PITrail, &ftp,
                     [&trail](int direction, const QString &line) {
                         trail << QString::number(direction) + QLatin1Char(' ') + line;
                     });
    logon();
    EXPECT_TRUE(ftp.Connected());
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/"));
    ASSERT_EQ(ftp.SetRemotePath(QStringLiteral("www")), 1);
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/www"));
    listLong();
    ftp.RemoteFile = QStringLiteral("index.htm");
    ftp.Download();
    EXPECT_EQ(ftp.Logoff(), 1);
    EXPECT_FALSE(ftp.Connected());
    EXPECT_EQ(servers().ftpLogins(), 1);
    EXPECT_EQ(servers().ftpCommands(QStringLiteral("QUIT")), 1);
    EXPECT_TRUE(trail.contains(QStringLiteral("0 PASS ****")));
    EXPECT_TRUE(trail.contains(QStringLiteral("0 USER demo")));
    EXPECT_TRUE(std::any_of(trail.begin(), trail.end(),
                            [](const QString &l) { return l.startsWith(QStringLiteral("1 230")); }));
}

TEST_F(FtpControlTest, LogonAgainStartsAFreshSessionInTheNewLoginFolder)
{
    logon();
    ftp.User = QString::fromLatin1(TestServers::WebUser);
    ftp.Password = QString::fromLatin1(TestServers::WebPassword);
    logon();
    // The web account's server-side root is its login folder.
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/"));
    ftp.RemoteFile = QStringLiteral("index.htm");
    QByteArray page;
    QObject::connect(&ftp, &FtpControl::Transfer, &ftp,
                     [&page](qint64, const QByteArray &text) { page += text; });
    ASSERT_EQ(ftp.Download(), 1);
    EXPECT_EQ(page, servers().readWebFile(QStringLiteral("index.htm")));
}

TEST_F(FtpControlTest, LongListingGivesFilesFoldersAndLinks)
{
    QDir(servers().webRoot()).mkpath(QStringLiteral("listed/sub"));
    servers().writeWebFile(QStringLiteral("listed/five.txt"), "12345");
    QFile::link(QStringLiteral("sub"), servers().webRoot() + QStringLiteral("/listed/shortcut"));
    logon();
    ASSERT_EQ(ftp.SetRemotePath(QStringLiteral("/www/listed")), 1);
    for (const char *style : {"unix", "dos"}) {
        servers().setFtpFaults({{QStringLiteral("list_style"), QString::fromLatin1(style)}});
        const QList<Listed> entries = listLong();
        ASSERT_TRUE(find(entries, QStringLiteral("five.txt"))) << style;
        EXPECT_EQ(find(entries, QStringLiteral("five.txt"))->size, 5);
        EXPECT_FALSE(find(entries, QStringLiteral("five.txt"))->isDir);
        ASSERT_TRUE(find(entries, QStringLiteral("sub"))) << style;
        EXPECT_TRUE(find(entries, QStringLiteral("sub"))->isDir);
        EXPECT_EQ(ftp.FileSize(), entries.last().size);
    }
    servers().setFtpFaults({{QStringLiteral("list_style"), QStringLiteral("unix")}});
    EXPECT_TRUE(find(listLong(), QStringLiteral("shortcut -> sub")));

    QStringList names;
    QObject::connect(&ftp, &FtpControl::DirList, &ftp,
                     [&names](const QString &, const QString &name) { names << name; });
    ASSERT_EQ(ftp.ListDirectory(), 1);
    names.sort();
    EXPECT_EQ(names, QStringList({QStringLiteral("five.txt"), QStringLiteral("shortcut"),
                                  QStringLiteral("sub")}));
}

TEST_F(FtpControlTest, TransferModesAndLineEnds)
{
    const QByteArray crlf("one\r\ntwo\r\n");
    logon();
    ASSERT_EQ(ftp.SetRemotePath(QStringLiteral("www")), 1);
    ftp.LocalFile = localFile(QStringLiteral("up.txt"), crlf);
    for (int mode : {0, 2}) {
        ftp.TransferMode = mode;
        ftp.RemoteFile = QStringLiteral("binary%1.txt").arg(mode);
        ASSERT_EQ(ftp.Upload(), 1) << ftp.ErrorDescription().toStdString();
        EXPECT_EQ(servers().readWebFile(ftp.RemoteFile), crlf) << mode;
    }
    ftp.TransferMode = 1;
    ftp.RemoteFile = QStringLiteral("ascii.txt");
    ASSERT_EQ(ftp.Upload(), 1);

    // Back again: binary keeps the bytes, ASCII gives local LF line ends.
    ftp.Overwrite = true;
    ftp.LocalFile = localFile(QStringLiteral("down.txt"));
    ftp.TransferMode = 2;
    ftp.RemoteFile = QStringLiteral("binary2.txt");
    ASSERT_EQ(ftp.Download(), 1);
    EXPECT_EQ(readFile(ftp.LocalFile), crlf);
    ftp.TransferMode = 1;
    ftp.RemoteFile = QStringLiteral("ascii.txt");
    ASSERT_EQ(ftp.Download(), 1);
    EXPECT_EQ(readFile(ftp.LocalFile), QByteArray("one\ntwo\n"));
}

TEST_F(FtpControlTest, DownloadWithoutLocalFileComesThroughTransferEvents)
{
    servers().writeWebFile(QStringLiteral("events.htm"), "<p>\r\nevents</p>");
    logon();
    ASSERT_EQ(ftp.SetRemotePath(QStringLiteral("www")), 1);
    QByteArray received;
    int starts = 0;
    int ends = 0;
    QObject::connect(&ftp, &FtpControl::Transfer, &ftp,
                     [&received](qint64, const QByteArray &text) { received += text; });
    QObject::connect(&ftp, &FtpControl::StartTransfer, &ftp, [&starts] { ++starts; });
    QObject::connect(&ftp, &FtpControl::EndTransfer, &ftp, [&ends] { ++ends; });
    ftp.RemoteFile = QStringLiteral("events.htm");
    ASSERT_EQ(ftp.Download(), 1);
    EXPECT_EQ(received, QByteArray("<p>\r\nevents</p>"));
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(ends, 1);
}

TEST_F(FtpControlTest, DownloadKeepsAnExistingFileUnlessOverwrite)
{
    logon();
    ftp.LocalFile = localFile(QStringLiteral("kept.htm"), "mine");
    ftp.RemoteFile = QStringLiteral("www/index.htm");
    EXPECT_EQ(ftp.Download(), 0);
    EXPECT_EQ(readFile(ftp.LocalFile), QByteArray("mine"));
    // A failed download leaves the file as it was, even with Overwrite.
    ftp.Overwrite = true;
    ftp.RemoteFile = QStringLiteral("missing.htm");
    EXPECT_EQ(ftp.Download(), 0);
    EXPECT_EQ(ftp.ErrorNumber(), 20142);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QStringLiteral("550")));
    EXPECT_EQ(readFile(ftp.LocalFile), QByteArray("mine"));
}

TEST_F(FtpControlTest, RawCommandsRenameDeleteAndChangeFolder)
{
    servers().writeWebFile(QStringLiteral("old.htm"), "x");
    logon();
    ASSERT_EQ(ftp.Command(QStringLiteral("CWD www")), 1);
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/www"));
    ASSERT_EQ(ftp.Rename(QStringLiteral("old.htm"), QStringLiteral("new.htm")), 1);
    EXPECT_EQ(servers().readWebFile(QStringLiteral("new.htm")), QByteArray("x"));
    ASSERT_EQ(ftp.MakeDirectory(QStringLiteral("made")), 1);
    EXPECT_TRUE(QDir(servers().webRoot() + QStringLiteral("/made")).exists());
    ASSERT_EQ(ftp.RemoveDirectory(QStringLiteral("made")), 1);
    ASSERT_EQ(ftp.Command(QStringLiteral("DELE new.htm")), 1);
    EXPECT_FALSE(QFile::exists(servers().webRoot() + QStringLiteral("/new.htm")));

    EXPECT_EQ(ftp.Command(QStringLiteral("DELE new.htm")), 0);
    EXPECT_EQ(ftp.ErrorNumber(), 20142);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QStringLiteral("550")));
    EXPECT_EQ(ftp.ErrorSource(), QStringLiteral("FtpControl"));

    EXPECT_EQ(ftp.SetRemotePath(QStringLiteral("/no/such/folder")), 0);
    EXPECT_EQ(ftp.ErrorNumber(), 20142);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QStringLiteral("550")));
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/www"));
    // A listing after a refused change still lists the folder it stands in.
    ftp.RemoteFile.clear();
    EXPECT_TRUE(find(listLong(), QStringLiteral("index.htm")));
}

TEST_F(FtpControlTest, WritesRefusedByTheServer)
{
    logon();
    ASSERT_EQ(ftp.SetRemotePath(QStringLiteral("www")), 1);
    ftp.LocalFile = localFile(QStringLiteral("w.htm"), "w");
    servers().setFtpFaults({{QStringLiteral("fail550"), QJsonArray{QStringLiteral("locked.htm")}},
                            {QStringLiteral("fail550_commands"), QJsonArray{QStringLiteral("STOR")}}});
    ftp.RemoteFile = QStringLiteral("locked.htm");
    EXPECT_EQ(ftp.Upload(), 0);
    EXPECT_EQ(ftp.ErrorNumber(), 20142);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QStringLiteral("550")));
    servers().setFtpFaults({{QStringLiteral("readonly"), QJsonArray{QStringLiteral("www/images")}}});
    EXPECT_EQ(ftp.MakeDirectory(QStringLiteral("images/new")), 0);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QStringLiteral("550")));
    // The session goes on after refusals.
    ftp.RemoteFile = QStringLiteral("allowed.htm");
    EXPECT_EQ(ftp.Upload(), 1) << ftp.ErrorDescription().toStdString();
}

TEST_F(FtpControlTest, LoginAndConnectionFailures)
{
    ftp.Password = QStringLiteral("wrong");
    EXPECT_EQ(ftp.Logon(), 0);
    EXPECT_EQ(ftp.ErrorNumber(), 20142);
    EXPECT_TRUE(ftp.ErrorDescription().startsWith(QStringLiteral("530")));
    EXPECT_FALSE(ftp.Connected());

    ftp.RemoteHost = QStringLiteral("no-such-host.invalid");
    EXPECT_EQ(ftp.Logon(), 0);
    EXPECT_EQ(ftp.ErrorNumber(), 26002);

    // A port nobody listens on: the test server's, once it is closed.
    QTcpServer probe;
    ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
    const quint16 closed = probe.serverPort();
    probe.close();
    ftp.RemoteHost = QStringLiteral("127.0.0.1");
    ftp.RemotePort = closed;
    EXPECT_EQ(ftp.Logon(), 0);
    EXPECT_EQ(ftp.ErrorNumber(), 25061);
}

TEST_F(FtpControlTest, DroppedDataConnection)
{
    logon();
    ASSERT_EQ(ftp.SetRemotePath(QStringLiteral("www")), 1);
    servers().setFtpFaults({{QStringLiteral("drop_on"), QStringLiteral("^RETR")}});
    ftp.RemoteFile = QStringLiteral("index.htm");
    EXPECT_EQ(ftp.Download(), 0);
    EXPECT_EQ(ftp.ErrorNumber(), 20302);
}

TEST_F(FtpControlTest, AbortFromATransferEventEndsALargeDownload)
{
    QByteArray big(8 * 1024 * 1024, 'a');
    servers().writeWebFile(QStringLiteral("big.bin"), big);
    logon();
    ASSERT_EQ(ftp.SetRemotePath(QStringLiteral("www")), 1);
    qint64 seen = 0;
    QObject::connect(&ftp, &FtpControl::Transfer, &ftp, [this, &seen](qint64 bytes, const QByteArray &) {
        seen = bytes;
        if (bytes >= 64 * 1024)
            ftp.Abort();
    });
    ftp.RemoteFile = QStringLiteral("big.bin");
    EXPECT_EQ(ftp.Download(), 0);
    EXPECT_EQ(ftp.ErrorNumber(), ControlError::Aborted);
    EXPECT_LT(seen, big.size());
    EXPECT_TRUE(ftp.Idle());
    // The control serves the next call.
    QObject::disconnect(&ftp, &FtpControl::Transfer, &ftp, nullptr);
    servers().writeWebFile(QStringLiteral("small.txt"), "ok");
    ftp.RemoteFile = QStringLiteral("small.txt");
    QByteArray text;
    QObject::connect(&ftp, &FtpControl::Transfer, &ftp,
                     [&text](qint64, const QByteArray &chunk) { text += chunk; });
    EXPECT_EQ(ftp.Download(), 1) << ftp.ErrorDescription().toStdString();
    EXPECT_EQ(text, QByteArray("ok"));
}

TEST(FtpControlOtherServer, ListingInItsDialect)
{
    VsftpdServer vsftpd;
    QDir(vsftpd.root()).mkpath(QStringLiteral("folder"));
    QFile file(vsftpd.root() + QStringLiteral("/page one.htm"));
    file.open(QIODevice::WriteOnly);
    file.write("1234567");
    file.close();
    QFile::link(QStringLiteral("folder"), vsftpd.root() + QStringLiteral("/link"));

    FtpControl ftp;
    ftp.RemoteHost = QStringLiteral("127.0.0.1");
    ftp.RemotePort = vsftpd.port();
    ftp.User = QString::fromLatin1(VsftpdServer::User);
    ASSERT_EQ(ftp.Logon(), 1) << ftp.ErrorDescription().toStdString();
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/"));
    QList<Listed> entries;
    QObject::connect(&ftp, &FtpControl::DirList, &ftp,
                     [&entries](const QString &, const QString &name, bool isDir, qint64 size) {
                         entries.append({name, isDir, size});
                     });
    ASSERT_EQ(ftp.ListDirectoryLong(), 1) << ftp.ErrorDescription().toStdString();
    ASSERT_EQ(entries.size(), 3);
    ASSERT_TRUE(find(entries, QStringLiteral("page one.htm")));
    EXPECT_EQ(find(entries, QStringLiteral("page one.htm"))->size, 7);
    ASSERT_TRUE(find(entries, QStringLiteral("folder")));
    EXPECT_TRUE(find(entries, QStringLiteral("folder"))->isDir);
    EXPECT_TRUE(find(entries, QStringLiteral("link -> folder")));
    EXPECT_EQ(ftp.SetRemotePath(QStringLiteral("folder")), 1);
    EXPECT_EQ(ftp.RemotePath(), QStringLiteral("/folder"));
}

TEST_F(FtpControlTest, ActiveModeCarriesListingsAndFiles)
{
    servers().clearFtpLog();
    ftp.Passive = false;
    logon();
    ASSERT_EQ(ftp.SetRemotePath(QStringLiteral("www")), 1);
    EXPECT_TRUE(find(listLong(), QStringLiteral("index.htm")));
    QByteArray page;
    QObject::connect(&ftp, &FtpControl::Transfer, &ftp,
                     [&page](qint64, const QByteArray &text) { page += text; });
    ftp.RemoteFile = QStringLiteral("index.htm");
    ASSERT_EQ(ftp.Download(), 1) << ftp.ErrorDescription().toStdString();
    EXPECT_EQ(page, servers().readWebFile(QStringLiteral("index.htm")));
    EXPECT_GE(servers().ftpCommands(QStringLiteral("PORT")) + servers().ftpCommands(QStringLiteral("EPRT")), 2);
}

TEST_F(FtpControlTest, TimeoutEndsACallToAServerThatDoesNotAnswer)
{
    logon();
    ftp.Timeout = 1;
    servers().setFtpFaults({{QStringLiteral("delay_ms"), 3000}});
    EXPECT_EQ(ftp.SetRemotePath(QStringLiteral("www")), 0);
    EXPECT_EQ(ftp.ErrorNumber(), ControlError::TimedOut);
}
