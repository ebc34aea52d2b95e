// The Visibility pane of the main window during an edit session: a right
// click with Shift lists the page's layers in it, and the list goes when
// the edit ends.

#include "MenuPick.h"
#include "PageMouse.h"
#include "SessionWindow.h"

#include <QListWidget>

using namespace session_test;

namespace {

class VisibilityPaneGui : public SessionTest
{
};

TEST_F(VisibilityPaneGui, LayersOfThePageUnderEditAreListedInThePane)
{
    servers().writeWebFile(QStringLiteral("layers.htm"),
                           "<HTML><HEAD><TITLE>Layers</TITLE></HEAD><BODY><P id=\"text\">Words</P>"
                           "<DIV id=\"box\" style=\"visibility: hidden\">Hidden box</DIV></BODY></HTML>");
    UserQuestions::Script({OK, OK, OK});
    Window w;
    ASSERT_TRUE(w.edit(QStringLiteral("layers.htm")));
    w.form.findChild<QPushButton *>(QStringLiteral("cmdPane1"))->click();
    auto *lst = w.form.findChild<QListWidget *>(QStringLiteral("lstLayers"));
    ASSERT_TRUE(lst);
    EXPECT_TRUE(lst->isVisible());

    // The right click also brings the text menu, which is closed.
    MenuPick close{QString()};
    const HtmlElement text = w.page().getElementById(QStringLiteral("text"));
    const QPoint at(text.offsetLeft() + 5, text.offsetTop() + 5);
    for (int attempt = 0; attempt < 20 && lst->count() == 0; ++attempt) {
        sendRightClick(w.form.browser()->focusProxy(), at, Qt::ShiftModifier);
        PageScriptCall::pumpUntil([lst] { return lst->count() > 0; }, 500);
    }
    ASSERT_EQ(lst->count(), 2);
    EXPECT_EQ(lst->item(1)->text(), QStringLiteral("DIV box Hidden"));
    EXPECT_EQ(w.page().getElementById(QStringLiteral("box")).currentStyle().visibility, QStringLiteral("hidden"));
    PageScriptCall::pumpUntil([&close] { return close.shown; }, 2000);

    w.pressEdit();
    EXPECT_FALSE(w.editing());
    EXPECT_EQ(lst->count(), 0);
}

} // namespace
