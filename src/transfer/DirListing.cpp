#include "transfer/DirListing.h"

#include "platform/CurlErrorMap.h"
#include "platform/FtpListParser.h"
#include "support/ErrorLog.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"
#include "transfer/DirSort.h"
#include "transfer/DirTreeNodes.h"
#include "transfer/FilePictures.h"

namespace {
constexpr long txtListingCut = 22400;
const QString kWaitPrefix = QStringLiteral("##wait_");
const QString kWaitText = QStringLiteral("Wait...");

// Both spellings of the one folder: "/" and "/a" hold names as "/x", "/a/x".
QString Join(const QString &folder, const QString &name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

bool IsPageName(const QString &name)
{
    const QString lower = name.toLower();
    for (const char *extension : {".asp", ".htm", ".html", ".shtml"})
        if (lower.endsWith(QLatin1String(extension)))
            return true;
    return false;
}

// A link, as the two listing forms mark one: "l" in front of a Unix line,
// "OS.unix=slink" among the facts of MLSD. A file of another dialect whose
// name holds "->" stays a file.
bool IsLinkLine(const QString &entry)
{
    return entry.startsWith(QLatin1Char('l')) || entry.contains(QLatin1String("=slink"), Qt::CaseInsensitive)
        || entry.contains(QLatin1String("=symlink"), Qt::CaseInsensitive);
}
} // namespace

DirListing::DirListing(CFTPS &ftp)
    : m_ftp(ftp)
{
}

// ---------------------------------------------------------------- the event

void DirListing::DirList(const QString &DirEntry, const QString &FileName, bool IsDir, qint64 FileSize,
                         const QDateTime &FileTime)
{
    if (m_cut)
        return;
    m_listedBytes += DirEntry.size() + 2;
    if (m_listedBytes > kLargestListing) {
        m_cut = true;
        m_ftp.Ftp().Abort(); // the one call a control allows from its event
        return;
    }
    if (DirEntry.size() > FtpListParser::kLongestLine) {
        Refuse(DirEntry.left(200), QStringLiteral("a line longer than 64 KB"));
        return;
    }
    const bool link = IsLinkLine(DirEntry) && FileName.contains(QLatin1String("->"));
    const QString name = link ? FileName.section(QLatin1String("->"), 0, 0).trimmed() : FileName;
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        return;
    QString reason;
    if (!AcceptableName(name, reason)) {
        Refuse(DirEntry, reason);
        return;
    }
    if (FileSize < 0 || FileSize > kLargestSize) {
        Refuse(DirEntry, QStringLiteral("a size of %1 bytes").arg(FileSize));
        return;
    }
    DIRENTRY entry;
    entry.strEntry = DirEntry;
    entry.strName = name;
    entry.lType = link || IsDir ? 1 : 0;
    entry.bLink = link;
    entry.strPath = m_strListPath;
    entry.lSize = FileSize;
    entry.strTime = FileTime.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
    if (entry.lType == 1)
        m_boolFolder = true;
    else
        entry.bPage = IsPageName(name);
    m_dir.Entries.append(entry);
    m_dir.lCount = long(m_dir.Entries.size());
    m_boolEntry = true;
}

// ".." never reaches here as a name (it is skipped as the parent); a name
// with a path separator could still climb out of a folder when it is joined
// to a local or a server path, and a NUL or a line break would cut a command
// or a log line. A name like "a..b" is an ordinary name.
bool DirListing::AcceptableName(const QString &name, QString &reason)
{
    if (name.isEmpty())
        reason = QStringLiteral("no name");
    else if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        reason = QStringLiteral("a path separator in the name");
    else if (name.contains(QChar(0)))
        reason = QStringLiteral("a NUL in the name");
    else if (name.contains(QLatin1Char('\r')) || name.contains(QLatin1Char('\n')))
        reason = QStringLiteral("a line break in the name");
    else if (name == QLatin1String(".."))
        reason = QStringLiteral("the name \"..\"");
    return reason.isEmpty();
}

bool DirListing::Refuse(const QString &DirEntry, const QString &reason)
{
    QString shown = DirEntry;
    shown.replace(QChar(0), QStringLiteral("\\0")).replace(QLatin1Char('\r'), QStringLiteral("\\r"));
    shown.replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    ErrorLog::Append(0, QStringLiteral("Listing entry refused for ") + reason + QStringLiteral(": ") + shown,
                     QStringLiteral("CFTPS.DirList ") + m_strListPath);
    return false;
}

// ---------------------------------------------------------------- listing

// One listing of the current folder into the buffer, by MLSD or LIST. A
// listing cut at its size limit is a listing: what came is kept, and the
// user is told. The cut closed the connection; the next call logs on again.
long DirListing::List()
{
    FtpControl &ftp = m_ftp.Ftp();
    m_listedBytes = 0;
    m_cut = false;
    const bool mlsd = OffersMlsd();
    const QMetaObject::Connection events = QObject::connect(
        &ftp, &FtpControl::DirList,
        [this](const QString &DirEntry, const QString &FileName, bool IsDir, qint64 FileSize,
               const QDateTime &FileTime) { DirList(DirEntry, FileName, IsDir, FileSize, FileTime); });
    ftp.RemoteFile.clear();
    const long result = mlsd ? ftp.ListDirectoryMachine() : ftp.ListDirectoryLong();
    QObject::disconnect(events);
    if (m_cut) {
        UserQuestions::MsgBox(MResources::LoadResourceString(txtListingCut).arg(m_strListPath),
                              UserQuestions::vbExclamation);
        return 1;
    }
    return m_ftp.Capture(result) ? 1 : 0;
}

// FEAT is asked once per connection to a server; its answer lives with the
// control, so every client that shares the connection knows it.
bool DirListing::OffersMlsd()
{
    FtpControl &ftp = m_ftp.Ftp();
    const QString server = ftp.RemoteHost + QLatin1Char(':') + QString::number(ftp.RemotePort);
    if (ftp.property("kelda.feat").toString() == server)
        return ftp.property("kelda.mlsd").toBool();
    bool offered = false;
    const QMetaObject::Connection trail =
        QObject::connect(&ftp, &FtpControl::PITrail, [&offered](int direction, const QString &line) {
            if (direction == 1 && line.trimmed().startsWith(QLatin1String("MLST"), Qt::CaseInsensitive))
                offered = true;
        });
    const long result = ftp.Command(QStringLiteral("FEAT"));
    QObject::disconnect(trail);
    // A refused FEAT is an answer (nothing beyond LIST); a lost connection
    // is none, and the next listing asks again.
    if (result == 1 || ftp.Connected()) {
        ftp.setProperty("kelda.feat", server);
        ftp.setProperty("kelda.mlsd", offered);
    }
    return offered;
}

QString DirListing::RootKey() const
{
    QString base = m_ftp.Record().baseaddress;
    while (base.endsWith(QLatin1Char('/')))
        base.chop(1);
    return base;
}

// The folder of a tree key (an address under the site's address), listed
// with the key as the entries' path.
long DirListing::ListSiteFolder(const QString &strKey_p, const QString &strRootKey_p)
{
    QString path = strKey_p == strRootKey_p ? QString() : strKey_p;
    if (path.startsWith(strRootKey_p))
        path = path.mid(strRootKey_p.size());
    while (path.startsWith(QLatin1Char('/')))
        path.remove(0, 1);
    const QString address = path.isEmpty() ? QStringLiteral("dummy.htm") : path + QStringLiteral("/dummy.htm");
    QString folder, file;
    if (m_ftp.GoToFile(address, folder, file) != 1)
        return 0;
    m_strListPath = strKey_p;
    return List();
}

long DirListing::GetDirFiles(DirTreeNodes &tvwTree_p, const QString &strPath_p)
{
    return FillTree(tvwTree_p, strPath_p, Fill::FoldersAndFiles, QStringLiteral("CFTPS.GetDirFiles"));
}

long DirListing::GetDirBranch(DirTreeNodes &tvwTree_p, const QString &strPath_p)
{
    return FillTree(tvwTree_p, strPath_p, Fill::Folders, QStringLiteral("CFTPS.GetDirBranch"));
}

long DirListing::GetFolders(DirTreeNodes &tvwTree_p, const QString &strPath_p)
{
    if (strPath_p.isEmpty() || tvwTree_p.Count() == 0) {
        MError::SetErrorIfClear(5, QStringLiteral("Invalid procedure call: no folder of the tree"),
                                QStringLiteral("CFTPS.GetFolders"));
        return 0;
    }
    return FillTree(tvwTree_p, strPath_p, Fill::Folders, QStringLiteral("CFTPS.GetFolders"));
}

long DirListing::FillTree(DirTreeNodes &tree, const QString &strPath_p, Fill fill, const QString &position)
{
    m_dir.Clear();
    const QString root = RootKey();
    if (tree.Count() == 0) {
        AddNode(tree, QString(), root, root, 1, 2);
        AddNode(tree, root, kWaitPrefix + root, kWaitText, 3, 3);
    }
    const QString key = strPath_p.isEmpty() ? root : strPath_p;
    if (ListSiteFolder(key, root) != 1)
        return TreeFailure(position, fill == Fill::Folders);
    if (tree.Remove(kWaitPrefix + key) != 1)
        ErrorLog::Append(DirTreeNodes::errElementNotFound, QStringLiteral("element not found"), position);
    DirSort::SortDIR2(m_dir);
    for (const DIRENTRY &entry : std::as_const(m_dir.Entries)) {
        const QString child = Join(entry.strPath, entry.strName);
        if (entry.lType != 0) {
            AddNode(tree, key, child, entry.strName, 1, 2);
            AddNode(tree, child, kWaitPrefix + child, kWaitText, 3, 3);
        } else if (fill == Fill::FoldersAndFiles) {
            const long image = FilePictures::SetPictureIndex(entry.strName);
            if (image > 0)
                AddNode(tree, key, child, entry.strName, int(image), int(image));
        }
    }
    return 1;
}

// A node that is there already (the folder was expanded before) is logged
// and passed over, as is a parent that went meanwhile.
void DirListing::AddNode(DirTreeNodes &tree, const QString &parent, const QString &key, const QString &text,
                         int image, int expanded)
{
    const long result = tree.Add(parent, DirTreeNodes::tvwChild, key, text, image, expanded);
    if (result == DirTreeNodes::errKeyNotUnique)
        ErrorLog::Append(result, QStringLiteral("key is not unique in collection: ") + key, QStringLiteral("CFTPS.GetDirFiles"));
    else if (result != 1)
        ErrorLog::Append(result, QStringLiteral("element not found: ") + parent, QStringLiteral("CFTPS.GetDirFiles"));
}

// -2 for a server that did not answer in time, -3 for a folder it refused
// (or a connection it refused, for the file tree); the branch fill leaves
// no error for these, the file tree reports them. Anything else is 0.
long DirListing::TreeFailure(const QString &position, bool branch)
{
    const CFTPS::Failure &failure = m_ftp.m_failure;
    long code = 0;
    if (failure.number == ControlError::TimedOut
        || (failure.number == ControlError::DataConnection && failure.description.contains(QLatin1String("timeout"), Qt::CaseInsensitive)))
        code = -2;
    else if (failure.number == ControlError::Protocol && failure.description.startsWith(QLatin1String("550")))
        code = -3;
    else if (!branch && failure.number == ControlError::Refused)
        code = -3;
    if (code != 0 && branch) {
        MError::ClearError();
        return code;
    }
    m_ftp.Fail(position);
    return code;
}

long DirListing::GetDir(DIRDATA &dirData_p)
{
    const QString position = QStringLiteral("CFTPS.GetDir");
    m_dir.Clear();
    if (!m_ftp.Ftp().Connected() && m_ftp.Connect() != 1)
        return 0;
    m_strListPath = m_ftp.Ftp().RemotePath();
    if (List() != 1)
        return m_ftp.Fail(position);
    for (;;) {
        auto next = std::find_if(m_dir.Entries.begin(), m_dir.Entries.end(),
                                 [](const DIRENTRY &entry) { return entry.lType == 1; });
        if (next == m_dir.Entries.end())
            break;
        next->lType = 2;
        const QString folder = Join(next->strPath, next->strName);
        // A link that leads back up would be walked for ever; the depth ends it.
        if (folder.count(QLatin1Char('/')) > kDeepestLevel)
            continue;
        m_strListPath = folder;
        if (!m_ftp.Capture(m_ftp.Ftp().SetRemotePath(folder)) || List() != 1)
            ErrorLog::Append(m_ftp.m_failure.number, m_ftp.m_failure.description, position + QLatin1Char(' ') + folder);
    }
    m_dir.lMaxLevel = 0;
    for (DIRENTRY &entry : m_dir.Entries) {
        entry.lLevel = long(Join(entry.strPath, entry.strName).count(QLatin1Char('/')));
        m_dir.lMaxLevel = qMax(m_dir.lMaxLevel, entry.lLevel);
    }
    dirData_p = m_dir;
    return 1;
}

long DirListing::CheckEnterPermissions(const QString &strPath_p)
{
    const QString path = strPath_p.endsWith(QLatin1Char('/')) ? strPath_p : strPath_p + QLatin1Char('/');
    return m_ftp.Capture(m_ftp.Ftp().SetRemotePath(path)) ? 1 : -1;
}

// Level 1 is the site's start folder; each further level lists the folders
// that the previous call found, so that a search can stop at any level.
long DirListing::GetDirLevel(DIRDATA &dirData_p, long lLevel_p)
{
    const QString position = QStringLiteral("CFTPS.GetDirLevel");
    const DIRDATA previous = dirData_p;
    m_dir.Clear();
    if (!m_ftp.Ftp().Connected() && m_ftp.Connect() != 1)
        return 0;
    const SiteRecord site = m_ftp.Record();
    const QString start = site.remotefolder.isEmpty() ? m_ftp.m_session->loginFolderMark.mid(1) : site.remotefolder;
    if (lLevel_p <= 1) {
        if (!m_ftp.Capture(m_ftp.Ftp().SetRemotePath(start.isEmpty() ? QStringLiteral("/") : start)))
            return m_ftp.Fail(position);
        m_strListPath = m_ftp.Ftp().RemotePath();
        if (List() != 1)
            return m_ftp.Fail(position);
    }
    for (const DIRENTRY &entry : previous.Entries) {
        if (lLevel_p <= 1 || entry.lLevel != lLevel_p - 1 || entry.lType != 1)
            continue;
        const QString folder = Join(entry.strPath, entry.strName);
        if (CheckEnterPermissions(folder) != 1)
            continue;
        m_strListPath = m_ftp.Ftp().RemotePath();
        if (List() != 1)
            ErrorLog::Append(m_ftp.m_failure.number, m_ftp.m_failure.description, position + QLatin1Char(' ') + folder);
        m_ftp.Ftp().DoEvents();
    }
    for (DIRENTRY &entry : m_dir.Entries)
        entry.lLevel = lLevel_p;
    if (!start.isEmpty())
        m_ftp.Ftp().SetRemotePath(start);
    m_ftp.Ftp().Passive = site.passivemode;
    dirData_p = m_dir;
    return m_dir.Entries.isEmpty() ? 0 : 1;
}

// The control keeps no state between calls that a new log-on would clear,
// so the folders are listed on the session as it stands.
long DirListing::GetSubFolders(const QString &strPath_p, QStringList &strFolders_p)
{
    const QString position = QStringLiteral("CFTPS.GetSubFolders");
    strFolders_p.clear();
    m_dir.Clear();
    if (!m_ftp.Ftp().Connected() && m_ftp.Connect() != 1)
        return 0;
    const SiteRecord site = m_ftp.Record();
    QString start = site.useremotef == QLatin1String("1") ? site.remotefolder
                                                            : m_ftp.m_session->loginFolderMark.mid(1);
    if (start.isEmpty())
        start = QStringLiteral("/");
    QString folder = start;
    if (!strPath_p.isEmpty() && strPath_p != QLatin1String("/"))
        folder = Join(start, CFTPS::TrimSlashes(strPath_p));
    if (!m_ftp.Capture(m_ftp.Ftp().SetRemotePath(folder)))
        return m_ftp.Fail(position);
    m_strListPath = folder;
    if (List() != 1)
        return m_ftp.Fail(position);
    for (const DIRENTRY &entry : std::as_const(m_dir.Entries))
        if (entry.lType == 1)
            strFolders_p.append(entry.strName);
    return strFolders_p.isEmpty() ? -1 : 1;
}

long DirListing::GoToFolderOf(const QString &strPath_p)
{
    m_dir.Clear();
    QString folder, file;
    if (m_ftp.GoToFile(strPath_p, folder, file) != 1)
        return 0;
    // Paths of entries are from the server's root, whatever the mapping gave.
    m_strListPath = m_ftp.Ftp().RemotePath();
    return List();
}

long DirListing::GetFiles_In_Dir(const QString &strPath_p, QStringList &strFiles_p)
{
    strFiles_p.clear();
    if (GoToFolderOf(strPath_p) != 1)
        return m_ftp.Fail(QStringLiteral("CFTPS.GetFiles_In_Dir"));
    for (const DIRENTRY &entry : std::as_const(m_dir.Entries))
        strFiles_p.append(entry.strName);
    return 1;
}

long DirListing::NamesHere(QSet<QString> &names_p)
{
    m_dir.Clear();
    m_strListPath = m_ftp.Ftp().RemotePath();
    if (List() != 1)
        return 0;
    names_p.clear();
    for (const DIRENTRY &entry : std::as_const(m_dir.Entries))
        names_p.insert(entry.strName);
    return 1;
}

long DirListing::GetFiles_In_DirEx(const QString &strPath_p, QList<FILEITEM> &files_p)
{
    files_p.clear();
    return FilesBelow(strPath_p, files_p, 0);
}

// A link is taken as an item of its own and never walked into: a delete of
// the folder removes the link, not what it points to, and a download does
// not follow it out of the folder.
long DirListing::FilesBelow(const QString &strPath_p, QList<FILEITEM> &files_p, int depth)
{
    if (depth >= kDeepestLevel)
        return 1;
    if (GoToFolderOf(strPath_p) != 1)
        return m_ftp.Fail(QStringLiteral("CFTPS.GetFiles_In_DirEx"));
    const QList<DIRENTRY> entries = m_dir.Entries;
    const QString addressFolder = strPath_p.left(strPath_p.lastIndexOf(QLatin1Char('/')) + 1);
    for (const DIRENTRY &entry : entries) {
        const bool folder = entry.lType != 0 && !entry.bLink;
        files_p.append({Join(entry.strPath, entry.strName), entry.strName, folder ? 0 : entry.lSize, folder ? 0L : 1L});
    }
    for (const DIRENTRY &entry : entries) {
        if (entry.lType == 0 || entry.bLink)
            continue;
        if (FilesBelow(addressFolder + entry.strName + QStringLiteral("/dummy.htm"), files_p, depth + 1) != 1)
            return 0;
    }
    return 1;
}

// Size and time come from SIZE and MDTM of the one file: no listing.
long DirListing::GetFileInfo(const QString &strURL_p, QString &strFileSize_p, QString &strFileTime_p,
                             QString &strCompletePath_p, bool bIsDir_p)
{
    const QString position = QStringLiteral("CFTPS.GetFileInfo");
    QString folder, file;
    if (m_ftp.GoToFile(strURL_p, folder, file) != 1)
        return m_ftp.Fail(position);
    FtpControl &ftp = m_ftp.Ftp();
    ftp.RemoteFile = file;
    strCompletePath_p = Join(ftp.RemotePath(), file);
    if (bIsDir_p)
        return 1;
    qint64 size = -1;
    if (!m_ftp.Capture(ftp.QuerySize(file, size)))
        return m_ftp.Fail(position);
    strFileSize_p = QString::number(size);
    QString stamp;
    const QMetaObject::Connection trail =
        QObject::connect(&ftp, &FtpControl::PITrail, [&stamp](int direction, const QString &line) {
            if (direction == 1 && line.startsWith(QLatin1String("213 ")))
                stamp = line.mid(4).trimmed();
        });
    ftp.Command(QStringLiteral("MDTM ") + file);
    QObject::disconnect(trail);
    const QDateTime time = QDateTime::fromString(stamp.left(14), QStringLiteral("yyyyMMddHHmmss"));
    strFileTime_p = time.isValid() ? time.toString(QStringLiteral("yyyy-MM-dd HH:mm")) : QString();
    return 1;
}
