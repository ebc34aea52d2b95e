#pragma once

#include <QList>
#include <QString>

// The replaces of files on servers that this program has begun and not yet
// seen to a whole end, kept in a small file beside the settings: a line is
// written before a replace's first step and removed once the folder is
// whole and tidy again. A replace cut for good (the server gone, the
// program ended) leaves its line behind, and the next replace in that
// folder, in this run or a later one, looks at the folder first and
// settles what was left. Without a line a replace needs no look at the
// folder, which keeps a save to the commands that do the work.
class ReplaceJournal
{
public:
    struct Entry
    {
        QString server; // "user@host:port"
        QString folder;
        QString file;
        QString token;  // the part of the temporary names that is the run's
        bool operator==(const Entry &other) const = default;
    };

    static void Add(const Entry &entry);
    static void Remove(const Entry &entry);
    static QList<Entry> InFolder(const QString &server, const QString &folder);

private:
    static QString path();
    static QList<Entry> &entries();
    static void store(const QList<Entry> &entries);
};
