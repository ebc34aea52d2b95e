// One edit session on the demo page, as the user runs it: the press of
// Edit until the page is editable, and Save until the window browses the
// saved page again. The FTP logins are counted from the server's log: those
// of the save alone, and those of the whole session from Edit to Save (the
// session keeps one connection from its entry to its end, so a save
// normally needs no login of its own). The same rounds again with the FTP
// server answering each command 50 ms late give entry_ms_rtt50 and
// save_ms_rtt50: what a distant server costs; over explicit TLS on both
// channels, entry_ms_rtt50_ftps and save_ms_rtt50_ftps. save_ms_sftp is the
// save over SFTP beside save_ms, with no delay (sftp_to_ftp_save).

#include "BenchPage.h"
#include "DemoSite.h"
#include "TestEnvironment.h"
#include "TestServers.h"
#include "config/CPublicSettings.h"
#include "config/MGlobalProjectObjects.h"
#include "platform/CReg.h"
#include "platform/PageEngineEnvironment.h"
#include "platform/PageScriptCall.h"
#include "shell/frmVindrell.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>

#include <cstdio>
#include <vector>

namespace {

// protect: how the site's connection is protected, if at all.
void writeStore(const TestServers &servers, void (*protect)(SiteRecord &, const TestServers &) = nullptr)
{
    SiteRecord site = demoSiteRecord(servers);
    if (protect)
        protect(site, servers);
    MGlobalProjectObjects::URLDATA = {site};
    CPublicSettings().SetURLSettings();
    CReg browser;
    browser.Subkey = QStringLiteral("Browser");
    browser.SetRegistryValue(QStringLiteral("HomePage"), servers.httpBase() + QStringLiteral("/index.htm"),
                             CReg::REG_SZ);
    frmVindrell::g_boolVersionChecked = true;
}

bool settle(WebBrowser *ie)
{
    PageScriptCall::pumpUntil([ie] { return ie->ReadyState() != WebBrowser::ReadyStateComplete; }, 1000);
    return ie->waitUntilComplete();
}

struct Figures
{
    bool ok = false;
    double entry = 0, save = 0, logins = 0, sessionLogins = 0, commands = 0;
};

// Medians over rounds of Edit, a change of the title, and Save.
Figures Measure(frmVindrell &window, TestServers &servers, int rounds)
{
    Figures figures;
    std::vector<double> entry, save, logins, sessionLogins, commands;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        servers.clearFtpLog();
        timer.start();
        window.EditButton()->click();
        entry.push_back(timer.nsecsElapsed() / 1e6);
        if (!window.EditButton()->isChecked() || window.browser()->Document().designMode() != QStringLiteral("On")) {
            std::fprintf(stderr, "the page did not become editable\n");
            return figures;
        }
        // A change of the title makes the page one to save.
        window.LetDocumentTitle(QStringLiteral("Kelda Demo Garden %1").arg(round));
        const int entryLogins = servers.ftpLogins();
        servers.clearFtpLog();
        // The save ends when the window shows the saved page again: the top
        // document's load after the click has completed.
        int loads = 0;
        const QMetaObject::Connection counting = QObject::connect(
            window.browser(), &WebBrowser::DocumentComplete, window.browser(),
            [&loads](const QList<int> &, const QString &, bool isTop) { loads += isTop ? 1 : 0; });
        timer.restart();
        window.SaveButton()->click();
        PageScriptCall::pumpUntil([&loads] { return loads > 0; }, 30000);
        QObject::disconnect(counting);
        const bool browsing = loads > 0 && !window.EditButton()->isChecked() && window.browser()->waitUntilComplete();
        save.push_back(timer.nsecsElapsed() / 1e6);
        logins.push_back(servers.ftpLogins());
        commands.push_back(servers.ftpLog().size());
        sessionLogins.push_back(entryLogins + servers.ftpLogins());
        if (!browsing) {
            std::fprintf(stderr, "the save did not end the session\n");
            return figures;
        }
    }
    figures.ok = true;
    figures.entry = BenchPage::median(entry);
    figures.save = BenchPage::median(save);
    figures.logins = BenchPage::median(logins);
    figures.sessionLogins = BenchPage::median(sessionLogins);
    figures.commands = BenchPage::median(commands);
    return figures;
}

} // namespace

int main(int argc, char **argv)
{
    PageEngineEnvironment::prepare();
    QApplication app(argc, argv);
    TestEnvironment::prepare();
    TestServers servers;
    writeStore(servers);
    // Every press of Edit says that the demo site has no CMS file.
    UserQuestions::Script(QList<long>(100, UserQuestions::vbOK));
    frmVindrell window;
    window.resize(1000, 700);
    window.show();
    if (!settle(window.browser()))
        return 1;
    const Figures plain = Measure(window, servers, 5);
    if (!plain.ok)
        return 2;
    std::printf("edit_entry_ms %.1f ms\n", plain.entry);
    std::printf("save_ms %.1f ms\n", plain.save);
    std::printf("logins_per_save %.1f logins\n", plain.logins);
    std::printf("logins_per_session %.1f logins\n", plain.sessionLogins);
    std::printf("ftp_commands_per_save %.1f commands\n", plain.commands);
    // A distant server: each reply of the FTP server comes 50 ms late, as
    // on a link from a home to a hosting company.
    servers.setFtpFaults({{QStringLiteral("delay_ms"), 50}});
    const Figures far = Measure(window, servers, 3);
    servers.clearFtpFaults();
    if (!far.ok)
        return 3;
    std::printf("entry_ms_rtt50 %.1f ms\n", far.entry);
    std::printf("save_ms_rtt50 %.1f ms\n", far.save);
    // The same distant server over explicit TLS on both channels.
    writeStore(servers, useExplicitTls);
    servers.setFtpFaults({{QStringLiteral("delay_ms"), 50}});
    const Figures tls = Measure(window, servers, 3);
    servers.clearFtpFaults();
    if (!tls.ok)
        return 4;
    std::printf("entry_ms_rtt50_ftps %.1f ms\n", tls.entry);
    std::printf("save_ms_rtt50_ftps %.1f ms\n", tls.save);
    std::printf("ftps_to_plain_save %.2f\n", tls.save / far.save);
    // The same site over SFTP, beside the plain FTP figure.
    writeStore(servers, useSftp);
    const Figures sftp = Measure(window, servers, 5);
    if (!sftp.ok)
        return 5;
    std::printf("save_ms_sftp %.1f ms\n", sftp.save);
    std::printf("sftp_to_ftp_save %.2f\n", sftp.save / plain.save);
    return 0;
}
