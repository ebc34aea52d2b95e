#include "fileviews/CSiteTreeView.h"

#include "cms/CMSLockCommands.h"
#include "cms/CMSTables.h"
#include "fileviews/FileNameRules.h"
#include "fileviews/LocalFileCount.h"
#include "fileviews/LocalRoots.h"
#include "fileviews/MTreeViewTypes.h"
#include "fileviews/ReplaceFileDialog.h"
#include "fileviews/ServerFolderPaths.h"
#include "fileviews/SiteFileDialogs.h"
#include "fileviews/SiteTreeKeys.h"
#include "fileviews/SiteTreeWidget.h"
#include "fileviews/frmCopyRename.h"
#include "history/CRollback.h"
#include "objects/frmMenu.h"
#include "platform/CReg.h"
#include "platform/LocalFolders.h"
#include "support/ErrorLog.h"
#include "support/Hourglass.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"
#include "transfer/FileBatch.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QPushButton>
#include <QSet>
#include <QTemporaryDir>
#include <QTime>
#include <QUrl>

QString CSiteTreeView::g_strDragId;
bool CSiteTreeView::g_boolSiteTreeDrag = false;

namespace {
constexpr long txtCreateFolder = 19600, txtCopyCaption = 19609, txtFileManagement = 19610, txtChangeExtension = 19611,
               txtNotCopied = 19612, txtFileTransfer = 19613, txtWriteProtected = 19614, txtDeleteFile = 19615,
               txtNotDeleted = 19616, txtSaveTitle = 19617, txtNotSaved = 19618, txtAborted = 19619,
               txtSendTitle = 19620, txtNewFolderCaption = 19621, txtNewFolderLabel = 19622,
               txtFolderExists = 19623, txtFolderNotMade = 19624, txtHighlighted = 19625, txtSizeIs = 19626,
               txtDeleteFolder = 19627, txtNotAllDeleted = 19628, txtDeleteFailedTitle = 19629,
               txtDownloadQuestion = 19630, txtDownloadTitle = 19631, txtDownloadFolder = 19632,
               txtNotAllDownloaded = 19633, txtSamePage = 19634, txtSaveFile = 19635, txtTransferThis = 19636,
               txtIndexFile = 19637, txtRenameLabel = 19638, txtNameTaken = 19639, txtFoldersAndSub = 19640,
               txtFilesDot = 19641, txtFoldersAndSubfolders = 19642, txtFilesAnd = 19643, txtFoldersQ = 19644,
               txtTarget = 19645;

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

long Ask(const QString &text, long title, long style = UserQuestions::vbYesNo)
{
    return UserQuestions::MsgBox(text, style, L(title));
}

void Tell(long text, long title)
{
    UserQuestions::MsgBox(L(text), UserQuestions::vbOKOnly, L(title));
}

QString Setting(const char *key)
{
    return CReg::GetSetting(QStringLiteral("lastdialogs"), QString::fromLatin1(key), QDir::homePath());
}

void KeepSetting(const char *key, const QString &folder)
{
    CReg::SaveSetting(QStringLiteral("lastdialogs"), QString::fromLatin1(key), folder);
}

} // namespace

CSiteTreeView::CSiteTreeView(QObject *parent) : QObject(parent)
{
    m_editor.SetSender([this](const QString &local) { return SendBack(local, m_strEditorKey); });
}

long CSiteTreeView::init(QWidget *frmVindrell_p)
{
    if (m_frmVindrell != frmVindrell_p)
        Bind(frmVindrell_p);
    QTreeWidgetItem *root = m_tvwSiteTree->RootNode();
    if (root && SiteTreeWidget::Key(root) == SiteTreeKeys::CurrentRootKey())
        return 1;
    const long filled = PopulateTree();
    if (filled == 0)
        MError::ShowError();
    return filled == 0 ? 0 : 1;
}

