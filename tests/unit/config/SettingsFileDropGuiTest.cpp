#include "config/CPublicSettings.h"
#include "config/CSettingsFile.h"
#include "platform/CReg.h"
#include "platform/LocalFolders.h"
#include "shell/frmVindrell.h"
#include "support/UserQuestions.h"

#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QUrl>
#include <QWebEngineView>

#include <gtest/gtest.h>

namespace {
using G = MGlobalProjectObjects;

// Sends a real drag-enter and drop to a widget, as the desktop would.
bool dropOn(QWidget &window, QMimeData &data)
{
    const QPoint at(20, 20);
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(QPointF(at), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
    return true;
}
} // namespace

TEST(SettingsFileDropGui, DroppedFileOnTheWindowAddsASiteAndDamageIsReported)
{
    QFile::remove(CReg::StorePath());
    frmVindrell window;
    SiteRecord site;
    site.userid = QStringLiteral("demo");
    site.baseaddress = QStringLiteral("http://dropped.example.com");
    const QString path = LocalFolders::tempFolder() + QStringLiteral("/dropped.pset");
    ASSERT_EQ(CSettingsFile::WriteFile(path, CSettingsFile::FromSite(site, QStringLiteral("ed"), QString())), 1);

    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    UserQuestions::Script({UserQuestions::vbNo});
    ASSERT_TRUE(dropOn(window, data));
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_TRUE(UserQuestions::ShownSoFar()[0].text.endsWith(QStringLiteral("Do you want to navigate there?")));
    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    ASSERT_EQ(G::URLDATA.size(), 1u);
    EXPECT_EQ(G::URLDATA[0].baseaddress, QStringLiteral("http://dropped.example.com"));
    EXPECT_EQ(G::URLDATA[0].isactive, QStringLiteral("1"));

    // A cut file: the error is shown, nothing else happens.
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.resize(file.size() / 2);
    file.close();
    UserQuestions::Script({UserQuestions::vbOK});
    ASSERT_TRUE(dropOn(window, data));
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    EXPECT_EQ(UserQuestions::ShownSoFar()[0].text,
              QStringLiteral("The settings file is damaged or is not a Vindrell settings file."));
    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    EXPECT_EQ(G::URLDATA.size(), 1u);

    // Dropped over the page rather than the window's own frame.
    ASSERT_EQ(CSettingsFile::WriteFile(path, CSettingsFile::FromSite(site, QStringLiteral("ed"), QString())), 1);
    QWidget *page = window.browser()->focusProxy() ? window.browser()->focusProxy() : window.browser();
    UserQuestions::Script({UserQuestions::vbNo});
    ASSERT_TRUE(dropOn(*page, data));
    ASSERT_EQ(UserQuestions::ShownSoFar().size(), 1);
    ASSERT_EQ(CPublicSettings().GetURLSettings(), 1);
    EXPECT_EQ(G::URLDATA.size(), 2u);

    UserQuestions::EndScript();
    QFile::remove(path);
    QFile::remove(CReg::StorePath());
}
