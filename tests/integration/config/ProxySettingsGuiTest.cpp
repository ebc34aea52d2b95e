// The proxy dialog as a user drives it, against real proxies: its values
// through the settings dialog into the store and back, its two test
// buttons passing and failing with the reason, and "Get" reading the
// environment and a PAC script and proving what it found.

#include "CachingProxy.h"
#include "DemoSite.h"
#include "FormDriver.h"
#include "ModalDriver.h"
#include "ProxyServers.h"
#include "Socks4Proxy.h"
#include "TestServers.h"
#include "config/CPublicSettings.h"
#include "config/frmProxySettings.h"
#include "config/frmSettingsEx.h"
#include "platform/CReg.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QNetworkProxy>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace {

using namespace form_driver;

using G = MGlobalProjectObjects;

TestServers &servers()
{
    return TestServers::shared();
}

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// A radio button takes a click on its circle, not beside its text.
void choose(QWidget *form, const char *name)
{
    auto *option = child<QRadioButton>(form, name);
    QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
}

void check(QWidget *form, const char *name, bool on)
{
    auto *box = child<QCheckBox>(form, name);
    if (box->isChecked() != on)
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
}

QString text(QWidget *form, const char *name)
{
    return child<QLineEdit>(form, name)->text();
}

// The texts of the message boxes shown since the mark.
QStringList shownSince(qsizetype mark)
{
    QStringList texts;
    const QList<UserQuestions::Shown> shown = UserQuestions::ShownSoFar();
    for (qsizetype n = mark; n < shown.size(); ++n)
        texts << shown.at(n).text;
    return texts;
}

qsizetype mark()
{
    return UserQuestions::ShownSoFar().size();
}

const char *const kProxyVariables[] = {"http_proxy", "https_proxy", "ftp_proxy", "all_proxy", "no_proxy",
                                       "HTTP_PROXY", "HTTPS_PROXY", "FTP_PROXY", "ALL_PROXY", "NO_PROXY"};

class ProxySettingsGui : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char *name : kProxyVariables)
            qunsetenv(name);
        MResources::InitLangSupport();
        MError::ClearError();
        G::Proxy = ProxySettings();
        UserQuestions::Script({});
    }
    void TearDown() override
    {
        for (const char *name : kProxyVariables)
            qunsetenv(name);
        UserQuestions::EndScript();
        G::Proxy = ProxySettings();
        G::ApplyEngineProxy();
    }

    // The dialog on the fixture's site, as the settings dialog opens it.
    static void aimAtSite(frmProxySettings &form)
    {
        form.SetTestTargets(servers().httpBase() + QStringLiteral("/index.htm"),
                            QStringLiteral("127.0.0.1:%1").arg(servers().ftpPort()),
                            QString::fromLatin1(TestServers::User), QString::fromLatin1(TestServers::Password));
        form.show();
    }

    // Runs a test button and gives the result's text.
    static QString testResult(QWidget *form, const char *button)
    {
        const qsizetype before = mark();
        click(form, button);
        const QStringList texts = shownSince(before);
        return texts.isEmpty() ? QString() : texts.last();
    }

    static void setFtpProxy(QWidget *form, const char *option, quint16 port)
    {
        check(form, "chkUseProxyFTP", true);
        type(form, "txtProxySOCKSAddress", QStringLiteral("127.0.0.1"));
        type(form, "txtProxySOCKSPort", QString::number(port));
        choose(form, option);
    }
};

} // namespace

