// What listings and batches cost against a common command-line client on
// the same server in the same run: a folder of 10,000 entries listed into
// the site tree (against lftp's "cls -l"), and 500 files of 4 KB sent and
// fetched on one session (against lftp's "mirror -R" and "mirror" with one
// connection). Each figure is the median of a few runs, log-on included on
// both sides. Also the commands our batches send per file, and the resident
// memory after the large listing. And the site tree on screen: a folder of
// 2,000 entries opened in it, with the longest time the window left input
// waiting meanwhile.
//
// "bench_listing list", "batch" or "tree" runs one group alone. Runs of our
// batches and lftp's take turns, so that a change in the machine's load
// weighs on both. The local files of the batches go to a temporary folder
// under $BENCH_LOCAL if set (e.g. /dev/shm, to take a busy disk out of the
// figures), else under the temporary folder.

#include "DemoSite.h"
#include "TestEnvironment.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "fileviews/SiteTreeWidget.h"
#include "transfer/CFTPS.h"
#include "transfer/DirTreeIndex.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

constexpr int kEntries = 10000;
constexpr int kBatchFiles = 500;
// Runs per figure; BENCH_RUNS sets another number (more runs, a steadier
// median on a busy machine).
int runs()
{
    const int wanted = qEnvironmentVariableIntValue("BENCH_RUNS");
    return wanted > 0 ? wanted : 7;
}
constexpr int kTreeEntries = 2000;

double residentMb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return 0;
}

void fillFolder(const QString &folder, int count, int size)
{
    QDir().mkpath(folder);
    const QByteArray bytes(size, 'x');
    for (int i = 0; i < count; ++i) {
        QFile file(folder + QStringLiteral("/file%1.htm").arg(i, 5, 10, QLatin1Char('0')));
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
    }
}

// lftp with one connection to the fixture's server.
void lftp(const TestServers &servers, const QString &commands)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    const QString script = QStringLiteral("set ftp:ssl-allow no; set net:connection-limit 1; set cmd:parallel 1; "
                                          "set xfer:clobber on; open -u %1,%2 -p %3 127.0.0.1; %4")
                               .arg(QLatin1String(TestServers::User), QLatin1String(TestServers::Password))
                               .arg(servers.ftpPort())
                               .arg(commands);
    process.start(QStringLiteral("lftp"), {QStringLiteral("-c"), script});
    if (!process.waitForFinished(300000) || process.exitCode() != 0)
        std::fprintf(stderr, "lftp failed: %s\n", process.readAllStandardError().constData());
}

QList<FILEITEM> localBatch(const QString &folder)
{
    QList<FILEITEM> items;
    for (const QFileInfo &info : QDir(folder).entryInfoList(QDir::Files, QDir::Name))
        items.append({info.filePath(), info.fileName(), info.size(), 1});
    return items;
}

struct TreeFill
{
    double ms = 0;
    double stallMs = 0; // the longest gap between two turns of the event loop
};

// The folder opened as the user opens it, in a tree on screen; a timer
// that fires as often as it can measures how long input would wait.
TreeFill treeFill(const QString &rootKey, const QString &folderKey)
{
    SiteTreeWidget tree;
    tree.show();
    tree.SetFiller([&tree](const QString &key) { return CFTPS().GetDirFiles(tree, key); });
    CFTPS().GetDirFiles(tree, rootKey);
    QElapsedTimer beat;
    beat.start();
    double stall = 0;
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, [&] {
        stall = std::max(stall, double(beat.nsecsElapsed()) / 1e6);
        beat.restart();
    });
    pulse.start(0);
    QElapsedTimer timer;
    timer.start();
    beat.restart();
    tree.Node(folderKey)->setExpanded(true);
    QCoreApplication::processEvents();
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    if (tree.Node(folderKey)->childCount() != kTreeEntries)
        std::fprintf(stderr, "tree holds %d entries of %d\n", tree.Node(folderKey)->childCount(), kTreeEntries);
    return {ms, std::max(stall, double(beat.nsecsElapsed()) / 1e6)};
}

