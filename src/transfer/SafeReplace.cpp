#include "transfer/SafeReplace.h"

#include "platform/CurlErrorMap.h"
#include "platform/FtpControl.h"
#include "support/MError.h"
#include "transfer/CFTPS.h"
#include "transfer/ReplaceJournal.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTimer>

namespace {
const QString kNewSuffix = QStringLiteral(".kelda-new");
const QString kOldSuffix = QStringLiteral(".kelda-old");

// Log-ons again per phase (the run, then the settling), with the pause
// before each: a server that drops one connection is back at once, one that
// restarts needs a few seconds.
constexpr int kPauses[] = {0, 500, 1000, 2000};
constexpr int kReconnects = int(std::size(kPauses));
// Tries of one step whose failure did not cost the connection (a cut data
// connection, a file the server did not keep whole).
constexpr int kTries = 3;
// The time the log-ons again of one replace may take in all.
constexpr int kRecoveryMs = 3000;
// The settling's share when the run has used the time up.
constexpr int kSettlingMs = 1500;
// A leftover of another file is taken for a broken run only after this.
constexpr qint64 kLeftoverAgeSeconds = 3600;

QString Token()
{
    return QString::number(QRandomGenerator::global()->generate(), 16).rightJustified(8, QLatin1Char('0'));
}
} // namespace

SafeReplace::SafeReplace(CFTPS &ftp, const QString &folder, const QString &file, const QString &localFile)
    : m_ftp(ftp)
    , m_folder(folder)
    , m_file(file)
    , m_local(localFile)
{
    const QString token = Token();
    m_new = file + QLatin1Char('.') + token + kNewSuffix;
    m_old = file + QLatin1Char('.') + token + kOldSuffix;
    m_size = QFileInfo(localFile).size();
    const FtpControl &control = ftp.Ftp();
    m_journal = {QStringLiteral("%1@%2:%3").arg(control.User, control.RemoteHost).arg(control.RemotePort), folder,
                 file, token};
}

bool SafeReplace::IsTemporaryName(const QString &name, QString &target, bool &oldCopy)
{
    static const QRegularExpression pattern(QStringLiteral("^(.+)\\.[0-9a-f]{8}\\.kelda-(new|old)$"));
    const QRegularExpressionMatch match = pattern.match(name);
    if (!match.hasMatch())
        return false;
    target = match.captured(1);
    oldCopy = match.captured(2) == QLatin1String("old");
    return true;
}

// ---------------------------------------------------------------- the run

bool SafeReplace::Run()
{
    const bool wasClear = MError::ErrorNumber() == 0;
    m_abortSerial = FtpControl::AbortSerial();
    Act act = Act::Failed;
    if (LookFirst()) {
        act = m_straight ? WriteStraight() : Act::Failed;
        if (!m_straight) {
            // Only the replace's temporary names can outlive a cut run.
            ReplaceJournal::Add(m_journal);
            act = Do([this] { return Upload(); },
                     [this](const Listing &l) { return l.value(m_new).size == m_size; });
            if (act == Act::Done)
                act = PutInPlace();
        }
    }
    const CFTPS::Failure cause = m_ftp.m_failure;
    bool tidy = true;
    if (act == Act::Done) {
        m_outcome = Outcome::NewStands;
        m_settling = true;
        // What is left of the old page may go later; the page stands.
        if (m_steppedAside)
            tidy = Do([this] { return Delete(m_old); }, [this](const Listing &l) { return !l.contains(m_old); })
                   == Act::Done;
    } else {
        m_cancelled = act == Act::Cancelled || CancelRequested() || cause.number == ControlError::Aborted;
        tidy = Settle();
    }
    if (tidy)
        ReplaceJournal::Remove(m_journal);
    m_ftp.m_failure = cause;
    m_ftp.Ftp().TimeoutLimit = 0;
    if (wasClear)
        MError::ClearError();
    return m_outcome == Outcome::NewStands;
}

