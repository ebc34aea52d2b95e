// A document bound to a page of the test server, switched in and out of
// design mode in the real page engine.

#include "TestServers.h"
#include "cms/CMSTables.h"
#include "config/MGlobalProjectObjects.h"
#include "DocumentWindow.h"
#include "document/CDocument.h"
#include "objects/CHTMLImg.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <gtest/gtest.h>

namespace {

using document_test::Window;

class EditMode : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        browser = new WebBrowser;
        browser->resize(800, 600);
        browser->show();
        SiteRecord site;
        site.baseaddress = TestServers::shared().httpBase() + QStringLiteral("/");
        site.isactive = QStringLiteral("1");
        site.indexfile = QStringLiteral("index.htm");
        MGlobalProjectObjects::URLDATA = {site};
        MGlobalProjectObjects::lCurrentURL = 0;
    }
    static void TearDownTestSuite()
    {
        delete browser;
        browser = nullptr;
        MGlobalProjectObjects::URLDATA.clear();
    }
    void SetUp() override
    {
        MError::ClearError();
        ResetCMSTables();
    }

    // Loads the page and binds a fresh document to it.
    std::unique_ptr<CDocument> open(const QString &path, const QByteArray &body)
    {
        TestServers::shared().writeWebFile(path, body);
        browser->Navigate2(TestServers::shared().httpBase() + QStringLiteral("/") + path, WebBrowser::NavNoReadFromCache);
        PageScriptCall::pumpUntil([] { return browser->ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
        EXPECT_TRUE(browser->waitUntilComplete());
        auto doc = std::make_unique<CDocument>();
        EXPECT_EQ(doc->Init(&window), 1) << MError::ErrorDescription().toStdString();
        return doc;
    }

    static QString html() { return browser->Document().documentElement().outerHTML(); }

    static WebBrowser *browser;
    Window window{nullptr};
};

WebBrowser *EditMode::browser = nullptr;

QByteArray pageWithImages(int count)
{
    QByteArray page = "<html><body><script>var counter = 1;</script><p>Pictures of the summer house</p>";
    for (int i = 0; i < count; ++i)
        page += "<img src=\"x" + QByteArray::number(i) + ".gif\" vismark=\"true\">";
    return page + "</body></html>";
}

} // namespace

TEST_F(EditMode, OnRegistersEveryImageAndOffLeavesNoMarks)
{
    window = Window(browser);
    auto doc = open(QStringLiteral("edit/images.htm"), pageWithImages(3));
    const qsizetype shown = UserQuestions::ShownSoFar().size();
    ASSERT_EQ(doc->EditOn(true), 1);
    // Its script adds nothing to the page, so no word of foreign content.
    EXPECT_EQ(UserQuestions::ShownSoFar().size(), shown);
    EXPECT_EQ(browser->Document().designMode(), QStringLiteral("On"));
    EXPECT_FALSE(doc->TextRange().isNull());
    ASSERT_EQ(doc->ObjectCount(), 3);
    const QList<HtmlElement> imgs = browser->Document().getElementsByTagName(QStringLiteral("IMG"));
    for (int i = 0; i < imgs.size(); ++i) {
        EXPECT_EQ(imgs[i].getAttribute(QStringLiteral("keldaKey")).toString(), QString::number(i));
        EXPECT_EQ(doc->Object(QString::number(i))->Element(), imgs[i]);
    }
    ASSERT_EQ(doc->EditOn(false), 1);
    EXPECT_EQ(browser->Document().designMode(), QStringLiteral("Off"));
    EXPECT_EQ(doc->ObjectCount(), 0);
    EXPECT_FALSE(html().contains(QStringLiteral("keldakey"), Qt::CaseInsensitive));
    EXPECT_FALSE(html().contains(QStringLiteral("vismark"), Qt::CaseInsensitive));
    // A second switch off is harmless.
    EXPECT_EQ(doc->EditOn(false), 1);
}

