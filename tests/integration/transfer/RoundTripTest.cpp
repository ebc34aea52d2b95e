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

// A save of a page with its revision and the CMS data, on a session that
// has only logged on: 29 commands.
//  - TYPE I, SIZE, REST 0: the session's one binary type, set before the
//    first transfer (a type sent after the PASV would break strict servers);
//    a session that read the page at Edit has it already.
//  - one CWD per change of folder (page, history, page, CMS data: 4).
//  - the page as it stands now and the history index: EPSV, RETR each.
//  - the revision under a number the index has no date for: EPSV, STOR,
//    and SIZE to prove that the server kept every byte.
//  - the index, the page and the CMS data each by the safe replace: EPSV,
//    STOR under a name of its own, SIZE, RNFR, RNTO.
// No listing: a folder is looked at only where a replace of this program
// broke there and was never settled.
TEST(RoundTrip, OneSaveStaysWithinItsCommands)
{
    FaultSweep sweep(servers(), 2);
    ASSERT_EQ(sweep.Save(), 1);
    // The edit session holds its connection from Edit to Save, as here.
    CFTPS session;
    ASSERT_EQ(session.Logon(), 1);
    const int commands = sweep.CommandsOfOneSave();
    std::printf("commands of one save: %d\n", commands);
    EXPECT_LE(commands, 29) << logText().toStdString();
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
