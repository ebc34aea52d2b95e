// The wait dialog: where it stands, when its Cancel is offered, and what a
// press of Cancel does.

#include "support/MWait.h"
#include "support/frmWait.h"

#include <QPushButton>
#include <QWidget>

#include <gtest/gtest.h>

TEST(WaitDialog, StandsAQuarterInsideItsWindowAndCancelRunsTheActionOnce)
{
    QWidget window;
    window.setGeometry(100, 80, 800, 600);
    int cancelled = 0;
    MWait::g_boolWaitCancelled = false;
    MWait::Wait_Start(QStringLiteral("Entering edit mode"), &window, [&] { ++cancelled; }, QString());
    frmWait *dialog = MWait::Current();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->geometry(), QRect(300, 230, 300, 70));
    ASSERT_TRUE(dialog->CancelButton()->isEnabled());
    dialog->CancelButton()->click();
    EXPECT_TRUE(MWait::g_boolWaitCancelled);
    EXPECT_EQ(cancelled, 1);
    EXPECT_FALSE(dialog->isVisible());
    MWait::Wait_End();
    EXPECT_EQ(MWait::Current(), nullptr);
}

TEST(WaitDialog, ExtraInfoTakesCancelAwayAndANewDialogReplacesTheOld)
{
    QWidget window;
    MWait::Wait_Start(QStringLiteral("first"), &window, {}, QString());
    MWait::Wait_Start(QStringLiteral("Saving."), &window, {}, QStringLiteral("disable cancel button"));
    frmWait *dialog = MWait::Current();
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(dialog->CancelButton()->isEnabled());
    int standing = 0;
    for (frmWait *one : window.findChildren<frmWait *>())
        standing += one->isVisible() ? 1 : 0;
    EXPECT_EQ(standing, 1);
    MWait::Wait_End();
}
