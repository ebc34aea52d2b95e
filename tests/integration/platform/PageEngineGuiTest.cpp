// The page engine bridge against the real engine and the test HTTP server:
// what later code reads and writes in pages must behave as the editor expects.

#include "PageMouse.h"
#include "TestServers.h"
#include "platform/GlyphTable.h"
#include "platform/HtmlDocument.h"
#include "platform/HtmlSelection.h"
#include "platform/HtmlTextRange.h"
#include "platform/PageKeyFilter.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "support/MError.h"

#include <QApplication>
#include <QEventLoop>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>

#include <functional>
#include <memory>

#include <gtest/gtest.h>

namespace {

bool pumpUntil(const std::function<bool()> &done, int deadlineMs = 15000)
{
    return PageScriptCall::pumpUntil(done, deadlineMs);
}

void pump(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

class PageEngine : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        browser = new WebBrowser;
        browser->resize(800, 600);
        browser->show();
    }
    static void TearDownTestSuite()
    {
        delete browser;
        browser = nullptr;
    }
    void SetUp() override { MError::ClearError(); }

    static HtmlDocument open(const QString &path, const QByteArray &body = {})
    {
        TestServers &servers = TestServers::shared();
        if (!body.isEmpty())
            servers.writeWebFile(path, body);
        browser->Navigate2(servers.httpBase() + QStringLiteral("/") + path, WebBrowser::NavNoReadFromCache);
        pumpUntil([] { return browser->ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
        EXPECT_TRUE(browser->waitUntilComplete());
        HtmlDocument doc = browser->Document();
        EXPECT_TRUE(pumpUntil([&] { return doc.body().isNull() == false; }));
        return doc;
    }

    static void sendKey(int key, const QString &text)
    {
        QWidget *target = browser->focusProxy();
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(target, &press);
        QCoreApplication::sendEvent(target, &release);
    }

    static void selectBoxForTyping(HtmlDocument &doc)
    {
        browser->activateWindow();
        browser->setFocus();
        // On a busy machine the window manager and the engine's own process
        // take a while to give the page the keyboard; keys sent before that
        // are lost, so wait for both.
        pumpUntil([] { return browser->window()->isActiveWindow(); }, 5000);
        HtmlTextRange::aroundElement(doc.getElementById(QStringLiteral("box"))).select();
        pumpUntil([] {
            return PageScriptCall::run(browser->page(), QStringLiteral("document.hasFocus()"), QString()).toBool();
        }, 5000);
    }

    static inline WebBrowser *browser = nullptr;
};

const QByteArray SamplePage =
    "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">\n"
    "<HTML><HEAD><TITLE>Sample</TITLE><STYLE>.news{color:red} P.small{font-size:8pt}</STYLE></HEAD>\n"
    "<BODY style=\"margin:0\"><P id=\"intro\" keldaKey=\"7\">Hello <B id=\"bold\">bold</B> world</P>\n"
    "<SPAN id=\"asp\" style=\"keldasp:true; color: blue\">asp output</SPAN>\n"
    "<DIV id=\"box\" style=\"width:200px;height:50px\">one two three</DIV>\n"
    "<IMG id=\"logo\" src=\"img/logo.png\" width=\"40\" height=\"30\"></BODY></HTML>\n";

TEST_F(PageEngine, AttributesAreReadWrittenAndRemovedWhateverTheirCase)
{
    HtmlDocument doc = open(QStringLiteral("sample.htm"), SamplePage);
    EXPECT_EQ(doc.TypeName(), QStringLiteral("HTMLDocument"));
    EXPECT_EQ(doc.title(), QStringLiteral("Sample"));
    EXPECT_EQ(doc.pathname(), QStringLiteral("/sample.htm"));
    HtmlElement intro = doc.getElementById(QStringLiteral("intro"));
    EXPECT_EQ(intro.tagName(), QStringLiteral("P"));
    EXPECT_EQ(intro.getAttribute(QStringLiteral("keldakey")).toString(), QStringLiteral("7"));
    EXPECT_EQ(intro.getAttribute(QStringLiteral("KELDAKEY")).toString(), QStringLiteral("7"));
    EXPECT_TRUE(intro.getAttribute(QStringLiteral("nothere")).isNull());

    HtmlElement logo = doc.getElementById(QStringLiteral("logo"));
    logo.setAttribute(QStringLiteral("keldaKey"), 12);
    EXPECT_EQ(logo.getAttribute(QStringLiteral("keldakey")).toString(), QStringLiteral("12"));
    EXPECT_TRUE(logo.removeAttribute(QStringLiteral("KeldaKey")));
    EXPECT_FALSE(logo.outerHTML().contains(QStringLiteral("keldakey"), Qt::CaseInsensitive));
    EXPECT_EQ(logo.offsetWidth(), 40);
    EXPECT_EQ(logo.parentElement(), doc.body());

    // The walk of entering edit mode: images numbered from 0, keys stripped elsewhere.
    doc.body().insertAdjacentHTML(QStringLiteral("beforeEnd"), QStringLiteral("<IMG id=\"second\">"));
    EXPECT_EQ(doc.keyAndStrip(QStringLiteral("IMG"), QStringLiteral("keldaKey"), {QStringLiteral("keldakey")}), 2);
    EXPECT_TRUE(intro.getAttribute(QStringLiteral("keldaKey")).isNull());
    EXPECT_EQ(doc.getElementById(QStringLiteral("second")).getAttribute(QStringLiteral("keldakey")).toString(),
              QStringLiteral("1"));
    EXPECT_EQ(MError::ErrorNumber(), 0) << MError::ErrorDescription().toStdString();
}

TEST_F(PageEngine, StyleNamesTheEngineDropsAreReadFromTheStyleText)
{
    HtmlDocument doc = open(QStringLiteral("sample.htm"), SamplePage);
    HtmlElement span = doc.getElementById(QStringLiteral("asp"));
    EXPECT_EQ(span.styleValue(QStringLiteral("keldasp")), QStringLiteral("true"));
    EXPECT_EQ(span.styleValue(QStringLiteral("color")), QStringLiteral("blue"));

    HtmlElement box = doc.getElementById(QStringLiteral("box"));
    box.setStyleValue(QStringLiteral("keldasp"), QStringLiteral("true"));
    box.setStyleValue(QStringLiteral("fontWeight"), QStringLiteral("bold"));
    EXPECT_EQ(box.styleValue(QStringLiteral("keldasp")), QStringLiteral("true"));
    EXPECT_EQ(box.styleValue(QStringLiteral("width")), QStringLiteral("200px"));
    EXPECT_TRUE(box.outerHTML().contains(QStringLiteral("keldasp")));
    EXPECT_EQ(box.currentStyle().fontWeight, QStringLiteral("700"));
    EXPECT_TRUE(box.removeStyleValue(QStringLiteral("keldasp")));
    EXPECT_FALSE(box.outerHTML().contains(QStringLiteral("keldasp")));

    const CurrentStyle bold = doc.getElementById(QStringLiteral("bold")).currentStyle();
    EXPECT_EQ(bold.fontWeight, QStringLiteral("700"));
    EXPECT_GT(bold.fontSizePt, 0);

    const QList<StyleSheetInfo> sheets = doc.styleSheets();
    ASSERT_EQ(sheets.size(), 1);
    EXPECT_EQ(sheets[0].selectors, (QStringList{QStringLiteral(".news"), QStringLiteral("p.small")}));
    EXPECT_FALSE(sheets[0].readOnly);
}

TEST_F(PageEngine, NodesAreRemovedKeepingOrDroppingTheirChildren)
{
    HtmlDocument doc = open(QStringLiteral("sample.htm"), SamplePage);
    HtmlElement intro = doc.getElementById(QStringLiteral("intro"));
    EXPECT_TRUE(doc.getElementById(QStringLiteral("bold")).removeNode(false));
    EXPECT_EQ(intro.innerHTML(), QStringLiteral("Hello bold world"));

    HtmlElement em = doc.createElement(QStringLiteral("EM"));
    em.setInnerText(QStringLiteral("new"));
    intro.insertAdjacentElement(QStringLiteral("afterBegin"), em);
    intro.insertAdjacentHTML(QStringLiteral("beforeEnd"), QStringLiteral("<U>end</U>"));
    EXPECT_EQ(intro.innerHTML(), QStringLiteral("<em>new</em>Hello bold world<u>end</u>"));
    EXPECT_EQ(intro.children().size(), 2);
    EXPECT_TRUE(intro.removeNode(true));
    EXPECT_TRUE(doc.getElementById(QStringLiteral("intro")).isNull());
}

TEST_F(PageEngine, RangesWrapAndCutElements)
{
    HtmlDocument doc = open(QStringLiteral("sample.htm"), SamplePage);
    HtmlElement bold = doc.getElementById(QStringLiteral("bold"));
    HtmlTextRange range = HtmlTextRange::aroundElement(bold);
    EXPECT_EQ(range.text(), QStringLiteral("bold"));
    HtmlElement font = doc.createElement(QStringLiteral("FONT"));
    font.setAttribute(QStringLiteral("color"), QStringLiteral("red"));
    range.surroundWith(font);
    EXPECT_EQ(bold.innerHTML(), QStringLiteral("<font color=\"red\">bold</font>"));

    // Cut the box's text after "one ": the second half goes to a copy.
    HtmlElement box = doc.getElementById(QStringLiteral("box"));
    PageScriptCall::run(browser->page(),
                        QStringLiteral("(function(){var t=document.getElementById('box').firstChild;"
                                       "var r=document.createRange();r.setStart(t,4);r.collapse(true);"
                                       "var s=getSelection();s.removeAllRanges();s.addRange(r);})()"),
                        QString());
    HtmlElement copy = doc.selection().createRange().splitElement(box);
    EXPECT_EQ(box.innerHTML(), QStringLiteral("one "));
    EXPECT_EQ(copy.innerHTML(), QStringLiteral("two three"));
    EXPECT_EQ(copy.tagName(), QStringLiteral("DIV"));
}

TEST_F(PageEngine, TypingInDesignModeChangesTheSerialisation)
{
    HtmlDocument doc = open(QStringLiteral("sample.htm"), SamplePage);
    doc.setDesignMode(QStringLiteral("On"));
    EXPECT_EQ(doc.designMode(), QStringLiteral("On"));
    selectBoxForTyping(doc);
    sendKey(Qt::Key_Z, QStringLiteral("z"));
    sendKey(Qt::Key_Q, QStringLiteral("q"));
    EXPECT_TRUE(pumpUntil([&] { return doc.serialize().contains(QStringLiteral(">zq</div>")); }))
        << doc.serialize().toStdString();
    EXPECT_TRUE(doc.serialize().startsWith(
        QStringLiteral("<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\">")));
}

TEST_F(PageEngine, BoldCommandActsOnTheSelection)
{
    HtmlDocument doc = open(QStringLiteral("sample.htm"), SamplePage);
    doc.setDesignMode(QStringLiteral("On"));
    HtmlTextRange::aroundElement(doc.getElementById(QStringLiteral("box"))).select();
    HtmlSelection selection = doc.selection();
    EXPECT_EQ(selection.type(), QStringLiteral("Text"));
    EXPECT_EQ(selection.text(), QStringLiteral("one two three"));
    EXPECT_TRUE(doc.queryCommandEnabled(QStringLiteral("Bold")));
    EXPECT_TRUE(doc.execCommand(QStringLiteral("Bold")));
    EXPECT_TRUE(doc.queryCommandState(QStringLiteral("Bold")));
    EXPECT_EQ(doc.getElementById(QStringLiteral("box")).innerHTML(), QStringLiteral("<b>one two three</b>"));

    // A picked image is a control selection.
    PageScriptCall::run(browser->page(),
                        QStringLiteral("(function(){var r=document.createRange();"
                                       "r.selectNode(document.getElementById('logo'));"
                                       "var s=getSelection();s.removeAllRanges();s.addRange(r);})()"),
                        QString());
    EXPECT_EQ(selection.type(), QStringLiteral("Control"));
    EXPECT_EQ(selection.control(), doc.getElementById(QStringLiteral("logo")));
}

TEST_F(PageEngine, ZeroBordersAreShownWhileEditingAndHiddenContentWhenVisibilityIsNotRespected)
{
    HtmlDocument doc = open(QStringLiteral("hidden.htm"),
                            "<HTML><BODY><DIV id=\"layer\" style=\"visibility: hidden\">x</DIV>"
                            "<TABLE id=\"grid\" border=\"0\"><TR><TD>a</TD></TR></TABLE></BODY></HTML>");
    const QString outline = QStringLiteral("getComputedStyle(document.getElementById('grid')).outlineStyle");
    EXPECT_EQ(PageScriptCall::run(browser->page(), outline, QString()).toString(), QStringLiteral("none"));
    EXPECT_EQ(doc.execDesign(HtmlDocument::ShowZeroBorderAtDesignTime, QVariant::fromValue<short>(0)), 1);
    EXPECT_EQ(PageScriptCall::run(browser->page(), outline, QString()).toString(), QStringLiteral("dashed"));

    HtmlElement layer = doc.getElementById(QStringLiteral("layer"));
    EXPECT_EQ(layer.currentStyle().visibility, QStringLiteral("hidden"));
    EXPECT_EQ(doc.execDesign(HtmlDocument::RespectVisibilityInDesign, false), 1);
    EXPECT_EQ(layer.currentStyle().visibility, QStringLiteral("visible"));
    EXPECT_EQ(doc.execDesign(HtmlDocument::RespectVisibilityInDesign, true), 1);
    EXPECT_EQ(layer.currentStyle().visibility, QStringLiteral("hidden"));
}

TEST_F(PageEngine, FramesOfTheSameOriginAreReachedAndOthersRefused)
{
    HtmlDocument top = open(QStringLiteral("frameset.htm"));
    ASSERT_TRUE(pumpUntil([&] { return top.frameCount() == 3; }));
    HtmlDocument left = top.frame(0);
    EXPECT_EQ(left.TypeName(), QStringLiteral("HTMLWindow2"));
    EXPECT_EQ(left.title(), QStringLiteral("Left frame"));
    EXPECT_EQ(left.getElementById(QStringLiteral("left")).innerText(), QStringLiteral("The left frame."));
    EXPECT_EQ(top.frame(1).pathname(), QStringLiteral("/frame2.htm"));
    EXPECT_EQ(MError::ErrorNumber(), 0);

    EXPECT_TRUE(top.frame(2).title().isEmpty());
    EXPECT_EQ(MError::ErrorDescription(), QStringLiteral("Permission denied"));
}

TEST_F(PageEngine, EachFrameCompletesAndANavigationCanBeCancelled)
{
    QList<QList<int>> completed;
    auto onComplete = QObject::connect(browser, &WebBrowser::DocumentComplete,
                                       [&](const QList<int> &path, const QString &, bool) { completed.append(path); });
    open(QStringLiteral("frameset.htm"));
    ASSERT_TRUE(pumpUntil([&] { return completed.contains(QList<int>{}); }));
    EXPECT_TRUE(completed.contains(QList<int>{0}));
    EXPECT_TRUE(completed.contains(QList<int>{1}));
    EXPECT_EQ(completed.last(), QList<int>{});
    QObject::disconnect(onComplete);

    QStringList arrived;
    auto onBefore = QObject::connect(browser, &WebBrowser::BeforeNavigate2,
                                     [](const QString &url, bool, bool *cancel) { *cancel = url.endsWith(QStringLiteral("/index.htm")); });
    auto onArrive = QObject::connect(browser, &WebBrowser::NavigateComplete2,
                                     [&](const QString &url) { arrived.append(url); });
    browser->Navigate2(TestServers::shared().httpBase() + QStringLiteral("/index.htm"));
    open(QStringLiteral("frame1.htm"));
    EXPECT_TRUE(browser->LocationURL().endsWith(QStringLiteral("/frame1.htm")));
    EXPECT_TRUE(arrived.filter(QStringLiteral("index.htm")).isEmpty());
    QObject::disconnect(onBefore);
    QObject::disconnect(onArrive);
}

TEST_F(PageEngine, RightClickDeliversTheElementAndNoEngineMenu)
{
    HtmlDocument doc = open(QStringLiteral("sample.htm"), SamplePage);
    HtmlElement box = doc.getElementById(QStringLiteral("box"));
    QList<PageEvent> events;
    auto connection = QObject::connect(browser, &WebBrowser::pageEvent,
                                       [&](const PageEvent &e) { events.append(e); });
    const QPoint at(box.offsetLeft() + 10, box.offsetTop() + 10);
    EXPECT_EQ(doc.elementFromPoint(at.x(), at.y()), box);
    QWidget *target = browser->focusProxy();
    auto rightClick = [&] { sendRightClick(target, at); };
    auto menuEvent = [&]() -> const PageEvent * {
        for (const PageEvent &e : events)
            if (e.type == QStringLiteral("contextmenu"))
                return &e;
        return nullptr;
    };
    // On a loaded machine the engine's render widget drops input until it has
    // drawn its first frame, so a click sent too early never arrives. Click
    // again every half second; a page that never reports one still fails.
    bool arrived = false;
    for (int attempt = 0; attempt < 20 && !arrived; ++attempt) {
        rightClick();
        arrived = pumpUntil([&] { return menuEvent() != nullptr; }, 500);
    }
    ASSERT_TRUE(arrived);
    EXPECT_EQ(menuEvent()->element, box.handle());
    EXPECT_EQ(menuEvent()->button, 2);
    EXPECT_TRUE(menuEvent()->cancelled);
    pump(200);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    QObject::disconnect(connection);
}

TEST_F(PageEngine, SwallowedKeysNeverReachThePage)
{
    HtmlDocument doc = open(QStringLiteral("sample.htm"), SamplePage);
    doc.setDesignMode(QStringLiteral("On"));
    browser->setSwallowedKeys({'Z'});
    pump(100);
    selectBoxForTyping(doc);
    // Keys sent before the engine's process has the page's keyboard are lost
    // on a loaded machine; send the pair again until the q lands. The Z must
    // never land, however often it is sent.
    bool typed = false;
    for (int attempt = 0; attempt < 10 && !typed; ++attempt) {
        sendKey(Qt::Key_Z, QStringLiteral("z"));
        sendKey(Qt::Key_Q, QStringLiteral("q"));
        typed = pumpUntil([&] { return doc.serialize().contains(QStringLiteral("q</div>")); }, 1500);
    }
    EXPECT_TRUE(typed) << doc.serialize().toStdString();
    const QString typedText = doc.getElementById(QStringLiteral("box")).innerHTML();
    EXPECT_FALSE(typedText.contains(QStringLiteral("z"), Qt::CaseInsensitive)) << typedText.toStdString();
    browser->setSwallowedKeys({});
}

TEST_F(PageEngine, GlyphTableShowsInTheWindow)
{
    HtmlDocument doc = open(QStringLiteral("sample.htm"), SamplePage);
    doc.setDesignMode(QStringLiteral("On"));
    pump(300);
    const QImage plain = browser->grab().toImage();
    GlyphTable::Switches all{true, true, true, true, true};
    EXPECT_EQ(doc.execDesign(HtmlDocument::AddToGlyphTable, GlyphTable::rowsText(all)), 1);
    pump(300);
    const QImage glyphs = browser->grab().toImage();
    EXPECT_NE(plain, glyphs);
    EXPECT_EQ(doc.execDesign(HtmlDocument::EmptyGlyphTable), 1);
    pump(300);
    EXPECT_EQ(browser->grab().toImage(), plain);
    // The glyphs are the editor's look, never part of the page's file.
    EXPECT_FALSE(doc.serialize().contains(QStringLiteral("__kelda_glyphs")));
}

TEST_F(PageEngine, APageNotEditedLooksHatched)
{
    HtmlDocument doc = open(QStringLiteral("sample.htm"), SamplePage);
    pump(300);
    const QImage plain = browser->grab().toImage();
    EXPECT_EQ(doc.setHatched(true), 1);
    pump(300);
    EXPECT_NE(browser->grab().toImage(), plain);
    EXPECT_EQ(doc.designMode(), QStringLiteral("Off"));
}

TEST(GlyphTableRows, FollowTheTableOrderAndSwitches)
{
    GlyphTable::Switches anchorsOnly{true, false, false, false, false};
    const QVariantList rows = GlyphTable::parseRows(GlyphTable::rowsText(anchorsOnly));
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].toMap().value(QStringLiteral("tag")).toString(), QStringLiteral("a"));
    EXPECT_EQ(rows[1].toMap().value(QStringLiteral("side")).toInt(), 1);
    EXPECT_EQ(rows[0].toMap().value(QStringLiteral("w")).toInt(), 11);