// OK refuses a proxy without its port and keeps the dialog open; what OK
// takes reaches the store when the settings dialog applies, comes back
// from it whole (the two values the dialog doesn't show too), fills the
// dialog again, and points the page engine at the HTTP proxy.
TEST_F(ProxySettingsGui, TheValuesGoThroughTheSettingsDialogIntoTheStoreAndBack)
{
    QFile::remove(CReg::StorePath());
    CReg::Reload();
    G::URLDATA = {demoSiteRecord(servers())};
    G::Proxy.serverFTPname = QStringLiteral("ftpgate.example");
    G::Proxy.serverFTPPort = QStringLiteral("2121");
    frmSettingsEx settings;
    settings.show();
    auto *tree = child<QTreeWidget>(&settings, "TreeView1");
    tree->setCurrentItem(tree->topLevelItem(0)->child(0));
    click(&settings, "cmdShowAdvanced");

    ModalDriver hands(QStringLiteral("frmProxySettings"), [](QWidget *d) {
        check(d, "chkUseProxy", true);
        type(d, "txtProxyHTTPAddress", QStringLiteral("webproxy.example"));
        const qsizetype before = mark();
        click(d, "cmdClose");
        EXPECT_EQ(shownSince(before), QStringList{L(15046)});
        EXPECT_FALSE(child<QCheckBox>(d, "chkUseProxy")->isChecked());
        EXPECT_TRUE(d->isVisible());
        EXPECT_EQ(G::Proxy.serverHTTPname, QStringLiteral("webproxy.example"));
        type(d, "txtProxyHTTPPort", QStringLiteral("3128"));
        check(d, "chkUseProxy", true);
        check(d, "chkUseHTTPProxyPassword", true);
        type(d, "txtHTTPProxyUserID", QStringLiteral("anna"));
        type(d, "txtHTTPProxyPassword", QStringLiteral("web secret"));
        setFtpProxy(d, "optTunnel", 8080);
        check(d, "chkUseSOCKSPassword", true);
        type(d, "txtUserID", QStringLiteral("bo"));
        type(d, "txtPassWord", QStringLiteral("ftp secret"));
        click(d, "cmdClose");
    });
    click(&settings, "cmdProxy");
    ASSERT_EQ(hands.seen, 1);
    EXPECT_EQ(QNetworkProxy::applicationProxy().hostName(), QStringLiteral("webproxy.example"));
    EXPECT_EQ(QNetworkProxy::applicationProxy().port(), 3128);
    click(&settings, "cmdOk");

    G::Proxy = ProxySettings();
    CReg::Reload();
    CPublicSettings().GetURLSettings();
    const ProxySettings &p = G::Proxy;
    EXPECT_TRUE(p.use && p.useFTP && p.usesockspassword && p.useHTTPpassword);
    const QStringList values = {p.serverHTTPname, p.serverHTTPPort, p.serverHTTPUser, p.serverHTTPPassword,
                                p.serverFTPname, p.serverFTPPort, p.serverSOCKSname, p.serverSOCKSPort,
                                p.serverSOCKSUser, p.serverSOCKSPassWord, p.serverSOCKSServerType};
    EXPECT_EQ(values, (QStringList{"webproxy.example", "3128", "anna", "web secret", "ftpgate.example", "2121",
                                   "127.0.0.1", "8080", "bo", "ftp secret", "6"}));

    frmProxySettings again;
    EXPECT_EQ(text(&again, "txtHTTPProxyPassword"), QStringLiteral("web secret"));
    EXPECT_EQ(text(&again, "txtProxySOCKSPort"), QStringLiteral("8080"));
    EXPECT_TRUE(child<QRadioButton>(&again, "optTunnel")->isChecked());
    EXPECT_TRUE(child<QCheckBox>(&again, "chkUseSOCKSPassword")->isEnabled());
    choose(&again, "optSOCKS4");
    EXPECT_FALSE(child<QCheckBox>(&again, "chkUseSOCKSPassword")->isEnabled());
    EXPECT_FALSE(child<QLineEdit>(&again, "txtPassWord")->isEnabled());
}

TEST_F(ProxySettingsGui, TestHttpPassesThroughTheProxyAndSaysWhyItFails)
{
    ProxyServers open;
    ProxyServers guarded(true);
    frmProxySettings form;
    aimAtSite(form);
    check(&form, "chkUseProxy", true);
    type(&form, "txtProxyHTTPAddress", QStringLiteral("127.0.0.1"));
    type(&form, "txtProxyHTTPPort", QString::number(open.httpPort()));
    EXPECT_EQ(testResult(&form, "cmdTestHTTP"), L(15045));
    EXPECT_TRUE(open.httpLog().contains(QStringLiteral("/index.htm")));

    type(&form, "txtProxyHTTPPort", QString::number(guarded.httpPort()));
    QString failed = testResult(&form, "cmdTestHTTP");
    EXPECT_TRUE(failed.startsWith(L(15043)) && failed.contains(QStringLiteral("407"))) << failed.toStdString();
    EXPECT_TRUE(failed.contains(L(15061).section(QLatin1Char('('), 0, 0))) << failed.toStdString();
    check(&form, "chkUseHTTPProxyPassword", true);
    type(&form, "txtHTTPProxyUserID", QString::fromLatin1(ProxyServers::ProxyUser));
    type(&form, "txtHTTPProxyPassword", QStringLiteral("wrong"));
    EXPECT_TRUE(testResult(&form, "cmdTestHTTP").contains(L(15061).section(QLatin1Char('('), 0, 0)));
    type(&form, "txtHTTPProxyPassword", QString::fromLatin1(ProxyServers::ProxyPassword));
    EXPECT_EQ(testResult(&form, "cmdTestHTTP"), L(15045));

    // A proxy that can't reach the site answers with an error page of its
    // own, which is no proof of the settings.
    CachingProxy squid;
    check(&form, "chkUseHTTPProxyPassword", false);
    type(&form, "txtProxyHTTPPort", QString::number(squid.port()));
    form.SetTestTargets(QStringLiteral("http://127.0.0.1:%1/index.htm").arg(ProxyServers::freePort()), QString(),
                        QString(), QString());
    failed = testResult(&form, "cmdTestHTTP");
    EXPECT_TRUE(failed.contains(L(15060).section(QLatin1Char(':'), 0, 0))) << failed.toStdString();
}

