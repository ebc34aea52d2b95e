// Closing the main window with a session open or a step under way, and the
// wait's Cancel while the FTP server answers slowly: the live site is left
// whole whatever the user does, and unsaved work is never dropped unasked.

#include "SessionWindow.h"
#include "support/MWait.h"
#include "support/frmWait.h"

#include <QDir>
#include <QEvent>
#include <QJsonObject>
#include <QTimer>

#include <functional>

using namespace session_test;

namespace {

const QString kSaveQuestion = QStringLiteral("You have made changes to the document.");
const QString kAborted = QStringLiteral("The editing has been aborted.");
const QString kSaveCancelled = QStringLiteral("The save was cancelled.");
// Every reply of the FTP server comes this late, so that the step the test
// acts on is still under way when it acts.
constexpr int kSlowReplyMs = 150;
constexpr int kDeadlineMs = 60000;

bool onServer(const QString &relativePath)
{
    return QFile::exists(servers().webRoot() + QLatin1Char('/') + relativePath);
}

// Whether the FTP server has received a command whose argument ends so
// and holds the given part.
bool received(const QString &command, const QString &argumentEnd, const QString &part = QString())
{
    for (const FtpLogEntry &entry : servers().ftpLog())
        if (entry.command == command && entry.argument.endsWith(argumentEnd) && entry.argument.contains(part))
            return true;
    return false;
}

int commandsFrom(int first, const QString &command)
{
    const QList<FtpLogEntry> log = servers().ftpLog();
    int n = 0;
    for (int i = first; i < log.size(); ++i)
        n += log[i].command == command ? 1 : 0;
    return n;
}

// Acts once, from inside the nested loops of a press, as soon as the wait
// dialog stands and the condition holds.
class ActDuringWait
{
public:
    ActDuringWait(std::function<bool()> when, std::function<void()> act)
        : m_when(std::move(when))
        , m_act(std::move(act))
    {
        QObject::connect(&m_poll, &QTimer::timeout, [this] {
            if (!MWait::Current() || !MWait::Current()->isVisible() || !m_when())
                return;
            m_poll.stop();
            m_logAtAct = servers().ftpLog().size();
            m_act();
        });
        m_poll.start(5);
    }
    bool acted() const { return m_logAtAct >= 0; }
    int logAtAct() const { return m_logAtAct; }

private:
    QTimer m_poll;
    std::function<bool()> m_when;
    std::function<void()> m_act;
    int m_logAtAct = -1;
};

// What stood when the window went away.
class HideWatch : public QObject
{
public:
    HideWatch(frmVindrell &form, QString page)
        : m_form(form)
        , m_page(std::move(page))
    {
        form.installEventFilter(this);
    }
    bool hidden = false;
    bool sessionRunningAtHide = false;
    QByteArray pageAtHide;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == &m_form && event->type() == QEvent::Hide && !hidden) {
            hidden = true;
            sessionRunningAtHide = m_form.Session().Running();
            pageAtHide = servers().readWebFile(m_page);
        }
        return false;
    }

private:
    frmVindrell &m_form;
    QString m_page;
};

class CloseAndCancelGui : public SessionTest
{
};

} // namespace

