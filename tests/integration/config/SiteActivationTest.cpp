// Activation against the real servers: the index search finds the page, the
// web root and the folder for both shapes of account, wrong pairs say why
// and stay inactive, and no cut of the search leaves the site changed.

#include "DemoSite.h"
#include "TestServers.h"
#include "config/SiteActivation.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"
#include "transfer/IndexSearch.h"

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QTcpServer>
#include <QTimer>

#include <gtest/gtest.h>

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << text.toStdString();
}
QT_END_NAMESPACE

namespace {

TestServers &servers()
{
    return TestServers::shared();
}

// Every file under the FTP root, by path, with its bytes.
QMap<QString, QByteArray> snapshot()
{
    QMap<QString, QByteArray> files;
    const QString root = servers().ftpRoot();
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        file.open(QIODevice::ReadOnly);
        files.insert(it.filePath().mid(root.size()), file.readAll());
    }
    return files;
}

// A record as the settings dialog leaves it for an automatic activation.
SiteRecord newSite(const char *user, const char *password)
{
    SiteRecord site;
    site.baseaddress = servers().httpBase().toUpper().replace(QStringLiteral("HTTP://"), QString());
    site.baseurl = QStringLiteral("127.0.0.1:%1").arg(servers().ftpPort());
    site.userid = QString::fromLatin1(user);
    site.password = QString::fromLatin1(password);
    site.usesubindex = QStringLiteral("1");
    return site;
}

long activate(const SiteRecord &site)
{
    MGlobalProjectObjects::URLDATA = {site};
    MGlobalProjectObjects::lCurrentURL = 0;
    SiteActivation activation(0);
    return activation.Run();
}

// The paths whose bytes differ between two snapshots, or that only one has.
QStringList changes(const QMap<QString, QByteArray> &before, const QMap<QString, QByteArray> &after)
{
    QStringList paths;
    for (auto it = before.begin(); it != before.end(); ++it)
        if (after.value(it.key(), QByteArrayLiteral("\x01missing")) != it.value())
            paths.append(it.key());
    for (auto it = after.begin(); it != after.end(); ++it)
        if (!before.contains(it.key()))
            paths.append(it.key());
    return paths;
}

const SiteRecord &record()
{
    return MGlobalProjectObjects::URLDATA.front();
}

class SiteActivationTest : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        UserQuestions::Script({});
        m_before = snapshot();
    }
    void TearDown() override
    {
        servers().clearFtpFaults();
        UserQuestions::EndScript();
        MError::ClearError();
        EXPECT_EQ(changes(m_before, snapshot()), QStringList());
    }
    QMap<QString, QByteArray> m_before;
};

} // namespace

TEST_F(SiteActivationTest, AutomaticActivationFindsIndexRootAndFolderForBothAccounts)
{
    ASSERT_EQ(activate(newSite(TestServers::User, TestServers::Password)), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(record().isactive, QStringLiteral("1"));
    EXPECT_EQ(record().indexfile, QStringLiteral("index.htm"));
    EXPECT_EQ(record().ftproot, QStringLiteral("/www"));
    EXPECT_EQ(record().useremotef, QStringLiteral("0"));
    // The address is kept with its scheme and a host in lower case.
    EXPECT_EQ(record().baseaddress, servers().httpBase());
    EXPECT_EQ(record().baseurl, QStringLiteral("ftp://127.0.0.1:%1").arg(servers().ftpPort()));

    ASSERT_EQ(activate(newSite(TestServers::WebUser, TestServers::WebPassword)), 1)
        << MError::ErrorDescription().toStdString();
    EXPECT_EQ(record().indexfile, QStringLiteral("index.htm"));
    EXPECT_EQ(record().ftproot, QStringLiteral("/"));
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());
}