// Each server type, with and without its password, and the proxies that
// won't carry FTP: every failure names its cause.
TEST_F(ProxySettingsGui, TestFtpThroughEachServerTypeAndTheRefusals)
{
    ProxyServers guarded(true);
    Socks4Proxy socks4;
    frmProxySettings form;
    aimAtSite(form);

    setFtpProxy(&form, "optSOCKS4", socks4.port());
    EXPECT_EQ(testResult(&form, "cmdTestFTP"), L(15045));
    // The logon and the listing's data connection both went through.
    EXPECT_GE(socks4.log().count(QStringLiteral("connect")), 2);

    setFtpProxy(&form, "optSOCKS5", guarded.socksPort());
    QString failed = testResult(&form, "cmdTestFTP");
    EXPECT_TRUE(failed.startsWith(L(15043)) && failed.contains(QStringLiteral("refused the user name or password")))
        << failed.toStdString();
    check(&form, "chkUseSOCKSPassword", true);
    type(&form, "txtUserID", QString::fromLatin1(ProxyServers::ProxyUser));
    type(&form, "txtPassWord", QString::fromLatin1(ProxyServers::ProxyPassword));
    EXPECT_EQ(testResult(&form, "cmdTestFTP"), L(15045));

    setFtpProxy(&form, "optTunnel", guarded.httpPort());
    EXPECT_EQ(testResult(&form, "cmdTestFTP"), L(15045));
    type(&form, "txtPassWord", QStringLiteral("wrong"));
    EXPECT_TRUE(testResult(&form, "cmdTestFTP").contains(QStringLiteral("refused the user name or password")));

    CachingProxy squid(true);
    check(&form, "chkUseSOCKSPassword", false);
    type(&form, "txtProxySOCKSPort", QString::number(squid.port()));
    failed = testResult(&form, "cmdTestFTP");
    EXPECT_TRUE(failed.contains(QStringLiteral("turns FTP into web downloads (HTTP GET)"))) << failed.toStdString();
}

