// A CMS user set up in one step: the settings file the administrator made
// for him is dropped on a fresh client's window, and that client edits the
// site as him: inside his area of his page and nowhere else, and what he
// typed reaches the server with the page's marks intact. And the marks the
// administrator makes from the main window's menus, as they reach the server.

#include "../../integration/fileviews/SiteTreeDriver.h"
#include "../shell/SessionWindow.h"
#include "MenuPick.h"
#include "ModalDriver.h"
#include "PageMouse.h"
#include "cms/CCMS.h"
#include "cms/CMSTables.h"
#include "config/CSettingsFile.h"
#include "platform/LocalFolders.h"

#include <QAbstractButton>
#include <QDir>
#include <QRegularExpression>
#include <QTest>
#include <QMimeData>
#include <QUrl>

using namespace session_test;
using Q = UserQuestions;

namespace {

const QByteArray kPage = "<html><head><title>Area</title></head><body><p id=\"outside\">Outside</p>"
                         "<div id=\"area\" keldaedit=\"1\"><p id=\"inside\">Inside</p></div></body></html>";

// Right-clicks at the point until the menu shows, and picks the item.
bool pickAt(Window &w, const QPoint &at, const QString &item)
{
    MenuPick pick(item);
    for (int attempt = 0; attempt < 20 && !pick.shown; ++attempt) {
        sendRightClick(w.form.browser()->focusProxy(), at);
        PageScriptCall::pumpUntil([&] { return pick.shown; }, 500);
    }
    return pick.shown && pick.enabled.contains(item);
}

class CMSUserGui : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        QDir(servers().webRoot() + QStringLiteral("/_resetp")).removeRecursively();
    }
    void TearDown() override
    {
        SessionTest::TearDown();
        ResetCMSTables();
        MGlobalProjectObjects::CMSUserName.clear();
        MGlobalProjectObjects::CMSUserPassword.clear();
        QDir(servers().webRoot() + QStringLiteral("/_resetp")).removeRecursively();
    }

    // What the administrator left: the pages, the CMS file with bo tied to
    // his page, without the font names and the site pane, and bo's file.
    QString administratorsWork()
    {
        servers().writeWebFile(QStringLiteral("cms/his.htm"), kPage);
        servers().writeWebFile(QStringLiteral("cms/other.htm"), kPage);
        MGlobalProjectObjects::lCurrentURL = 0;
        g_aCMSUsers = {CMSUSER{QStringLiteral("Anna"), QStringLiteral("a"), {CMS_ALL_ENABLED, CMS_ALL_ENABLED,
                                                                             CMS_ALL_ENABLED, CMS_ALL_ENABLED, 1}, 0},
                       CMSUSER{QStringLiteral("bo"), QStringLiteral("b"), {CMS_ALL_ENABLED & ~1, CMS_ALL_ENABLED & ~8,
                                                                           CMS_ALL_ENABLED, CMS_ALL_ENABLED, 0}, 0},
                       CMSUSER{}};
        g_aCMSPages = {CMSPAGE{address(QStringLiteral("cms/his.htm")), {1.0f, -1.0f}}, CMSPAGE{QString(), {-1.0f}}};
        EXPECT_EQ(CCMS().SetCMSData(), 1);
        const QString pset = LocalFolders::tempFolder() + QStringLiteral("/bo.pset");
        EXPECT_EQ(CSettingsFile::WriteFile(pset, CSettingsFile::FromSite(MGlobalProjectObjects::URLDATA.front(),
                                                                         QStringLiteral("bo"), QStringLiteral("b"))),
                  1);
        ResetCMSTables();
        return pset;
    }

    // A client that has never seen the site.
    static void freshClient()
    {
        MGlobalProjectObjects::URLDATA = {SiteRecord()};
        MGlobalProjectObjects::URLDATA.front().baseaddress = CPublicSettings::NotInUseAddress();
        MGlobalProjectObjects::CMSUserName.clear();
        MGlobalProjectObjects::CMSUserPassword.clear();
        ASSERT_EQ(CPublicSettings().SetURLSettings(), 1);
    }
};

} // namespace

