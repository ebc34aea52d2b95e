#include "transfer/ReplaceJournal.h"

#include "platform/LocalFolders.h"

#include <QFile>
#include <QSaveFile>
#include <QUrl>

namespace {
// Fields are percent-encoded, so a name with a tab or a line break keeps
// to its own field and line.
QByteArray encoded(const QString &field)
{
    return QUrl::toPercentEncoding(field);
}

QString decoded(const QByteArray &field)
{
    return QUrl::fromPercentEncoding(field);
}
} // namespace

QString ReplaceJournal::path()
{
    return LocalFolders::configFolder() + QStringLiteral("/replaces-under-way");
}

// Read once per run and kept: this program is the only writer of its
// journal (one instance per user), and every replace asks it.
QList<ReplaceJournal::Entry> &ReplaceJournal::entries()
{
    static QString loadedFrom;
    static QList<Entry> entries;
    const QString file = path();
    if (file == loadedFrom)
        return entries;
    loadedFrom = file;
    entries.clear();
    QFile journal(file);
    if (!journal.open(QIODevice::ReadOnly))
        return entries;
    for (const QByteArray &line : journal.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        if (fields.size() == 4)
            entries.append({decoded(fields[0]), decoded(fields[1]), decoded(fields[2]), decoded(fields[3])});
    }
    return entries;
}

// Written whole and put in place, so a cut leaves the previous journal.
void ReplaceJournal::store(const QList<Entry> &entries)
{
    if (entries.isEmpty()) {
        QFile::remove(path());
        return;
    }
    QSaveFile file(path());
    if (!file.open(QIODevice::WriteOnly))
        return;
    for (const Entry &entry : entries)
        file.write(encoded(entry.server) + '\t' + encoded(entry.folder) + '\t' + encoded(entry.file) + '\t'
                   + encoded(entry.token) + '\n');
    file.commit();
}

void ReplaceJournal::Add(const Entry &entry)
{
    QList<Entry> &all = entries();
    if (!all.contains(entry)) {
        all.append(entry);
        store(all);
    }
}

void ReplaceJournal::Remove(const Entry &entry)
{
    QList<Entry> &all = entries();
    if (all.removeAll(entry) > 0)
        store(all);
}

QList<ReplaceJournal::Entry> ReplaceJournal::InFolder(const QString &server, const QString &folder)
{
    QList<Entry> found;
    for (const Entry &entry : entries())
        if (entry.server == server && entry.folder == folder)
            found.append(entry);
    return found;
}