// A name no reader uses yet is written under its own name and checked;
// the renames would only cost commands. A server that refuses to write
// over a leftover of that name gets the replace after all.
SafeReplace::Act SafeReplace::WriteStraight()
{
    const QString temporary = m_new;
    m_new = m_file;
    const Act act = Do([this] { return Upload(); }, [this](const Listing &l) { return l.value(m_new).size == m_size; });
    m_new = temporary;
    if (act != Act::Refused)
        return act;
    m_straight = false;
    return Act::Failed;
}

// A replace needs no look at the folder unless a replace that this program
// began there was never seen to its end: then the folder is looked at, and
// what that run left is settled first (an old copy whose file is missing is
// the file itself and is put back). Broken runs of other clients show when
// their file is read (CFTPS::Fetch puts a kept-aside copy back).
bool SafeReplace::LookFirst()
{
    const QList<ReplaceJournal::Entry> broken = ReplaceJournal::InFolder(m_journal.server, m_journal.folder);
    if (broken.isEmpty())
        return true;
    Listing listing;
    if (!Look(listing))
        return false;
    QSet<QString> tokens;
    for (const ReplaceJournal::Entry &entry : broken)
        tokens.insert(entry.token);
    if (CleanLeftovers(listing, tokens))
        for (const ReplaceJournal::Entry &entry : broken)
            ReplaceJournal::Remove(entry);
    return true;
}

// Whether the file is on the server: its SIZE, or where SIZE tells
// nothing, the folder's listing.
bool SafeReplace::Exists(const QString &name)
{
    qint64 size = -1;
    if (m_ftp.Capture(m_ftp.Ftp().QuerySize(name, size)) && size >= 0)
        return true;
    if (m_ftp.m_failure.number == ControlError::Protocol && m_ftp.m_failure.description.startsWith(QLatin1String("550")))
        return false;
    Listing listing;
    return Look(listing) && listing.contains(name);
}

// The new file onto the old in one rename where the server allows it, else
// the old one aside first. The rename onto the file is tried without
// asking whether the file is there: where it is missing the rename works
// on every server, and a refusal is only then looked into.
SafeReplace::Act SafeReplace::PutInPlace()
{
    const auto inPlace = [this](const Listing &l) { return l.contains(m_file) && !l.contains(m_new); };
    m_movedInto = true;
    if (!m_ftp.m_session->renameOverRefused) {
        const Act over = Do([this] { return Rename(m_new, m_file); }, inPlace);
        if (over != Act::Refused)
            return over;
        const CFTPS::Failure refusal = m_ftp.m_failure;
        if (!Exists(m_file)) {
            m_ftp.m_failure = refusal; // a refusal of its own, not of the file in the way
            return over;
        }
        m_ftp.m_session->renameOverRefused = true;
    }
    m_steppedAside = true;
    const Act aside = Do([this] { return Rename(m_file, m_old); },
                         [this](const Listing &l) { return !l.contains(m_file) && l.contains(m_old); });
    if (aside == Act::Refused) {
        const CFTPS::Failure refusal = m_ftp.m_failure;
        if (Exists(m_file)) {
            m_ftp.m_failure = refusal;
            return aside;
        }
        m_steppedAside = false; // no file to step aside: a new one
    } else if (aside != Act::Done) {
        return aside;
    }
    return Do([this] { return Rename(m_new, m_file); }, inPlace);
}

// One step: the act, and when it fails other than by the server's refusal,
// a new log-on and a look at the folder, which tells whether the step ran
// after all (done); if not, the act again.
SafeReplace::Act SafeReplace::Do(const std::function<bool()> &act, const std::function<bool(const Listing &)> &done)
{
    for (int tries = 1;; ++tries) {
        if (!m_settling && CancelRequested())
            return Act::Cancelled;
        LimitToRecovery();
        if (act())
            return Act::Done;
        // A Cancel of the transfer window ends this control's call only.
        if (!m_settling && (CancelRequested() || m_ftp.m_failure.number == ControlError::Aborted))
            return Act::Cancelled;
        if (Refusal())
            return Act::Refused;
        if (tries >= kTries || !Recover())
            return Act::Failed;
        Listing listing;
        if (!Look(listing))
            return Act::Failed;
        if (done(listing))
            return Act::Done;
    }
}

