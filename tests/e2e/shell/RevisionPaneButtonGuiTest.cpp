// The pane button of the main window opens and closes the revision pane
// beside the browser.

#include "shell/EditKeyGuard.h"
#include "shell/RevisionPane.h"
#include "shell/frmVindrell.h"
#include "support/UserQuestions.h"

#include <QListWidget>
#include <QPushButton>

#include <gtest/gtest.h>

TEST(RevisionPaneButton, OpensAndClosesThePaneQuietlyOutsideAnEdit)
{
    UserQuestions::Script({});
    frmVindrell window;
    window.show();
    auto *button = window.findChild<QPushButton *>(QStringLiteral("cmdPane3"));
    ASSERT_NE(button, nullptr);
    RevisionPane *pane = window.revisionPane();
    EXPECT_TRUE(pane->isHidden());
    EXPECT_FALSE(window.keyGuard()->editing());

    button->click();
    EXPECT_TRUE(pane->isVisible());
    EXPECT_EQ(pane->lstRollback->count(), 0);
    EXPECT_FALSE(pane->cmdRollback->isEnabled());
    // Without a page under edit there is nothing to recover and nothing to say.
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());

    button->click();
    EXPECT_TRUE(pane->isHidden());
    UserQuestions::EndScript();
}