// The controls are bound once: the pane calls init each time it opens.
void CSiteTreeView::Bind(QWidget *frmVindrell_p)
{
    m_frmVindrell = frmVindrell_p;
    m_tvwSiteTree = frmVindrell_p->findChild<SiteTreeWidget *>(QStringLiteral("tvwSiteTree"));
    m_tvwLocal = frmVindrell_p->findChild<QTreeWidget *>(QStringLiteral("tvwLocal"));
    m_cmdDownloadFiles = frmVindrell_p->findChild<QPushButton *>(QStringLiteral("cmdDownloadFiles"));
    m_cmdUploadFiles = frmVindrell_p->findChild<QPushButton *>(QStringLiteral("cmdUploadFiles"));
    m_tvwSiteTree->SetFiller([this](const QString &key) {
        CFTPS ftp;
        const long listed = ftp.GetDirFiles(*m_tvwSiteTree, key);
        if (listed == 0)
            MError::ShowError();
        return listed;
    });
    connect(m_tvwSiteTree, &SiteTreeWidget::RefreshPressed, this, &CSiteTreeView::PopulateTree);
    connect(m_tvwSiteTree, &SiteTreeWidget::MousePressed, this, [this](Qt::MouseButton button, const QPoint &at) {
        if (button == Qt::LeftButton)
            LeftClick(at);
        else if (button == Qt::RightButton)
            RightClick(at);
    });
    connect(m_tvwSiteTree, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem *item) {
        const int image = SiteTreeWidget::Image(item);
        if ((image == 4 || image == 5) && openPage)
            openPage(SiteTreeWidget::Key(item));
    });
    BindDragAndDrop();
    if (m_cmdUploadFiles)
        connect(m_cmdUploadFiles, &QPushButton::clicked, this, [this] {
            QTreeWidgetItem *local = m_tvwLocal ? m_tvwLocal->currentItem() : nullptr;
            // Only a node with a path goes up: not "My computer", nor a
            // name that is no text, of which the local tree has said why.
            const QString path = local ? local->data(0, Qt::UserRole).toString() : QString();
            if (path.startsWith(QLatin1Char('/')) && !g_boolSiteTreeDrag)
                TransferToServer({path}, m_tvwSiteTree->SelectedKey());
        });
    // Beside a local tree the button fetches into its folder, which the
    // local tree does; alone, it asks for a folder.
    if (m_cmdDownloadFiles && !m_tvwLocal)
        connect(m_cmdDownloadFiles, &QPushButton::clicked, this,
                [this] { DownLoadFilesFromFTP_server(m_tvwSiteTree->SelectedKey()); });
}

// Drags out of the tree carry the node's forms; local files dropped on a
// folder go up after the question.
void CSiteTreeView::BindDragAndDrop()
{
    m_tvwSiteTree->dragData = [this](QTreeWidgetItem *item) { return DragData(item); };
    m_tvwSiteTree->dragEnded = [] { g_boolSiteTreeDrag = false; };
    m_tvwSiteTree->acceptsDrop = [](const QMimeData *data, QTreeWidgetItem *item) {
        return data->hasUrls() && SiteTreeWidget::IsFolder(item);
    };
    m_tvwSiteTree->dropped = [this](const QList<QUrl> &urls, const QString &target) {
        QStringList local;
        for (const QUrl &url : urls)
            if (url.isLocalFile())
                local << url.toLocalFile();
        if (!local.isEmpty())
            TransferToServer(local, target);
    };
}

long CSiteTreeView::PopulateTree()
{
    Hourglass wait;
    m_tvwSiteTree->ClearNodes();
    CFTPS ftp;
    const long result = ftp.GetDirFiles(*m_tvwSiteTree);
    if (result != 1) {
        m_tvwSiteTree->ClearNodes();
        return result == 0 ? 0 : -1;
    }
    m_strRootKey = SiteTreeKeys::CurrentRootKey();
    m_lSiteIndex = MGlobalProjectObjects::lCurrentURL;
    if (QTreeWidgetItem *root = m_tvwSiteTree->RootNode())
        root->setExpanded(true);
    return 1;
}

QString CSiteTreeView::AddressOf(const QString &strKey_p) const
{
    return SiteTreeKeys::Address(strKey_p, Root());
}

// The folder a command on a node works in: a folder's own, a file's parent.
QString CSiteTreeView::FolderKeyOf(const QString &strKey_p) const
{
    QTreeWidgetItem *item = m_tvwSiteTree->Node(strKey_p);
    return SiteTreeWidget::IsFolder(item) ? strKey_p : SiteTreeKeys::ParentKey(strKey_p);
}

