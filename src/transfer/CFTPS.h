#pragma once

#include "config/MGlobalProjectObjects.h"
#include "transfer/DIRDATA.h"
#include "transfer/FILEITEM.h"
#include "transfer/FtpSession.h"
#include "transfer/TransferStatusWindow.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

class DirListing;
class DirTreeNodes;
class IndexSearch;

// The client through which every part of the program reaches a site: the
// session with its logon, the mapping of page paths to server folders, and
// the operations on pages and files. Each operation returns a status: 1
// success, 0 failure with the pending error set (MError), and the further
// codes listed below.
//
// Sessions: an operation on a connected client costs no new login, and
// clients for the same account share one connection (FtpSession). A
// connection the server dropped is logged on again by the next operation.
//
// The FTP address (baseurl, or the address given to Init) may carry a port
// and a scheme that says how the connection is protected (FtpAddress).
class CFTPS : public QObject
{
    Q_OBJECT

public:
    // Status codes beside 1 (success) and 0 (failure, error pending).
    enum Status : long {
        ExpectedFailure = -1,       // refused the expected way, or nothing found
        WriteRefused = -550,        // the server refused the write
        ProtocolFailure = -20142,   // in practice a wrong user name or password
        NetworkDown = -25050,
        RefusedOrTimedOut = -25061,
        NoInternet = -25066,
        FtpHostNotFound = -26002,
        HostNotFound = -26005
    };

    CFTPS();
    ~CFTPS() override;

    // Session.
    long Init(const QString &strHTTPURL_p, const QString &strFTPURL_p, const QString &strUsername_p,
              const QString &strPassword);
    long Logon();
    long LogonEx(const QVariant &lIndex);
    long CloseDown();
    long CanUsePassiveMode(long lIndex_p, bool &boolPassive_p);
    long LetUSERID(const QString &strNewUser_p);
    long LetPASSWORD(const QString &strNewPassword_p);
    long GetBASEURL(QString &strBaseURL_p);
    long LetBASEURL(const QString &strNewBaseURL_p);
    long SetHideTransferDialog(bool bHide_p);
    bool Connected() const;
    // The session's HTTP address: Init's, or the record's after a logon.
    QString HTTPURL() const { return m_strHTTPURL; }
    QString LoginFolderMark() const;

    // Folders and paths.
    long ChangeToRootFolder();
    long ChangeFolder(const QString &strPath);
    long BuildRemoteFolder(const QString &strDocumentURL_p, QString &strRemoteFolder_p,
                           QString &strRemoteFile_p);
    static QString TrimSlashes(const QString &s);
    static QString RemoveTildePart(const QString &strPath);
    static long RemoveFTPPath(const QString &strPath, QString &strResult, long lStart);
    static long RemoveLocalPath(const QString &strPath, QString &strResult, long lLength);

    // Pages and files. Page texts are bytes in the form the server holds.
    long GetASCIIFile(const QString &strURL_p, QByteArray &strFileData_p);
    long SendPage(const QByteArray &strASCII_p, const QString &strURL_p);
    long SendNewPage(const QString &strDocTitle_p, const QString &strURL_p);
    // boolFreshName_p: the file's name is one no reader uses yet, so the file
    // is written straight under it (SafeReplace::SetFreshName).
    long SendFile(const QString &strFileToSend_p, const QString &strServerFolder_p, bool boolFreshName_p = false);
    long SendNewFile(const QString &strLocalFile_p, const QString &strURL_p);
    long SaveFile(const QString &strURL_p, const QString &strLocalFilePath_p,
                  bool boolBinaryTransfer = false);
    long CopyFile(const QString &strURL_p, const QString &strCopyFile_p);
    long RenameFile(const QString &strURL_p, const QString &strNewFileName_p);
    long RemoveFile(const QString &strURL_p);
    // The names of the files in the folder of a page address; an address
    // ending in "/" names the folder itself.
    long ListFolderFiles(const QString &strURL_p, QStringList &names_p);
    long RemoveDir(const QString &strURL_p);
    long CreateDir(const QString &strURL_p);
    // boolMade_p, when given, says whether the folder was made now.
    long CreateFolder(const QString &strPath_p, const QString &strFolderName_p, bool *boolMade_p = nullptr);

    // Batch display of many files (used by the recursive operations).
    void SetBatch(bool boolBatch_p, double dblTotal_p);

    // Listings of folders on the server (DirListing, DirSort).
    long GetDirBranch(DirTreeNodes &tvwTree_p, const QString &strPath_p = QString());
    long GetDirFiles(DirTreeNodes &tvwTree_p, const QString &strPath_p = QString());
    long GetDir(DIRDATA &dirData_p);
    long GetDirLevel(DIRDATA &dirData_p, long lLevel_p);
    long GetFolders(DirTreeNodes &tvwTree_p, const QString &strPath_p);
    long GetSubFolders(const QString &strPath_p, QStringList &strFolders_p);
    long GetFiles_In_Dir(const QString &strPath_p, QStringList &strFiles_p);
    long GetFiles_In_DirEx(const QString &strPath_p, QList<FILEITEM> &files_p);
    long GetFileInfo(const QString &strURL_p, QString &strFileSize_p, QString &strFileTime_p,
                     QString &strCompletePath_p, bool bIsDir_p = false);
    static long SortDIR(DIRDATA &dirData_p);
    static long SortDIR2(DIRDATA &dirData_p);

