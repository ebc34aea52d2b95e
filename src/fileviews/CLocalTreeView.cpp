#include "fileviews/CLocalTreeView.h"

#include "config/MGlobalProjectObjects.h"
#include "fileviews/CSiteTreeView.h"
#include "fileviews/LocalFolderListing.h"
#include "fileviews/LocalRoots.h"
#include "fileviews/MTreeViewTypes.h"
#include "fileviews/ReplaceFileDialog.h"
#include "fileviews/SiteTreeKeys.h"
#include "fileviews/SiteTreeWidget.h"
#include "fileviews/frmTreeViewLocal.h"
#include "support/Hourglass.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"
#include "transfer/FileBatch.h"
#include "transfer/FilePictures.h"

#include <QComboBox>
#include <QMimeData>
#include <QPushButton>
#include <QStyle>
#include <QUrl>

bool CLocalTreeView::g_boolLocalTreeDrag = false;

namespace {
constexpr long txtMyComputer = 19800, txtHighlighted = 19801, txtDownloadTo = 19802, txtDownloadFailed = 19803,
               txtFoldersAndSub = 19804, txtLocalFiles = 19815, txtSizeIs = 19626, txtDownloadTitle = 19631,
               txtNotAllDownloaded = 19633, txtFilesDot = 19641;
const QString kComputer = QStringLiteral("computer");
const QString kDummy = QStringLiteral("***");
constexpr int kFolder = 1, kOpenFolder = 2;
constexpr int ProblemRole = Qt::UserRole + 2;

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QStyle::StandardPixmap PixmapOf(int image, bool problem)
{
    if (problem)
        return QStyle::SP_MessageBoxWarning;
    switch (image) {
    case kFolder: return QStyle::SP_DirIcon;
    case kOpenFolder: return QStyle::SP_DirOpenIcon;
    case LocalRoots::Fixed: return QStyle::SP_DriveHDIcon;
    case LocalRoots::Disc: return QStyle::SP_DriveCDIcon;
    case LocalRoots::Removable: return QStyle::SP_DriveFDIcon;
    default: return QStyle::SP_FileIcon;
    }
}

bool ShowAllFiles()
{
    return (MGlobalProjectObjects::AdvancedUserSettings & advShowAllFiles) != 0;
}

QString Problem(const QTreeWidgetItem *node)
{
    return node ? node->data(0, ProblemRole).toString() : QString();
}
} // namespace

CLocalTreeView::CLocalTreeView(QObject *parent) : QObject(parent)
{
}

long CLocalTreeView::Init(QWidget *frmVindrell_p)
{
    if (m_frmVindrell != frmVindrell_p)
        Bind(frmVindrell_p);
    g_boolLocalTreeDrag = false;
    return PopulateTree();
}

void CLocalTreeView::Bind(QWidget *frmVindrell_p)
{
    m_frmVindrell = frmVindrell_p;
    m_tvwLocal = frmVindrell_p->findChild<FileTreeWidget *>(QStringLiteral("tvwLocal"));
    m_cmbDrives = frmVindrell_p->findChild<QComboBox *>(QStringLiteral("cmbDrives"));
    m_cmdDownloadFiles = frmVindrell_p->findChild<QPushButton *>(QStringLiteral("cmdDownloadFiles"));
    m_cmdUploadFiles = frmVindrell_p->findChild<QPushButton *>(QStringLiteral("cmdUploadFiles"));
    m_tvwSiteTree = frmVindrell_p->findChild<SiteTreeWidget *>(QStringLiteral("tvwSiteTree"));
    connect(m_tvwLocal, &QTreeWidget::itemExpanded, this, &CLocalTreeView::OnExpanded);
    connect(m_tvwLocal, &QTreeWidget::itemCollapsed, this, &CLocalTreeView::OnCollapsed);
    connect(m_tvwLocal, &FileTreeWidget::MousePressed, this, [this](Qt::MouseButton button, const QPoint &at) {
        if (button == Qt::LeftButton)
            LeftClick(at);
        else if (button == Qt::RightButton)
            RightClick(at);
    });
    // F5 reads the selected folder anew, as it stands on the disk now.
    connect(m_tvwLocal, &FileTreeWidget::RefreshPressed, this, [this] { Reread(m_tvwLocal->currentItem()); });
    if (m_cmbDrives)
        connect(m_cmbDrives, &QComboBox::activated, this, &CLocalTreeView::GoToRoot);
    if (m_cmdDownloadFiles)
        // With a local file selected, the files come into its folder.
        connect(m_cmdDownloadFiles, &QPushButton::clicked, this, [this] {
            QTreeWidgetItem *target = m_tvwLocal->currentItem();
            if (target && !TakesFiles(target) && Problem(target).isEmpty())
                target = target->parent();
            if (TakesFiles(target))
                FromSite(target);
        });
    BindDragAndDrop();
}