long CSiteTreeView::Fail(const QString &strProcedure_p)
{
    MError::SetErrorIfClear(0, QStringLiteral("The command failed"), QStringLiteral("CSiteTreeView.") + strProcedure_p);
    MError::ShowError();
    return 0;
}

// ------------------------------------------------------------ the clicks

void CSiteTreeView::LeftClick(const QPoint &at)
{
    m_lastMouse = at;
    QTreeWidgetItem *item = m_tvwSiteTree->itemAt(at);
    if (item)
        m_tvwSiteTree->setCurrentItem(item);
    SetTransferButtons();
}

// Up: a site folder takes any local node but a drive; a site file takes a
// local file. Down: the same the other way round.
void CSiteTreeView::SetTransferButtons()
{
    QTreeWidgetItem *site = m_tvwSiteTree->currentItem();
    QTreeWidgetItem *local = m_tvwLocal ? m_tvwLocal->currentItem() : nullptr;
    const int localImage = local ? local->data(0, Qt::UserRole + 1).toInt() : 0;
    const bool localFolder = localImage == 1 || localImage == 2;
    const bool siteFolder = SiteTreeWidget::IsFolder(site);
    const bool drive = LocalRoots::IsDriveImage(localImage);
    const bool match = site && local && !drive && (siteFolder || !localFolder);
    if (m_cmdUploadFiles)
        m_cmdUploadFiles->setEnabled(match);
    if (m_cmdDownloadFiles)
        m_cmdDownloadFiles->setEnabled(match);
}

// The two CMS entries of the file menu lock and unlock a page for the
// administrator; a user who is none doesn't get them.
void CSiteTreeView::RightClick(const QPoint &at)
{
    QTreeWidgetItem *item = m_tvwSiteTree->itemAt(at);
    if (!item || SiteTreeWidget::Image(item) == 3)
        return;
    m_tvwSiteTree->setCurrentItem(item);
    const QString key = SiteTreeWidget::Key(item);
    frmMenu menu;
    for (const char *name : {"mnuTVFileCMS_AdminLockPage", "mnuTVFileCMS_AdminLockUpPage"})
        menu.Item(QString::fromLatin1(name))->setVisible(!CMSRestrictedUser());
    const bool folder = SiteTreeWidget::IsFolder(item);
    ApplyLimits(menu, key, folder);
    const QString menuName = folder ? QStringLiteral("mnuTVFolder") : QStringLiteral("mnuTVFile");
    const QString picked = menu.PopupMenu(menuName, m_tvwSiteTree->viewport()->mapToGlobal(at));
    Dispatch(picked, key);
}

// A CMS user's limits switch entries off where all files are locked or
// the node is a page tied to users; elsewhere, and with no CMS user, every
// entry is offered.
void CSiteTreeView::ApplyLimits(frmMenu &menu, const QString &strKey_p, bool boolFolder_p) const
{
    const long user = long(g_sngCMSUser);
    if (g_sngCMSUser == CMS_NO_USER || user < 0 || user + 1 >= long(g_aCMSUsers.size()))
        return;
    bool tied = g_boolAllFilesLocked;
    for (std::size_t i = 0; !tied && i + 1 < g_aCMSPages.size(); ++i)
        tied = g_aCMSPages[i].strPath == strKey_p;
    if (!tied)
        return;
    static const char *const entries[] = {"mnuTVFileCreateFolder", "mnuTVFileEditFile", "mnuTVFileChangeName",
                                          "mnuTVFileDeletFile", "mnuTVFileCopyFile", "mnuTVFileCopyFileToDrive",
                                          "mnuTVFolderCreateFolder", "mnuTVFolderDelete", "mnuTVFolderChangeName",
                                          "mnuTVFolderSendTo", "mnuTVFolderCopyFolderToDrive"};
    const std::int32_t bits = g_aCMSUsers[std::size_t(user)].limits.lSiteTree;
    for (int bit = boolFolder_p ? 6 : 0; bit < (boolFolder_p ? 11 : 6); ++bit)
        menu.Item(QString::fromLatin1(entries[bit]))->setEnabled((bits & (1 << bit)) != 0);
}

