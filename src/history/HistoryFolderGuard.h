#pragma once

#include <QByteArray>
#include <QString>

class CFTPS;
struct SiteRecord;

// The revision folder lies in the web root whenever the site's FTP root is
// the folder the web server serves, and a web server gives out whatever lies
// there: the revisions are the source of the pages, server script and
// connection strings included. So when the program makes the folder, it
// also writes into it the files by which common web servers close a folder
// (".htaccess" for Apache, "web.config" for IIS). Whether this web server
// follows them shows only by asking it: after the first revision written to
// a folder made so, that revision is fetched over HTTP, and if it comes, the
// user is warned. Both the check and the warning come once per folder; the
// settings store keeps where each folder stands (section "HistoryFolders",
// one value per FTP host and folder).
class HistoryFolderGuard
{
public:
    // Makes the history folder when it is missing, as CFTPS::CreateFolder
    // does and with its results. A folder made now gets its deny files and
    // waits for its check. A deny file that can't be written is logged, not
    // reported: the check tells whether the folder is open.
    static long MakeFolder(CFTPS &ftp, const SiteRecord &site, const QString &strFolder_p);

    // Whether the folder of this site waits for its check.
    static bool CheckDue(const SiteRecord &site, const QString &strFolder_p);

    // Asks the web server for the revision at strAddress_p, which holds
    // bytes_p on the server, when the folder waits for its check. Served as
    // it is, the user is told, naming the folder; a refusal closes the
    // check; no answer leaves it for the next revision.
    static void CheckRevision(const SiteRecord &site, const QString &strFolder_p, const QString &strAddress_p,
                              const QByteArray &bytes_p);

    // The deny files' texts.
    static QByteArray HtaccessText();
    static QByteArray WebConfigText();

private:
    static QString Key(const SiteRecord &site, const QString &strFolder_p);
    static QString State(const SiteRecord &site, const QString &strFolder_p);
    static void SetState(const SiteRecord &site, const QString &strFolder_p, const QString &strState_p);
    static void WriteDenyFiles(CFTPS &ftp, const QString &strFolder_p);
    static void Warn(const SiteRecord &site, const QString &strFolder_p, const QString &strAddress_p);
};
