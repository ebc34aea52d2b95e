#pragma once

#include <QString>

// Reads cms.dat from the current site's _resetp folder into the CMS tables
// and writes the tables back. One instance serves one call.
class CCMS
{
public:
    // 1 the tables are filled; -1 the server has no cms.dat; -2 the file
    // held no valid record (the user has been told); 0 failure, error pending.
    long GetCMSData();
    // 1 written and uploaded; -1 the upload said -1; 0 failure, error pending.
    long SetCMSData();

    // The server folder of cms.dat for the current site record.
    static QString CMSFolder();
    static QString LocalFile();
};
