// The safe replace of a page: byte for byte, and never leaving the site
// without the page, whatever command the connection is lost at.

#include "TransferSite.h"
#include "transfer/CFTPS.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace transfer_test;

namespace {

const QString kPage = QStringLiteral("replace/page.htm");
const QString kUrl = QStringLiteral("/replace/page.htm");

class CFTPSSendPage : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        useSites({demoSite()});
        servers().writeWebFile(kPage, oldPage);
    }

    // The temporary names of replaces in the page's folder.
    static QStringList leftovers()
    {
        return QDir(servers().webRoot() + QStringLiteral("/replace"))
            .entryList({QStringLiteral("*.kelda-new"), QStringLiteral("*.kelda-old")}, QDir::Files, QDir::Name);
    }
    void TearDown() override
    {
        servers().clearFtpFaults();
        MError::ClearError();
    }

    const QByteArray oldPage = pageOf(5000, 'o');
    const QByteArray newPage = pageOf(6000, 'n');
};

} // namespace

TEST_F(CFTPSSendPage, ReplacesEmptyAndLargePagesByteForByte)
{
    CFTPS client;
    EXPECT_EQ(client.SendPage(QByteArray(), kUrl), 1);
    EXPECT_TRUE(webFileExists(kPage));
    EXPECT_TRUE(servers().readWebFile(kPage).isEmpty());

    const QByteArray large = pageOf(1024 * 1024, 'L') + QByteArray("\xe5\xe4\xf6\r\n\n\r");
    EXPECT_EQ(client.SendPage(large, kUrl), 1);
    EXPECT_EQ(servers().readWebFile(kPage), large);
    EXPECT_EQ(leftovers(), QStringList());

    QByteArray back;
    EXPECT_EQ(client.GetASCIIFile(kUrl, back), 1);
    EXPECT_EQ(back, large);

    // A page that is not there yet is made.
    EXPECT_EQ(client.SendPage(newPage, QStringLiteral("/replace/none.htm")), 1);
    EXPECT_EQ(servers().readWebFile(QStringLiteral("replace/none.htm")), newPage);
    removeWebFile(QStringLiteral("replace/none.htm"));
}

// A refusal is told in the user's words with the server's reply, says
// which page stands, and leaves nothing behind: refused at the upload, and,
// on a server that will not rename onto an existing file, at stepping the
// old page aside and at putting the new one in its place (where the old
// page must be put back).
TEST_F(CFTPSSendPage, ARefusedWriteLeavesThePageAsItWasAndSaysSo)
{
    const QJsonValue twoRenames = true;
    const QList<QJsonObject> refusals = {
        {{QStringLiteral("readonly"), QJsonArray{QStringLiteral("www/replace")}}},
        {{QStringLiteral("no_rename_over"), twoRenames},
         {QStringLiteral("fail550"), QJsonArray{QStringLiteral("page.htm")}},
         {QStringLiteral("fail550_commands"), QJsonArray{QStringLiteral("RNFR")}}},
        {{QStringLiteral("no_rename_over"), twoRenames},
         {QStringLiteral("fail550"), QJsonArray{QStringLiteral("page.htm")}},
         {QStringLiteral("fail550_commands"), QJsonArray{QStringLiteral("RNTO")}},
         {QStringLiteral("fail550_once"), true}},
    };
    CFTPS client;
    // The session learns that the server won't rename onto a file.
    servers().setFtpFaults({{QStringLiteral("no_rename_over"), twoRenames}});
    ASSERT_EQ(client.SendPage(oldPage, kUrl), 1);
    for (const QJsonObject &refusal : refusals) {
        SCOPED_TRACE(QJsonDocument(refusal).toJson().toStdString());
        servers().setFtpFaults(refusal);
        EXPECT_EQ(client.SendPage(newPage, kUrl), 0);
        servers().clearFtpFaults();
        EXPECT_EQ(MError::ErrorNumber(), CFTPS::WriteRefused);
        EXPECT_TRUE(MError::ErrorDescription().startsWith(QStringLiteral("The FTP server does not allow writing here.")));
        EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("The server said: 550")));
        EXPECT_TRUE(MError::ErrorDescription().endsWith(QStringLiteral("The page on the server is the old one: your "
                                                                       "changes were not saved, and they are still in "
                                                                       "the page. Save again when the connection works.")));
        EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CFTPS.SendPage Page: /replace/page.htm"));
        EXPECT_EQ(servers().readWebFile(kPage), oldPage);
        EXPECT_EQ(leftovers(), QStringList());
        MError::ClearError();
    }
}

