// The window of a viewed revision: a real browser on the viewing copy, and
// the copy gone from the server once the user closes the window.

#include "RevisionSite.h"

#include "history/CRollback.h"
#include "history/frmBrowser.h"

#include <QApplication>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineView>

#include <gtest/gtest.h>

using namespace history_test;

TEST(ViewBackupWindow, ShowsTheRevisionAndRemovesTheCopyOnClose)
{
    useDemoSite();
    setHistorySize(5);
    removeHistory();
    MError::ClearError();
    servers().writeWebFile(QStringLiteral("viewed.htm"), "<html><body>the kept words</body></html>");
    CRollback backup;
    ASSERT_EQ(backup.BackupPage(QStringLiteral("/www/viewed.htm")), 1);
    servers().writeWebFile(QStringLiteral("viewed.htm"), "<html><body>newer</body></html>");
    const QString id = serverIndex().value(QStringLiteral("/www/viewed.htm"), QStringLiteral("ID"));

    frmBrowser::InstallAsRevisionViewer();
    QString title, text;
    bool copyThere = false;
    // The user reads the page, then closes the window.
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto *window = qobject_cast<frmBrowser *>(QApplication::activeModalWidget());
        if (!window)
            return;
        auto *view = window->findChild<QWebEngineView *>();
        view->page()->toPlainText([&, window](const QString &plain) {
            if (!plain.contains(QStringLiteral("kept words")))
                return;
            text = plain;
            title = window->windowTitle();
            copyThere = QFile::exists(servers().webRoot() + QLatin1Char('/') + id + QStringLiteral(".html"));
            window->close();
        });
    });
    poll.start(100);
    QTimer::singleShot(60000, [] {
        if (QWidget *window = QApplication::activeModalWidget())
            window->close();
    });

    CRollback list;
    ASSERT_EQ(list.GetFirstBackup(QStringLiteral("/www/viewed.htm"), QString()), 1);
    ASSERT_EQ(list.ViewBackup(1), 1);
    poll.stop();
    CRollback::SetViewer(nullptr);
    EXPECT_EQ(text.trimmed(), QStringLiteral("the kept words"));
    EXPECT_EQ(title, QStringLiteral("Backup av: ") + servers().httpBase() + QStringLiteral("/viewed.htm"));
    EXPECT_TRUE(copyThere);
    EXPECT_FALSE(QFile::exists(servers().webRoot() + QLatin1Char('/') + id + QStringLiteral(".html")));
}