TEST_F(CMSUserGui, ASettingsFileDroppedOnAFreshClientEditsTheSiteAsItsUser)
{
    const QString pset = administratorsWork();
    freshClient();
    Q::Script({Q::vbNo});
    Window w;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(pset)});
    fileviews_test::dropOn(&w.form, &data, QPoint(20, 20));
    EXPECT_EQ(MGlobalProjectObjects::CMSUserName, QStringLiteral("bo"));

    ASSERT_TRUE(w.edit(QStringLiteral("cms/his.htm"))) << firstError();
    EXPECT_EQ(g_sngCMSUser, 1.0f);
    EXPECT_FALSE(g_boolCMSAdmin);
    EXPECT_FALSE(w.form.findChild<QPushButton *>(QStringLiteral("cmdPane4"))->isEnabled()) << "his site pane is off";
    EXPECT_TRUE(w.form.findChild<QPushButton *>(QStringLiteral("cmdPane3"))->isEnabled());
    EXPECT_FALSE(w.form.findChild<QPushButton *>(QStringLiteral("cmdShowAdminSettings"))->isEnabled());
    // In his area keys write; over the text outside it they change nothing.
    EXPECT_TRUE(w.typeInto(w.page(), QStringLiteral("inside"), QStringLiteral("mine")));
    HtmlElement outside = w.page().getElementById(QStringLiteral("outside"));
    HtmlTextRange::aroundElement(outside).select();
    for (const QChar c : QStringLiteral("xyz"))
        QTest::keyClick(w.form.browser()->focusProxy(), Qt::Key(Qt::Key_A + (c.unicode() - 'a')), Qt::NoModifier);
    EXPECT_FALSE(PageScriptCall::pumpUntil([&] { return outside.innerText() != QStringLiteral("Outside"); }, 1000));
    EXPECT_EQ(w.page().getElementById(QStringLiteral("outside")).innerText(), QStringLiteral("Outside"));
    w.pressSave();
    ASSERT_FALSE(w.editing()) << shownTexts().join(QLatin1Char('\n')).toStdString() << firstError();
    const QByteArray saved = servers().readWebFile(QStringLiteral("cms/his.htm"));
    SCOPED_TRACE(saved.toStdString());
    EXPECT_TRUE(saved.contains("<div id=\"area\" keldaedit=\"1\"><p id=\"inside\">mine</p></div>"));
    EXPECT_TRUE(saved.contains("<p id=\"outside\">Outside</p>"));
    EXPECT_FALSE(saved.contains("contenteditable"));

    // Anna's page for him is locked whole.
    ASSERT_TRUE(w.edit(QStringLiteral("cms/other.htm"))) << firstError();
    EXPECT_FALSE(w.page().getElementById(QStringLiteral("inside")).isContentEditable());
    w.pressEdit();
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    EXPECT_EQ(servers().readWebFile(QStringLiteral("cms/other.htm")), kPage);
}

TEST_F(CMSUserGui, TheBandsAdministratorButtonOpensThePanelWhileEditing)
{
    servers().writeWebFile(QStringLiteral("cms/his.htm"), kPage);
    Q::Script({OK});
    Window w;
    ASSERT_TRUE(w.edit(QStringLiteral("cms/his.htm"))) << firstError();
    auto *admin = w.form.findChild<QPushButton *>(QStringLiteral("cmdShowAdminSettings"));
    ASSERT_TRUE(admin->isEnabled());
    ModalDriver panel(QStringLiteral("frmCMSAdminPanel"), [](QWidget *dialog) {
        QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("cmdCancel")), Qt::LeftButton);
    });
    QTest::mouseClick(admin, Qt::LeftButton);
    EXPECT_EQ(panel.seen, 1);
    w.pressEdit();
    EXPECT_EQ(errorDialogs(), 0) << firstError();
}

