// Right clicks in a page being edited, in the real page engine: which
// object the dispatcher builds, and the generic object's and the image-map
// area's menus driven with the mouse.

#include "ModalDriver.h"
#include "ObjectPage.h"
#include "config/MGlobalProjectObjects.h"
#include "objects/CHTMLImg.h"

#include <QDialog>

#include <gtest/gtest.h>

namespace {

using object_test::EditedPage;
using Target = ContextMenuDispatcher::Target;

const QByteArray kPage =
    "<!DOCTYPE html>\n<html><head><title>Objects</title></head><body>\n"
    "<p id=\"words\">Some words to click on.</p>\n"
    "<form><input id=\"field\" type=\"text\" value=\"name\"> <select id=\"list\"><option>one</option></select></form>\n"
    "<p id=\"target\">Drop here</p>\n"
    "<img id=\"pic\" src=\"none.gif\" width=\"40\" height=\"40\" alt=\"\">\n"
    "<p><img id=\"mapped\" src=\"none.gif\" usemap=\"#m\" width=\"100\" height=\"50\" alt=\"\"></p>"
    "<map name=\"m\"><area id=\"zone\" shape=\"rect\" coords=\"0,0,50,50\" href=\"a.htm\" target=\"_top\">"
    "<area id=\"blank\" shape=\"rect\" coords=\"50,0,100,50\"></map>\n"
    "<div contenteditable=\"false\"><input id=\"locked\" contenteditable=\"false\" value=\"script output\"></div>\n"
    "<p><applet id=\"hover\" code=\"fphover.class\" style=\"display:inline-block;width:60px;height:20px\"></applet>"
    " <applet id=\"other\" code=\"\" style=\"display:inline-block;width:60px;height:20px\"></applet>"
    " <input id=\"script\" style=\"keldasp: 00002\" value=\"asp\"></p>\n"
    "</body></html>";

class ObjectMenus : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        UserQuestions::Script({});
        page.open(QStringLiteral("objects/menus.htm"), kPage);
    }
    void TearDown() override
    {
        EXPECT_EQ(UserQuestions::ShownSoFar().size(), 0) << UserQuestions::ShownSoFar().value(0).text.toStdString();
        UserQuestions::EndScript();
    }
    // Right-clicks the point and gives what the dispatcher decides there
    // now, with the selection the click left.
    Target clickAndDecide(const QPoint &at)
    {
        MenuPick close{QString()};
        EXPECT_TRUE(page.rightClick(at));
        return ContextMenuDispatcher(*page.doc).Decide(at.x(), at.y());
    }
    Target clickAndDecide(const QString &id) { return clickAndDecide(EditedPage::middleOf(page.byId(id))); }
    QPoint inMapped(int x) { HtmlElement img = page.byId(QStringLiteral("mapped")); return {img.offsetLeft() + x, img.offsetTop() + 25}; }
    int inputs() { return page.page().getElementsByTagName(QStringLiteral("INPUT")).size(); }

    EditedPage page;
};

TEST_F(ObjectMenus, EachKindOfClickFindsItsObject)
{
    EXPECT_EQ(clickAndDecide(QStringLiteral("field")), Target::GenericObject);
    ModalDriver closeList(QStringLiteral("frmEditCombo"), [](QWidget *dialog) { static_cast<QDialog *>(dialog)->reject(); });
    EXPECT_EQ(clickAndDecide(QStringLiteral("list")), Target::ComboDialog);
    EXPECT_EQ(closeList.seen, 1);
    EXPECT_EQ(clickAndDecide(QStringLiteral("pic")), Target::RegisteredObject);
    EXPECT_EQ(clickAndDecide(inMapped(20)), Target::Area);
    EXPECT_EQ(clickAndDecide(QStringLiteral("words")), Target::Text);
    // What the server's script wrote is sealed: no menu at all.
    EXPECT_EQ(clickAndDecide(QStringLiteral("locked")), Target::Nothing);
    // A piece of server script is its own object; with ASP editing off,
    // the words that say how to allow it.
    const long settings = MGlobalProjectObjects::AdvancedUserSettings;
    MGlobalProjectObjects::AdvancedUserSettings = 0;
    EXPECT_EQ(clickAndDecide(QStringLiteral("script")), Target::ASPObject);
    MGlobalProjectObjects::AdvancedUserSettings = settings;
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_TRUE(UserQuestions::ShownSoFar().first().text.startsWith(QStringLiteral("This object contains code written in ASP.")));
    UserQuestions::Script({});
    EXPECT_EQ(clickAndDecide(QStringLiteral("hover")), Target::HoverButton);
    EXPECT_EQ(clickAndDecide(QStringLiteral("other")), Target::Nothing);
}