void CSiteTreeView::Dispatch(const QString &strItem_p, const QString &strKey_p)
{
    const QHash<QString, std::function<long()>> commands = {
        {QStringLiteral("mnuTVFileCreateFolder"), [&] { return CreateFolder(strKey_p); }},
        {QStringLiteral("mnuTVFolderCreateFolder"), [&] { return CreateFolder(strKey_p); }},
        {QStringLiteral("mnuTVFileEditFile"), [&] { return OpenFileInNotepad(); }},
        {QStringLiteral("mnuTVFileChangeName"), [&] { return RenameFile(strKey_p); }},
        {QStringLiteral("mnuTVFolderChangeName"), [&] { return RenameFile(strKey_p); }},
        {QStringLiteral("mnuTVFileDeletFile"), [&] { return DeleteFile(strKey_p); }},
        {QStringLiteral("mnuTVFileCopyFile"), [&] { return CopyFile(strKey_p); }},
        {QStringLiteral("mnuTVFileCopyFileToDrive"), [&] { return SaveFile(strKey_p); }},
        {QStringLiteral("mnuTVFolderDelete"), [&] { return DeleteFolder(strKey_p); }},
        {QStringLiteral("mnuTVFolderSendTo"), [&] { return SendToFolder(strKey_p); }},
        {QStringLiteral("mnuTVFolderCopyFolderToDrive"), [&] { return DownLoadFilesFromFTP_server(strKey_p); }},
        {QStringLiteral("mnuTVFileCMS_AdminLockPage"), [&] { return CMSLockCommands::LockPageAt(strKey_p); }},
        {QStringLiteral("mnuTVFileCMS_AdminLockUpPage"), [&] { return CMSLockCommands::UnlockPageAt(strKey_p); }},
    };
    if (commands.contains(strItem_p))
        commands.value(strItem_p)();
}

// --------------------------------------------------------- file commands

// A new extension is asked about: it may break the links of other pages.
// A name without one takes the old one. 1 go on, -1 stop.
long CSiteTreeView::NewNameWithExtension(QString &strNew_p, const QString &strOld_p, bool boolStopOnNo_p)
{
    const QString oldExtension = FileNameRules::Extension(strOld_p);
    const QString newExtension = FileNameRules::Extension(strNew_p);
    if (newExtension.isEmpty()) {
        if (!oldExtension.isEmpty())
            strNew_p += QLatin1Char('.') + oldExtension;
        return 1;
    }
    if (newExtension == oldExtension
        || Ask(L(txtChangeExtension), txtFileManagement, UserQuestions::vbYesNo | UserQuestions::vbQuestion)
               == UserQuestions::vbYes)
        return 1;
    if (boolStopOnNo_p)
        return -1;
    strNew_p = strNew_p.left(strNew_p.size() - newExtension.size()) + oldExtension;
    return 1;
}

long CSiteTreeView::CopyFile(const QString &strKey_p)
{
    QString folder, file, extension;
    FileNameRules::extractFile_Folder(strKey_p, folder, file, extension);
    frmCopyRename form(m_tvwSiteTree);
    form.init(SiteTreeKeys::FolderAddress(folder, Root()), QStringLiteral("copy"));
    form.SetCaption(L(txtCopyCaption));
    form.SetText(QStringLiteral("copy_") + file);
    form.exec();
    QString name = form.GetText();
    if (form.Cancelled() || name.isEmpty() || NewNameWithExtension(name, file, true) != 1)
        return -1;
    Hourglass wait;
    CFTPS ftp;
    const long copied = ftp.CopyFile(AddressOf(strKey_p), name);
    if (copied != 1) {
        MError::LogError();
        Tell(copied == -1 ? txtWriteProtected : txtNotCopied, txtFileTransfer);
        return copied;
    }
    return CollapseNode(folder);
}

long CSiteTreeView::DeleteFile(const QString &strKey_p)
{
    QString folder, file, extension;
    FileNameRules::extractFile_Folder(strKey_p, folder, file, extension);
    if (Ask(L(txtDeleteFile) + file, txtFileManagement) != UserQuestions::vbYes)
        return -1;
    Hourglass wait;
    CFTPS ftp;
    const long removed = ftp.RemoveFile(AddressOf(strKey_p));
    if (removed == -1) {
        Tell(txtNotDeleted, txtFileTransfer);
        return -1;
    }
    if (removed != 1)
        return Fail(QStringLiteral("DeleteFile"));
    m_tvwSiteTree->Remove(strKey_p);
    return 1;
}