// The administrator's marks made from the menus of the main window: a field
// unlocked from its own menu, and a few words of an area kept locked from
// the text menu, reach the server with their marks and without the frames
// the editor draws round them; the rest of the page keeps its bytes.
TEST_F(CMSUserGui, AnObjectUnlockedAndWordsLockedInsideAnAreaAreSavedWithTheirMarks)
{
    const QByteArray page = "<html><head><title>Marks</title></head><body><p id=\"outside\">Outside</p>"
                            "<div id=\"area\" keldaedit=\"1\"><p id=\"inside\">Inside words here</p></div>"
                            "<form><input id=\"field\" value=\"name\"></form></body></html>";
    servers().writeWebFile(QStringLiteral("cms/marks.htm"), page);
    Q::Script({OK, Q::vbYes});
    Window w;
    ASSERT_TRUE(w.edit(QStringLiteral("cms/marks.htm"))) << firstError();

    ModalDriver users(QStringLiteral("frmAddUserToDocument"), [](QWidget *dialog) {
        QTest::mouseClick(dialog->findChild<QAbstractButton *>(QStringLiteral("cmdOk")), Qt::LeftButton);
    });
    const HtmlElement field = w.page().getElementById(QStringLiteral("field"));
    ASSERT_TRUE(pickAt(w, QPoint(field.offsetLeft() + 5, field.offsetTop() + 5), QStringLiteral("mnuObjCMS_UnLock")));
    ASSERT_TRUE(PageScriptCall::pumpUntil(
        [&] { return field.parentElement().getAttribute(QStringLiteral("keldaedit")).toString() == QLatin1String("1"); }, 5000));
    EXPECT_EQ(users.seen, 1);

    const QVariantList at = PageScriptCall::run(
        w.form.browser()->page(),
        QStringLiteral("(() => { const t = document.getElementById('inside').firstChild, r = document.createRange();"
                       " r.setStart(t, 7); r.setEnd(t, 12); getSelection().removeAllRanges(); getSelection().addRange(r);"
                       " const b = r.getBoundingClientRect(); return [b.left + b.width / 2, b.top + b.height / 2]; })()"),
        QString()).toList();
    ASSERT_TRUE(pickAt(w, QPoint(at.value(0).toInt(), at.value(1).toInt()), QStringLiteral("mnuCMS_AdminLockSubArea")));
    ASSERT_TRUE(PageScriptCall::pumpUntil(
        [&] { return w.page().getElementById(QStringLiteral("inside")).innerHTML().contains(QLatin1String("keldaedit")); }, 5000));

    w.pressSave();
    ASSERT_FALSE(w.editing()) << shownTexts().join(QLatin1Char('\n')).toStdString() << firstError();
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    const QString saved = QString::fromLatin1(servers().readWebFile(QStringLiteral("cms/marks.htm")));
    SCOPED_TRACE(saved.toStdString());
    EXPECT_TRUE(saved.contains(QRegularExpression(
        QStringLiteral("<div keldaedit=\"1\" style=\"display: inline; overflow: hidden; height: \\d+px; width: \\d+px\">"
                       "<input id=\"field\" value=\"name\"></div>"))));
    EXPECT_TRUE(saved.contains(QStringLiteral(
        "<p id=\"inside\">Inside <span keldaedit=\"0\" style=\"display: inline; overflow: hidden\">words</span> here</p>")));
    EXPECT_TRUE(saved.contains(QStringLiteral("<body><p id=\"outside\">Outside</p><div id=\"area\" keldaedit=\"1\">"
                                              "<p id=\"inside\">")));
    for (const char *frame : {"border", "dashed", "contenteditable"})
        EXPECT_FALSE(saved.contains(QLatin1String(frame), Qt::CaseInsensitive)) << frame;
}
