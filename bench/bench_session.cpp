// One edit session on the demo page, as the user runs it: the press of
// Edit until the page is editable, and Save until the window browses the
// saved page again. The FTP logins are counted from the server's log: those
// of the save alone, and those of the whole session from Edit to Save (the
// session keeps one connection from its entry to its end, so a save
// normally needs no login of its own).

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

void writeStore(const TestServers &servers)
{
    MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers)};
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
    std::vector<double> entry, save, logins, sessionLogins, commands;
    for (int round = 0; round < 5; ++round) {
        QElapsedTimer timer;
        servers.clearFtpLog();
        timer.start();
        window.EditButton()->click();
        entry.push_back(timer.nsecsElapsed() / 1e6);
        if (!window.EditButton()->isChecked() || window.browser()->Document().designMode() != QStringLiteral("On")) {
            std::fprintf(stderr, "the page did not become editable\n");
            return 2;
        }
        // A change of the title makes the page one to save.
        window.LetDocumentTitle(QStringLiteral("Kelda Demo Garden %1").arg(round));
        const int entryLogins = servers.ftpLogins();
        servers.clearFtpLog();
        timer.restart();
        window.SaveButton()->click();
        const bool browsing = !window.EditButton()->isChecked() && settle(window.browser());
        save.push_back(timer.nsecsElapsed() / 1e6);
        logins.push_back(servers.ftpLogins());
        commands.push_back(servers.ftpLog().size());
        sessionLogins.push_back(entryLogins + servers.ftpLogins());
        if (!browsing) {
            std::printf("edit_entry_ms %.1f ms\n", entry.back());
            std::fprintf(stderr, "the save did not end the session\n");
            return 3;
        }
    }
    std::printf("edit_entry_ms %.1f ms\n", BenchPage::median(entry));
    std::printf("save_ms %.1f ms\n", BenchPage::median(save));
    std::printf("logins_per_save %.1f logins\n", BenchPage::median(logins));
    std::printf("logins_per_session %.1f logins\n", BenchPage::median(sessionLogins));
    std::printf("ftp_commands_per_save %.1f commands\n", BenchPage::median(commands));
    return 0;
}
