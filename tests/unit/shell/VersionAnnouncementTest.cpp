// The version text of the maker's server, and which site an address is on.

#include "shell/CVersionAnnouncement.h"
#include "support/MError.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {
using V = CVersionAnnouncement;
} // namespace

TEST(VersionAnnouncement, OnlyMajorAndMinorCountAndOtherTextIsAnError)
{
    long major = -1, minor = -1;
    ASSERT_EQ(V::Parse(QStringLiteral("1.2.4"), major, minor), 1);
    EXPECT_EQ(major, 1);
    EXPECT_EQ(minor, 2);
    ASSERT_EQ(V::Parse(QStringLiteral(" 3 . 10\r\n"), major, minor), 1);
    EXPECT_EQ(major, 3);
    EXPECT_EQ(minor, 10);

    // A missing or foreign piece is an error of the check.
    for (const char *reply : {"2", "x.1", "1.beta", "<html>"}) {
        MError::ClearError();
        long major = 0, minor = 0;
        EXPECT_EQ(V::Parse(QString::fromLatin1(reply), major, minor), 0) << reply;
        EXPECT_NE(MError::ErrorNumber(), 0) << reply;
        EXPECT_EQ(MError::ErrorSource(), QStringLiteral("frmVindrell.checkForNewVersions")) << reply;
    }
    MError::ClearError();
}

TEST(VersionAnnouncement, NewerOnlyByMajorOrByMinorOfTheSameMajor)
{
    EXPECT_TRUE(V::IsNewer(2, 0, 1, 9));
    EXPECT_TRUE(V::IsNewer(1, 3, 1, 2));
    EXPECT_FALSE(V::IsNewer(1, 2, 1, 2)); // "1.2" against 1.2.4 announces nothing
    EXPECT_FALSE(V::IsNewer(1, 9, 2, 0));
    EXPECT_FALSE(V::IsNewer(0, 9, 1, 0));
}

TEST(VersionAnnouncement, QuestionNamesBothVersionsAndIsSilencedPerVersion)
{
    const QString text = V::Message(QStringLiteral("7.3\n"));
    const QRegularExpression form(QStringLiteral(
        "^There is a new version of Vindrell to download\\. Your version is \\d+\\.\\d\\d\\.\\d{4}\\. "
        "The latest version is 7\\.3 Would you like to get it\\?$"));
    EXPECT_TRUE(form.match(text).hasMatch()) << text.toStdString();
    EXPECT_EQ(V::Title(), QStringLiteral("A new version is available"));
    EXPECT_EQ(V::MessageName(7, 3), QStringLiteral("ShowVerMessAdmin7.3"));
    EXPECT_NE(V::MessageName(7, 3), V::MessageName(7, 4));
}
