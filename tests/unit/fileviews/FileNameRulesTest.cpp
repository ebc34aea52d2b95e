// The name rules of the two name dialogs, the page name the wizard makes,
// the answers of the folder dialog, and the local side of a transfer.

#include "fileviews/FileNameRules.h"
#include "fileviews/LocalFileCount.h"
#include "fileviews/ServerFolderPaths.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using Dialog = FileNameRules::Dialog;

TEST(FileNameRules, TheWizardTakesBlanksAndCapitalsTheCopyDialogDoesNot)
{
    for (const char *name : {"My page.htm", "Åsa-ö_1.html"}) {
        EXPECT_TRUE(FileNameRules::CheckFileName(QString::fromUtf8(name), Dialog::AddPageWizard)) << name;
        EXPECT_FALSE(FileNameRules::CheckFileName(QString::fromUtf8(name), Dialog::CopyRename)) << name;
    }
    EXPECT_TRUE(FileNameRules::CheckFileName(QStringLiteral("copy_index-2.htm"), Dialog::CopyRename));
    for (const Dialog dialog : {Dialog::AddPageWizard, Dialog::CopyRename}) {
        EXPECT_FALSE(FileNameRules::CheckFileName(QString(), dialog));
        EXPECT_FALSE(FileNameRules::CheckFileName(QStringLiteral("a/b.htm"), dialog));
    }
}

TEST(FileNameRules, APageNameGetsAPageExtension)
{
    EXPECT_EQ(FileNameRules::MendPageName(QStringLiteral("index")), QStringLiteral("index.htm"));
    EXPECT_EQ(FileNameRules::MendPageName(QStringLiteral("index.txt")), QStringLiteral("index.htm"));
    EXPECT_EQ(FileNameRules::MendPageName(QStringLiteral("index.php")), QStringLiteral("index.php"));
    EXPECT_EQ(FileNameRules::MendPageName(QStringLiteral("a.b.html")), QStringLiteral("a.b.html"));
}

TEST(FileNameRules, ServerNamesThatNoLocalDiskHoldsAreRefused)
{
    QString reason;
    for (const QString &name : {QStringLiteral(".."), QStringLiteral("."), QStringLiteral("a\\b"), QStringLiteral("a:b"),
                                QString::fromLatin1("nul\0x", 5), QStringLiteral("what?")})
        EXPECT_FALSE(FileNameRules::LocalNameAcceptable(name, reason)) << name.toStdString();
    EXPECT_TRUE(FileNameRules::LocalNameAcceptable(QStringLiteral("..hidden page.htm"), reason));
}

TEST(ServerFolderPaths, ThePathFromThePageToTheChosenFolder)
{
    EXPECT_EQ(ServerFolderPaths::RelativePath(QStringLiteral("/a/b/page.htm"), QStringLiteral("/a/c")), QStringLiteral("../c"));
    EXPECT_EQ(ServerFolderPaths::RelativePath(QStringLiteral("/a/b/"), QStringLiteral("/a/b")), QString());
    EXPECT_EQ(ServerFolderPaths::RelativePath(QStringLiteral("/a/page.htm"), QStringLiteral("ROOT")), QStringLiteral("../"));
    EXPECT_EQ(ServerFolderPaths::RelativePath(QStringLiteral("/index.htm"), QStringLiteral("/img/new")), QStringLiteral("img/new"));
}

TEST(ServerFolderPaths, TheUploadFolderStandsUnderTheFtpRoot)
{
    SiteRecord site;
    EXPECT_EQ(ServerFolderPaths::UpLoadPath(QStringLiteral("ROOT"), site), QStringLiteral("/"));
    EXPECT_EQ(ServerFolderPaths::UpLoadPath(QStringLiteral("/img"), site), QStringLiteral("/img"));
    site.ftproot = QStringLiteral("/www");
    EXPECT_EQ(ServerFolderPaths::UpLoadPath(QStringLiteral("ROOT"), site), QStringLiteral("/www"));
    EXPECT_EQ(ServerFolderPaths::UpLoadPath(QStringLiteral("/img"), site), QStringLiteral("/www/img"));
    site.useremotef = QStringLiteral("1");
    site.remotefolder = QStringLiteral("/home/anna");
    EXPECT_EQ(ServerFolderPaths::UpLoadPath(QStringLiteral("/img"), site), QStringLiteral("/home/anna/www/img"));
}

// A folder and a file from elsewhere: two batches, each with its folder
// before what lies in it; a link to a folder is not walked.
TEST(LocalFileCount, CountsAndBatchesParentsFirst)
{
    QTemporaryDir dir;
    const auto write = [&](const QString &relative, const QByteArray &bytes) {
        const QString path = dir.filePath(relative);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    write(QStringLiteral("site/a.htm"), "aaaa");
    write(QStringLiteral("site/sub/b.htm"), "bb");
    write(QStringLiteral("other/c.txt"), "c");
    QFile::link(dir.filePath(QStringLiteral("site")), dir.filePath(QStringLiteral("site/sub/loop")));
    LocalFileCount count;
    count.CountFiles({dir.filePath(QStringLiteral("site")), dir.filePath(QStringLiteral("other/c.txt"))});
    EXPECT_EQ(count.Files(), 3);
    EXPECT_EQ(count.Folders(), 2);
    EXPECT_EQ(count.Bytes(), 7);
    const QList<QList<FILEITEM>> batches = count.Batches();
    ASSERT_EQ(batches.size(), 2);
    QStringList first;
    for (const FILEITEM &item : batches.at(0))
        first << QDir(dir.path()).relativeFilePath(item.strPath);
    EXPECT_EQ(first, QStringList({"site", "site/a.htm", "site/sub", "site/sub/b.htm"}));
    EXPECT_EQ(batches.at(1).size(), 1);
}
