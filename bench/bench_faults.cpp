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
#include <QTimer>

#include <cstdio>

namespace {

const QString kPutInPlace = QStringLiteral("^RNFR page\\.htm\\.[0-9a-f]{8}\\.kelda-new");

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
    // "--timings" measures the stalled save and the Cancel only: the sweeps
    // take a quarter of an hour.
    if (app.arguments().contains(QStringLiteral("--timings"))) {
        std::printf("stalled_save_s %.1f s\n", StalledSaveSeconds(servers));
        std::printf("cancel_s %.2f s\n", CancelSeconds(servers));
        return 0;
    }
    FaultSweep::Tally tally;
    const QJsonObject twoRenames{{QStringLiteral("no_rename_over"), true}};
    FaultSweep::SweepEveryCommand(servers, QStringLiteral("drop_before_n"), {}, 1, 0, tally);
    FaultSweep::SweepEveryCommand(servers, QStringLiteral("drop_after_n"), {}, 1, 0, tally);
    FaultSweep::SweepEveryCommand(servers, QStringLiteral("drop_after_n"), twoRenames, 1, 0, tally);
    FaultSweep::SweepEveryCommand(servers, QStringLiteral("stall_at_n"), {}, 1, 0, tally);
    FaultSweep::SweepEveryCommand(servers, QStringLiteral("unreachable_from_n"),
                                  {{QStringLiteral("unreachable_s"), 0.6}}, 1, 0, tally);
    FaultSweep::SweepEveryCommand(servers, QStringLiteral("unreachable_from_n"),
                                  {{QStringLiteral("unreachable_s"), 30}, {QStringLiteral("no_rename_over"), true}}, 1,
                                  0, tally);
    FaultSweep::CutEveryUpload(servers, tally);
    for (const QString &problem : tally.problems)
        std::fprintf(stderr, "%s\n", qPrintable(problem));
    std::printf("cuts_tried %d faults\n", tally.cutsTried);
    std::printf("pages_lost %d faults\n", tally.pagesLost);
    std::printf("history_broken %d faults\n", tally.historyBroken);
    std::printf("cms_lost %d faults\n", tally.cmsLost);
    std::printf("leftovers %d faults\n", tally.leftovers);
    std::printf("kept_aside %d faults\n", tally.keptAside);
    std::printf("stalled_save_s %.1f s\n", StalledSaveSeconds(servers));
    std::printf("cancel_s %.2f s\n", CancelSeconds(servers));
    return 0;
}
