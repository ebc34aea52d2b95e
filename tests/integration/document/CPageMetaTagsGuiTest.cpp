// The head tags a save settles, on pages the real engine loaded from the
// test server, with the user's answers scripted.

#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "document/CPageMetaTags.h"
#include "platform/CReg.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <gtest/gtest.h>

namespace {

using G = MGlobalProjectObjects;
using Q = UserQuestions;

class PageMetaTags : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        browser = new WebBrowser;
        browser->resize(600, 400);
        browser->show();
    }
    static void TearDownTestSuite()
    {
        delete browser;
        browser = nullptr;
    }
    void SetUp() override
    {
        MError::ClearError();
        G::UseTidy = false;
        G::TidyCharEncodingType = 0;
        CReg::SaveSetting(QStringLiteral("Advanced"), QStringLiteral("UseTidy"), QStringLiteral("False"));
    }
    void TearDown() override { Q::EndScript(); }

    // A page whose head holds extraHead; each load has its own file name so
    // no cache answers for the server.
    static HtmlDocument open(const QString &extraHead)
    {
        static int count = 0;
        const QString name = QStringLiteral("meta%1.htm").arg(++count);
        const QString page = QStringLiteral("<HTML><HEAD><TITLE>T</TITLE>") + extraHead
                             + QStringLiteral("</HEAD><BODY><P>x</P></BODY></HTML>");
        TestServers &servers = TestServers::shared();
        servers.writeWebFile(name, page.toUtf8());
        browser->Navigate2(servers.httpBase() + QLatin1Char('/') + name, WebBrowser::NavNoReadFromCache);
        PageScriptCall::pumpUntil([] { return browser->ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
        EXPECT_TRUE(browser->waitUntilComplete());
        HtmlDocument doc = browser->Document();
        EXPECT_TRUE(PageScriptCall::pumpUntil([&] { return doc.pathname().endsWith(name); }, 15000));
        return doc;
    }

    static QString charsetTag(const QString &charset)
    {
        return QStringLiteral("<META http-equiv=\"Content-Type\" content=\"text/html; charset=%1\">").arg(charset);
    }

    static QString head(const HtmlDocument &doc)
    {
        return doc.getElementsByTagName(QStringLiteral("HEAD")).first().innerHTML();
    }

    static QString storedTidy()
    {
        return CReg::GetSetting(QStringLiteral("Advanced"), QStringLiteral("UseTidy"), QString());
    }

    static inline WebBrowser *browser = nullptr;
};

struct CharsetCase
{
    const char *charset;
    long answer;          // 0: no question is asked
    long result;
    bool tagStays;
    bool tidyOn;
    long type;            // TidyCharEncodingType afterwards
};

} // namespace

TEST_F(PageMetaTags, EachCharsetWithEachAnswer)
{
    const CharsetCase cases[] = {
        {"iso-8859-1", 0, 1, true, false, 0},
        {"us-ascii", 0, 1, true, false, 0},
        {"windows-1252", Q::vbYes, 1, false, true, 1},
        {"windows-1252", Q::vbNo, 1, true, false, 0},
        {"iso-8859-2", Q::vbYes, 1, false, true, 3},
        {"iso-8859-2", Q::vbNo, 1, true, false, 0},
        {"utf-8", Q::vbYes, 1, false, true, 3},
        {"utf-8", Q::vbNo, 1, false, false, 0},
        {"shift_jis", Q::vbYes, 1, false, true, 3},
        {"shift_jis", Q::vbNo, -1, true, false, 0},
    };
    for (const CharsetCase &c : cases) {
        SCOPED_TRACE(std::string(c.charset) + (c.answer == Q::vbYes ? " yes" : " no"));
        SetUp();
        HtmlDocument doc = open(charsetTag(QString::fromLatin1(c.charset)));
        Q::Script(c.answer ? QList<long>{c.answer} : QList<long>{});
        EXPECT_EQ(CPageMetaTags::CheckCharCodeMetaTag(doc), c.result);
        EXPECT_EQ(Q::ShownSoFar().size(), c.answer ? 1 : 0);
        EXPECT_EQ(Q::Unanswered(), 0);
        // The page's own tag is the one spelled "Content-Type".
        EXPECT_EQ(head(doc).contains(QStringLiteral("\"Content-Type\"")), c.tagStays) << head(doc).toStdString();
        EXPECT_EQ(G::UseTidy, c.tidyOn);
        EXPECT_EQ(G::TidyCharEncodingType, c.type);
        EXPECT_EQ(storedTidy(), c.tidyOn ? QStringLiteral("True") : QStringLiteral("False"));
        // Switching Tidy on declares the new charset at the head's start.
        if (c.tidyOn) {
            EXPECT_TRUE(head(doc).startsWith(QStringLiteral("<meta http-equiv=\"content-type\" content=\"")
                                             + CPageMetaTags::ContentOfType(c.type)))
                << head(doc).toStdString();
        }
        Q::EndScript();
    }
}

