#pragma once

#include <QString>
#include <QStringList>

// The names in a folder on the server, read for the dialogs that ask for
// a new name (getFilesInThisFolder). A listing that fails leaves the list
// empty and is logged: then no name counts as taken, and the server's own
// answer to the write decides.
class FolderFileNames
{
public:
    // strFolderAddress_p: an address in the folder ("sub/dummy.htm").
    static QStringList getFilesInThisFolder(const QString &strFolderAddress_p, const QString &strPosition_p);
};
