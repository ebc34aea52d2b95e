// The local tree in the site pane, on a home folder of its own and the
// fixture's servers: the folders read when opened, what can't be opened or
// sent told in words, a file dragged up to a site folder, files of the site
// dropped on a local folder with the question for a file that is there
// already, and downloads that the disk refuses.

#include "SiteTreeDriver.h"
#include "config/MGlobalProjectObjects.h"
#include "fileviews/CLocalTreeView.h"
#include "fileviews/CSiteTreeView.h"
#include "fileviews/FileTreeWidget.h"
#include "fileviews/ReplaceFileDialog.h"
#include "fileviews/frmTreeViewLocal.h"
#include "support/MError.h"

#include <QMimeData>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <memory>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace fileviews_test;

namespace {

// File permissions refuse this thread as they refuse a user, also when the
// tests run as root, who reads and writes past them.
class AsAUser
{
public:
    AsAUser()
    {
        syscall(SYS_capget, &m_header, m_saved);
        __user_cap_data_struct lowered[2] = {m_saved[0], m_saved[1]};
        for (int cap : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER})
            lowered[0].effective &= ~(1u << cap);
        syscall(SYS_capset, &m_header, lowered);
    }
    ~AsAUser() { syscall(SYS_capset, &m_header, m_saved); }

private:
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_saved[2]{};
};

// Files can't grow past a size, as on a disk with that much room left:
// a write past it fails as a write to a full disk does.
class RoomLeft
{
public:
    explicit RoomLeft(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_saved);
        m_signal = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit room{bytes, m_saved.rlim_max};
        setrlimit(RLIMIT_FSIZE, &room);
    }
    ~RoomLeft()
    {
        setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, m_signal);
    }

private:
    rlimit m_saved{};
    void (*m_signal)(int) = nullptr;
};

class LocalTreeTest : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers())};
        MGlobalProjectObjects::lCurrentURL = 0;
        QDir(web(QStringLiteral("lt"))).removeRecursively();
        put(web(QStringLiteral("lt/page.htm")), "<html><body>server</body></html>");
        put(web(QStringLiteral("lt/sub/deep.htm")), "deep");
        m_home = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(home.path()));
        put(home.filePath(QStringLiteral("docs/a.txt")), "a");
        put(home.filePath(QStringLiteral("docs/b.htm")), "b");
        put(home.filePath(QStringLiteral("notes.txt")), "notes");
        put(home.filePath(QStringLiteral(".profile")), "hidden");
        put(home.filePath(QStringLiteral(".config/x.ini")), "hidden");
        QDir(home.path()).mkdir(QStringLiteral("empty"));
        pane.resize(420, 900);
        pane.show();
        UserQuestions::Script({});
        pane.Open();
        ASSERT_GT(pane.tvwSiteTree->Count(), 0) << MError::ErrorDescription().toStdString();
        site.key(QStringLiteral("lt"), Qt::Key_Right);
    }
    void TearDown() override
    {
        qputenv("HOME", m_home);
        UserQuestions::EndScript();
        MGlobalProjectObjects::AdvancedUserSettings = 0;
        CSiteTreeView::g_boolSiteTreeDrag = false;
        CLocalTreeView::g_boolLocalTreeDrag = false;
        MError::ClearError();
    }

    FileTreeWidget *tree() const { return pane.LocalForm->tvwLocal; }
    QTreeWidgetItem *homeNode() const { return tree()->topLevelItem(0)->child(0); }
    // A node below the home folder by its path there; "" the home itself.
    QTreeWidgetItem *local(const QString &relative) const
    {
        QTreeWidgetItem *node = homeNode();
        for (const QString &name : relative.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
            QTreeWidgetItem *next = nullptr;
            for (int i = 0; node && i < node->childCount() && !next; ++i)
                next = node->child(i)->text(0) == name ? node->child(i) : nullptr;
            node = next;
        }
        return node;
    }
    static QStringList children(const QTreeWidgetItem *node)
    {
        QStringList names;
        for (int i = 0; node && i < node->childCount(); ++i)
            names << node->child(i)->text(0);
        return names;
    }
    QPoint at(QTreeWidgetItem *node) const
    {
        tree()->scrollToItem(node);
        return tree()->visualItemRect(node).center();
    }
    void key(QTreeWidgetItem *node, Qt::Key key) const
    {
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, at(node));
        QTest::keyClick(tree(), key);
    }
    // The site node dragged onto a local node, answered as scripted; ends
    // when the drop has been dealt with and every answer taken.
    bool dragDown(const QString &sitePath, QTreeWidgetItem *target, const QList<long> &answers)
    {
        QTest::mouseClick(pane.tvwSiteTree->viewport(), Qt::LeftButton, {}, site.at(sitePath));
        UserQuestions::Script(answers);
        std::unique_ptr<QMimeData> data(pane.SiteTree().DragData(site.node(sitePath)));
        const bool taken = dropOn(tree()->viewport(), data.get(), at(target));
        CSiteTreeView::g_boolSiteTreeDrag = false;
        return taken && waitFor([&] { return texts().size() >= answers.size(); });
    }

    QTemporaryDir home;
    QByteArray m_home;
    SitePane pane;
    TreeHands site{pane.tvwSiteTree};
};

} // namespace

