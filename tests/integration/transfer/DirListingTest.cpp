// Folder listings from real servers: pyftpdlib by MLSD (FEAT asked once),
// the same server in DOS form by LIST, vsftpd in its Unix form; the site
// tree filled and filled again; names no listing may pass on.

#include "TransferSite.h"
#include "VsftpdServer.h"
#include "support/ErrorLog.h"
#include "transfer/CFTPS.h"
#include "transfer/DirTreeIndex.h"

#include <QDir>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace transfer_test;

namespace {

class DirListingSite : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        useSites({demoSite()});
        QDir(webPath(QStringLiteral("listing"))).removeRecursively();
        writeFileAt(webPath(QStringLiteral("listing/index.htm")), "index");
        writeFileAt(webPath(QStringLiteral("listing/notes.txt")), "12345");
        writeFileAt(webPath(QStringLiteral("listing/my page.HTM")), "x");
        writeFileAt(webPath(QStringLiteral("listing/.htaccess")), "x");
        writeFileAt(webPath(QStringLiteral("listing/sub/deeper/leaf.html")), "leaf");
        QDir().mkpath(webPath(QStringLiteral("listing/empty")));
        QFile::link(webPath(QStringLiteral("listing/sub")), webPath(QStringLiteral("listing/shortcut")));
        servers().clearFtpLog();
    }
    void TearDown() override
    {
        servers().clearFtpFaults();
        QDir(webPath(QStringLiteral("listing"))).removeRecursively();
        MError::ClearError();
    }

    QString key(const QString &relative) const { return servers().httpBase() + QStringLiteral("/") + relative; }
};

} // namespace

TEST_F(DirListingSite, MlsdWhereOfferedAndFeatAskedOncePerConnection)
{
    CFTPS client;
    QStringList files;
    ASSERT_EQ(client.GetFiles_In_Dir(QStringLiteral("listing/dummy.htm"), files), 1);
    EXPECT_EQ(QSet<QString>(files.begin(), files.end()),
              QSet<QString>({"index.htm", "notes.txt", "my page.HTM", ".htaccess", "sub", "empty", "shortcut"}));
    QStringList folders;
    ASSERT_EQ(client.GetSubFolders(QStringLiteral("www/listing"), folders), 1);
    EXPECT_EQ(QSet<QString>(folders.begin(), folders.end()), QSet<QString>({"sub", "empty", "shortcut"}));
    EXPECT_EQ(client.GetSubFolders(QStringLiteral("www/listing/empty"), folders), -1);
    EXPECT_EQ(servers().ftpCommands(QStringLiteral("FEAT")), 1);
    EXPECT_EQ(servers().ftpCommands(QStringLiteral("MLSD")), 3);
    EXPECT_EQ(servers().ftpCommands(QStringLiteral("LIST")), 0);
}

TEST_F(DirListingSite, DosListingOfAServerWithoutMlsd)
{
    servers().setFtpFaults({{"list_style", "dos"}, {"no_mlsd", true}});
    CFTPS client;
    QList<FILEITEM> items;
    ASSERT_EQ(client.GetFiles_In_DirEx(QStringLiteral("listing/dummy.htm"), items), 1);
    QStringList paths;
    for (const FILEITEM &item : items)
        paths << item.strPath + (item.lType == 0 ? QStringLiteral("/") : QString());
    // Parents before children; the DOS form shows a link as the folder it is.
    EXPECT_TRUE(paths.contains(QStringLiteral("/www/listing/sub/")));
    EXPECT_TRUE(paths.contains(QStringLiteral("/www/listing/sub/deeper/leaf.html")));
    EXPECT_LT(paths.indexOf(QStringLiteral("/www/listing/sub/deeper/")),
              paths.indexOf(QStringLiteral("/www/listing/sub/deeper/leaf.html")));
    EXPECT_TRUE(paths.contains(QStringLiteral("/www/listing/my page.HTM")));
    const FILEITEM notes = *std::find_if(items.begin(), items.end(),
                                         [](const FILEITEM &item) { return item.strName == QLatin1String("notes.txt"); });
    EXPECT_EQ(notes.lSize, 5);
    EXPECT_GT(servers().ftpCommands(QStringLiteral("LIST")), 0);
    EXPECT_EQ(servers().ftpCommands(QStringLiteral("MLSD")), 0);
}

