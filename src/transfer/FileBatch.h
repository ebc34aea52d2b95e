#pragma once

#include "transfer/FILEITEM.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <functional>

class CFTPS;
class QFile;

// Batches of files and folders on one session and under one progress
// window: an upload of local files into a folder of the site, a delete of
// files and folders on the server, a download of them into a local folder.
//
// Whatever the user cancels or the server refuses, no file is left half
// written: an upload goes through the safe replace (a new name, then a
// rename), a download is written aside and moved in place when whole. And
// nothing is written outside the local folder chosen, whatever names a
// batch holds.
class FileBatch
{
public:
    explicit FileBatch(CFTPS &ftp);

    // 1 done, -1 cancelled.
    long CopyFilesAndFolders(const QString &strTarget_p, const QList<FILEITEM> &items_p, long &lStatus_p);
    // 1 all gone, -1 some items stayed.
    long DeleteFilesAndFolders(const QString &strFolder_p, const QList<FILEITEM> &items_p, long &lStatus_p);
    // 1 done, -1 cancelled.
    long DownLoadFilesAndFolders(const QString &strRoot_p, const QList<FILEITEM> &items_p,
                                 const QString &strLocalTarget_p, long &lStatus_p);

    // What a download does with a file that is on the local disk already.
    // Without a question the local file is kept and the item logged and
    // skipped; with one, the user decides file by file. The batch knows no
    // windows: the question is the caller's.
    enum class Existing { Replace, Skip, Rename, Cancel };
    // Asked with the local file and the name a Rename gives the new one.
    using ExistingFileQuestion = std::function<Existing(const QString &strLocal_p, const QString &strFreeName_p)>;
    void SetExistingFileQuestion(ExistingFileQuestion question) { m_existing = std::move(question); }
    // "name (2).ext", or the first number after it that is free.
    static QString FreeName(const QString &strLocal_p);

    // The path below strFolder_p that strRelative_p names, or "" when it
    // would lead out of it (a "..", an absolute path, a link on the way).
    static QString LocalPathInside(const QString &strFolder_p, const QString &strRelative_p);

private:
    enum class Step { Done, Skipped, Cancelled, Failed };

    long Begin(const QList<FILEITEM> &items, const QString &address, QString &folder);
    long End(long result, long &lStatus_p);
    Step Upload(const QString &folder, const QString &relative, const FILEITEM &item);
    Step MakeFolder(const QString &folder, const QString &relative);
    long DownloadItems(const QList<FILEITEM> &items, const QString &target);
    Step Download(const QString &remote, const QString &local, const QString &name);
    Step Settle(QString &local, bool &replace, const QString &position);
    static bool PutInPlace(const QString &part, const QString &local, bool replace);
    Step Judge(const QString &position);
    bool CancelPressed() const;
    void Log(long number, const QString &text, const QString &position) const;
    void FileError(const QString &text, const QString &position) const;
    void Fail(const QString &position) const;
    void ShowName(const QString &name) const;
    bool GoTo(const QString &folder);
    bool IsNew(const QString &folder, const QString &name);
    static bool OpenPart(const QString &local, QFile &part);
    bool LocalFolder(const QString &folder);

    CFTPS &m_ftp;
    bool m_wasRunning = false;
    // The names in the folders of an upload, listed once per folder (or
    // known to be none in a folder the batch made): a file that is not
    // there yet is written straight under its name, a file that is goes
    // through the whole replace.
    QHash<QString, QSet<QString>> m_names;
    ExistingFileQuestion m_existing;
    // The local folders of a download that stand.
    QSet<QString> m_localFolders;
};