// Changes are asked about: Cancel keeps the window and the session as they
// were, Don't save ends the session and closes, Save saves and closes. A
// session without changes closes without a question.
TEST_F(CloseAndCancelGui, CloseAsksAboutChangesAndLeavesTheServerWhole)
{
    const QByteArray original = servers().readWebFile(QStringLiteral("asp/layout.asp"));
    servers().writeWebFile(QStringLiteral("close/layout.asp"), original);
    servers().writeWebFile(QStringLiteral("close/plain.htm"), plainPage("old"));
    UserQuestions::Script({OK, UserQuestions::vbCancel, UserQuestions::vbNo, OK, OK, UserQuestions::vbYes});
    {
        Window w;
        ASSERT_TRUE(w.editAndType(QStringLiteral("close/layout.asp"), QStringLiteral("text"), QStringLiteral("zq")));
        EXPECT_FALSE(w.form.close());
        EXPECT_EQ(countStartingWith(shownTexts(), kSaveQuestion), 1);
        EXPECT_TRUE(w.form.isVisible());
        EXPECT_TRUE(w.editing());
        EXPECT_TRUE(w.form.SaveButton()->isEnabled());
        EXPECT_EQ(w.page().designMode(), QStringLiteral("On"));
        EXPECT_EQ(w.page().getElementById(QStringLiteral("text")).innerText(), QStringLiteral("zq"));

        EXPECT_TRUE(w.form.close());
        EXPECT_EQ(countStartingWith(shownTexts(), kSaveQuestion), 2);
        EXPECT_FALSE(w.form.isVisible());
        EXPECT_FALSE(w.editing());
        EXPECT_EQ(servers().readWebFile(QStringLiteral("close/layout.asp")), original);
        EXPECT_FALSE(onServer(QStringLiteral("close/layout.keldabak")));
    }
    {
        Window w;
        ASSERT_TRUE(w.edit(QStringLiteral("close/plain.htm")));
        EXPECT_TRUE(w.form.close());
        EXPECT_EQ(countStartingWith(shownTexts(), kSaveQuestion), 2);
        EXPECT_FALSE(w.editing());
    }
    {
        Window w;
        ASSERT_TRUE(w.editAndType(QStringLiteral("close/plain.htm"), QStringLiteral("text"), QStringLiteral("qz")));
        EXPECT_TRUE(w.form.close());
        EXPECT_EQ(countStartingWith(shownTexts(), kSaveQuestion), 3);
        EXPECT_FALSE(w.form.isVisible());
        EXPECT_TRUE(servers().readWebFile(QStringLiteral("close/plain.htm")).contains(">qz</"));
    }
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    EXPECT_EQ(UserQuestions::Unanswered(), 0);
}

// A close, or the wait's Cancel, while the entry waits on a slow server:
// the call under way ends at once (the entry goes no further: nothing is
// uploaded after it), the marked page goes back, and only then does the
// window close. Nothing is said about the errors the cut call gave.
TEST_F(CloseAndCancelGui, CloseOrCancelDuringASlowEntryEndsItAndLeavesNoMarkedPage)
{
    const QByteArray original = servers().readWebFile(QStringLiteral("asp/layout.asp"));
    const QString page = QStringLiteral("slow/layout.asp");
    const std::function<bool()> readingThePage = [] {
        return received(QStringLiteral("RETR"), QStringLiteral("layout.asp"));
    };
    const std::function<bool()> markedOnTheServer = [page] {
        return servers().readWebFile(page).contains("keldaspIN#");
    };
    struct Case
    {
        bool close;
        std::function<bool()> when;
        bool cutBeforeUpload;
    };
    const Case cases[] = {
        {true, readingThePage, true}, {true, markedOnTheServer, false}, {false, readingThePage, true}};
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << "close " << c.close << " while reading " << c.cutBeforeUpload);
        servers().writeWebFile(page, original);
        UserQuestions::Script({OK, OK});
        Window w;
        w.open(page);
        HideWatch watch(w.form, page);
        servers().clearFtpLog();
        servers().setFtpFaults(QJsonObject{{QStringLiteral("delay_ms"), kSlowReplyMs}});
        bool closeRefused = false;
        ActDuringWait act(c.when, [&] {
            if (c.close) {
                closeRefused = !w.form.close();
                closeRefused = closeRefused && w.form.isVisible();
            } else {
                MWait::Current()->CancelButton()->click();
            }
        });
        w.pressEdit();
        ASSERT_TRUE(act.acted());
        if (c.close) {
            EXPECT_TRUE(closeRefused);
            ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return watch.hidden; }, kDeadlineMs));
            EXPECT_FALSE(watch.sessionRunningAtHide);
            EXPECT_EQ(watch.pageAtHide, original);
            EXPECT_EQ(countStartingWith(shownTexts(), kAborted), 0);
        } else {
            EXPECT_TRUE(w.form.isVisible());
            EXPECT_EQ(countStartingWith(shownTexts(), kAborted), 1);
            EXPECT_TRUE(w.addressRowEnabled());
            EXPECT_TRUE(w.form.EditButton()->isEnabled());
        }
        servers().clearFtpFaults();
        if (c.cutBeforeUpload) {
            EXPECT_EQ(commandsFrom(act.logAtAct(), QStringLiteral("STOR")), 0);
        }
        EXPECT_FALSE(w.editing());
        EXPECT_EQ(servers().readWebFile(page), original);
        EXPECT_FALSE(onServer(QStringLiteral("slow/layout.keldabak")));
        EXPECT_EQ(MWait::Current(), nullptr);
        EXPECT_EQ(errorDialogs(), 0) << firstError();
    }
}

