// The site pane on the fixture's servers: the tree read a folder at a
// time, the commands of its menus with the server's disk checked after
// each, local files dropped on a folder, a folder fetched to disk, the new
// page wizard and the text editor round trip.

#include "SiteTreeDriver.h"
#include "cms/CMSTables.h"
#include "config/MGlobalProjectObjects.h"
#include "fileviews/CSiteTreeView.h"
#include "fileviews/ReplaceFileDialog.h"
#include "fileviews/SiteFileDialogs.h"
#include "support/MError.h"
#include "support/UserQuestions.h"
#include "transfer/frmTransferStatusEx.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QMimeData>
#include <QPointer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace fileviews_test;

namespace {

class SiteTreeTest : public testing::Test
{
protected:
    void SetUp() override
    {
        MError::ClearError();
        MGlobalProjectObjects::URLDATA = {demoSiteRecord(servers())};
        MGlobalProjectObjects::lCurrentURL = 0;
        for (const char *folder : {"st", "st2", "up", "dropped"})
            QDir(web(QString::fromLatin1(folder))).removeRecursively();
        put(web(QStringLiteral("st/page.htm")), "<html><body>page</body></html>");
        put(web(QStringLiteral("st/sub/deep.htm")), "deep");
        pane.resize(420, 700);
        pane.show();
        pane.Open();
        ASSERT_GT(pane.tvwSiteTree->Count(), 0) << MError::ErrorDescription().toStdString();
        // The pane opened again for the same site keeps its tree and reads
        // nothing; its commands still run once.
        servers().clearFtpLog();
        pane.Open();
        ASSERT_EQ(servers().ftpLog().size(), 0);
    }
    void TearDown() override
    {
        UserQuestions::EndScript();
        SiteFileDialogs::EndScript();
        servers().clearFtpFaults();
        MError::ClearError();
    }

    SitePane pane;
    TreeHands hands{pane.tvwSiteTree};
};

} // namespace

TEST_F(SiteTreeTest, FoldersAreReadWhenOpenedAndAfreshAfterAClose)
{
    EXPECT_TRUE(hands.children(QString()).contains(QStringLiteral("index.htm")));
    EXPECT_EQ(hands.children(QStringLiteral("img")), QStringList({"Wait..."}));
    hands.key(QStringLiteral("img"), Qt::Key_Right);
    EXPECT_EQ(hands.children(QStringLiteral("img")), QStringList({"flower.png", "leaf.png", "logo.png"}));
    put(web(QStringLiteral("img/new.gif")), "GIF89a");
    hands.key(QStringLiteral("img"), Qt::Key_Left);
    hands.key(QStringLiteral("img"), Qt::Key_Right);
    EXPECT_EQ(hands.children(QStringLiteral("img")), QStringList({"flower.png", "leaf.png", "logo.png", "new.gif"}));
    QFile::remove(web(QStringLiteral("img/new.gif")));

    // F5 reads the whole site again.
    put(web(QStringLiteral("fresh.htm")), "x");
    QTest::keyClick(pane.tvwSiteTree, Qt::Key_F5);
    EXPECT_TRUE(hands.children(QString()).contains(QStringLiteral("fresh.htm")));
    QFile::remove(web(QStringLiteral("fresh.htm")));
}

