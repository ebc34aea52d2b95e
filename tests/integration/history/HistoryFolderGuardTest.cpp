// The revision folder inside the web root: made with the files that close it
// on common web servers, and the user warned once when the web server gives
// a revision out all the same.

#include "CurlClient.h"
#include "RevisionSite.h"

#include "cms/CCMS.h"
#include "history/CRollback.h"
#include "history/HistoryFolderGuard.h"
#include "support/UserQuestions.h"

#include <gtest/gtest.h>

using namespace history_test;

namespace {

const QByteArray kPage("<% Set conn = Server.CreateObject(\"ADODB.Connection\") : conn.Open \"pwd=secret\" %>");

class HistoryFolderGuardTest : public testing::Test
{
protected:
    void SetUp() override
    {
        useDemoSite();
        setHistorySize(5);
        removeHistory();
        CReg::DeleteSetting(QStringLiteral("HistoryFolders"));
        MError::ClearError();
        UserQuestions::Script({UserQuestions::vbOK});
    }
    void TearDown() override
    {
        UserQuestions::EndScript();
        servers().clearHttpBehaviour();
        removeHistory();
        MError::ClearError();
    }

    // The page as it stood is kept as a revision; returns the revision's name.
    static QString save(const QString &page)
    {
        servers().writeWebFile(page, kPage);
        EXPECT_EQ(CRollback().BackupPage(QStringLiteral("/www/") + page), 1)
            << MError::ErrorDescription().toStdString();
        return serverIndex().value(QStringLiteral("/www/") + page, QStringLiteral("ID")) + QStringLiteral(".1");
    }

    static QList<UserQuestions::Shown> shown() { return UserQuestions::ShownSoFar(); }
};

} // namespace

TEST_F(HistoryFolderGuardTest, TheFolderIsMadeWithDenyFilesThatAWebServerHonouringThemKeepsClosed)
{
    const QString revision = save(QStringLiteral("guarded.htm"));
    const QByteArray htaccess = revisionFile(QStringLiteral(".htaccess"));
    EXPECT_TRUE(htaccess.contains("Require all denied"));
    EXPECT_TRUE(htaccess.contains("Order allow,deny\n    Deny from all"));
    EXPECT_TRUE(htaccess.contains("<IfModule !mod_authz_core.c>"));
    EXPECT_EQ(revisionFile(QStringLiteral("web.config")), HistoryFolderGuard::WebConfigText());
    EXPECT_TRUE(revisionFile(QStringLiteral("web.config")).contains("<add segment=\"_resetp\" />"));

    EXPECT_EQ(CurlClient::httpGet(servers().httpBase() + QStringLiteral("/_resetp/") + revision).status, 403);
    EXPECT_TRUE(shown().isEmpty());
}

TEST_F(HistoryFolderGuardTest, AWebServerThatGivesARevisionOutIsToldOncePerSite)
{
    servers().setHttpBehaviour({{QStringLiteral("htaccess"), QStringLiteral("ignore")}});
    // Made at Edit for the CMS file: the check waits for the first revision.
    ASSERT_EQ(CCMS().GetCMSData(), -1);
    ASSERT_TRUE(shown().isEmpty());

    const QString revision = save(QStringLiteral("open.htm"));
    ASSERT_EQ(shown().size(), 1);
    EXPECT_EQ(shown()[0].title, QStringLiteral("Page history open to the web"));
    EXPECT_EQ(shown()[0].style, UserQuestions::vbExclamation);
    EXPECT_TRUE(shown()[0].text.contains(QStringLiteral("folder /www/_resetp on the FTP server")));
    EXPECT_TRUE(shown()[0].text.contains(servers().httpBase() + QStringLiteral("/_resetp/") + revision));
    EXPECT_TRUE(shown()[0].text.contains(QStringLiteral("\"FTP root\", now \"/www\"")));

    // Made again and found open again, it is not told twice.
    removeHistory();
    save(QStringLiteral("open.htm"));
    EXPECT_EQ(shown().size(), 1);
}
