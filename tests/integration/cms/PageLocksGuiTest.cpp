// The locks in a page, made from the text menu of the real page engine as
// an administrator makes them: the page tied to a user, a part of it
// unlocked and saved with its mark and without its frame; and the same
// page as a user who is no administrator sees it: editable only inside
// his area, with his limited menu and no CMS commands.

#include "../objects/ObjectPage.h"
#include "ModalDriver.h"
#include "cms/CMSTables.h"
#include "config/MGlobalProjectObjects.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

using object_test::EditedPage;
using Q = UserQuestions;

const QString kPath = QStringLiteral("cms/locks.htm");
const QByteArray kPage = "<html><head><title>Locks</title></head><body><p id=\"intro\">Intro text</p>"
                         "<p id=\"news\">News of <b id=\"bold\">the week</b> here</p></body></html>";

class PageLocks : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        save_test::setSaveDate();
        ResetCMSTables();
        g_aCMSUsers = {CMSUSER{QStringLiteral("Anna"), QStringLiteral("a"), {CMS_ALL_ENABLED, CMS_ALL_ENABLED,
                                                                             CMS_ALL_ENABLED, CMS_ALL_ENABLED, 1}, 0},
                       CMSUSER{QStringLiteral("bo"), QStringLiteral("b"), {CMS_ALL_ENABLED & ~1, CMS_ALL_ENABLED,
                                                                           CMS_ALL_ENABLED, CMS_ALL_ENABLED, 0}, 0},
                       CMSUSER{}};
    }
    void TearDown() override
    {
        Q::EndScript();
        ResetCMSTables();
    }

    std::unique_ptr<MenuPick> pick(const QString &id, const QString &item, bool selectAll = false)
    {
        if (selectAll)
            PageScriptCall::run(page.screen.browser.page(),
                                QStringLiteral("getSelection().selectAllChildren(document.getElementById('%1')), true").arg(id),
                                QString());
        auto menu = std::make_unique<MenuPick>(item);
        EXPECT_TRUE(page.rightClick(id)) << id.toStdString();
        EXPECT_TRUE(menu->shown) << id.toStdString();
        return menu;
    }
    QString address() const { return TestServers::shared().httpBase() + QLatin1Char('/') + kPath; }

    EditedPage page;
};

// Ticks the users of the given rows in the users' dialog and confirms.
std::unique_ptr<ModalDriver> chooseUsers(QList<int> rows)
{
    return std::make_unique<ModalDriver>(QStringLiteral("frmAddUserToDocument"), [rows](QWidget *dialog) {
        QAbstractItemModel *model = dialog->findChild<QTreeView *>(QStringLiteral("ListUsers"))->model();
        for (int row : rows)
            model->setData(model->index(row, 0), Qt::Checked, Qt::CheckStateRole);
        QTest::mouseClick(dialog->findChild<QAbstractButton *>(QStringLiteral("cmdOk")), Qt::LeftButton);
    });
}

} // namespace