long CSiteTreeView::RenameFile(const QString &strKey_p)
{
    const SiteRecord site = SiteTreeKeys::CurrentSite();
    if (strKey_p == Root() + QLatin1Char('/') + site.indexfile) {
        Tell(txtIndexFile, txtFileManagement);
        return -1;
    }
    QString folder, file, extension;
    FileNameRules::extractFile_Folder(strKey_p, folder, file, extension);
    frmCopyRename form(m_tvwSiteTree);
    form.init(SiteTreeKeys::FolderAddress(folder, Root()), QStringLiteral("rename"));
    form.SetCaption(L(txtFileManagement));
    form.SetLabel(L(txtRenameLabel));
    form.SetText(file);
    form.exec();
    QString name = form.GetText();
    if (form.Cancelled() || name.isEmpty() || name == file)
        return -1;
    if (!SiteTreeWidget::IsFolder(m_tvwSiteTree->Node(strKey_p)))
        NewNameWithExtension(name, file, false);
    Hourglass wait;
    CFTPS ftp;
    if (ftp.RenameFile(AddressOf(strKey_p), name) != 1) {
        MError::LogError();
        Tell(txtNameTaken, txtFileTransfer);
        return 0;
    }
    return CollapseNode(folder);
}

// The file is written beside its place and put there when whole, so a
// cancelled or broken transfer leaves no part of it under its name.
long CSiteTreeView::SaveFile(const QString &strKey_p)
{
    QString folder, file, extension;
    FileNameRules::extractFile_Folder(strKey_p, folder, file, extension);
    const QString local = SiteFileDialogs::SaveFileName(m_tvwSiteTree, L(txtSaveTitle),
                                                        Setting("savepath") + QLatin1Char('/') + file);
    if (local.isEmpty())
        return -1;
    KeepSetting("savepath", QFileInfo(local).absolutePath());
    const QString part = local + QStringLiteral(".kelda-part");
    Hourglass wait;
    CFTPS ftp;
    const long saved = ftp.SaveFile(AddressOf(strKey_p), part, true);
    if (saved == 1) {
        QFile::remove(local);
        if (QFile::rename(part, local))
            return 1;
    }
    QFile::remove(part);
    MError::LogError();
    Tell(saved == -1 ? txtAborted : txtNotSaved, txtFileTransfer);
    return saved == -1 ? -1 : 0;
}

long CSiteTreeView::SendToFolder(const QString &strKey_p)
{
    const QString local = SiteFileDialogs::OpenFileName(m_tvwSiteTree, L(txtSendTitle), Setting("filepath"));
    if (local.isEmpty())
        return -1;
    KeepSetting("filepath", QFileInfo(local).absolutePath());
    Hourglass wait;
    CFTPS ftp;
    const long sent = ftp.SendNewFile(local, SiteTreeKeys::InFolder(strKey_p, Root(), QFileInfo(local).fileName()));
    if (sent == -1)
        Tell(txtAborted, txtFileTransfer);
    else if (sent != 1)
        return Fail(QStringLiteral("SendToFolder"));
    return CollapseNode(strKey_p);
}

long CSiteTreeView::CreateFolder(const QString &strKey_p)
{
    const QString folder = FolderKeyOf(strKey_p);
    frmCopyRename form(m_tvwSiteTree);
    form.init(SiteTreeKeys::FolderAddress(folder, Root()), QStringLiteral("copy"));
    form.SetCaption(L(txtNewFolderCaption));
    form.SetLabel(L(txtNewFolderLabel));
    form.exec();
    const QString name = form.GetText();
    if (form.Cancelled() || name.isEmpty())
        return -1;
    Hourglass wait;
    CFTPS ftp;
    const long made = ftp.CreateDir(SiteTreeKeys::InFolder(folder, Root(), name));
    if (made != 1) {
        MError::LogError();
        Tell(made == -1 ? txtFolderExists : txtFolderNotMade, txtFileTransfer);
        return made;
    }
    return CollapseNode(folder);
}

long CSiteTreeView::CollapseNode(const QString &strKey_p)
{
    if (!m_tvwSiteTree->Node(strKey_p))
        return PopulateTree();
    m_tvwSiteTree->Reread(strKey_p);
    return 1;
}

// ------------------------------------------------------ folder commands