// The connection is lost before each command of the replace in turn. The
// client logs on again and finishes; whatever happens, the page on the
// server is the old or the new one, whole.
TEST_F(CFTPSSendPage, ALostConnectionAtAnyCommandNeverLosesThePage)
{
    CFTPS client;
    ASSERT_EQ(client.SendPage(oldPage, kUrl), 1);
    servers().clearFtpLog();
    ASSERT_EQ(client.SendPage(oldPage, kUrl), 1);
    const int commands = static_cast<int>(servers().ftpLog().size());
    ASSERT_GE(commands, 5); // EPSV, STOR, SIZE, RNFR, RNTO

    for (int n = 1; n <= commands; ++n) {
        SCOPED_TRACE(n);
        servers().writeWebFile(kPage, oldPage);
        servers().setFtpFaults({{QStringLiteral("drop_before_n"), n}});
        const long result = client.SendPage(newPage, kUrl);
        servers().clearFtpFaults();
        ASSERT_TRUE(webFileExists(kPage));
        const QByteArray now = servers().readWebFile(kPage);
        EXPECT_TRUE(now == newPage || (result != 1 && now == oldPage));
        EXPECT_EQ(result, 1) << MError::ErrorDescription().toStdString() << " at " << MError::ErrorSource().toStdString();
        EXPECT_EQ(leftovers(), QStringList());
        MError::ClearError();
    }
}

// A run that broke for good, the server gone between the two renames of a
// server that won't rename onto a file: the page is missing, its old copy
// stands beside it. The next replace in the folder looks at the folder (by
// LIST where STAT is refused) and settles what that run
// left before anything else: the old copy goes back, the rest goes. A fresh
// leftover of another page may be a save running now and is left alone; a
// stale one is settled too.
TEST_F(CFTPSSendPage, TheNextReplaceSettlesWhatABrokenRunLeft)
{
    CFTPS client;
    servers().setFtpFaults({{QStringLiteral("no_rename_over"), true}});
    ASSERT_EQ(client.SendPage(oldPage, kUrl), 1);
    servers().setFtpFaults({{QStringLiteral("no_rename_over"), true},
                            {QStringLiteral("unreachable_on"), QStringLiteral("^RNTO page\\.htm$")},
                            {QStringLiteral("unreachable_s"), 30}});
    EXPECT_EQ(client.SendPage(newPage, kUrl), 0);
    servers().clearFtpFaults();
    MError::ClearError();
    ASSERT_FALSE(webFileExists(kPage));
    servers().writeWebFile(QStringLiteral("replace/other.htm.12345678.kelda-old"), "other, running now");
    servers().writeWebFile(QStringLiteral("replace/stale.htm.87654321.kelda-old"), "stale");
    const QString stale = servers().webRoot() + QStringLiteral("/replace/stale.htm.87654321.kelda-old");
    {
        QFile file(stale);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addDays(-2), QFileDevice::FileModificationTime));
    }

    // A server that won't list with STAT is looked at with LIST.
    servers().setFtpFaults({{QStringLiteral("fail550"), QJsonArray{QStringLiteral("replace")}},
                            {QStringLiteral("fail550_commands"), QJsonArray{QStringLiteral("STAT")}}});
    EXPECT_EQ(client.SendPage(newPage, kUrl), 1);
    servers().clearFtpFaults();
    EXPECT_EQ(servers().readWebFile(kPage), newPage);
    EXPECT_EQ(servers().readWebFile(QStringLiteral("replace/stale.htm")), "stale");
    EXPECT_EQ(leftovers(), QStringList{QStringLiteral("other.htm.12345678.kelda-old")});
    removeWebFile(QStringLiteral("replace/other.htm.12345678.kelda-old"));
    removeWebFile(QStringLiteral("replace/stale.htm"));

    // Once settled, the folder needs no look before the next replace.
    servers().clearFtpLog();
    EXPECT_EQ(client.SendPage(oldPage, kUrl), 1);
    for (const FtpLogEntry &entry : servers().ftpLog())
        EXPECT_TRUE(entry.command != QStringLiteral("STAT") && entry.command != QStringLiteral("LIST")
                    && entry.command != QStringLiteral("MLSD"));
}

TEST_F(CFTPSSendPage, NewPageFromTheTemplate)
{
    CFTPS client;
    EXPECT_EQ(client.SendNewPage(QStringLiteral("Fresh"), QStringLiteral("/replace/fresh.htm")), 1);
    const QByteArray page = servers().readWebFile(QStringLiteral("replace/fresh.htm"));
    EXPECT_TRUE(page.startsWith("<HTML>\r\n<HEAD>\r\n<TITLE>Fresh</TITLE>\r\n\t<META http-equiv="));
    EXPECT_TRUE(page.contains("\t<P>This page is created by Vindrell "));
    EXPECT_TRUE(page.endsWith("</BODY>\r\n</HTML>\r\n"));
}
