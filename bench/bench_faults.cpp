// What faults of the server cost the user: a whole save (revision, index,
// page, cms.dat) tried with the connection dropped before every command,
// the reply lost after every command, a stall at every command, the server
// unreachable for a moment from every command and gone between the two
// renames, and every upload cut. Each is checked after the fault and after
// one more save without faults (tests/fixtures/support/FaultSweep).
// Then the time a save takes to end against a server that stops answering
// with the default time-out, and how soon a Cancel ends it.

#include "FaultSweep.h"
#include "TestEnvironment.h"
#include "TestServers.h"
#include "platform/FtpControl.h"
#include "support/MError.h"
#include "transfer/CFTPS.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QTimer>

#include <cstdio>

namespace {

const QString kPutInPlace = QStringLiteral("^RNFR page\\.htm\\.[0-9a-f]{8}\\.kelda-new");

void SweepEveryCommand(TestServers &servers, const QString &kind, const QJsonObject &extra, FaultSweep::Tally &tally)
{
    FaultSweep sweep(servers, 1);
    if (extra.contains(QStringLiteral("no_rename_over"))) {
        servers.setFtpFaults({{QStringLiteral("no_rename_over"), true}});
        sweep.Save();
    }
    const int commands = sweep.CommandsOfOneSave();
    for (int n = 1; n <= commands; ++n) {
        QJsonObject fault = extra;
        fault.insert(kind, n);
        sweep.Try(fault, tally);
    }
}

void CutEveryUpload(TestServers &servers, FaultSweep::Tally &tally)
{
    FaultSweep sweep(servers, 1);
    sweep.Save();
    for (const QString &upload : {QStringLiteral("\\.\\d+\\.[0-9a-f]{8}\\.kelda-new$"), QStringLiteral("^_resetp\\.ini\\."),
                                  QStringLiteral("^page\\.htm\\."), QStringLiteral("^cms\\.dat\\.")})
        for (const QString &reply : {QStringLiteral("426 Connection closed; transfer aborted."),
                                     QStringLiteral("226 Transfer complete.")})
            sweep.Try({{QStringLiteral("cut_upload_after"), 100},
                       {QStringLiteral("cut_upload_on"), upload},
                       {QStringLiteral("cut_upload_reply"), reply}},
                      tally);
}

// Seconds until a save against a server that falls silent at the page's
// rename into place ends, with the time-out as the user has it (30 s).
double StalledSaveSeconds(TestServers &servers)
{
    FaultSweep sweep(servers, 30);
    sweep.Save();
    servers.setFtpFaults({{QStringLiteral("silent_on"), kPutInPlace}});
    QElapsedTimer clock;
    clock.start();
    const long result = CFTPS().SendPage("stalled", FaultSweep::PagePath);
    const double seconds = clock.elapsed() / 1000.0;
    servers.clearFtpFaults();
    if (result != 0 || MError::ErrorNumber() != -25063)
        std::fprintf(stderr, "the stalled save ended with %ld, error %ld\n", result, MError::ErrorNumber());
    MError::ClearError();
    return seconds;
}

// Seconds from a Cancel to the end of a save stalled at the same place.
double CancelSeconds(TestServers &servers)
{
    FaultSweep sweep(servers, 30);
    sweep.Save();
    servers.setFtpFaults({{QStringLiteral("stall_on"), kPutInPlace}});
    QElapsedTimer clock;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        const QList<FtpLogEntry> log = servers.ftpLog();
        if (!clock.isValid() && !log.isEmpty() && log.last().command == QLatin1String("RNFR")) {
            clock.start();
            FtpControl::AbortRunning();
        }
    });
    servers.clearFtpLog();
    watch.start(20);
    CFTPS().SendPage("cancelled", FaultSweep::PagePath);
    const double seconds = clock.isValid() ? clock.elapsed() / 1000.0 : -1;
    servers.clearFtpFaults();
    MError::ClearError();
    return seconds;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    TestEnvironment::prepare();
    TestServers servers;
    FaultSweep::Tally tally;
    SweepEveryCommand(servers, QStringLiteral("drop_before_n"), {}, tally);
    SweepEveryCommand(servers, QStringLiteral("drop_after_n"), {}, tally);
    SweepEveryCommand(servers, QStringLiteral("drop_after_n"), {{QStringLiteral("no_rename_over"), true}}, tally);
    SweepEveryCommand(servers, QStringLiteral("stall_at_n"), {}, tally);
    SweepEveryCommand(servers, QStringLiteral("unreachable_from_n"), {{QStringLiteral("unreachable_s"), 0.6}}, tally);
    SweepEveryCommand(servers, QStringLiteral("unreachable_from_n"),
                      {{QStringLiteral("unreachable_s"), 30}, {QStringLiteral("no_rename_over"), true}}, tally);
    CutEveryUpload(servers, tally);
    for (const QString &problem : tally.problems)
        std::fprintf(stderr, "%s\n", qPrintable(problem));
    std::printf("cuts_tried %d faults\n", tally.cutsTried);
    std::printf("pages_lost %d faults\n", tally.pagesLost);
    std::printf("history_broken %d faults\n", tally.historyBroken);
    std::printf("cms_lost %d faults\n", tally.cmsLost);
    std::printf("leftovers %d faults\n", tally.leftovers);
    std::printf("pages_aside %d faults\n", tally.pagesAside);
    std::printf("stalled_save_s %.1f s\n", StalledSaveSeconds(servers));
    std::printf("cancel_s %.2f s\n", CancelSeconds(servers));
    return 0;
}
