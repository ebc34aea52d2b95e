#pragma once

#include <QString>

// One entry of a batch of files and folders, parents before their children.
struct FILEITEM
{
    // A local path for an upload; a path on the server, from its root, for
    // a download or a delete.
    QString strPath;
    QString strName;
    qint64 lSize = 0; // 0 for a folder
    long lType = 0;   // 1 file, 0 folder
};