// An image put in after edit mode began joins the objects under the next
// key, which it carries in the page, and a right click finds it by that.
TEST_F(ObjectMenus, ImageAddedLaterContinuesTheKeys)
{
    ASSERT_EQ(page.doc->ObjectCount(), 2);
    page.byId(QStringLiteral("words")).insertAdjacentHTML(QStringLiteral("afterEnd"),
                                                         QStringLiteral("<img id=\"late\" src=\"none.gif\" width=\"30\" height=\"30\">"));
    auto image = std::make_unique<CHTMLImg>();
    CHTMLImg *late = image.get();
    ASSERT_EQ(image->Init(page.byId(QStringLiteral("late")), page.doc.get()), 1);
    ASSERT_EQ(CHTMLImg::Register(std::move(image)), 1);
    long key = -1;
    late->GetKeldaKey(key);
    EXPECT_EQ(key, 2);
    EXPECT_EQ(page.byId(QStringLiteral("late")).getAttribute(QStringLiteral("KELDAKEY")).toString(), QStringLiteral("2"));
    EXPECT_EQ(page.doc->Object(QStringLiteral("2")), late);
    EXPECT_EQ(clickAndDecide(QStringLiteral("late")), Target::RegisteredObject);
}

TEST_F(ObjectMenus, FormFieldIsCopiedMovedAndDeletedFromItsMenu)
{
    const int fields = inputs();
    MenuPick copy(QStringLiteral("mnuObjCopy"));
    ASSERT_TRUE(page.rightClick(QStringLiteral("field")));
    ASSERT_TRUE(copy.shown);
    EXPECT_TRUE(copy.hidden.contains(QStringLiteral("mnuObjPropertys")));
    EXPECT_FALSE(copy.checked.contains(QStringLiteral("mnuObjAbsolutePosition")));
    for (const char *item : {"mnuObjCut", "mnuObjCopy", "mnuObjPaste", "mnuObjDelete", "mnuObjCMS_UnLock"})
        EXPECT_TRUE(copy.enabled.contains(QLatin1String(item))) << item;
    EXPECT_FALSE(copy.enabled.contains(QStringLiteral("mnuObjCMS_DeleteLock")));

    // Paste at the end of the paragraph "Drop here" with the keys.
    auto pasteIntoTarget = [&] {
        HtmlTextRange::aroundElement(page.byId(QStringLiteral("target"))).select();
        page.keys(Qt::Key_End);
        page.keys(Qt::Key_V, Qt::ControlModifier);
    };
    pasteIntoTarget();
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return inputs() == fields + 1; }, 5000));
    EXPECT_TRUE(page.byId(QStringLiteral("target")).innerHTML().contains(QStringLiteral("<input")));

    MenuPick cut(QStringLiteral("mnuObjCut"));
    ASSERT_TRUE(page.rightClick(QStringLiteral("field")));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return inputs() == fields; }, 5000));
    pasteIntoTarget();
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return inputs() == fields + 1; }, 5000));
    EXPECT_EQ(page.page().getElementsByTagName(QStringLiteral("FORM")).first().innerHTML().count(QStringLiteral("<input")), 0);

    MenuPick remove(QStringLiteral("mnuObjDelete"));
    ASSERT_TRUE(page.rightClick(QStringLiteral("field")));
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return inputs() == fields; }, 5000));
    bool dirty = false;
    page.doc->GetDirty(dirty);
    EXPECT_TRUE(dirty);
}

