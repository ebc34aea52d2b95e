// One round trip over a large page: number every image and strip two
// attributes from every element, as entering and leaving edit mode do.

#include "platform/HtmlDocument.h"
#include "BenchPage.h"
#include "platform/PageEngineEnvironment.h"
#include "platform/WebBrowser.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTextStream>
#include <QUrl>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// 5,000 elements: html, head, title, body, 500 images and the rest
// paragraphs and spans carrying the attributes to strip.
QByteArray bigPage()
{
    return BenchPage::fiveThousandElements(" vismark=\"true\" keldakey=\"old\"",
                                           "<p vismark=\"true\" keldakey=\"1\">text <span keldakey=\"2\">more</span></p>");
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
    std::vector<double> runs;
    for (int round = 0; round < 5; ++round) {
        browser.Navigate2(page.url());
        if (!browser.waitUntilComplete())
            return 2;
        HtmlDocument doc = browser.Document();
        if (doc.allLength() != 5000) {
            std::fprintf(stderr, "page has %d elements\n", doc.allLength());
            return 3;
        }
        QElapsedTimer timer;
        timer.start();
        const long keyed = doc.keyAndStrip(QStringLiteral("IMG"), QStringLiteral("keldaKey"),
                                           {QStringLiteral("vismark"), QStringLiteral("keldakey")});
        runs.push_back(timer.nsecsElapsed() / 1e6);
        if (keyed != 500)
            return 4;
    }
    std::sort(runs.begin(), runs.end());
    std::printf("walk_ms %.1f ms\n", runs[runs.size() / 2]);
    return 0;
}