// Everything below a folder on the server, with the counts of the
// question: "n folders and sub folders containing m files." and the size.
long CSiteTreeView::ServerCount(const QString &strKey_p, QList<FILEITEM> &items_p, QString &strCounts_p)
{
    Hourglass wait;
    CFTPS ftp;
    if (ftp.GetFiles_In_DirEx(SiteTreeKeys::FolderAddress(strKey_p, Root()), items_p) != 1)
        return 0;
    long files = 0;
    double bytes = 0;
    for (const FILEITEM &item : items_p) {
        files += item.lType == 1 ? 1 : 0;
        bytes += double(item.lSize);
    }
    const long folders = long(items_p.size()) - files + 1;
    strCounts_p = QString::number(folders) + QLatin1Char(' ') + L(txtFoldersAndSub) + QLatin1Char(' ')
                  + QString::number(files) + QLatin1Char(' ') + L(txtFilesDot) + QLatin1Char('\n') + L(txtSizeIs)
                  + QLatin1Char(' ') + MTreeViewTypes::FormatSizeString(bytes);
    return 1;
}

long CSiteTreeView::DeleteFolder(const QString &strKey_p)
{
    QList<FILEITEM> items;
    QString counts;
    if (ServerCount(strKey_p, items, counts) != 1)
        return Fail(QStringLiteral("m_mnuTVFolderDelete_Click"));
    const QString name = strKey_p.mid(strKey_p.lastIndexOf(QLatin1Char('/')) + 1);
    if (Ask(L(txtHighlighted) + QLatin1Char('\n') + counts + QLatin1Char('\n') + L(txtDeleteFolder) + QLatin1Char(' ')
                + name + QLatin1Char('?'),
            txtFileManagement)
        != UserQuestions::vbYes)
        return -1;
    Hourglass wait;
    CFTPS ftp;
    long status = 0;
    const long deleted = ftp.DeleteFilesAndFolders(SiteTreeKeys::FolderAddress(strKey_p, Root()), items, status);
    if (deleted == 0)
        return Fail(QStringLiteral("DeleteFolder"));
    const long removed = deleted == 1 ? ftp.RemoveDir(AddressOf(strKey_p)) : -1;
    if (removed == 0)
        return Fail(QStringLiteral("DeleteFolder"));
    CollapseNode(SiteTreeKeys::ParentKey(strKey_p));
    if (removed != 1) {
        Tell(txtNotAllDeleted, txtDeleteFailedTitle);
        return -1;
    }
    return 1;
}

// The folder is written into the chosen local folder under its own name,
// as the user sees it in the tree.
long CSiteTreeView::DownLoadFilesFromFTP_server(const QString &strKey_p)
{
    if (!SiteTreeWidget::IsFolder(m_tvwSiteTree->Node(strKey_p)))
        return SaveFile(strKey_p);
    QList<FILEITEM> items;
    QString counts;
    if (ServerCount(strKey_p, items, counts) != 1)
        return Fail(QStringLiteral("DownLoadFilesFromFTP_server"));
    QString counted = counts;
    counted.replace(L(txtFoldersAndSub), L(txtFoldersAndSubfolders));
    if (Ask(L(txtHighlighted) + QLatin1Char('\n') + counted + QLatin1Char('\n') + L(txtDownloadQuestion), txtDownloadTitle)
        != UserQuestions::vbYes)
        return -1;
    const QString chosen = SiteFileDialogs::FolderName(m_tvwSiteTree, L(txtDownloadFolder), Setting("savefolderpath"));
    if (chosen.isEmpty())
        return -1;
    KeepSetting("savefolderpath", chosen);
    const QString name = strKey_p.mid(strKey_p.lastIndexOf(QLatin1Char('/')) + 1);
    QString reason;
    const bool nameFits = FileNameRules::LocalNameAcceptable(name, reason);
    const QString target = nameFits && strKey_p != Root() ? chosen + QLatin1Char('/') + name : chosen;
    Hourglass wait;
    QDir().mkpath(target);
    CFTPS ftp;
    long status = 0;
    const bool unfit = DropUnfitNames(items);
    // A file of the same name already on the disk is the user's to keep,
    // replace or keep beside the new one, never passed over in silence.
    FileBatch batch(ftp);
    batch.SetExistingFileQuestion(ReplaceFileDialog::ForDownload(m_tvwSiteTree));
    const long done = batch.DownLoadFilesAndFolders(SiteTreeKeys::FolderAddress(strKey_p, Root()), items, target, status);
    if (done == 0)
        return Fail(QStringLiteral("DownLoadFilesFromFTP_server"));
    if (done == 1 && !unfit && !CaseTwinsUnder(items, target))
        return 1;
    if (done == 1)
        Tell(txtNotAllDownloaded, txtFileManagement);
    return -1;
}

