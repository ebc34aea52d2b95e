// The revision pane on a real page: revisions kept on the fixture's FTP
// server, the frames of a frameset, and Reset answering the question.

#include "../history/RevisionSite.h"
#include "history/CRollback.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "shell/FrameList.h"
#include "shell/RevisionPane.h"
#include "shell/RevisionPaneHost.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include <gtest/gtest.h>

using history_test::servers;

namespace {

QByteArray webFile(const QString &name)
{
    QFile file(servers().webRoot() + QLatin1Char('/') + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Puts each text on the server in turn; all but the last are kept as
// revisions 1, 2, ..., the last one is the live page.
void pageWithRevisions(const QString &name, const QList<QByteArray> &texts)
{
    for (const QByteArray &text : texts) {
        servers().writeWebFile(name, text);
        if (&text != &texts.last()) {
            CRollback backup;
            ASSERT_EQ(backup.BackupPage(QStringLiteral("/www/") + name), 1) << MError::ErrorDescription().toStdString();
        }
    }
}

QByteArray page(const char *words)
{
    return QByteArray("<html><body><p>") + words + "</p></body></html>";
}

// The session's side: the documents as the session would hand them over.
class Session : public RevisionPaneHost
{
public:
    QList<SessionDocument> SessionDocuments() override { return documents; }
    QList<SessionDocument> documents;
    WebBrowser browser;
};

class RevisionPaneTest : public testing::Test
{
protected:
    void SetUp() override
    {
        history_test::useDemoSite();
        history_test::setHistorySize(5);
        history_test::removeHistory();
        MError::ClearError();
        session.browser.resize(800, 600);
        session.browser.show();
    }
    void TearDown() override { UserQuestions::EndScript(); }

    void load(const QString &name)
    {
        session.browser.Navigate2(servers().httpBase() + QLatin1Char('/') + name, WebBrowser::NavNoReadFromCache);
        PageScriptCall::pumpUntil([&] { return session.browser.ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
        ASSERT_TRUE(session.browser.waitUntilComplete());
    }

    Session session;
    RevisionPane pane{&session};
};

TEST_F(RevisionPaneTest, ListsRevisionsNewestFirstAndResetsTheChosenOneOnYesOnly)
{
    pageWithRevisions(QStringLiteral("recover.htm"), {page("first"), page("second"), page("live")});
    load(QStringLiteral("recover.htm"));
    session.documents = {{session.browser.Document(), true, false, QStringLiteral("/www/recover.htm")}};

    ASSERT_EQ(pane.Open(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_TRUE(pane.cboFrameName->isHidden());
    EXPECT_TRUE(pane.lblFrame->isHidden());
    ASSERT_EQ(pane.lstRollback->count(), 2);
    EXPECT_EQ(pane.lstRollback->item(0)->data(Qt::UserRole).toLongLong(), 2);
    EXPECT_EQ(pane.lstRollback->item(1)->data(Qt::UserRole).toLongLong(), 1);
    EXPECT_FALSE(pane.cmdRollback->isEnabled());

    pane.lstRollback->setCurrentRow(1);
    pane.lstRollback_Click();
    EXPECT_TRUE(pane.cmdRollback->isEnabled());
    int resets = 0;
    QObject::connect(&pane, &RevisionPane::RevisionReset, [&] { ++resets; });

    UserQuestions::Script({UserQuestions::vbNo});
    pane.cmdRollback_Click();
    EXPECT_EQ(webFile(QStringLiteral("recover.htm")), page("live"));
    EXPECT_EQ(resets, 0);
    const UserQuestions::Shown asked = UserQuestions::ShownSoFar().last();
    EXPECT_EQ(asked.text, QStringLiteral("You have chosen to reset a previous version of this page. Do you want to "
                                         "continue?\n\nTip:\nIf you would like to preview a version before "
                                         "resetting it, double click\nthe date to see that version."));
    EXPECT_EQ(UserQuestions::DefaultAnswer(asked.style), UserQuestions::vbNo);

    UserQuestions::Script({UserQuestions::vbYes});
    pane.cmdRollback_Click();
    EXPECT_EQ(webFile(QStringLiteral("recover.htm")), page("first"));
    EXPECT_EQ(resets, 1);
}

// A revision whose file is gone from the server: View and Reset each say
// so in the error dialog, under their own position, and leave no error
// pending behind them; the live page stays as it was.
TEST_F(RevisionPaneTest, FailuresOfViewAndResetGoToTheErrorDialogAndLeaveNothingPending)
{
    pageWithRevisions(QStringLiteral("lost.htm"), {page("old"), page("live")});
    load(QStringLiteral("lost.htm"));
    session.documents = {{session.browser.Document(), true, false, QStringLiteral("/www/lost.htm")}};
    ASSERT_EQ(pane.Open(), 1) << MError::ErrorDescription().toStdString();
    ASSERT_EQ(pane.lstRollback->count(), 1);
    for (const QFileInfo &file : QDir(history_test::historyDisk()).entryInfoList({QStringLiteral("*.1")}))
        QFile::remove(file.filePath());

    QList<MError::DialogRequest> shown;
    MError::SetDialogPresenter([&shown](const MError::DialogRequest &request) { shown.append(request); });
    UserQuestions::SetPresenter([](const QString &, long, const QString &) { return long(UserQuestions::vbYes); });
    pane.lstRollback->setCurrentRow(0);
    pane.lstRollback_DblClick(pane.lstRollback->item(0));
    EXPECT_EQ(MError::ErrorNumber(), 0);
    pane.cmdRollback_Click();
    EXPECT_EQ(MError::ErrorNumber(), 0);
    MError::SetDialogPresenter(nullptr);
    UserQuestions::SetPresenter(nullptr);

    ASSERT_EQ(shown.size(), 2);
    EXPECT_TRUE(shown[0].message.contains(QStringLiteral("_resetp"))) << shown[0].message.toStdString();
    EXPECT_EQ(shown[0].position, QStringLiteral("CRollback.ViewBackup"));
    EXPECT_EQ(shown[1].position, QStringLiteral("CRollback.Rollback"));
    EXPECT_EQ(webFile(QStringLiteral("lost.htm")), page("live"));
}

// A page never saved lists nothing; a site without any history says so.
TEST_F(RevisionPaneTest, PageWithoutRevisionsListsNothing)
{
    servers().writeWebFile(QStringLiteral("never.htm"), page("never saved"));
    load(QStringLiteral("never.htm"));
    session.documents = {{session.browser.Document(), true, false, QStringLiteral("/www/never.htm")}};
    EXPECT_EQ(pane.Open(), 0);
    EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("_resetp")))
        << MError::ErrorDescription().toStdString();
    MError::ClearError();

    pageWithRevisions(QStringLiteral("other.htm"), {page("old"), page("new")});
    EXPECT_EQ(pane.Open(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(pane.lstRollback->count(), 0);
}

// A frameset with a named frame, two nameless ones and one of another
// origin between them.
class FramesetTest : public RevisionPaneTest
{
protected:
    void openFrameset()
    {
        servers().writeWebFile(QStringLiteral("left.htm"), page("left"));
        servers().writeWebFile(QStringLiteral("right.htm"), page("right"));
        const QByteArray frames = "<html><frameset cols=\"25%,25%,25%,25%\"><frame name=\"menu\" src=\"left.htm\">"
                                  "<frame src=\"right.htm\"><frame src=\"" + servers().otherBase().toUtf8()
                                  + "/left.htm\"><frame src=\"left.htm\"></frameset></html>";
        servers().writeWebFile(QStringLiteral("frames.htm"), frames);
        load(QStringLiteral("frames.htm"));
        HtmlDocument top = session.browser.Document();
        session.documents = {{top, false, false, QStringLiteral("/www/frames.htm")},
                             {top.frame(0), true, false, QStringLiteral("/www/left.htm")},
                             {top.frame(1), true, false, QStringLiteral("/www/right.htm")}};
    }
};

TEST_F(FramesetTest, NamesFramesNumbersTheNamelessAndSkipsAnotherOrigin)
{
    openFrameset();
    QList<HtmlDocument> documents;
    QStringList names;
    EXPECT_EQ(FrameList::GetFrameNames(session.documents, documents, names), 3);
    EXPECT_EQ(names, (QStringList{QStringLiteral("menu"), QStringLiteral("frame 1"), QStringLiteral("frame 2")}));
    EXPECT_EQ(MError::ErrorNumber(), 0) << MError::ErrorDescription().toStdString();
    ASSERT_EQ(documents.size(), 3);
    EXPECT_EQ(documents[1].body().innerText().trimmed(), QStringLiteral("right"));
    // The numbers are written into the page: a second listing keeps them.
    EXPECT_EQ(FrameList::GetFrameNames(session.documents, documents, names), 3);
    EXPECT_EQ(names[2], QStringLiteral("frame 2"));
}

TEST_F(FramesetTest, ComboChoosesTheFrameAndLightsTheHoveredOne)
{
    pageWithRevisions(QStringLiteral("right.htm"), {page("old right"), page("right")});
    openFrameset();
    ASSERT_EQ(pane.Open(), 1);
    EXPECT_FALSE(pane.cboFrameName->isHidden());
    EXPECT_EQ(pane.cboFrameName->count(), 3);
    EXPECT_EQ(pane.cboFrameName->currentIndex(), -1);
    EXPECT_EQ(pane.lstRollback->count(), 0);

    pane.ChooseFrame(1);
    ASSERT_EQ(pane.lstRollback->count(), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(pane.lstRollback->item(0)->data(Qt::UserRole).toLongLong(), 1);

    HtmlDocument right = session.browser.Document().frame(1);
    pane.HighlightFrame(1);
    EXPECT_EQ(pane.HighlightedFrame(), 1);
    EXPECT_FALSE(right.body().styleValue(QStringLiteral("filter")).isEmpty());
    pane.HighlightFrame(0);
    EXPECT_TRUE(right.body().styleValue(QStringLiteral("filter")).isEmpty());
    EXPECT_EQ(pane.HighlightedFrame(), 0);
    // Closing the list puts the light out.
    pane.show();
    pane.cboFrameName->showPopup();
    pane.cboFrameName->hidePopup();
    EXPECT_EQ(pane.HighlightedFrame(), -1);
    EXPECT_TRUE(session.browser.Document().frame(0).body().styleValue(QStringLiteral("filter")).isEmpty());
}

TEST_F(RevisionPaneTest, PageWithAnIFrameEntersAsMainframe)
{
    servers().writeWebFile(QStringLiteral("inner.htm"), page("inner"));
    servers().writeWebFile(QStringLiteral("host.htm"), "<html><body><iframe src=\"inner.htm\"></iframe></body></html>");
    pageWithRevisions(QStringLiteral("host.htm"),
                      {"<html><body>old</body></html>", "<html><body><iframe src=\"inner.htm\"></iframe></body></html>"});
    load(QStringLiteral("host.htm"));
    session.documents = {{session.browser.Document(), false, true, QStringLiteral("/www/host.htm")}};
    ASSERT_EQ(pane.Open(), 1);
    EXPECT_EQ(pane.FrameNames(), QStringList{QStringLiteral("Mainframe")});
    // The first entry stands for the page itself.
    pane.ChooseFrame(0);
    EXPECT_EQ(pane.lstRollback->count(), 1) << MError::ErrorDescription().toStdString();
}

} // namespace