// Cancel while the new page goes up, or between the renames that put it in
// place, or a close then: the save stops, the server holds the page whole
// (old or new, never a part or nothing), the user is told, and the session
// stands for another Save. After a close the changes are asked about, and
// Don't save closes the window.
TEST_F(CloseAndCancelGui, CancelOrCloseDuringASlowSaveLeavesThePageWholeAndTheSessionOpen)
{
    const QString page = QStringLiteral("slowsave/page.htm");
    // The page's own steps, not those of its revision, which go first.
    const std::function<bool()> uploading = [] {
        return received(QStringLiteral("STOR"), QStringLiteral(".kelda-new"), QStringLiteral("page.htm."));
    };
    const std::function<bool()> renaming = [] {
        return received(QStringLiteral("RNFR"), QStringLiteral(".kelda-new"), QStringLiteral("page.htm."));
    };
    struct Case
    {
        bool close;
        std::function<bool()> when;
    };
    const Case cases[] = {{false, uploading}, {false, renaming}, {true, uploading}};
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << "close " << c.close);
        servers().writeWebFile(page, plainPage("old"));
        // No CMS file at Edit, the report of the cancelled save, and after a
        // close the question about the changes.
        UserQuestions::Script({OK, OK, UserQuestions::vbNo});
        Window w;
        HideWatch watch(w.form, page);
        ASSERT_TRUE(w.editAndType(page, QStringLiteral("text"), QStringLiteral("zq")));
        servers().clearFtpLog();
        servers().setFtpFaults(QJsonObject{{QStringLiteral("delay_ms"), kSlowReplyMs}});
        bool closeRefused = false;
        ActDuringWait act(c.when, [&] {
            if (c.close)
                closeRefused = !w.form.close();
            else
                MWait::Current()->CancelButton()->click();
        });
        w.pressSave();
        ASSERT_TRUE(act.acted());
        if (c.close) {
            EXPECT_TRUE(closeRefused);
            ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return watch.hidden; }, kDeadlineMs));
        }
        servers().clearFtpFaults();

        EXPECT_EQ(errorDialogs() + countStartingWith(shownTexts(), kSaveCancelled), 1)
            << shownTexts().join(QStringLiteral(" | ")).toStdString();
        ASSERT_TRUE(onServer(page));
        const QByteArray whole = servers().readWebFile(page);
        EXPECT_TRUE(whole == plainPage("old")
                    || (whole.contains(">zq</") && whole.trimmed().toUpper().endsWith("</HTML>")))
            << whole.toStdString();
        const QStringList left = QDir(servers().webRoot() + QStringLiteral("/slowsave")).entryList(QDir::Files);
        EXPECT_EQ(left, QStringList{QStringLiteral("page.htm")});
        if (c.close) {
            EXPECT_FALSE(watch.sessionRunningAtHide);
            EXPECT_EQ(countStartingWith(shownTexts(), kSaveQuestion), 1);
            EXPECT_FALSE(w.editing());
            continue;
        }
        EXPECT_TRUE(w.form.isVisible());
        EXPECT_TRUE(w.editing());
        EXPECT_TRUE(w.form.SaveButton()->isEnabled());
        EXPECT_EQ(w.page().getElementById(QStringLiteral("text")).innerText(), QStringLiteral("zq"));
        EXPECT_EQ(MWait::Current(), nullptr);

        // The next save goes through, and its end is no aborted editing.
        w.pressSave();
        EXPECT_FALSE(w.editing());
        EXPECT_TRUE(servers().readWebFile(page).contains(">zq</"));
        EXPECT_EQ(countStartingWith(shownTexts(), kAborted), 0);
        EXPECT_EQ(errorDialogs() + countStartingWith(shownTexts(), kSaveCancelled), 1) << firstError();
    }
}
