// An edit session on the main window against the fixture servers, driven as
// a user drives it: Edit, typing, Save, and the answers to the questions.

#include "SessionWindow.h"
#include "objects/frmDocumentInnerHTML.h"
#include "support/MWait.h"
#include "support/frmWait.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QTimer>

using namespace session_test;

namespace {

const QString kAborted = QStringLiteral("The editing has been aborted.");
const QString kSaveQuestion = QStringLiteral("You have made changes to the document.");
const QString kExtension = QStringLiteral("This page (or part of) has a file extension not yet supported");
const QString kNewWindow = QStringLiteral("You will have to close the Vindrell panel");

bool onServer(const QString &relativePath)
{
    return QFile::exists(servers().webRoot() + QLatin1Char('/') + relativePath);
}

int revisionFiles()
{
    int n = 0;
    QDirIterator it(servers().webRoot() + QStringLiteral("/_resetp"), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        ++n;
    }
    return n;
}

class EditSessionGui : public SessionTest
{
};

} // namespace

// The marked page is live only for the moment of the reload: once the
// session stands, the server holds the original again, no copy lies beside
// it, and the session keeps the browser on the page.
TEST_F(EditSessionGui, ScriptPageIsItsOriginalOnTheServerWhileEditedAndTheBrowserStaysOnIt)
{
    const QByteArray original = servers().readWebFile(QStringLiteral("asp/layout.asp"));
    UserQuestions::Script({OK, OK});
    Window w;
    ASSERT_TRUE(w.edit(QStringLiteral("asp/layout.asp")));
    EXPECT_EQ(w.page().designMode(), QStringLiteral("On"));
    EXPECT_TRUE(w.page().documentElement().outerHTML().contains(QStringLiteral("keldaspIN#")));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("asp/layout.asp")), original);
    EXPECT_FALSE(onServer(QStringLiteral("asp/layout.keldabak")));
    EXPECT_FALSE(w.addressRowEnabled());
    EXPECT_EQ(MWait::Current(), nullptr);

    w.form.browser()->Navigate2(address(QStringLiteral("index.htm")));
    PageScriptCall::pumpUntil([] { return false; }, 1500);
    EXPECT_TRUE(w.form.browser()->LocationURL().endsWith(QStringLiteral("asp/layout.asp")));
    PageScriptCall::run(w.form.browser()->page(), QStringLiteral("window.open('/index.htm'); true"), QString());
    PageScriptCall::pumpUntil([] { return countStartingWith(shownTexts(), kNewWindow) > 0; }, 3000);
    EXPECT_EQ(countStartingWith(shownTexts(), kNewWindow), 1);
    EXPECT_TRUE(w.form.browser()->LocationURL().endsWith(QStringLiteral("asp/layout.asp")));

    w.pressEdit();
    EXPECT_FALSE(w.editing());
    EXPECT_EQ(countStartingWith(shownTexts(), kSaveQuestion), 0);
    EXPECT_TRUE(w.addressRowEnabled());
    w.settle();
    EXPECT_EQ(w.page().designMode(), QStringLiteral("Off"));
    EXPECT_EQ(errorDialogs(), 0) << firstError();
}

// A page of a server language that is not edited is shown hatched; a type
// the editor doesn't know is refused in words and the window browses on.
TEST_F(EditSessionGui, PhpPageIsHatchedAndAnUnknownTypeIsRefused)
{
    const QByteArray body = "<HTML><HEAD><TITLE>Lang</TITLE></HEAD><BODY><P id=\"text\">lang</P></BODY></HTML>";
    servers().writeWebFile(QStringLiteral("lang/page.php"), body);
    servers().writeWebFile(QStringLiteral("lang/page.cgi"), body);
    UserQuestions::Script({OK, OK, OK});
    Window w;
    ASSERT_TRUE(w.edit(QStringLiteral("lang/page.php")));
    EXPECT_FALSE(w.page().getElementById(QStringLiteral("__kelda_hatched")).isNull());
    EXPECT_EQ(w.page().designMode(), QStringLiteral("Off"));
    w.pressEdit();
    ASSERT_FALSE(w.editing());

    w.open(QStringLiteral("lang/page.cgi"));
    w.pressEdit();
    EXPECT_FALSE(w.editing());
    EXPECT_EQ(countStartingWith(shownTexts(), kExtension), 1);
    EXPECT_TRUE(w.addressRowEnabled());
    EXPECT_TRUE(w.form.EditButton()->isEnabled());
    EXPECT_EQ(w.page().designMode(), QStringLiteral("Off"));

    // In a frameset the frames before the refused one leave design mode.
    servers().writeWebFile(QStringLiteral("lang/frames.htm"),
                           "<HTML><FRAMESET cols=\"50%,50%\"><FRAME src=\"edit.htm\"><FRAME src=\"page.cgi\">"
                           "</FRAMESET></HTML>");
    servers().writeWebFile(QStringLiteral("lang/edit.htm"), body);
    EXPECT_FALSE(w.edit(QStringLiteral("lang/frames.htm")));
    EXPECT_EQ(countStartingWith(shownTexts(), kExtension), 2);
    EXPECT_EQ(w.page().frame(0).designMode(), QStringLiteral("Off"));
    EXPECT_EQ(errorDialogs(), 0) << firstError();
}

