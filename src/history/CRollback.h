#pragma once

#include "history/ProfileFile.h"
#include "history/RevisionList.h"

#include <QString>

#include <functional>

struct SiteRecord;

// Revisions of the pages of the current site, kept on the site's own server
// in the folder "_resetp" beside the pages: before each save the page as it
// stands on the server is copied there as "<ID>.<rev>", and "_resetp.ini"
// (a Windows profile file, one section per page path) says which revisions
// exist and when each was taken. Every machine that edits the site shares
// this one history; nothing stays on the user's machine.
//
// A save makes a fresh instance for BackupPage. The revision pane keeps one
// for its list: GetFirstBackup, GetNextBackup until 0, then Rollback or
// ViewBackup on the same instance.
//
// Statuses: 1 success, 0 failure with the pending error set; BackupPage
// also gives -1 when no revision could be kept (see there).
class CRollback
{
public:
    // Shows strURL_p in a modal browser window titled strTitle_p and returns
    // when the window is closed. The window lives in the GUI library, which
    // installs it here at start; without one ViewBackup shows nothing.
    using Viewer = std::function<void(const QString &strURL_p, const QString &strTitle_p)>;
    static void SetViewer(Viewer viewer);

    // Keeps the page at strURL_p (its path on the server, as it will be
    // sent) as a new revision. 1: stored. -1: the page isn't on the server
    // yet (nothing is written), or "_resetp" refused the write (the user has
    // been told once). 0: failure.
    long BackupPage(const QString &strURL_p);

    // Reads the history of the page at strFilePath_p. 1 also when there is
    // none: the list is then empty.
    long GetFirstBackup(const QString &strFilePath_p, const QString &strURL_p);
    // The next entry, newest first. 1: an entry was given; 0: no more.
    long GetNextBackup(QString &strRetDate_p, long &nRev_p);

    // Puts revision nRevision_p back as the live page. The index is left as
    // it is: the next save keeps the restored page as a revision of its own.
    long Rollback(long nRevision_p);
    // Shows revision nRevision_p through the web server from the page's own
    // folder, and removes that viewing copy when the window closes.
    long ViewBackup(long nRevision_p);

    // "HistorySize" of the store's "Environment", made 5 when missing or 0;
    // the size in force, at most RevisionList::MaxHistorySize.
    long GetHistorySize(long &lSize_p);
    // Reads the local copy of the index. 1: the section has an "ID", which
    // the instance takes; -1: it has none.
    long GetBackupData(const QString &strURL_p);
    // Writes "ID", "rev" and "<rev>date" to the local copy. 1, or -1 when it
    // can't be written.
    long SetBackupData(const QString &strURL_p);

    // Where the history of the site lies: ftproot, then "/_resetp".
    static QString HistoryFolder(const SiteRecord &site);
    // The address that shows a viewing copy named strName_p put beside the
    // page at strPagePath_p.
    static QString ViewAddress(const SiteRecord &site, const QString &strPagePath_p, const QString &strName_p);

private:
    long Backup(const QString &strURL_p, const SiteRecord &site);
    long TakeRevision(const QString &strPagePath_p, const QString &strLocalPage_p, const SiteRecord &site);
    long FetchIndex(const SiteRecord &site);
    long FetchRevision(long nRevision_p, const QString &strLocalFile_p, const SiteRecord &site);
    QString FreshId() const;
    static QString LocalIndexPath();
    static QString RevisionName(const QString &strID_p, long nRev_p);
    static bool CurrentSite(SiteRecord &site_p);
    static long RevisionFailure(const QString &strPosition_p);
    static long NoSite(const QString &strPosition_p);

    QString m_strID;        // the page's id: its revisions are <ID>.<rev>
    QString m_strFilePath;  // the page's path on the server
    QString m_strURL;       // the page's address; kept for the caller
    long m_nRevision = 1;   // the revision under way
    QString m_strDate;      // its date text
    long m_nHistorySize = RevisionList::DefaultHistorySize;
    RevisionList m_list;    // the dates, the list cursor and the entries given
    ProfileFile m_index;    // the local copy of the index while BackupPage runs

    static Viewer s_viewer;
};
