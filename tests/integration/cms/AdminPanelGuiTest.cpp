// The administrator's panel driven as a user drives it, against the real
// FTP server: users added, limited and tied to a page, saved, and the file
// on the server compared byte for byte with one built here by hand from the
// file's layout; what the panel refuses; the warning when another
// administrator saved in between; and a site of a thousand users and ten
// thousand pages.

#include "../config/FormDriver.h"
#include "../transfer/TransferSite.h"
#include "ModalDriver.h"
#include "cms/CCMS.h"
#include "cms/CMSTableCodec.h"
#include "cms/CMSTables.h"
#include "cms/frmCMSAdminPanel.h"
#include "config/CCrypt.h"
#include "config/CSettingsFile.h"
#include "fileviews/SiteFileDialogs.h"
#include "support/UserQuestions.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeView>
#include <QtEndian>

using namespace transfer_test;
using namespace form_driver;
using Q = UserQuestions;

namespace {

const QString CmsFile = QStringLiteral("_resetp/cms.dat");

// ---------------------------------------------------- the file by hand

// Little-endian numbers and the arrays of the file: a descriptor of one
// dimension (2 bytes 1, 4 bytes count, 4 bytes lower bound 0), then the
// elements.
void put16(QByteArray &out, qint16 v)
{
    char b[2];
    qToLittleEndian(v, b);
    out.append(b, 2);
}
void put32(QByteArray &out, qint32 v)
{
    char b[4];
    qToLittleEndian(v, b);
    out.append(b, 4);
}
void descriptor(QByteArray &out, qint32 count)
{
    put16(out, 1);
    put32(out, count);
    put32(out, 0);
}
void bytes(QByteArray &out, const QString &text, const QString &phrase)
{
    const QByteArray enciphered = CCrypt().EnCryptBinary(text, phrase);
    descriptor(out, qint32(enciphered.size()));
    out.append(enciphered);
}
void floats(QByteArray &out, const QList<float> &values)
{
    descriptor(out, qint32(values.size()));
    for (float v : values) {
        char b[4];
        qToLittleEndian(v, b);
        out.append(b, 4);
    }
}

struct HandUser
{
    QString name, password;
    qint32 rightClick, band, siteTree, other, admin;
};

QByteArray referenceFile(const QList<std::pair<QString, QList<float>>> &pages, const QList<HandUser> &users)
{
    QByteArray out("13        ");
    put16(out, -1);
    descriptor(out, qint32(pages.size()));
    for (const auto &[path, list] : pages) {
        bytes(out, path, QStringLiteral("fenuqwarte"));
        floats(out, list);
    }
    descriptor(out, qint32(users.size()));
    for (const HandUser &u : users) {
        bytes(out, u.name, QStringLiteral("tralgumpe"));
        bytes(out, u.password, QStringLiteral("drosknaple"));
        for (qint32 v : {u.rightClick, u.band, u.siteTree, u.other, u.admin})
            put32(out, v);
        put16(out, 0);
    }
    bytes(out, QDate::currentDate().addYears(3).toString(QStringLiteral("MM/dd/yyyy")), QStringLiteral("zilbothrun"));
    return out;
}

// ------------------------------------------------------- the panel's hands

QTreeView *list(QWidget *panel, const char *name)
{
    return child<QTreeView>(panel, name);
}

void selectRow(QWidget *panel, const char *name, int row)
{
    QTreeView *view = list(panel, name);
    view->setCurrentIndex(view->model()->index(row, 0));
}

// A click on a box's square: a box may stand wider than its caption.
void tick(QWidget *form, const char *name)
{
    auto *box = child<QCheckBox>(form, name);
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(6, box->height() / 2));
}

// Types into a box as an input method does: also characters no key gives.
void compose(QWidget *form, const char *name, const QString &text)
{
    auto *box = child<QLineEdit>(form, name);
    box->setFocus();
    box->selectAll();
    box->del();
    for (const QChar c : text)
        box->insert(c);
}

