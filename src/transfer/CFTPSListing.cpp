// The listing, batch and cache operations of the transfer client. Their
// work lies in classes of their own (DirListing, DirSort, FileBatch,
// CacheServerCheck); the client holds the listing buffer and the session
// they share.

#include "transfer/CFTPS.h"

#include "transfer/CacheServerCheck.h"
#include "transfer/DirListing.h"
#include "transfer/DirSort.h"
#include "transfer/FileBatch.h"

DirListing &CFTPS::Listing()
{
    if (!m_listing)
        m_listing = std::make_shared<DirListing>(*this);
    return *m_listing;
}

long CFTPS::GetDirBranch(DirTreeNodes &tvwTree_p, const QString &strPath_p)
{
    return Listing().GetDirBranch(tvwTree_p, strPath_p);
}

long CFTPS::GetDirFiles(DirTreeNodes &tvwTree_p, const QString &strPath_p)
{
    return Listing().GetDirFiles(tvwTree_p, strPath_p);
}

long CFTPS::GetDir(DIRDATA &dirData_p)
{
    return Listing().GetDir(dirData_p);
}

long CFTPS::GetDirLevel(DIRDATA &dirData_p, long lLevel_p)
{
    return Listing().GetDirLevel(dirData_p, lLevel_p);
}

long CFTPS::GetFolders(DirTreeNodes &tvwTree_p, const QString &strPath_p)
{
    return Listing().GetFolders(tvwTree_p, strPath_p);
}

long CFTPS::GetSubFolders(const QString &strPath_p, QStringList &strFolders_p)
{
    return Listing().GetSubFolders(strPath_p, strFolders_p);
}

long CFTPS::GetFiles_In_Dir(const QString &strPath_p, QStringList &strFiles_p)
{
    return Listing().GetFiles_In_Dir(strPath_p, strFiles_p);
}

long CFTPS::GetFiles_In_DirEx(const QString &strPath_p, QList<FILEITEM> &files_p)
{
    return Listing().GetFiles_In_DirEx(strPath_p, files_p);
}

long CFTPS::GetFileInfo(const QString &strURL_p, QString &strFileSize_p, QString &strFileTime_p,
                        QString &strCompletePath_p, bool bIsDir_p)
{
    return Listing().GetFileInfo(strURL_p, strFileSize_p, strFileTime_p, strCompletePath_p, bIsDir_p);
}

long CFTPS::SortDIR(DIRDATA &dirData_p)
{
    return DirSort::SortDIR(dirData_p);
}

long CFTPS::SortDIR2(DIRDATA &dirData_p)
{
    return DirSort::SortDIR2(dirData_p);
}

long CFTPS::CopyFilesAndFolders(const QString &strTarget_p, const QList<FILEITEM> &items_p, long &lStatus_p)
{
    return FileBatch(*this).CopyFilesAndFolders(strTarget_p, items_p, lStatus_p);
}

long CFTPS::DeleteFilesAndFolders(const QString &strFolder_p, const QList<FILEITEM> &items_p, long &lStatus_p)
{
    return FileBatch(*this).DeleteFilesAndFolders(strFolder_p, items_p, lStatus_p);
}

long CFTPS::DownLoadFilesAndFolders(const QString &strRoot_p, const QList<FILEITEM> &items_p,
                                    const QString &strLocalTarget_p, long &lStatus_p)
{
    return FileBatch(*this).DownLoadFilesAndFolders(strRoot_p, items_p, strLocalTarget_p, lStatus_p);
}

long CFTPS::CheckForCacheServers(long lCurrentURL_p)
{
    return CacheServerCheck(*this).CheckForCacheServers(lCurrentURL_p);
}

long CFTPS::CheckCacheInOneFolder(const QString &strFolder_p, const QString &strCurrentBaseUrl)
{
    return CacheServerCheck(*this).CheckCacheInOneFolder(strFolder_p, strCurrentBaseUrl);
}