// A script that keeps adding to the page (an advertisement, a counter) is
// content the editor can't keep: the user hears of it once as editing
// starts.
TEST_F(EditMode, PageThatGrowsByScriptGetsTheForeignContentMessageOnce)
{
    window = Window(browser);
    auto doc = open(QStringLiteral("edit/growing.htm"),
                    "<html><body><p>News</p><script>setInterval(function () {"
                    " document.body.appendChild(document.createElement('span')); }, 1);</script></body></html>");
    const int atLoad = browser->Document().allLength();
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return browser->Document().allLength() > atLoad; }, 5000));
    UserQuestions::Script({});
    const qsizetype shown = UserQuestions::ShownSoFar().size();
    ASSERT_EQ(doc->EditOn(true), 1);
    const QList<UserQuestions::Shown> after = UserQuestions::ShownSoFar();
    ASSERT_EQ(after.size(), shown + 1);
    EXPECT_TRUE(after.last().text.contains(QStringLiteral("content from a different domain")))
        << after.last().text.toStdString();
    ASSERT_EQ(doc->EditOn(false), 1);
    UserQuestions::EndScript();
}

TEST_F(EditMode, CmsAreasGetTheirFrames)
{
    window = Window(browser);
    auto doc = open(QStringLiteral("edit/cms.htm"),
                    "<html><body><div id=a keldaedit=1>free</div><div id=b keldaedit=0>locked</div>"
                    "<div id=c keldaedit=2>other</div></body></html>");
    doc->setDocumentControledByCMS(true);
    ASSERT_EQ(doc->EditOn(true), 1);
    HtmlDocument page = browser->Document();
    const HtmlElement a = page.getElementById(QStringLiteral("a"));
    const HtmlElement b = page.getElementById(QStringLiteral("b"));
    const HtmlElement c = page.getElementById(QStringLiteral("c"));
    EXPECT_TRUE(a.styleValue(QStringLiteral("border")).contains(QStringLiteral("dashed")));
    EXPECT_TRUE(a.styleValue(QStringLiteral("border")).contains(QStringLiteral("green")));
    EXPECT_EQ(a.contentEditable(), QStringLiteral("true"));
    EXPECT_TRUE(b.styleValue(QStringLiteral("border")).contains(QStringLiteral("red")));
    EXPECT_NE(b.contentEditable(), QStringLiteral("true"));
    EXPECT_TRUE(c.styleValue(QStringLiteral("border")).isEmpty());
    // "freelockedother" is too short to keep a text range of the body.
    EXPECT_TRUE(doc->TextRange().isNull());
    EXPECT_TRUE(doc->UserMayEdit());
    doc->EditOn(false);
}

// The rows of the glyph table follow the table's order, whatever the order
// of the switches.
TEST_F(EditMode, GlyphRowsInTheirOrder)
{
    window = Window(browser);
    auto doc = open(QStringLiteral("edit/glyphs.htm"), "<html><body><p>x</p></body></html>");
    ASSERT_EQ(doc->EditOn(true), 1);
    const auto tags = [] {
        const HtmlElement style = browser->Document().getElementById(QStringLiteral("__kelda_glyphs"));
        QStringList found;
        if (style.isNull())
            return found;
        for (const QString &rule : style.innerHTML().split(QLatin1Char('\n'))) {
            const QString tag = rule.section(QLatin1Char(':'), 0, 0).section(QLatin1Char('{'), 0, 0);
            if (found.isEmpty() || found.last() != tag)
                found.append(tag);
        }
        return found;
    };
    doc->ShowDisableGlyphs(false, false, false, true);
    EXPECT_EQ(tags(), (QStringList{QStringLiteral("br"), QStringLiteral("p"), QStringLiteral("span")}));
    doc->ShowDisableGlyphs(true, false, false, true);
    EXPECT_EQ(tags(), (QStringList{QStringLiteral("a"), QStringLiteral("h1"), QStringLiteral("h2"), QStringLiteral("h3"),
                                   QStringLiteral("h4"), QStringLiteral("h5"), QStringLiteral("h6"), QStringLiteral("br"),
                                   QStringLiteral("p"), QStringLiteral("span")}));
    // Fonts alone add nothing: the table is emptied.
    doc->ShowDisableGlyphs(false, false, false, false, true);
    EXPECT_TRUE(tags().isEmpty());
    doc->EditOn(false);
}

