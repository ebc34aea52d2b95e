#include "support/UserQuestions.h"

#include <gtest/gtest.h>

TEST(UserQuestions, ScriptAnswersInOrderAndRecordsTexts)
{
    UserQuestions::Script({UserQuestions::vbNo, 2});
    EXPECT_EQ(UserQuestions::MsgBox(QStringLiteral("Save the page?"), UserQuestions::vbYesNoCancel),
              UserQuestions::vbNo);
    bool shown = false;
    EXPECT_EQ(UserQuestions::RunDialog(QStringLiteral("frmChooseSiteToEdit"), QStringLiteral("sites"),
                                       [&] { shown = true; return 1L; }),
              2);
    EXPECT_FALSE(shown);
    // Beyond the script: the default button, counted as unanswered.
    EXPECT_EQ(UserQuestions::MsgBox(QStringLiteral("Again?"),
                                    UserQuestions::vbYesNo | UserQuestions::vbDefaultButton2),
              UserQuestions::vbNo);
    EXPECT_EQ(UserQuestions::Unanswered(), 1);
    const auto texts = UserQuestions::ShownSoFar();
    ASSERT_EQ(texts.size(), 3);
    EXPECT_EQ(texts[0].text, QStringLiteral("Save the page?"));
    EXPECT_EQ(texts[1].kind, QStringLiteral("frmChooseSiteToEdit"));
    UserQuestions::EndScript();
}