// Names of the server that a local disk can't hold as they are (or that
// some disk the user copies to next can't) stay on the server, each with a
// line in the error log, and so does all below such a folder.
bool CSiteTreeView::DropUnfitNames(QList<FILEITEM> &items_p)
{
    QStringList unfitFolders;
    const qsizetype before = items_p.size();
    items_p.removeIf([&unfitFolders](const FILEITEM &item) {
        for (const QString &folder : std::as_const(unfitFolders))
            if (item.strPath.startsWith(folder))
                return true;
        QString reason;
        if (FileNameRules::LocalNameAcceptable(item.strName, reason))
            return false;
        ErrorLog::Append(52, QStringLiteral("Not downloaded, ") + reason, item.strPath);
        if (item.lType == 0)
            unfitFolders << item.strPath + QLatin1Char('/');
        return true;
    });
    return items_p.size() != before;
}

// Two names of the server that differ only in case are one file on a
// local disk that can't tell them apart: the batch kept the first and
// skipped the second, which the user is told of. The disk is asked by a
// probe, since a folder may lie on a disk of another kind.
bool CSiteTreeView::CaseTwinsUnder(const QList<FILEITEM> &items_p, const QString &strLocal_p)
{
    QTemporaryDir probe(strLocal_p + QStringLiteral("/.kelda-case-XXXXXX"));
    QFile mark(probe.path() + QStringLiteral("/a"));
    const bool blind = mark.open(QIODevice::WriteOnly) && QFileInfo::exists(probe.path() + QStringLiteral("/A"));
    if (!blind)
        return false;
    QSet<QString> seen;
    for (const FILEITEM &item : items_p) {
        const QString folded = item.strPath.toLower();
        if (seen.contains(folded))
            return true;
        seen.insert(folded);
    }
    return false;
}

long CSiteTreeView::TransferToServer(const QStringList &astrLocal_p, const QString &strTargetKey_p)
{
    QTreeWidgetItem *target = m_tvwSiteTree->Node(strTargetKey_p);
    if (!SiteTreeWidget::IsFolder(target))
        return -1;
    LocalFileCount count;
    {
        Hourglass wait;
        count.CountFiles(astrLocal_p);
    }
    const QString question = L(txtTransferThis) + QLatin1Char(' ') + QString::number(count.Files()) + QLatin1Char(' ')
                             + L(txtFilesAnd) + QLatin1Char(' ') + QString::number(count.Folders()) + QLatin1Char(' ')
                             + L(txtFoldersQ) + QLatin1Char('\n') + L(txtSizeIs) + QLatin1Char(' ')
                             + MTreeViewTypes::FormatSizeString(count.Bytes()) + QLatin1Char('\n') + L(txtTarget)
                             + QLatin1Char(' ') + strTargetKey_p;
    if (Ask(question, txtFileManagement) != UserQuestions::vbYes)
        return -1;
    long result = 1;
    {
        Hourglass wait;
        CFTPS ftp;
        for (const QList<FILEITEM> &batch : count.Batches()) {
            long status = 0;
            result = ftp.CopyFilesAndFolders(AddressOf(strTargetKey_p), batch, status);
            if (result != 1)
                break;
        }
    }
    CollapseNode(strTargetKey_p);
    for (QPushButton *button : {m_cmdUploadFiles, m_cmdDownloadFiles})
        if (button)
            button->setEnabled(false);
    return result == 0 ? Fail(QStringLiteral("m_tvwSiteTree_OLEDragDrop")) : result;
}

// ------------------------------------------------------------ text editor