TEST_F(SiteTreeTest, RenameCopyNewFolderAndDeleteOfAFile)
{
    hands.key(QStringLiteral("st"), Qt::Key_Right);
    UserQuestions::Script({});
    onModal(QStringLiteral("frmCopyRename"), [](QWidget *dialog) {
        type(dialog, "txtNewFileName", QStringLiteral("renamed"));
        click(dialog, "cmdOk");
    });
    hands.pick(QStringLiteral("st/page.htm"), QStringLiteral("mnuTVFileChangeName"));
    // A new name without an extension keeps the old one.
    EXPECT_EQ(filesBelow(web(QStringLiteral("st"))), QStringList({"renamed.htm", "sub/deep.htm"}));
    ASSERT_TRUE(hands.node(QStringLiteral("st/renamed.htm")));

    // With no CMS user the page is locked and unlocked from here, by its
    // address, as the administrator does.
    ResetCMSTables();
    hands.pick(QStringLiteral("st/renamed.htm"), QStringLiteral("mnuTVFileCMS_AdminLockPage"));
    ASSERT_EQ(g_aCMSPages.size(), 2u);
    EXPECT_EQ(g_aCMSPages[0].strPath, root() + QStringLiteral("/st/renamed.htm"));
    hands.pick(QStringLiteral("st/renamed.htm"), QStringLiteral("mnuTVFileCMS_AdminLockUpPage"));
    EXPECT_EQ(g_aCMSPages.size(), 1u);

    onModal(QStringLiteral("frmCopyRename"), [](QWidget *dialog) { click(dialog, "cmdOk"); });
    hands.pick(QStringLiteral("st/renamed.htm"), QStringLiteral("mnuTVFileCopyFile"));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("st/copy_renamed.htm")), servers().readWebFile(QStringLiteral("st/renamed.htm")));

    onModal(QStringLiteral("frmCopyRename"), [](QWidget *dialog) {
        type(dialog, "txtNewFileName", QStringLiteral("made"));
        click(dialog, "cmdOk");
    });
    hands.pick(QStringLiteral("st/renamed.htm"), QStringLiteral("mnuTVFileCreateFolder"));
    EXPECT_TRUE(QFileInfo(web(QStringLiteral("st/made"))).isDir());
    EXPECT_TRUE(hands.node(QStringLiteral("st/made")));

    UserQuestions::Script({UserQuestions::vbYes});
    hands.pick(QStringLiteral("st/copy_renamed.htm"), QStringLiteral("mnuTVFileDeletFile"));
    EXPECT_FALSE(QFileInfo::exists(web(QStringLiteral("st/copy_renamed.htm"))));
    EXPECT_FALSE(hands.node(QStringLiteral("st/copy_renamed.htm")));
    EXPECT_EQ(UserQuestions::Unanswered(), 0);
}

TEST_F(SiteTreeTest, AFileComesToDiskWholeAndAFileGoesIntoAFolder)
{
    hands.key(QStringLiteral("st"), Qt::Key_Right);
    QTemporaryDir local;
    SiteFileDialogs::Script({local.filePath(QStringLiteral("saved.htm"))});
    UserQuestions::Script({});
    hands.pick(QStringLiteral("st/page.htm"), QStringLiteral("mnuTVFileCopyFileToDrive"));
    EXPECT_EQ(filesBelow(local.path()), QStringList({"saved.htm"}));
    QFile saved(local.filePath(QStringLiteral("saved.htm")));
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), servers().readWebFile(QStringLiteral("st/page.htm")));

    put(local.filePath(QStringLiteral("extra.css")), "p{}");
    SiteFileDialogs::Script({local.filePath(QStringLiteral("extra.css"))});
    hands.pick(QStringLiteral("st/sub"), QStringLiteral("mnuTVFolderSendTo"));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("st/sub/extra.css")), "p{}");
    EXPECT_TRUE(hands.node(QStringLiteral("st/sub/extra.css")));
    EXPECT_TRUE(UserQuestions::ShownSoFar().isEmpty());
}

TEST_F(SiteTreeTest, TheIndexFileIsNotRenamedAndANameTakenIsAskedAbout)
{
    UserQuestions::Script({});
    hands.pick(QStringLiteral("index.htm"), QStringLiteral("mnuTVFileChangeName"));
    EXPECT_EQ(texts(), QStringList({"You cannot rename the index-file."}));

    hands.key(QStringLiteral("st"), Qt::Key_Right);
    put(web(QStringLiteral("st/taken.htm")), "taken");
    UserQuestions::Script({UserQuestions::vbNo});
    bool stayed = false;
    onModal(QStringLiteral("frmCopyRename"), [&stayed](QWidget *dialog) {
        type(dialog, "txtNewFileName", QStringLiteral("taken.htm"));
        click(dialog, "cmdOk");
        stayed = dialog->isVisible();
        click(dialog, "cmdCancel");
    });
    hands.pick(QStringLiteral("st/page.htm"), QStringLiteral("mnuTVFileCopyFile"));
    EXPECT_TRUE(stayed);
    EXPECT_EQ(texts(), QStringList({"The file already exists. Continue?"}));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("st/taken.htm")), "taken");
}

