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
    // 1 written and uploaded; -1 the upload said -1; -3 not written: the
    // file read was of a newer version and the user kept it; 0 failure,
    // error pending.
    long SetCMSData();

    // Whether the file on the server still holds what this client last read
    // from it or wrote to it: another administrator may have saved in
    // between. 1 with boolChanged_p set; 0 failure, error pending.
    long ServerChanged(bool &boolChanged_p);
    // True when this client has read or written the file of the current
    // site in this process; what the panel works on is then known.
    static bool KnownForCurrentSite();
    // Forgets what was read: the next edit session reads the file anew.
    static void ForgetFile();
    // A file of a newer version is written in this version's form only
    // when the user says so; asked once per read. True to go on.
    static bool MayWriteOverNewer();

    // The server folder of cms.dat for the current site record.
    static QString CMSFolder();
    static QString LocalFile();
};
