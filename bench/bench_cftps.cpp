// What the transfer client costs the server: the FTP commands of one safe
// replace of a page on an open session, and the logins of a sequence of ten
// operations on one site by several clients, as a user action makes them.
// Counts come from the fixture server's command log.

#include "TestEnvironment.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "transfer/CFTPS.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

SiteRecord site(const TestServers &servers)
{
    SiteRecord record;
    record.userid = QString::fromLatin1(TestServers::User);
    record.password = QString::fromLatin1(TestServers::Password);
    record.baseurl = QStringLiteral("127.0.0.1:%1").arg(servers.ftpPort());
    record.baseaddress = servers.httpBase();
    record.ftproot = QStringLiteral("/www");
    return record;
}

int sequenceOfTen(TestServers &servers)
{
    servers.clearFtpLog();
    CFTPS main;
    QByteArray data;
    int ok = 0;
    ok += main.GetASCIIFile(QStringLiteral("/index.htm"), data) == 1;
    ok += main.SendPage(data, QStringLiteral("/index.htm")) == 1;
    {
        CFTPS history; // made for a moment, as the revision store does
        ok += history.CreateFolder(QStringLiteral("/"), QStringLiteral("bench")) == 1;
        ok += history.SaveFile(QStringLiteral("/index.htm"),
                               QCoreApplication::applicationDirPath() + QStringLiteral("/bench_copy.htm")) == 1;
    }
    ok += main.CopyFile(QStringLiteral("/index.htm"), QStringLiteral("bench1.htm")) == 1;
    ok += main.RenameFile(QStringLiteral("/bench1.htm"), QStringLiteral("bench2.htm")) == 1;
    {
        CFTPS objects; // an image object uploading what it brought in
        ok += objects.SendNewPage(QStringLiteral("Bench"), QStringLiteral("/bench3.htm")) == 1;
        ok += objects.RemoveFile(QStringLiteral("/bench3.htm")) == 1;
    }
    ok += main.RemoveFile(QStringLiteral("/bench2.htm")) == 1;
    ok += main.GetASCIIFile(QStringLiteral("/products/index.htm"), data) == 1;
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
    MGlobalProjectObjects::URLDATA = {site(servers)};
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
