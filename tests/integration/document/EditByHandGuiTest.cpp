// The source of a script page edited by hand from inside an edit session:
// what the user writes replaces the page, and a cancelled edit puts the
// original back when edit mode ends.

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
                           "<P id=\"text\">Edit this text.</P>\r\n</BODY>\r\n</HTML>\r\n";

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

TEST_F(EditByHand, TypedSourceLandsOnTheServer)
{
    ScriptPage asp;
    enter(asp, QStringLiteral("asp/byhand.asp"));
    QByteArray typed = kSource;
    typed.replace("Edit this text.", "Typed by hand.");
    Q::Script({Q::vbOK});
    frmDocumentInnerHTML::ScriptEdits({QString::fromLatin1(typed)});
    ASSERT_EQ(asp.doc->EditAspDocument(), 1) << MError::ErrorDescription().toStdString();
    // The editor was given the page as saved: script and all.
    ASSERT_FALSE(Q::ShownSoFar().isEmpty());
    EXPECT_EQ(Q::ShownSoFar().last().kind, QStringLiteral("frmDocumentInnerHTML"));
    EXPECT_TRUE(Q::ShownSoFar().last().text.contains(QStringLiteral("<%= \"layout\" %>")));
    EXPECT_EQ(serverFile(QStringLiteral("asp/byhand.asp")), typed);
    bool edited = false;
    asp.doc->GetASPEdited(edited);
    EXPECT_TRUE(edited);
    ASSERT_EQ(asp.doc->EditOn(false), 1);
    EXPECT_EQ(serverFile(QStringLiteral("asp/byhand.asp")), typed);
}

TEST_F(EditByHand, CancelPutsTheOriginalBackAtTheEnd)
{
    ScriptPage asp;
    enter(asp, QStringLiteral("asp/cancel.asp"));
    Q::Script({Q::vbCancel});
    TestServers::shared().clearFtpLog();
    EXPECT_EQ(asp.doc->EditAspDocument(), -1);
    EXPECT_GE(TestServers::shared().ftpCommands(QStringLiteral("STOR")), 1) << "the page went up as it stood";
    // Nothing was changed in the page, so what went up is the file itself.
    EXPECT_EQ(serverFile(QStringLiteral("asp/cancel.asp")), kSource);
    TestServers::shared().writeWebFile(QStringLiteral("asp/cancel.asp"), "changed meanwhile");
    ASSERT_EQ(asp.doc->EditOn(false), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(serverFile(QStringLiteral("asp/cancel.asp")), kSource);
    // Once back, it isn't sent again.
    TestServers::shared().clearFtpLog();
    EXPECT_EQ(asp.doc->EditOn(false), 1);
    EXPECT_EQ(TestServers::shared().ftpCommands(QStringLiteral("STOR")), 0);
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
