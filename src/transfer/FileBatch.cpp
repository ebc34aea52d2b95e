#include "transfer/FileBatch.h"

#include "platform/CurlErrorMap.h"
#include "support/ErrorLog.h"
#include "support/MError.h"
#include "transfer/CFTPS.h"
#include "transfer/DirListing.h"
#include "transfer/SafeReplace.h"

#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>

namespace {
QString Join(const QString &folder, const QString &name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

QString WithStartingSlash(const QString &path)
{
    return path.startsWith(QLatin1Char('/')) ? path : QLatin1Char('/') + path;
}

// The part of a path behind its last separator, either kind.
qsizetype LastSeparator(const QString &path)
{
    return qMax(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')));
}

bool ReplyIs(const QString &reply, std::initializer_list<const char *> codes)
{
    for (const char *code : codes)
        if (reply.startsWith(QLatin1String(code)))
            return true;
    return false;
}

// What a batch does beside its calls (a question to the user, the error
// log, the pending error, the status window) belongs to the window's
// thread, also while a download runs on the control's worker thread: from
// there it is handed over and waited for.
void OnWindowThread(QObject &window, const std::function<void()> &work)
{
    if (QThread::currentThread() == window.thread())
        work();
    else
        QMetaObject::invokeMethod(&window, work, Qt::BlockingQueuedConnection);
}

// A relative path of a batch that climbs out of its root is no path of it.
bool StaysBelow(const QString &relative)
{
    if (relative.isEmpty() || relative.startsWith(QLatin1Char('/')))
        return false;
    for (const QString &segment : relative.split(QLatin1Char('/')))
        if (segment.isEmpty() || segment == QLatin1String("..") || segment == QLatin1String("."))
            return false;
    return true;
}
} // namespace

FileBatch::FileBatch(CFTPS &ftp)
    : m_ftp(ftp)
{
}

// The running total, the batch flag that makes the status window count the
// whole batch, and the session in the batch's folder on the server.
long FileBatch::Begin(const QList<FILEITEM> &items, const QString &address, QString &folder)
{
    double total = 0;
    for (const FILEITEM &item : items)
        total += double(item.lSize);
    m_ftp.SetBatch(true, total);
    // A failure left by an earlier operation is no Cancel of this batch.
    m_ftp.m_failure = {};
    m_wasRunning = m_ftp.m_boolRunning;
    m_ftp.m_boolRunning = true;
    QString file;
    if (m_ftp.GoToFile(address, folder, file) != 1)
        return 0;
    // The mapping may give a folder relative to the login folder; the batch
    // joins its paths to the folder from the server's root.
    folder = m_ftp.Ftp().RemotePath();
    return 1;
}

long FileBatch::End(long result, long &lStatus_p)
{
    if (m_ftp.m_frmTransferStatus) {
        if (m_ftp.m_frmTransferStatus->IsVisible())
            m_ftp.m_frmTransferStatus->HideWindow();
        m_ftp.m_frmTransferStatus->ClearCancelPressed();
    }
    m_ftp.Ftp().TransferMode = 0;
    m_ftp.SetBatch(false, 0);
    m_ftp.m_boolRunning = m_wasRunning;
    lStatus_p = result;
    return result;
}

// The files of a folder follow one another: the session changes folder
// only when the next item lies elsewhere, not even asking the control.
bool FileBatch::GoTo(const QString &folder)
{
    const QString path = folder.isEmpty() ? QStringLiteral("/") : folder;
    return m_ftp.Ftp().RemotePath() == path || m_ftp.Capture(m_ftp.Ftp().SetRemotePath(path));
}

bool FileBatch::CancelPressed() const
{
    if (m_ftp.m_failure.number == ControlError::Aborted || m_ftp.Ftp().AbortAsked())
        return true;
    bool pressed = false;
    OnWindowThread(m_ftp, [&] { pressed = m_ftp.m_frmTransferStatus && m_ftp.m_frmTransferStatus->CancelPressed(); });
    return pressed;
}

void FileBatch::Log(long number, const QString &text, const QString &position) const
{
    OnWindowThread(m_ftp, [&] { ErrorLog::Append(number, text, position); });
}

void FileBatch::FileError(const QString &text, const QString &position) const
{
    OnWindowThread(m_ftp, [&] { MError::SetErrorIfClear(75, QStringLiteral("Path/File access error: ") + text, position); });
}

void FileBatch::Fail(const QString &position) const
{
    OnWindowThread(m_ftp, [&] { m_ftp.Fail(position); });
}

// The name the status window shows for the file under way, set where the
// window reads it, in turn with the transfer events.
void FileBatch::ShowName(const QString &name) const
{
    CFTPS *ftp = &m_ftp;
    if (!ftp->m_frmTransferStatus) // nobody shows it: no event for it
        return;
    if (QThread::currentThread() == ftp->thread())
        ftp->m_strTransferName = name;
    else
        QMetaObject::invokeMethod(ftp, [ftp, name] { ftp->m_strTransferName = name; }, Qt::QueuedConnection);
}

// What a failed step means for the batch: a Cancel ends it (-1), a refusal
// the server commonly gives (the folder is there already, the name is not
// allowed) skips the item, anything else ends the batch with the error.
FileBatch::Step FileBatch::Judge(const QString &position)
{
    const CFTPS::Failure &failure = m_ftp.m_failure;
    if (CancelPressed()) {
        Log(failure.number, failure.description, position);
        return Step::Cancelled;
    }
    if (failure.number == ControlError::Protocol && ReplyIs(failure.description, {"550", "521"})) {
        Log(failure.number, failure.description, position);
        return Step::Skipped;
    }
    Fail(position);
    return Step::Failed;
}

// ---------------------------------------------------------------- upload

long FileBatch::CopyFilesAndFolders(const QString &strTarget_p, const QList<FILEITEM> &items_p, long &lStatus_p)
{
    lStatus_p = 1;
    if (items_p.isEmpty())
        return 1;
    const QString position = QStringLiteral("CFTPS.CopyFilesAndFolders");
    const QString root = items_p.first().strPath.left(LastSeparator(items_p.first().strPath) + 1);
    QString target = strTarget_p;
    while (target.endsWith(QLatin1Char('/')))
        target.chop(1);
    QString folder;
    if (Begin(items_p, target + QStringLiteral("/dummy.htm"), folder) != 1)
        return End(m_ftp.Fail(position), lStatus_p);
    m_ftp.Ftp().TransferMode = 2;
    for (const FILEITEM &item : items_p) {
        // A Cancel confirmed after a file's transfer had ended: its question
        // was open while the transfer ran to its end.
        if (CancelPressed())
            return End(-1, lStatus_p);
        QString relative = item.strPath.startsWith(root) ? item.strPath.mid(root.size()) : QString();
        relative.replace(QLatin1Char('\\'), QLatin1Char('/'));
        if (item.strName.isEmpty() && item.strPath.isEmpty())
            continue;
        if (!StaysBelow(relative)) {
            ErrorLog::Append(0, QStringLiteral("Not below the batch's folder: ") + item.strPath, position);
            continue;
        }
        const Step step = item.lType == 1 ? Upload(folder, relative, item) : MakeFolder(folder, relative);
        if (step == Step::Cancelled)
            return End(-1, lStatus_p);
        if (step == Step::Failed)
            return End(0, lStatus_p);
    }
    return End(1, lStatus_p);
}

FileBatch::Step FileBatch::Upload(const QString &folder, const QString &relative, const FILEITEM &item)
{
    const QString position = QStringLiteral("CFTPS.CopyFilesAndFolders ") + item.strPath;
    const qsizetype slash = relative.lastIndexOf(QLatin1Char('/'));
    const QString into = slash < 0 ? folder : Join(folder, relative.left(slash));
    const QString name = relative.mid(slash + 1);
    if (!GoTo(into))
        return Judge(position);
    m_ftp.m_strTransferName = name;
    m_ftp.m_dblTransferSize = double(item.lSize);
    SafeReplace replace(m_ftp, into, name, item.strPath);
    if (IsNew(into, name))
        replace.SetFreshName();
    if (replace.Run())
        return Step::Done;
    if (replace.Cancelled()) {
        ErrorLog::Append(m_ftp.m_failure.number, m_ftp.m_failure.description, position);
        return Step::Cancelled;
    }
    return Judge(position);
}

// Whether a name is free in the session's current folder, which is the
// folder given. A folder that can't be listed has no free names: its files
// all go through the whole replace.
bool FileBatch::IsNew(const QString &folder, const QString &name)
{
    if (!m_names.contains(folder)) {
        QSet<QString> names;
        if (m_ftp.Listing().NamesHere(names) != 1)
            return false;
        m_names.insert(folder, names);
    }
    return !m_names.value(folder).contains(name);
}

FileBatch::Step FileBatch::MakeFolder(const QString &folder, const QString &relative)
{
    const QString position = QStringLiteral("CFTPS.CopyFilesAndFolders ") + relative;
    m_ftp.Ftp().RemoteFile = relative;
    if (GoTo(folder) && m_ftp.Capture(m_ftp.Ftp().MakeDirectory(relative))) {
        m_names.insert(Join(folder, relative), {});
        return Step::Done;
    }
    return Judge(position);
}

// ---------------------------------------------------------------- delete

// Files first, then folders, each pass from the last item to the first, so
// that a folder is empty when its turn comes.
long FileBatch::DeleteFilesAndFolders(const QString &strFolder_p, const QList<FILEITEM> &items_p, long &lStatus_p)
{
    const QString position = QStringLiteral("CFTPS.DeleteFilesAndFolders");
    QString folder;
    if (Begin({}, strFolder_p, folder) != 1)
        return End(m_ftp.Fail(position), lStatus_p);
    bool stayed = false;
    for (const long type : {1L, 0L}) {
        for (qsizetype i = items_p.size() - 1; i >= 0; --i) {
            const FILEITEM &item = items_p.at(i);
            if (item.lType != type || item.strPath.isEmpty())
                continue;
            const QString path = WithStartingSlash(item.strPath);
            m_ftp.Ftp().RemoteFile = path;
            const long done = type == 1 ? m_ftp.Ftp().DeleteFile(path) : m_ftp.Ftp().RemoveDirectory(path);
            if (m_ftp.Capture(done))
                continue;
            const CFTPS::Failure &failure = m_ftp.m_failure;
            if (failure.number != ControlError::Protocol || !ReplyIs(failure.description, {"500", "521", "550"}))
                return End(m_ftp.Fail(position), lStatus_p);
            ErrorLog::Append(failure.number, failure.description, position + QLatin1Char(' ') + path);
            stayed = true;
        }
    }
    return End(stayed ? -1 : 1, lStatus_p);
}

// ---------------------------------------------------------------- download

long FileBatch::DownLoadFilesAndFolders(const QString &strRoot_p, const QList<FILEITEM> &items_p,
                                        const QString &strLocalTarget_p, long &lStatus_p)
{
    lStatus_p = 1;
    if (items_p.isEmpty())
        return 1;
    QString folder;
    if (Begin(items_p, strRoot_p, folder) != 1)
        return End(m_ftp.Fail(QStringLiteral("CSiteTreeView.DownLoadFilesAndFolders")), lStatus_p);
    m_ftp.Ftp().TransferMode = 2;
    // The files follow one another on the control's worker thread: a hop
    // to the window's thread and back for each small file would cost more
    // than the file. The window's thread keeps showing progress and takes
    // a Cancel meanwhile.
    long result = 1;
    m_ftp.Ftp().RunBatch([&] { result = DownloadItems(items_p, strLocalTarget_p); });
    return End(result, lStatus_p);
}

// 1 done, -1 cancelled, 0 failed (the error pending).
long FileBatch::DownloadItems(const QList<FILEITEM> &items, const QString &target)
{
    const QString position = QStringLiteral("CSiteTreeView.DownLoadFilesAndFolders");
    const QString first = items.first().strPath;
    const QString root = first.left(first.lastIndexOf(QLatin1Char('/')) + 1);
    for (const FILEITEM &item : items) {
        // A Cancel that came between two files.
        if (m_ftp.Ftp().AbortAsked())
            return -1;
        if (item.strPath.isEmpty())
            continue;
        const QString relative = item.strPath.startsWith(root) ? item.strPath.mid(root.size()) : QString();
        const QString local = StaysBelow(relative) ? LocalPathInside(target, relative) : QString();
        if (local.isEmpty()) {
            Log(0, QStringLiteral("Not below the local folder: ") + item.strPath, position);
            continue;
        }
        if (item.lType == 0) {
            if (LocalFolder(local))
                continue;
            FileError(local, position);
            return 0;
        }
        const Step step = Download(WithStartingSlash(item.strPath), local, item.strName);
        if (step == Step::Cancelled)
            return -1;
        if (step == Step::Failed)
            return 0;
    }
    return 1;
}

// A local file of that name is kept, replaced or joined by the new one
// under a free name, as the question (or, without one, the rule: kept)
// decides. The file is written under a name of its own beside it and put
// in place when whole, so a cut or cancelled transfer, or a disk that fills
// up, leaves nothing under the file's name and a replaced file as it was.
// It is not forced to the disk on the way, which costs more than the
// transfer of a small file: a batch is one of many files that a second run
// fetches again.
FileBatch::Step FileBatch::Download(const QString &remote, const QString &strLocal_p, const QString &name)
{
    const QString position = QStringLiteral("CSiteTreeView.DownLoadFilesAndFolders ") + remote;
    QString local = strLocal_p;
    bool replace = false;
    const Step settled = Settle(local, replace, position);
    if (settled != Step::Done)
        return settled;
    FtpControl &ftp = m_ftp.Ftp();
    if (!GoTo(remote.left(remote.lastIndexOf(QLatin1Char('/')))))
        return Judge(position);
    QFile part;
    if (!LocalFolder(QFileInfo(local).path()) || !OpenPart(local, part)) {
        FileError(local + QStringLiteral(": ") + part.errorString(), position);
        return Step::Failed;
    }
    ShowName(name);
    ftp.RemoteFile = remote.mid(remote.lastIndexOf(QLatin1Char('/')) + 1);
    ftp.LocalFile.clear();
    const bool done = m_ftp.Capture(ftp.Download(part));
    // The last bytes reach the disk only here: a full disk may refuse them.
    const bool written = part.error() == QFileDevice::NoError && part.flush();
    const QString why = part.errorString();
    part.close();
    if (done && written && PutInPlace(part.fileName(), local, replace))
        return Step::Done;
    part.remove();
    if (done || !written) {
        FileError(local + QStringLiteral(": ") + why, position);
        return Step::Failed;
    }
    return Judge(position);
}

// Where the file goes when its name is taken: Done to go on (local may now
// hold a free name, or replace be set), or the step that ends the item.
FileBatch::Step FileBatch::Settle(QString &local, bool &replace, const QString &position)
{
    // One look at the name itself, a link or not: most names are free.
    struct stat status;
    if (::lstat(QFile::encodeName(local).constData(), &status) != 0 && errno == ENOENT)
        return Step::Done;
    const QFileInfo there(local);
    // Only a plain file is offered for replacing: never a folder, never
    // what a link points to.
    const QString free = FreeName(local);
    Existing answer = Existing::Skip;
    if (m_existing && there.isFile() && !there.isSymLink())
        OnWindowThread(m_ftp, [&] { answer = m_existing(local, free); });
    switch (answer) {
    case Existing::Replace:
        replace = true;
        return Step::Done;
    case Existing::Rename:
        local = free;
        return Step::Done;
    case Existing::Cancel:
        return Step::Cancelled;
    case Existing::Skip:
        break;
    }
    Log(58, QStringLiteral("File already exists: ") + local, position);
    return Step::Skipped;
}

// A rename over a file swaps it in one step: the old file stands until the
// new one takes its place. Else the rename refuses a name taken meanwhile,
// in one call where the file system can.
bool FileBatch::PutInPlace(const QString &part, const QString &local, bool replace)
{
    const QByteArray from = QFile::encodeName(part);
    const QByteArray to = QFile::encodeName(local);
    if (replace)
        return ::rename(from.constData(), to.constData()) == 0;
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    return (errno == EINVAL || errno == ENOSYS) && QFile::rename(part, local);
}

// Whether a local folder stands, made if need be. The folders of a batch
// are made or found once: its files mostly share a few.
bool FileBatch::LocalFolder(const QString &folder)
{
    if (m_localFolders.contains(folder))
        return true;
    if (!QDir().mkpath(folder))
        return false;
    m_localFolders.insert(folder);
    return true;
}

QString FileBatch::FreeName(const QString &strLocal_p)
{
    const QFileInfo info(strLocal_p);
    const QString name = info.fileName();
    // A leading dot starts a hidden name, not an extension.
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const QString stem = dot > 0 ? name.left(dot) : name;
    const QString extension = dot > 0 ? name.mid(dot) : QString();
    for (int n = 2;; ++n) {
        const QString free = info.path() + QLatin1Char('/') + stem + QStringLiteral(" (%1)").arg(n) + extension;
        if (!QFileInfo::exists(free) && !QFileInfo(free).isSymLink())
            return free;
    }
}

// The file is written under a name beside it that no listing gives (a
// listed name holds no "/", and this one is new in the folder): the first
// of ".name.N.kelda-part" that is free.
bool FileBatch::OpenPart(const QString &local, QFile &part)
{
    const QFileInfo info(local);
    for (int n = 0; n < 1000; ++n) {
        part.setFileName(info.path() + QStringLiteral("/.") + info.fileName() + QStringLiteral(".%1.kelda-part").arg(n));
        if (part.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            return true;
        // Another failure than a name taken ends the search.
        if (!QFileInfo(part.fileName()).isSymLink() && !QFileInfo::exists(part.fileName()))
            return false;
    }
    return false;
}

QString FileBatch::LocalPathInside(const QString &strFolder_p, const QString &strRelative_p)
{
    if (!StaysBelow(strRelative_p) || strRelative_p.contains(QLatin1Char('\\')) || strRelative_p.contains(QChar(0)))
        return QString();
    const QString folder = QDir::cleanPath(QDir(strFolder_p).absolutePath());
    const QString path = QDir::cleanPath(folder + QLatin1Char('/') + strRelative_p);
    if (!path.startsWith(folder + QLatin1Char('/')))
        return QString();
    // A link inside the folder could lead a write anywhere.
    for (QString step = QFileInfo(path).path(); step.size() > folder.size(); step = QFileInfo(step).path())
        if (QFileInfo(step).isSymLink())
            return QString();
    if (QFileInfo(path).isSymLink())
        return QString();
    return path;
}
