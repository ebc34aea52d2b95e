// The source editor from the main window, as a user uses it: the editor's
// own search finds the words, he types over them and presses OK. The page
// goes to the server by the safe replace, and what stood there before is
// kept as a revision.

#include "MenuPick.h"
#include "ModalDriver.h"
#include "PageMouse.h"
#include "SessionWindow.h"
#include "objects/frmDocumentInnerHTML.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

using namespace session_test;

namespace {

// The files of the revision folder with the given bytes.
int revisionsHolding(const QByteArray &bytes)
{
    int n = 0;
    QDirIterator it(servers().webRoot() + QStringLiteral("/_resetp"), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly) && file.readAll() == bytes)
            ++n;
    }
    return n;
}

// The revisions kept so far, of any page.
int revisionCount()
{
    return int(QDir(servers().webRoot() + QStringLiteral("/_resetp"))
                   .entryList(QDir::Files)
                   .filter(QRegularExpression(QStringLiteral("\\.\\d+$")))
                   .size());
}

// Right click on the element and "Show/edit HTML" in the menu; true when
// the menu came and the item was picked.
bool showEditHtml(Window &w, const QString &id)
{
    HtmlElement element = w.page().getElementById(id);
    const QPoint at(element.offsetLeft() + 5, element.offsetTop() + 5);
    MenuPick showHtml(QStringLiteral("mnuEditDocumentByHTML"));
    for (int attempt = 0; attempt < 20 && !showHtml.shown; ++attempt) {
        sendRightClick(w.form.browser()->focusProxy(), at);
        PageScriptCall::pumpUntil([&] { return showHtml.shown; }, 500);
    }
    return showHtml.shown;
}

// Once the editor is up: notes what it shows, finds "roses" with its
// search (No at the hit, OK to the count), types over it, presses OK.
void typeTulipsOverRoses(QWidget *dialog, QString &shown)
{
    auto *box = dialog->findChild<QPlainTextEdit *>(QStringLiteral("rtfInnerHTML"));
    shown = box->toPlainText();
    dialog->findChild<QLineEdit *>(QStringLiteral("txtWordToFind"))->setText(QStringLiteral("roses"));
    dialog->findChild<QPushButton *>(QStringLiteral("cmdFindWord"))->click();
    QTest::keyClicks(box, QStringLiteral("tulips"));
    dialog->findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
}

class SourceEditByHand : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        frmDocumentInnerHTML::RunUnderScript(true);
    }
    void TearDown() override
    {
        frmDocumentInnerHTML::RunUnderScript(false);
        SessionTest::TearDown();
    }
};

} // namespace

TEST_F(SourceEditByHand, ComplexScriptPageTypedInTheEditorIsSavedAfterARevision)
{
    // The block prints the start of a comment, which swallows the marks
    // behind it: the page can't be edited in place.
    const QByteArray original = "<HTML><BODY><P id=\"text\">roses are out " + QByteArray::number(QDateTime::currentMSecsSinceEpoch())
                                + "</P>\r\n<% Response.Write \"<!--\" %>\r\n<P>after</P></BODY></HTML>\r\n";
    servers().writeWebFile(QStringLiteral("byhand.asp"), original);
    ASSERT_EQ(revisionsHolding(original), 0);
    const int revisions = revisionCount();

    QString shownInEditor;
    ModalDriver editor(QStringLiteral("frmDocumentInnerHTML"),
                       [&](QWidget *dialog) { typeTulipsOverRoses(dialog, shownInEditor); });
    // Yes to editing the code by hand.
    UserQuestions::Script({OK, UserQuestions::vbYes, UserQuestions::vbNo, OK});
    Window w;
    EXPECT_FALSE(w.edit(QStringLiteral("byhand.asp")));
    ASSERT_EQ(editor.seen, 1);
    EXPECT_EQ(shownInEditor, QString::fromLatin1(original).replace(QStringLiteral("\r\n"), QStringLiteral("\n")))
        << "the source as the server holds it";

    QByteArray typed = original;
    typed.replace("roses", "tulips");
    EXPECT_EQ(servers().readWebFile(QStringLiteral("byhand.asp")), typed);
    EXPECT_EQ(revisionsHolding(original), 1) << "what stood there before is a revision";
    EXPECT_EQ(revisionCount(), revisions + 1);
    EXPECT_FALSE(QFile::exists(servers().webRoot() + QStringLiteral("/byhand.keldabak")));
    EXPECT_EQ(errorDialogs(), 0) << firstError();
}

