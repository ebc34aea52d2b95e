// The activation operations of the transfer client. Their work lies in
// IndexSearch; the client holds the session they run on.

#include "transfer/CFTPS.h"

#include "platform/FtpControl.h"
#include "transfer/DirListing.h"
#include "transfer/IndexSearch.h"

IndexSearch &CFTPS::Search()
{
    if (!m_search)
        m_search = std::make_shared<IndexSearch>(*this);
    return *m_search;
}

long CFTPS::SendTest(long lURLDATAIndex_p)
{
    return Search().SendTest(lURLDATAIndex_p);
}

long CFTPS::GetIndexFile(QString &strIndex_p, QString &strRoot_p, QString &strRemoteFolder_p)
{
    return Search().GetIndexFile(strIndex_p, strRoot_p, strRemoteFolder_p);
}

long CFTPS::RestoreIndex()
{
    return Search().RestoreIndex();
}

long CFTPS::GetSpecificIndexFile(const QString &strPath_p, QString &strIndex_p)
{
    return Search().GetSpecificIndexFile(strPath_p, strIndex_p);
}

long CFTPS::CreateIndexFile(QString &strIndexFile_p, QString &strFTPRoot_p)
{
    return Search().CreateIndexFile(strIndexFile_p, strFTPRoot_p);
}

long CFTPS::CheckEnterPermissions(const QString &strPath_p)
{
    const QString path = strPath_p.endsWith(QLatin1Char('/')) ? strPath_p : strPath_p + QLatin1Char('/');
    return Capture(Ftp().SetRemotePath(path)) ? 1L : long(ExpectedFailure);
}

long CFTPS::CheckFolderPermissions(const QString &strPath_p)
{
    return Search().CheckFolderPermissions(strPath_p);
}

void CFTPS::CancelActivation()
{
    g_boolCancelActivation = true;
    Search().Cancel();
}
