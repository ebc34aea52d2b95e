#include "history/CRollback.h"

#include "config/MGlobalProjectObjects.h"
#include "document/AddressPath.h"
#include "history/HistoryFolderGuard.h"
#include "platform/CReg.h"
#include "platform/LocalFolders.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "transfer/CFTPS.h"

#include <QDateTime>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <chrono>

namespace {
enum : long {
    txtPage = 19401,
    txtIndexMissingStart = 19402,
    txtRevisionMissingStart = 19403,
    txtBackupRefused = 19404,
    txtIndexMissingEnd = 19405,
    txtRevisionMissingEnd = 19406,
};
constexpr long kWriteRefused = -550;
const QString kIndexName = QStringLiteral("_resetp.ini");
const QString kQuotedFolder = QStringLiteral("\"_resetp\"");

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

bool refusedText(const QString &text)
{
    return text.contains(QStringLiteral("550")) || text.contains(QStringLiteral("553"));
}

QString afterLastSlash(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

// The folder of a page path, "/" for a path with no folder.
QString folderOf(const QString &path)
{
    const QString folder = path.left(qMax<qsizetype>(0, path.lastIndexOf(QLatin1Char('/'))));
    return folder.isEmpty() ? QStringLiteral("/") : folder;
}

// Joins two pieces of a path or address with exactly one slash.
QString joined(const QString &left, const QString &right)
{
    QString a = left;
    while (a.endsWith(QLatin1Char('/')))
        a.chop(1);
    QString b = right;
    while (b.startsWith(QLatin1Char('/')))
        b.remove(0, 1);
    return a + QLatin1Char('/') + b;
}

// An id names files here and on the server, so one from a damaged or
// hand-edited index is used only when it can't lead out of the folder: a
// page whose id is unusable is treated as a page without history.
bool usableId(const QString &id)
{
    static const QRegularExpression safe(QStringLiteral("^[A-Za-z0-9_-]+$"));
    return safe.match(id).hasMatch();
}

// The local working files of one operation; none survives it.
class LocalFiles
{
public:
    ~LocalFiles()
    {
        for (const QString &path : m_paths)
            QFile::remove(path);
    }
    QString add(const QString &path)
    {
        m_paths.append(path);
        return path;
    }

private:
    QStringList m_paths;
};

QByteArray ReadFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The date text of a revision: the user's short date and the time to the
// second, so that two saves within a minute can be told apart in the list.
QString nowText()
{
    const QDateTime now = QDateTime::currentDateTime();
    return QLocale::system().toString(now.date(), QLocale::ShortFormat) + QLatin1Char(' ')
           + now.time().toString(QStringLiteral("HH:mm:ss"));
}
} // namespace

CRollback::Viewer CRollback::s_viewer;

void CRollback::SetViewer(Viewer viewer)
{
    s_viewer = std::move(viewer);
}

QString CRollback::HistoryFolder(const SiteRecord &site)
{
    QString folder = site.ftproot + QStringLiteral("/_resetp");
    while (folder.contains(QStringLiteral("//")))
        folder.replace(QStringLiteral("//"), QStringLiteral("/"));
    return folder;
}

QString CRollback::LocalIndexPath()
{
    return LocalFolders::tempFolder() + QLatin1Char('/') + kIndexName;
}

QString CRollback::RevisionName(const QString &strID_p, long nRev_p)
{
    return strID_p + QLatin1Char('.') + QString::number(nRev_p);
}

bool CRollback::CurrentSite(SiteRecord &site_p)
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const long index = MGlobalProjectObjects::lCurrentURL;
    if (index < 0 || index >= static_cast<long>(sites.size()))
        return false;
    site_p = sites[static_cast<size_t>(index)];
    return true;
}

long CRollback::NoSite(const QString &strPosition_p)
{
    MError::SetErrorIfClear(10002, QStringLiteral("No site is in use."), strPosition_p);
    return 0;
}