// A CMS user without the right to delete files and folders isn't offered
// those entries while all files are locked.
TEST_F(SiteTreeTest, TheCMSUsersLimitsSwitchEntriesOff)
{
    CMSUSER user;
    user.limits.lSiteTree = CMS_ALL_ENABLED & ~(8 | 128);
    g_aCMSUsers = {user, CMSUSER()};
    g_sngCMSUser = 0;
    g_boolAllFilesLocked = true;
    const TreeHands::Seen file = hands.pick(QStringLiteral("index.htm"), QString());
    const TreeHands::Seen folder = hands.pick(QStringLiteral("img"), QString());
    ResetCMSTables();
    g_boolAllFilesLocked = false;
    EXPECT_TRUE(file.enabled.contains(QStringLiteral("mnuTVFileCopyFile")));
    EXPECT_FALSE(file.enabled.contains(QStringLiteral("mnuTVFileDeletFile")));
    EXPECT_TRUE(folder.enabled.contains(QStringLiteral("mnuTVFolderChangeName")));
    EXPECT_FALSE(folder.enabled.contains(QStringLiteral("mnuTVFolderDelete")));
}

TEST_F(SiteTreeTest, AFolderDeleteThatTheServerPartlyRefusesReportsWhatStayed)
{
    put(web(QStringLiteral("st2/a.htm")), "a");
    put(web(QStringLiteral("st2/sub/b.htm")), "b");
    put(web(QStringLiteral("st2/sub/locked.htm")), "locked");
    hands.key(QString(), Qt::Key_F5);
    servers().setFtpFaults({{"readonly", QJsonArray({"www/st2/sub/locked.htm"})}});
    UserQuestions::Script({UserQuestions::vbYes});
    hands.pick(QStringLiteral("st2"), QStringLiteral("mnuTVFolderDelete"));
    const QStringList shown = texts();
    ASSERT_EQ(shown.size(), 2);
    EXPECT_TRUE(shown.at(0).startsWith(QStringLiteral("You have highlighted:\n2 folders and sub folders containing 3 files.")))
        << shown.at(0).toStdString();
    EXPECT_TRUE(shown.at(1).startsWith(QStringLiteral("Not all the files were deleted.")));
    EXPECT_EQ(filesBelow(web(QStringLiteral("st2"))), QStringList({"sub/locked.htm"}));

    servers().clearFtpFaults();
    UserQuestions::Script({UserQuestions::vbYes});
    hands.pick(QStringLiteral("st2"), QStringLiteral("mnuTVFolderDelete"));
    EXPECT_FALSE(QFileInfo::exists(web(QStringLiteral("st2"))));
    EXPECT_FALSE(hands.node(QStringLiteral("st2")));
}

// The drop comes as the window system brings it from a file manager.
TEST_F(SiteTreeTest, ALocalFolderDroppedOnAFolderGoesUpAndAFolderComesDown)
{
    QTemporaryDir local;
    put(local.filePath(QStringLiteral("dropped/one.htm")), "one");
    put(local.filePath(QStringLiteral("dropped/inner/two.txt")), "two");
    UserQuestions::Script({UserQuestions::vbYes});
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(local.filePath(QStringLiteral("dropped")))});
    const QPoint at = hands.at(QStringLiteral("st"));
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(pane.tvwSiteTree->viewport(), &enter);
    QDragMoveEvent move(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(pane.tvwSiteTree->viewport(), &move);
    ASSERT_TRUE(move.isAccepted());
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(pane.tvwSiteTree->viewport(), &drop);
    ASSERT_TRUE(waitFor([] { return QFileInfo::exists(web(QStringLiteral("st/dropped/inner/two.txt"))); }));
    EXPECT_TRUE(texts().value(0).startsWith(QStringLiteral("Do you want to transfer this: 2 files and 2 folders?")));
    EXPECT_EQ(servers().readWebFile(QStringLiteral("st/dropped/one.htm")), "one");
    ASSERT_TRUE(waitFor([this] { return hands.node(QStringLiteral("st/dropped")) != nullptr; }));

    // A name some local disks can't hold stays on the server, and the user
    // is told that not all came down.
    // A file already on the disk is asked about: kept beside the new one.
    put(web(QStringLiteral("st/odd:name.htm")), "odd");
    QTemporaryDir target;
    put(target.filePath(QStringLiteral("st/page.htm")), "mine");
    UserQuestions::Script({UserQuestions::vbYes, ReplaceFileDialog::Rename});
    SiteFileDialogs::Script({target.path()});
    hands.pick(QStringLiteral("st"), QStringLiteral("mnuTVFolderCopyFolderToDrive"));
    EXPECT_EQ(filesBelow(target.path()), QStringList({"st/dropped/inner/two.txt", "st/dropped/one.htm", "st/page (2).htm",
                                                      "st/page.htm", "st/sub/deep.htm"}));
    EXPECT_EQ(bytesOf(target.filePath(QStringLiteral("st/page.htm"))), "mine");
    ASSERT_EQ(texts().size(), 3);
    EXPECT_TRUE(texts().at(1).contains(QStringLiteral("page.htm")));
    EXPECT_TRUE(texts().at(2).startsWith(QStringLiteral("Not all the files were downloaded.")));
}

