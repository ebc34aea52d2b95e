// Revisions kept on the real FTP server: the index, the rotation of the
// numbers, the list, putting a revision back and viewing one.

#include "RevisionSite.h"

#include "history/CRollback.h"

#include <QJsonArray>

#include <gtest/gtest.h>

using namespace history_test;

namespace {

const QString kWww = QStringLiteral("/www");

class Revisions : public testing::Test
{
protected:
    void SetUp() override
    {
        useDemoSite();
        setHistorySize(5);
        removeHistory();
        MError::ClearError();
        MError::SetDialogPresenter([this](const MError::DialogRequest &r) { shown.append(r); });
        tempBefore = tempFiles();
    }
    void TearDown() override
    {
        servers().clearFtpFaults();
        MError::SetDialogPresenter(nullptr);
        MError::ClearError();
        EXPECT_EQ(tempFiles(), tempBefore); // no working file survives
    }

    // Puts bytes as the live page and keeps what was there as a revision.
    long saveOver(const QString &page, const QByteArray &live)
    {
        servers().writeWebFile(page, live);
        CRollback rollback;
        return rollback.BackupPage(kWww + QLatin1Char('/') + page);
    }

    QList<long> listed(const QString &page, QStringList *dates = nullptr)
    {
        CRollback rollback;
        EXPECT_EQ(rollback.GetFirstBackup(kWww + QLatin1Char('/') + page, QString()), 1);
        QList<long> order;
        QString date;
        long rev = 0;
        while (rollback.GetNextBackup(date, rev) == 1) {
            order.append(rev);
            if (dates)
                dates->append(date);
        }
        return order;
    }

    QList<MError::DialogRequest> shown;
    QStringList tempBefore;
};

QString section(const QString &page)
{
    return kWww + QLatin1Char('/') + page;
}

} // namespace

TEST_F(Revisions, FirstSaveMakesTheFolderAndTheIndexAndKeepsTheOldPageByteForByte)
{
    const QByteArray old("<HTML>\r\n<P>f\xF6rsta</P>\n\r\n<%= \"x\" %></HTML>");
    ASSERT_EQ(saveOver(QStringLiteral("first.htm"), old), 1);
    const ProfileFile index = serverIndex();
    const QString id = index.value(section(QStringLiteral("first.htm")), QStringLiteral("ID"));
    EXPECT_FALSE(id.isEmpty());
    EXPECT_EQ(index.value(section(QStringLiteral("first.htm")), QStringLiteral("rev")), QStringLiteral("1"));
    EXPECT_FALSE(index.value(section(QStringLiteral("first.htm")), QStringLiteral("1date")).isEmpty());
    EXPECT_EQ(revisionFile(id + QStringLiteral(".1")), old);
    EXPECT_TRUE(shown.isEmpty());
}

TEST_F(Revisions, NumbersRotateAndTheListWalksNewestFirst)
{
    const QString page = QStringLiteral("rotate.htm");
    for (char n = '1'; n <= '6'; ++n)
        ASSERT_EQ(saveOver(page, QByteArray("content ") + n), 1);
    const QString id = serverIndex().value(section(page), QStringLiteral("ID"));
    EXPECT_EQ(serverIndex().value(section(page), QStringLiteral("rev")), QStringLiteral("1"));
    EXPECT_EQ(revisionFile(id + QStringLiteral(".1")), QByteArray("content 6"));
    EXPECT_EQ(revisionFile(id + QStringLiteral(".2")), QByteArray("content 2"));

    ASSERT_EQ(saveOver(page, "content 7"), 1);
    QStringList dates;
    EXPECT_EQ(listed(page, &dates), QList<long>({2, 1, 5, 4, 3}));
    EXPECT_EQ(dates.size(), 5);
    EXPECT_EQ(serverIndex().value(section(page), QStringLiteral("ID")), id);

    // Lowered to 3 with rev at 5: the next is 1, and 4 and 5 stay listed.
    for (char n = '8'; n <= '9'; ++n)
        ASSERT_EQ(saveOver(page, QByteArray("content ") + n), 1);
    ASSERT_EQ(serverIndex().value(section(page), QStringLiteral("rev")), QStringLiteral("4"));
    ASSERT_EQ(saveOver(page, "content 10"), 1);
    setHistorySize(3);
    ASSERT_EQ(saveOver(page, "content 11"), 1);
    EXPECT_EQ(serverIndex().value(section(page), QStringLiteral("rev")), QStringLiteral("1"));
    EXPECT_EQ(listed(page), QList<long>({1, 5, 4, 3, 2}));
}

