// The settings dialog driven as a user drives it: sites added and activated
// against the real servers, the fields that refuse what the store can't
// keep, the activation that an edit takes away and its undoing gives back,
// Cancel, and settings files written and read back.

#include "FormDriver.h"
#include "ModalDriver.h"
#include "TestServers.h"
#include "config/CPublicSettings.h"
#include "config/CSettingsFile.h"
#include "config/CSiteChoice.h"
#include "config/frmSettingsEx.h"
#include "platform/CReg.h"
#include "fileviews/SiteFileDialogs.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << text.toStdString();
}
QT_END_NAMESPACE

namespace {

using namespace form_driver;

using G = MGlobalProjectObjects;

TestServers &servers()
{
    return TestServers::shared();
}

// Characters no key of the test keyboard gives come as an input method
// gives them.
void compose(QWidget *form, const char *name, const QString &text)
{
    auto *box = child<QLineEdit>(form, name);
    box->setFocus();
    for (const QChar c : text)
        box->insert(c);
}

// A click on "My web sites", where the add and remove buttons are.
void pickSites(QWidget *form)
{
    auto *tree = child<QTreeWidget>(form, "TreeView1");
    tree->setCurrentItem(tree->topLevelItem(0));
}

QString status(QWidget *form)
{
    return child<QLabel>(form, "lblStatusCheck")->text();
}

// A store with no site, as at the very first start.
void emptyStore()
{
    QFile::remove(CReg::StorePath());
    CReg::Reload();
    G::URLDATA.clear();
    CPublicSettings().GetURLSettings();
}

class SettingsDialogGui : public testing::Test
{
protected:
    void SetUp() override
    {
        emptyStore();
        MResources::InitLangSupport();
        MError::ClearError();
        UserQuestions::Script({});
    }
    void TearDown() override
    {
        UserQuestions::EndScript();
        SiteFileDialogs::EndScript();
    }

    // Adds a site in the dialog with the given account and activates it
    // automatically; the success note is answered by the script.
    void addAndActivate(frmSettingsEx &form, const char *user, const char *password)
    {
        pickSites(&form);
        click(&form, "cmdAddUrl");
        type(&form, "txtBASEADDRESS", servers().httpBase());
        type(&form, "txtBASEURL", QStringLiteral("127.0.0.1:%1").arg(servers().ftpPort()));
        type(&form, "txtUserID", QString::fromLatin1(user));
        type(&form, "txtPassWord", QString::fromLatin1(password));
        ModalDriver how(QStringLiteral("frmActivateHow"), [](QWidget *dialog) { click(dialog, "cmdAutoActivate"); });
        click(&form, "cmdActivate");
        EXPECT_EQ(how.seen, 1);
    }

    // The error dialogs shown so far (recorded by the script).
    static QStringList errors()
    {
        QStringList texts;
        for (const UserQuestions::Shown &shown : UserQuestions::ShownSoFar())
            if (shown.kind == QStringLiteral("frmErrorDialog"))
                texts.append(shown.text);
        return texts;
    }
};

} // namespace

TEST_F(SettingsDialogGui, SitesOfBothAccountsAreAddedActivatedAndStored)
{
    frmSettingsEx form;
    form.show();
    addAndActivate(form, TestServers::User, TestServers::Password);
    EXPECT_EQ(status(&form), MResources::LoadResourceString(14846));
    EXPECT_EQ(child<QLineEdit>(&form, "txtFTPRoot")->text(), QStringLiteral("/www"));
    addAndActivate(form, TestServers::WebUser, TestServers::WebPassword);
    EXPECT_EQ(child<QLineEdit>(&form, "txtFTPRoot")->text(), QStringLiteral("/"));
    EXPECT_TRUE(errors().isEmpty()) << errors().join(QLatin1Char('\n')).toStdString();
    click(&form, "cmdOk");

    G::URLDATA.clear();
    CPublicSettings().GetURLSettings();
    ASSERT_EQ(G::URLDATA.size(), 2u);
    for (const SiteRecord &site : G::URLDATA) {
        EXPECT_EQ(site.isactive, QStringLiteral("1"));
        EXPECT_EQ(site.indexfile, QStringLiteral("index.htm"));
    }
    QStringList shown;
    for (const UserQuestions::Shown &s : UserQuestions::ShownSoFar())
        shown.append(s.kind);
    EXPECT_EQ(shown, QStringList({QStringLiteral("frmActivateSuccess"), QStringLiteral("frmActivateSuccess")}));
}