// The progress window of a folder fetched to disk, and its Cancel pressed
// while a later one of four large files comes: no part of a file is left,
// and what landed is whole.
TEST_F(SiteTreeTest, ACancelledDownloadLeavesNoPartOfAFile)
{
    constexpr qint64 kBig = 6 * 1024 * 1024;
    for (int i = 1; i <= 4; ++i)
        put(web(QStringLiteral("st/big/big%1.bin").arg(i)), QByteArray(kBig, char('0' + i)));
    QPointer<frmTransferStatusEx> window;
    TransferStatusWindow::InstallFactory([&window] {
        auto made = std::make_unique<frmTransferStatusEx>();
        window = made.get();
        return made;
    });
    QTemporaryDir target;
    // Pressed while a file is coming in after one has landed: the file
    // being written stands beside its place under a hidden work name. The
    // server holds back its answer to the third file, so that moment lasts
    // however fast the others come.
    servers().setFtpFaults({{QStringLiteral("stall_on"), QStringLiteral("^RETR big3")}});
    QTimer cancel;
    bool pressed = false;
    QObject::connect(&cancel, &QTimer::timeout, [&] {
        const QDir big(target.filePath(QStringLiteral("big")));
        const bool landed = !big.entryList({QStringLiteral("big*.bin")}, QDir::Files).isEmpty();
        const bool coming = !big.entryList({QStringLiteral("*.kelda-part")}, QDir::Files | QDir::Hidden).isEmpty();
        if (!pressed && window && window->isVisible() && landed && coming) {
            pressed = true;
            QTest::mouseClick(window->CancelButton(), Qt::LeftButton);
        }
    });
    cancel.start(2);
    UserQuestions::Script({UserQuestions::vbYes, UserQuestions::vbYes});
    SiteFileDialogs::Script({target.path()});
    hands.key(QStringLiteral("st"), Qt::Key_Right);
    servers().clearFtpLog();
    hands.pick(QStringLiteral("st/big"), QStringLiteral("mnuTVFolderCopyFolderToDrive"));
    servers().clearFtpFaults();
    TransferStatusWindow::InstallFactory(nullptr);
    EXPECT_TRUE(pressed);
    const QStringList landed = filesBelow(target.path());
    EXPECT_LT(landed.size(), 4);
    EXPECT_TRUE(QDir(target.filePath(QStringLiteral("big"))).entryList({QStringLiteral("*.kelda-part")}, QDir::Files | QDir::Hidden).isEmpty());
    for (const QString &name : landed)
        EXPECT_EQ(QFileInfo(target.filePath(name)).size(), kBig) << name.toStdString();
}

TEST_F(SiteTreeTest, TheWizardMakesANewPageInTheSelectedFolder)
{
    hands.key(QStringLiteral("st"), Qt::Key_Right);
    QTest::mouseClick(pane.tvwSiteTree->viewport(), Qt::LeftButton, {}, hands.at(QStringLiteral("st")));
    onModal(QStringLiteral("frmAddPageWizard"), [](QWidget *dialog) {
        click(dialog, "cmdNext");
        type(dialog, "txtDocTitle", QStringLiteral("Fresh news"));
        click(dialog, "cmdNext");
        type(dialog, "txtFileName", QStringLiteral("news"));
        click(dialog, "cmdNext");
        click(dialog, "cmdOk");
    });
    QTest::mouseClick(pane.findChild<QPushButton *>(QStringLiteral("cmdAddNewPage")), Qt::LeftButton);
    EXPECT_TRUE(servers().readWebFile(QStringLiteral("st/news.htm")).contains("Fresh news"));
    EXPECT_TRUE(hands.node(QStringLiteral("st/news.htm")));

    // A double click on it opens it in the browser.
    QString opened;
    pane.SiteTree().openPage = [&opened](const QString &address) { opened = address; };
    const QPoint page = hands.at(QStringLiteral("st/news.htm"));
    QTest::mouseClick(pane.tvwSiteTree->viewport(), Qt::LeftButton, {}, page);
    QTest::mouseDClick(pane.tvwSiteTree->viewport(), Qt::LeftButton, {}, page);
    EXPECT_EQ(opened, root() + QStringLiteral("/st/news.htm"));
}

