#pragma once

#include <QList>
#include <QString>

// What a folder of this computer holds, for the local tree: its folders and
// files by name, each with what the tree needs to show it, and a clear text
// for what can't be opened or sent (a name that is not valid UTF-8, a link
// that leads round in a circle or back into a folder above it, a link to
// nothing). Read with the system's own calls, which give the names as bytes:
// the higher-level listings drop names they can't decode without a word.
class LocalFolderListing
{
public:
    struct Entry
    {
        QString strName;        // as shown
        QString strPath;        // the full path; "" when the name can't be one
        bool boolFolder = false;
        bool boolHasContent = false; // a folder with anything in it to show
        qint64 lSize = 0;
        QString strProblem;     // why it can't be opened or sent; "" when it can
    };

    // Folders first, then files, each in name order. 1, or 0 with the
    // pending error set to a clear text (no permission, gone, unreadable).
    static long List(const QString &strFolder_p, bool boolShowHidden_p, QList<Entry> &entries_p);
    // Whether a folder holds anything shown; an unreadable one counts as
    // full, so that opening it says why it can't be read.
    static bool HasContent(const QString &strFolder_p, bool boolShowHidden_p);
};