// The home folder opens at the start; a folder opened, closed and opened
// again shows what was read the first time, once; F5 reads it anew.
TEST_F(LocalTreeTest, TheHomeFolderIsReadOnceAndHiddenFilesFollowTheOption)
{
    ASSERT_EQ(FileTreeWidget::Key(homeNode()), home.path());
    EXPECT_TRUE(homeNode()->isExpanded());
    EXPECT_EQ(children(homeNode()), QStringList({"docs", "empty", "notes.txt"}));
    EXPECT_EQ(local(QStringLiteral("empty"))->childCount(), 0);
    EXPECT_EQ(children(local(QStringLiteral("docs"))), QStringList({"***"}));

    key(local(QStringLiteral("docs")), Qt::Key_Right);
    EXPECT_EQ(children(local(QStringLiteral("docs"))), QStringList({"a.txt", "b.htm"}));
    EXPECT_EQ(FileTreeWidget::Image(local(QStringLiteral("docs/b.htm"))), 4);
    EXPECT_EQ(FileTreeWidget::Image(local(QStringLiteral("docs"))), 2);
    put(home.filePath(QStringLiteral("docs/c.css")), "c");
    key(local(QStringLiteral("docs")), Qt::Key_Left);
    key(local(QStringLiteral("docs")), Qt::Key_Right);
    EXPECT_EQ(children(local(QStringLiteral("docs"))), QStringList({"a.txt", "b.htm"}));
    key(local(QStringLiteral("docs")), Qt::Key_F5);
    EXPECT_EQ(children(local(QStringLiteral("docs"))), QStringList({"a.txt", "b.htm", "c.css"}));

    MGlobalProjectObjects::AdvancedUserSettings = advShowAllFiles;
    key(homeNode(), Qt::Key_F5);
    EXPECT_EQ(children(homeNode()), QStringList({".config", "docs", "empty", ".profile", "notes.txt"}));
    EXPECT_TRUE(texts().isEmpty()) << texts().join(QLatin1Char('\n')).toStdString();
}

