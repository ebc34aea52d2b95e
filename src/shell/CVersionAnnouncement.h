#pragma once

#include <QString>

// What the maker's server says about the latest version, and what the start
// makes of it. The server answers with a plain text such as "1.3" or
// "1.3.2"; only the first two numbers count.
class CVersionAnnouncement
{
public:
    // The position under which a failed check is logged.
    static QString Position() { return QStringLiteral("frmVindrell.checkForNewVersions"); }

    // Where on the maker's server the version text lies.
    static QString VersionPath() { return QStringLiteral("/_vindrellver/vindrellveradmin.txt"); }

    // Settings of section "settings" that say where the maker's server is.
    // "versionserver" holds its address (scheme and host, e.g.
    // "https://vindrell.example"); empty means the start checks nothing.
    // "downloadpage" is the page opened when the user asks for the new
    // version; empty means VersionServer() + "/download.htm".
    static QString VersionServer();
    static QString DownloadPage();

    // The version of this program.
    static long AppMajor();
    static long AppMinor();
    static long AppRevision();

    // Reads major and minor from the reply (blanks and line ends around the
    // pieces are dropped). Returns 1, or 0 with the pending error set when
    // a piece is missing or not a number: a reply with one number is a
    // fault of the server's file, not a version.
    static long Parse(const QString &strReply_p, long &lMajor_p, long &lMinor_p);

    // True when major.minor is later than the given version.
    static bool IsNewer(long lMajor_p, long lMinor_p, long lAppMajor_p, long lAppMinor_p);

    // The question to the user, and the name under which its "don't show
    // again" box is kept: one name per announced major.minor, so that
    // silencing one version never silences a later one.
    static QString Message(const QString &strReply_p);
    static QString Title();
    static QString MessageName(long lMajor_p, long lMinor_p);
};
