// A whole save (revision, index, page, cms.dat) under every fault at every
// command: nothing the user relies on is ever lost or left half-written.

#include "FaultSweep.h"
#include "TestServers.h"
#include "history/CRollback.h"
#include "history/ProfileFile.h"
#include "platform/FtpControl.h"
#include "support/MError.h"
#include "transfer/CFTPS.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QJsonArray>
#include <QRegularExpression>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

TestServers &servers()
{
    return TestServers::shared();
}

void ExpectNothingLost(const FaultSweep::Tally &tally)
{
    EXPECT_GT(tally.cutsTried, 0);
    EXPECT_EQ(tally.pagesLost, 0);
    EXPECT_EQ(tally.historyBroken, 0);
    EXPECT_EQ(tally.cmsLost, 0);
    EXPECT_EQ(tally.leftovers, 0);
    for (const QString &problem : tally.problems)
        ADD_FAILURE() << problem.toStdString();
}

// The number of the first command of a clean save that matches.
int CommandNumber(FaultSweep &sweep, const QString &pattern)
{
    servers().clearFtpLog();
    sweep.Save();
    const QRegularExpression match(pattern);
    const QList<FtpLogEntry> log = servers().ftpLog();
    for (int n = 0; n < log.size(); ++n)
        if (match.match(log[n].command + QLatin1Char(' ') + log[n].argument).hasMatch())
            return n + 1;
    return 0;
}

// Half 1, 2, or 0 for all the commands: a slow kind is split in two tests.
void SweepEveryCommand(const QString &kind, const QJsonObject &extra, int timeout, int half = 0)
{
    FaultSweep::Tally tally;
    FaultSweep::SweepEveryCommand(servers(), kind, extra, timeout, half, tally);
    EXPECT_GE(tally.cutsTried, 10); // a save of at least 20 commands
    ExpectNothingLost(tally);
}

} // namespace

TEST(FaultSweep, ConnectionDroppedBeforeEveryCommand)
{
    SweepEveryCommand(QStringLiteral("drop_before_n"), {}, 2);
}

TEST(FaultSweep, ReplyLostAfterEveryCommand)
{
    SweepEveryCommand(QStringLiteral("drop_after_n"), {}, 2);
}

// The same on a server that refuses to rename onto an existing file, where
// the old page steps aside before the new one takes its place.
TEST(FaultSweep, ReplyLostAfterEveryCommandWithTwoRenames)
{
    SweepEveryCommand(QStringLiteral("drop_after_n"), {{QStringLiteral("no_rename_over"), true}}, 2);
}

TEST(FaultSweep, ServerStallsAtEveryCommandFirstHalf)
{
    SweepEveryCommand(QStringLiteral("stall_at_n"), {}, 1, 1);
}

TEST(FaultSweep, ServerStallsAtEveryCommandSecondHalf)
{
    SweepEveryCommand(QStringLiteral("stall_at_n"), {}, 1, 2);
}

// Unreachable for a moment from each command on: the save logs on again and
// goes on.
TEST(FaultSweep, ServerUnreachableForAMomentFromEveryCommandFirstHalf)
{
    SweepEveryCommand(QStringLiteral("unreachable_from_n"), {{QStringLiteral("unreachable_s"), 0.6}}, 2, 1);
}

TEST(FaultSweep, ServerUnreachableForAMomentFromEveryCommandSecondHalf)
{
    SweepEveryCommand(QStringLiteral("unreachable_from_n"), {{QStringLiteral("unreachable_s"), 0.6}}, 2, 2);
}

// Unreachable for longer than the save waits, right where the old page
// steps aside: the save fails, the page's last version stands whole (in
// place, or beside it when the server was gone between the two renames),
// and the next save brings everything back.
TEST(FaultSweep, ServerGoneForGoodBetweenTheRenames)
{
    FaultSweep sweep(servers(), 2);
    servers().setFtpFaults({{QStringLiteral("no_rename_over"), true}});
    sweep.Save(); // the session learns that the server won't rename onto a file
    const int stepAside = CommandNumber(sweep, QStringLiteral("^RNFR page\\.htm$"));
    servers().clearFtpFaults();
    ASSERT_GT(stepAside, 0);
    FaultSweep::Tally tally;
    for (int n = stepAside - 1; n <= stepAside + 3; ++n)
        sweep.Try({{QStringLiteral("unreachable_from_n"), n},
                   {QStringLiteral("unreachable_s"), 30},
                   {QStringLiteral("no_rename_over"), true}},
                  tally);
    ExpectNothingLost(tally);
    EXPECT_GT(tally.keptAside, 0);
}