// Over explicit TLS the certificate the system does not vouch for is shown
// once and, trusted, kept with the site.
TEST_F(SiteActivationTest, ProtectedConnectionAsksForTheCertificateOnceAndKeepsIt)
{
    SiteRecord site = newSite(TestServers::User, TestServers::Password);
    site.baseurl = QStringLiteral("ftpes://127.0.0.1:%1").arg(servers().ftpsPort());
    UserQuestions::Script({UserQuestions::vbYes});
    ASSERT_EQ(activate(site), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_FALSE(record().tlskeypin.isEmpty());
    EXPECT_EQ(record().ftproot, QStringLiteral("/www"));
}

TEST_F(SiteActivationTest, ManualIndexFileIsProvedBySendTestOrRefusedWithItsMessage)
{
    SiteRecord site = newSite(TestServers::User, TestServers::Password);
    site.usesubindex = QStringLiteral("0");
    site.ftproot = QStringLiteral("/www");
    site.indexfile = QStringLiteral("index.htm");
    EXPECT_EQ(activate(site), 1) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(record().isactive, QStringLiteral("1"));

    site.indexfile = QStringLiteral("welcome.htm");
    EXPECT_EQ(activate(site), 0);
    EXPECT_EQ(MError::ErrorDescription(), MResources::LoadResourceString(15602));
    EXPECT_EQ(record().isactive, QStringLiteral("0"));

    // A page the web server gives by name but not for the bare address.
    site.indexfile = QStringLiteral("frame1.htm");
    MError::ClearError();
    EXPECT_EQ(activate(site), 0);
    EXPECT_EQ(MError::ErrorNumber(), -20999);
}

TEST_F(SiteActivationTest, WrongPairsSayWhyAndStayInactive)
{
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    const quint16 closedPort = closed.serverPort();
    closed.close();

    struct Case { const char *name; SiteRecord site; QString text; };
    SiteRecord password = newSite(TestServers::User, "wrong");
    SiteRecord host = newSite(TestServers::User, TestServers::Password);
    host.baseurl = QStringLiteral("ftp://no-such-host.invalid");
    SiteRecord refused = newSite(TestServers::User, TestServers::Password);
    refused.baseurl = QStringLiteral("127.0.0.1:%1").arg(closedPort);
    const QList<Case> cases = {
        {"password", password, MResources::LoadResourceString(14607)},
        {"host", host, MResources::LoadResourceString(14606)},
        {"refused", refused, MResources::LoadResourceString(14613) + QStringLiteral("ftp://127.0.0.1:%1).").arg(closedPort)},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        MError::ClearError();
        EXPECT_EQ(activate(c.site), 0);
        EXPECT_EQ(MError::ErrorDescription(), c.text);
        EXPECT_EQ(record().isactive, QStringLiteral("0"));
    }

    // An HTTP address that serves other files than the account's.
    SiteRecord other = newSite(TestServers::User, TestServers::Password);
    other.baseaddress = servers().otherBase();
    MError::ClearError();
    EXPECT_EQ(activate(other), 0);
    EXPECT_EQ(MError::ErrorDescription(), MResources::LoadResourceString(14605) + servers().otherBase()
                                              + MResources::LoadResourceString(14626));
    EXPECT_EQ(record().isactive, QStringLiteral("0"));
}

// A web root the account may not write: its pages are never touched, and
// the search ends with nothing found.
TEST_F(SiteActivationTest, ReadOnlyWebRootIsSkippedAndNothingIsFound)
{
    servers().setFtpFaults(QJsonObject{{QStringLiteral("readonly"), QJsonArray{QStringLiteral("www")}}});
    EXPECT_EQ(activate(newSite(TestServers::User, TestServers::Password)), SiteActivation::NotFound)
        << MError::ErrorDescription().toStdString();
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_EQ(UserQuestions::ShownSoFar().front().text, MResources::LoadResourceString(14609));
    EXPECT_EQ(record().isactive, QStringLiteral("0"));
}

// A folder's own page is found by its content and given back as it was;
// an empty site gets one first page, and a site with one keeps it.
TEST_F(SiteActivationTest, FolderPageIsFoundAndAnEmptySiteGetsExactlyOneFirstPage)
{
    MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers())};
    MGlobalProjectObjects::lCurrentURL = 0;
    CFTPS client;
    QString index;
    EXPECT_EQ(client.GetSpecificIndexFile(QStringLiteral("/www/products/"), index), 1)
        << MError::ErrorDescription().toStdString();
    EXPECT_EQ(index, QStringLiteral("index.htm"));

    QString root;
    EXPECT_EQ(client.CreateIndexFile(index, root), 1);
    EXPECT_EQ(changes(m_before, snapshot()), QStringList()); // the page that stands is kept

    const QString page = servers().webRoot() + QStringLiteral("/index.htm");
    QFile::rename(page, page + QStringLiteral(".away"));
    ASSERT_EQ(client.CreateIndexFile(index, root), 1) << MError::ErrorDescription().toStdString();
    client.CloseDown();
    EXPECT_EQ(index, QStringLiteral("index.htm"));
    EXPECT_EQ(root, QStringLiteral("/www"));
    EXPECT_EQ(changes(m_before, snapshot()), QStringList({QStringLiteral("/www/index.htm"),
                                                          QStringLiteral("/www/index.htm.away")}));
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("index.htm")).contains("Welcome to 127.0.0.1"));
    QFile::remove(page);
    QFile::rename(page + QStringLiteral(".away"), page);
}

