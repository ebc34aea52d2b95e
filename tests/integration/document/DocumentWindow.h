#pragma once

#include "document/CDocEventHandler.h"
#include "DemoSite.h"
#include "TestServers.h"
#include "config/MGlobalProjectObjects.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"

#include <gtest/gtest.h>

namespace document_test {

// The main window's side, as far as a document needs it.
class Window : public CDocEventHandler
{
public:
    explicit Window(WebBrowser *browser) : m_browser(browser) {}
    long StartTransfer(const QString &) override { return 1; }
    long EndTransfer(const QString &) override { return 1; }
    long SetNavigateComplete(const QString &) override { return 1; }
    long GetNavigateComplete(const QString &, bool &) override { return 1; }
    long Show(bool) override { return 1; }
    long Click(long, bool &) override { return 1; }
    long DebugMsg(const QString &) override { return 1; }
    long GetFrameNames(QStringList &) override { return 1; }
    long GetNumberOfFrames() override { return 0; }
    long GetDocumentTitle(QString &t) override { t = m_browser->Document().title(); return 1; }
    long LetDocumentTitle(const QString &) override { return 1; }
    long GetDocument(HtmlDocument &d) override { d = m_browser->Document(); return 1; }
    long GetIE(WebBrowser *&ie) override { ie = m_browser; return 1; }
    long GetDocIndex(long &i) override { i = 0; return 1; }
    long GetForm(QWidget *&f) override { f = nullptr; return 1; }
    long GetPaneStatus(long &s) override { s = 0; return 1; }

private:
    WebBrowser *m_browser;
};

inline void useDemoSite()
{
    MGlobalProjectObjects::URLDATA = {demoSiteRecord(TestServers::shared())};
    MGlobalProjectObjects::lCurrentURL = 0;
}

inline void load(WebBrowser &browser, const QString &address)
{
    browser.Navigate2(address, WebBrowser::NavNoReadFromCache);
    PageScriptCall::pumpUntil([&] { return browser.ReadyState() != WebBrowser::ReadyStateComplete; }, 2000);
    EXPECT_TRUE(browser.waitUntilComplete());
}

// A browser on screen with its window side, for one test.
struct Screen
{
    Screen()
    {
        browser.resize(800, 600);
        browser.show();
    }
    // Puts the page on the demo site and shows it.
    void open(const QString &path, const QByteArray &body)
    {
        useDemoSite();
        TestServers::shared().writeWebFile(path, body);
        load(browser, TestServers::shared().httpBase() + QStringLiteral("/") + path);
    }
    WebBrowser browser;
    Window window{&browser};
};

} // namespace document_test