// The environment as a shell sets it: the HTTP proxy and a SOCKS5 proxy,
// both with a password in the address. "Get" says where it read them,
// fills the boxes and proves both with live connections.
TEST_F(ProxySettingsGui, GetReadsTheEnvironmentAndProvesItLive)
{
    ProxyServers guarded(true);
    const QByteArray account = QByteArray(ProxyServers::ProxyUser) + ':' + ProxyServers::ProxyPassword + '@';
    qputenv("http_proxy", "http://" + account + "127.0.0.1:" + QByteArray::number(guarded.httpPort()));
    qputenv("all_proxy", "socks5://" + account + "127.0.0.1:" + QByteArray::number(guarded.socksPort()));
    frmProxySettings form;
    aimAtSite(form);
    const qsizetype before = mark();
    click(&form, "cmdGetProxyFromIE");
    const QStringList said = shownSince(before);

    EXPECT_TRUE(child<QCheckBox>(&form, "chkUseProxy")->isChecked());
    EXPECT_EQ(text(&form, "txtProxyHTTPPort"), QString::number(guarded.httpPort()));
    EXPECT_TRUE(child<QCheckBox>(&form, "chkUseHTTPProxyPassword")->isChecked());
    EXPECT_EQ(text(&form, "txtHTTPProxyPassword"), QString::fromLatin1(ProxyServers::ProxyPassword));
    EXPECT_TRUE(child<QCheckBox>(&form, "chkUseProxyFTP")->isChecked());
    EXPECT_EQ(text(&form, "txtProxySOCKSPort"), QString::number(guarded.socksPort()));
    EXPECT_TRUE(child<QRadioButton>(&form, "optSOCKS5")->isChecked());
    EXPECT_EQ(text(&form, "txtUserID"), QString::fromLatin1(ProxyServers::ProxyUser));
    EXPECT_TRUE(said.join('\n').contains(QStringLiteral("The environment: http_proxy=http://proxyuser:****@")))
        << said.join('\n').toStdString();
    EXPECT_FALSE(said.join('\n').contains(QString::fromLatin1(ProxyServers::ProxyPassword)));
    EXPECT_EQ(said.count(L(15045)), 2) << said.join('\n').toStdString();
    EXPECT_TRUE(guarded.httpLog().contains(QStringLiteral("/index.htm")));
    EXPECT_TRUE(child<QPushButton>(&form, "cmdLookForExtraInfo")->isVisible());

    // FTP sent to a web proxy is refused for FTP, with the reason.
    for (const char *name : kProxyVariables)
        qunsetenv(name);
    qputenv("ftp_proxy", "http://127.0.0.1:" + QByteArray::number(guarded.httpPort()));
    const qsizetype second = mark();
    click(&form, "cmdGetProxyFromIE");
    EXPECT_TRUE(shownSince(second).contains(L(15059).arg(QStringLiteral("127.0.0.1:%1").arg(guarded.httpPort()))));
    EXPECT_FALSE(child<QCheckBox>(&form, "chkUseProxyFTP")->isChecked());
    EXPECT_TRUE(text(&form, "txtProxySOCKSAddress").isEmpty());
}

// A PAC script routes web pages to the web proxy (with a fallback, which
// is reported) and FTP to a SOCKS5 proxy; both answers OK transfer the
// routes, and both are proven.
TEST_F(ProxySettingsGui, GetRunsAPacScriptAndProvesWhatItFound)
{
    ProxyServers open;
    QTemporaryDir folder;
    const QString script = folder.filePath(QStringLiteral("proxy.pac"));
    QFile pac(script);
    ASSERT_TRUE(pac.open(QIODevice::WriteOnly));
    pac.write(QStringLiteral("function FindProxyForURL(url, host) {\n"
                             "  if (url.substring(0, 4) == \"ftp:\") return \"SOCKS5 127.0.0.1:%1\";\n"
                             "  return \"PROXY 127.0.0.1:%2; DIRECT\";\n}\n")
                  .arg(open.socksPort())
                  .arg(open.httpPort())
                  .toUtf8());
    pac.close();
    qputenv("http_proxy", "pac+file://" + script.toUtf8());
    frmProxySettings form;
    aimAtSite(form);
    UserQuestions::Script({UserQuestions::vbOK, UserQuestions::vbOK});
    const qsizetype before = mark();
    click(&form, "cmdGetProxyFromIE");
    const QStringList said = shownSince(before);

    EXPECT_TRUE(said.value(0).startsWith(L(15029))) << said.join('\n').toStdString();
    EXPECT_TRUE(said.join('\n').contains(QStringLiteral("A PAC script: file://") + script));
    EXPECT_TRUE(said.contains(L(15038)));
    EXPECT_EQ(said.count(L(15045)), 2) << said.join('\n').toStdString();
    EXPECT_EQ(text(&form, "txtProxyHTTPPort"), QString::number(open.httpPort()));
    EXPECT_EQ(text(&form, "txtProxySOCKSPort"), QString::number(open.socksPort()));
    EXPECT_TRUE(child<QRadioButton>(&form, "optSOCKS5")->isChecked());
    EXPECT_TRUE(open.httpLog().contains(QStringLiteral("/index.htm")));

    const qsizetype info = mark();
    click(&form, "cmdLookForExtraInfo");
    const QList<UserQuestions::Shown> shown = UserQuestions::ShownSoFar();
    ASSERT_GT(shown.size(), info);
    EXPECT_EQ(shown.last().kind, QStringLiteral("frmProxyExtraInfo"));
    EXPECT_TRUE(shown.last().text.contains(L(15037) + QStringLiteral(" file://") + script));
}