TEST_F(PageLocks, APageLockedAndAPartUnlockedAreSavedWithTheMarkAndWithoutTheFrame)
{
    g_sngCMSUser = 0;
    g_boolCMSAdmin = true;
    page.open(kPath, kPage);

    // With no text selected there is nothing to unlock.
    auto look = pick(QStringLiteral("intro"), QString());
    EXPECT_TRUE(look->enabled.contains(QStringLiteral("mnuCMS_AdminLockPage")));
    EXPECT_FALSE(look->enabled.contains(QStringLiteral("mnuCMS_AdminLockUpArea")));
    EXPECT_TRUE(look->hidden.contains(QStringLiteral("mnuCMS_AdminLockUpPage"))) << "the page isn't locked yet";

    auto bo = chooseUsers({1});
    pick(QStringLiteral("intro"), QStringLiteral("mnuCMS_AdminLockPage"));
    ASSERT_EQ(bo->seen, 1);
    ASSERT_EQ(g_aCMSPages.size(), 2u);
    EXPECT_EQ(g_aCMSPages[0].strPath, address());
    EXPECT_EQ(g_aCMSPages[0].sngUsers, (QList<float>{1.0f, -1.0f}));

    // The end of the bold words and a little after become bo's area: the
    // engine closes the bold at the cut. He stays ticked, and the
    // administrator likes what he sees.
    Q::Script({Q::vbYes});
    auto again = chooseUsers({});
    const QVariant at = PageScriptCall::run(
        page.screen.browser.page(),
        QStringLiteral("(() => { const r = document.createRange();"
                       " r.setStart(document.getElementById('bold').firstChild, 4);"
                       " r.setEnd(document.getElementById('news').lastChild, 3);"
                       " getSelection().removeAllRanges(); getSelection().addRange(r);"
                       " const b = r.getClientRects()[0]; return [b.left + b.width / 2, b.top + b.height / 2]; })()"),
        QString());
    auto unlock = std::make_unique<MenuPick>(QStringLiteral("mnuCMS_AdminLockUpArea"));
    ASSERT_TRUE(page.rightClick(QPoint(at.toList().value(0).toInt(), at.toList().value(1).toInt())));
    ASSERT_TRUE(unlock->enabled.contains(QStringLiteral("mnuCMS_AdminLockUpArea")));
    ASSERT_EQ(again->seen, 1);
    EXPECT_EQ(g_aCMSPages[0].sngUsers, (QList<float>{1.0f, -1.0f})) << "the users stay as they were";
    ASSERT_EQ(Q::ShownSoFar().size(), 1);
    EXPECT_TRUE(Q::ShownSoFar()[0].text.startsWith(QStringLiteral("If the unlocked area look good")));

    // Inside a paragraph the area is a span: a div there would split the
    // paragraph when the page is read again.
    const QList<HtmlElement> areas = page.page().getElementsByTagName(QStringLiteral("SPAN"));
    ASSERT_EQ(areas.size(), 1);
    HtmlElement area = areas.first();
    EXPECT_EQ(area.getAttribute(QStringLiteral("keldaedit")).toString(), QStringLiteral("1"));
    EXPECT_EQ(area.innerText(), QStringLiteral("week he"));
    EXPECT_EQ(area.innerHTML(), QStringLiteral("<b id=\"bold\">week</b> he"));
    EXPECT_TRUE(area.styleValue(QStringLiteral("border")).contains(QStringLiteral("dashed")));

    page.doc->SetDirty();
    ASSERT_EQ(page.doc->Save(), 1) << MError::ErrorDescription().toStdString();
    const QString file = QString::fromLatin1(save_test::serverFile(kPath));
    SCOPED_TRACE(file.toStdString());
    EXPECT_TRUE(file.contains(QStringLiteral("keldaedit=\"1\"")));
    EXPECT_TRUE(file.contains(QStringLiteral("display: inline")));
    EXPECT_TRUE(file.contains(QStringLiteral("<p id=\"intro\">Intro text</p>")));
    EXPECT_TRUE(file.contains(QStringLiteral("<p id=\"news\">News of <b id=\"bold\">the </b><span keldaedit=\"1\"")));
    for (const char *frame : {"dashed", "green", "contenteditable"})
        EXPECT_FALSE(file.contains(QLatin1String(frame), Qt::CaseInsensitive)) << frame;
    EXPECT_TRUE(g_boolCMSTablesChanged) << "the next Save writes the CMS file";
}

TEST_F(PageLocks, AUserWhoIsNoAdministratorEditsOnlyInsideHisAreaWithHisLimits)
{
    const QByteArray marked = "<html><head><title>Locks</title></head><body><p id=\"outside\">Outside</p>"
                              "<img id=\"locked\" src=\"none.gif\" width=\"40\" height=\"40\" alt=\"\">"
                              "<div id=\"area\" keldaedit=\"1\"><p id=\"inside\">Inside</p>"
                              "<img id=\"his\" src=\"none.gif\" width=\"40\" height=\"40\" alt=\"\">"
                              "<span id=\"sub\" keldaedit=\"0\">Fixed</span></div></body></html>";
    g_aCMSPages = {CMSPAGE{address(), {1.0f, -1.0f}}, CMSPAGE{QString(), {-1.0f}}};
    g_sngCMSUser = 1;
    g_boolCMSAdmin = false;
    page.open(kPath, marked);

    EXPECT_FALSE(page.byId(QStringLiteral("outside")).isContentEditable());
    EXPECT_TRUE(page.byId(QStringLiteral("inside")).isContentEditable());
    EXPECT_FALSE(page.byId(QStringLiteral("sub")).isContentEditable());
    EXPECT_TRUE(page.byId(QStringLiteral("area")).styleValue(QStringLiteral("border")).contains(QStringLiteral("dashed")));
    EXPECT_TRUE(page.byId(QStringLiteral("sub")).styleValue(QStringLiteral("border")).contains(QStringLiteral("solid")));

    // His menu: no font names, and none of the administrator's commands.
    auto menu = pick(QStringLiteral("inside"), QString(), true);
    EXPECT_FALSE(menu->enabled.contains(QStringLiteral("mnuFont")));
    EXPECT_TRUE(menu->enabled.contains(QStringLiteral("mnuJustify")));
    EXPECT_TRUE(menu->hidden.contains(QStringLiteral("mnuCMS_AdminText")));
    // Outside his area the page offers nothing to write with. (Each watch
    // for a menu ends with its block: one left watching would take the
    // next menu for itself.)
    {
        MenuPick outside{QString()};
        ASSERT_TRUE(page.rightClick(QStringLiteral("outside")));
        EXPECT_FALSE(outside.shown);
    }
    // A picture outside it has no menu and isn't even picked; his own has
    // the picture's menu.
    {
        MenuPick locked{QString()};
        ASSERT_TRUE(page.rightClick(QStringLiteral("locked")));
        EXPECT_FALSE(locked.shown);
    }
    bool changed = true;
    page.doc->GetDirty(changed);
    EXPECT_FALSE(changed);
    auto his = pick(QStringLiteral("his"), QString());
    EXPECT_TRUE(his->enabled.contains(QStringLiteral("mnuResetSize")));

    // A page that isn't his shows no area and takes nothing.
    EditedPage other;
    other.open(QStringLiteral("cms/other.htm"), marked);
    EXPECT_FALSE(other.byId(QStringLiteral("inside")).isContentEditable());
    EXPECT_TRUE(other.byId(QStringLiteral("area")).styleValue(QStringLiteral("border")).isEmpty());
}

