#include "ModalDriver.h"
#include "config/CSiteChoice.h"
#include "config/MGlobalProjectObjects.h"
#include "config/frmChooseSiteToEdit.h"
#include "config/frmMessageBoxOnce.h"
#include "config/frmMessageBoxYesNoOnce.h"
#include "platform/CReg.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

namespace {
using G = MGlobalProjectObjects;

class DialogsGuiTest : public ::testing::Test
{
protected:
    void SetUp() override { QFile::remove(CReg::StorePath()); }
    void TearDown() override
    {
        UserQuestions::EndScript();
        QFile::remove(CReg::StorePath());
    }
};

// Ticks the box of a form as the user would: a real click on it.
void tickOnce(frmMessageBoxOnce &form, const QString &name)
{
    bool dontShow = true;
    form.init(QStringLiteral("text"), QStringLiteral("title"), name, dontShow);
    EXPECT_FALSE(dontShow);
    form.ChkShowOnlyOnce()->click();
}
} // namespace

TEST_F(DialogsGuiTest, SilencedMessagesDoNotComeAgainAndUntickingBringsThemBack)
{
    const QString name = QStringLiteral("ShowVerMessAdmin1.3");
    UserQuestions::Script({UserQuestions::vbYes, UserQuestions::vbYes});
    EXPECT_EQ(frmMessageBoxYesNoOnce::Show(QStringLiteral("New version?"), QStringLiteral("t"), name),
              UserQuestions::vbYes);
    {
        frmMessageBoxYesNoOnce form;
        tickOnce(form, name);
    }
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("environment"), name), QStringLiteral("1"));
    EXPECT_EQ(frmMessageBoxYesNoOnce::Show(QStringLiteral("New version?"), QStringLiteral("t"), name), 0);
    // Another version has another name and still asks.
    EXPECT_EQ(frmMessageBoxYesNoOnce::Show(QStringLiteral("Newer?"), QStringLiteral("t"),
                                           QStringLiteral("ShowVerMessAdmin1.4")),
              UserQuestions::vbYes);
    EXPECT_EQ(UserQuestions::ShownSoFar().size(), 2);

    frmMessageBoxOnce form;
    bool dontShow = false;
    form.init(QStringLiteral("text"), QStringLiteral("title"), name, dontShow);
    EXPECT_TRUE(dontShow);
    EXPECT_TRUE(form.ChkShowOnlyOnce()->isChecked());
    form.ChkShowOnlyOnce()->click();
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("environment"), name, QStringLiteral("gone")), QString());
    UserQuestions::Script({UserQuestions::vbOK});
    EXPECT_EQ(frmMessageBoxOnce::Show(QStringLiteral("Note"), QStringLiteral("t"), name), UserQuestions::vbOK);
}

TEST_F(DialogsGuiTest, RealYesNoDialogAnswersByItsButtons)
{
    // Not scripted: the dialog really opens, and a timer presses No.
    QTimer::singleShot(0, [] {
        for (QWidget *w : QApplication::topLevelWidgets())
            if (auto *form = qobject_cast<frmMessageBoxYesNoOnce *>(w))
                for (QPushButton *b : form->findChildren<QPushButton *>())
                    if (b->text() == QStringLiteral("No"))
                        b->click();
    });
    EXPECT_EQ(frmMessageBoxYesNoOnce::Show(QStringLiteral("Go?"), QStringLiteral("t"), QStringLiteral("q")),
              UserQuestions::vbNo);
}

TEST_F(DialogsGuiTest, ChoiceOffersActiveSitesLastFirstOrAsksToActivate)
{
    SiteRecord a, b, c;
    a.baseaddress = QStringLiteral("http://a");
    a.isactive = QStringLiteral("1");
    b.baseaddress = QStringLiteral("http://b");
    b.isactive = QStringLiteral("0");
    c.baseaddress = QStringLiteral("http://c");
    c.isactive = QStringLiteral("1");
    G::URLDATA = {a, b, c};
    EXPECT_EQ(CSiteChoice::ActiveSites(), (QStringList{QStringLiteral("http://c"), QStringLiteral("http://a")}));

    UserQuestions::Script({1});
    QString go;
    EXPECT_EQ(CSiteChoice::OfferSites(go), 1);
    EXPECT_EQ(go, QStringLiteral("http://a"));
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_EQ(UserQuestions::ShownSoFar()[0].kind, QStringLiteral("frmChooseSiteToEdit"));

    UserQuestions::Script({-1});
    EXPECT_EQ(CSiteChoice::OfferSites(go), 1);
    EXPECT_TRUE(go.isEmpty());

    // A Yes opens the settings dialog on a new site; the user cancels it
    // and keeps nothing of it.
    G::URLDATA = {b};
    UserQuestions::Script({UserQuestions::vbYes, UserQuestions::vbNo});
    ModalDriver settings(QStringLiteral("frmSettingsEx"), [](QWidget *form) {
        form->findChild<QPushButton *>(QStringLiteral("cmdCancel"))->click();
    });
    EXPECT_EQ(CSiteChoice::OfferSites(go), 1);
    EXPECT_EQ(settings.seen, 1);
    EXPECT_TRUE(go.isEmpty());
    EXPECT_EQ(G::URLDATA.size(), 1u);
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 2);
    EXPECT_EQ(UserQuestions::ShownSoFar()[0].text,
              QStringLiteral("You have not activated any websites for editing with Vindrell. "
                             "Would you like to activate a website now?"));
    EXPECT_EQ(UserQuestions::ShownSoFar()[0].style, UserQuestions::vbYesNo | UserQuestions::vbQuestion);
}

TEST_F(DialogsGuiTest, ChooserGivesTheRowPickedOrMinusOne)
{
    frmChooseSiteToEdit form;
    form.SetSites({QStringLiteral("http://x"), QStringLiteral("http://y")});
    auto *list = form.findChild<QListWidget *>();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(form.GetChosen(), -1);
    list->setCurrentRow(1);
    for (QPushButton *b : form.findChildren<QPushButton *>())
        if (b->text() == QStringLiteral("OK"))
            b->click();
    EXPECT_EQ(form.GetChosen(), 1);
}
