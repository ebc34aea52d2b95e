// A new user's way in: no site in the store, the Settings button of the
// band, a site added and activated in the dialog against the real servers,
// and Edit on a page of it.

#include "ModalDriver.h"
#include "SessionWindow.h"

#include <QLineEdit>
#include <QTest>

using namespace session_test;

namespace {

void type(QWidget *form, const char *name, const QString &text)
{
    auto *box = form->findChild<QLineEdit *>(QString::fromLatin1(name));
    ASSERT_NE(box, nullptr) << name;
    box->setFocus();
    QTest::keyClick(box, Qt::Key_End);
    while (!box->text().isEmpty())
        QTest::keyClick(box, Qt::Key_Backspace);
    QTest::keyClicks(box, text);
}

void click(QWidget *form, const char *name)
{
    auto *button = form->findChild<QPushButton *>(QString::fromLatin1(name));
    ASSERT_NE(button, nullptr) << name;
    QTest::mouseClick(button, Qt::LeftButton);
}

class SettingsButtonGui : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        MGlobalProjectObjects::URLDATA = {SiteRecord()};
        MGlobalProjectObjects::URLDATA.front().baseaddress = CPublicSettings::NotInUseAddress();
        ASSERT_EQ(CPublicSettings().SetURLSettings(), 1);
    }
};

} // namespace

TEST_F(SettingsButtonGui, ANewSiteAddedAndActivatedInTheDialogCanBeEdited)
{
    UserQuestions::Script({OK, OK, OK});
    Window w;
    auto *settings = w.form.findChild<QPushButton *>(QStringLiteral("cmdSettings"));
    ASSERT_TRUE(settings->isEnabled());
    int activations = 0;
    ModalDriver how(QStringLiteral("frmActivateHow"), [&activations](QWidget *dialog) {
        ++activations;
        click(dialog, "cmdAutoActivate");
    });
    ModalDriver dialog(QStringLiteral("frmSettingsEx"), [](QWidget *form) {
        click(form, "cmdAddUrl");
        type(form, "txtBASEADDRESS", servers().httpBase());
        type(form, "txtBASEURL", QStringLiteral("127.0.0.1:%1").arg(servers().ftpPort()));
        type(form, "txtUserID", QString::fromLatin1(TestServers::User));
        type(form, "txtPassWord", QString::fromLatin1(TestServers::Password));
        click(form, "cmdActivate");
        click(form, "cmdOk");
    });
    QTest::mouseClick(settings, Qt::LeftButton);
    ASSERT_EQ(activations, 1);
    ASSERT_EQ(errorDialogs(), 0) << firstError();
    ASSERT_EQ(MGlobalProjectObjects::URLDATA.size(), 1u);
    EXPECT_EQ(MGlobalProjectObjects::URLDATA.front().isactive, QStringLiteral("1"));
    EXPECT_EQ(MGlobalProjectObjects::URLDATA.front().ftproot, QStringLiteral("/www"));

    const QByteArray before = servers().readWebFile(QStringLiteral("index.htm"));
    ASSERT_TRUE(w.edit(QStringLiteral("index.htm"))) << firstError();
    w.pressEdit();
    EXPECT_FALSE(w.editing());
    EXPECT_EQ(servers().readWebFile(QStringLiteral("index.htm")), before);
}
