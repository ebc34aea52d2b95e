#pragma once

#include <QString>
#include <QStringList>

#include <vector>

class HttpControl;

// One site: an HTTP address bound to an FTP account, and how pages map from
// one to the other. Fields in the order of the stored record. A fresh record
// is not active, uses passive FTP and lets the system decide the transfer
// mode: the safest start for a record that no file or dialog has filled in
// yet (fields a .pset file doesn't carry keep these values).
struct SiteRecord
{
    QString userid;       // FTP user name
    QString password;     // FTP password; clear in memory, enciphered in the store
    // FTP address: a host name, or one behind a scheme that also says how
    // the connection is protected, so that no stored field is added for it:
    // ftp:// or none plain FTP; ftpes:// explicit TLS (AUTH TLS, required,
    // never falling back to plain); ftps:// implicit TLS (port 990 unless
    // given). See FtpAddress.
    QString baseurl;
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
    // The host with and without a leading "www." is this one site. Off
    // by default: on some hosts the two names are different sites.
    bool wwwalias = false;
    // A server certificate the user chose to trust for this site when the
    // system's store did not vouch for it: its SHA-256 fingerprint, as he
    // was shown it, and the pin of its public key, which the connection
    // checks before the login. Empty when none.
    QString tlsfingerprint;
    QString tlskeypin;
    // For an sftp:// site: the private key file that logs on, a path on this
    // computer; the password field then holds its passphrase (asked for at
    // logon when empty or wrong). Never carried by a settings file: the key
    // stays where the user keeps it.
    QString sshkey;
};

// The proxy and firewall block of the store's section Proxy; members are
// named after their keys.
struct ProxySettings
{
    bool use = false;              // HTTP goes through a proxy
    bool useFTP = false;           // FTP goes through a firewall
    bool usesockspassword = false; // the firewall needs a user and password
    bool useHTTPpassword = false;  // the HTTP proxy needs a user and password
    QString serverHTTPname, serverHTTPPort, serverHTTPUser, serverHTTPPassword;
    QString serverFTPname, serverFTPPort;
    QString serverSOCKSname, serverSOCKSPort, serverSOCKSUser, serverSOCKSPassWord;
    QString serverSOCKSServerType; // "4", "5" or "6"
};

// Bits of AdvancedUserSettings.
enum AdvancedUserSetting : long {
    advEditASP = 1,
    advEditDocsJavaScript = 2,
    advEnableHTMLEditor = 4,
    advLinkDialogOption = 8,
    advEnableDeleteFiles = 16,
    advEnableMakeFolders = 32,
    advShowAllFiles = 64
};

// Process-wide state shared by all parts of the program.
class MGlobalProjectObjects
{
public:
    // The site records, sorted by baseaddress, and the one in use.
    static std::vector<SiteRecord> URLDATA;
    static long lCurrentURL;

    // Points an HTTP control at the user's HTTP proxy, with its password,
    // when the settings say to use one.
    static void ApplyHttpProxy(HttpControl &http);
    // Points the page engine at the same HTTP proxy, or at none.
    static void ApplyEngineProxy();

    // Global settings read with the site records.
    static ProxySettings Proxy;
    static long AdvancedUserSettings; // bit mask of AdvancedUserSetting
    static bool UseTidy;
    static long TidyCharEncodingType; // 0 ASCII, 1 LATIN1, 3 UTF8
    static long TidyIndentScheme;     // NOINDENT, INDENTBLOCKS, AUTOINDENT
    static QString CMSUserName;
    static QString CMSUserPassword;
    static bool useSpellCheck;
    static QString g_strAppPath;    // the program folder
    static QString g_strTempFolder; // where every local work file lies
    static QString g_strUserName;
    static QString g_strUserMail;

    // The HTTP date of the save under way ("Sun, 06 Nov 1994 08:49:37 GMT"),
    // written into each saved page; valid once the save has set it.
    static QString g_strSaveDate;
    static bool g_boolSaveDateValid;
};