TEST_F(Revisions, TwoPagesShareTheFolderAndIndexWithoutTouchingEachOther)
{
    ASSERT_EQ(saveOver(QStringLiteral("one.htm"), "one"), 1);
    ASSERT_EQ(saveOver(QStringLiteral("sub/two.htm"), "two"), 1);
    const ProfileFile before = serverIndex();
    const QString two = section(QStringLiteral("sub/two.htm"));
    ASSERT_EQ(saveOver(QStringLiteral("one.htm"), "one again"), 1);
    const ProfileFile after = serverIndex();
    for (const QString &key : {QStringLiteral("ID"), QStringLiteral("rev"), QStringLiteral("1date")})
        EXPECT_EQ(after.value(two, key), before.value(two, key));
    const QString idOne = after.value(section(QStringLiteral("one.htm")), QStringLiteral("ID"));
    const QString idTwo = after.value(two, QStringLiteral("ID"));
    EXPECT_NE(idOne, idTwo);
    EXPECT_EQ(revisionFile(idTwo + QStringLiteral(".1")), QByteArray("two"));
    EXPECT_EQ(revisionFile(idOne + QStringLiteral(".2")), QByteArray("one again"));
    EXPECT_EQ(listed(QStringLiteral("sub/two.htm")), QList<long>({1}));
}

TEST_F(Revisions, ReadOnlyHistoryTellsTheUserOnceAndLetsTheSaveGoOn)
{
    ASSERT_EQ(saveOver(QStringLiteral("locked.htm"), "v1"), 1);
    servers().setFtpFaults({{QStringLiteral("readonly"), QJsonArray{QStringLiteral("www/_resetp")}}});
    EXPECT_EQ(saveOver(QStringLiteral("locked.htm"), "v2"), -1);
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown[0].number, -550);
    EXPECT_TRUE(shown[0].message.startsWith(QStringLiteral("Page /www/locked.htm couldn't be saved to")));
    EXPECT_EQ(MError::ErrorNumber(), 0);
    EXPECT_EQ(serverIndex().value(section(QStringLiteral("locked.htm")), QStringLiteral("rev")), QStringLiteral("1"));

    // A folder that can't even be made is told the same way.
    removeHistory();
    EXPECT_EQ(saveOver(QStringLiteral("locked.htm"), "v3"), -1);
    ASSERT_EQ(shown.size(), 2);
    EXPECT_EQ(shown[1].number, -550);
    EXPECT_TRUE(shown[1].message.endsWith(QStringLiteral("is named '_resetp' on the FTP server.")));
    EXPECT_FALSE(QDir(historyDisk()).exists());
}

TEST_F(Revisions, PageNotYetOnTheServerWritesNothing)
{
    servers().clearFtpLog();
    CRollback rollback;
    EXPECT_EQ(rollback.BackupPage(section(QStringLiteral("never-there.htm"))), -1);
    EXPECT_EQ(MError::ErrorNumber(), 0);
    EXPECT_TRUE(shown.isEmpty());
    EXPECT_FALSE(QDir(historyDisk()).exists());
    EXPECT_EQ(servers().ftpCommands(QStringLiteral("STOR")) + servers().ftpCommands(QStringLiteral("MKD")), 0);

    // With no history folder at all the list can't be read, and says so.
    CRollback list;
    EXPECT_EQ(list.GetFirstBackup(section(QStringLiteral("never-there.htm")), QString()), 0);
    EXPECT_EQ(MError::ErrorNumber(), -550);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CRollback.GetFirstBackup"));
    EXPECT_TRUE(MError::ErrorDescription().endsWith(
        QStringLiteral("named \"_resetp\" and make sure it isn't write-protected.")));
}

