// The page engine browses through the HTTP proxy of the settings and gives
// the proxy its password when asked. The site's name is known to the proxy
// alone, so its page can only arrive through the proxy.

#include "CachingProxy.h"
#include "ProxyServers.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "platform/HtmlDocument.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"

#include <gtest/gtest.h>

namespace {

using G = MGlobalProjectObjects;

const QString kSite = QStringLiteral("proxied-site.test");
const QString kTitle = QStringLiteral("Came through the proxy");

// The title of the page at `url` in a browser of its own, so that no page
// shown before passes for the one asked.
QString titleAt(const QString &url)
{
    WebBrowser browser;
    browser.resize(600, 400);
    browser.show();
    browser.Navigate2(url, WebBrowser::NavNoReadFromCache);
    EXPECT_TRUE(browser.waitUntilComplete()) << url.toStdString();
    return browser.Document().title();
}

// Whether the proxy logged an answer `status` to `url` for `user` (any
// when empty), waiting for the line a while.
bool proxyAnswered(const CachingProxy &proxy, const QString &url, const QString &status, const QString &user)
{
    return PageScriptCall::pumpUntil(
        [&] {
            for (const QString &line : proxy.accessLog().split(QLatin1Char('\n')))
                if (line.contains(status) && line.contains(QStringLiteral(" GET ") + url + QLatin1Char(' ') + user))
                    return true;
            return false;
        },
        5000);
}

void useProxy(const CachingProxy &proxy, const char *password)
{
    ProxySettings &p = G::Proxy;
    p = ProxySettings();
    p.use = true;
    p.serverHTTPname = QStringLiteral("127.0.0.1");
    p.serverHTTPPort = QString::number(proxy.port());
    p.useHTTPpassword = true;
    p.serverHTTPUser = QString::fromLatin1(ProxyServers::ProxyUser);
    p.serverHTTPPassword = QString::fromLatin1(password);
    G::ApplyEngineProxy();
}

} // namespace

TEST(EngineProxyGui, APageOnlyTheProxyCanReachComesThroughItWithThePasswordOfTheSettings)
{
    CachingProxy proxy(false, {kSite}, true);
    TestServers &servers = TestServers::shared();
    servers.writeWebFile(QStringLiteral("proxied.htm"),
                         "<html><head><title>" + kTitle.toUtf8() + "</title></head><body>proxied</body></html>");
    const QString url = QStringLiteral("http://%1:%2/proxied.htm").arg(kSite).arg(servers.httpPort());

    // Straight, the name leads nowhere.
    G::Proxy = ProxySettings();
    G::ApplyEngineProxy();
    EXPECT_NE(titleAt(url), kTitle);

    // A wrong password is given once: the proxy's refusal shows, and the
    // engine does not ask for ever.
    useProxy(proxy, "wrong");
    EXPECT_NE(titleAt(url), kTitle);
    EXPECT_TRUE(proxyAnswered(proxy, url, QStringLiteral("TCP_DENIED/407"), QString())) << proxy.accessLog().toStdString();

    useProxy(proxy, ProxyServers::ProxyPassword);
    EXPECT_EQ(titleAt(url), kTitle);
    EXPECT_TRUE(proxyAnswered(proxy, url, QStringLiteral("/200"), QString::fromLatin1(ProxyServers::ProxyUser)))
        << proxy.accessLog().toStdString();

    // The proxy turned off again is left at once: the proxy hears nothing.
    G::Proxy = ProxySettings();
    G::ApplyEngineProxy();
    const auto heard = [&] { return proxy.accessLog().count(QStringLiteral(" GET ") + url); };
    const qsizetype before = heard();
    EXPECT_NE(titleAt(url), kTitle);
    EXPECT_EQ(heard(), before) << proxy.accessLog().toStdString();
}
