#pragma once

#include <QString>

// How the path of a page under the site's HTTP address becomes a folder and
// a file on the FTP server. Pure text work: the caller gives the site's
// fields and the folder the session stands in, so this can be checked
// without a server.
class RemotePathMapper
{
public:
    // The fields of a site record that the mapping reads.
    struct Site
    {
        QString ftproot;      // from the login folder to the web root
        QString remotefolder; // folder under which the site lies
        QString useremotef;   // "1" when remotefolder is in force
    };

    // "" for "" and "/"; else one trailing and then one leading slash go.
    static QString TrimSlashes(const QString &s);

    // Drops a user's home part ("/~anna" or "~anna") from the front of a
    // path; the result starts at the first "/" behind the tilde, or is ""
    // when none follows. A path without a tilde stays as it is.
    static QString RemoveTildePart(const QString &strPath);

    // strPath from the character lStart on (counted from 1).
    static QString RemoveFTPPath(const QString &strPath, long lStart);
    // strPath from the character lLength + 1 on.
    static QString RemoveLocalPath(const QString &strPath, long lLength);

    // Splits strDocumentURL_p into the folder on the server and the file
    // name, for a session whose current folder is strCurrentFolder_p.
    static void BuildRemoteFolder(const Site &site, const QString &strCurrentFolder_p,
                                  const QString &strDocumentURL_p, QString &strRemoteFolder_p,
                                  QString &strRemoteFile_p);

private:
    static QString MapUnderFtpRoot(const QString &ftproot, const QString &strCurrentFolder_p,
                                   const QString &strPagePath_p);
};