TEST_F(DirListingSite, SiteTreeFilledOnceHoweverOftenAFolderIsExpanded)
{
    CFTPS client;
    DirTreeIndex tree;
    const QString root = servers().httpBase();
    ASSERT_EQ(client.GetDirFiles(tree, root), 1);
    ASSERT_TRUE(tree.Contains(root));
    EXPECT_FALSE(tree.Contains(QStringLiteral("##wait_") + root));
    ASSERT_TRUE(tree.Contains(key(QStringLiteral("listing"))));
    EXPECT_EQ(tree.Children(key(QStringLiteral("listing"))), QStringList({QStringLiteral("##wait_") + key(QStringLiteral("listing"))}));

    ASSERT_EQ(client.GetDirFiles(tree, key(QStringLiteral("listing"))), 1);
    const QStringList children = tree.Children(key(QStringLiteral("listing")));
    // Folders first (a link among them), then other files, then .htm/.html;
    // ".HTM" is no .htm.
    ASSERT_EQ(children.size(), 7);
    QStringList texts;
    for (const QString &child : children)
        texts << tree.NodeOf(child).text;
    EXPECT_EQ(QSet<QString>(texts.begin(), texts.begin() + 3), QSet<QString>({"sub", "empty", "shortcut"}));
    EXPECT_EQ(QSet<QString>(texts.begin() + 3, texts.begin() + 6), QSet<QString>({"notes.txt", ".htaccess", "my page.HTM"}));
    EXPECT_EQ(texts.last(), QStringLiteral("index.htm"));
    EXPECT_EQ(tree.NodeOf(key(QStringLiteral("listing/index.htm"))).image, 4);
    EXPECT_EQ(tree.NodeOf(key(QStringLiteral("listing/sub"))).image, 1);

    const long count = tree.Count();
    ASSERT_EQ(client.GetDirFiles(tree, key(QStringLiteral("listing"))), 1);
    EXPECT_EQ(tree.Count(), count);
    ASSERT_EQ(client.GetDirBranch(tree, key(QStringLiteral("listing/empty"))), 1);
    EXPECT_TRUE(tree.Children(key(QStringLiteral("listing/empty"))).isEmpty());
    EXPECT_EQ(client.GetDirFiles(tree, key(QStringLiteral("listing/gone"))), -3);
    EXPECT_NE(MError::ErrorNumber(), 0);
    MError::ClearError();
    EXPECT_EQ(client.GetDirBranch(tree, key(QStringLiteral("listing/gone"))), -3);
    EXPECT_EQ(MError::ErrorNumber(), 0);
}

