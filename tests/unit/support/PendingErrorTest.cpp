#include "support/MError.h"
#include "support/MResources.h"

#include <gtest/gtest.h>

TEST(PendingError, InnermostPositionSurvivesTheWayUp)
{
    MError::ClearError();
    MError::SetErrorIfClear(-550, QStringLiteral("550 Permission denied."), QStringLiteral("CFTPS.SendPage"));
    MError::SetErrorIfClear(0, QStringLiteral("outer"), QStringLiteral("CDocument.Save"));
    EXPECT_EQ(MError::ErrorNumber(), -550);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("CFTPS.SendPage"));
    MError::ClearError();
    EXPECT_EQ(MError::ErrorNumber(), 0);
    EXPECT_TRUE(MError::ErrorDescription().isEmpty());
}

TEST(StringTable, TextsByLanguageAndEmptyOnMiss)
{
    EXPECT_EQ(MResources::LoadResourceString(1, 1033), QStringLiteral("VindrellCMS"));
    EXPECT_TRUE(MResources::LoadResourceString(999999, 1033).isEmpty());
    EXPECT_TRUE(MResources::LoadResourceString(1, 9999).isEmpty());
}
