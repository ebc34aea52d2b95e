// The local text part of a save on a 1 MB page in design mode: strip the
// marks of editing, serialise it in the engine, settle its head tags, put
// META names first (in the second figure run it through HTML Tidy as well)
// and encode it for the upload. The upload itself is not part of it.

#include "config/MGlobalProjectObjects.h"
#include "document/CPageEncoding.h"
#include "document/CPageMetaTags.h"
#include "document/CSaveText.h"
#include "platform/HtmlDocument.h"
#include "BenchPage.h"
#include "platform/PageEngineEnvironment.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "support/MError.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QUrl>

#include <cstdio>
#include <vector>

namespace {

using G = MGlobalProjectObjects;

// About 1 MB of ordinary page: a head with its META tags and a body of
// tables and paragraphs with Swedish text, declared iso-8859-1 so that
// the charset check asks nothing.
QByteArray bigPage()
{
    QByteArray html = "<html><head><meta content=\"Anna\" name=\"author\">"
                      "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\">"
                      "<title>Big</title></head><body>\n";
    while (html.size() < 1024 * 1024) {
        html += "<table border=\"1\"><tr><td class=\"c\">R\xE4ksm\xF6rg\xE5s</td>"
                "<td><a href=\"sida.htm\">l\xE4nk</a></td></tr></table>\n"
                "<p style=\"color:blue\">Ett stycke text med <b>fet</b> och <i>kursiv</i> stil.</p>\n";
    }
    return html + "</body></html>\n";
}

// One local save; returns its milliseconds, or -1 when a step failed.
double saveOnce(WebBrowser &browser, const QString &url, bool tidy)
{
    browser.Navigate2(url);
    // The state still says complete for the page before until the load starts.
    PageScriptCall::pumpUntil([&] { return browser.ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
    if (!browser.waitUntilComplete())
        return -1;
    HtmlDocument doc = browser.Document();
    if (!PageScriptCall::pumpUntil([&] { return !doc.body().isNull(); }, 15000))
        return -1;
    G::UseTidy = tidy;
    G::TidyCharEncodingType = 3;
    G::TidyIndentScheme = 1;
    // In design mode, as a save finds the page: the editor's own style
    // elements are in the head and must stay out of the text.
    doc.setDesignMode(QStringLiteral("On"));
    doc.execDesign(HtmlDocument::ShowZeroBorderAtDesignTime, 0);
    // The engine restyles the page for the new look on its own time; a
    // save comes long after that.
    PageScriptCall::pumpUntil([] { return false; }, 1000);
    QElapsedTimer timer;
    timer.start();
    bool stripped = false;
    doc.stripEditMarks(stripped);
    // Save serialises once before the head tags change, as its fallback.
    const QString before = doc.serialize();
    if (!stripped || before.isEmpty() || CPageMetaTags::CheckCharCodeMetaTag(doc) != 1
        || CPageMetaTags::AddMetaEditTags(doc, QStringLiteral("Mon, 23 Nov 2026 00:00:00 GMT")) != 1)
        return -1;
    QString text = doc.serialize();
    if (tidy ? CSaveText::TidyUpHTML(text, text) != 1 : CSaveText::ReArrangeMetaNames(text, text) != 1)
        return -1;
    const QByteArray bytes = CPageEncoding::Encode(text);
    const double ms = timer.nsecsElapsed() / 1e6;
    if (bytes.size() < 1000000)
        std::fprintf(stderr, "the page came out with %lld bytes\n", qint64(bytes.size()));
    return bytes.size() >= 1000000 ? ms : -1;
}

} // namespace

int main(int argc, char **argv)
{
    PageEngineEnvironment::prepare();
    QApplication app(argc, argv);
    BenchPage page(bigPage());
    if (!page.ok())
        return 1;
    WebBrowser &browser = page.browser();
    const QString url = page.url();
    std::vector<double> plain;
    std::vector<double> tidied;
    for (int round = 0; round < 5; ++round) {
        plain.push_back(saveOnce(browser, url, false));
        tidied.push_back(saveOnce(browser, url, true));
        if (plain.back() < 0 || tidied.back() < 0) {
            std::fprintf(stderr, "a save step failed: %s\n", qPrintable(MError::ErrorDescription()));
            return 2;
        }
    }
    std::printf("save_local_ms %.1f ms\n", BenchPage::median(plain));
    std::printf("save_local_tidy_ms %.1f ms\n", BenchPage::median(tidied));
    return 0;
}