// What a drag out of the tree carries into a page and to a file manager.
TEST_F(SiteTreeTest, ALinkAndAPictureDraggedOutCarryTheirHtml)
{
    hands.key(QStringLiteral("img"), Qt::Key_Right);
    std::unique_ptr<QMimeData> page(pane.SiteTree().DragData(hands.node(QStringLiteral("index.htm"))));
    const QString id = CSiteTreeView::g_strDragId;
    EXPECT_EQ(page->text(), QStringLiteral("<A href=%1/index.htm>index.htm</A>").arg(root()));
    EXPECT_EQ(page->html(), QStringLiteral("<HTML><BODY><FONT FACE=Arial SIZE=1 COLOR=BLUE><A id=\"%1\" href=\"%2/index.htm\">"
                                           "index.htm</A></FONT></BODY></HTML>").arg(id, root()));
    std::unique_ptr<QMimeData> picture(pane.SiteTree().DragData(hands.node(QStringLiteral("img/logo.png"))));
    EXPECT_TRUE(picture->html().contains(QStringLiteral("<IMG id=\"%1\" src=\"%2/img/logo.png\">").arg(CSiteTreeView::g_strDragId, root())));
    EXPECT_EQ(picture->urls(), QList<QUrl>({QUrl(root() + QStringLiteral("/img/logo.png"))}));
    std::unique_ptr<QMimeData> folder(pane.SiteTree().DragData(hands.node(QStringLiteral("img"))));
    EXPECT_FALSE(folder->hasHtml());
    CSiteTreeView::g_boolSiteTreeDrag = false;
}

// The fake editor adds a line and saves; the file goes back once, and a
// save that leaves the bytes as they were sends nothing. The page is the
// one on screen, so the user is asked first; what stood is kept as a
// revision.
TEST_F(SiteTreeTest, AFileSavedChangedInTheEditorGoesBack)
{
    QTemporaryDir tools;
    const QString editor = tools.filePath(QStringLiteral("editor"));
    put(editor, "#!/bin/sh\ncp \"$1\" \"$1.same\" && mv \"$1.same\" \"$1\"\nprintf ' edited' >> \"$1\"\n");
    QFile::setPermissions(editor, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("VISUAL", editor.toLocal8Bit());
    hands.key(QStringLiteral("st"), Qt::Key_Right);
    servers().clearFtpLog();
    QDir(servers().webRoot() + QStringLiteral("/_resetp")).removeRecursively();
    pane.SiteTree().documentAddresses = [] { return QStringList{root() + QStringLiteral("/st/page.htm")}; };
    UserQuestions::Script({UserQuestions::vbYes});
    hands.pick(QStringLiteral("st/page.htm"), QStringLiteral("mnuTVFileEditFile"));
    qunsetenv("VISUAL");
    ASSERT_TRUE(waitFor([] { return servers().readWebFile(QStringLiteral("st/page.htm")).endsWith(" edited"); }))
        << MError::ErrorDescription().toStdString();
    EXPECT_EQ(servers().readWebFile(QStringLiteral("st/page.htm")), "<html><body>page</body></html> edited");
    EXPECT_EQ(texts(), QStringList({"You are attempting to save the same file you are editing in the browser. "
                                    "Do you want to continue?"}));
    EXPECT_FALSE(QDir(servers().webRoot() + QStringLiteral("/_resetp")).isEmpty());
    int sends = 0;
    for (const FtpLogEntry &entry : servers().ftpLog())
        sends += entry.command == QLatin1String("STOR") && entry.argument.contains(QLatin1String("page.htm.")) ? 1 : 0;
    EXPECT_EQ(sends, 1);
}