// The user dialog, filled in and confirmed, from the panel's button.
void addUser(QWidget *panel, const QString &name, const QString &password, bool admin = false,
             bool thenCancel = false)
{
    ModalDriver form(QStringLiteral("frmCMSUserName"), [&](QWidget *dialog) {
        compose(dialog, "txtUserName", name);
        compose(dialog, "txtPassword", password);
        if (admin)
            tick(dialog, "chkIsAdmin");
        click(dialog, "cmdOK");
        if (thenCancel && dialog->isVisible())
            click(dialog, "cmdCancel");
    });
    click(panel, "cmdAddUser");
    EXPECT_EQ(form.seen, 1);
}

QString cell(QWidget *panel, const char *name, int row, int column)
{
    QAbstractItemModel *model = list(panel, name)->model();
    return model->data(model->index(row, column)).toString();
}

class AdminPanel : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        useSites({demoSite()});
        QDir(servers().webRoot() + QStringLiteral("/_resetp")).removeRecursively();
        ResetCMSTables();
    }
    void TearDown() override
    {
        Q::EndScript();
        SiteFileDialogs::EndScript();
        QDir(servers().webRoot() + QStringLiteral("/_resetp")).removeRecursively();
        MError::ClearError();
    }

    // The panel as the band opens it, with the hands given; false when it
    // never showed.
    static bool runPanel(const std::function<void(QWidget *)> &hands)
    {
        ModalDriver panel(QStringLiteral("frmCMSAdminPanel"), hands);
        frmCMSAdminPanel::ShowAdminPanel(nullptr);
        return panel.seen == 1;
    }

    static QString page() { return servers().httpBase() + QStringLiteral("/index.htm"); }
};

} // namespace

TEST_F(AdminPanel, UsersAddedLimitedTiedToAPageAndSavedMakeTheFileOfTheLayout)
{
    // The site had no file; the administrator locked a page from its menu.
    ASSERT_EQ(CCMS().GetCMSData(), -1);
    bool existed = true;
    CMSMakePageEntry(page(), existed);
    QTemporaryDir folder;
    Q::Script({Q::vbOK, Q::vbOK, Q::vbOK, Q::vbOK});
    SiteFileDialogs::Script({folder.filePath(QStringLiteral("bo.pset"))});

    ASSERT_TRUE(runPanel([&](QWidget *panel) {
        EXPECT_TRUE(child<QPushButton>(panel, "cmdAddUser")->isEnabled());
        EXPECT_FALSE(child<QPushButton>(panel, "cmdEditUser")->isEnabled()) << "nothing selected yet";
        addUser(panel, QStringLiteral("Anna"), QStringLiteral("t\u00f6p"), true);
        addUser(panel, QStringLiteral("bo"), QStringLiteral("s3cret"));
        // Refused, each with its reason, and the dialog stays for a Cancel.
        addUser(panel, QStringLiteral("bo"), QStringLiteral("other"), false, true);
        addUser(panel, QStringLiteral("\u0398eta"), QStringLiteral("pw"), false, true);
        addUser(panel, QStringLiteral("tab"), QStringLiteral("a\tb"), false, true);
        EXPECT_EQ(list(panel, "ListUsers")->model()->rowCount(), 2);
        EXPECT_EQ(cell(panel, "ListUsers", 1, 1), QStringLiteral("s3cret")) << "passwords show in clear";

        // bo loses the font menu and the site pane; its tree boxes go grey
        // and keep their ticks.
        selectRow(panel, "ListUsers", 1);
        ModalDriver limits(QStringLiteral("frmCMSSetUserLimits"), [](QWidget *dialog) {
            EXPECT_TRUE(child<QCheckBox>(dialog, "chkCMS_DISABLE_FORMAT_FONT")->isChecked()) << "a new user may all";
            tick(dialog, "chkCMS_DISABLE_FORMAT_FONT");
            tick(dialog, "chkCMS_DISABLE_SITE_PANEL");
            auto *tree = child<QCheckBox>(dialog, "chkCMS_DISABLE_TW_DELETE_FILE");
            EXPECT_FALSE(tree->isEnabled());
            EXPECT_TRUE(tree->isChecked());
            click(dialog, "cmdOk");
        });
        click(panel, "cmdShowUserlimits");

        // The page gets bo as its one user.
        ASSERT_EQ(list(panel, "ListLockedFiles")->model()->rowCount(), 1);
        selectRow(panel, "ListLockedFiles", 0);
        ModalDriver users(QStringLiteral("frmAddUserToDocument"), [](QWidget *dialog) {
            QTreeView *view = child<QTreeView>(dialog, "ListUsers");
            view->model()->setData(view->model()->index(1, 0), Qt::Checked, Qt::CheckStateRole);
            click(dialog, "cmdOk");
        });
        click(panel, "cmdSetUsersToFile");
        EXPECT_EQ(cell(panel, "ListLockedFiles", 0, 1), QStringLiteral("bo"));

        selectRow(panel, "ListUsers", 1);
        click(panel, "cmdGenerateSettingsFile");
        click(panel, "cmdSaveSettings");
    }));

    QStringList texts;
    for (const Q::Shown &shown : Q::ShownSoFar())
        texts << shown.text;
    ASSERT_EQ(texts.size(), 4) << texts.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(texts[0].startsWith(QStringLiteral("If you check this option"))) << "the admin box warns";
    EXPECT_EQ(texts[1], QStringLiteral("There is already a user named \"bo\". Give this user another name."));
    EXPECT_TRUE(texts[2].startsWith(QStringLiteral("The user name or the password holds \"\u0398\"")));
    EXPECT_TRUE(texts[3].startsWith(QStringLiteral("The user name or the password holds \"U+0009\"")));

    const qint32 all = CMS_ALL_ENABLED;
    const QByteArray reference = referenceFile(
        {{page(), {1.0f, -1.0f}}, {QString(), {-1.0f}}},
        {{QStringLiteral("Anna"), QStringLiteral("t\u00f6p"), all, all, all, all, 1},
         // The limits dialog builds the masks from its boxes: every bit it
         // shows, less the two it took away.
         {QStringLiteral("bo"), QStringLiteral("s3cret"), 0x3FF & ~1, 0xF & ~8, 0x7FF, 1, 0},
         {QString(), QString(), 0, 0, 0, 0, 0}});
    EXPECT_EQ(servers().readWebFile(CmsFile).toHex().toStdString(), reference.toHex().toStdString());

    // The settings file carries the site's account and bo's identity.
    QStringList fields;
    ASSERT_EQ(CSettingsFile::ReadFile(folder.filePath(QStringLiteral("bo.pset")), fields), 1);
    EXPECT_EQ(fields[CSettingsFile::CMSUserName], QStringLiteral("bo"));
    EXPECT_EQ(fields[CSettingsFile::CMSUserPassword], QStringLiteral("s3cret"));
    EXPECT_EQ(fields[CSettingsFile::userid], demoSite().userid);
    EXPECT_EQ(fields[CSettingsFile::password], demoSite().password);
}

