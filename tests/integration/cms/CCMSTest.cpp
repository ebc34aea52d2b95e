// The CMS file on a real FTP server: made in _resetp when missing, written
// from the tables and read back into them, and the files a reader refuses.

#include "../transfer/TransferSite.h"
#include "cms/CCMS.h"
#include "cms/CMSTables.h"
#include "support/UserQuestions.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace transfer_test;

namespace {

const QString CmsFile = QStringLiteral("_resetp/cms.dat");

class CCMSTest : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        useSites({demoSite()});
        QDir(servers().webRoot() + QStringLiteral("/_resetp")).removeRecursively();
        ResetCMSTables();
        UserQuestions::Script({});
    }
    void TearDown() override
    {
        UserQuestions::EndScript();
        servers().clearFtpFaults();
        QDir(servers().webRoot() + QStringLiteral("/_resetp")).removeRecursively();
        MError::ClearError();
    }

    static QList<UserQuestions::Shown> shown() { return UserQuestions::ShownSoFar(); }
};

void fillTables()
{
    g_aCMSUsers = {{QStringLiteral("Admin"), QStringLiteral("Top"), {1, 2, 3, 4, 1}, 0},
                   {QStringLiteral("eva"), QStringLiteral("\u00e5ke"), {CMS_ALL_ENABLED, 0, 0, 0, 0}, 0},
                   {}};
    g_aCMSPages = {{QStringLiteral("http://site.test/index.htm"), {1.0f, -1.0f}}, {QString(), {-1.0f}}};
    g_boolAllFilesLocked = false;
}

} // namespace

TEST_F(CCMSTest, MissingFileMakesTheFolderThenTablesGoUpAndComeBackEqual)
{
    EXPECT_EQ(CCMS::CMSFolder(), QStringLiteral("/www/_resetp"));
    EXPECT_EQ(CCMS().GetCMSData(), -1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(MError::ErrorNumber(), 0) << "a missing file is no error";
    EXPECT_TRUE(webFileExists(QStringLiteral("_resetp")));
    EXPECT_FALSE(QFile::exists(CCMS::LocalFile()));

    fillTables();
    const auto users = g_aCMSUsers;
    const auto pages = g_aCMSPages;
    ASSERT_EQ(CCMS().SetCMSData(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(webFileExists(CmsFile));
    EXPECT_FALSE(QFile::exists(CCMS::LocalFile()));

    ResetCMSTables();
    ASSERT_EQ(CCMS().GetCMSData(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(g_aCMSUsers, users);
    EXPECT_EQ(g_aCMSPages, pages);
    EXPECT_TRUE(g_boolAllFilesLocked);
    EXPECT_EQ(g_dtCMSStamp, QDate::currentDate().addYears(3));
    EXPECT_TRUE(shown().isEmpty());
}

TEST_F(CCMSTest, GarbageOnTheServerGivesOneMessageAndLeavesTheResetTables)
{
    servers().writeWebFile(CmsFile, QByteArray("13        \xff\xff\x01\x00\xff\xff\xff\x7f", 18));
    EXPECT_EQ(CCMS().GetCMSData(), -2);
    EXPECT_EQ(MError::ErrorNumber(), 0) << "the error is logged, not left pending";
    ASSERT_EQ(shown().size(), 1);
    EXPECT_EQ(shown()[0].text, QStringLiteral("Vindrell had a problem reading the settings file for CMS. "
                                              "It may be the wrong version or corrupt."));
    EXPECT_EQ(g_aCMSUsers, std::vector<CMSUSER>(1));
    EXPECT_FALSE(QFile::exists(CCMS::LocalFile()));
}

TEST_F(CCMSTest, NewerVersionIsUsedAfterOneWarning)
{
    fillTables();
    ASSERT_EQ(CCMS().SetCMSData(), 1);
    QByteArray file = servers().readWebFile(CmsFile);
    file.replace(0, 2, "14");
    servers().writeWebFile(CmsFile, file + QByteArray("fields of a later version"));

    ResetCMSTables();
    EXPECT_EQ(CCMS().GetCMSData(), 1);
    ASSERT_EQ(shown().size(), 1);
    EXPECT_EQ(shown()[0].title, QStringLiteral("Vindrell CMS file check"));
    EXPECT_TRUE(shown()[0].text.startsWith(QStringLiteral("The version on the CMS settings file was newer")));
    EXPECT_EQ(g_aCMSUsers[1].strPassword, QStringLiteral("\u00e5ke"));
}

TEST_F(CCMSTest, RefusedUploadFailsWithTheErrorPendingAndNoLocalFileLeft)
{
    fillTables();
    servers().setFtpFaults(QJsonObject{{QStringLiteral("readonly"), QJsonArray{QStringLiteral("www/") + CmsFile}}});
    EXPECT_EQ(CCMS().SetCMSData(), 0);
    EXPECT_NE(MError::ErrorNumber(), 0);
    EXPECT_FALSE(webFileExists(CmsFile));
    EXPECT_FALSE(QFile::exists(CCMS::LocalFile()));
}
