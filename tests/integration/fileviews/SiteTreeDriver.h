#pragma once

// Drives the site pane as a user does: keys and clicks on the tree, the
// right-click menus, the modal dialogs that follow them; and waits with a
// deadline for what happens after the event loop has run.

#include "DemoSite.h"
#include "MenuPick.h"
#include "TestServers.h"
#include "fileviews/SitePane.h"
#include "fileviews/SiteTreeKeys.h"
#include "fileviews/SiteTreeWidget.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

namespace fileviews_test {

inline TestServers &servers()
{
    return TestServers::shared();
}

inline QString root()
{
    return SiteTreeKeys::RootKey(servers().httpBase());
}

// Runs act on the modal dialog of that name as soon as it shows.
inline void onModal(const QString &name, std::function<void(QWidget *)> act)
{
    auto *poll = new QTimer;
    poll->setInterval(10);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, name, act] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog || dialog->objectName() != name || !dialog->isVisible())
            return;
        poll->stop();
        poll->deleteLater();
        act(dialog);
    });
    poll->start();
}

inline void click(QWidget *dialog, const char *button)
{
    QTest::mouseClick(dialog->findChild<QPushButton *>(QString::fromLatin1(button)), Qt::LeftButton);
}

// Types into a box of the dialog over what it holds.
inline void type(QWidget *dialog, const char *box, const QString &text)
{
    auto *edit = dialog->findChild<QLineEdit *>(QString::fromLatin1(box));
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

inline bool waitFor(const std::function<bool()> &done, int ms = 20000)
{
    QDeadlineTimer deadline(ms);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

// The tree of a pane, reached by paths below the site.
struct TreeHands
{
    SiteTreeWidget *tree;

    QTreeWidgetItem *node(const QString &path) const
    {
        return tree->Node(path.isEmpty() ? root() : root() + QLatin1Char('/') + path);
    }
    QStringList children(const QString &path) const
    {
        QStringList names;
        QTreeWidgetItem *item = node(path);
        for (int i = 0; item && i < item->childCount(); ++i)
            names << item->child(i)->text(0);
        // In name order: the tree's own order is the listing's, which
        // is not what these tests are about.
        names.sort();
        return names;
    }
    QPoint at(const QString &path) const
    {
        tree->scrollToItem(node(path));
        return tree->visualItemRect(node(path)).center();
    }
    void key(const QString &path, Qt::Key key) const
    {
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, at(path));
        QTest::keyClick(tree, key);
    }
    // A right click on the node and the pick of an item of its menu.
    struct Seen
    {
        bool shown = false;
        QStringList enabled;
        QStringList hidden;
    };
    // What the menu that showed offered.
    Seen pick(const QString &path, const QString &item) const
    {
        MenuPick menu(item);
        QTest::mouseClick(tree->viewport(), Qt::RightButton, {}, at(path));
        return {menu.shown, menu.enabled, menu.hidden};
    }
};

} // namespace fileviews_test