// "Show/edit HTML" in the middle of an edit: the editor shows the page's
// own file with what the user typed in the page so far (the author's
// spelling kept, not the engine's), and OK saves what he wrote there.
TEST_F(SourceEditByHand, ShowEditHtmlShowsTheFileWithTheEditsSoFarAndSavesTheSource)
{
    const QByteArray original = "<HTML><HEAD><TITLE>Garden</TITLE></HEAD><BODY>\r\n<p class=news id=text>roses "
                                "are out</p>\r\n<P id=\"after\">Come and see</P>\r\n</BODY></HTML>\r\n";
    servers().writeWebFile(QStringLiteral("garden.htm"), original);
    // The note that the site has no CMS file; No at the hit, OK to the count.
    UserQuestions::Script({OK, UserQuestions::vbNo, OK});
    Window w;
    ASSERT_TRUE(w.editAndType(QStringLiteral("garden.htm"), QStringLiteral("after"), QStringLiteral("zq")));

    const int revisions = revisionCount(), holding = revisionsHolding(original);
    QString shownInEditor;
    ModalDriver editor(QStringLiteral("frmDocumentInnerHTML"),
                       [&](QWidget *dialog) { typeTulipsOverRoses(dialog, shownInEditor); });
    ASSERT_TRUE(showEditHtml(w, QStringLiteral("text")));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return editor.seen == 1 && !w.editing(); }, 10000));
    EXPECT_TRUE(shownInEditor.contains(QStringLiteral("<p class=news id=text>roses are out</p>\n")))
        << shownInEditor.toStdString();
    EXPECT_TRUE(shownInEditor.contains(QStringLiteral("zq"))) << "what was typed in the page";

    const QByteArray saved = servers().readWebFile(QStringLiteral("garden.htm"));
    EXPECT_TRUE(saved.contains("<p class=news id=text>tulips are out</p>\r\n")) << saved.toStdString();
    EXPECT_TRUE(saved.contains("zq")) << saved.toStdString();
    EXPECT_EQ(revisionsHolding(original), holding + 1) << "the page as it stood before the edit";
    EXPECT_EQ(revisionCount(), revisions + 1) << "one save, one revision";
    EXPECT_EQ(errorDialogs(), 0) << firstError();
}

// Cancel in the editor of a script page: nothing reaches the server, the
// user is back in the page with what he typed there, and his Save later
// writes it, script kept, in one revision.
TEST_F(SourceEditByHand, ShowEditHtmlCancelledKeepsTheEditsInThePageUnsaved)
{
    const QByteArray original = "<HTML><HEAD><TITLE>Menu</TITLE></HEAD><BODY>\r\n<P id=\"price\">Price <%= \"twelve\" %> EUR</P>\r\n"
                                "<P id=\"text\">Soup of the day</P>\r\n</BODY></HTML>\r\n";
    servers().writeWebFile(QStringLiteral("menu.asp"), original);
    UserQuestions::Script({OK, OK, OK, OK});
    Window w;
    ASSERT_TRUE(w.editAndType(QStringLiteral("menu.asp"), QStringLiteral("text"), QStringLiteral("zq")));

    const int revisions = revisionCount(), holding = revisionsHolding(original);
    servers().clearFtpLog();
    QString shownInEditor;
    ModalDriver editor(QStringLiteral("frmDocumentInnerHTML"), [&](QWidget *dialog) {
        shownInEditor = dialog->findChild<QPlainTextEdit *>(QStringLiteral("rtfInnerHTML"))->toPlainText();
        dialog->findChild<QPushButton *>(QStringLiteral("cmdCancel"))->click();
    });
    ASSERT_TRUE(showEditHtml(w, QStringLiteral("text")));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return editor.seen == 1; }, 10000));
    EXPECT_TRUE(shownInEditor.contains(QStringLiteral("<P id=\"text\">zq</P>"))) << shownInEditor.toStdString();
    EXPECT_TRUE(shownInEditor.contains(QStringLiteral("<%= \"twelve\" %>"))) << shownInEditor.toStdString();
    EXPECT_EQ(servers().ftpCommands(QStringLiteral("STOR")), 0);
    EXPECT_EQ(servers().readWebFile(QStringLiteral("menu.asp")), original);
    EXPECT_EQ(revisionCount(), revisions);
    ASSERT_TRUE(w.editing());
    EXPECT_EQ(w.page().getElementById(QStringLiteral("text")).innerText(), QStringLiteral("zq"));
    // His typing is still his to undo and redo, from the band.
    w.form.findChild<QPushButton *>(QStringLiteral("cmdUndo"))->click();
    EXPECT_EQ(w.page().getElementById(QStringLiteral("text")).innerText(), QStringLiteral("Soup of the day"));
    w.form.findChild<QPushButton *>(QStringLiteral("cmdRedo"))->click();
    EXPECT_EQ(w.page().getElementById(QStringLiteral("text")).innerText(), QStringLiteral("zq"));
    // Still being edited: he types on.
    ASSERT_TRUE(w.typeInto(w.page(), QStringLiteral("text"), QStringLiteral("zqx")));

    w.pressSave();
    ASSERT_FALSE(w.editing());
    QByteArray saved = original;
    saved.replace("Soup of the day", "zqx");
    EXPECT_EQ(servers().readWebFile(QStringLiteral("menu.asp")).toStdString(), saved.toStdString());
    EXPECT_EQ(revisionCount(), revisions + 1);
    EXPECT_EQ(revisionsHolding(original), holding + 1);
    EXPECT_EQ(errorDialogs(), 0) << firstError();
}
