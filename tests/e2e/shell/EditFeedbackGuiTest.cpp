// What the user is told around an edit, driven as he drives the window: a
// refused log-on and a page the server has not got stop Edit with words he
// can act on; the note about CMS data comes once; the keys Ctrl+E and
// Ctrl+S edit and save; the status bar says what a save did; the open
// revision pane follows the page under edit.

#include "SessionWindow.h"
#include "config/frmMessageBoxOnce.h"
#include "shell/RevisionPane.h"

#include <QCheckBox>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

using namespace session_test;

namespace {

const QString kLogonRefused = QStringLiteral("The FTP server of %1 refused the user name or password");
const QString kCheckSettings = QStringLiteral("Check the user name and password in the settings");
const QString kNotOnServer = QStringLiteral("This page is not on the server: the file /www/gone/");
const QString kNoCMS = QStringLiteral("Vindrell couldn't find the settings file for CMS (cms.dat) of ");

// The real note about CMS data, answered as a user would: OK, with "don't
// show again" ticked or not. Counts the notes it met.
class AnswerNote
{
public:
    explicit AnswerNote(bool tick)
    {
        QObject::connect(&m_poll, &QTimer::timeout, [this, tick] {
            for (QWidget *w : QApplication::topLevelWidgets()) {
                auto *form = qobject_cast<frmMessageBoxOnce *>(w);
                if (!form || !form->isVisible())
                    continue;
                ++notes;
                text = form->findChild<QLabel *>()->text();
                if (tick)
                    form->ChkShowOnlyOnce()->click();
                form->findChild<QPushButton *>()->click();
            }
        });
        m_poll.start(20);
    }
    int notes = 0;
    QString text;

private:
    QTimer m_poll;
};

class EditFeedbackGui : public SessionTest
{
protected:
    // Keys as the keyboard gives them to the page, shortcuts first.
    static void pressKeys(Window &w, Qt::Key key)
    {
        w.form.activateWindow();
        w.form.browser()->setFocus();
        PageScriptCall::pumpUntil([&w] { return w.form.isActiveWindow(); }, 5000);
        QTest::keyClick(w.form.browser()->focusProxy(), key, Qt::ControlModifier);
    }
};

} // namespace

// A wrong password: Edit says so with the site's name, tries the password
// once, and the page stays as it was. A second Edit says it again without
// sending the refused password to the server.
TEST_F(EditFeedbackGui, AWrongPasswordIsToldAtEditAndTriedOnce)
{
    MGlobalProjectObjects::URLDATA[0].password = QStringLiteral("not-the-password");
    ASSERT_EQ(CPublicSettings().SetURLSettings(), 1);
    servers().clearFtpLog();
    UserQuestions::Script({});
    Window w;
    for (int press = 1; press <= 2; ++press) {
        EXPECT_FALSE(w.edit(QStringLiteral("index.htm")));
        ASSERT_EQ(UserQuestions::ShownSoFar().size(), press);
        EXPECT_EQ(errorDialogs(), press);
        const QString told = UserQuestions::ShownSoFar().last().text;
        EXPECT_TRUE(told.startsWith(kLogonRefused.arg(servers().httpBase()))) << told.toStdString();
        EXPECT_TRUE(told.contains(kCheckSettings)) << told.toStdString();
        EXPECT_EQ(servers().ftpCommands(QStringLiteral("PASS")), 1);
        EXPECT_EQ(w.page().designMode(), QStringLiteral("Off"));
        EXPECT_TRUE(w.addressRowEnabled());
        EXPECT_TRUE(w.form.EditButton()->isEnabled());
    }
}

// The browser shows the web server's "not found" for a page that is not
// there: Edit says so and leaves the page alone, for a script page too.
TEST_F(EditFeedbackGui, APageTheServerHasNotGotIsRefusedAtEdit)
{
    UserQuestions::Script({});
    Window w;
    for (const QString &page : {QStringLiteral("gone/missing.htm"), QStringLiteral("gone/missing.asp")}) {
        EXPECT_FALSE(w.edit(page));
        EXPECT_EQ(countStartingWith(shownTexts(), kNotOnServer + page.mid(5)), 1) << shownTexts().join('\n').toStdString();
        EXPECT_EQ(w.page().designMode(), QStringLiteral("Off"));
        EXPECT_TRUE(w.addressRowEnabled());
    }
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    EXPECT_FALSE(QFile::exists(servers().webRoot() + QStringLiteral("/gone")));
}