// The id of a page's first revision: the tick count, as every client of
// the index makes it. An id that another page of the index already holds
// (two pages saved within one tick, or a tick count that came round again)
// is moved on, so that no two pages ever share revision files.
QString CRollback::FreshId() const
{
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
    quint32 id = static_cast<quint32>(ms.count());
    QStringList taken;
    for (const QString &section : m_index.sectionNames())
        taken.append(m_index.value(section, QStringLiteral("ID")));
    while (taken.contains(QString::number(id)))
        ++id;
    return QString::number(id);
}

// ---------------------------------------------------------------- backup

long CRollback::BackupPage(const QString &strURL_p)
{
    const QString position = QStringLiteral("CRollback.BackupPage");
    SiteRecord site;
    if (!CurrentSite(site))
        return NoSite(position);
    const long status = Backup(strURL_p, site);
    if (status == 1 || (status == -1 && MError::ErrorNumber() == 0))
        return status;
    if (status == kWriteRefused || refusedText(MError::ErrorDescription())) {
        // The history can't be written, which must not keep the user from
        // working: he is told once, and the save goes on as the caller decides.
        MError::ClearError();
        MError::SetError(kWriteRefused,
                         L(txtPage) + QLatin1Char(' ') + strURL_p + QLatin1Char(' ') + L(txtBackupRefused),
                         position);
        MError::ShowError();
        return -1;
    }
    MError::SetErrorIfClear(-1, QStringLiteral("The page could not be kept as a revision."), position);
    return 0;
}

// The page is fetched before anything is written, so that a page that isn't
// on the server yet leaves the server exactly as it was.
long CRollback::Backup(const QString &strURL_p, const SiteRecord &site)
{
    LocalFiles files;
    if (GetHistorySize(m_nHistorySize) != 1)
        return 0;
    const QString localPage = files.add(LocalFolders::tempFolder() + QLatin1Char('/') + afterLastSlash(strURL_p));
    {
        CFTPS ftp;
        const long fetched = ftp.SaveFile(strURL_p, localPage);
        if (fetched != 1)
            return fetched;
    }
    CFTPS ftp;
    const long made = HistoryFolderGuard::MakeFolder(ftp, site, HistoryFolder(site));
    if (made != 1)
        return made;
    files.add(LocalIndexPath());
    if (FetchIndex(site) != 1)
        return 0;
    return TakeRevision(strURL_p, localPage, site);
}

long CRollback::TakeRevision(const QString &strPagePath_p, const QString &strLocalPage_p, const SiteRecord &site)
{
    LocalFiles files;
    m_nRevision = 1;
    const long data = GetBackupData(strPagePath_p);
    if (data == 0)
        return 0; // an index that can't be read must not be written over
    if (data == 1)
        m_nRevision = RevisionList::NextRevision(m_index, strPagePath_p, m_nHistorySize);
    else
        m_strID = FreshId();

    const QString revision = files.add(LocalFolders::tempFolder() + QLatin1Char('/') + RevisionName(m_strID, m_nRevision));
    QFile::remove(revision);
    if (!QFile::rename(strLocalPage_p, revision)) {
        MError::SetErrorIfClear(-1, QStringLiteral("The page could not be prepared as a revision: ") + revision,
                                QStringLiteral("CRollback.BackupPage"));
        return 0;
    }
    // A number the index has no date for names no revision yet: the file
    // goes straight under its name. A number that comes round again names
    // the oldest revision, which stays whole until the new one is in place.
    const bool fresh = data != 1 || m_index.value(strPagePath_p, RevisionList::DateKey(m_nRevision)).isEmpty();
    CFTPS ftp;
    // The revision goes up before the index names it: a transfer that breaks
    // in between leaves the index describing the earlier state.
    if (ftp.SendFile(revision, HistoryFolder(site), fresh) != 1)
        return 0;
    m_strDate = nowText();
    const QByteArray kept = HistoryFolderGuard::CheckDue(site, HistoryFolder(site)) ? ReadFile(revision) : QByteArray();
    QFile::remove(revision);
    if (SetBackupData(strPagePath_p) != 1)
        return 0;
    if (ftp.SendFile(LocalIndexPath(), HistoryFolder(site)) != 1)
        return 0;
    // The first revision in a folder the program made shows whether the
    // web server gives the folder out (an empty one shows nothing).
    if (!kept.isEmpty()) {
        const QString name = RevisionName(m_strID, m_nRevision);
        const QString path = joined(HistoryFolder(site), name);
        HistoryFolderGuard::CheckRevision(site, HistoryFolder(site), ViewAddress(site, path, name), kept);
    }
    return 1;
}