    // Batches of files and folders on one session (FileBatch).
    long CopyFilesAndFolders(const QString &strTarget_p, const QList<FILEITEM> &items_p, long &lStatus_p);
    long DeleteFilesAndFolders(const QString &strFolder_p, const QList<FILEITEM> &items_p, long &lStatus_p);
    long DownLoadFilesAndFolders(const QString &strRoot_p, const QList<FILEITEM> &items_p,
                                 const QString &strLocalTarget_p, long &lStatus_p);

    // Caches on the road to the site (CacheServerCheck).
    long CheckForCacheServers(long lCurrentURL_p);
    long CheckCacheInOneFolder(const QString &strFolder_p, const QString &strCurrentBaseUrl);

    // Activation: the proof that the HTTP address and the FTP account are
    // one site, and the search for its index file (IndexSearch).
    long SendTest(long lURLDATAIndex_p);
    // 1 found; -1 not found; -2 a page of a broken search stands aside
    // (RestoreIndex puts it back); -3 cancelled; 0 failure.
    long GetIndexFile(QString &strIndex_p, QString &strRoot_p, QString &strRemoteFolder_p);
    long RestoreIndex();
    long GetSpecificIndexFile(const QString &strPath_p, QString &strIndex_p);
    long CreateIndexFile(QString &strIndexFile_p, QString &strFTPRoot_p);
    long CheckEnterPermissions(const QString &strPath_p);
    long CheckFolderPermissions(const QString &strPath_p);
    // The activation's Cancel: sets the cancel flag and ends the request
    // under way; the search puts the page it is trying back before it ends.
    void CancelActivation();

    // The text of a new page, as SendNewPage writes it.
    static QByteArray NewPageText(const QString &strDocTitle_p);

    // The cancel flag of activation: the longer operations stop when set.
    static bool g_boolCancelActivation;

    // Seconds a reply of the server may take, and a transfer may move no
    // byte, before the operation fails with the time-out message: the
    // setting ServerTimeout of the Environment section, 30 when unset.
    static int ServerTimeout();

private:
    friend class SafeReplace;
    friend class DirListing;
    friend class FileBatch;
    friend class CacheServerCheck;
    friend class IndexSearch;

    DirListing &Listing();
    IndexSearch &Search();

    struct Failure
    {
        long number = 0;
        QString description;
    };

    // Session internals.
    long LogonRecord(long lIndex, const QString &strPosition);
    void FirewallSetUp();
    static QString FirewallRoute();
    void LeaveOldRoute();
    void SessionFor(const QString &strAccount_p);
    void UseSession(std::shared_ptr<FtpSession> session);
    SiteRecord Record() const;
    QString RootFolder() const;
    bool Reconnect();
    bool ConnectionLost();
    bool Capture(long lResult);
    bool TrustCertificate(long lIndex, const QString &strPosition);
    void ApplyAccount(const SiteRecord &site);
    bool KeyFileReadable(const SiteRecord &site, const QString &strPosition);
    bool LogonWithPassphrase();
    long Fail(const QString &strPosition);
    long Tell(const QString &strPosition_p, bool boolWriting_p, const QString &strAfter_p);

    // The first steps of every operation: connected and at the top of the
    // site, then in the folder of strURL_p, whose file name is given back.
    long Connect();
    long GoToFile(const QString &strURL_p, QString &strFolder_p, QString &strFile_p);

    // Every file written over on the server goes through the safe replace.
    long Replace(const QString &strLocalFile_p, const QString &strFolder_p, const QString &strFile_p,
                 const QString &strPosition_p, bool boolPage_p, bool boolFreshName_p = false);
    bool Rename(const QString &strFrom_p, const QString &strTo_p);
    bool ListFileNames(QStringList &names_p);
    bool Fetch();
    long WriteWorkFile(const QByteArray &bytes_p, QString &strWork_p, const QString &strPosition_p);
    long OnFile(const QString &strURL_p, const QString &strPosition_p,
                const std::function<long(const QString &)> &command_p,
                const std::function<bool(const Failure &)> &isExpected_p);
    static QString WorkFileName();

    // Status window events.
    void OnStartTransfer();
    void OnTransfer(qint64 BytesTransferred, const QByteArray &Text);
    void OnEndTransfer();
    void OnCancel();

    FtpControl &Ftp() const { return m_session->control; }

    std::shared_ptr<FtpSession> m_session;
    std::shared_ptr<DirListing> m_listing; // made at the first listing
    std::shared_ptr<IndexSearch> m_search; // made at the first activation step
    std::unique_ptr<TransferStatusWindow> m_frmTransferStatus;
    Failure m_failure;
    long m_lRecord = -1;         // the record of the session; -1: lCurrentURL
    bool m_boolInitSession = false; // made by Init, bound to no record
    QString m_strHTTPURL;
    QString m_strStartFolder;
    bool m_boolHideDialog = false;
    bool m_boolRunning = false;  // an operation of this client is under way
    bool m_boolCollect = false;  // the receive buffer takes the data
    QByteArray m_strReceiveBuffer;
    QString m_strTransferName;
    double m_dblTransferSize = 0;
    bool m_boolBatch = false;
    double m_dblBatchTotal = 0;
    double m_dblBatchPosition = 0;
};
