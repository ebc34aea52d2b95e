// Batches on one session under one progress window: an upload into folders
// that partly exist, a delete that leaves what the server refuses, a
// download beside local files; and a Cancel in the middle of each transfer
// batch, after which no file on either side is half written.

#include "TransferSite.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"
#include "transfer/frmTransferStatusEx.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

using namespace transfer_test;

namespace {

constexpr qint64 kBig = 6 * 1024 * 1024;

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// Every file below a folder, by its path relative to it.
QStringList filesBelow(const QString &folder)
{
    QStringList out;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        out << QDir(folder).relativeFilePath(it.next());
    out.sort();
    return out;
}

FILEITEM item(const QString &path, long type, qint64 size = 0)
{
    return {path, QFileInfo(path).fileName(), size, type};
}

// Presses the Cancel of the batch's window once the server has been asked
// for the named file, and answers Yes to the question that follows.
class CancelAt : public QObject
{
public:
    CancelAt(const QString &command, const QString &name)
    {
        TransferStatusWindow::InstallFactory([this] {
            auto window = std::make_unique<frmTransferStatusEx>();
            m_window = window.get();
            return window;
        });
        UserQuestions::Script({UserQuestions::vbYes});
        connect(&m_poll, &QTimer::timeout, this, [this, command, name] {
            if (m_pressed || !m_window || !m_window->isVisible())
                return;
            for (const FtpLogEntry &entry : servers().ftpLog()) {
                if (entry.command == command && entry.argument.contains(name)) {
                    m_pressed = true;
                    m_window->CancelButton()->click();
                    return;
                }
            }
        });
        m_poll.start(2);
    }
    ~CancelAt() override
    {
        TransferStatusWindow::InstallFactory(nullptr);
        UserQuestions::EndScript();
    }
    bool pressed() const { return m_pressed; }

private:
    QTimer m_poll;
    QPointer<frmTransferStatusEx> m_window;
    bool m_pressed = false;
};

class FileBatchSite : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        useSites({demoSite()});
        for (const char *folder : {"batch", "del", "dl"})
            QDir(webPath(QString::fromLatin1(folder))).removeRecursively();
        servers().clearFtpLog();
    }
    void TearDown() override
    {
        servers().clearFtpFaults();
        MError::ClearError();
    }

    QTemporaryDir local;
};

} // namespace

TEST_F(FileBatchSite, UploadIntoFoldersThatPartlyExist)
{
    const QString site = local.filePath(QStringLiteral("site"));
    writeFileAt(site + QStringLiteral("/a.htm"), "a");
    writeFileAt(site + QStringLiteral("/sub/b.htm"), "new b");
    writeFileAt(site + QStringLiteral("/sub/inner/c.htm"), "c");
    writeFileAt(site + QStringLiteral("/new/d.htm"), "d");
    writeFileAt(webPath(QStringLiteral("batch/sub/b.htm")), "old b");
    writeFileAt(webPath(QStringLiteral("batch/sub/other.htm")), "other");
    const QList<FILEITEM> items = {
        item(site + QStringLiteral("/a.htm"), 1, 1),        item(site + QStringLiteral("/sub"), 0),
        item(site + QStringLiteral("/sub/b.htm"), 1, 5),    item(site + QStringLiteral("/sub/inner"), 0),
        item(site + QStringLiteral("/sub/inner/c.htm"), 1, 1), item(site + QStringLiteral("/new"), 0),
        item(site + QStringLiteral("/new/d.htm"), 1, 1)};

    CFTPS client;
    long status = 0;
    ASSERT_EQ(client.CopyFilesAndFolders(QStringLiteral("batch"), items, status), 1)
        << MError::ErrorDescription().toStdString();
    EXPECT_EQ(status, 1);
    EXPECT_EQ(filesBelow(webPath(QStringLiteral("batch"))),
              QStringList({"a.htm", "new/d.htm", "sub/b.htm", "sub/inner/c.htm", "sub/other.htm"}));
    EXPECT_EQ(readFile(webPath(QStringLiteral("batch/sub/b.htm"))), "new b");
    EXPECT_EQ(servers().ftpLogins(), 1);

    long empty = 0;
    servers().clearFtpLog();
    EXPECT_EQ(CFTPS().CopyFilesAndFolders(QStringLiteral("batch"), {}, empty), 1);
    EXPECT_TRUE(servers().ftpLog().isEmpty());
}