// The files of the folder with their sizes and times.
bool SafeReplace::Look(Listing &listing)
{
    FtpControl &control = m_ftp.Ftp();
    for (int tries = 1;; ++tries) {
        listing.clear();
        const QMetaObject::Connection collect = QObject::connect(
            &control, &FtpControl::DirList, &control,
            [&listing](const QString &, const QString &name, bool isDir, qint64 size, const QDateTime &time) {
                if (!isDir)
                    listing.insert(name, {size, time});
            });
        control.RemoteFile.clear();
        LimitToRecovery();
        const bool ok = m_ftp.Capture(control.ListEntries());
        QObject::disconnect(collect);
        if (ok)
            return true;
        const bool cancelled = !m_settling && (CancelRequested() || m_ftp.m_failure.number == ControlError::Aborted);
        if (cancelled || tries >= kTries || Refusal() || !Recover())
            return false;
    }
}

// Back in the folder with a working connection. A connection that still
// stands (a data connection was cut) needs nothing; a refused log-on is
// never tried again with the same password, as servers lock accounts.
bool SafeReplace::Recover()
{
    if (m_ftp.Ftp().Connected() && m_ftp.m_failure.number == ControlError::DataConnection)
        return true;
    if (m_recovery.isForever())
        m_recovery.setRemainingTime(kRecoveryMs);
    return LogOnAgain();
}

// Once a fault has started the recovery, no call of this replace waits
// longer than the time the recovery has left, whatever the site's time-out
// says: a server that has gone silent must not hold the window for another
// time-out per step. The log-on sets the site's time-out; the limit holds
// over it. Run lifts the limit at its end.
void SafeReplace::LimitToRecovery()
{
    if (!m_recovery.isForever())
        m_ftp.Ftp().TimeoutLimit = int(qMax<qint64>(1, (m_recovery.remainingTime() + 999) / 1000));
}

bool SafeReplace::LogOnAgain()
{
    while (m_reconnects < kReconnects && !m_recovery.hasExpired()) {
        Pause(qMin<qint64>(kPauses[m_reconnects++], m_recovery.remainingTime()));
        if ((!m_settling && CancelRequested()) || m_recovery.hasExpired())
            return false;
        LimitToRecovery();
        if (m_ftp.Connect() == 1 && m_ftp.ChangeFolder(m_folder) == 1)
            return true;
        const CFTPS::Failure &failure = m_ftp.m_failure;
        if (failure.number == ControlError::LoginRefused || failure.description.startsWith(QLatin1String("530")))
            return false;
    }
    return false;
}

// The server answered the command with a refusal: doing it again would
// give the same answer. 421 is a server closing the connection, not a no.
bool SafeReplace::Refusal() const
{
    const CFTPS::Failure &failure = m_ftp.m_failure;
    if (failure.number != ControlError::Protocol)
        return false;
    static const QRegularExpression reply(QStringLiteral("^[45]\\d\\d"));
    return reply.match(failure.description).hasMatch() && !failure.description.startsWith(QLatin1String("421"));
}

bool SafeReplace::CancelRequested() const
{
    return FtpControl::AbortSerial() != m_abortSerial;
}

// Waits with the window alive; a Cancel ends the wait of the run at once.
void SafeReplace::Pause(int ms) const
{
    QDeadlineTimer deadline(ms);
    while (!deadline.hasExpired() && (m_settling || !CancelRequested())) {
        QEventLoop loop;
        QTimer::singleShot(qMin<qint64>(50, deadline.remainingTime()), &loop, &QEventLoop::quit);
        loop.exec();
    }
}

// ---------------------------------------------------------------- steps

// Settles the leftovers of broken runs: those of the runs named by their
// tokens, and any that are older than an hour (a run of another client
// that broke). True when every step went through.
bool SafeReplace::CleanLeftovers(const Listing &listing, const QSet<QString> &tokens)
{
    const QDateTime now = QDateTime::currentDateTime();
    QStringList olds, news;
    for (auto it = listing.begin(); it != listing.end(); ++it) {
        QString target;
        bool oldCopy = false;
        if (!IsTemporaryName(it.key(), target, oldCopy))
            continue;
        const QString token = it.key().section(QLatin1Char('.'), -2, -2);
        const bool ours = tokens.contains(token);
        const bool stale = it->time.isValid() && it->time.secsTo(now) > kLeftoverAgeSeconds;
        if (ours || stale)
            (oldCopy ? olds : news).append(it.key());
    }
    QSet<QString> present(listing.keyBegin(), listing.keyEnd());
    bool clean = true;
    // Old copies first: one whose file is missing is the page itself.
    for (const QString &name : olds) {
        QString target;
        bool oldCopy = false;
        IsTemporaryName(name, target, oldCopy);
        if (!present.contains(target)) {
            const bool back = Rename(name, target);
            if (back)
                present.insert(target);
            clean = clean && back;
        } else {
            clean = Delete(name) && clean;
        }
    }
    for (const QString &name : news)
        clean = Delete(name) && clean;
    return clean;
}

