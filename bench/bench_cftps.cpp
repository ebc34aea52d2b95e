// What the transfer client costs the server: the FTP commands of one safe
// replace of a page on an open session, and the logins of a sequence of ten
// operations on one site by several clients, as a user action makes them.
// Counts come from the fixture server's command log.

#include "DemoSite.h"
#include "TestEnvironment.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "transfer/CFTPS.h"
#include "transfer/TransferActionScope.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <functional>

namespace {

// Ten operations of one user action, each by a client of its own, as the
// parts of a save or of the site tree make them.
int sequenceOfTen(TestServers &servers)
{
    servers.clearFtpLog();
    const QString copy = QCoreApplication::applicationDirPath() + QStringLiteral("/bench_copy.htm");
    const std::function<long(CFTPS &)> operations[] = {
        [](CFTPS &c) { QByteArray d; return c.GetASCIIFile(QStringLiteral("/index.htm"), d); },
        [](CFTPS &c) {
            QByteArray d;
            return c.GetASCIIFile(QStringLiteral("/index.htm"), d) == 1 ? c.SendPage(d, QStringLiteral("/index.htm")) : 0;
        },
        [](CFTPS &c) { return c.CreateFolder(QStringLiteral("/"), QStringLiteral("products")); },
        [&](CFTPS &c) { return c.SaveFile(QStringLiteral("/index.htm"), copy); },
        [](CFTPS &c) { return c.CopyFile(QStringLiteral("/index.htm"), QStringLiteral("bench1.htm")); },
        [](CFTPS &c) { return c.RenameFile(QStringLiteral("/bench1.htm"), QStringLiteral("bench2.htm")); },
        [](CFTPS &c) { return c.SendNewPage(QStringLiteral("Bench"), QStringLiteral("/bench3.htm")); },
        [](CFTPS &c) { return c.RemoveFile(QStringLiteral("/bench3.htm")); },
        [](CFTPS &c) { return c.RemoveFile(QStringLiteral("/bench2.htm")); },
        [](CFTPS &c) { QByteArray d; return c.GetASCIIFile(QStringLiteral("/products/index.htm"), d); },
    };
    int ok = 0;
    {
        TransferActionScope action;
        for (const auto &operation : operations) {
            CFTPS client;
            ok += operation(client) == 1 ? 1 : 0;
        }
    }
    QFile::remove(copy);
    if (ok != 10)
        std::fprintf(stderr, "only %d of the ten operations succeeded\n", ok);
    return servers.ftpLogins();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    TestEnvironment::prepare();
    TestServers servers;
    MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers)};
    MGlobalProjectObjects::lCurrentURL = 0;

    int commands = 0;
    {
        CFTPS client;
        QByteArray page;
        client.GetASCIIFile(QStringLiteral("/index.htm"), page);
        servers.clearFtpLog();
        client.SendPage(page, QStringLiteral("/index.htm"));
        commands = static_cast<int>(servers.ftpLog().size());
    }
    const int logins = sequenceOfTen(servers);
    std::printf("commands_per_sendpage %d commands\n", commands);
    std::printf("logins_per_sequence %d logins\n", logins);
    return 0;
}
