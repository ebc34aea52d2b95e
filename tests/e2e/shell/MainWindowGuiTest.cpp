// The main window starts on the home page of the settings store and shows
// the page the web server gives.

#include "TestServers.h"
#include "platform/LocalFolders.h"
#include "shell/frmVindrell.h"

#include <QEventLoop>
#include <QSettings>
#include <QTimer>
#include <QWebEngineView>

#include <gtest/gtest.h>

namespace {
bool waitForLoad(QWebEngineView *view, int timeoutMs)
{
    QEventLoop loop;
    bool ok = false;
    QObject::connect(view, &QWebEngineView::loadFinished, &loop, [&](bool finished) {
        ok = finished;
        loop.quit();
    });
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
    return ok;
}
} // namespace

TEST(MainWindow, StartsOnTheHomePageOfTheStore)
{
    TestServers &servers = TestServers::shared();
    {
        QSettings store(LocalFolders::configFolder() + QStringLiteral("/keldacms.ini"),
                        QSettings::IniFormat);
        store.setValue(QStringLiteral("Browser/HomePage"), servers.httpBase() + QStringLiteral("/index.htm"));
    }
    frmVindrell window;
    EXPECT_EQ(window.windowTitle(), QStringLiteral("VindrellCMS"));
    window.show();
    ASSERT_TRUE(waitForLoad(window.browser(), 30000));
    EXPECT_EQ(window.browser()->title(), QStringLiteral("Kelda Demo Garden"));
    EXPECT_EQ(window.browser()->url().toString(), servers.httpBase() + QStringLiteral("/index.htm"));
}
