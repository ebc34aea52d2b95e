#pragma once

#include <QString>

// The rules for the names the user types for files and folders on the
// server, and for the names of the server that become local files.
class FileNameRules
{
public:
    // The two dialogs allow different characters: the new page wizard takes
    // letters of either case (with the Swedish ones), digits, "-", ".", "_"
    // and blanks; the copy and rename dialog only lower-case a to z, digits,
    // "_", "-" and ".". An empty name passes neither.
    enum class Dialog { AddPageWizard, CopyRename };
    static bool CheckFileName(const QString &strName_p, Dialog dialog_p);

    // A page name as the wizard makes it: ".htm" added to a name without a
    // ".", and an extension that is no page's ("htm", "html", "asp", "php")
    // replaced by "htm".
    static QString MendPageName(const QString &strName_p);

    // Splits a path at its last "/" and its last "." (of the file name):
    // "a/b/c.htm" gives "a/b", "c.htm" and "htm".
    static void extractFile_Folder(const QString &strPath_p, QString &strFolder_p, QString &strFile_p,
                                   QString &strExtension_p);
    // The text behind the last "." of a file name, "" when it has none.
    static QString Extension(const QString &strName_p);

    // Whether a name from the server can be a local file's name as it is:
    // not "." or "..", no separator, NUL or control character, none of the
    // characters that some local disks reserve. reason_p says why not.
    static bool LocalNameAcceptable(const QString &strName_p, QString &reason_p);
};