TEST_F(SettingsDialogGui, AGivenIndexFileIsTestedAndAWrongOneRefusedWithItsMessage)
{
    frmSettingsEx form;
    form.show();
    pickSites(&form);
    click(&form, "cmdAddUrl");
    type(&form, "txtBASEADDRESS", servers().httpBase());
    type(&form, "txtBASEURL", QStringLiteral("127.0.0.1:%1").arg(servers().ftpPort()));
    type(&form, "txtUserID", QString::fromLatin1(TestServers::User));
    type(&form, "txtPassWord", QString::fromLatin1(TestServers::Password));
    click(&form, "cmdShowAdvanced");
    child<QCheckBox>(&form, "chkAutoIndex")->click();
    type(&form, "txtFTPRoot", QStringLiteral("/www"));
    type(&form, "txtIndexFile", QStringLiteral("welcome.htm"));
    ModalDriver how(QStringLiteral("frmActivateHow"), [](QWidget *dialog) {
        click(dialog, "cmdAutoActivate");
        click(dialog, "cmdCancel");
    });
    click(&form, "cmdHideAdvanced");
    click(&form, "cmdActivate");
    ASSERT_EQ(errors().size(), 1);
    EXPECT_TRUE(errors().front().contains(MResources::LoadResourceString(15602))) << errors().front().toStdString();
    EXPECT_EQ(status(&form), MResources::LoadResourceString(14843));
}

// Manual activation takes the user's word for it, whatever the address.
TEST_F(SettingsDialogGui, ManualActivationSetsTheSiteActiveWithoutATest)
{
    frmSettingsEx form;
    form.show();
    pickSites(&form);
    click(&form, "cmdAddUrl");
    type(&form, "txtBASEADDRESS", QStringLiteral("http://no-such-host.invalid"));
    type(&form, "txtBASEURL", QStringLiteral("no-such-host.invalid"));
    type(&form, "txtUserID", QStringLiteral("anna"));
    type(&form, "txtPassWord", QStringLiteral("secret"));
    ModalDriver how(QStringLiteral("frmActivateHow"), [](QWidget *dialog) {
        click(dialog, "cmdForceActivate");
        EXPECT_EQ(child<QLabel>(dialog, "lblManualActivateInfo")->text(), MResources::LoadResourceString(14627));
        click(dialog, "cmdOk");
    });
    click(&form, "cmdActivate");
    EXPECT_EQ(status(&form), MResources::LoadResourceString(14846));
    EXPECT_EQ(G::URLDATA.back().isactive, QStringLiteral("1"));
}

// The boxes refuse a blank and a password the store can't keep; an edit of
// an active site takes the activation away and its undoing gives it back;
// the security choice is the scheme of the address.
TEST_F(SettingsDialogGui, FieldsRefuseWhatTheStoreCantKeepAndEditsTakeTheActivationAway)
{
    SiteRecord site;
    site.baseaddress = servers().httpBase();
    site.baseurl = QStringLiteral("127.0.0.1:%1").arg(servers().ftpPort());
    site.userid = QStringLiteral("demo");
    site.password = QStringLiteral("demo1234");
    site.isactive = QStringLiteral("1");
    site.tlskeypin = QStringLiteral("sha256//pin");
    G::URLDATA = {site};
    frmSettingsEx form;
    form.show();
    auto *tree = child<QTreeWidget>(&form, "TreeView1");
    tree->setCurrentItem(tree->topLevelItem(0)->child(0));
    ASSERT_EQ(status(&form), MResources::LoadResourceString(14846));

    type(&form, "txtUserID", QStringLiteral("de mo"));
    EXPECT_EQ(child<QLineEdit>(&form, "txtUserID")->text(), QStringLiteral("demo"));
    EXPECT_EQ(UserQuestions::ShownSoFar().back().text, MResources::LoadResourceString(14844));
    type(&form, "txtPassWord", QStringLiteral("demo"));
    compose(&form, "txtPassWord", QStringLiteral("\u20ac\u0142"));
    EXPECT_EQ(G::URLDATA.front().password, QStringLiteral("demo\u20ac"));
    EXPECT_TRUE(UserQuestions::ShownSoFar().back().text.endsWith(QChar(0x0142)));
    EXPECT_EQ(status(&form), MResources::LoadResourceString(14843));
    EXPECT_EQ(G::URLDATA.front().isactive, QStringLiteral("0"));
    type(&form, "txtPassWord", QStringLiteral("demo1234"));
    EXPECT_EQ(status(&form), MResources::LoadResourceString(14846));

    auto *security = child<QComboBox>(&form, "cboFTPSecurity");
    security->setFocus();
    QTest::keyClick(security, Qt::Key_Down);
    EXPECT_EQ(G::URLDATA.front().baseurl, QStringLiteral("ftpes://127.0.0.1:%1").arg(servers().ftpPort()));
    type(&form, "txtBASEURL", QStringLiteral("ftps://127.0.0.1:990"));
    EXPECT_EQ(security->currentIndex(), 2);
    click(&form, "cmdShowAdvanced");
    child<QCheckBox>(&form, "chkWwwAlias")->click();
    click(&form, "cmdForgetCertificate");
    EXPECT_TRUE(G::URLDATA.front().wwwalias);
    EXPECT_TRUE(G::URLDATA.front().tlskeypin.isEmpty());
    click(&form, "cmdCancel");
    EXPECT_EQ(G::URLDATA.front().baseurl, site.baseurl); // nothing added: Cancel puts the copy back unasked
    EXPECT_EQ(G::URLDATA.front().tlskeypin, site.tlskeypin);
}

