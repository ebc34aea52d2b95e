#pragma once

#include <QDateTime>
#include <QDeadlineTimer>
#include <QHash>
#include <QSet>
#include <QString>

#include "transfer/ReplaceJournal.h"

#include <functional>

class CFTPS;

// Puts a local file in place of a file on the server so that the server
// always holds one whole copy: the old one or the new one, never a part.
//
//   1. where an earlier run of this program in the folder never came to
//      its end (ReplaceJournal), look at the folder and settle what it left;
//   2. upload under a name of this run ("<file>.<token>.kelda-new") and
//      check that the server holds every byte;
//   3. rename the new one onto the file: on most servers this replaces it
//      in one step, and the page is never missing;
// and where the server refuses to rename onto an existing file:
//   3a. step the old file aside ("<file>.<token>.kelda-old");
//   3b. rename the new one into place;
//   3c. delete the old copy.
//
// Between 3a and 3b the page is missing for one command. Every step
// that fails for a lost connection, a time-out or a cut transfer is taken
// up again after logging on again (a bounded number of times), and the
// folder is looked at first, since the step may have run on the server
// although its reply never came. Whatever fails or is cancelled, Settle
// brings the folder to a whole state and says which copy stands.
//
// Leftovers are recognised by their names and the run's token in them: an
// old copy whose file is missing is put back (it is the only copy of the
// page), any other leftover is deleted. Leftovers of runs that are not in
// the journal are only touched when they are older than an hour, so that a
// save of another client that is running in the same folder now is left
// alone.
//
// Time: a failure that costs the connection is followed by new log-ons for
// at most a few seconds in all (the run and the settling share them), each
// with a time-out cut to what is left, so that a server that has stopped
// answering ends the operation soon after its first time-out.
class SafeReplace
{
public:
    enum class Outcome {
        NewStands,   // the new file is in place
        OldStands,   // the file is as it was before (or still absent)
        OldKeptAside // the file is missing; its old copy stands as KeptCopy()
    };

    SafeReplace(CFTPS &ftp, const QString &folder, const QString &file, const QString &localFile);

    // The file's name is one that no reader uses yet (a revision that the
    // history's index does not name yet): it is written under that name
    // and checked, without the renames, and removed when the write fails.
    void SetFreshName() { m_straight = true; }

    // True when the new file stands. Otherwise the control's failure is the
    // client's, and Outcome and Cancelled tell the rest.
    bool Run();
    Outcome Result() const { return m_outcome; }
    bool Cancelled() const { return m_cancelled; }
    QString KeptCopy() const { return m_old; }

    // Whether a name is one of the temporary names of a replace; gives the
    // name of its file and whether it is an old copy.
    static bool IsTemporaryName(const QString &name, QString &target, bool &oldCopy);

private:
    struct Entry
    {
        qint64 size = -1;
        QDateTime time;
    };
    using Listing = QHash<QString, Entry>;
    enum class Act { Done, Refused, Failed, Cancelled };

    Act Do(const std::function<bool()> &act, const std::function<bool(const Listing &)> &done);
    bool Look(Listing &listing);
    bool Recover();
    bool LookFirst();
    bool Exists(const QString &name);
    void LimitToRecovery();
    bool LogOnAgain();
    Act WriteStraight();
    Act PutInPlace();
    bool Refusal() const;
    bool CancelRequested() const;
    void Pause(int ms) const;

    bool CleanLeftovers(const Listing &listing, const QSet<QString> &tokens);
    bool Upload();
    bool Rename(const QString &from, const QString &to);
    bool Delete(const QString &name);
    bool Settle();
    bool SettleStraight(const Listing &listing);

    CFTPS &m_ftp;
    QString m_folder;
    QString m_file;
    QString m_local;
    QString m_new;
    QString m_old;
    qint64 m_size = 0;
    quint64 m_abortSerial = 0;
    int m_reconnects = 0;
    QDeadlineTimer m_recovery{QDeadlineTimer::Forever}; // the time left for log-ons again
    ReplaceJournal::Entry m_journal;
    bool m_straight = false;    // written under its own name
    bool m_settling = false;
    bool m_cancelled = false;
    bool m_movedInto = false;   // a rename of the new file into place was tried
    bool m_steppedAside = false; // a rename of the old file aside was tried
    Outcome m_outcome = Outcome::OldStands;
};