// The server's index into the local copy, which is missing when the server
// has none.
long CRollback::FetchIndex(const SiteRecord &site)
{
    const QString local = LocalIndexPath();
    QFile empty(local);
    if (!empty.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        MError::SetErrorIfClear(-1, QStringLiteral("Cannot write ") + local, QStringLiteral("CRollback.FetchIndex"));
        return 0;
    }
    empty.close();
    CFTPS ftp;
    const long status = ftp.SaveFile(joined(HistoryFolder(site), kIndexName), local);
    if (status == -1)
        QFile::remove(local);
    return status == 0 ? 0 : 1;
}

long CRollback::GetHistorySize(long &lSize_p)
{
    CReg reg;
    reg.KeyRoot = CReg::AppKey();
    reg.Subkey = QStringLiteral("Environment");
    if (!reg.KeyExists() && reg.CreateKey(QString()) != 1)
        return 0;
    const qlonglong stored = reg.GetRegistryValue(QStringLiteral("HistorySize"), QVariant()).toLongLong();
    if (stored == 0
        && reg.SetRegistryValue(QStringLiteral("HistorySize"), qlonglong(RevisionList::DefaultHistorySize),
                                CReg::REG_DWORD) != 1)
        return 0;
    lSize_p = RevisionList::EffectiveHistorySize(static_cast<long>(stored));
    return 1;
}

long CRollback::GetBackupData(const QString &strURL_p)
{
    if (!m_index.load(LocalIndexPath())) {
        MError::SetErrorIfClear(-1, QStringLiteral("Cannot read ") + LocalIndexPath(),
                                QStringLiteral("CRollback.GetBackupData"));
        return 0;
    }
    const QString id = m_index.value(strURL_p, QStringLiteral("ID"));
    if (!usableId(id))
        return -1;
    m_strID = id;
    return 1;
}

long CRollback::SetBackupData(const QString &strURL_p)
{
    m_index.setValue(strURL_p, QStringLiteral("ID"), m_strID);
    m_index.setValue(strURL_p, QStringLiteral("rev"), QString::number(m_nRevision));
    m_index.setValue(strURL_p, RevisionList::DateKey(m_nRevision), m_strDate);
    if (m_index.save(LocalIndexPath()))
        return 1;
    MError::SetErrorIfClear(-1, QStringLiteral("Cannot write ") + LocalIndexPath(),
                            QStringLiteral("CRollback.SetBackupData"));
    return -1;
}

// ---------------------------------------------------------------- the list

long CRollback::GetFirstBackup(const QString &strFilePath_p, const QString &strURL_p)
{
    const QString position = QStringLiteral("CRollback.GetFirstBackup");
    m_strFilePath = strFilePath_p;
    m_strURL = strURL_p;
    SiteRecord site;
    if (!CurrentSite(site))
        return NoSite(position);
    LocalFiles files;
    files.add(LocalIndexPath());
    if (FetchIndex(site) != 1) {
        if (refusedText(MError::ErrorDescription())) {
            MError::ClearError();
            MError::SetError(kWriteRefused, L(txtIndexMissingStart) + kQuotedFolder + L(txtIndexMissingEnd), position);
        }
        MError::SetErrorIfClear(-1, QStringLiteral("The page history could not be read."), position);
        return 0;
    }
    ProfileFile index;
    index.load(LocalIndexPath());
    m_strID = index.value(m_strFilePath, QStringLiteral("ID"));
    if (!usableId(m_strID))
        m_strID.clear();
    m_list.Fill(index, m_strFilePath);
    m_nRevision = m_list.CurrentRevision();
    return 1;
}

long CRollback::GetNextBackup(QString &strRetDate_p, long &nRev_p)
{
    return m_list.Next(strRetDate_p, nRev_p) ? 1 : 0;
}

// ---------------------------------------------------------------- restore and view