// Cancel in the wait dialog, at once and once the marked page is on the
// server: one message, no error dialog, the original back, browsing again.
TEST_F(EditSessionGui, CancelDuringEntryAbortsOnceAndLeavesTheSiteWhole)
{
    const QByteArray original = servers().readWebFile(QStringLiteral("asp/layout.asp"));
    const std::function<bool()> whens[] = {
        [] { return true; },
        [] { return servers().readWebFile(QStringLiteral("asp/layout.asp")).contains("keldaspIN#"); },
    };
    for (const auto &when : whens) {
        UserQuestions::Script({OK, OK});
        Window w;
        w.open(QStringLiteral("asp/layout.asp"));
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            if (MWait::Current() && MWait::Current()->isVisible() && when()) {
                poll.stop();
                MWait::Current()->CancelButton()->click();
            }
        });
        poll.start(5);
        w.pressEdit();
        EXPECT_FALSE(poll.isActive());
        EXPECT_FALSE(w.editing());
        EXPECT_EQ(countStartingWith(shownTexts(), kAborted), 1);
        EXPECT_EQ(errorDialogs(), 0) << firstError();
        EXPECT_EQ(servers().readWebFile(QStringLiteral("asp/layout.asp")), original);
        EXPECT_TRUE(w.addressRowEnabled());
        EXPECT_EQ(MWait::Current(), nullptr);
        w.settle();
        EXPECT_EQ(w.page().designMode(), QStringLiteral("Off"));
    }
}

// Cancel to the save question keeps the session as it stood; No then ends
// it and the server keeps the old page.
TEST_F(EditSessionGui, CancelToTheSaveQuestionKeepsEditingAndNoDropsTheChanges)
{
    servers().writeWebFile(QStringLiteral("plain/keep.htm"), plainPage("old"));
    UserQuestions::Script({OK, UserQuestions::vbCancel, UserQuestions::vbNo});
    Window w;
    ASSERT_TRUE(w.editAndType(QStringLiteral("plain/keep.htm"), QStringLiteral("text"), QStringLiteral("zq")));

    w.pressEdit();
    EXPECT_EQ(countStartingWith(shownTexts(), kSaveQuestion), 1);
    EXPECT_TRUE(w.editing());
    EXPECT_EQ(w.page().designMode(), QStringLiteral("On"));
    EXPECT_FALSE(w.addressRowEnabled());
    EXPECT_TRUE(w.form.EditButton()->isEnabled());

    w.pressEdit();
    EXPECT_EQ(countStartingWith(shownTexts(), kSaveQuestion), 2);
    EXPECT_FALSE(w.editing());
    EXPECT_EQ(servers().readWebFile(QStringLiteral("plain/keep.htm")), plainPage("old"));
    w.settle();
    EXPECT_EQ(w.page().getElementById(QStringLiteral("text")).innerText(), QStringLiteral("old"));
    EXPECT_EQ(errorDialogs(), 0) << firstError();
}

// Yes to the save question saves on the way out.
TEST_F(EditSessionGui, YesToTheSaveQuestionSavesAndEndsTheSession)
{
    servers().writeWebFile(QStringLiteral("plain/yes.htm"), plainPage("old"));
    UserQuestions::Script({OK, UserQuestions::vbYes});
    Window w;
    ASSERT_TRUE(w.editAndType(QStringLiteral("plain/yes.htm"), QStringLiteral("text"), QStringLiteral("zq")));
    w.pressEdit();
    EXPECT_EQ(countStartingWith(shownTexts(), kSaveQuestion), 1);
    EXPECT_FALSE(w.editing());
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("plain/yes.htm")).contains(">zq</"));
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    EXPECT_EQ(MWait::Current(), nullptr);
}