// The note about a site without CMS data comes at the first Edit of the
// site in the window's life, and not at all once "don't show again" was
// ticked.
TEST_F(EditFeedbackGui, TheCMSNoteComesOncePerSiteUntilSilenced)
{
    servers().writeWebFile(QStringLiteral("note/page.htm"), plainPage("note"));
    for (const bool tick : {false, true}) {
        AnswerNote user(tick);
        Window w;
        for (int press = 0; press < 2; ++press) {
            ASSERT_TRUE(w.edit(QStringLiteral("note/page.htm")));
            w.pressEdit();
        }
        EXPECT_EQ(user.notes, 1);
        EXPECT_TRUE(user.text.startsWith(kNoCMS + servers().httpBase())) << user.text.toStdString();
        EXPECT_TRUE(user.text.contains(QStringLiteral("you can edit and save every page of it as usual")));
    }
    AnswerNote user(false);
    Window w;
    ASSERT_TRUE(w.edit(QStringLiteral("note/page.htm")));
    EXPECT_EQ(user.notes, 0);
}

// Ctrl+E and Ctrl+S with the keyboard in the page. The status bar tells the
// save and its kept version; the open revision pane lists the page at
// Edit, again after the save and after a Reset. A refused save is told in
// the status bar too.
TEST_F(EditFeedbackGui, KeysEditAndSaveTheStatusBarTellsAndThePaneFollows)
{
    servers().writeWebFile(QStringLiteral("keys/page.htm"), plainPage("first"));
    UserQuestions::Script({});
    Window w;
    // The band's own buttons; the panes under them have their own.
    for (QPushButton *button :
         w.form.findChild<QWidget *>(QStringLiteral("picBand"))->findChildren<QPushButton *>(QString(), Qt::FindDirectChildrenOnly))
        EXPECT_FALSE(button->toolTip().isEmpty()) << button->objectName().toStdString();
    w.form.findChild<QPushButton *>(QStringLiteral("cmdPane3"))->click();
    QListWidget *revisions = w.form.revisionPane()->lstRollback;
    w.open(QStringLiteral("keys/page.htm"));

    auto editAndSave = [&](const QString &text) {
        pressKeys(w, Qt::Key_E);
        EXPECT_TRUE(w.editing());
        const int listedAtEdit = revisions->count();
        EXPECT_TRUE(w.typeInto(w.page(), QStringLiteral("text"), text));
        pressKeys(w, Qt::Key_S);
        return listedAtEdit;
    };
    EXPECT_EQ(editAndSave(QStringLiteral("second")), 0);
    EXPECT_FALSE(w.editing());
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("keys/page.htm")).contains(">second</"));
    const QString status = w.form.statusBar()->currentMessage();
    EXPECT_TRUE(status.startsWith(QStringLiteral("Saved /keys/page.htm at "))) << status.toStdString();
    EXPECT_TRUE(status.endsWith(QStringLiteral("; the previous version is kept."))) << status.toStdString();
    EXPECT_EQ(revisions->count(), 1);

    w.settle();
    EXPECT_EQ(editAndSave(QStringLiteral("third")), 1);
    EXPECT_EQ(revisions->count(), 2);
    UserQuestions::Script({UserQuestions::vbYes});
    revisions->setCurrentRow(1);
    w.form.revisionPane()->lstRollback_Click();
    w.form.revisionPane()->cmdRollback->click();
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("keys/page.htm")).contains(">first</"));
    EXPECT_EQ(revisions->count(), 3);
    EXPECT_EQ(errorDialogs(), 0) << firstError();

    w.settle();
    servers().setFtpFaults(QJsonObject{{QStringLiteral("readonly"), QJsonArray{QStringLiteral("www/keys")}}});
    editAndSave(QStringLiteral("fourth"));
    EXPECT_TRUE(w.editing());
    EXPECT_EQ(errorDialogs(), 1);
    EXPECT_TRUE(w.form.statusBar()->currentMessage().startsWith(QStringLiteral("Not saved at ")))
        << w.form.statusBar()->currentMessage().toStdString();
    servers().clearFtpFaults();
    UserQuestions::Script({UserQuestions::vbNo});
    w.pressEdit();
    EXPECT_FALSE(w.editing());
}