// The connection dropped before each command of the search in turn: the
// page goes back at once, or the next search finds what was left and the
// resume puts it back.
TEST_F(SiteActivationTest, SearchCutAtEveryCommandLeavesTheSiteOrOffersTheResume)
{
    MGlobalProjectObjects::URLDATA = {newSite(TestServers::User, TestServers::Password)};
    MGlobalProjectObjects::lCurrentURL = 0;
    CFTPS::g_boolCancelActivation = false;
    servers().clearFtpLog();
    {
        CFTPS clean;
        QString index, root, folder;
        ASSERT_EQ(clean.GetIndexFile(index, root, folder), 1);
        clean.CloseDown();
    }
    const int commands = servers().ftpLog().size();
    ASSERT_GT(commands, 5);
    // Before a command, and after a command that ran but whose reply was lost.
    for (const char *fault : {"drop_before_n", "drop_after_n"}) {
        for (int n = 1; n <= commands; ++n) {
            SCOPED_TRACE(std::string(fault) + std::to_string(n));
            MError::ClearError();
            servers().setFtpFaults(QJsonObject{{QString::fromLatin1(fault), n}});
            QString index, root, folder;
            {
                CFTPS cut;
                cut.GetIndexFile(index, root, folder);
                cut.CloseDown();
            }
            servers().clearFtpFaults();
            MError::ClearError();
            if (changes(m_before, snapshot()).isEmpty())
                continue;
            SCOPED_TRACE(changes(m_before, snapshot()).join(QLatin1Char(' ')).toStdString());
            CFTPS next;
            ASSERT_EQ(next.GetIndexFile(index, root, folder), -2);
            ASSERT_EQ(next.RestoreIndex(), 1) << MError::ErrorDescription().toStdString();
            next.CloseDown();
            ASSERT_EQ(changes(m_before, snapshot()), QStringList());
        }
    }
}

// A Cancel at each step of a run over a slow link ends it there, with the
// site as it was and the record inactive.
TEST_F(SiteActivationTest, CancelAtEveryStepOfASlowRunEndsItThere)
{
    servers().setFtpFaults(QJsonObject{{QStringLiteral("delay_ms"), 20}});
    for (long step : {14636L, 14632L, 14633L, 14634L}) {
        SCOPED_TRACE(step);
        UserQuestions::Script({});
        MGlobalProjectObjects::URLDATA = {newSite(TestServers::User, TestServers::Password)};
        SiteActivation activation(0);
        activation.onProgress = [&](const QString &text) {
            if (text == MResources::LoadResourceString(step))
                activation.Cancel();
        };
        EXPECT_EQ(activation.Run(), SiteActivation::Cancelled) << MError::ErrorDescription().toStdString();
        EXPECT_EQ(record().isactive, QStringLiteral("0"));
        ASSERT_FALSE(UserQuestions::ShownSoFar().isEmpty());
        EXPECT_EQ(UserQuestions::ShownSoFar().back().text, MResources::LoadResourceString(14628));
        EXPECT_EQ(changes(m_before, snapshot()), QStringList());
    }
}

TEST_F(SiteActivationTest, ResumeQuestionAndCancelPutThePageBack)
{
    // A search cut for good between its renames: the page stands aside.
    const QByteArray index = servers().readWebFile(QStringLiteral("index.htm"));
    QFile::rename(servers().webRoot() + QStringLiteral("/index.htm"),
                  servers().webRoot() + QLatin1Char('/') + IndexSearch::BackupName(QStringLiteral("index.htm"), QStringLiteral("23120000")));
    servers().writeWebFile(QStringLiteral("index.htm"), "<html>search page</html>");
    UserQuestions::Script({UserQuestions::vbYes});
    EXPECT_EQ(activate(newSite(TestServers::User, TestServers::Password)), 1);
    EXPECT_EQ(UserQuestions::ShownSoFar().front().text, MResources::LoadResourceString(14610));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("index.htm")), index);

    // Cancel as soon as a page stands aside.
    UserQuestions::Script({});
    MGlobalProjectObjects::URLDATA = {newSite(TestServers::User, TestServers::Password)};
    SiteActivation activation(0);
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        const QStringList aside = QDir(servers().webRoot()).entryList({QStringLiteral("*_p_sec")});
        if (!aside.isEmpty()) {
            watch.stop();
            activation.Cancel();
        }
    });
    watch.start(1);
    EXPECT_EQ(activation.Run(), SiteActivation::Cancelled) << MError::ErrorDescription().toStdString();
    EXPECT_EQ(UserQuestions::ShownSoFar().back().text, MResources::LoadResourceString(14628));
    EXPECT_EQ(record().isactive, QStringLiteral("0"));
}
