#pragma once

#include "fileviews/TextEditorRoundTrip.h"
#include "transfer/FILEITEM.h"

#include <QObject>
#include <QPoint>
#include <QStringList>

#include <functional>

class QMimeData;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class SiteTreeWidget;
class frmMenu;

// The tree of the site's files in the site pane: it lists the site, offers
// the file and folder commands on its right-click menu, takes local files
// dropped on a folder, sends and fetches through the two transfer buttons,
// opens a file in the text editor and sends it back when saved, and is the
// source of a link or a picture dragged into the page. Every transfer runs
// on a fresh transfer client for the site in use.
class CSiteTreeView : public QObject
{
    Q_OBJECT

public:
    explicit CSiteTreeView(QObject *parent = nullptr);

    // Binds the controls of the window by name (tvwSiteTree, tvwLocal,
    // cmdDownloadFiles, cmdUploadFiles) and fills the tree when it is
    // empty or shows another site. 1, or 0 with the error shown.
    long init(QWidget *frmVindrell_p);
    // Reads the site anew. 1, -1 nothing to show, 0 failure.
    long PopulateTree();

    long CopyFile(const QString &strKey_p);
    long DeleteFile(const QString &strKey_p);
    long RenameFile(const QString &strKey_p);
    long SaveFile(const QString &strKey_p);
    long SendToFolder(const QString &strKey_p);
    long CreateFolder(const QString &strKey_p);
    long DeleteFolder(const QString &strKey_p);
    long DownLoadFilesFromFTP_server(const QString &strKey_p);
    long OpenFileInNotepad();
    // Re-reads one folder into the tree and opens it.
    long CollapseNode(const QString &strKey_p);
    // Local files and folders to a folder of the site, after the question:
    // the drop on the tree and the upload button.
    long TransferToServer(const QStringList &astrLocal_p, const QString &strTargetKey_p);

    void LeftClick(const QPoint &at);
    void RightClick(const QPoint &at);

    // What a drag out of the tree carries for a node.
    QMimeData *DragData(QTreeWidgetItem *item) const;

    // The addresses of the pages on screen: a file sent back from the text
    // editor that is one of them is asked about first.
    std::function<QStringList()> documentAddresses;
    // A double click on a page shows it in the browser, where it can be
    // edited: the user who made or found a page wants to see it next.
    std::function<void(const QString &strAddress_p)> openPage;
    TextEditorRoundTrip &Editor() { return m_editor; }

    // Takes out of a download the names a local disk can't hold as they
    // are, and all below such a folder; whether it took any.
    static bool DropUnfitNames(QList<FILEITEM> &items_p);
    // Whether two names of a download were one file on the local folder's
    // disk, which can't tell upper from lower case.
    static bool CaseTwinsUnder(const QList<FILEITEM> &items_p, const QString &strLocal_p);

    // The id of the link or picture dragged out last, by which the page's
    // drop handler finds what arrived; and whether a drag out of the site
    // tree is under way.
    static QString g_strDragId;
    static bool g_boolSiteTreeDrag;

private:
    void Bind(QWidget *frmVindrell_p);
    void BindDragAndDrop();
    void Dispatch(const QString &strItem_p, const QString &strKey_p);
    void ApplyLimits(frmMenu &menu, const QString &strKey_p, bool boolFolder_p) const;
    void SetTransferButtons();
    QString Root() const { return m_strRootKey; }
    QString AddressOf(const QString &strKey_p) const;
    QString FolderKeyOf(const QString &strKey_p) const;
    long Fail(const QString &strProcedure_p);
    long NewNameWithExtension(QString &strNew_p, const QString &strOld_p, bool boolStopOnNo_p);
    long ServerCount(const QString &strKey_p, QList<FILEITEM> &items_p, QString &strCounts_p);
    long SendBack(const QString &strLocal_p, const QString &strKey_p);

    QWidget *m_frmVindrell = nullptr;
    SiteTreeWidget *m_tvwSiteTree = nullptr;
    QTreeWidget *m_tvwLocal = nullptr;
    QPushButton *m_cmdDownloadFiles = nullptr;
    QPushButton *m_cmdUploadFiles = nullptr;
    QString m_strRootKey;     // the site the tree was filled for
    long m_lSiteIndex = -1;
    QPoint m_lastMouse;
    TextEditorRoundTrip m_editor;
    QString m_strEditorKey; // the node of the file out in the editor
};
