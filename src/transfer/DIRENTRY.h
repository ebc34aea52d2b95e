#pragma once

#include <QString>

// One entry of a folder listing on the server.
struct DIRENTRY
{
    QString strEntry;  // the listing line as the server sent it
    QString strName;   // the name; for a link the part in front of "->"
    long lState = 0;   // 0 not examined, 1 examined and usable, -1 write-protected
    long lType = 0;    // 0 file, 1 folder or link, 2 folder already walked
    qint64 lSize = 0;
    QString strTime;   // "yyyy-MM-dd HH:mm" of the server's clock
    QString strPath;   // the folder that was listed
    long lLevel = 0;   // the number of "/" in strPath + "/" + strName (GetDir)
    bool bPage = false; // a file that ends in .asp, .htm, .html or .shtml, any case
    bool bLink = false;
};