// Cancel after an add and a removal puts the old array back and writes it;
// removing every site and applying leaves the placeholder.
// The key file of an SFTP site: offered only for SFTP, a path with blanks
// taken whole, and kept in the store with the site.
TEST_F(SettingsDialogGui, AnSftpSiteKeepsItsKeyFileInTheStore)
{
    SiteRecord site;
    site.baseaddress = servers().httpBase();
    site.baseurl = QStringLiteral("127.0.0.1:%1").arg(servers().ftpPort());
    site.userid = QStringLiteral("demo");
    G::URLDATA = {site};
    frmSettingsEx form;
    form.show();
    auto *tree = child<QTreeWidget>(&form, "TreeView1");
    tree->setCurrentItem(tree->topLevelItem(0)->child(0));
    auto *key = child<QLineEdit>(&form, "txtSshKey");
    EXPECT_FALSE(key->isEnabled());
    type(&form, "txtBASEURL", QStringLiteral("sftp://127.0.0.1:%1").arg(servers().sftpPort()));
    ASSERT_TRUE(key->isEnabled());
    const QString path = QStringLiteral("/home/anna/my keys/id_ed25519");
    type(&form, "txtSshKey", path);
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty()) << "a blank in the key's path is no error";
    click(&form, "cmdOk");

    G::URLDATA.clear();
    CPublicSettings().GetURLSettings();
    ASSERT_EQ(G::URLDATA.size(), 1u);
    EXPECT_EQ(G::URLDATA.front().sshkey, path);
}

TEST_F(SettingsDialogGui, CancelRestoresTheCopyAndApplyOfNoSiteLeavesThePlaceholder)
{
    SiteRecord site;
    site.baseaddress = QStringLiteral("http://example.org");
    site.isactive = QStringLiteral("1");
    G::URLDATA = {site};
    CPublicSettings().SetURLSettings();
    {
        frmSettingsEx form;
        form.show();
        pickSites(&form);
        click(&form, "cmdAddUrl");
        auto *tree = child<QTreeWidget>(&form, "TreeView1");
        EXPECT_EQ(tree->currentItem()->text(0), MResources::LoadResourceString(14810));
        tree->setCurrentItem(tree->topLevelItem(0)->child(0));
        UserQuestions::Script({UserQuestions::vbOK, UserQuestions::vbNo});
        click(&form, "cmdRemoveURL");
        click(&form, "cmdCancel");
    }
    G::URLDATA.clear();
    CPublicSettings().GetURLSettings();
    ASSERT_EQ(G::URLDATA.size(), 1u);
    EXPECT_EQ(G::URLDATA.front().baseaddress, site.baseaddress);

    frmSettingsEx form;
    form.show();
    auto *tree = child<QTreeWidget>(&form, "TreeView1");
    tree->setCurrentItem(tree->topLevelItem(0)->child(0));
    UserQuestions::Script({UserQuestions::vbOK});
    click(&form, "cmdRemoveURL");
    click(&form, "cmdApply");
    EXPECT_EQ(tree->topLevelItem(0)->childCount(), 0);
    G::URLDATA.clear();
    CPublicSettings().GetURLSettings();
    ASSERT_EQ(G::URLDATA.size(), 1u);
    EXPECT_EQ(G::URLDATA.front().baseaddress, CPublicSettings::NotInUseAddress());
}