TEST_F(AdminPanel, AnotherAdministratorsSaveIsToldAndCanBeReadInstead)
{
    g_aCMSUsers = {CMSUSER{QStringLiteral("first"), QStringLiteral("pw"), {}, 0}, CMSUSER{}};
    ASSERT_EQ(CCMS().SetCMSData(), 1);
    ASSERT_EQ(CCMS().GetCMSData(), 1);
    // Another administrator saves his users after this client read the file.
    g_aCMSUsers = {CMSUSER{QStringLiteral("theirs"), QStringLiteral("pw"), {}, 0}, CMSUSER{}};
    const QByteArray theirs = CMSTableCodec::Encode(QDate::currentDate());
    servers().writeWebFile(CmsFile, theirs);
    g_aCMSUsers = {CMSUSER{QStringLiteral("first"), QStringLiteral("pw"), {}, 0}, CMSUSER{}};

    // Yes reads their file into the panel and writes nothing; the next
    // save, with nothing new on the server, goes without a word.
    Q::Script({Q::vbYes});
    ASSERT_TRUE(runPanel([&](QWidget *panel) {
        addUser(panel, QStringLiteral("mine"), QStringLiteral("pw"));
        click(panel, "cmdSaveSettings");
        EXPECT_TRUE(panel->isVisible());
        EXPECT_EQ(servers().readWebFile(CmsFile), theirs);
        ASSERT_EQ(list(panel, "ListUsers")->model()->rowCount(), 1);
        EXPECT_EQ(cell(panel, "ListUsers", 0, 0), QStringLiteral("theirs"));
        addUser(panel, QStringLiteral("mine"), QStringLiteral("pw"));
        click(panel, "cmdSaveSettings");
    }));
    ASSERT_EQ(Q::ShownSoFar().size(), 1);
    EXPECT_TRUE(Q::ShownSoFar()[0].text.startsWith(QStringLiteral("The CMS file on the server has changed")));
    ResetCMSTables();
    ASSERT_EQ(CCMS().GetCMSData(), 1);
    ASSERT_EQ(g_aCMSUsers.size(), 3u);
    EXPECT_EQ(g_aCMSUsers[0].strName, QStringLiteral("theirs"));
    EXPECT_EQ(g_aCMSUsers[1].strName, QStringLiteral("mine"));
}

