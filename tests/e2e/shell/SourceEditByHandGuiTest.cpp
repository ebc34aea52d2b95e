// A page whose script can't be kept through an edit is edited by hand in
// the source editor, from the main window, as a user does it: Edit, Yes to
// editing the code manually, the editor's own search to find the words,
// typing over them, OK. The page goes to the server by the safe replace,
// and what stood there before is kept as a revision.

#include "ModalDriver.h"
#include "SessionWindow.h"
#include "objects/frmDocumentInnerHTML.h"

#include <QDirIterator>
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

class SourceEditByHand : public SessionTest
{
protected:
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

    frmDocumentInnerHTML::RunUnderScript(true);
    QString shownInEditor;
    ModalDriver editor(QStringLiteral("frmDocumentInnerHTML"), [&](QWidget *dialog) {
        auto *box = dialog->findChild<QPlainTextEdit *>(QStringLiteral("rtfInnerHTML"));
        shownInEditor = box->toPlainText();
        dialog->findChild<QLineEdit *>(QStringLiteral("txtWordToFind"))->setText(QStringLiteral("roses"));
        dialog->findChild<QPushButton *>(QStringLiteral("cmdFindWord"))->click();
        QTest::keyClicks(box, QStringLiteral("tulips"));
        dialog->findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
    });
    // Yes to editing the code by hand; No at the first hit, and OK to the
    // count of hits.
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
    EXPECT_FALSE(QFile::exists(servers().webRoot() + QStringLiteral("/byhand.keldabak")));
    EXPECT_EQ(errorDialogs(), 0) << firstError();
}