// The upload, and a look that the server holds every byte of it: a server
// that cuts the data connection may still say the transfer went well.
bool SafeReplace::Upload()
{
    FtpControl &control = m_ftp.Ftp();
    control.LocalFile = m_local;
    control.RemoteFile = m_new;
    control.TransferMode = 2;
    const bool sent = m_ftp.Capture(control.Upload());
    control.TransferMode = 0;
    if (!sent)
        return false;
    // The server's SIZE tells what it kept in one command; a server without
    // SIZE is asked for its listing.
    qint64 kept = -1;
    const bool sized = m_ftp.Capture(control.QuerySize(m_new, kept)) && kept >= 0;
    if (!sized) {
        Listing listing;
        if (!Look(listing))
            return false;
        kept = listing.value(m_new).size;
        if (kept < 0 && listing.contains(m_new))
            return true;
    }
    if (kept == m_size)
        return true;
    m_ftp.m_failure = {ControlError::DataConnection,
                       QStringLiteral("The server kept %1 of %2 bytes of %3.").arg(kept).arg(m_size).arg(m_new)};
    return false;
}

bool SafeReplace::Rename(const QString &from, const QString &to)
{
    return m_ftp.Rename(from, to);
}

bool SafeReplace::Delete(const QString &name)
{
    return m_ftp.Capture(m_ftp.Ftp().DeleteFile(name));
}

// After a failure or a Cancel: whatever the run got to, the folder ends
// with one whole copy in place, and the outcome says which. Not to be
// cancelled: the user's Cancel is what brought the run here.
bool SafeReplace::Settle()
{
    m_settling = true;
    // The settling gets log-ons again of its own, within the time left.
    m_reconnects = 0;
    if (!m_recovery.isForever() && m_recovery.remainingTime() < kSettlingMs)
        m_recovery.setRemainingTime(kSettlingMs);
    Listing listing;
    if (!Look(listing)) {
        m_outcome = m_steppedAside ? Outcome::OldKeptAside : Outcome::OldStands;
        return false;
    }
    if (m_straight)
        return SettleStraight(listing);
    const bool file = listing.contains(m_file);
    const bool old = listing.contains(m_old);
    const bool fresh = listing.contains(m_new);
    bool tidy = true;
    if (!file && old) {
        const Act back = Do([this] { return Rename(m_old, m_file); },
                            [this](const Listing &l) { return l.contains(m_file) && !l.contains(m_old); });
        m_outcome = back == Act::Done ? Outcome::OldStands : Outcome::OldKeptAside;
        tidy = back == Act::Done;
    } else {
        m_outcome = file && !fresh && m_movedInto ? Outcome::NewStands : Outcome::OldStands;
    }
    if (fresh)
        tidy = Do([this] { return Delete(m_new); }, [this](const Listing &l) { return !l.contains(m_new); }) == Act::Done
               && tidy;
    if (old && m_outcome == Outcome::NewStands)
        tidy = Do([this] { return Delete(m_old); }, [this](const Listing &l) { return !l.contains(m_old); }) == Act::Done
               && tidy;
    return tidy;
}

// A name no reader uses holds nothing of value when its write failed: it
// goes, and the folder is as it was.
bool SafeReplace::SettleStraight(const Listing &listing)
{
    m_outcome = Outcome::OldStands;
    if (!listing.contains(m_file))
        return true;
    return Do([this] { return Delete(m_file); }, [this](const Listing &l) { return !l.contains(m_file); }) == Act::Done;
}