// The data connection of each upload is cut, with the honest reply and with
// a server that says all went well.
TEST(FaultSweep, EveryUploadCut)
{
    FaultSweep::Tally tally;
    FaultSweep::CutEveryUpload(servers(), tally);
    ExpectNothingLost(tally);
}

// The server takes commands only in the strict order (each RNTO straight
// after its RNFR, each transfer straight after its PASV): saves that make
// the history folder and keep revisions, a Reset and the CMS data all keep
// to it, so no command is ever refused for its place.
TEST(FaultSweep, SaveResetAndCmsDataKeepTheStrictCommandOrder)
{
    FaultSweep sweep(servers(), 2);
    servers().clearFtpLog();
    ASSERT_EQ(sweep.Save(), 1);
    ASSERT_EQ(sweep.Save(), 1);
    CRollback pane;
    ASSERT_EQ(pane.GetFirstBackup(FaultSweep::PagePath, QString()), 1);
    ASSERT_EQ(pane.Rollback(1), 1) << MError::ErrorDescription().toStdString();
    EXPECT_GE(servers().ftpCommands(QStringLiteral("RNTO")), 8);
    EXPECT_GE(servers().ftpCommands(QStringLiteral("RETR")), 4);
    EXPECT_EQ(servers().ftpCommands(QStringLiteral("OUTOFORDER")), 0);
}

// A revision the server refuses to put in place is never named by the
// index: the index goes up only after its revision stands.
TEST(FaultSweep, TheIndexNeverNamesARevisionThatIsNotThere)
{
    FaultSweep sweep(servers(), 2);
    ASSERT_EQ(sweep.Save(), 1);
    ASSERT_EQ(sweep.Save(), 1);
    ProfileFile index;
    ASSERT_TRUE(index.load(servers().webRoot() + QStringLiteral("/_resetp/_resetp.ini")));
    const QString id = index.value(FaultSweep::PagePath, QStringLiteral("ID"));
    const int next = index.value(FaultSweep::PagePath, QStringLiteral("rev")).toInt() + 1;
    FaultSweep::Tally tally;
    sweep.Try({{QStringLiteral("readonly"),
                QJsonArray{QStringLiteral("www/_resetp/%1.%2").arg(id).arg(next)}}},
              tally);
    ExpectNothingLost(tally);
}

// A server that stops answering in the middle of the page's replace: the
// save ends with the time-out message, or at once on Cancel, and the page
// is whole either way.
TEST(FaultSweep, StalledSaveEndsByTimeOutOrCancel)
{
    FaultSweep sweep(servers(), 2);
    const QString putInPlace = QStringLiteral("^RNFR page\\.htm\\.[0-9a-f]{8}\\.kelda-new");
    const QByteArray before = servers().readWebFile(QStringLiteral("sweep/page.htm"));

    servers().setFtpFaults({{QStringLiteral("silent_on"), putInPlace}});
    MError::ClearError();
    EXPECT_EQ(CFTPS().SendPage("timed out", FaultSweep::PagePath), 0);
    servers().clearFtpFaults();
    EXPECT_EQ(MError::ErrorNumber(), -25063);
    EXPECT_TRUE(MError::ErrorDescription().startsWith(QStringLiteral("The FTP server did not answer within 2 seconds.")))
        << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(MError::ErrorDescription().endsWith(QStringLiteral("Save again when the connection works.")));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("sweep/page.htm")), before);

    servers().setFtpFaults({{QStringLiteral("stall_on"), putInPlace}});
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        const QList<FtpLogEntry> log = servers().ftpLog();
        if (!log.isEmpty() && log.last().command == QLatin1String("RNFR")
            && log.last().argument.endsWith(QLatin1String(".kelda-new")))
            FtpControl::AbortRunning();
    });
    servers().clearFtpLog();
    watch.start(20);
    MError::ClearError();
    EXPECT_EQ(CFTPS().SendPage("cancelled", FaultSweep::PagePath), 0);
    watch.stop();
    servers().clearFtpFaults();
    EXPECT_EQ(MError::ErrorNumber(), -20144);
    EXPECT_TRUE(MError::ErrorDescription().startsWith(QStringLiteral("The transfer was cancelled.")));
    EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("The page on the server is the old one")));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("sweep/page.htm")), before);
    MError::ClearError();

    FaultSweep::Tally tally;
    sweep.Try({}, tally);
    ExpectNothingLost(tally);
}
