// A right click during an edit session on the main window: the object's
// menu comes up, its command changes the page, and Save takes the change
// to the server.

#include "MenuPick.h"
#include "PageMouse.h"
#include "SessionWindow.h"

using namespace session_test;

namespace {

class ObjectMenuGui : public SessionTest
{
};

TEST_F(ObjectMenuGui, FieldDeletedFromItsMenuIsGoneFromTheSavedPage)
{
    servers().writeWebFile(QStringLiteral("form.htm"),
                           "<HTML><HEAD><TITLE>Form</TITLE></HEAD><BODY><P id=\"text\">Name:</P>"
                           "<FORM><INPUT id=\"field\" value=\"name\"></FORM></BODY></HTML>");
    UserQuestions::Script({OK, OK, OK});
    Window w;
    ASSERT_TRUE(w.edit(QStringLiteral("form.htm")));
    HtmlElement field = w.page().getElementById(QStringLiteral("field"));
    const QPoint at(field.offsetLeft() + 5, field.offsetTop() + 5);
    MenuPick remove(QStringLiteral("mnuObjDelete"));
    for (int attempt = 0; attempt < 20 && !remove.shown; ++attempt) {
        sendRightClick(w.form.browser()->focusProxy(), at);
        PageScriptCall::pumpUntil([&] { return remove.shown; }, 500);
    }
    ASSERT_TRUE(remove.shown);
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return w.page().getElementById(QStringLiteral("field")).isNull(); }, 5000));

    w.pressSave();
    EXPECT_FALSE(w.editing());
    const QByteArray saved = servers().readWebFile(QStringLiteral("form.htm"));
    EXPECT_FALSE(saved.contains("INPUT")) << saved.toStdString();
    EXPECT_TRUE(saved.contains("<P id=\"text\">Name:</P>")) << saved.toStdString();
}

} // namespace
