#pragma once

#include <QString>

// Finds which file the web server gives for a folder of the current site:
// each page of the folder in turn gets a unique comment in front, the
// folder's address is fetched, and the page whose comment comes back is
// the one. Every page goes back to the server as it was, by content.
class FolderIndexSearch
{
public:
    // strPath_p is the folder below the site root, with its slashes
    // ("/news/"). 1 found, with the file's name in strIndex_p; -1 none of
    // the folder's pages is served; 0 failure, error pending.
    static long GetSpecificIndexFile(const QString &strPath_p, QString &strIndex_p);

private:
    static bool IsPage(const QString &name);
    static QByteArray Fetch(const QString &address);
    static long Probe(const QString &page, const QString &folderAddress, long mark, bool &found);
};
