// The source of a script page edited by hand from inside an edit session:
// what the user writes replaces the page, and a cancelled edit writes
// nothing.

#include "SavedPage.h"
#include "objects/frmDocumentInnerHTML.h"
#include "support/UserQuestions.h"

#include <gtest/gtest.h>

namespace {

using Q = UserQuestions;
using namespace save_test;

const QByteArray kSource = "<%@ Language=VBScript %>\r\n<% Option Explicit %>\r\n<%\r\nDim q\r\nq = \"roses\"\r\n%>\r\n"
                           "<HTML>\r\n<HEAD>\r\n<TITLE>By hand</TITLE>\r\n</HEAD>\r\n<BODY>\r\n"
                           "<H1 id=\"head\">Garden <%= \"layout\" %></H1>\r\n"
                           "<P id=\"text\">Edit this text.</P>\r\n<IMG id=\"pic\" src=\"pic.gif\">\r\n</BODY>\r\n</HTML>\r\n";

// What the user typed into the page.
void typeInPage(CDocument &doc)
{
    HtmlDocument page;
    doc.GetDocument(page);
    page.getElementById(QStringLiteral("text")).setInnerText(QStringLiteral("Typed in the page."));
    doc.SetDirty();
}

class EditByHand : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        setSaveDate();
        MGlobalProjectObjects::UseTidy = false;
    }
    void TearDown() override
    {
        Q::EndScript();
        frmDocumentInnerHTML::ScriptEdits({});
    }
    // The page on the server, entered for editing.
    void enter(ScriptPage &asp, const QString &path)
    {
        TestServers::shared().writeWebFile(path, kSource);
        asp.enter(screen, path);
    }
    document_test::Screen screen;
};

} // namespace

TEST_F(EditByHand, TypedSourceLandsOnTheServerInOneRevision)
{
    ScriptPage asp;
    enter(asp, QStringLiteral("asp/byhand.asp"));
    typeInPage(*asp.doc);
    const int revisions = int(revisionFiles().size());
    QByteArray typed = kSource;
    typed.replace("Edit this text.", "Typed by hand.");
    Q::Script({Q::vbOK});
    frmDocumentInnerHTML::ScriptEdits({QString::fromLatin1(typed)});
    ASSERT_EQ(asp.doc->EditAspDocument(), 1) << MError::ErrorDescription().toStdString();
    // The editor was given the page as the save makes it: script and all,
    // with what was typed in the page.
    ASSERT_FALSE(Q::ShownSoFar().isEmpty());
    EXPECT_EQ(Q::ShownSoFar().last().kind, QStringLiteral("frmDocumentInnerHTML"));
    EXPECT_TRUE(Q::ShownSoFar().last().text.contains(QStringLiteral("<%= \"layout\" %>")));
    EXPECT_TRUE(Q::ShownSoFar().last().text.contains(QStringLiteral("Typed in the page.")));
    EXPECT_EQ(serverFile(QStringLiteral("asp/byhand.asp")), typed);
    EXPECT_EQ(revisionFiles().size(), revisions + 1);
    EXPECT_TRUE(hasRevisionWith(kSource));
    bool edited = false;
    asp.doc->GetASPEdited(edited);
    EXPECT_TRUE(edited);
    EXPECT_FALSE(asp.doc->EditIsOn());
}

// Cancel in the editor: nothing is sent, and the page is left exactly as
// the user is editing it, marks of edit mode and all, although the save's
// steps ran on it to make the text. Then his Save writes his edit.
static void cancelThenSave(CDocument &doc, const QString &path)
{
    typeInPage(doc);
    HtmlDocument page;
    doc.GetDocument(page);
    const QString editedPage = page.snapshot();
    ASSERT_TRUE(editedPage.contains(QStringLiteral("keldakey"), Qt::CaseInsensitive));
    const QByteArray original = serverFile(path);
    const QStringList revisions = revisionFiles();
    Q::Script({Q::vbCancel});
    TestServers::shared().clearFtpLog();
    EXPECT_EQ(doc.EditAspDocument(), -1);
    EXPECT_EQ(TestServers::shared().ftpCommands(QStringLiteral("STOR")), 0);
    EXPECT_EQ(serverFile(path), original);
    EXPECT_EQ(page.snapshot().toStdString(), editedPage.toStdString());
    EXPECT_TRUE(doc.EditIsOn());
    bool dirty = false;
    doc.GetDirty(dirty);
    EXPECT_TRUE(dirty);

    ASSERT_EQ(doc.Save(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(serverFile(path).contains("<P id=\"text\">Typed in the page.</P>")) << serverFile(path).toStdString();
    EXPECT_EQ(revisionFiles().size(), revisions.size() + 1);
}

TEST_F(EditByHand, CancelSendsNothingAndLeavesThePageAsItWasEdited)
{
    ScriptPage asp;
    enter(asp, QStringLiteral("asp/cancel.asp"));
    cancelThenSave(*asp.doc, QStringLiteral("asp/cancel.asp"));
    QByteArray saved = kSource;
    saved.replace("Edit this text.", "Typed in the page.");
    EXPECT_EQ(serverFile(QStringLiteral("asp/cancel.asp")), saved) << "the script kept byte for byte";

    // A page without script gets head tags at the save, and a hidden layer
    // is shown while it is edited: both come back as they were at Cancel.
    const QByteArray plain = "<HTML><HEAD><TITLE>Plain</TITLE></HEAD><BODY>\r\n<P id=\"text\">Edit this text.</P>\r\n"
                             "<IMG id=\"pic\" src=\"pic.gif\">\r\n<DIV id=\"layer\" style=\"POSITION: absolute; "
                             "VISIBILITY: hidden\">Layer</DIV>\r\n</BODY></HTML>\r\n";
    auto doc = editPage(screen, QStringLiteral("cancel.htm"), plain);
    cancelThenSave(*doc, QStringLiteral("cancel.htm"));
}

// The main window edits a page with complex script through these two.
TEST_F(EditByHand, SourceComesAndGoesByteForByte)
{
    const QByteArray news = TestServers::shared().readWebFile(QStringLiteral("news.asp"));
    screen.open(QStringLiteral("news.asp"), news);
    CDocument doc;
    ASSERT_EQ(doc.Init(&screen.window), 1) << MError::ErrorDescription().toStdString();
    QString source;
    ASSERT_EQ(doc.GetDocumentFromServer(source), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(CPageEncoding::Encode(source), news);
    TestServers::shared().writeWebFile(QStringLiteral("news.asp"), "gone");
    ASSERT_EQ(doc.SendDocumentToServer(source), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(TestServers::shared().readWebFile(QStringLiteral("news.asp")), news);
}
