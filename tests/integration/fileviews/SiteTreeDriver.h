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
#include "support/UserQuestions.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QDirIterator>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>
#include <stdexcept>

namespace fileviews_test {

inline TestServers &servers()
{
    return TestServers::shared();
}

inline QString root()
{
    return SiteTreeKeys::RootKey(servers().httpBase());
}

// A file of the site's folder on the servers' disk.
inline QString web(const QString &relative)
{
    return servers().webRoot() + QLatin1Char('/') + relative;
}

// Writes a file, and the folders it needs.
inline void put(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("the test could not write " + path.toStdString());
}

inline QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The files below a folder, by their paths in it, in name order.
inline QStringList filesBelow(const QString &folder)
{
    QStringList out;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        out << QDir(folder).relativeFilePath(it.next());
    out.sort();
    return out;
}

// The texts of the questions and messages shown so far.
inline QStringList texts()
{
    QStringList shown;
    for (const UserQuestions::Shown &message : UserQuestions::ShownSoFar())
        shown << message.text;
    return shown;
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

// Types into a box of the dialog over what it holds. No text empties the
// box with the Delete key, as a user does: typing nothing over the
// selection would send no key, and the box would keep its text unedited.
inline void type(QWidget *dialog, const char *box, const QString &text)
{
    auto *edit = dialog->findChild<QLineEdit *>(QString::fromLatin1(box));
    edit->selectAll();
    if (text.isEmpty())
        QTest::keyClick(edit, Qt::Key_Delete);
    else
        QTest::keyClicks(edit, text);
}

inline bool waitFor(const std::function<bool()> &done, int ms = 20000)
{
    QDeadlineTimer deadline(ms);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

// A drag as the window system delivers it over a widget, then the drop.
// Whether the widget took the drop.
inline bool dropOn(QWidget *target, QMimeData *data, const QPoint &at)
{
    QDragEnterEvent enter(at, Qt::CopyAction | Qt::MoveAction, data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &enter);
    QDragMoveEvent move(at, Qt::CopyAction | Qt::MoveAction, data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &move);
    QDropEvent drop(at, Qt::CopyAction, data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(target, &drop);
    return drop.isAccepted();
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