// A session that ended after its marked page went up (the window is gone
// without putting the original back) is repaired by the next press of
// Edit on that page, from the copy beside it or from the page's own text.
TEST_F(EditSessionGui, SessionCutOffAfterMarkingIsRepairedAtTheNextEdit)
{
    for (const bool keepCopy : {true, false}) {
        // Without the copy only the blocks can come back, not the lines the
        // marking takes out, so that page has none of them.
        const QByteArray original = keepCopy ? servers().readWebFile(QStringLiteral("asp/layout.asp"))
                                             : QByteArray("<HTML><BODY><P id=\"text\">Now <%= now %></P>"
                                                          "<% Response.Write \"<b>x</b>\" %></BODY></HTML>");
        servers().writeWebFile(QStringLiteral("cut/page.asp"), original);
        UserQuestions::Script({OK, OK});
        {
            Window first;
            first.open(QStringLiteral("cut/page.asp"));
            ASSERT_TRUE(first.form.SiteOfPageOrOffer());
            ASSERT_EQ(first.form.Session().SetASPTags(QStringLiteral("/cut/page.asp")), 1);
        }
        ASSERT_TRUE(servers().readWebFile(QStringLiteral("cut/page.asp")).contains("keldaspIN#"));
        ASSERT_TRUE(onServer(QStringLiteral("cut/page.keldabak")));
        if (!keepCopy)
            QFile::remove(servers().webRoot() + QStringLiteral("/cut/page.keldabak"));

        Window w;
        w.open(QStringLiteral("cut/page.asp"));
        w.pressEdit();
        EXPECT_TRUE(w.editing());
        EXPECT_EQ(servers().readWebFile(QStringLiteral("cut/page.asp")), original) << keepCopy;
        EXPECT_EQ(countStartingWith(shownTexts(), QStringLiteral("The page /cut/page.asp was found on the server")), 1);
        EXPECT_FALSE(onServer(QStringLiteral("cut/page.keldabak")));
        EXPECT_EQ(errorDialogs(), 0) << firstError();
        w.pressEdit();
    }
}

// ---------------------------------------------------------------- save

TEST_F(EditSessionGui, PlainPageTypedAndSavedIsOnTheServerWithARevisionAndShownFresh)
{
    servers().writeWebFile(QStringLiteral("plain/save.htm"), plainPage("old"));
    const int revisionsBefore = revisionFiles();
    UserQuestions::Script({OK});
    Window w;
    ASSERT_TRUE(w.editAndType(QStringLiteral("plain/save.htm"), QStringLiteral("text"), QStringLiteral("zq")));
    w.pressSave();
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    EXPECT_FALSE(w.editing());
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("plain/save.htm")).contains(">zq</"));
    EXPECT_GT(revisionFiles(), revisionsBefore);
    w.settle();
    // Only the copy on the server carries the save's meta tags.
    EXPECT_TRUE(w.page().documentElement().outerHTML().contains(QStringLiteral("Last-Modified"), Qt::CaseInsensitive));
    EXPECT_EQ(w.page().getElementById(QStringLiteral("text")).innerText(), QStringLiteral("zq"));
    EXPECT_EQ(w.page().designMode(), QStringLiteral("Off"));
}

TEST_F(EditSessionGui, ScriptPageAfterSaveHasEveryBlockAndTheEdit)
{
    const QByteArray original = servers().readWebFile(QStringLiteral("asp/layout.asp"));
    servers().writeWebFile(QStringLiteral("aspsave/layout.asp"), original);
    UserQuestions::Script({OK});
    Window w;
    ASSERT_TRUE(w.editAndType(QStringLiteral("aspsave/layout.asp"), QStringLiteral("text"), QStringLiteral("zq")));
    w.pressSave();
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    EXPECT_FALSE(w.editing());
    const QByteArray saved = servers().readWebFile(QStringLiteral("aspsave/layout.asp"));
    EXPECT_TRUE(saved.contains(">zq</")) << saved.toStdString();
    const QRegularExpression block(QStringLiteral("<%.*?%>"), QRegularExpression::DotMatchesEverythingOption);
    for (const auto &match : block.globalMatch(QString::fromLatin1(original)))
        EXPECT_TRUE(saved.contains(match.captured().toLatin1())) << match.captured().toStdString();
}

