// The safe replace of a page: byte for byte, and never leaving the site
// without the page, whatever command the connection is lost at.

#include "TransferSite.h"
#include "transfer/CFTPS.h"

#include <QJsonArray>

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
        removeWebFile(QStringLiteral("replace/tempppp.dat"));
        removeWebFile(QStringLiteral("replace/tempppp2.dat"));
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
    EXPECT_FALSE(webFileExists(QStringLiteral("replace/tempppp.dat")));
    EXPECT_FALSE(webFileExists(QStringLiteral("replace/tempppp2.dat")));

    QByteArray back;
    EXPECT_EQ(client.GetASCIIFile(kUrl, back), 1);
    EXPECT_EQ(back, large);
}

TEST_F(CFTPSSendPage, APageThatDoesNotExistFailsWithTheServersComplaint)
{
    CFTPS client;
    EXPECT_EQ(client.SendPage(newPage, QStringLiteral("/replace/none.htm")), 0);
    EXPECT_EQ(MError::ErrorNumber(), CFTPS::WriteRefused);
    EXPECT_TRUE(MError::ErrorDescription().startsWith(
        QStringLiteral("This error occurs if the FTP server negotiates Vindrell to write to this folder or "
                       "file. Or maybe is Vindrell in the wrong folder and do not have enough permission "
                       "there.  Page: /replace/none.htm\r\n550")));
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CFTPS.SendPage Page: /replace/none.htm"));
    EXPECT_FALSE(webFileExists(QStringLiteral("replace/none.htm")));
}

TEST_F(CFTPSSendPage, ARefusedWriteLeavesThePageAsItWas)
{
    servers().setFtpFaults({{QStringLiteral("fail550"), QJsonArray{QStringLiteral("tempppp.dat")}},
                            {QStringLiteral("fail550_commands"), QJsonArray{QStringLiteral("STOR")}}});
    CFTPS client;
    EXPECT_EQ(client.SendPage(newPage, kUrl), 0);
    EXPECT_EQ(MError::ErrorNumber(), CFTPS::WriteRefused);
    EXPECT_EQ(servers().readWebFile(kPage), oldPage);
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
    ASSERT_GE(commands, 8);

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
        MError::ClearError();
    }
}

// A run that broke between the two renames and could not put the old page
// back leaves it only as tempppp2.dat; the next replace in that folder puts
// it back first instead of deleting it.
TEST_F(CFTPSSendPage, TheNextReplaceRecoversAPageLeftAsideByABrokenRun)
{
    servers().setFtpFaults({{QStringLiteral("drop_on"), QStringLiteral("^RNFR tempppp\\.dat")},
                            {QStringLiteral("fail550"),
                             QJsonArray{QStringLiteral("tempppp.dat"), QStringLiteral("tempppp2.dat")}},
                            {QStringLiteral("fail550_commands"), QJsonArray{QStringLiteral("RNFR")}}});
    CFTPS client;
    EXPECT_EQ(client.SendPage(newPage, kUrl), 0);
    servers().clearFtpFaults();
    MError::ClearError();
    ASSERT_FALSE(webFileExists(kPage));
    ASSERT_EQ(servers().readWebFile(QStringLiteral("replace/tempppp2.dat")), oldPage);

    // Before the next text goes up, the old page is back.
    servers().setFtpFaults({{QStringLiteral("fail550"), QJsonArray{QStringLiteral("tempppp.dat")}},
                            {QStringLiteral("fail550_commands"), QJsonArray{QStringLiteral("STOR")}}});
    EXPECT_EQ(client.SendPage(newPage, kUrl), 0);
    EXPECT_EQ(servers().readWebFile(kPage), oldPage);
    servers().clearFtpFaults();
    MError::ClearError();

    EXPECT_EQ(client.SendPage(newPage, kUrl), 1);
    EXPECT_EQ(servers().readWebFile(kPage), newPage);
    EXPECT_FALSE(webFileExists(QStringLiteral("replace/tempppp2.dat")));
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
