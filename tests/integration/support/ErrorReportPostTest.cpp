#include "TestServers.h"
#include "support/EnvironmentSettings.h"
#include "support/ErrorReportSender.h"
#include "support/MError.h"

#include <gtest/gtest.h>

TEST(ErrorReportPost, ArrivesWithSubjectAndData)
{
    TestServers &servers = TestServers::shared();
    EnvironmentSettings::SetErrorReportService(servers.httpBase() + QStringLiteral("/"));
    const QString report = QStringLiteral("ERRORDESCRIPTION:\r\nErrnumber: 91\r\n\r\nSYSTEM:\r\nWINSYS:\r\nSystem: Debian\r\n");
    MError::ClearError();
    ASSERT_EQ(ErrorReportSender::Send(report, QStringLiteral("CDocument.Save{line: 3"),
                                      QStringLiteral("Anna & Co"), QStringLiteral("Name: Netscape\r\n")),
              1)
        << MError::ErrorDescription().toStdString();
    const QByteArray posts = servers.httpPosts();
    EXPECT_TRUE(posts.contains("POST /_services/_error_report.asp?subject=CDocument%2ESave%7Bline%3A+3%3A+Anna+%26+Co"
                               "&data=ERRORDESCRIPTION%3A%0D%0AErrnumber%3A+91%0D%0A%0D%0ASYSTEM%3A%0D%0A"
                               "Name%3A+Netscape%0D%0A%0D%0A%0D%0ASystem%3A+Debian%0D%0A\n"))
        << posts.toStdString();
}

TEST(ErrorReportPost, UnreachableServiceSetsThePendingError)
{
    // A port nobody listens on: the post fails and says why.
    EnvironmentSettings::SetErrorReportService(QStringLiteral("http://127.0.0.1:1"));
    MError::ClearError();
    EXPECT_EQ(ErrorReportSender::Send(QStringLiteral("r"), QStringLiteral("p"), QString(), QString()), 0);
    EXPECT_EQ(MError::ErrorNumber(), 25061); // refused
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("ErrorReportSender.Post"));
    MError::ClearError();
}