void printTreeFill(const TestServers &servers)
{
    fillFolder(servers.webRoot() + QStringLiteral("/tree"), kTreeEntries, 10);
    std::vector<TreeFill> fills;
    for (int i = 0; i < runs(); ++i)
        fills.push_back(treeFill(servers.httpBase(), servers.httpBase() + QStringLiteral("/tree")));
    std::sort(fills.begin(), fills.end(), [](const TreeFill &a, const TreeFill &b) { return a.ms < b.ms; });
    std::printf("tree_fill_ms %.1f ms\n", fills[fills.size() / 2].ms);
    std::printf("tree_fill_longest_stall_ms %.1f ms\n", fills[fills.size() / 2].stallMs);
}

// The ports held by connections closed in the last minute (TIME_WAIT), of
// those a new connection may take.
double portsHeldShare()
{
    QFile stat(QStringLiteral("/proc/net/sockstat"));
    QFile range(QStringLiteral("/proc/sys/net/ipv4/ip_local_port_range"));
    if (!stat.open(QIODevice::ReadOnly) || !range.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> bounds = range.readAll().simplified().split(' ');
    const double ports = bounds.size() == 2 ? bounds[1].toDouble() - bounds[0].toDouble() + 1 : 0;
    for (const QByteArray &line : stat.readAll().split('\n')) {
        const QList<QByteArray> words = line.simplified().split(' ');
        const qsizetype at = words.indexOf("tw");
        if (words.value(0) == "TCP:" && at > 0 && ports > 0)
            return words.value(at + 1).toDouble() / ports;
    }
    return 0;
}

// Each file of a batch opens a data connection, and each closed connection
// holds a port for a minute. With most ports held, every new connection is
// slow to find one, on both sides alike, and the figures would measure the
// port table rather than the clients (a run then takes eight times as
// long). So a run waits, a minute at most, until no more than a quarter of
// the ports are held.
void waitForFreePorts()
{
    QElapsedTimer waited;
    waited.start();
    while (portsHeldShare() > 0.25 && waited.elapsed() < 70000)
        QThread::msleep(250);
    if (waited.elapsed() > 1000)
        std::fprintf(stderr, "waited %.0f s for ports to come free\n", waited.elapsed() / 1000.0);
}

// Our run and lftp's taken in turns, so that a change in the machine's
// load weighs on both alike; the medians of each.
std::pair<double, double> medianPairMs(const std::function<void()> &ours, const std::function<void()> &theirs)
{
    std::vector<double> a, b;
    for (int i = 0; i < runs(); ++i) {
        waitForFreePorts();
        for (auto [run, times] : {std::pair{&ours, &a}, std::pair{&theirs, &b}}) {
            QElapsedTimer timer;
            timer.start();
            (*run)();
            times->push_back(double(timer.nsecsElapsed()) / 1e6);
        }
    }
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    return {a[a.size() / 2], b[b.size() / 2]};
}

void printListing(TestServers &servers)
{
    fillFolder(servers.webRoot() + QStringLiteral("/big"), kEntries, 100);
    const QString key = servers.httpBase() + QStringLiteral("/big");

    const double idle = residentMb();
    long entries = 0;
    const auto [listMs, lftpListMs] = medianPairMs(
        [&] {
            CFTPS client;
            DirTreeIndex tree;
            client.GetDirFiles(tree, servers.httpBase());
            client.GetDirFiles(tree, key);
            entries = long(tree.Children(key).size());
        },
        [&] { lftp(servers, QStringLiteral("cls -l www/big")); });
    double listRss = 0;
    {
        CFTPS client;
        DirTreeIndex tree;
        client.GetDirFiles(tree, servers.httpBase());
        client.GetDirFiles(tree, key);
        listRss = residentMb();
    }
    if (entries != kEntries)
        std::fprintf(stderr, "listed %ld entries of %d\n", entries, kEntries);
    std::printf("list_ms %.1f ms\n", listMs);
    std::printf("list_lftp_ms %.1f ms\n", lftpListMs);
    std::printf("list_ratio %.2f ratio\n", listMs / lftpListMs);
    std::printf("idle_rss_mb %.1f MB\n", idle);
    std::printf("list_rss_mb %.1f MB\n", listRss);
    std::printf("list_rss_above_idle_mb %.1f MB\n", listRss - idle);
}

void printBatches(TestServers &servers)
{
    QTemporaryDir local(qEnvironmentVariable("BENCH_LOCAL", QDir::tempPath()) + QStringLiteral("/batch-XXXXXX"));
    const QString source = local.filePath(QStringLiteral("source"));
    fillFolder(source, kBatchFiles, 4096);
    const QList<FILEITEM> batch = localBatch(source);
    int run = 0;
    const auto upload = [&] {
        const QString target = QStringLiteral("up%1").arg(++run);
        QDir().mkpath(servers.webRoot() + QLatin1Char('/') + target);
        CFTPS client;
        long status = 0;
        if (client.CopyFilesAndFolders(target, batch, status) != 1)
            std::fprintf(stderr, "upload batch failed\n");
    };
    // The commands are counted on a run of their own, outside the clock.
    servers.clearFtpLog();
    upload();
    const double upPerFile = double(servers.ftpLog().size()) / kBatchFiles;
    const auto [upMs, lftpUpMs] = medianPairMs(upload, [&] {
        lftp(servers, QStringLiteral("mirror -R --parallel=1 %1 www/lup%2").arg(source).arg(++run));
    });

    // Listed on a session of its own that ends here: each run below logs on,
    // as each of lftp's does.
    QList<FILEITEM> remote;
    CFTPS().GetFiles_In_DirEx(QStringLiteral("up1/dummy.htm"), remote);
    const auto download = [&] {
        const QString target = local.filePath(QStringLiteral("down%1").arg(++run));
        QDir().mkpath(target);
        CFTPS client;
        long status = 0;
        if (client.DownLoadFilesAndFolders(QStringLiteral("up1/dummy.htm"), remote, target, status) != 1)
            std::fprintf(stderr, "download batch failed\n");
    };
    servers.clearFtpLog();
    download();
    const double downPerFile = double(servers.ftpLog().size()) / kBatchFiles;
    const auto [downMs, lftpDownMs] = medianPairMs(download, [&] {
        lftp(servers, QStringLiteral("mirror --parallel=1 www/up1 %1").arg(local.filePath(QStringLiteral("ldown%1").arg(++run))));
    });

    std::printf("batch_up_ms %.1f ms\n", upMs);
    std::printf("batch_up_lftp_ms %.1f ms\n", lftpUpMs);
    std::printf("batch_up_ratio %.2f ratio\n", upMs / lftpUpMs);
    std::printf("batch_up_commands_per_file %.2f commands\n", upPerFile);
    std::printf("batch_down_ms %.1f ms\n", downMs);
    std::printf("batch_down_lftp_ms %.1f ms\n", lftpDownMs);
    std::printf("batch_down_ratio %.2f ratio\n", downMs / lftpDownMs);
    std::printf("batch_down_commands_per_file %.2f commands\n", downPerFile);
}

} // namespace

int main(int argc, char **argv)
{
    // The tree figure needs a window; without a display it is drawn off screen.
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    TestEnvironment::prepare();
    TestServers servers;
MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers)};
    MGlobalProjectObjects::lCurrentURL = 0;
    // "bench_listing tree" or "batch" gives those figures alone, for work
    // on one of them.
    const QStringList parts = app.arguments().mid(1);
    const auto wanted = [&parts](const char *part) { return parts.isEmpty() || parts.contains(QLatin1String(part)); };
    if (wanted("list"))
        printListing(servers);
    if (wanted("batch"))
        printBatches(servers);
    if (wanted("tree"))
        printTreeFill(servers);
    return 0;
}
