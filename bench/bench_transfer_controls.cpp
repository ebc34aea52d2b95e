// The FTP control beside the curl command-line tool on the same local
// server: a listing of 10,000 files, and 500 small uploads on one session.
// Prints the times and the ratios ours / curl's (best of three runs each).

#include "platform/FtpControl.h"

#include "TestEnvironment.h"
#include "TestServers.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

constexpr int ListedFiles = 10000;
constexpr int BatchFiles = 500;
constexpr int Runs = 3;

double bestOf(const std::function<void(int)> &work)
{
    double best = 1e12;
    for (int run = 0; run < Runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        work(run);
        best = std::min(best, timer.nsecsElapsed() / 1e6);
    }
    return best;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
}

void runCurl(const QStringList &arguments)
{
    QProcess curl;
    curl.start(QStringLiteral("curl"), QStringList{QStringLiteral("-s"), QStringLiteral("-S")} + arguments);
    curl.waitForFinished(-1);
    if (curl.exitCode() != 0)
        std::fprintf(stderr, "curl failed: %s\n", curl.readAllStandardError().constData());
}

void logon(FtpControl &ftp, TestServers &servers, const QString &folder)
{
    ftp.RemoteHost = QStringLiteral("127.0.0.1");
    ftp.RemotePort = servers.ftpPort();
    ftp.User = QString::fromLatin1(TestServers::User);
    ftp.Password = QString::fromLatin1(TestServers::Password);
    if (ftp.Logon() != 1 || ftp.SetRemotePath(folder) != 1)
        std::fprintf(stderr, "logon failed: %s\n", qPrintable(ftp.ErrorDescription()));
}

QString credentialsUrl(TestServers &servers, const QString &path)
{
    return QStringLiteral("ftp://%1:%2@127.0.0.1:%3/")
               .arg(QLatin1String(TestServers::User), QLatin1String(TestServers::Password))
               .arg(servers.ftpPort()) +
           path;
}

void benchListing(TestServers &servers)
{
    const QString folder = servers.ftpRoot() + QStringLiteral("/many");
    QDir().mkpath(folder);
    for (int i = 0; i < ListedFiles; ++i)
        writeFile(folder + QStringLiteral("/file%1.htm").arg(i, 5, 10, QLatin1Char('0')), "x");

    int listed = 0;
    const double ours = bestOf([&](int) {
        FtpControl ftp;
        QObject::connect(&ftp, &FtpControl::DirList, &ftp, [&listed] { ++listed; });
        listed = 0;
        logon(ftp, servers, QStringLiteral("/many"));
        ftp.ListDirectoryLong();
        ftp.Logoff();
    });
    if (listed != ListedFiles)
        std::fprintf(stderr, "listed %d entries\n", listed);
    const double theirs = bestOf([&](int) {
        runCurl({QStringLiteral("-o"), QStringLiteral("/dev/null"), credentialsUrl(servers, QStringLiteral("many/"))});
    });
    std::printf("list_ours %.1f ms\nlist_curl %.1f ms\nlist_ratio %.2f x\n", ours, theirs, ours / theirs);
}

void benchBatch(TestServers &servers)
{
    QTemporaryDir local;
    const QByteArray page(4096, 'p');
    QStringList names;
    for (int i = 0; i < BatchFiles; ++i) {
        names << QStringLiteral("page%1.htm").arg(i);
        writeFile(local.filePath(names.last()), page);
    }
    const double ours = bestOf([&](int run) {
        const QString folder = QStringLiteral("ours%1").arg(run);
        QDir().mkpath(servers.ftpRoot() + QLatin1Char('/') + folder);
        FtpControl ftp;
        logon(ftp, servers, QLatin1Char('/') + folder);
        ftp.TransferMode = 2;
        for (const QString &name : names) {
            ftp.LocalFile = local.filePath(name);
            ftp.RemoteFile = name;
            if (ftp.Upload() != 1)
                std::fprintf(stderr, "upload failed: %s\n", qPrintable(ftp.ErrorDescription()));
        }
        ftp.Logoff();
    });
    const double theirs = bestOf([&](int run) {
        const QString folder = QStringLiteral("curl%1").arg(run);
        QDir().mkpath(servers.ftpRoot() + QLatin1Char('/') + folder);
        QStringList arguments;
        for (const QString &name : names)
            arguments << QStringLiteral("-T") << local.filePath(name)
                      << credentialsUrl(servers, folder + QLatin1Char('/') + name);
        runCurl(arguments);
    });
    std::printf("batch_ours %.1f ms\nbatch_curl %.1f ms\nbatch_ratio %.2f x\n", ours, theirs,
                ours / theirs);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    TestEnvironment::prepare();
    TestServers servers;
    benchListing(servers);
    benchBatch(servers);
    std::fflush(stdout);
    return 0;
}
