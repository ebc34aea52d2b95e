// The sample pages loaded by the real engine, serialised, and encoded for
// upload: each keeps its charset and its non-ASCII characters.

#include "TestServers.h"
#include "document/CPageEncoding.h"
#include "platform/HtmlDocument.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"

#include <gtest/gtest.h>

namespace {

QByteArray savedBytes(WebBrowser &browser, const QString &name)
{
    browser.Navigate2(TestServers::shared().httpBase() + QLatin1Char('/') + name, WebBrowser::NavNoReadFromCache);
    PageScriptCall::pumpUntil([&] { return browser.ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
    EXPECT_TRUE(browser.waitUntilComplete());
    HtmlDocument doc = browser.Document();
    EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return doc.pathname().endsWith(name); }, 15000));
    return CPageEncoding::Encode(doc.serialize());
}

} // namespace

TEST(PageEncodingInEngine, SerialisedSamplePagesKeepTheirCharset)
{
    WebBrowser browser;
    browser.resize(600, 400);
    browser.show();

    const QByteArray utf8 = savedBytes(browser, QStringLiteral("utf8.htm"));
    EXPECT_TRUE(utf8.contains("R\xC3\xA4ksm\xC3\xB6rg\xC3\xA5s och bl\xC3\xA5""b\xC3\xA4r \xE2\x80\x93"));
    EXPECT_TRUE(utf8.contains("25 \xE2\x82\xAC"));
    EXPECT_EQ(CPageEncoding::Decode(utf8).count(QChar(0xFFFD)), 0);

    const QByteArray latin = savedBytes(browser, QStringLiteral("latin.htm"));
    EXPECT_TRUE(latin.contains("R\xE4ksm\xF6rg\xE5s f\xF6r 25 \x80.")) << latin.constData();
    EXPECT_FALSE(latin.contains("&#"));
}
