// The start of the main window against a real web server: the home page,
// the question about a new version, and a close that asks nothing.

#include "ProxyServers.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "config/frmMessageBoxYesNoOnce.h"
#include "platform/CReg.h"
#include "platform/PageScriptCall.h"
#include "shell/RevisionPane.h"
#include "shell/frmVindrell.h"
#include "support/ErrorLog.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QCheckBox>
#include <QEventLoop>
#include <QFile>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QWebEngineView>

#include <gtest/gtest.h>

namespace {
const QString kVersionFile = QStringLiteral("_vindrellver/vindrellveradmin.txt");

bool waitForLoad(QWebEngineView *view)
{
    QEventLoop loop;
    bool ok = false;
    QObject::connect(view, &QWebEngineView::loadFinished, &loop, [&](bool finished) {
        ok = finished;
        loop.quit();
    });
    QTimer::singleShot(30000, &loop, &QEventLoop::quit);
    loop.exec();
    return ok;
}

class StartupGuiTest : public ::testing::Test
{
protected:
    TestServers &servers = TestServers::shared();

    void SetUp() override
    {
        QFile::remove(CReg::StorePath());
        QFile::remove(ErrorLog::Path());
        CReg::Reload();
        CReg browser;
        browser.Subkey = QStringLiteral("Browser");
        browser.SetRegistryValue(QStringLiteral("HomePage"), home(), CReg::REG_SZ);
        frmVindrell::g_boolVersionChecked = false;
    }
    void TearDown() override { UserQuestions::EndScript(); }

    QString home() const { return servers.httpBase() + QStringLiteral("/index.htm"); }

    void announce(const QByteArray &version)
    {
        CReg::SaveSetting(QStringLiteral("settings"), QStringLiteral("versionserver"), servers.httpBase());
        servers.writeWebFile(kVersionFile, version);
    }

    // Starts a window as the program does, for a second time in the same
    // process as well: true when, once the version request in the
    // background is over, the window shows the address.
    bool startsOn(const QString &address)
    {
        frmVindrell::g_boolVersionChecked = false;
        frmVindrell window;
        window.show();
        WebBrowser *ie = window.browser();
        const bool shown = PageScriptCall::pumpUntil([&] {
            return !window.VersionCheckPending() && ie->url().toString() == address
                   && ie->ReadyState() == WebBrowser::ReadyStateComplete;
        }, 30000);
        EXPECT_TRUE(window.close());
        return shown;
    }
};

// Answers the real question as a user would: ticks "don't show again",
// presses No, and keeps the text it was asked.
class TickAndSayNo
{
public:
    TickAndSayNo()
    {
        QObject::connect(&m_poll, &QTimer::timeout, [this] { act(); });
        m_poll.start(20);
    }
    QString asked;

private:
    void act()
    {
        for (QWidget *w : QApplication::topLevelWidgets()) {
            auto *form = qobject_cast<frmMessageBoxYesNoOnce *>(w);
            if (!form || !form->isVisible())
                continue;
            m_poll.stop();
            asked = form->findChild<QLabel *>()->text();
            form->ChkShowOnlyOnce()->click();
            for (QPushButton *b : form->findChildren<QPushButton *>())
                if (b->text() == QStringLiteral("No"))
                    b->click();
        }
    }
    QTimer m_poll;
};
} // namespace

TEST_F(StartupGuiTest, OpensOnTheHomePageWithItsBandAndClosesWithoutAQuestion)
{
    // A version is there to be found, but no version server is set.
    servers.writeWebFile(kVersionFile, "99.0");
    UserQuestions::Script({});
    frmVindrell window;
    ASSERT_TRUE(window.Loaded());
    EXPECT_EQ(window.windowTitle(), QStringLiteral("VindrellCMS"));
    window.show();
    ASSERT_TRUE(waitForLoad(window.browser()));
    EXPECT_EQ(window.browser()->url().toString(), home());

    auto *edit = window.findChild<QPushButton *>(QStringLiteral("cmdEdit"));
    auto *save = window.findChild<QPushButton *>(QStringLiteral("cmdSave"));
    ASSERT_TRUE(edit && save);
    EXPECT_EQ(edit->text(), QStringLiteral("Edit"));
    EXPECT_TRUE(edit->isEnabled());
    EXPECT_EQ(save->text(), QStringLiteral("Save"));
    EXPECT_FALSE(save->isEnabled());
    EXPECT_LT(edit->mapTo(&window, QPoint()).y(), save->mapTo(&window, QPoint()).y());

    EXPECT_TRUE(window.close());
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());
    EXPECT_FALSE(QFile::exists(ErrorLog::Path()));
}

TEST_F(StartupGuiTest, NewVersionIsAskedOncePerAnnouncedVersion)
{
    announce("0.90\r\n");
    {
        TickAndSayNo user;
        EXPECT_TRUE(startsOn(home()));
        EXPECT_TRUE(user.asked.contains(QStringLiteral("The latest version is 0.90 Would you like to get it?")))
            << user.asked.toStdString();
    }
    UserQuestions::Script({});
    EXPECT_TRUE(startsOn(home()));
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());

    announce("0.91");
    UserQuestions::Script({UserQuestions::vbNo});
    EXPECT_TRUE(startsOn(home()));
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_TRUE(UserQuestions::ShownSoFar().at(0).text.contains(QStringLiteral("0.91")));
}

