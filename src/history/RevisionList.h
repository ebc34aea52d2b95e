#pragma once

#include "history/ProfileFile.h"

#include <QString>
#include <QStringList>

// One page's revisions as the index file describes them, and the rules that
// pick the number of the next revision and the order of the list.
//
// Revision numbers are a single digit: the "rev" key is read back as one
// character by every client of the shared index, so a number of two digits
// would make the next save start again at a number nobody can predict. A
// history size above 9 (only a hand-edited setting gives one) is therefore
// taken as 9: the history keeps the most revisions it can address.
class RevisionList
{
public:
    static constexpr long DefaultHistorySize = 5;
    static constexpr long MaxHistorySize = 9;

    // The history size in force for a stored setting.
    static long EffectiveHistorySize(long stored);

    // The number the next revision of the page takes: one past "rev",
    // wrapping to 1 past the history size. A page without "ID" starts at 1.
    // A "rev" that isn't one digit (a damaged or hand-edited index) gives
    // the first number whose date key is missing, so no listed revision is
    // overwritten while a free number is left; with none free, 1.
    static long NextRevision(const ProfileFile &index, const QString &section, long historySize);

    // Reads the dates "1date", "2date", ... of the section up to the first
    // that is missing or empty, and puts the cursor on the newest revision.
    // Without a section or an index the list is empty.
    void Fill(const ProfileFile &index, const QString &section);

    // The next entry, newest first across the wrap: with "rev" 2 and five
    // dates the order is 2, 1, 5, 4, 3. False when every entry was given.
    bool Next(QString &strDate, long &nRev);

    long CurrentRevision() const { return m_nRevision; }
    const QStringList &Dates() const { return m_dates; }

    static QString DateKey(long nRev);

private:
    QStringList m_dates;     // item n-1 is the date of revision n
    long m_nRevision = 0;    // "rev" as read, 0 when unreadable
    long m_nCursor = 0;      // the revision the next call gives
    long m_nGiven = 0;       // entries given so far
};