TEST_F(FileBatchSite, DeleteGoesOnPastWhatTheServerRefuses)
{
    for (const char *name : {"del/x.htm", "del/keep.txt", "del/sub/y.htm", "del/sub/z.htm", "del/sub/deep/w.htm"})
        writeFileAt(webPath(QString::fromLatin1(name)), "x");
    servers().setFtpFaults({{"readonly", QJsonArray({"www/del/sub/z.htm"})}});
    CFTPS client;
    QList<FILEITEM> items;
    ASSERT_EQ(client.GetFiles_In_DirEx(QStringLiteral("del/dummy.htm"), items), 1);
    long status = 0;
    EXPECT_EQ(client.DeleteFilesAndFolders(QStringLiteral("del/dummy.htm"), items, status), -1);
    EXPECT_EQ(status, -1);
    EXPECT_EQ(MError::ErrorNumber(), 0);
    EXPECT_EQ(filesBelow(webPath(QStringLiteral("del"))), QStringList({"sub/z.htm"}));
    EXPECT_FALSE(QFileInfo::exists(webPath(QStringLiteral("del/sub/deep"))));
}

TEST_F(FileBatchSite, DownloadBesideLocalFilesAndNeverOutsideTheFolder)
{
    writeFileAt(webPath(QStringLiteral("dl/a.htm")), "server a");
    writeFileAt(webPath(QStringLiteral("dl/sub/b.htm")), "server b");
    const QString target = local.filePath(QStringLiteral("target"));
    writeFileAt(target + QStringLiteral("/a.htm"), "mine");
    CFTPS client;
    QList<FILEITEM> items;
    ASSERT_EQ(client.GetFiles_In_DirEx(QStringLiteral("dl/dummy.htm"), items), 1);
    // Items no listing gives, as a broken caller might build them.
    items << item(QStringLiteral("/www/dl/../../../escaped.htm"), 1, 1) << item(QStringLiteral("/www/dl/..\\up.htm"), 1, 1)
          << item(QStringLiteral("/elsewhere/x.htm"), 1, 1);
    long status = 0;
    ASSERT_EQ(client.DownLoadFilesAndFolders(QStringLiteral("dl/dummy.htm"), items, target, status), 1)
        << MError::ErrorDescription().toStdString();
    EXPECT_EQ(readFile(target + QStringLiteral("/a.htm")), "mine");
    EXPECT_EQ(readFile(target + QStringLiteral("/sub/b.htm")), "server b");
    EXPECT_EQ(filesBelow(local.path()), QStringList({"target/a.htm", "target/sub/b.htm"}));
}

TEST_F(FileBatchSite, CancelInTheMiddleOfAnUploadLeavesNoPartOfAFile)
{
    const QString site = local.filePath(QStringLiteral("big"));
    QList<FILEITEM> items;
    for (int i = 1; i <= 4; ++i) {
        const QString path = site + QStringLiteral("/big%1.bin").arg(i);
        writeFileAt(path, QByteArray(kBig, char('0' + i)));
        items << item(path, 1, kBig);
    }
    QDir().mkpath(webPath(QStringLiteral("batch")));
    CancelAt cancel(QStringLiteral("STOR"), QStringLiteral("big2"));
    CFTPS client;
    long status = 0;
    EXPECT_EQ(client.CopyFilesAndFolders(QStringLiteral("batch"), items, status), -1);
    EXPECT_TRUE(cancel.pressed());
    const QStringList landed = filesBelow(webPath(QStringLiteral("batch")));
    EXPECT_TRUE(landed.contains(QStringLiteral("big1.bin")));
    EXPECT_FALSE(landed.contains(QStringLiteral("big4.bin")));
    for (const QString &name : landed) {
        EXPECT_TRUE(name.startsWith(QLatin1String("big")) && name.endsWith(QLatin1String(".bin"))) << name.toStdString();
        EXPECT_EQ(QFileInfo(webPath(QStringLiteral("batch/") + name)).size(), kBig) << name.toStdString();
    }
}

