#pragma once

#include "transfer/DIRDATA.h"
#include "transfer/FILEITEM.h"

#include <QDateTime>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

class CFTPS;
class DirTreeNodes;

// The folder listings of the transfer client: one listing buffer, filled
// from the control's DirList events, read into plain lists, into tree
// nodes and into batches. Listings go by MLSD where the server offers it
// (asked once per connection by FEAT), else by LIST.
//
// What a server lists is checked before anything takes it: a name that
// holds a path separator, a NUL or a line break, a size below 0 or beyond
// any disk, or a line longer than 64 KB is refused with a line in the error
// log, so that no later step (a download above all) ever meets such a name.
// A listing of more than 50 MB is cut there, and the user is told.
class DirListing
{
public:
    static constexpr qint64 kLargestListing = 50LL * 1024 * 1024;
    // Beyond any disk a web site lies on: such a size is a broken listing.
    static constexpr qint64 kLargestSize = 1LL << 50;
    static constexpr int kDeepestLevel = 100;

    explicit DirListing(CFTPS &ftp);

    long GetDirBranch(DirTreeNodes &tvwTree_p, const QString &strPath_p);
    long GetDirFiles(DirTreeNodes &tvwTree_p, const QString &strPath_p);
    long GetDir(DIRDATA &dirData_p);
    long GetDirLevel(DIRDATA &dirData_p, long lLevel_p);
    long GetFolders(DirTreeNodes &tvwTree_p, const QString &strPath_p);
    long GetSubFolders(const QString &strPath_p, QStringList &strFolders_p);
    long GetFiles_In_Dir(const QString &strPath_p, QStringList &strFiles_p);
    long GetFiles_In_DirEx(const QString &strPath_p, QList<FILEITEM> &files_p);
    long GetFileInfo(const QString &strURL_p, QString &strFileSize_p, QString &strFileTime_p,
                     QString &strCompletePath_p, bool bIsDir_p);
    // The names in the session's current folder. 1, or 0 with the failure
    // kept by the client.
    long NamesHere(QSet<QString> &names_p);

    // The DirList event of the control.
    void DirList(const QString &DirEntry, const QString &FileName, bool IsDir, qint64 FileSize,
                 const QDateTime &FileTime);

    const DIRDATA &Buffer() const { return m_dir; }

    // Whether a name may be taken from a listing; why not otherwise.
    static bool AcceptableName(const QString &name, QString &reason);

private:
    enum class Fill { FoldersAndFiles, Folders };

    long List();
    bool OffersMlsd();
    bool Refuse(const QString &DirEntry, const QString &reason);
    long ListSiteFolder(const QString &strKey_p, const QString &strRootKey_p);
    long FillTree(DirTreeNodes &tree, const QString &strPath_p, Fill fill, const QString &position);
    void AddNode(DirTreeNodes &tree, const QString &parent, const QString &key, const QString &text, int image,
                 int expanded);
    long TreeFailure(const QString &position, bool logOnly);
    long GoToFolderOf(const QString &strPath_p);
    long CheckEnterPermissions(const QString &strPath_p);
    long FilesBelow(const QString &strPath_p, QList<FILEITEM> &files_p, int depth);
    QString RootKey() const;

    CFTPS &m_ftp;
    DIRDATA m_dir;
    QString m_strListPath; // strPath of new entries
    bool m_boolEntry = false;
    bool m_boolFolder = false;
    qint64 m_listedBytes = 0;
    bool m_cut = false;
};