TEST_F(ObjectMenus, FieldFloatsAndComesBackIntoTheFlow)
{
    MenuPick on(QStringLiteral("mnuObjAbsolutePosition"));
    ASSERT_TRUE(page.rightClick(QStringLiteral("field")));
    HtmlElement field = page.byId(QStringLiteral("field"));
    EXPECT_EQ(field.styleValue(QStringLiteral("position")), QStringLiteral("absolute"));
    EXPECT_EQ(field.styleValue(QStringLiteral("clear")), QStringLiteral("both"));

    MenuPick off(QStringLiteral("mnuObjAbsolutePosition"));
    ASSERT_TRUE(page.rightClick(QStringLiteral("field")));
    EXPECT_TRUE(off.checked.contains(QStringLiteral("mnuObjAbsolutePosition")));
    EXPECT_TRUE(field.styleValue(QStringLiteral("position")).isEmpty());
    EXPECT_TRUE(field.getAttribute(QStringLiteral("style")).toString().isEmpty());
    EXPECT_NE(field.parentElement().tagName(), QStringLiteral("BODY"));
}

// Alone on its page, the field finds nothing around it to go into but
// the page's body, where it ends after the search has run its course.
TEST_F(ObjectMenus, FieldAloneOnItsPageComesBackIntoTheBody)
{
    page.open(QStringLiteral("objects/alone.htm"),
              "<html><head><title>Alone</title></head><body><input id=\"field\" value=\"x\" "
              "style=\"position:absolute;top:300px;left:400px\"></body></html>");
    MenuPick off(QStringLiteral("mnuObjAbsolutePosition"));
    ASSERT_TRUE(page.rightClick(QStringLiteral("field")));
    EXPECT_TRUE(off.checked.contains(QStringLiteral("mnuObjAbsolutePosition")));
    HtmlElement field = page.byId(QStringLiteral("field"));
    EXPECT_EQ(field.parentElement().tagName(), QStringLiteral("BODY"));
    EXPECT_TRUE(field.getAttribute(QStringLiteral("style")).toString().isEmpty());
}

TEST_F(ObjectMenus, AreaOffersItsLinkAndNotTheImagesCommands)
{
    MenuPick linked(QStringLiteral("mnuRemoveLink"));
    ASSERT_TRUE(page.rightClick(inMapped(20)));
    ASSERT_TRUE(linked.shown);
    EXPECT_TRUE(linked.hidden.contains(QStringLiteral("mnuCreateLink")));
    EXPECT_TRUE(linked.enabled.contains(QStringLiteral("mnuSelectAll")));
    for (const char *item : {"mnuCopy", "mnuDelete", "mnuUndo", "mnuPaste", "mnuInsertImage", "mnuAbsolutePosition", "mnuZOrder"})
        EXPECT_FALSE(linked.enabled.contains(QLatin1String(item))) << item;
    HtmlElement zone = page.byId(QStringLiteral("zone"));
    EXPECT_TRUE(zone.getAttribute(QStringLiteral("href")).isNull());
    EXPECT_TRUE(zone.getAttribute(QStringLiteral("target")).isNull());
    EXPECT_FALSE(page.byId(QStringLiteral("mapped")).isNull()); // the image stays

    MenuPick bare{QString()};
    ASSERT_TRUE(page.rightClick(inMapped(70)));
    EXPECT_TRUE(bare.hidden.contains(QStringLiteral("mnuEditLink")));
    EXPECT_TRUE(bare.enabled.contains(QStringLiteral("mnuCreateLink")));
}

// The page's own script takes the field away while its menu is open: the
// command finds nothing to act on and says nothing.
TEST_F(ObjectMenus, FieldRemovedWhileTheMenuIsOpenIsLeftAlone)
{
    bool shown = false;
    QTimer whileOpen;
    whileOpen.setInterval(10);
    QObject::connect(&whileOpen, &QTimer::timeout, [&] {
        QMenu *menu = frmMenu::Shown();
        if (!menu || !menu->isVisible())
            return;
        whileOpen.stop();
        shown = true;
        page.byId(QStringLiteral("field")).removeNode(true);
        QAction *item = menu->findChild<QAction *>(QStringLiteral("mnuObjAbsolutePosition"));
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(item).center());
    });
    whileOpen.start();
    ASSERT_TRUE(page.rightClick(QStringLiteral("field")));
    EXPECT_TRUE(shown);
    EXPECT_EQ(MError::ErrorNumber(), 0);
}

} // namespace