TEST_F(FileBatchSite, CancelInTheMiddleOfADownloadLeavesNoPartOfAFile)
{
    for (int i = 1; i <= 4; ++i)
        writeFileAt(webPath(QStringLiteral("dl/big%1.bin").arg(i)), QByteArray(kBig, char('0' + i)));
    CancelAt cancel(QStringLiteral("RETR"), QStringLiteral("big2"));
    CFTPS client;
    QList<FILEITEM> items;
    ASSERT_EQ(client.GetFiles_In_DirEx(QStringLiteral("dl/dummy.htm"), items), 1);
    std::sort(items.begin(), items.end(), [](const FILEITEM &a, const FILEITEM &b) { return a.strName < b.strName; });
    const QString target = local.filePath(QStringLiteral("target"));
    QDir().mkpath(target);
    long status = 0;
    EXPECT_EQ(client.DownLoadFilesAndFolders(QStringLiteral("dl/dummy.htm"), items, target, status), -1);
    EXPECT_TRUE(cancel.pressed());
    const QStringList landed = filesBelow(target);
    EXPECT_TRUE(landed.contains(QStringLiteral("big1.bin")));
    EXPECT_FALSE(landed.contains(QStringLiteral("big4.bin")));
    for (const QString &name : landed)
        EXPECT_EQ(QFileInfo(target + QLatin1Char('/') + name).size(), kBig) << name.toStdString();
}

// The server takes the control connection away after sending the second
// file whole but before saying so: that file counts as not come, the
// batch stops with the reason, nothing half written stays beside the
// files that came, and the next batch logs on again and fetches the rest.
TEST_F(FileBatchSite, ADroppedConnectionInTheMiddleOfADownloadLeavesNoPartOfAFile)
{
    for (int i = 1; i <= 3; ++i)
        writeFileAt(webPath(QStringLiteral("dl/f%1.htm").arg(i)), QByteArray(64 * 1024, char('0' + i)));
    CFTPS client;
    QList<FILEITEM> items;
    ASSERT_EQ(client.GetFiles_In_DirEx(QStringLiteral("dl/dummy.htm"), items), 1);
    std::sort(items.begin(), items.end(), [](const FILEITEM &a, const FILEITEM &b) { return a.strName < b.strName; });
    const QString target = local.filePath(QStringLiteral("target"));
    servers().setFtpFaults({{QStringLiteral("drop_after"), QStringLiteral("^RETR .*f2")}});
    long status = 0;
    EXPECT_EQ(client.DownLoadFilesAndFolders(QStringLiteral("dl/dummy.htm"), items, target, status), 0);
    EXPECT_NE(MError::ErrorNumber(), 0);
    EXPECT_FALSE(MError::ErrorDescription().isEmpty());
    EXPECT_EQ(filesBelow(target), QStringList({"f1.htm"}));

    servers().clearFtpFaults();
    MError::ClearError();
    EXPECT_EQ(client.DownLoadFilesAndFolders(QStringLiteral("dl/dummy.htm"), items, target, status), 1)
        << MError::ErrorDescription().toStdString();
    EXPECT_EQ(filesBelow(target), QStringList({"f1.htm", "f2.htm", "f3.htm"}));
    EXPECT_EQ(readFile(target + QStringLiteral("/f2.htm")), QByteArray(64 * 1024, '2'));
}