TEST_F(AdminPanel, AFileOfANewerVersionIsNotWrittenBackUnlessTheUserSaysSo)
{
    g_aCMSUsers = {CMSUSER{QStringLiteral("later"), QStringLiteral("pw"), {}, 0}, CMSUSER{}};
    QByteArray newer = CMSTableCodec::Encode(QDate::currentDate());
    newer.replace(0, 2, "14");
    newer += "fields of a later version";
    servers().writeWebFile(CmsFile, newer);
    ResetCMSTables();
    Q::Script({Q::vbOK, Q::vbNo});
    ASSERT_EQ(CCMS().GetCMSData(), 1);

    // Refused in the panel: it stays, and the file keeps its bytes. An
    // edit session's save asks the same and writes nothing either.
    ASSERT_TRUE(runPanel([&](QWidget *panel) {
        EXPECT_EQ(cell(panel, "ListUsers", 0, 0), QStringLiteral("later")) << "read as far as it fits";
        click(panel, "cmdSaveSettings");
        EXPECT_TRUE(panel->isVisible());
        click(panel, "cmdCancel");
    }));
    EXPECT_EQ(servers().readWebFile(CmsFile), newer);
    const QList<Q::Shown> shown = Q::ShownSoFar();
    ASSERT_EQ(shown.size(), 2);
    EXPECT_TRUE(shown[1].text.startsWith(QStringLiteral("The CMS file on the server was written by a newer version of "
                                                        "Vindrell (version 14)")));

    // Asked once more, and allowed: written in this version's form.
    Q::Script({Q::vbYes});
    EXPECT_EQ(CCMS().SetCMSData(), 1);
    EXPECT_TRUE(servers().readWebFile(CmsFile).startsWith("13 "));
}

TEST_F(AdminPanel, AThousandUsersAndTenThousandPagesAreListedByModelsAndADeletedUserShows)
{
    g_aCMSUsers.clear();
    for (int i = 0; i < 1000; ++i)
        g_aCMSUsers.push_back({QStringLiteral("user%1").arg(i), QStringLiteral("pw%1").arg(i), {}, std::int16_t(i == 5)});
    g_aCMSUsers.emplace_back();
    g_aCMSPages.clear();
    for (int i = 0; i < 10000; ++i)
        g_aCMSPages.push_back({QStringLiteral("http://site.test/p%1.htm").arg(i), {float(i % 1000), 999.0f, -1.0f}});
    g_aCMSPages.push_back({QString(), {-1.0f}});
    ASSERT_EQ(CCMS().SetCMSData(), 1);
    ResetCMSTables();
    ASSERT_EQ(CCMS().GetCMSData(), 1);

    Q::Script({Q::vbOK});
    ASSERT_TRUE(runPanel([&](QWidget *panel) {
        EXPECT_EQ(list(panel, "ListUsers")->model()->rowCount(), 999) << "the hidden user gets no row";
        EXPECT_EQ(list(panel, "ListLockedFiles")->model()->rowCount(), 10000);
        EXPECT_LT(panel->findChildren<QWidget *>().size(), 100) << "rows are no widgets";
        // The last user deleted: pages that named him now name nobody, and
        // say so.
        selectRow(panel, "ListUsers", 998);
        EXPECT_EQ(cell(panel, "ListUsers", 998, 0), QStringLiteral("user999"));
        click(panel, "cmdDeleteUser");
        EXPECT_EQ(cell(panel, "ListLockedFiles", 9998, 1), QStringLiteral("user998, (no user 999)"));
        click(panel, "cmdCancel");
    }));
}