// A save into the page's own bytes keeps any charset without a question;
// only the windows-1252 advice is still given.
TEST_F(PageMetaTags, ASaveThatKeepsTheBytesAsksOnlyAboutWindows1252)
{
    for (const char *charset : {"utf-8", "iso-8859-2", "gbk", "shift_jis"}) {
        SCOPED_TRACE(charset);
        SetUp();
        HtmlDocument doc = open(charsetTag(QString::fromLatin1(charset)));
        Q::Script({});
        EXPECT_EQ(CPageMetaTags::CheckCharCodeMetaTag(doc, true), 1);
        EXPECT_TRUE(Q::ShownSoFar().isEmpty());
        EXPECT_TRUE(head(doc).contains(QStringLiteral("\"Content-Type\"")));
        Q::EndScript();
    }
    SetUp();
    HtmlDocument doc = open(charsetTag(QStringLiteral("windows-1252")));
    Q::Script({Q::vbNo});
    EXPECT_EQ(CPageMetaTags::CheckCharCodeMetaTag(doc, true), 1);
    EXPECT_EQ(Q::ShownSoFar().size(), 1);
    Q::EndScript();
}

TEST_F(PageMetaTags, QuestionsShowTheirTitleTextAndTheTag)
{
    HtmlDocument doc = open(charsetTag(QStringLiteral("koi8-r")));
    Q::Script({Q::vbNo});
    EXPECT_EQ(CPageMetaTags::CheckCharCodeMetaTag(doc), -1);
    ASSERT_EQ(Q::ShownSoFar().size(), 1);
    const Q::Shown shown = Q::ShownSoFar().first();
    EXPECT_EQ(shown.title, QStringLiteral("Problems with the charset table at current page"));
    EXPECT_EQ(shown.style & 7, long(Q::vbYesNo));
    EXPECT_EQ(shown.text,
              QStringLiteral("The page contains a charset table that Vindrell can't save without problems. "
                             "You are recommended to click on \"Yes\" to format the page to Unicode charset "
                             "table (UTF-8). If you answer \"No\" you will not be able to save the page.\n\n"
                             "Info\nMETA tag which control the charset rules:\n"
                             "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=koi8-r\">"));
}

TEST_F(PageMetaTags, WithTidyOnTheTagFollowsTheSettingWithoutAQuestion)
{
    // A Yes on one page holds for the next one saved in the same process.
    HtmlDocument first = open(charsetTag(QStringLiteral("windows-1252")));
    Q::Script({Q::vbYes});
    EXPECT_EQ(CPageMetaTags::CheckCharCodeMetaTag(first), 1);
    HtmlDocument second = open(charsetTag(QStringLiteral("windows-1252")));
    EXPECT_EQ(CPageMetaTags::CheckCharCodeMetaTag(second), 1);
    EXPECT_EQ(Q::ShownSoFar().size(), 1);
    EXPECT_TRUE(head(second).contains(QStringLiteral("content=\"text/html; charset=iso-8859-1\"")));
    EXPECT_EQ(head(second).count(QStringLiteral("charset")), 1) << head(second).toStdString();

    // A page without a charset gets one at the head's start.
    G::TidyCharEncodingType = 6;
    HtmlDocument bare = open(QString());
    EXPECT_EQ(CPageMetaTags::CheckCharCodeMetaTag(bare), 1);
    EXPECT_TRUE(head(bare).startsWith(
        QStringLiteral("<meta http-equiv=\"content-type\" content=\"text/html; charset=windows-1252\"><title>")))
        << head(bare).toStdString();
}

TEST_F(PageMetaTags, EditTagsAreSetOrAddedAtTheEndOfTheHead)
{
    HtmlDocument doc = open(QStringLiteral("<META HTTP-EQUIV=\"PRAGMA\" CONTENT=\"cache\"><META name=\"a\" content=\"b\">"));
    const QString date = QStringLiteral("Mon, 23 Nov 2026 00:40:00 GMT");
    EXPECT_EQ(CPageMetaTags::AddMetaEditTags(doc, date), 1);
    EXPECT_EQ(head(doc),
              QStringLiteral("<title>T</title><meta http-equiv=\"PRAGMA\" content=\"no-cache\">"
                             "<meta name=\"a\" content=\"b\">"
                             "<meta http-equiv=\"Expires\" content=\"-1\">"
                             "<meta http-equiv=\"Last-Modified\" content=\"") + date + QStringLiteral("\">"));
    // A second save finds its own tags and adds none.
    EXPECT_EQ(CPageMetaTags::AddMetaEditTags(doc, QStringLiteral("later")), 1);
    EXPECT_EQ(head(doc).count(QStringLiteral("<meta")), 4);
    EXPECT_TRUE(head(doc).contains(QStringLiteral("content=\"later\"")));
    EXPECT_EQ(MError::ErrorNumber(), 0);
}