// Server script outside his area is no object of his: a right click on its
// output says nothing; inside his area the block answers as it does for an
// administrator (here, with ASP editing off, in the words that say so).
TEST_F(PageLocks, AUserWhoIsNoAdministratorReachesOnlyTheScriptBlocksInsideHisArea)
{
    const QString path = QStringLiteral("cms/blocks.asp");
    TestServers::shared().writeWebFile(path, "<HTML><HEAD><TITLE>Blocks</TITLE></HEAD><BODY>\r\n"
                                             "<P id=\"outside\">Price <%= \"twelve\" %></P>\r\n"
                                             "<DIV keldaedit=\"1\"><P id=\"inside\">Cost <%= \"ten\" %></P></DIV>\r\n"
                                             "</BODY></HTML>\r\n");
    g_aCMSPages = {CMSPAGE{TestServers::shared().httpBase() + QLatin1Char('/') + path, {1.0f, -1.0f}},
                   CMSPAGE{QString(), {-1.0f}}};
    g_sngCMSUser = 1;
    g_boolCMSAdmin = false;
    const long settings = MGlobalProjectObjects::AdvancedUserSettings;
    MGlobalProjectObjects::AdvancedUserSettings = 0;
    Q::Script({Q::vbOK});
    save_test::ScriptPage asp;
    page.enter(asp, path);
    // The script's output: the first child of each paragraph.
    const auto blockOf = [this](const char *id) {
        return EditedPage::middleOf(page.byId(QLatin1String(id)).children().value(0));
    };
    ASSERT_TRUE(page.rightClick(blockOf("outside")));
    EXPECT_TRUE(Q::ShownSoFar().isEmpty());
    ASSERT_TRUE(page.rightClick(blockOf("inside")));
    MGlobalProjectObjects::AdvancedUserSettings = settings;
    ASSERT_EQ(Q::ShownSoFar().size(), 1);
    EXPECT_TRUE(Q::ShownSoFar()[0].text.startsWith(QStringLiteral("This object contains code written in ASP.")));

    // His keys can't take a block in his area apart: Backspace right
    // behind it, and a key typed over a selection that holds it, leave the
    // block and its marks whole. The key typed next shows the keys came in.
    const auto select = [this](const char *script) {
        PageScriptCall::run(page.screen.browser.page(),
                            QStringLiteral("(() => { const p = document.getElementById('inside'); p.closest('[contenteditable]').focus();"
                                           " const r = document.createRange(); r.selectNodeContents(p); %1;"
                                           " getSelection().removeAllRanges(); getSelection().addRange(r); return true; })()")
                                .arg(QLatin1String(script)),
                            QString());
    };
    const QString block = QStringLiteral("<!--keldaspIN#00002--><span data-keldasp=\"00002\" contenteditable=\"false\">ten</span>"
                                         "<!--keldaspOUT#00002-->");
    select("r.collapse(false)");
    page.keys(Qt::Key_Backspace);
    page.keys(Qt::Key_Z);
    ASSERT_TRUE(PageScriptCall::pumpUntil([this] { return page.byId(QStringLiteral("inside")).innerText().endsWith(QLatin1Char('z')); }, 5000));
    EXPECT_EQ(page.byId(QStringLiteral("inside")).innerHTML(), QStringLiteral("Cost ") + block + QLatin1Char('z'));
    select("");
    page.keys(Qt::Key_Q);
    select("r.collapse(false)");
    page.keys(Qt::Key_Y);
    ASSERT_TRUE(PageScriptCall::pumpUntil([this] { return page.byId(QStringLiteral("inside")).innerText().endsWith(QLatin1Char('y')); }, 5000));
    EXPECT_TRUE(page.byId(QStringLiteral("inside")).innerHTML().contains(block));
}
