#include "EnglishAfterTest.h"
#include "platform/CReg.h"
#include "support/EnvironmentSettings.h"
#include "support/MResources.h"
#include "support/StringIds.h"

#include <gtest/gtest.h>

using Languages = EnglishAfterTest;

TEST_F(Languages, OffersEnglishAndSwedishAndReadsTheSetting)
{
    // Written as the settings dialog does, straight into the store.
    ASSERT_EQ(CReg::SaveSetting(QStringLiteral("Environment"), QStringLiteral("Lang"), QStringLiteral("1053")), 1);
    EXPECT_EQ(MResources::InitLangSupport(), 1);
    QList<MResources::Language> languages;
    EXPECT_EQ(MResources::GetLanguages(languages), 1);
    ASSERT_EQ(languages.size(), 2);
    EXPECT_EQ(languages[0].name, QStringLiteral("English"));
    EXPECT_EQ(languages[0].id, 1033);
    EXPECT_EQ(languages[1].name, QStringLiteral("Swedish"));
    EXPECT_EQ(languages[1].id, 1053);
    EXPECT_EQ(MResources::CurrentLanguage(), 1053);
    EXPECT_EQ(MResources::LoadResourceString(StringIds::ErrorDialogTitle), QStringLiteral("Ett fel inträffade"));
}

TEST_F(Languages, DanishIsPartialAndNothingFallsBack)
{
    EnvironmentSettings::SetLang(1030);
    MResources::InitLangSupport();
    EXPECT_EQ(MResources::LoadResourceString(StringIds::GoButton), QStringLiteral("Gå"));
    EXPECT_TRUE(MResources::LoadResourceString(StringIds::ErrorDialogTitle).isEmpty());
}

TEST_F(Languages, UnsetOrUnreadableSettingMeansEnglish)
{
    EnvironmentSettings::SetLang(0);
    MResources::InitLangSupport();
    EXPECT_EQ(MResources::LoadResourceString(StringIds::CloseButton), QStringLiteral("Close"));
}

// Every English text has its Swedish one, and pieces joined with a value keep
// their blanks in both.
TEST(StringTable, SwedishBesideEveryEnglishText)
{
    int checked = 0;
    for (long id = 1; id <= 41000; ++id) {
        const QString english = MResources::LoadResourceString(id, 1033);
        if (english.isEmpty())
            continue;
        ++checked;
        const QString swedish = MResources::LoadResourceString(id, 1053);
        EXPECT_FALSE(swedish.isEmpty()) << id;
        EXPECT_EQ(english.endsWith(QLatin1Char(' ')), swedish.endsWith(QLatin1Char(' '))) << id;
    }
    EXPECT_GT(checked, 500);
}
