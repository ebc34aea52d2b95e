#include "shell/frmVindrell.h"
#include "EnglishAfterTest.h"
#include "support/EnvironmentSettings.h"
#include "support/MResources.h"
#include "support/frmErrorDialog.h"

#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

using Captions = EnglishAfterTest;

TEST_F(Captions, ShortLookHasOnlyClose)
{
    frmErrorDialog dialog;
    dialog.init(-550, QStringLiteral("550 Permission denied."), QStringLiteral("CFTPS.SendPage"), false, QString());
    EXPECT_TRUE(dialog.cmdOKButton->isHidden());
    EXPECT_TRUE(dialog.lblSendErrorInfo->isHidden());
    EXPECT_TRUE(dialog.lblShowMessage->isHidden());
    EXPECT_TRUE(dialog.imgError1->isHidden());
    EXPECT_FALSE(dialog.imgError2->isHidden());
    EXPECT_EQ(dialog.cmdCancelButton->text(), QStringLiteral("Close"));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("A problem..."));
    EXPECT_EQ(dialog.lblExplanation->text(), QStringLiteral("Vindrell has encountered a problem..."));
    EXPECT_EQ(dialog.lblErrorMsg->text(), QStringLiteral("550 Permission denied."));
}

TEST_F(Captions, FullLookOffersTheReport)
{
    frmErrorDialog dialog;
    dialog.init(91, QStringLiteral("Object variable not set"), QStringLiteral("CDocument.Save"), true,
                QStringLiteral("ERRORDESCRIPTION:\r\n"));
    EXPECT_FALSE(dialog.cmdOKButton->isHidden());
    EXPECT_FALSE(dialog.lblShowMessage->isHidden());
    EXPECT_FALSE(dialog.lblAddSignature->isHidden());
    EXPECT_TRUE(dialog.imgError2->isHidden());
    EXPECT_EQ(dialog.cmdOKButton->text(), QStringLiteral("Send error report"));
    EXPECT_EQ(dialog.cmdCancelButton->text(), QStringLiteral("Do not send"));
    EXPECT_EQ(dialog.lblShowMessage->text(), QStringLiteral("Click here to see what is sent"));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("An error occurred"));
    EXPECT_EQ(dialog.Report(), QStringLiteral("ERRORDESCRIPTION:\r\n"));
}

// The dialog reads the language itself, ahead of the rest of the program.
TEST_F(Captions, FullLookFollowsTheLanguageSettingAtOnce)
{
    EnvironmentSettings::SetLang(1053);
    frmErrorDialog dialog;
    dialog.init(91, QStringLiteral("x"), QStringLiteral("p"), true, QString());
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Ett fel inträffade"));
    EXPECT_EQ(dialog.lblExplanation->text(), QStringLiteral("Ett fel har inträffat..."));
    EXPECT_EQ(dialog.cmdOKButton->text(), QStringLiteral("Send error report")); // table still English
}

TEST_F(Captions, MainWindowInSwedish)
{
    EnvironmentSettings::SetLang(1053);
    frmVindrell window;
    EXPECT_EQ(window.windowTitle(), QStringLiteral("VindrellCMS"));
    QStringList buttons;
    for (const QPushButton *button : window.findChildren<QPushButton *>())
        buttons << button->text();
    EXPECT_TRUE(buttons.contains(QStringLiteral("Gå"))) << buttons.join(QLatin1Char(',')).toStdString();
    EXPECT_FALSE(buttons.contains(QStringLiteral("Go")));
}