TEST_F(SettingsDialogGui, ASettingsFileWrittenAndReadElsewhereGivesTheSameRecord)
{
    SiteRecord site;
    site.baseaddress = QStringLiteral("http://example.org/shop");
    site.baseurl = QStringLiteral("ftpes://ftp.example.org:2121");
    site.userid = QStringLiteral("anna");
    site.password = QStringLiteral("s\u00e4kert");
    site.indexfile = QStringLiteral("default.htm");
    site.ftproot = QStringLiteral("/public_html");
    site.isactive = QStringLiteral("1");
    site.useabsol = true;
    G::URLDATA = {site};
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("shop.pset"));
    {
        frmSettingsEx form;
        form.show();
        auto *tree = child<QTreeWidget>(&form, "TreeView1");
        tree->setCurrentItem(tree->topLevelItem(0)->child(0));
        SiteFileDialogs::Script({path});
        click(&form, "cmdSaveSiteToFile");
        click(&form, "cmdCancel");
    }
    emptyStore();
    frmSettingsEx form;
    form.show();
    SiteFileDialogs::Script({path});
    click(&form, "cmdLoadSiteFromFile");
    click(&form, "cmdOk");
    G::URLDATA.clear();
    CPublicSettings().GetURLSettings();
    ASSERT_EQ(G::URLDATA.size(), 1u);
    const SiteRecord &read = G::URLDATA.front();
    EXPECT_EQ(read.baseaddress, site.baseaddress);
    EXPECT_EQ(read.baseurl, site.baseurl);
    EXPECT_EQ(read.userid, site.userid);
    EXPECT_EQ(read.password, site.password);
    EXPECT_EQ(read.indexfile, site.indexfile);
    EXPECT_EQ(read.ftproot, site.ftproot);
    EXPECT_EQ(read.isactive, QStringLiteral("1"));
    EXPECT_TRUE(read.useabsol);
}

// The language is stored at once (the string table is read at the next
// start); the options at OK, with the link dialog's bit, which the dialog
// does not offer, kept.
TEST_F(SettingsDialogGui, LanguageIsStoredAtOnceAndTheOptionsAtOk)
{
    G::AdvancedUserSettings = advLinkDialogOption | advEditASP;
    frmSettingsEx form;
    form.show();
    auto *languages = child<QComboBox>(&form, "cboLangs");
    languages->setFocus();
    QTest::keyClick(languages, Qt::Key_Down);
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Environment"), QStringLiteral("Lang")), QStringLiteral("1053"));
    ASSERT_FALSE(UserQuestions::ShownSoFar().isEmpty());
    EXPECT_EQ(UserQuestions::ShownSoFar().back().text, MResources::LoadResourceString(14878));

    child<QCheckBox>(&form, "chkEditASP")->click();
    child<QCheckBox>(&form, "chkShowAllFiles")->click();
    child<QCheckBox>(&form, "chkUseSpellCheck")->click();
    child<QCheckBox>(&form, "chkUseTidyComp")->click();
    auto *charset = child<QComboBox>(&form, "cmbCharEncodingType");
    charset->setFocus();
    QTest::keyClick(charset, Qt::Key_End);
    type(&form, "txtCMSUserName", QStringLiteral("anna"));
    click(&form, "cmdOk");
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Advanced"), QStringLiteral("AdvancedUserSettings")),
              QString::number(advLinkDialogOption | advShowAllFiles));
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Advanced"), QStringLiteral("UseTidy")), QStringLiteral("True"));
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Advanced"), QStringLiteral("TidyCharEncodingType")), QStringLiteral("3"));
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Advanced"), QStringLiteral("CMSUserName")), QStringLiteral("anna"));
    EXPECT_EQ(CReg::GetSetting(QStringLiteral("Spell"), QStringLiteral("useSpellCheck")), QStringLiteral("True"));
    CReg::SaveSetting(QStringLiteral("Environment"), QStringLiteral("Lang"), QStringLiteral("1033"));
}

// The first-run question's Yes opens the dialog on a new site, and the
// chooser of sites leads to it too.
TEST_F(SettingsDialogGui, FirstRunYesAndTheChooserOpenTheDialog)
{
    QString opened;
    ModalDriver dialog(QStringLiteral("frmSettingsEx"), [&opened](QWidget *form) {
        opened = child<QTreeWidget>(form, "TreeView1")->currentItem()->text(0);
        UserQuestions::Script({UserQuestions::vbNo});
        click(form, "cmdCancel");
    });
    UserQuestions::Script({UserQuestions::vbYes});
    QString navigate;
    CSiteChoice::OfferSites(navigate);
    EXPECT_EQ(opened, MResources::LoadResourceString(14810));

    SiteRecord site;
    site.baseaddress = QStringLiteral("http://example.org");
    site.isactive = QStringLiteral("1");
    G::URLDATA = {site};
    UserQuestions::EndScript();
    ModalDriver chooser(QStringLiteral("frmChooseSiteToEdit"), [](QWidget *form) { click(form, "cmdSettings"); });
    ModalDriver again(QStringLiteral("frmSettingsEx"), [](QWidget *form) {
        UserQuestions::Script({UserQuestions::vbNo});
        click(form, "cmdCancel");
    });
    CSiteChoice::OfferSites(navigate);
    EXPECT_EQ(again.seen, 1);
    EXPECT_TRUE(navigate.isEmpty());
}