// The revision's file into strLocalFile_p: 1, 0 with the error pending, or
// -1 when the server doesn't have it.
long CRollback::FetchRevision(long nRevision_p, const QString &strLocalFile_p, const SiteRecord &site)
{
    if (m_strID.isEmpty())
        return -1;
    CFTPS ftp;
    return ftp.SaveFile(joined(HistoryFolder(site), RevisionName(m_strID, nRevision_p)), strLocalFile_p);
}

// A revision the server doesn't have, or won't give or take, is told to the
// user as a missing recovery file; other faults stand as they came.
long CRollback::RevisionFailure(const QString &strPosition_p)
{
    if (MError::ErrorNumber() == 0 || refusedText(MError::ErrorDescription())) {
        MError::ClearError();
        MError::SetError(kWriteRefused, L(txtRevisionMissingStart) + kQuotedFolder + L(txtRevisionMissingEnd),
                         strPosition_p);
    }
    return 0;
}

long CRollback::Rollback(long nRevision_p)
{
    const QString position = QStringLiteral("CRollback.Rollback");
    SiteRecord site;
    if (!CurrentSite(site))
        return NoSite(position);
    // A folder of its own: the file keeps the page's name, which the send
    // uses, and the backup below works on a file of that name in the
    // temporary folder.
    QTemporaryDir work(LocalFolders::tempFolder() + QStringLiteral("/rollback-XXXXXX"));
    LocalFiles files;
    const QString local = files.add(work.path() + QLatin1Char('/') + afterLastSlash(m_strFilePath));
    const QString folder = m_strFilePath.contains(QLatin1Char('/'))
                               ? m_strFilePath.left(m_strFilePath.lastIndexOf(QLatin1Char('/')) + 1)
                               : QStringLiteral("/");
    if (FetchRevision(nRevision_p, local, site) != 1)
        return RevisionFailure(position);
    // The page that stands now is kept as a revision before the old one
    // replaces it, so that a Reset can be taken back. Its own instance, as
    // the backup moves this one's page id and revision on.
    if (CRollback().BackupPage(m_strFilePath) == 0)
        return 0;
    MError::ClearError();
    CFTPS ftp;
    if (ftp.SendFile(local, folder) == 1)
        return 1;
    return RevisionFailure(position);
}

QString CRollback::ViewAddress(const SiteRecord &site, const QString &strPagePath_p, const QString &strName_p)
{
    QString path = joined(folderOf(strPagePath_p), strName_p);
    // The page path may begin with the folder between the login folder and
    // the web root, which the web server doesn't show: it goes from the
    // front of the path, by whole segments. The rest goes into the address
    // escaped, as a browser would write it.
    path = AddressPath::WithoutRoot(path, site.ftproot);
    while (path.contains(QStringLiteral("//")))
        path.replace(QStringLiteral("//"), QStringLiteral("/"));
    return joined(site.baseaddress, AddressPath::Encode(path));
}

long CRollback::ViewBackup(long nRevision_p)
{
    const QString position = QStringLiteral("CRollback.ViewBackup");
    SiteRecord site;
    if (!CurrentSite(site))
        return NoSite(position);
    const QString name = m_strID + (m_strFilePath.right(4) == QStringLiteral(".asp") ? QStringLiteral(".asp")
                                                                                     : QStringLiteral(".html"));
    LocalFiles files;
    const QString local = files.add(LocalFolders::tempFolder() + QLatin1Char('/') + name);
    const QString folder = folderOf(m_strFilePath);
    CFTPS ftp;
    if (FetchRevision(nRevision_p, local, site) != 1 || ftp.SendFile(local, folder) != 1)
        return RevisionFailure(position);
    const qsizetype slash = m_strFilePath.lastIndexOf(QLatin1Char('/'));
    const QString title = slash < 0 ? site.baseaddress + m_strFilePath : site.baseaddress + m_strFilePath.mid(slash);
    if (s_viewer)
        s_viewer(ViewAddress(site, m_strFilePath, name), QStringLiteral("Backup av: ") + title);
    QFile::remove(local);
    // The viewing copy goes whatever became of the local one.
    ftp.RemoveFile(joined(folder, name));
    return 1;
}