void CLocalTreeView::BindDragAndDrop()
{
    m_tvwLocal->dragData = [this](QTreeWidgetItem *item) { return DragData(item); };
    m_tvwLocal->dragEnded = [] { g_boolLocalTreeDrag = false; };
    // Only files of the site are taken, on a folder or a top level; files
    // dragged from anywhere else are not.
    m_tvwLocal->acceptsDrop = [](const QMimeData *data, QTreeWidgetItem *item) {
        return CSiteTreeView::g_boolSiteTreeDrag && data->hasUrls() && TakesFiles(item);
    };
    m_tvwLocal->dropped = [this](const QList<QUrl> &, const QString &target) {
        QTreeWidgetItem *item = m_tvwLocal->currentItem();
        if (item && FileTreeWidget::Key(item) == target)
            FromSite(item);
    };
}

// ------------------------------------------------------------ the tree

// The home folder is the main level: the tree opens on it, read.
long CLocalTreeView::PopulateTree()
{
    Hourglass wait;
    m_tvwLocal->clear();
    QTreeWidgetItem *computer = AddNode(nullptr, kComputer, L(txtMyComputer), LocalRoots::Computer);
    const QList<LocalRoots::Root> roots = LocalRoots::List();
    QTreeWidgetItem *home = nullptr;
    for (const LocalRoots::Root &root : roots) {
        QTreeWidgetItem *node = AddNode(computer, root.strPath, root.strText, root.lImage);
        if (LocalFolderListing::HasContent(root.strPath, ShowAllFiles()))
            AddDummyChild(node);
        if (!home)
            home = node;
    }
    if (auto *form = m_frmVindrell->findChild<frmTreeViewLocal *>(QStringLiteral("frmTreeViewLocal")))
        form->PopulateDriveCombo(roots);
    computer->setExpanded(true);
    if (home)
        home->setExpanded(true);
    return 1;
}

QTreeWidgetItem *CLocalTreeView::AddNode(QTreeWidgetItem *parent, const QString &key, const QString &text, int image,
                                         const QString &problem)
{
    QTreeWidgetItem *node = MakeNode(key, text, image, problem);
    if (parent)
        parent->addChild(node);
    else
        m_tvwLocal->addTopLevelItem(node);
    return node;
}

// A node that can't be opened or sent shows a warning and says why when
// the pointer rests on it.
QTreeWidgetItem *CLocalTreeView::MakeNode(const QString &key, const QString &text, int image, const QString &problem)
{
    auto *node = new QTreeWidgetItem(QStringList(text));
    node->setData(0, FileTreeWidget::KeyRole, key);
    node->setData(0, FileTreeWidget::ImageRole, image);
    node->setIcon(0, m_tvwLocal->StyleIcon(PixmapOf(image, !problem.isEmpty())));
    if (!problem.isEmpty()) {
        node->setData(0, ProblemRole, problem);
        node->setToolTip(0, problem);
    }
    return node;
}

void CLocalTreeView::AddDummyChild(QTreeWidgetItem *node)
{
    node->addChild(new QTreeWidgetItem(QStringList(kDummy)));
}

bool CLocalTreeView::HoldsDummyOnly(const QTreeWidgetItem *node)
{
    return node->childCount() == 1 && node->child(0)->text(0) == kDummy && FileTreeWidget::Key(node->child(0)).isEmpty();
}

// A folder or a top level that files may come down into.
bool CLocalTreeView::TakesFiles(const QTreeWidgetItem *node)
{
    return node && Problem(node).isEmpty() && !FileTreeWidget::Key(node).isEmpty()
           && (FileTreeWidget::IsFolder(node) || LocalRoots::IsDriveImage(FileTreeWidget::Image(node)));
}

// The first opening reads the disk; later ones show what was read. A
// folder that can't be read says why and stays closed, ready to be tried
// again.
void CLocalTreeView::OnExpanded(QTreeWidgetItem *node)
{
    if (FileTreeWidget::Image(node) == kFolder) {
        node->setData(0, FileTreeWidget::ImageRole, kOpenFolder);
        node->setIcon(0, m_tvwLocal->StyleIcon(QStyle::SP_DirOpenIcon));
    }
    if (!HoldsDummyOnly(node))
        return;
    delete node->takeChild(0);
    if (ReadNode(node))
        return;
    AddDummyChild(node);
    const QSignalBlocker quiet(m_tvwLocal);
    node->setExpanded(false);
    OnCollapsed(node);
    UserQuestions::MsgBox(MError::ErrorDescription(), UserQuestions::vbOKOnly | UserQuestions::vbExclamation,
                          L(txtLocalFiles));
    MError::ClearError();
}