// Nothing of these hangs the tree or fails without a word: a folder the
// user may not read or that went away says so when opened and stays
// closed; a name that is no UTF-8, a link in a circle, a link back into
// the folder that holds it and a link to nothing show with their reason,
// and the name that is no text is refused when dragged.
TEST_F(LocalTreeTest, WhatCantBeOpenedOrSentIsToldInClearWords)
{
    put(home.filePath(QStringLiteral("locked/inner.txt")), "x");
    QFile::setPermissions(home.filePath(QStringLiteral("locked")), QFileDevice::Permissions());
    put(home.filePath(QStringLiteral("going/inner.txt")), "x");
    // Written by its bytes: the name is no text to give Qt.
    const QByteArray raw = QFile::encodeName(home.path()) + "/bad\xff\xfe.txt";
    ASSERT_EQ(::close(::creat(raw.constData(), 0644)), 0);
    for (const auto &[link, target] : {std::pair{"circle1", "circle2"}, std::pair{"circle2", "circle1"},
                                       std::pair{"back", "."}, std::pair{"nothing", "gone.txt"}})
        ASSERT_EQ(::symlink(target, QFile::encodeName(home.filePath(QString::fromLatin1(link))).constData()), 0);
    key(homeNode(), Qt::Key_F5);
    EXPECT_EQ(children(homeNode()), QStringList({"back", "docs", "empty", "going", "locked", QString::fromUtf8("bad\xef\xbf\xbd\xef\xbf\xbd.txt"),
                                                 "circle1", "circle2", "notes.txt", "nothing"}));
    EXPECT_EQ(local(QStringLiteral("back"))->childCount(), 0);
    EXPECT_EQ(local(QStringLiteral("back"))->toolTip(0),
              QStringLiteral("This link leads to %1, a folder that holds it, so it is not opened again here.").arg(home.path()));
    EXPECT_EQ(local(QStringLiteral("circle1"))->toolTip(0), QStringLiteral("This link leads round in a circle and points to no file."));
    EXPECT_EQ(local(QStringLiteral("nothing"))->toolTip(0),
              QStringLiteral("This link points to %1, which is not there.").arg(home.filePath(QStringLiteral("gone.txt"))));

    QTreeWidgetItem *badName = local(QString::fromUtf8("bad\xef\xbf\xbd\xef\xbf\xbd.txt"));
    const QString noText = QStringLiteral("This name is not valid UTF-8 text, so the file can't be opened or sent from here. "
                                          "Give it a new name on this computer first.");
    EXPECT_EQ(badName->toolTip(0), noText);
    UserQuestions::Script({});
    EXPECT_EQ(pane.LocalTree().DragData(badName), nullptr);
    EXPECT_EQ(texts(), QStringList({badName->text(0) + QStringLiteral(": ") + noText}));

    {
        const AsAUser user;
        key(local(QStringLiteral("locked")), Qt::Key_Right);
    }
    QDir(home.filePath(QStringLiteral("going"))).removeRecursively();
    key(local(QStringLiteral("going")), Qt::Key_Right);
    EXPECT_EQ(texts().mid(1),
              QStringList({QStringLiteral("The folder %1 can't be read: you have no permission to open it.")
                               .arg(home.filePath(QStringLiteral("locked"))),
                           QStringLiteral("The folder %1 is not there any more: it may have been moved or deleted, or its "
                                          "disk taken away.")
                               .arg(home.filePath(QStringLiteral("going")))}));
    for (const char *name : {"locked", "going"}) {
        EXPECT_FALSE(local(QString::fromLatin1(name))->isExpanded()) << name;
        EXPECT_EQ(children(local(QString::fromLatin1(name))), QStringList({"***"})) << name;
    }
    QFile::setPermissions(home.filePath(QStringLiteral("locked")), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

// What a drag from the local tree carries is taken by a folder of the site
// tree, which sends it up after its question.
TEST_F(LocalTreeTest, AFileDraggedToASiteFolderGoesUp)
{
    UserQuestions::Script({UserQuestions::vbYes});
    std::unique_ptr<QMimeData> data(pane.LocalTree().DragData(local(QStringLiteral("notes.txt"))));
    EXPECT_TRUE(CLocalTreeView::g_boolLocalTreeDrag);
    ASSERT_TRUE(dropOn(pane.tvwSiteTree->viewport(), data.get(), site.at(QStringLiteral("lt/sub"))));
    ASSERT_TRUE(waitFor([] { return servers().readWebFile(QStringLiteral("lt/sub/notes.txt")) == "notes"; }))
        << texts().join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(texts().value(0).startsWith(QStringLiteral("Do you want to transfer this: 1 files and 0 folders?")));
    // A whole disk is not dragged.
    EXPECT_EQ(pane.LocalTree().DragData(homeNode()), nullptr);
}

// A file of the site dropped on a local folder comes down after the
// question; dropped again, the file that is there is skipped, replaced or
// kept beside the new one, as answered. A folder comes down with all in it,
// one answer serving every file that is there; closing the question stops
// the download.
TEST_F(LocalTreeTest, ServerFilesComeDownAndAFileThereIsAskedAbout)
{
    QTreeWidgetItem *docs = local(QStringLiteral("docs"));
    key(docs, Qt::Key_Right);
    const QString page = home.filePath(QStringLiteral("docs/page.htm"));
    const QByteArray server = servers().readWebFile(QStringLiteral("lt/page.htm"));
    ASSERT_TRUE(dragDown(QStringLiteral("lt/page.htm"), docs, {UserQuestions::vbNo}));
    EXPECT_FALSE(QFileInfo::exists(page));
    EXPECT_TRUE(texts().value(0).startsWith(QStringLiteral("You have highlighted 0 folders and sub-folders containing 1 files.\n"
                                                           "The size of the highlighted items are 32 byte\n\n"
                                                           "Do you wish to download these files to %1?")
                                                .arg(docs->data(0, FileTreeWidget::KeyRole).toString())))
        << texts().value(0).toStdString();

    // The download button does what the drop does.
    QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, at(docs));
    UserQuestions::Script({UserQuestions::vbYes});
    QTest::mouseClick(pane.findChild<QPushButton *>(QStringLiteral("cmdDownloadFiles")), Qt::LeftButton);
    EXPECT_EQ(bytesOf(page), server);

    put(page, "mine");
    ASSERT_TRUE(dragDown(QStringLiteral("lt/page.htm"), docs, {UserQuestions::vbYes, ReplaceFileDialog::Skip}));
    EXPECT_EQ(texts().value(1), QStringLiteral("page.htm is already in %1.\n\nReplace it with the file from the site, skip "
                                               "it, or keep both and save the new one as page (2).htm?")
                                    .arg(home.filePath(QStringLiteral("docs"))));
    EXPECT_EQ(bytesOf(page), "mine");
    ASSERT_TRUE(dragDown(QStringLiteral("lt/page.htm"), docs, {UserQuestions::vbYes, ReplaceFileDialog::Rename}));
    EXPECT_EQ(bytesOf(page), "mine");
    EXPECT_EQ(bytesOf(home.filePath(QStringLiteral("docs/page (2).htm"))), server);
    ASSERT_TRUE(dragDown(QStringLiteral("lt/page.htm"), docs, {UserQuestions::vbYes, ReplaceFileDialog::Replace}));
    EXPECT_EQ(bytesOf(page), server);
    // The open folder shows what came, read anew.
    EXPECT_EQ(children(docs), QStringList({"a.txt", "b.htm", "page (2).htm", "page.htm"}));

    put(home.filePath(QStringLiteral("docs/lt/page.htm")), "old");
    put(home.filePath(QStringLiteral("docs/lt/sub/deep.htm")), "old");
    ASSERT_TRUE(dragDown(QStringLiteral("lt"), local(QStringLiteral("docs")),
                         {UserQuestions::vbYes, ReplaceFileDialog::Replace | ReplaceFileDialog::ForAll}));
    EXPECT_EQ(texts().size(), 2);
    EXPECT_EQ(bytesOf(home.filePath(QStringLiteral("docs/lt/page.htm"))), server);
    EXPECT_EQ(bytesOf(home.filePath(QStringLiteral("docs/lt/sub/deep.htm"))), "deep");

    QDir(home.filePath(QStringLiteral("docs/lt/sub"))).removeRecursively();
    ASSERT_TRUE(dragDown(QStringLiteral("lt"), local(QStringLiteral("docs")), {UserQuestions::vbYes, ReplaceFileDialog::Cancel}));
    EXPECT_EQ(texts().size(), 2);
    EXPECT_FALSE(QFileInfo::exists(home.filePath(QStringLiteral("docs/lt/sub/deep.htm"))));
    EXPECT_EQ(filesBelow(home.filePath(QStringLiteral("docs/lt"))), QStringList({"page.htm"}));
}

// A folder the user may not write in, and a disk that fills up in the
// middle of a file: the user is told why, and the file that was there
// before stays whole, with no part of the new one beside it.
TEST_F(LocalTreeTest, AFolderThatRefusesTheFileOrAFullDiskKeepsWhatWasThere)
{
    const QString readOnly = home.filePath(QStringLiteral("empty"));
    QFile::setPermissions(readOnly, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    {
        const AsAUser user;
        ASSERT_TRUE(dragDown(QStringLiteral("lt/page.htm"), local(QStringLiteral("empty")), {UserQuestions::vbYes}));
    }
    QFile::setPermissions(readOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    ASSERT_EQ(texts().size(), 2);
    EXPECT_TRUE(texts().at(1).startsWith(QStringLiteral("Not all the files were downloaded. Check your permissions")));
    EXPECT_TRUE(texts().at(1).endsWith(QStringLiteral("Permission denied"))) << texts().at(1).toStdString();
    EXPECT_TRUE(QDir(readOnly).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));

    constexpr qint64 kBig = 3 * 1024 * 1024;
    put(web(QStringLiteral("lt/big.bin")), QByteArray(kBig, 'b'));
    site.key(QStringLiteral("lt"), Qt::Key_F5);
    site.key(QStringLiteral("lt"), Qt::Key_Right);
    put(home.filePath(QStringLiteral("docs/big.bin")), "old");
    {
        const RoomLeft room(1024 * 1024);
        ASSERT_TRUE(dragDown(QStringLiteral("lt/big.bin"), local(QStringLiteral("docs")),
                             {UserQuestions::vbYes, ReplaceFileDialog::Replace}));
        ASSERT_TRUE(waitFor([] { return texts().size() == 3; }));
    }
    EXPECT_TRUE(texts().at(2).startsWith(QStringLiteral("Not all the files were downloaded.")));
    EXPECT_TRUE(texts().at(2).endsWith(QStringLiteral("File too large"))) << texts().at(2).toStdString();
    EXPECT_EQ(filesBelow(home.filePath(QStringLiteral("docs"))), QStringList({"a.txt", "b.htm", "big.bin"}));
    EXPECT_EQ(bytesOf(home.filePath(QStringLiteral("docs/big.bin"))), "old");
}