TEST_F(DirListingSite, WholeTreeByLevelsAndOneFilesInfo)
{
    CFTPS client;
    ASSERT_EQ(client.Logon(), 1);
    ASSERT_EQ(client.ChangeFolder(QStringLiteral("/www/listing")), 1);
    DIRDATA all;
    ASSERT_EQ(client.GetDir(all), 1);
    const auto leaf = std::find_if(all.Entries.begin(), all.Entries.end(), [](const DIRENTRY &entry) {
        return entry.strName == QLatin1String("leaf.html") && entry.strPath == QLatin1String("/www/listing/sub/deeper");
    });
    ASSERT_NE(leaf, all.Entries.end());
    EXPECT_EQ(leaf->lLevel, 5);
    EXPECT_TRUE(leaf->bPage);
    EXPECT_GE(all.lMaxLevel, 5);
    // The link is walked as the folder it points to.
    EXPECT_TRUE(std::any_of(all.Entries.begin(), all.Entries.end(), [](const DIRENTRY &entry) {
        return entry.strPath == QLatin1String("/www/listing/shortcut") && entry.strName == QLatin1String("deeper");
    }));

    DIRDATA level;
    ASSERT_EQ(client.GetDirLevel(level, 1), 1);
    EXPECT_TRUE(std::any_of(level.Entries.begin(), level.Entries.end(),
                            [](const DIRENTRY &entry) { return entry.strName == QLatin1String("www") && entry.lType == 1; }));
    ASSERT_EQ(client.GetDirLevel(level, 2), 1);
    EXPECT_TRUE(std::any_of(level.Entries.begin(), level.Entries.end(),
                            [](const DIRENTRY &entry) { return entry.strName == QLatin1String("listing"); }));

    QString size, time, path;
    ASSERT_EQ(client.GetFileInfo(QStringLiteral("listing/notes.txt"), size, time, path), 1);
    EXPECT_EQ(size, QStringLiteral("5"));
    EXPECT_EQ(path, QStringLiteral("/www/listing/notes.txt"));
    EXPECT_EQ(time.size(), 16) << time.toStdString();
}

TEST_F(DirListingSite, NamesThatCouldLeadElsewhereAreRefusedAndLogged)
{
    bool exists = false;
    ErrorLog::Take(exists);
    writeFileAt(webPath(QStringLiteral("listing/..\\..\\evil.htm")), "x");
    writeFileAt(webPath(QStringLiteral("listing/two\nlines.htm")), "x");
    for (const bool dos : {false, true}) {
        if (dos)
            servers().setFtpFaults({{"list_style", "dos"}, {"no_mlsd", true}});
        CFTPS client;
        QStringList files;
        ASSERT_EQ(client.GetFiles_In_Dir(QStringLiteral("listing/dummy.htm"), files), 1);
        for (const QString &name : files) {
            EXPECT_FALSE(name.contains(QLatin1Char('\\'))) << name.toStdString();
            EXPECT_FALSE(name.contains(QLatin1String("lines"))) << name.toStdString();
        }
        EXPECT_TRUE(files.contains(QStringLiteral("index.htm")));
    }
    const QString log = ErrorLog::Take(exists);
    EXPECT_GE(log.count(QStringLiteral("Listing entry refused")), 2) << log.toStdString();
}

TEST(DirListingVsftpd, UnixListOfAServerWithoutMlsd)
{
    VsftpdServer vsftpd;
    QDir(vsftpd.root()).mkpath(QStringLiteral("folder"));
    QFile page(vsftpd.root() + QStringLiteral("/page one.htm"));
    ASSERT_TRUE(page.open(QIODevice::WriteOnly));
    page.write("1234567");
    page.close();
    QFile::link(QStringLiteral("folder"), vsftpd.root() + QStringLiteral("/link"));
    SiteRecord site;
    site.userid = QString::fromLatin1(VsftpdServer::User);
    site.password = QStringLiteral("guest");
    site.baseurl = QStringLiteral("127.0.0.1:%1").arg(vsftpd.port());
    site.baseaddress = QStringLiteral("http://vsftpd.invalid");
    useSites({site});
    CFTPS client;
    DirTreeIndex tree;
    ASSERT_EQ(client.GetDirFiles(tree), 1) << MError::ErrorDescription().toStdString();
    const QString root = QStringLiteral("http://vsftpd.invalid");
    EXPECT_EQ(tree.NodeOf(root + QStringLiteral("/page one.htm")).image, 4);
    EXPECT_EQ(tree.NodeOf(root + QStringLiteral("/folder")).image, 1);
    EXPECT_EQ(tree.NodeOf(root + QStringLiteral("/link")).image, 1);
    EXPECT_EQ(tree.Children(root).size(), 3);
}