void CLocalTreeView::OnCollapsed(QTreeWidgetItem *node)
{
    if (FileTreeWidget::Image(node) != kOpenFolder)
        return;
    node->setData(0, FileTreeWidget::ImageRole, kFolder);
    node->setIcon(0, m_tvwLocal->StyleIcon(QStyle::SP_DirIcon));
}

// The folders, then the files (AddSubDirs, AddSubFile), put in at once.
bool CLocalTreeView::ReadNode(QTreeWidgetItem *node)
{
    Hourglass wait;
    QList<LocalFolderListing::Entry> entries;
    if (LocalFolderListing::List(FileTreeWidget::Key(node), ShowAllFiles(), entries) != 1)
        return false;
    QList<QTreeWidgetItem *> children;
    for (const LocalFolderListing::Entry &entry : std::as_const(entries)) {
        const int image = entry.boolFolder ? kFolder : int(FilePictures::SetPictureIndex(entry.strName));
        QTreeWidgetItem *child = MakeNode(entry.strPath, entry.strName, image, entry.strProblem);
        if (entry.boolFolder && entry.boolHasContent)
            AddDummyChild(child);
        children.append(child);
    }
    node->addChildren(children);
    return true;
}

void CLocalTreeView::CollapseNode(QTreeWidgetItem *node)
{
    if (!node)
        return;
    const QSignalBlocker quiet(m_tvwLocal);
    qDeleteAll(node->takeChildren());
    AddDummyChild(node);
    node->setExpanded(false);
    OnCollapsed(node);
}

// What was open opens again, read anew.
void CLocalTreeView::Reread(QTreeWidgetItem *node)
{
    if (!TakesFiles(node))
        return;
    const bool open = node->isExpanded();
    CollapseNode(node);
    if (open)
        node->setExpanded(true);
}

void CLocalTreeView::GoToRoot(int index)
{
    const QString path = m_cmbDrives->itemData(index).toString();
    QTreeWidgetItem *computer = m_tvwLocal->topLevelItem(0);
    for (int i = 0; computer && i < computer->childCount(); ++i) {
        if (FileTreeWidget::Key(computer->child(i)) != path)
            continue;
        m_tvwLocal->setCurrentItem(computer->child(i));
        m_tvwLocal->scrollToItem(computer->child(i), QAbstractItemView::PositionAtTop);
        return;
    }
}

// ------------------------------------------------------------ the clicks

// Down: a folder, with a node of the site selected. Up: anything else but
// a top level, with a folder of the site selected. A whole disk never goes
// up, whatever its kind.
void CLocalTreeView::LeftClick(const QPoint &at)
{
    QTreeWidgetItem *node = m_tvwLocal->itemAt(at);
    if (!node)
        return;
    m_tvwLocal->setCurrentItem(node);
    QTreeWidgetItem *site = m_tvwSiteTree ? m_tvwSiteTree->currentItem() : nullptr;
    const int image = FileTreeWidget::Image(node);
    if (FileTreeWidget::IsFolder(node) && Problem(node).isEmpty())
        SetTransferButtons(site != nullptr, false);
    else if (LocalRoots::IsDriveImage(image) || FileTreeWidget::Key(node) == kComputer || !Problem(node).isEmpty()
             || FileTreeWidget::Key(node).isEmpty())
        SetTransferButtons(false, false);
    else
        SetTransferButtons(false, SiteTreeWidget::IsFolder(site));
}

void CLocalTreeView::RightClick(const QPoint &at)
{
    if (QTreeWidgetItem *node = m_tvwLocal->itemAt(at))
        m_tvwLocal->setCurrentItem(node);
}

void CLocalTreeView::SetTransferButtons(bool boolDown_p, bool boolUp_p)
{
    if (m_cmdDownloadFiles)
        m_cmdDownloadFiles->setEnabled(boolDown_p);
    if (m_cmdUploadFiles)
        m_cmdUploadFiles->setEnabled(boolUp_p);
}

// ------------------------------------------------------------ drag out

QMimeData *CLocalTreeView::DragData(QTreeWidgetItem *item)
{
    const QString key = FileTreeWidget::Key(item);
    if (key.isEmpty() && Problem(item).isEmpty())
        return nullptr;
    if (key == kComputer || LocalRoots::IsDriveImage(FileTreeWidget::Image(item)))
        return nullptr;
    if (!Problem(item).isEmpty()) {
        UserQuestions::MsgBox(item->text(0) + QStringLiteral(": ") + Problem(item),
                              UserQuestions::vbOKOnly | UserQuestions::vbExclamation, L(txtLocalFiles));
        return nullptr;
    }
    auto *data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(key)});
    data->setText(key);
    g_boolLocalTreeDrag = true;
    return data;
}

