// Entering and leaving edit mode on a large page: 5,000 elements, 500 of
// them images that each become a registered object.

#include "../tests/integration/document/DocumentWindow.h"
#include "document/CDocument.h"
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

QByteArray bigPage()
{
    return BenchPage::fiveThousandElements(" vismark=\"true\"",
                                           "<p vismark=\"true\">text <span>more</span></p>");
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
    document_test::Window host(&browser);
    std::vector<double> on, off;
    for (int round = 0; round < 5; ++round) {
        browser.Navigate2(page.url());
        PageScriptCall::pumpUntil([&] { return browser.ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
        if (!browser.waitUntilComplete())
            return 2;
        CDocument doc;
        if (doc.Init(&host) != 1) {
            std::fprintf(stderr, "init: %s\n", qPrintable(MError::ErrorDescription()));
            return 3;
        }
        QElapsedTimer timer;
        timer.start();
        if (doc.EditOn(true) != 1 || doc.ObjectCount() != 500) {
            std::fprintf(stderr, "edit on: %ld objects, %s\n", doc.ObjectCount(), qPrintable(MError::ErrorDescription()));
            return 4;
        }
        on.push_back(timer.nsecsElapsed() / 1e6);
        timer.restart();
        if (doc.EditOn(false) != 1)
            return 5;
        off.push_back(timer.nsecsElapsed() / 1e6);
    }
    std::printf("editon_ms %.1f ms\n", BenchPage::median(on));
    std::printf("editoff_ms %.1f ms\n", BenchPage::median(off));
    return 0;
}
