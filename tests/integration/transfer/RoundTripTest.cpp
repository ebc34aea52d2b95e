// What one save costs on the wire, and what a refused command costs: the
// session keeps its connection and its folder, so a save needs no more
// commands than the protocol asks for.

#include "FaultSweep.h"
#include "TestServers.h"
#include "transfer/CFTPS.h"
#include "support/MError.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

TestServers &servers()
{
    return TestServers::shared();
}

QString logText()
{
    QStringList lines;
    for (const FtpLogEntry &entry : servers().ftpLog())
        lines.append(entry.command + QLatin1Char(' ') + entry.argument);
    return lines.join(QLatin1Char('\n'));
}

} // namespace

// A save of a page with its revision and the CMS data, once the history
// folder stands and the edit session holds its connection: 51 commands.
// Per folder one CWD. Per read (the page, the history index) a RETR with its
// EPSV, and SIZE and REST 0 where the transfer type changes (TYPE I). Per
// replace (revision, index, page, CMS data) the upload (SIZE and REST 0 of
// the type change, EPSV, STOR), its SIZE check (SIZE, REST 0) and the
// rename pair; before it, the first replace of the session in a folder
// lists the folder (TYPE A, SIZE, EPSV, LIST) to clear leftovers of broken
// replaces, later ones ask the SIZE of the file alone.
TEST(RoundTrip, OneSaveStaysWithinItsCommands)
{
    FaultSweep sweep(servers(), 2);
    ASSERT_EQ(sweep.Save(), 1);
    // The edit session holds its connection from Edit to Save, as here.
    CFTPS session;
    ASSERT_EQ(session.Logon(), 1);
    const int commands = sweep.CommandsOfOneSave();
    std::printf("commands of one save: %d\n", commands);
    EXPECT_LE(commands, 51) << logText().toStdString();
}

// A folder the server refuses (550 on the CWD) costs that one command: the
// connection stays, and the next operation needs no new log-on.
TEST(RoundTrip, ARefusedFolderCostsNoNewLogon)
{
    FaultSweep site(servers(), 30);
    CFTPS ftp;
    QByteArray page;
    ASSERT_EQ(ftp.GetASCIIFile(QStringLiteral("/index.htm"), page), 1);
    servers().clearFtpLog();
    QByteArray none;
    EXPECT_NE(ftp.GetASCIIFile(QStringLiteral("/no-such-folder/a.htm"), none), 1);
    MError::ClearError();
    ASSERT_EQ(ftp.GetASCIIFile(QStringLiteral("/index.htm"), page), 1);
    EXPECT_EQ(servers().ftpLogins(), 0) << logText().toStdString();
}
