#pragma once

#include <QString>
#include <QStringList>

#include <vector>

// One site: an HTTP address bound to an FTP account, and how pages map from
// one to the other. Fields in the order of the stored record.
struct SiteRecord
{
    QString userid;       // FTP user name
    QString password;     // FTP password; clear in memory, enciphered in the store
    QString baseurl;      // FTP address: a host name, or a host name behind ftp://
    QString baseaddress;  // HTTP address with its http://; display name and sort key
    QString indexfile;    // index file of the site
    QString ftproot;      // from the FTP login folder to the web root; "" or "/" when the same
    QString isactive = QStringLiteral("0");   // "1" activated
    QString useremotef = QStringLiteral("0"); // "1" when remotefolder is in force
    QString usesubindex = QStringLiteral("0");// "1" when the index file is searched for
    QString remotefolder; // folder under which the site lies on the FTP server
    QStringList subindex = {QString()}; // further index file names; never empty
    bool passivemode = true;
    QString automode = QStringLiteral("1"); // "1": the system decides the transfer mode
    bool ischanged = false; // in memory only
    bool isremoved = false; // in memory only
    bool isnew = false;     // from creation in the settings dialog until the address is edited
    bool useabsol = false;  // remotefolder is absolute and sessions start there
};

// Process-wide state shared by all parts of the program.
class MGlobalProjectObjects
{
public:
    // The site records, sorted by baseaddress, and the one in use.
    static std::vector<SiteRecord> URLDATA;
    static long lCurrentURL;
};
