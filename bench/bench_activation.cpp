// What an automatic activation of the fixture site costs: its time on a
// near server and on one that answers every FTP command 50 ms late, as a
// distant server does, and the FTP commands it sends.

#include "TestEnvironment.h"
#include "TestServers.h"
#include "config/SiteActivation.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonObject>

#include <cstdio>

namespace {

// The record as the settings dialog leaves it for an automatic activation.
SiteRecord newSite(const TestServers &servers)
{
    SiteRecord site;
    site.baseaddress = servers.httpBase();
    site.baseurl = QStringLiteral("127.0.0.1:%1").arg(servers.ftpPort());
    site.userid = QString::fromLatin1(TestServers::User);
    site.password = QString::fromLatin1(TestServers::Password);
    site.usesubindex = QStringLiteral("1");
    return site;
}

// Milliseconds of one activation; -1 when it failed.
qint64 activate(const TestServers &servers)
{
    MGlobalProjectObjects::URLDATA = {newSite(servers)};
    MGlobalProjectObjects::lCurrentURL = 0;
    MError::ClearError();
    QElapsedTimer clock;
    clock.start();
    SiteActivation activation(0);
    const long result = activation.Run();
    const qint64 ms = clock.elapsed();
    if (result != 1) {
        std::fprintf(stderr, "activation failed: %s\n", qPrintable(MError::ErrorDescription()));
        return -1;
    }
    return ms;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    TestEnvironment::prepare();
    UserQuestions::Script({});
    TestServers &servers = TestServers::shared();
    activate(servers); // the first run pays for starting the servers' caches

    servers.clearFtpLog();
    const qint64 near = activate(servers);
    const int commands = static_cast<int>(servers.ftpLog().size());
    std::printf("activate_ms %lld ms\n", static_cast<long long>(near));
    std::printf("activate_ftp_commands %d commands\n", commands);

    servers.setFtpFaults(QJsonObject{{QStringLiteral("delay_ms"), 50}});
    const qint64 far = activate(servers);
    servers.clearFtpFaults();
    std::printf("activate_ms_rtt50 %lld ms\n", static_cast<long long>(far));
    return near < 0 || far < 0 ? 1 : 0;
}