// ------------------------------------------------------------ download

void CLocalTreeView::FromSite(QTreeWidgetItem *target)
{
    QTreeWidgetItem *site = m_tvwSiteTree ? m_tvwSiteTree->currentItem() : nullptr;
    const QString key = SiteTreeWidget::Key(site);
    if (!site || key.isEmpty() || key.startsWith(SiteTreeWidget::WaitPrefix))
        return;
    DownLoadFilesFromFTP_server({key}, {SiteTreeWidget::IsFolder(site) ? 0L : 1L}, target);
    SetTransferButtons(false, false);
}

long CLocalTreeView::Fail(const QString &strProcedure_p)
{
    MError::SetErrorIfClear(0, QStringLiteral("The command failed"), QStringLiteral("CLocalTreeView.") + strProcedure_p);
    MError::ShowError();
    return 0;
}

// The records of one selected node of the site: a folder with all below
// it (the site's root brings only what it holds), or one file.
long CLocalTreeView::ServerItems(CFTPS &ftp, const QString &strKey_p, long lType_p, QList<FILEITEM> &items_p) const
{
    const QString root = SiteTreeKeys::CurrentRootKey();
    const QString address = SiteTreeKeys::Address(strKey_p, root);
    const QString name = strKey_p.mid(strKey_p.lastIndexOf(QLatin1Char('/')) + 1);
    QString size, time, path;
    if (lType_p == 1) {
        if (ftp.GetFileInfo(address, size, time, path) != 1)
            return 0;
        items_p.append({path, name, size.toLongLong(), 1});
        return 1;
    }
    if (strKey_p != root) {
        if (ftp.GetFileInfo(address, size, time, path, true) != 1)
            return 0;
        items_p.append({path, name, 0, 0});
    }
    QList<FILEITEM> below;
    if (ftp.GetFiles_In_DirEx(SiteTreeKeys::FolderAddress(strKey_p, root), below) != 1)
        return 0;
    items_p.append(below);
    return 1;
}

long CLocalTreeView::DownLoadFilesFromFTP_server(const QStringList &astrKeys_p, const QList<long> &alTypes_p,
                                                 QTreeWidgetItem *target_p)
{
    const QString local = FileTreeWidget::Key(target_p);
    if (astrKeys_p.isEmpty() || !TakesFiles(target_p))
        return -1;
    CFTPS ftp;
    QList<FILEITEM> items;
    {
        Hourglass wait;
        for (qsizetype i = 0; i < astrKeys_p.size(); ++i)
            if (ServerItems(ftp, astrKeys_p.at(i), alTypes_p.value(i, 1), items) != 1)
                return Fail(QStringLiteral("DownLoadFilesFromFTP_server"));
    }
    long files = 0;
    double bytes = 0;
    for (const FILEITEM &item : std::as_const(items)) {
        files += item.lType == 1 ? 1 : 0;
        bytes += double(item.lSize);
    }
    const QString question = L(txtHighlighted) + QLatin1Char(' ') + QString::number(items.size() - files) + QLatin1Char(' ')
                             + L(txtFoldersAndSub) + QLatin1Char(' ') + QString::number(files) + QLatin1Char(' ')
                             + L(txtFilesDot) + QLatin1Char('\n') + L(txtSizeIs) + QLatin1Char(' ')
                             + MTreeViewTypes::FormatSizeString(bytes) + QStringLiteral("\n\n") + L(txtDownloadTo)
                             + QLatin1Char(' ') + local + QLatin1Char('?');
    if (UserQuestions::MsgBox(question, UserQuestions::vbYesNo | UserQuestions::vbQuestion, L(txtDownloadTitle))
        != UserQuestions::vbYes)
        return -1;
    const bool unfit = CSiteTreeView::DropUnfitNames(items);
    const QString first = SiteTreeKeys::ParentKey(astrKeys_p.first());
    const QString root = SiteTreeKeys::CurrentRootKey();
    FileBatch batch(ftp);
    batch.SetExistingFileQuestion(ReplaceFileDialog::ForDownload(m_tvwLocal));
    long status = 0;
    const long done = batch.DownLoadFilesAndFolders(
        SiteTreeKeys::FolderAddress(astrKeys_p.first() == root ? root : first, root), items, local, status);
    Reread(target_p);
    if (done == -1)
        return -1;
    if (done == 1 && !unfit && !CSiteTreeView::CaseTwinsUnder(items, local))
        return 1;
    QString text = L(txtNotAllDownloaded);
    if (done == 0)
        text += QStringLiteral("\n\n") + MError::ErrorDescription();
    MError::LogError();
    UserQuestions::MsgBox(text, UserQuestions::vbOKOnly | UserQuestions::vbExclamation, L(txtDownloadFailed));
    return -1;
}
