// The HTTP control against the test web server, directly and through a
// proxy: bodies as events, posts, and statuses that are failures.

#include "platform/HttpControl.h"

#include "ProxyServers.h"
#include "TestServers.h"

#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

TestServers &servers()
{
    return TestServers::shared();
}

class HttpControlTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QObject::connect(&http, &HttpControl::Transfer, &http,
                         [this](int, qint64, const QByteArray &text) { body += text; });
        QObject::connect(&http, &HttpControl::StartTransfer, &http, [this] { ++starts; });
    }

    void TearDown() override { servers().clearHttpBehaviour(); }

    HttpControl http;
    QByteArray body;
    int starts = 0;
};

} // namespace

TEST_F(HttpControlTest, GetDeliversTheBodyThroughEvents)
{
    servers().writeWebFile(QStringLiteral("plain.txt"), "line one\r\nline two");
    ASSERT_EQ(http.Get(servers().httpBase() + QStringLiteral("/plain.txt")), 1)
        << http.ErrorDescription().toStdString();
    EXPECT_EQ(body, QByteArray("line one\r\nline two"));
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(http.StatusCode(), 200);
}

TEST_F(HttpControlTest, PostSendsItsBody)
{
    http.ContentType = QStringLiteral("application/x-www-form-urlencoded");
    http.PostData = "report=it+broke&version=2";
    http.Post(servers().httpBase() + QStringLiteral("/report.asp"));
    EXPECT_TRUE(servers().httpPosts().contains("report=it+broke&version=2"));
}

TEST_F(HttpControlTest, StatusFailuresCarryTheStatusLine)
{
    servers().setHttpBehaviour({{QStringLiteral("status"), QJsonObject{{QStringLiteral("/gone.htm"), 404}}},
                                {QStringLiteral("redirect"),
                                 QJsonObject{{QStringLiteral("/moved.htm"), QStringLiteral("/index.htm")}}}});
    EXPECT_EQ(http.Get(servers().httpBase() + QStringLiteral("/gone.htm")), 0);
    EXPECT_EQ(http.ErrorNumber(), 20152);
    EXPECT_TRUE(http.ErrorDescription().startsWith(QStringLiteral("HTTP/1.")));
    EXPECT_TRUE(http.ErrorDescription().contains(QStringLiteral("404 Not Found")));
    EXPECT_EQ(http.ErrorSource(), QStringLiteral("HttpControl"));

    EXPECT_EQ(http.Get(servers().httpBase() + QStringLiteral("/moved.htm")), 0);
    EXPECT_EQ(http.ErrorNumber(), 20152);
    EXPECT_TRUE(http.ErrorDescription().contains(QStringLiteral("302")));
}

TEST_F(HttpControlTest, UnknownHost)
{
    EXPECT_EQ(http.Get(QStringLiteral("http://no-such-host.invalid/")), 0);
    EXPECT_EQ(http.ErrorNumber(), 26002);
}

TEST_F(HttpControlTest, GetThroughAProxyWithAndWithoutPassword)
{
    ProxyServers open;
    http.ProxyServer = QStringLiteral("127.0.0.1");
    http.ProxyPort = open.httpPort();
    ASSERT_EQ(http.Get(servers().httpBase() + QStringLiteral("/index.htm")), 1)
        << http.ErrorDescription().toStdString();
    EXPECT_EQ(body, servers().readWebFile(QStringLiteral("index.htm")));
    EXPECT_TRUE(open.httpLog().contains(QStringLiteral("/index.htm")));

    ProxyServers guarded(true);
    http.ProxyPort = guarded.httpPort();
    EXPECT_EQ(http.Get(servers().httpBase() + QStringLiteral("/index.htm")), 0);
    EXPECT_EQ(http.ErrorNumber(), 20152);
    EXPECT_TRUE(http.ErrorDescription().contains(QStringLiteral("407")));
    http.ProxyUser = QString::fromLatin1(ProxyServers::ProxyUser);
    http.ProxyPassword = QString::fromLatin1(ProxyServers::ProxyPassword);
    body.clear();
    ASSERT_EQ(http.Get(servers().httpBase() + QStringLiteral("/index.htm")), 1)
        << http.ErrorDescription().toStdString();
    EXPECT_EQ(body, servers().readWebFile(QStringLiteral("index.htm")));
}
