// The dialogs that pick a place on the server and ask for a name: the
// folder dialog's answers and its tree kept between uses, the link
// dialog's OK, and the syntax check of the name dialog.

#include "SiteTreeDriver.h"
#include "config/MGlobalProjectObjects.h"
#include "fileviews/frmCopyRename.h"
#include "fileviews/frmSiteTree.h"
#include "fileviews/frmSiteTree2.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <QCheckBox>

#include <gtest/gtest.h>

using namespace fileviews_test;

namespace {

class ServerDialogsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers())};
        MGlobalProjectObjects::lCurrentURL = 0;
    }
    void TearDown() override
    {
        UserQuestions::EndScript();
        MError::ClearError();
    }
};

int listings()
{
    return servers().ftpCommands(QStringLiteral("MLSD")) + servers().ftpCommands(QStringLiteral("LIST"));
}

} // namespace

TEST_F(ServerDialogsTest, TheFolderDialogGivesTheChosenFolderAndKeepsItsTree)
{
    frmSiteTree &form = frmSiteTree::Instance();
    onModal(QStringLiteral("frmSiteTree"), [](QWidget *dialog) {
        TreeHands hands{dialog->findChild<SiteTreeWidget *>(QStringLiteral("tvwSiteTree"))};
        EXPECT_FALSE(dialog->findChild<QPushButton *>(QStringLiteral("cmdOk"))->isEnabled());
        EXPECT_TRUE(hands.children(QString()).contains(QStringLiteral("img")));
        EXPECT_FALSE(hands.children(QString()).contains(QStringLiteral("index.htm")));
        QTest::mouseClick(hands.tree->viewport(), Qt::LeftButton, {}, hands.at(QStringLiteral("img")));
        click(dialog, "cmdOk");
    });
    QString path;
    ASSERT_EQ(form.GetUpLoadPath(path), 1);
    EXPECT_EQ(path, QStringLiteral("/www/img"));

    // A second use for the same site reads nothing; Cancel gives no folder.
    servers().clearFtpLog();
    onModal(QStringLiteral("frmSiteTree"), [](QWidget *dialog) { click(dialog, "cmdAbort"); });
    EXPECT_EQ(form.GetPath(QStringLiteral("/products/index.htm"), path), -1);
    EXPECT_TRUE(path.isEmpty());
    EXPECT_EQ(listings(), 0);

    onModal(QStringLiteral("frmSiteTree"), [](QWidget *dialog) {
        TreeHands hands{dialog->findChild<SiteTreeWidget *>(QStringLiteral("tvwSiteTree"))};
        QTest::mouseClick(hands.tree->viewport(), Qt::LeftButton, {}, hands.at(QStringLiteral("img")));
        click(dialog, "cmdOk");
    });
    ASSERT_EQ(form.GetPath(QStringLiteral("/products/index.htm"), path), 1);
    EXPECT_EQ(path, QStringLiteral("../img"));
}

TEST_F(ServerDialogsTest, TheLinkDialogOffersOkOnFilesAndFolders)
{
    frmSiteTree2 form;
    ASSERT_EQ(form.init(), 1);
    TreeHands hands{form.tvwSiteTree};
    onModal(QStringLiteral("frmSiteTree2"), [&hands](QWidget *dialog) {
        QTest::mouseClick(hands.tree->viewport(), Qt::LeftButton, {}, hands.at(QStringLiteral("index.htm")));
        EXPECT_TRUE(dialog->findChild<QPushButton *>(QStringLiteral("cmdOk"))->isEnabled());
        click(dialog, "cmdOk");
    });
    form.exec();
    EXPECT_FALSE(form.Cancelled());
    EXPECT_EQ(form.ChosenAddress(), root() + QStringLiteral("/index.htm"));
}

TEST_F(ServerDialogsTest, WithTheSyntaxCheckOffAnyNameIsTaken)
{
    frmCopyRename form;
    form.init(QStringLiteral("dummy.htm"), QStringLiteral("copy2"));
    QTest::keyClicks(form.txtNewFileName, QStringLiteral("Index Page.htm"));
    EXPECT_FALSE(form.cmdOk->isEnabled());
    EXPECT_EQ(form.txtNewFileName->palette().color(QPalette::Text), QColor(255, 0, 0));
    form.ChkNoSpellcontrol->setChecked(false);
    EXPECT_TRUE(form.cmdOk->isEnabled());

    // In the mode "copy2" a name that is there already is not asked about.
    form.txtNewFileName->setText(QStringLiteral("index.htm"));
    UserQuestions::Script({});
    QTest::mouseClick(form.cmdOk, Qt::LeftButton);
    EXPECT_FALSE(form.Cancelled());
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());
}
