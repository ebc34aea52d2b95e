// Paste during an edit session on the main window: HTML copied from a page
// of one folder pasted into a page of another, and HTML left on the
// clipboard the way other browsers leave it, all saved to the server with
// addresses that work from the page they went into.

#include "SessionWindow.h"
#include "document/CPageEncoding.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QStringEncoder>
#include <QTest>

using namespace session_test;

namespace {

// The main window's page, driven with the keys.
struct Keys
{
    Window &w;

    QWidget *target() { return w.form.browser()->focusProxy(); }
    // Selects the element's content in the page that has the keys.
    void select(const QString &id)
    {
        w.form.activateWindow();
        w.form.browser()->setFocus();
        PageScriptCall::run(w.form.browser()->page(), QStringLiteral("window.focus(); true"), QString());
        HtmlTextRange::aroundElement(w.page().getElementById(id)).select();
    }
    // Pastes over the element's content until the page shows the text.
    bool pasteOver(const QString &id, const QString &expected)
    {
        for (int attempt = 0; attempt < 5; ++attempt) {
            select(id);
            QTest::keyClick(target(), Qt::Key_V, Qt::ControlModifier);
            if (PageScriptCall::pumpUntil([&] { return body().contains(expected); }, 3000))
                return true;
        }
        return false;
    }
    QString body() { return w.page().body().innerHTML(); }
};

void putOnClipboard(const QByteArray &html, const QByteArray &source = {})
{
    auto *data = new QMimeData;
    data->setData(QStringLiteral("text/html"), html);
    if (!source.isEmpty())
        data->setData(QStringLiteral("text/x-moz-url-priv"), source);
    QGuiApplication::clipboard()->setMimeData(data);
}

QByteArray utf16le(const QString &text)
{
    auto encode = QStringEncoder(QStringEncoder::Utf16LE);
    return encode(text);
}

class ClipboardPaste : public SessionTest
{
};

TEST_F(ClipboardPaste, FragmentsFromThisAndOtherBrowsersArriveWithWorkingAddresses)
{
    servers().writeWebFile(QStringLiteral("clip/from/a.htm"),
                           "<HTML><HEAD><TITLE>From</TITLE></HEAD><BODY>"
                           "<P id=\"src\">See <A href=\"../../products/index.htm\">our products</A> "
                           "<IMG src=\"../../img/logo.png\" width=\"20\" height=\"20\"> and "
                           "<A href=\"#top\">the top</A></P></BODY></HTML>");
    servers().writeWebFile(QStringLiteral("about/b.htm"),
                           "<HTML><HEAD><TITLE>Target</TITLE></HEAD><BODY>\n<P>One: <SPAN id=\"one\">1</SPAN></P>\n"
                           "<P>Two: <SPAN id=\"two\">2</SPAN></P>\n<P>Three: <SPAN id=\"three\">3</SPAN></P>\n"
                           "<P>Four: <SPAN id=\"four\">4</SPAN></P>\n</BODY></HTML>");
    UserQuestions::Script({OK, OK, OK, OK});
    Window w;
    Keys page{w};

    // Copied in this program's browser, from a page two folders down.
    w.open(QStringLiteral("clip/from/a.htm"));
    QGuiApplication::clipboard()->clear();
    page.select(QStringLiteral("src"));
    QTest::keyClick(page.target(), Qt::Key_C, Qt::ControlModifier);
    ASSERT_TRUE(PageScriptCall::pumpUntil([] {
        const QMimeData *data = QGuiApplication::clipboard()->mimeData();
        return data && data->html().contains(QStringLiteral("logo.png"));
    }, 10000));

    ASSERT_TRUE(w.edit(QStringLiteral("about/b.htm")));
    ASSERT_TRUE(page.pasteOver(QStringLiteral("one"), QStringLiteral("our products")));
    // The engine puts the copy in place of the selected element's text.
    EXPECT_TRUE(page.body().contains(QStringLiteral("href=\"../products/index.htm\""))) << page.body().toStdString();
    EXPECT_TRUE(page.body().contains(QStringLiteral("src=\"../img/logo.png\""))) << page.body().toStdString();

    // As Chromium writes it: UTF-8 behind a META charset, absolute
    // addresses. Script and event attributes come along, and nothing runs.
    const QByteArray site = servers().httpBase().toUtf8();
    putOnClipboard("<meta charset='utf-8'><b id=\"chr\" onclick=\"document.title='clicked'\">Chromium b\xC3\xB6ld</b> "
                   "<a href=\"" + site + "/products/index.htm?x=1&amp;y=2\">abs</a>"
                   "<img id=\"broken\" src=\"" + site + "/img/none.png\" onerror=\"document.title='ran'\">"
                   "<script>document.title='ran';</script>");
    ASSERT_TRUE(page.pasteOver(QStringLiteral("two"), QStringLiteral("Chromium böld")));
    HtmlElement broken = w.page().getElementById(QStringLiteral("broken"));
    ASSERT_TRUE(PageScriptCall::pumpUntil([&] { return broken.property(QStringLiteral("complete")).toBool(); }, 10000));
    EXPECT_EQ(w.page().title(), QStringLiteral("Target"));

    // As Firefox writes it: UTF-16 with a byte order mark between fragment
    // marks, the page's address beside it, relative addresses.
    putOnClipboard("\xFF\xFE" + utf16le(QStringLiteral("<html><body>\n<!--StartFragment--><i>Firefox å</i> "
                                                       "<img src=\"img/leaf.png\"><!--EndFragment-->\n</body>\n</html>")),
                   utf16le(servers().httpBase() + QStringLiteral("/index.htm")));
    ASSERT_TRUE(page.pasteOver(QStringLiteral("three"), QStringLiteral("Firefox å")));
    EXPECT_TRUE(page.body().contains(QStringLiteral("src=\"../img/leaf.png\""))) << page.body().toStdString();

    // Far too much at once is refused in words, and the page stays.
    putOnClipboard("<p>" + QByteArray(9 * 1024 * 1024, 'x') + "</p>");
    page.select(QStringLiteral("four"));
    QTest::keyClick(page.target(), Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(PageScriptCall::pumpUntil([] { return countStartingWith(shownTexts(), QStringLiteral("The clipboard holds 9.0 MB")) > 0; },
                                          10000));
    EXPECT_EQ(w.page().getElementById(QStringLiteral("four")).innerText(), QStringLiteral("4"));

    w.pressSave();
    EXPECT_FALSE(w.editing());
    EXPECT_EQ(errorDialogs(), 0) << firstError();
    const QString saved = CPageEncoding::Decode(servers().readWebFile(QStringLiteral("about/b.htm")));
    for (const char *part : {"href=\"../products/index.htm\"", "src=\"../img/logo.png\"", "#top\"",
                             "href=\"../products/index.htm?x=1&amp;y=2\"", "onclick=\"document.title='clicked'\"",
                             "<script>document.title='ran';</script>", "src=\"../img/leaf.png\"", "Firefox \xC3\xA5",
                             "Chromium b\xC3\xB6ld", "<P>Four: <SPAN id=\"four\">4</SPAN></P>"})
        EXPECT_TRUE(saved.contains(QString::fromUtf8(part))) << part << "\n" << saved.toStdString();
    EXPECT_FALSE(saved.contains(servers().httpBase())) << saved.toStdString();
}

} // namespace