TEST_F(EditSessionGui, FramesetSavesEachFrameToItsOwnFileAndSkipsTheForeignFrame)
{
    const QString foreignFile = servers().ftpRoot() + QStringLiteral("/other/frame3.htm");
    QFile foreign(foreignFile);
    ASSERT_TRUE(foreign.open(QIODevice::ReadOnly));
    const QByteArray foreignBefore = foreign.readAll();
    foreign.close();
    const QByteArray framesetBefore = servers().readWebFile(QStringLiteral("frameset.htm"));
    UserQuestions::Script({OK});
    Window w;
    ASSERT_TRUE(w.edit(QStringLiteral("frameset.htm")));
    ASSERT_TRUE(w.typeInto(w.page().frame(0), QStringLiteral("left"), QStringLiteral("zq")));
    ASSERT_TRUE(w.typeInto(w.page().frame(1), QStringLiteral("main"), QStringLiteral("qz")));
    w.pressSave();
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    EXPECT_FALSE(w.editing());
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("frame1.htm")).contains(">zq</"));
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("frame2.htm")).contains(">qz</"));
    ASSERT_TRUE(foreign.open(QIODevice::ReadOnly));
    EXPECT_EQ(foreign.readAll(), foreignBefore);
    EXPECT_FALSE(servers().readWebFile(QStringLiteral("frameset.htm")).contains("zq"));
    EXPECT_FALSE(framesetBefore.isEmpty());
}

TEST_F(EditSessionGui, ConnectionDroppedDuringSaveLeavesThePageWholeAndTheNextSaveSucceeds)
{
    servers().writeWebFile(QStringLiteral("plain/drop.htm"), plainPage("old"));
    UserQuestions::Script({OK});
    Window w;
    ASSERT_TRUE(w.editAndType(QStringLiteral("plain/drop.htm"), QStringLiteral("text"), QStringLiteral("zq")));
    // The connection drops at the page's upload and the server stays out of
    // reach for longer than the save waits.
    servers().setFtpFaults(QJsonObject{{QStringLiteral("unreachable_on"), QStringLiteral("^(STOR|RNFR|RNTO)")},
                                       {QStringLiteral("unreachable_s"), 60}});
    w.pressSave();
    EXPECT_EQ(errorDialogs(), 1);
    EXPECT_TRUE(w.editing());
    EXPECT_TRUE(w.form.SaveButton()->isEnabled());
    const QByteArray whole = servers().readWebFile(QStringLiteral("plain/drop.htm"));
    EXPECT_TRUE(whole == plainPage("old") || (whole.contains(">zq</") && whole.trimmed().toUpper().endsWith("</HTML>")))
        << whole.toStdString();

    servers().clearFtpFaults();
    w.pressSave();
    EXPECT_EQ(errorDialogs(), 1);
    EXPECT_FALSE(w.editing());
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("plain/drop.htm")).contains(">zq</"));
}

// A script page whose marks don't come back as they went (a block prints
// the start of a comment, which swallows the mark behind it) is refused:
// the server has its original again, the user is asked whether to edit the
// source by hand, with the reason, and the window browses on. Yes opens the
// source as the server holds it, and what the user leaves in it goes to the
// server.
TEST_F(EditSessionGui, ComplexScriptPageIsPutBackAndTheSourceEditIsOffered)
{
    const QByteArray original = "<HTML><BODY><P id=\"text\">roses are out</P>\r\n<% Response.Write \"<!--\" %>"
                                "<P>after</P></BODY></HTML>\r\n";
    const QString edited = QString::fromLatin1(original).replace(QStringLiteral("roses are out"),
                                                                 QStringLiteral("tulips are out"));
    for (const long answer : {long(UserQuestions::vbNo), long(UserQuestions::vbYes)}) {
        servers().writeWebFile(QStringLiteral("news.asp"), original);
        UserQuestions::Script({OK, answer, OK});
        frmDocumentInnerHTML::ScriptEdits({edited});
        Window w;
        EXPECT_FALSE(w.edit(QStringLiteral("news.asp")));
        EXPECT_EQ(countStartingWith(shownTexts(), QStringLiteral("This page contains complex ASP code.")), 1);
        EXPECT_TRUE(shownTexts().join(QString()).contains(QStringLiteral("broke the page's structure"))) << answer;
        EXPECT_EQ(servers().readWebFile(QStringLiteral("news.asp")),
                  answer == UserQuestions::vbYes ? edited.toLatin1() : original);
        EXPECT_FALSE(onServer(QStringLiteral("news.keldabak")));
        EXPECT_TRUE(w.addressRowEnabled());
        w.settle();
        EXPECT_EQ(w.page().designMode(), QStringLiteral("Off"));
        EXPECT_FALSE(w.page().documentElement().outerHTML().contains(QStringLiteral("keldaspIN#")));
        EXPECT_EQ(errorDialogs(), 0) << firstError();
    }
}