TEST_F(Revisions, PageWithoutHistoryListsNothingWithoutAMessage)
{
    ASSERT_EQ(saveOver(QStringLiteral("someone-else.htm"), "x"), 1);
    EXPECT_TRUE(listed(QStringLiteral("no-section.htm")).isEmpty());
    QFile::remove(historyDisk() + QStringLiteral("/_resetp.ini"));
    EXPECT_TRUE(listed(QStringLiteral("someone-else.htm")).isEmpty());
    EXPECT_EQ(MError::ErrorNumber(), 0);
}

// The page that stood is kept as a revision first, so a Reset can be taken
// back.
TEST_F(Revisions, RollbackKeepsThePageAsARevisionThenPutsTheOldOneBack)
{
    const QString page = QStringLiteral("products/back.htm");
    ASSERT_EQ(saveOver(page, "<P>version A</P>"), 1);
    ASSERT_EQ(saveOver(page, "<P>version B</P>"), 1);
    servers().writeWebFile(page, "<P>version C</P>");

    CRollback rollback;
    ASSERT_EQ(rollback.GetFirstBackup(section(page), servers().httpBase() + QLatin1Char('/') + page), 1);
    ASSERT_EQ(rollback.Rollback(2), 1);
    EXPECT_EQ(servers().readWebFile(page), QByteArray("<P>version B</P>"));
    EXPECT_EQ(serverIndex().value(section(page), QStringLiteral("rev")), QStringLiteral("3"));
    const QString id = serverIndex().value(section(page), QStringLiteral("ID"));
    EXPECT_EQ(revisionFile(id + QStringLiteral(".3")), QByteArray("<P>version C</P>"));

    EXPECT_EQ(rollback.Rollback(4), 0);
    EXPECT_EQ(MError::ErrorNumber(), -550);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CRollback.Rollback"));
    EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("\"_resetp\" on your FTP server")));
    EXPECT_EQ(servers().readWebFile(page), QByteArray("<P>version B</P>"));
}

// A damaged index loses no revision: other sections come through byte for
// byte, the page's own listed revisions are not overwritten while a number
// is free, and the list shows what can be read.
TEST_F(Revisions, MalformedIndexLosesNoRevision)
{
    QDir().mkpath(historyDisk());
    QByteArray damaged("\x01\x02 not a profile\r\n[unclosed\r\n");
    for (int i = 0; i < 200000; ++i)
        damaged.append("garbage line ").append(QByteArray::number(i)).append("\r\n");
    damaged.append("[/www/damaged.htm]\r\nID=777\r\nrev=zz\r\n1date=d1\r\n2date=d2\r\n"
                   "[/www/evil.htm]\r\nID=../../evil\r\nrev=1\r\n1date=e1\r\n"
                   "[/www/other.htm]\r\nID=888\r\nrev=1\r\n1date=o1\r\n");
    servers().writeWebFile(QStringLiteral("_resetp/_resetp.ini"), damaged);

    ASSERT_EQ(saveOver(QStringLiteral("damaged.htm"), "third"), 1);
    const QByteArray written = servers().readWebFile(QStringLiteral("_resetp/_resetp.ini"));
    EXPECT_TRUE(written.startsWith(damaged.left(damaged.indexOf("[/www/damaged.htm]"))));
    EXPECT_TRUE(written.endsWith("[/www/other.htm]\r\nID=888\r\nrev=1\r\n1date=o1\r\n"));
    EXPECT_EQ(revisionFile(QStringLiteral("777.3")), QByteArray("third"));
    EXPECT_EQ(listed(QStringLiteral("damaged.htm")), QList<long>({3, 2, 1}));
    EXPECT_EQ(listed(QStringLiteral("other.htm")), QList<long>({1}));

    // An id that would name a file outside the folder is never used.
    ASSERT_EQ(saveOver(QStringLiteral("evil.htm"), "kept"), 1);
    const QString id = serverIndex().value(section(QStringLiteral("evil.htm")), QStringLiteral("ID"));
    EXPECT_TRUE(id.toLong() > 0) << qPrintable(id);
    EXPECT_EQ(revisionFile(id + QStringLiteral(".1")), QByteArray("kept"));
}
