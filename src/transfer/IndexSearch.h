#pragma once

#include "transfer/CFTPS.h"
#include "transfer/DIRDATA.h"

#include <QByteArray>
#include <QString>

class HttpControl;

// The proof that an HTTP address and an FTP account are one site: a file
// with a mark of its own is put on the server over FTP, the site is fetched
// over HTTP, and the mark coming back says which file the web server gives.
// The test file takes the place of a live page for a moment, so each run
// puts the page back on every way out (success, nothing found, Cancel, a
// lost connection: then after logging on again). A page that could not be
// put back is left under a name ending in "_p_sec", which the next search
// finds before it changes anything (GetIndexFile gives -2, RestoreIndex puts
// it back).
class IndexSearch
{
public:
    explicit IndexSearch(CFTPS &ftp);
    ~IndexSearch();

    long SendTest(long lURLDATAIndex_p);
    long GetIndexFile(QString &strIndex_p, QString &strRoot_p, QString &strRemoteFolder_p);
    long RestoreIndex();
    long GetSpecificIndexFile(const QString &strPath_p, QString &strIndex_p);
    long CreateIndexFile(QString &strIndexFile_p, QString &strFTPRoot_p);
    long CheckFolderPermissions(const QString &strPath_p);
    // The activation's Cancel: ends the request under way, unless a page
    // is being put back, which must run to its end.
    void Cancel();

    // The name a page has while a search page stands in its place.
    static QString BackupName(const QString &strName_p, const QString &strStamp_p);
    static bool IsBackupName(const QString &strName_p);
    static QString NameOfBackup(const QString &strBackup_p);

private:
    enum class Found { Yes, No, Next, Stop };

    long SendTestSteps(const SiteRecord &site, QString &strFolder, QString &strAside, int &step);
    long WaitForTestPage(const SiteRecord &site, const QByteArray &page);
    long SendTestFailure(bool boolHttp_p);
    long GetServerData(DIRDATA &buffer, long lLevel, long &lStatus);
    long TryEntry(const DIRDATA &buffer, long lEntry);
    Found FetchMark(const QString &strURL_p);
    long IndexFileFailure(int step, bool boolHttp_p);
    long ServerDataFailure(const QString &strName_p, bool boolHttp_p);
    void MarkFolder(DIRDATA &buffer, const QString &strPath_p, long lState_p);
    void ResultOfSearch(const DIRENTRY &entry, QString &strIndex_p, QString &strRoot_p,
                        QString &strRemoteFolder_p) const;
    bool StepAside(const QString &strFolder_p, const QString &strName_p, const QString &strAside_p);
    bool PutBack(const QString &strFolder_p, const QString &strName_p, const QString &strAside_p);
    bool AgainAfterLoss(const QString &strFolder_p, const std::function<bool()> &step_p);
    bool Upload(const QByteArray &bytes_p, const QString &strFolder_p, const QString &strName_p,
                bool boolFresh_p);
    bool Get(const QString &strURL_p, QByteArray &body_p, bool &boolHttpFailure_p);
    bool ProbeFolder(const QString &strFolder_p, const QString &strBase_p);
    bool WriteFirstPage(const QString &strFolder_p);
    long ListAllLevels(DIRDATA &all);
    bool MarkedCopyFound(const DIRENTRY &entry, const QString &strAddress_p);
    bool Cancelled() const { return CFTPS::g_boolCancelActivation; }
    void Pause(int ms) const;
    FtpControl &Ftp() const { return m_ftp.Ftp(); }

    CFTPS &m_ftp;
    HttpControl *m_http = nullptr; // the request under way, for AbortHttp
    DIRDATA m_kept;                // the level that held a leftover, for RestoreIndex
    QString m_strTag;              // the mark of this search
    long m_lFoundEntry = -1;
    bool m_boolRestoring = false;
};
