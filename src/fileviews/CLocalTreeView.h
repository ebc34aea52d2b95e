#pragma once

#include "transfer/FILEITEM.h"

#include <QList>
#include <QObject>
#include <QStringList>

class CFTPS;
class FileTreeWidget;
class QComboBox;
class QMimeData;
class QPushButton;
class QTreeWidgetItem;
class SiteTreeWidget;

// The tree of this computer's files beside the site's: the home folder, the
// file system and the mounted volumes under "My computer", each folder read
// from the disk when it is first opened. Files and folders dragged from it
// onto a folder of the site tree go up (the site tree takes that drop);
// files of the site dropped on one of its folders, or fetched with the
// download button, come down into it after a question, with the progress
// window and its Cancel, and a question for each file that is there already.
class CLocalTreeView : public QObject
{
    Q_OBJECT

public:
    explicit CLocalTreeView(QObject *parent = nullptr);

    // Binds the controls of the window by name (tvwLocal, cmbDrives,
    // cmdDownloadFiles, cmdUploadFiles, tvwSiteTree) and fills the tree.
    long Init(QWidget *frmVindrell_p);
    // Fills the tree anew: the top levels, with the home folder open.
    long PopulateTree();
    // Forgets what a node holds: the next opening reads the disk again.
    void CollapseNode(QTreeWidgetItem *node);
    // Fetches server files and folders (site tree keys; type 1 a file, 0 a
    // folder) into the local folder of a node, after the question. 1 done,
    // -1 not asked for or not all came down (the user has been told), 0
    // failure with the error shown.
    long DownLoadFilesFromFTP_server(const QStringList &astrKeys_p, const QList<long> &alTypes_p,
                                     QTreeWidgetItem *target_p);

    void LeftClick(const QPoint &at);
    void RightClick(const QPoint &at);
    // What a drag out of the tree carries: the file's path as a URL. None
    // for the top levels, nor for a node that can't be sent (the user is
    // told why).
    QMimeData *DragData(QTreeWidgetItem *item);

    // A drag out of the local tree is under way.
    static bool g_boolLocalTreeDrag;

private:
    void Bind(QWidget *frmVindrell_p);
    void BindDragAndDrop();
    void OnExpanded(QTreeWidgetItem *node);
    void OnCollapsed(QTreeWidgetItem *node);
    bool ReadNode(QTreeWidgetItem *node);
    QTreeWidgetItem *AddNode(QTreeWidgetItem *parent, const QString &key, const QString &text, int image,
                             const QString &problem = QString());
    QTreeWidgetItem *MakeNode(const QString &key, const QString &text, int image, const QString &problem);
    static void AddDummyChild(QTreeWidgetItem *node);
    static bool HoldsDummyOnly(const QTreeWidgetItem *node);
    static bool TakesFiles(const QTreeWidgetItem *node);
    void FromSite(QTreeWidgetItem *target);
    void Reread(QTreeWidgetItem *node);
    void GoToRoot(int index);
    long ServerItems(CFTPS &ftp, const QString &strKey_p, long lType_p, QList<FILEITEM> &items_p) const;
    void SetTransferButtons(bool boolDown_p, bool boolUp_p);
    long Fail(const QString &strProcedure_p);

    QWidget *m_frmVindrell = nullptr;
    FileTreeWidget *m_tvwLocal = nullptr;
    QComboBox *m_cmbDrives = nullptr;
    QPushButton *m_cmdDownloadFiles = nullptr;
    QPushButton *m_cmdUploadFiles = nullptr;
    SiteTreeWidget *m_tvwSiteTree = nullptr;
};
