#include "fileviews/FolderFileNames.h"

#include "support/MError.h"
#include "transfer/CFTPS.h"

QStringList FolderFileNames::getFilesInThisFolder(const QString &strFolderAddress_p, const QString &strPosition_p)
{
    QStringList names;
    CFTPS ftp;
    if (ftp.GetFiles_In_Dir(strFolderAddress_p, names) != 1) {
        names.clear();
        MError::SetErrorIfClear(0, QStringLiteral("The folder could not be listed"), strPosition_p);
        MError::LogError();
    }
    return names;
}