    GlyphTable::Switches fontsOnly{false, false, false, false, true};
    EXPECT_TRUE(GlyphTable::rowsText(fontsOnly).isEmpty());

    GlyphTable::Switches scriptsAndSpans{false, false, true, true, false};
    QStringList tags;
    for (const QVariant &r : GlyphTable::parseRows(GlyphTable::rowsText(scriptsAndSpans)))
        tags << r.toMap().value(QStringLiteral("tag")).toString();
    EXPECT_EQ(tags, (QStringList{"script", "form", "form", "br", "p", "p", "span", "span"}));
    EXPECT_TRUE(GlyphTable::rowsText(scriptsAndSpans).startsWith(
        QStringLiteral("%%script^^%%res://vindrell.dll/#2/109^^%%0^^%%3^^%%3^^%%4%%16^^%%15^^")));
}

TEST(PageKeys, F5AndF11AreHeldOnlyWhileEditing)
{
    PageKeyFilter filter;
    EXPECT_FALSE(filter.swallows(PageKeyFilter::KeyF5));
    filter.setEditing(true);
    EXPECT_TRUE(filter.swallows(PageKeyFilter::KeyF5));
    EXPECT_TRUE(filter.swallows(PageKeyFilter::KeyF11));
    EXPECT_FALSE(filter.swallows('A'));
    filter.setSiteTreeFocus(true);
    EXPECT_FALSE(filter.swallows(PageKeyFilter::KeyF5));
    EXPECT_TRUE(filter.swallows(PageKeyFilter::KeyF11));
}

// Last: the page it hangs is its own.
TEST(PageScript, AScriptThatNeverAnswersEndsInAClearError)
{
    MError::ClearError();
    auto hung = std::make_unique<WebBrowser>();
    hung->Navigate2(TestServers::shared().otherBase() + QStringLiteral("/frame1.htm"));
    ASSERT_TRUE(hung->waitUntilComplete());
    const QVariant v = PageScriptCall::run(hung->page(), QStringLiteral("(function(){while(true){}})()"),
                                           QStringLiteral("Test.Hang"), 1500);
    EXPECT_FALSE(v.isValid());
    EXPECT_EQ(MError::ErrorNumber(), PageScriptCall::TimeoutError);
    EXPECT_EQ(MError::ErrorSource(), QStringLiteral("Test.Hang"));
    EXPECT_TRUE(MError::ErrorDescription().contains(QStringLiteral("did not answer")));
}

} // namespace