// The version is asked for once the window stands, and a server that keeps
// its answer back holds neither the start nor the window; a close while it
// does ends the request.
TEST_F(StartupGuiTest, TheCheckRunsOnceTheWindowStandsAndNeverHoldsIt)
{
    announce("0.97");
    servers.setHttpBehaviour(QJsonObject{{QStringLiteral("delay_ms"), 4000}});
    UserQuestions::Script({UserQuestions::vbNo});
    {
        frmVindrell window;
        EXPECT_FALSE(window.VersionCheckPending());
        window.show();
        EXPECT_TRUE(window.VersionCheckPending());
        window.findChild<QPushButton *>(QStringLiteral("cmdPane3"))->click();
        EXPECT_TRUE(window.revisionPane()->isVisible());
        EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());
        EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return !window.VersionCheckPending(); }, 30000));
        ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
        EXPECT_TRUE(UserQuestions::ShownSoFar().at(0).text.contains(QStringLiteral("0.97")));
    }
    frmVindrell::g_boolVersionChecked = false;
    {
        frmVindrell window;
        window.show();
        EXPECT_TRUE(window.VersionCheckPending());
    }
    servers.clearHttpBehaviour();
    EXPECT_EQ(UserQuestions::ShownSoFar().size(), 1);
}

TEST_F(StartupGuiTest, YesToTheDownloadOpensTheDownloadPageInsteadOfTheHomePage)
{
    announce("0.95");
    servers.writeWebFile(QStringLiteral("download.htm"), "<html><title>Get it</title></html>");
    UserQuestions::Script({UserQuestions::vbYes});
    EXPECT_TRUE(startsOn(servers.httpBase() + QStringLiteral("/download.htm")));
    EXPECT_EQ(UserQuestions::ShownSoFar().size(), 1);
}

TEST_F(StartupGuiTest, AFailedCheckIsLoggedAndTheStartGoesOn)
{
    // Nothing listens on port 1; then a server whose file is no version.
    CReg::SaveSetting(QStringLiteral("settings"), QStringLiteral("versionserver"), QStringLiteral("http://127.0.0.1:1"));
    UserQuestions::Script({});
    EXPECT_TRUE(startsOn(home()));
    announce("2");
    EXPECT_TRUE(startsOn(home()));
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());

    bool exists = false;
    const QStringList lines = ErrorLog::Take(exists).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    for (const QString &line : lines)
        EXPECT_TRUE(line.trimmed().endsWith(QStringLiteral(", frmVindrell.checkForNewVersions")))
            << line.toStdString();
}

TEST_F(StartupGuiTest, EditOnAPageOfNoActiveSiteOffersEvenTheOnlyActiveSite)
{
    UserQuestions::Script({});
    frmVindrell window;
    window.show();
    ASSERT_TRUE(waitForLoad(window.browser()));
    auto *edit = window.findChild<QPushButton *>(QStringLiteral("cmdEdit"));
    // The one active site lies in a folder of the server; the home page is
    // outside it.
    SiteRecord products;
    products.baseaddress = servers.httpBase() + QStringLiteral("/products/");
    products.isactive = QStringLiteral("1");
    MGlobalProjectObjects::URLDATA = {products};

    UserQuestions::Script({0});
    edit->click();
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_EQ(UserQuestions::ShownSoFar().at(0).kind, QStringLiteral("frmChooseSiteToEdit"));
    EXPECT_FALSE(edit->isChecked());
    ASSERT_TRUE(waitForLoad(window.browser()));
    EXPECT_EQ(window.browser()->url().toString(), products.baseaddress);

    // On a page of the active site the chooser is not offered: the edit
    // session starts (and, as this record has no FTP account, goes no
    // further than its first transfer).
    UserQuestions::Script({});
    edit->click();
    for (const UserQuestions::Shown &shown : UserQuestions::ShownSoFar())
        EXPECT_NE(shown.kind, QStringLiteral("frmChooseSiteToEdit"));
    EXPECT_FALSE(edit->isChecked());
    MGlobalProjectObjects::URLDATA.clear();
    EXPECT_TRUE(window.close());
}

TEST_F(StartupGuiTest, TheCheckGoesThroughTheProxyWithItsPassword)
{
    UserQuestions::Script({});
    frmVindrell window;
    ProxyServers proxies(true);
    ProxySettings &proxy = MGlobalProjectObjects::Proxy;
    proxy.use = true;
    proxy.serverHTTPname = QStringLiteral("127.0.0.1");
    proxy.serverHTTPPort = QString::number(proxies.httpPort());
    proxy.useHTTPpassword = true;
    proxy.serverHTTPUser = QString::fromLatin1(ProxyServers::ProxyUser);
    proxy.serverHTTPPassword = QString::fromLatin1(ProxyServers::ProxyPassword);
    announce("0.99");

    UserQuestions::Script({UserQuestions::vbYes});
    long answer = 0;
    EXPECT_EQ(window.checkForNewVersions(answer), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(answer, UserQuestions::vbYes);
    EXPECT_TRUE(proxies.httpLog().contains(kVersionFile));
    proxy = ProxySettings();
    MError::ClearError();
}
