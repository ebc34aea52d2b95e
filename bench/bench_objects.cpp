// Page objects on large pages: the font size over a selection of 2,000
// elements (fontsize_ms), and a right click on a form field of a page of
// 5,000 elements until its menu is on screen (menu_ms).

#include "../tests/integration/document/DocumentWindow.h"
#include "BenchPage.h"
#include "PageMouse.h"
#include "document/CDocument.h"
#include "objects/ContextMenuDispatcher.h"
#include "objects/frmMenu.h"
#include "platform/PageEngineEnvironment.h"
#include "platform/PageScriptCall.h"
#include "support/MError.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QTimer>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

// 1,000 paragraphs of one bold word each: 2,000 elements in the selection.
QByteArray sizingPage()
{
    QByteArray html = "<html><head><title>Sizes</title></head><body>";
    for (int i = 0; i < 1000; ++i)
        html += "<p>Line " + QByteArray::number(i) + " <b>bold words</b> end</p>";
    return html + "</body></html>";
}

// A form field first, then paragraphs up to 5,000 elements.
QByteArray menuPage()
{
    QByteArray html = "<html><head><title>Menu</title></head><body><p><input id=\"field\" value=\"name\"></p>";
    for (int i = 0; i < 2497; ++i)
        html += "<p>text <span>more</span></p>";
    return html + "</body></html>";
}

std::unique_ptr<CDocument> editPage(BenchPage &page, document_test::Window &host)
{
    WebBrowser &browser = page.browser();
    browser.Navigate2(page.url());
    PageScriptCall::pumpUntil([&] { return browser.ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
    auto doc = std::make_unique<CDocument>();
    if (!browser.waitUntilComplete() || doc->Init(&host) != 1 || doc->EditOn(true) != 1) {
        std::fprintf(stderr, "edit: %s\n", qPrintable(MError::ErrorDescription()));
        return nullptr;
    }
    return doc;
}

double fontSizeRound(BenchPage &page, document_test::Window &host)
{
    auto doc = editPage(page, host);
    if (!doc)
        return -1;
    PageScriptCall::run(page.browser().page(),
                        QStringLiteral("(function(){var b=document.getElementsByTagName('b'),p=document.getElementsByTagName('p');"
                                       "var r=document.createRange();r.setStart(b[0].firstChild,3);"
                                       "r.setEnd(p[p.length-1].lastChild,2);getSelection().removeAllRanges();"
                                       "getSelection().addRange(r);return true;})()"),
                        QString());
    QElapsedTimer timer;
    timer.start();
    if (doc->Style().SetCaretFontSize(14) != 1)
        return -1;
    return timer.nsecsElapsed() / 1e6;
}

// From the press of the right button until the menu is visible; the menu
// is closed as soon as it is seen.
double menuRound(BenchPage &page, CDocument &doc)
{
    WebBrowser &browser = page.browser();
    const HtmlElement field = browser.Document().getElementById(QStringLiteral("field"));
    const QPoint at(field.offsetLeft() + 5, field.offsetTop() + 5);
    QElapsedTimer timer;
    double shownMs = -1;
    QTimer poll;
    poll.setInterval(1);
    QObject::connect(&poll, &QTimer::timeout, [&] {
        QMenu *menu = frmMenu::Shown();
        if (!menu || !menu->isVisible())
            return;
        shownMs = timer.nsecsElapsed() / 1e6;
        poll.stop();
        menu->close();
    });
    auto connection = QObject::connect(&browser, &WebBrowser::pageEvent, [&](const PageEvent &e) {
        if (e.type == QLatin1String("contextmenu"))
            ContextMenuDispatcher(doc).Dispatch(e.x, e.y);
    });
    QWidget *target = browser.focusProxy();
    for (int attempt = 0; attempt < 20 && shownMs < 0; ++attempt) {
        poll.start();
        timer.start();
        sendRightClick(target, at);
        PageScriptCall::pumpUntil([&] { return shownMs >= 0; }, 1000);
    }
    QObject::disconnect(connection);
    return shownMs;
}

} // namespace

int main(int argc, char **argv)
{
    PageEngineEnvironment::prepare();
    QApplication app(argc, argv);
    UserQuestions::Script({});
    std::vector<double> sizes, menus;
    {
        BenchPage page(sizingPage());
        document_test::Window host(&page.browser());
        for (int round = 0; round < 5; ++round) {
            const double ms = fontSizeRound(page, host);
            if (ms < 0)
                return 2;
            sizes.push_back(ms);
        }
    }
    BenchPage page(menuPage());
    document_test::Window host(&page.browser());
    auto doc = editPage(page, host);
    if (!doc)
        return 3;
    for (int round = 0; round < 7; ++round) {
        const double ms = menuRound(page, *doc);
        if (ms < 0)
            return 4;
        menus.push_back(ms);
    }
    std::printf("fontsize_ms %.1f ms\n", BenchPage::median(sizes));
    std::printf("menu_ms %.1f ms\n", BenchPage::median(menus));
    return 0;
}
