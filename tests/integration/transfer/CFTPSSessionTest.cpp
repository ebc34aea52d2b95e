// Logon, the mapping of pages to server folders on a real server, and the
// reuse of one session by many operations and clients.

#include "TransferSite.h"
#include "transfer/CFTPS.h"
#include "transfer/TransferActionScope.h"

#include <QJsonArray>

#include <gtest/gtest.h>

using namespace transfer_test;

namespace {

class CFTPSSession : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        useSites({demoSite()});
    }
    void TearDown() override
    {
        servers().clearFtpFaults();
        MError::ClearError();
    }
};

QByteArray fetch(CFTPS &client, const QString &path)
{
    QByteArray data;
    EXPECT_EQ(client.GetASCIIFile(path, data), 1) << MError::ErrorDescription().toStdString();
    return data;
}

} // namespace

TEST_F(CFTPSSession, PagesMapToTheWebRootForEveryShapeOfRecord)
{
    const QByteArray index = servers().readWebFile(QStringLiteral("index.htm"));
    const QByteArray product = servers().readWebFile(QStringLiteral("products/index.htm"));
    ASSERT_FALSE(index.isEmpty());

    SiteRecord slashes = demoSite();
    slashes.ftproot = QStringLiteral("www/");
    SiteRecord absolute = webmasterSite();
    absolute.userid = QString::fromLatin1(TestServers::User);
    absolute.password = QString::fromLatin1(TestServers::Password);
    absolute.useabsol = true;
    absolute.useremotef = QStringLiteral("1");
    absolute.remotefolder = QStringLiteral("/www");
    SiteRecord scheme = demoSite();
    scheme.baseurl = QStringLiteral("FTP://") + ftpAddress();

    const std::vector<SiteRecord> records = {demoSite(), slashes, webmasterSite(), absolute, scheme};
    for (size_t i = 0; i < records.size(); ++i) {
        SCOPED_TRACE(i);
        useSites(records, static_cast<long>(i));
        CFTPS client;
        EXPECT_EQ(fetch(client, QStringLiteral("/index.htm")), index);
        EXPECT_EQ(fetch(client, QStringLiteral("/products/index.htm")), product);
        // A user's home part in the address is not a folder on the server.
        EXPECT_EQ(fetch(client, QStringLiteral("/~anna/products/index.htm")), product);
        client.CloseDown();
    }
}

TEST_F(CFTPSSession, AbsoluteRemoteFolderThatIsEmptyIsARefusedFolderChange)
{
    SiteRecord site = demoSite();
    site.useabsol = true;
    site.remotefolder.clear();
    useSites({site});
    CFTPS client;
    ASSERT_EQ(client.Logon(), 1);
    EXPECT_NE(client.ChangeToRootFolder(), 1);
    EXPECT_NE(MError::ErrorNumber(), 0);
}

TEST_F(CFTPSSession, ARefusedRelativeFolderIsTriedOnceAsAbsolute)
{
    CFTPS client;
    ASSERT_EQ(client.Logon(), 1);
    ASSERT_EQ(client.ChangeFolder(QStringLiteral("www/products")), 1);
    // Relative to www/products there is no "www/products"; from the top there is.
    EXPECT_EQ(client.ChangeFolder(QStringLiteral("www/products")), 1);
    EXPECT_EQ(client.ChangeFolder(QStringLiteral("no/such/folder")), -1);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CFTPS.ChangeFolder"));
}

TEST_F(CFTPSSession, InitTakesSchemeOnlyInSmallLettersAndNamesItsFailures)
{
    CFTPS client;
    EXPECT_EQ(client.Init(servers().httpBase(), QStringLiteral("ftp://") + ftpAddress(),
                          QString::fromLatin1(TestServers::WebUser),
                          QString::fromLatin1(TestServers::WebPassword)),
              1);
    EXPECT_EQ(client.HTTPURL(), servers().httpBase());

    CFTPS wrongPassword;
    EXPECT_EQ(wrongPassword.Init(servers().httpBase(), ftpAddress(), QStringLiteral("demo"),
                                 QStringLiteral("wrong")),
              CFTPS::ProtocolFailure);
    EXPECT_EQ(MError::ErrorNumber(), CFTPS::ProtocolFailure);
    EXPECT_EQ(MError::ErrorDescription(), QStringLiteral("Incorrect username."));
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CFTPS.Init"));
    MError::ClearError();

    CFTPS capitals;
    EXPECT_LT(capitals.Init(servers().httpBase(), QStringLiteral("FTP://") + ftpAddress(),
                            QStringLiteral("demo"), QStringLiteral("demo1234")),
              0);
    EXPECT_NE(MError::ErrorNumber(), 0);
}