TEST_F(EditMode, AddressesAndTypes)
{
    window = Window(browser);
    auto doc = open(QStringLiteral("edit/a.htm"), "<html><body><iframe src=\"about:blank\"></iframe></body></html>");
    QString url;
    doc->GetURL(url);
    EXPECT_EQ(url, QStringLiteral("/edit/a.htm"));
    bool visible = true;
    doc->GetVisible(visible);
    EXPECT_FALSE(visible);

    TestServers::shared().writeWebFile(QStringLiteral("edit/pic.gif"), "GIF89a");
    browser->Navigate2(TestServers::shared().httpBase() + QStringLiteral("/edit/pic.gif"), WebBrowser::NavNoReadFromCache);
    PageScriptCall::pumpUntil([] { return browser->ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
    browser->waitUntilComplete();
    CDocument image;
    EXPECT_EQ(image.Init(&window), -1);
}

// A frameset gets borders that can be dragged and fixed frames; the frames
// keep documents of their own, so nothing is registered here.
TEST_F(EditMode, FramesetOnlyChangesItsBorders)
{
    window = Window(browser);
    auto doc = open(QStringLiteral("edit/frames.htm"),
                    "<html><frameset cols=\"50%,50%\" frameborder=\"no\"><frame src=\"a.htm\" noresize>"
                    "<frame src=\"a.htm\"></frameset></html>");
    bool visible = true;
    doc->GetVisible(visible);
    EXPECT_FALSE(visible);
    ASSERT_EQ(doc->EditOn(true), 1);
    HtmlDocument page = browser->Document();
    EXPECT_EQ(page.getElementsByTagName(QStringLiteral("FRAMESET")).first().getAttribute(QStringLiteral("frameBorder")),
              QStringLiteral("yes"));
    for (const HtmlElement &frame : page.getElementsByTagName(QStringLiteral("FRAME")))
        EXPECT_FALSE(frame.getAttribute(QStringLiteral("noresize")).isNull());
    EXPECT_EQ(page.designMode(), QStringLiteral("Off"));
    EXPECT_EQ(doc->ObjectCount(), 0);
}

// A page that is only shown, not edited, is hatched and stays in browse mode.
TEST_F(EditMode, PagesNotEditedAreHatched)
{
    window = Window(browser);
    auto doc = open(QStringLiteral("edit/list.htm"), "<html><body><p>list</p></body></html>");
    EXPECT_EQ(doc->setDocumentWindowHatched(), 1);
    EXPECT_TRUE(html().contains(QStringLiteral("repeating-linear-gradient")));
    EXPECT_EQ(browser->Document().designMode(), QStringLiteral("Off"));
}

// A page listed in the CMS data is under the CMS; the user may edit it only
// when listed for it, and the spare last element of the list is no user.
TEST_F(EditMode, CmsListedPageKnowsItsUsers)
{
    window = Window(browser);
    const QString address = TestServers::shared().httpBase() + QStringLiteral("/edit/listed.htm");
    for (float user : {0.0f, 1.0f}) {
        g_aCMSPages = {CMSPAGE{address, {1.0f, 0.0f}}, CMSPAGE{}};
        g_sngCMSUser = user;
        auto doc = open(QStringLiteral("edit/listed.htm"), "<html><body><p>listed</p></body></html>");
        EXPECT_TRUE(doc->getDocumentControledByCMS());
        EXPECT_EQ(doc->UserMayEdit(), user == 1.0f) << user;
    }
    ResetCMSTables();
}