// The file goes to a folder of its own in the temporary folder, under its
// own name, so that the editor shows the name and the file goes back
// under it. The bytes travel unchanged both ways.
long CSiteTreeView::OpenFileInNotepad()
{
    const QString key = m_tvwSiteTree->SelectedKey();
    const QString name = key.mid(key.lastIndexOf(QLatin1Char('/')) + 1);
    QString reason;
    if (!FileNameRules::LocalNameAcceptable(name, reason)) {
        MError::SetErrorIfClear(52, QStringLiteral("Bad file name: ") + reason, QStringLiteral("CSiteTreeView.OpenFileInNotepad"));
        MError::ShowError();
        return 0;
    }
    QTemporaryDir folder(LocalFolders::tempFolder() + QStringLiteral("/edit-XXXXXX"));
    folder.setAutoRemove(false);
    const QString local = folder.path() + QLatin1Char('/') + name;
    Hourglass wait;
    CFTPS ftp;
    if (!folder.isValid() || ftp.SaveFile(AddressOf(key), local, true) != 1)
        return Fail(QStringLiteral("OpenFileInNotepad"));
    m_strEditorKey = key;
    if (!m_editor.Open(local))
        return Fail(QStringLiteral("OpenFileInNotepad"));
    return 1;
}

long CSiteTreeView::SendBack(const QString &strLocal_p, const QString &strKey_p)
{
    const QStringList onScreen = documentAddresses ? documentAddresses() : QStringList();
    if (onScreen.contains(strKey_p) && Ask(L(txtSamePage), txtSaveFile) != UserQuestions::vbYes)
        return -1;
    const QString folder = SiteTreeKeys::ParentKey(strKey_p);
    // A page is kept as a revision first, as a save from the browser keeps
    // it; a revision that can't be kept has been told of and stops nothing.
    const int image = SiteTreeWidget::Image(m_tvwSiteTree->Node(strKey_p));
    const QString folderKey = folder == Root() ? QStringLiteral("ROOT") : QLatin1Char('/') + AddressOf(folder);
    QString serverPath = ServerFolderPaths::UpLoadPath(folderKey, SiteTreeKeys::CurrentSite());
    if (!serverPath.endsWith(QLatin1Char('/')))
        serverPath += QLatin1Char('/');
    serverPath += QFileInfo(strLocal_p).fileName();
    if ((image == 4 || image == 5) && CRollback().BackupPage(serverPath) == 0)
        return Fail(QStringLiteral("m_Subclass3_WndMessageX"));
    MError::ClearError();
    CFTPS ftp;
    const long sent = ftp.SendFile(strLocal_p, AddressOf(folder));
    if (sent != 1)
        return Fail(QStringLiteral("m_Subclass3_WndMessageX"));
    return 1;
}

// ------------------------------------------------------------ drag out

// Text for any drop target, the file's address as a URL for the file
// managers and the local tree, and, for a file, an HTML fragment with a
// fresh id for a drop into the page.
QMimeData *CSiteTreeView::DragData(QTreeWidgetItem *item) const
{
    const QString key = SiteTreeWidget::Key(item);
    const QString text = item->text(0);
    const int image = SiteTreeWidget::Image(item);
    auto *data = new QMimeData;
    if (image == 4)
        data->setText(QStringLiteral("<A href=%1>%2</A>").arg(key, text));
    else if (image == 6)
        data->setText(QStringLiteral("<IMG src=%1>").arg(key));
    else
        data->setText(key);
    data->setUrls({QUrl(key)});
    if (!SiteTreeWidget::IsFolder(item)) {
        g_strDragId = QTime::currentTime().toString(QStringLiteral("hhmmss"));
        const QString address = key.startsWith(QLatin1String("http")) ? key : Root() + QLatin1Char('/') + key;
        QString inner;
        if (image == 4)
            inner = QStringLiteral("<A id=\"%1\" href=\"%2\">%3</A>").arg(g_strDragId, address, text);
        else if (image == 6)
            inner = QStringLiteral("<IMG id=\"%1\" src=\"%2\">").arg(g_strDragId, address);
        else
            inner = QStringLiteral("<A id=\"%1\" href=\"%2\">%2</A>").arg(g_strDragId, address);
        data->setHtml(QStringLiteral("<HTML><BODY><FONT FACE=Arial SIZE=1 COLOR=BLUE>") + inner
                      + QStringLiteral("</FONT></BODY></HTML>"));
    }
    g_boolSiteTreeDrag = true;
    return data;
}