TEST_F(CFTPSSession, OperationsAndClientsOfOneSiteShareOneLogin)
{
    servers().clearFtpLog();
    CFTPS main;
    EXPECT_EQ(fetch(main, QStringLiteral("/index.htm")).isEmpty(), false);
    fetch(main, QStringLiteral("/products/index.htm"));
    {
        CFTPS second; // made for a moment by a dialog or a save
        fetch(second, QStringLiteral("/index.htm"));
        EXPECT_EQ(second.RenameFile(QStringLiteral("/images.htm"), QStringLiteral("images2.htm")), 1);
        EXPECT_EQ(second.RenameFile(QStringLiteral("/images2.htm"), QStringLiteral("images.htm")), 1);
    }
    fetch(main, QStringLiteral("/index.htm"));
    EXPECT_EQ(servers().ftpLogins(), 1);

    // Clients made one after another within one action share a login too
    // (another account here, so that the main client's connection is not it).
    servers().clearFtpLog();
    useSites({demoSite(), webmasterSite()}, 1);
    {
        TransferActionScope action;
        for (int i = 0; i < 3; ++i) {
            CFTPS moment;
            fetch(moment, QStringLiteral("/index.htm"));
        }
    }
    EXPECT_EQ(servers().ftpLogins(), 1);
    useSites({demoSite()});

    // An explicit second logon starts over.
    EXPECT_EQ(main.Logon(), 1);
    EXPECT_EQ(servers().ftpLogins(), 2);
    EXPECT_GE(servers().ftpCommands(QStringLiteral("QUIT")), 1);
}

TEST_F(CFTPSSession, ADroppedSessionIsLoggedOnAgainByTheNextOperation)
{
    CFTPS client;
    fetch(client, QStringLiteral("/index.htm"));
    servers().clearFtpLog();
    servers().setFtpFaults({{QStringLiteral("drop_before_n"), 1}});
    EXPECT_EQ(fetch(client, QStringLiteral("/index.htm")), servers().readWebFile(QStringLiteral("index.htm")));
    EXPECT_EQ(servers().ftpLogins(), 1);
    EXPECT_EQ(MError::ErrorNumber(), 0);
}

TEST_F(CFTPSSession, FileOperationsAndTheirExpectedRefusals)
{
    CFTPS client;
    servers().writeWebFile(QStringLiteral("ops/a.htm"), "a\r\n");
    EXPECT_EQ(client.CopyFile(QStringLiteral("/ops/a.htm"), QStringLiteral("b.htm")), 1);
    EXPECT_EQ(servers().readWebFile(QStringLiteral("ops/b.htm")), QByteArray("a\r\n"));
    EXPECT_EQ(client.RemoveFile(QStringLiteral("/ops/b.htm")), 1);
    EXPECT_FALSE(webFileExists(QStringLiteral("ops/b.htm")));
    EXPECT_EQ(client.RemoveFile(QStringLiteral("/ops/b.htm")), -1);
    EXPECT_EQ(MError::ErrorNumber(), 0);

    EXPECT_EQ(client.CreateDir(QStringLiteral("/ops/sub")), 1);
    EXPECT_EQ(client.CreateDir(QStringLiteral("/ops/sub")), -1);
    EXPECT_EQ(client.RemoveDir(QStringLiteral("/ops/sub")), 1);
    EXPECT_EQ(client.RemoveDir(QStringLiteral("/ops/sub")), -1);
    EXPECT_EQ(MError::ErrorNumber(), 0);

    EXPECT_EQ(client.SaveFile(QStringLiteral("/ops/missing.htm"), servers().ftpRoot() + QStringLiteral("/x")), -1);
    EXPECT_EQ(MError::ErrorNumber(), 0);

    EXPECT_EQ(client.CreateFolder(QStringLiteral("/"), QStringLiteral("ctl")), 1);
    EXPECT_TRUE(QFile::exists(servers().webRoot() + QStringLiteral("/ctl")));
    EXPECT_EQ(client.CreateFolder(QStringLiteral("/"), QStringLiteral("ctl")), 1);

    servers().setFtpFaults({{QStringLiteral("readonly"), QJsonArray{QStringLiteral("www")}}});
    EXPECT_EQ(client.CreateFolder(QStringLiteral("/"), QStringLiteral("locked")), CFTPS::WriteRefused);
    EXPECT_EQ(MError::ErrorDescription(),
              QStringLiteral("The folder locked couldn't be created. The folder is probably write-protected "
                             "or locked. Resolve this matter on the FTP server and Vindrell will work."));
}

TEST_F(CFTPSSession, SendFileJoinsFolderAndNameWithOneSlash)
{
    const QString local = servers().webRoot() + QStringLiteral("/../upload-me.gif");
    QFile file(local);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("GIF89a\r\n\0\1", 10);
    file.close();
    CFTPS client;
    EXPECT_EQ(client.SendFile(local, QStringLiteral("/products/")), 1);
    EXPECT_EQ(servers().readWebFile(QStringLiteral("products/upload-me.gif")), QByteArray("GIF89a\r\n\0\1", 10));

    EXPECT_EQ(client.SendFile(local + QStringLiteral(".none"), QStringLiteral("/")), 0);
    EXPECT_EQ(MError::ErrorNumber(), 65547);
    EXPECT_EQ(MError::ErrorDescription(), QStringLiteral("The specified file does not exist"));
}

TEST_F(CFTPSSession, PassiveModeTestAnswersForTheRecord)
{
    SiteRecord wrong = demoSite();
    wrong.password = QStringLiteral("wrong-for-the-passive-test");
    useSites({demoSite(), wrong});
    CFTPS client;
    bool passive = false;
    EXPECT_EQ(client.CanUsePassiveMode(0, passive), 1);
    EXPECT_TRUE(passive);
    EXPECT_FALSE(client.Connected());

    EXPECT_EQ(client.CanUsePassiveMode(1, passive), CFTPS::ProtocolFailure);
}
