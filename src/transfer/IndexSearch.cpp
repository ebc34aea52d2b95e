#include "transfer/IndexSearch.h"

#include "platform/CurlErrorMap.h"
#include "platform/HttpControl.h"
#include "platform/LocalFolders.h"
#include "support/ErrorLog.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "transfer/DirListing.h"
#include "transfer/DirSort.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>

namespace {
enum Text : long {
    txtSafeToRemove = 15600,
    txtWriteProtected = 15601,
    txtNotConsistent = 15602,
    txtIncorrectUser = 15603,
    txtNoHttpAccess = 15604,
    txtNoSuchFileOnWeb = 15605,
    txtCachedOlder = 15606,
    txtTimeOut = 15607,
    txtHttpAddress = 15608,
    txtNoFtpServer = 15609,
    txtNoImpact = 15610,
    txtNameNotConsistent = 15611,
    txtNameNotConsistentCheck = 15612,
    txtWrongAddresses = 15613,
    txtWrongHttpAddress = 15614,
    txtPageNotFound = 15615,
    txtAccessDenied = 15616,
    txtCouldNotRename = 15617,
    txtInterrupted = 15618,
    txtUnidentified = 15619,
    txtIsWriteProtected = 15620,
    txtIncorrectUsername = 15621,
    txtIncorrectFtpAddress = 15622
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// The search page stands in a page's place for a moment; a proxy or a
// browser must never keep it.
const char kNoCache[] = "<meta http-equiv=\"pragma\" content=\"no-cache\"><meta http-equiv=\"expires\" content=\"0\">";
const QString kMarkStart = QStringLiteral("<!--preID##");
const QString kBackupEnd = QStringLiteral("._p_sec");
const QString kDotStandIn = QStringLiteral("_!#!@");
constexpr int kBackupTail = 16; // "_" + ddhhmmss + "._p_sec"
constexpr int kTestRounds = 100;
constexpr int kSearchRounds = 5;

QString Join(const QString &folder, const QString &name)
{
    if (folder.isEmpty() || folder == QLatin1String("/"))
        return QLatin1Char('/') + name;
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

QString WithSlash(const QString &address)
{
    return address.endsWith(QLatin1Char('/')) ? address : address + QLatin1Char('/');
}

QString Stamp()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("ddHHmmss"));
}
} // namespace

IndexSearch::IndexSearch(CFTPS &ftp) : m_ftp(ftp) {}

IndexSearch::~IndexSearch() = default;

void IndexSearch::Cancel()
{
    if (m_boolRestoring)
        return;
    Ftp().Abort();
    if (m_http)
        m_http->Abort();
}

QString IndexSearch::BackupName(const QString &strName_p, const QString &strStamp_p)
{
    QString name = strName_p;
    return name.replace(QLatin1Char('.'), kDotStandIn) + QLatin1Char('_') + strStamp_p + kBackupEnd;
}

bool IndexSearch::IsBackupName(const QString &strName_p)
{
    return strName_p.endsWith(QStringLiteral("_p_sec")) && strName_p.size() > kBackupTail;
}

QString IndexSearch::NameOfBackup(const QString &strBackup_p)
{
    return strBackup_p.left(strBackup_p.size() - kBackupTail).replace(kDotStandIn, QStringLiteral("."));
}

// Waits without blocking the window: Cancel and repaints come through.
void IndexSearch::Pause(int ms) const
{
    QDeadlineTimer deadline(ms);
    while (!deadline.hasExpired() && !Cancelled())
        QCoreApplication::processEvents(QEventLoop::AllEvents, static_cast<int>(deadline.remainingTime()));
}

// ---------------------------------------------------------------- helpers

// A step that failed for a lost connection (the server gone, or the
// activation's Cancel, which ends the call under way) is run once more on
// a new log-on: a page must go back to its place whatever cut the run.
bool IndexSearch::AgainAfterLoss(const QString &strFolder_p, const std::function<bool()> &step_p)
{
    if (step_p())
        return true;
    const bool lost = !Ftp().Connected() || m_ftp.m_failure.number == ControlError::Aborted || m_ftp.ConnectionLost();
    if (!lost)
        return false;
    const CFTPS::Failure cause = m_ftp.m_failure;
    if (Ftp().Connected())
        Ftp().Logoff();
    const bool wasClear = MError::ErrorNumber() == 0;
    const bool again = m_ftp.Reconnect() && m_ftp.Capture(Ftp().SetRemotePath(strFolder_p)) && step_p();
    if (wasClear && again)
        MError::ClearError();
    if (!again)
        m_ftp.m_failure = cause;
    return again;
}

// Every write goes through the safe replace: a vacant name is written
// straight and removed again when the write fails.
bool IndexSearch::Upload(const QByteArray &bytes_p, const QString &strFolder_p, const QString &strName_p,
                         bool boolFresh_p)
{
    QString work;
    if (!m_ftp.Capture(Ftp().SetRemotePath(strFolder_p))
        || m_ftp.WriteWorkFile(bytes_p, work, QStringLiteral("CFTPS.Upload")) != 1)
        return false;
    const bool wasClear = MError::ErrorNumber() == 0;
    const bool ok = m_ftp.Replace(work, strFolder_p, strName_p, QStringLiteral("CFTPS.Upload"), false, boolFresh_p) == 1;
    if (!ok && wasClear)
        MError::ClearError(); // the caller tells the failure in its own words
    QFile::remove(work);
    return ok;
}

// The page goes back over the search page in one rename where the server
// renames onto a file; elsewhere the search page goes first.
bool IndexSearch::PutBack(const QString &strFolder_p, const QString &strName_p, const QString &strAside_p)
{
    m_boolRestoring = true;
    const bool back = AgainAfterLoss(strFolder_p, [&] {
        if (m_ftp.Rename(strAside_p, strName_p))
            return true;
        if (!m_ftp.m_failure.description.startsWith(QStringLiteral("553")))
            return false;
        const QString gone = strName_p + QStringLiteral("ll");
        return m_ftp.Rename(strName_p, gone) && m_ftp.Capture(Ftp().DeleteFile(gone))
               && m_ftp.Rename(strAside_p, strName_p);
    });
    m_boolRestoring = false;
    return back;
}

// The page steps aside for the test. A rename whose reply never came (a
// Cancel, a lost connection) may have run on the server all the same, so
// the page is put back then too; where it never moved, that finds nothing
// to move.
bool IndexSearch::StepAside(const QString &strFolder_p, const QString &strName_p, const QString &strAside_p)
{
    if (m_ftp.Rename(strName_p, strAside_p))
        return true;
    const CFTPS::Failure cause = m_ftp.m_failure;
    if (cause.number != ControlError::Protocol) {
        const bool wasClear = MError::ErrorNumber() == 0;
        PutBack(strFolder_p, strName_p, strAside_p);
        if (wasClear)
            MError::ClearError();
    }
    m_ftp.m_failure = cause;
    return false;
}

bool IndexSearch::Get(const QString &strURL_p, QByteArray &body_p, bool &boolHttpFailure_p)
{
    HttpControl http;
    http.Timeout = CFTPS::ServerTimeout();
    MGlobalProjectObjects::ApplyHttpProxy(http);
    QObject::connect(&http, &HttpControl::Transfer, &http,
                     [&body_p](int, qint64, const QByteArray &text) { body_p.append(text); });
    body_p.clear();
    m_http = &http;
    const bool ok = http.Get(strURL_p) == 1;
    m_http = nullptr;
    boolHttpFailure_p = !ok;
    if (!ok)
        m_ftp.m_failure = {http.ErrorNumber(), http.ErrorDescription()};
    return ok;
}

// ---------------------------------------------------------------- SendTest

long IndexSearch::SendTest(long lURLDATAIndex_p)
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    if (lURLDATAIndex_p < 0 || lURLDATAIndex_p >= static_cast<long>(sites.size()))
        return 0;
    const SiteRecord site = sites[static_cast<size_t>(lURLDATAIndex_p)];
    if (Ftp().Connected())
        Ftp().Logoff();
    if (m_ftp.LogonRecord(lURLDATAIndex_p, QStringLiteral("CFTPS.SendTest")) != 1) {
        MError::ClearError();
        return SendTestFailure(false);
    }
    QString folder, aside;
    int step = 0;
    const long result = SendTestSteps(site, folder, aside, step);
    const bool http = step >= 8;
    const CFTPS::Failure cause = m_ftp.m_failure;
    if (!aside.isEmpty() && !PutBack(folder, site.indexfile, aside) && result != 0 && result >= -1)
        return SendTestFailure(false);
    m_ftp.m_failure = cause;
    if (result == 0)
        return SendTestFailure(http);
    return result;
}

// Steps 3 to 10: the index file steps aside, the test page takes its name,
// and the site must give it both by the file's name and by its bare
// address. strAside gets the name of the real file while it is away.
long IndexSearch::SendTestSteps(const SiteRecord &site, QString &strFolder, QString &strAside, int &step)
{
    step = 3;
    const QString login = Ftp().RemotePath();
    QString root = site.ftproot;
    if (root.isEmpty() || root == QLatin1String("/") || root == login)
        root = login;
    if (!site.remotefolder.isEmpty() && site.useremotef == QLatin1String("1"))
        root = site.remotefolder + root;
    step = 4;
    if (!m_ftp.Capture(Ftp().SetRemotePath(root)))
        return 0;
    strFolder = Ftp().RemotePath();
    step = 6;
    const QString aside = Stamp() + QStringLiteral(".mid");
    if (!StepAside(strFolder, site.indexfile, aside))
        return 0;
    strAside = aside;
    step = 7;
    const QByteArray page = QByteArrayLiteral("<html><head>") + kNoCache + "</head><body><!--kelda"
                            + QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toLatin1()
                            + "--></body></html>";
    if (!Upload(page, strFolder, site.indexfile, true))
        return 0;
    step = 8;
    return WaitForTestPage(site, page);
}

// Step 9 asks for the file by its name until it shows (a cache on the way
// may hold the old one for a while), step 10 for the bare address.
long IndexSearch::WaitForTestPage(const SiteRecord &site, const QByteArray &page)
{
    const bool proxy = MGlobalProjectObjects::Proxy.use;
    const QString file = WithSlash(site.baseaddress) + site.indexfile;
    QByteArray body;
    bool httpFailure = false;
    bool seen = false;
    for (int round = 0; round < kTestRounds && !seen && !Cancelled(); ++round) {
        const QString url = proxy ? file + QStringLiteral("?000") + QString::number(round) : file;
        if (!Get(url, body, httpFailure))
            return 0;
        seen = body.contains(page);
        if (!seen)
            Pause(100);
    }
    if (Cancelled())
        return CFTPS::ExpectedFailure;
    QString bare = site.baseaddress;
    if (proxy)
        bare += bare.endsWith(QLatin1Char('/')) ? QStringLiteral("?") : QStringLiteral("/?");
    if (!Get(bare, body, httpFailure))
        return 0;
    if (body.contains(page))
        return 1;
    const long code = seen ? -20999 : -30999;
    MError::SetErrorIfClear(code, L(seen ? txtNotConsistent : txtNoImpact), QStringLiteral("CFTPS.SendTest"));
    return code;
}

// The failure of a step in the user's words, by the control's number and
// the server's reply.
long IndexSearch::SendTestFailure(bool boolHttp_p)
{
    const long number = m_ftp.m_failure.number;
    const QString text = m_ftp.m_failure.description;
    long code = 0;
    QString message = text;
    if (number == ControlError::Protocol && !boolHttp_p) {
        const bool denied = text.contains(QStringLiteral("denied"), Qt::CaseInsensitive);
        const bool refused = denied || text.startsWith(QStringLiteral("550"));
        code = refused ? -20550 : -20142;
        message = L(denied ? txtWriteProtected : refused ? txtNotConsistent : txtIncorrectUser);
        if (text.startsWith(QStringLiteral("530")))
            message = L(txtIncorrectUser);
    } else if (number == ControlError::HttpStatus) {
        code = -20152;
        message = text.startsWith(QStringLiteral("401")) ? L(txtNoHttpAccess)
                  : text.startsWith(QStringLiteral("404")) ? L(txtNoSuchFileOnWeb)
                  : text.startsWith(QStringLiteral("302")) ? L(txtCachedOlder)
                                                           : text;
    } else {
        struct Row { long number; long text; };
        const Row rows[] = {{ControlError::Refused, txtTimeOut},        {ControlError::ProxyNotFound, txtHttpAddress},
                            {ControlError::HostNotFound, txtNoFtpServer}, {ControlError::LoginRefused, txtIncorrectUsername},
                            {ControlError::NetworkDown, txtIncorrectFtpAddress}};
        for (const Row &row : rows)
            if (row.number == number) {
                code = -number;
                message = L(row.text);
            }
    }
    MError::SetErrorIfClear(code ? code : number, message, QStringLiteral("CFTPS.SendTest"));
    if (code == 0)
        ErrorLog::Append(number, text, QStringLiteral("CFTPS.SendTest"));
    return code;
}

// ---------------------------------------------------------------- search

long IndexSearch::GetIndexFile(QString &strIndex_p, QString &strRoot_p, QString &strRemoteFolder_p)
{
    int step = 1;
    // A session the activation has just opened on the record is used as it
    // stands: the listing starts from the login folder all the same.
    const bool onRecord = Ftp().Connected() && !m_ftp.m_boolInitSession
                          && m_ftp.m_lRecord == MGlobalProjectObjects::lCurrentURL;
    if (!onRecord && m_ftp.Logon() != 1)
        return IndexFileFailure(step, false);
    Ftp().RemoteFile.clear();
    m_strTag = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss"))
               + QString::number(QDateTime::currentMSecsSinceEpoch() % 100000000);
    DIRDATA buffer;
    for (long level = 1; level <= DirListing::kDeepestLevel; ++level) {
        step = 4;
        if (Cancelled())
            return -3;
        const long listed = m_ftp.GetDirLevel(buffer, level);
        if (listed == 0 && MError::ErrorNumber() != 0)
            return IndexFileFailure(step, false);
        for (const DIRENTRY &entry : buffer.Entries)
            if (IsBackupName(entry.strName)) {
                m_kept = buffer;
                return -2;
            }
        DirSort::SortDIR(buffer);
        long status = 0;
        const long found = GetServerData(buffer, level, status);
        if (found == 1) {
            ResultOfSearch(buffer.Entries.at(m_lFoundEntry), strIndex_p, strRoot_p, strRemoteFolder_p);
            return 1;
        }
        if (found == -3 || found == 0)
            return found;
        if (listed < 1)
            break;
    }
    return -1;
}

void IndexSearch::ResultOfSearch(const DIRENTRY &entry, QString &strIndex_p, QString &strRoot_p,
                                 QString &strRemoteFolder_p) const
{
    const SiteRecord site = m_ftp.Record();
    QString start = m_ftp.LoginFolderMark().mid(1);
    if (start == QLatin1String("/"))
        start.clear();
    strIndex_p = entry.strName;
    if (site.useremotef == QLatin1String("1") && start.isEmpty())
        strRemoteFolder_p = site.remotefolder;
    else
        strRemoteFolder_p = site.remotefolder.isEmpty() ? start : QString();
    strRoot_p = entry.strPath;
    if (!strRemoteFolder_p.isEmpty() && strRoot_p.startsWith(strRemoteFolder_p))
        strRoot_p = strRoot_p.mid(strRemoteFolder_p.size());
    if (strRoot_p.isEmpty())
        strRoot_p = QStringLiteral("/");
}

long IndexSearch::IndexFileFailure(int step, bool boolHttp_p)
{
    const long number = m_ftp.m_failure.number;
    const QString &text = m_ftp.m_failure.description;
    const QString position = QStringLiteral("CFTPS.GetIndexFile{line: %1}").arg(step);
    long code = number;
    QString message = text;
    if (number == ControlError::Protocol || number == ControlError::LoginRefused) {
        code = -20142;
        message = boolHttp_p ? L(txtNameNotConsistentCheck)
                  : text.startsWith(QStringLiteral("550")) ? L(txtNameNotConsistent)
                                                            : L(txtIncorrectUser);
    } else if (number == 20103 || number == ControlError::HttpStatus) {
        code = -20152;
        message = L(txtWrongAddresses);
    } else if (number == ControlError::ProxyNotFound) {
        code = -26005;
        message = L(txtWrongHttpAddress);
    } else if (number == ControlError::HostNotFound || number == ControlError::NoConnection
               || number == ControlError::Refused) {
        code = -26002;
        message = L(txtNoFtpServer);
    }
    if (MError::ErrorNumber() == 0 || code != number)
        MError::SetError(code, message, position);
    return 0;
}

// The files of one level, most likely first. Each folder is tested for
// writing once, before its first page, and only where a page of this level
// lies: a folder that can't be written is never touched.
long IndexSearch::GetServerData(DIRDATA &buffer, long lLevel, long &lStatus)
{
    lStatus = -1;
    m_lFoundEntry = -1;
    for (long i = 0; i < buffer.Entries.size(); ++i) {
        if (Cancelled())
            return lStatus = -3;
        const DIRENTRY &entry = buffer.Entries.at(i);
        if (!entry.bPage || entry.lLevel != lLevel || entry.lType != 0)
            continue;
        if (entry.lState == 0)
            MarkFolder(buffer, entry.strPath, CheckFolderPermissions(entry.strPath));
        if (buffer.Entries.at(i).lState != 1)
            continue;
        const long tried = TryEntry(buffer, i);
        if (tried != -1)
            return lStatus = tried;
    }
    return lStatus;
}

void IndexSearch::MarkFolder(DIRDATA &buffer, const QString &strPath_p, long lState_p)
{
    for (DIRENTRY &other : buffer.Entries)
        if (other.strPath == strPath_p && other.lType == 0)
            other.lState = lState_p;
}

// One file: aside, the search page in its place, the site asked for, the
// file back. 1 found (m_lFoundEntry says which), -1 not this one, -3
// cancelled, 0 a failure that ends the search.
long IndexSearch::TryEntry(const DIRDATA &buffer, long lEntry)
{
    const DIRENTRY &entry = buffer.Entries.at(lEntry);
    const QString folder = entry.strPath.isEmpty() ? Ftp().RemotePath() : entry.strPath;
    if (!m_ftp.Capture(Ftp().SetRemotePath(folder)))
        return ServerDataFailure(entry.strName, false);
    const QString aside = BackupName(entry.strName, Stamp());
    if (!StepAside(folder, entry.strName, aside))
        return Cancelled() ? -3 : ServerDataFailure(entry.strName, false);
    const QByteArray page = QByteArrayLiteral("<html><head><meta http-equiv=Content-Type content=\"text/html; "
                                              "charset=iso-8859-1\">")
                            + kNoCache + "</head><body>" + kMarkStart.toLatin1() + m_strTag.toLatin1()
                            + QString::number(lEntry).rightJustified(5, QLatin1Char('0')).toLatin1() + "--><!--"
                            + aside.toLatin1() + "--></body></html>";
    Found found = Found::Stop;
    bool httpFailure = false;
    if (Upload(page, folder, entry.strName, true) && !Cancelled())
        found = FetchMark(WithSlash(m_ftp.HTTPURL()));
    httpFailure = found == Found::Stop && m_ftp.m_failure.number == ControlError::HttpStatus;
    const CFTPS::Failure cause = m_ftp.m_failure;
    if (!PutBack(folder, entry.strName, aside))
        return ServerDataFailure(entry.strName, false);
    m_ftp.m_failure = cause;
    if (Cancelled())
        return -3;
    if (found == Found::Yes)
        return 1;
    return found == Found::Stop ? ServerDataFailure(entry.strName, httpFailure) : -1;
}

// Up to five requests for the site; a hit names its entry by number, so a
// server that gives another page of this same search still names the file.
IndexSearch::Found IndexSearch::FetchMark(const QString &strURL_p)
{
    const QByteArray mark = (kMarkStart + m_strTag).toLatin1();
    for (int round = 0; round < kSearchRounds && !Cancelled(); ++round) {
        QByteArray body;
        bool httpFailure = false;
        if (!Get(strURL_p, body, httpFailure)) {
            const QString &status = m_ftp.m_failure.description;
            const bool elsewhere = status.startsWith(QStringLiteral("302")) || status.startsWith(QStringLiteral("403"));
            return elsewhere && m_ftp.m_failure.number == ControlError::HttpStatus ? Found::Next : Found::Stop;
        }
        const qsizetype at = body.indexOf(mark);
        if (at >= 0) {
            m_lFoundEntry = body.mid(at + mark.size(), 5).toLong();
            return Found::Yes;
        }
        Pause(10);
    }
    return Found::No;
}

long IndexSearch::ServerDataFailure(const QString &strName_p, bool boolHttp_p)
{
    const long number = m_ftp.m_failure.number;
    const QString &text = m_ftp.m_failure.description;
    const QString position = QStringLiteral("CFTPS.GetServerData");
    if (!boolHttp_p && number == ControlError::Protocol && text.startsWith(QStringLiteral("550 "))) {
        // A page the account may not rename is left as it is; the search
        // goes on with the next one.
        ErrorLog::Append(number, L(txtAccessDenied) + strName_p + L(txtIsWriteProtected), position);
        return -1;
    }
    QString message;
    if (boolHttp_p && text.startsWith(QStringLiteral("404")))
        message = L(txtPageNotFound);
    else if (boolHttp_p)
        message = text;
    else if (text.contains(QStringLiteral("rename")))
        message = L(txtCouldNotRename);
    else if (number == ControlError::DataConnection || number == ControlError::NoConnection
             || number == ControlError::Refused || !Ftp().Connected())
        message = L(txtInterrupted);
    else
        message = L(txtUnidentified) + text + QLatin1Char(')');
    MError::SetErrorIfClear(boolHttp_p ? -20152 : -number, message, position);
    return 0;
}

// ---------------------------------------------------------------- leftovers

long IndexSearch::RestoreIndex()
{
    for (const DIRENTRY &entry : m_kept.Entries) {
        if (!IsBackupName(entry.strName))
            continue;
        const QString folder = entry.strPath.isEmpty() ? QStringLiteral("/") : entry.strPath;
        if (!Ftp().Connected() && !m_ftp.Reconnect())
            return 0;
        const bool ok = m_ftp.Capture(Ftp().SetRemotePath(folder)) && PutBack(folder, NameOfBackup(entry.strName), entry.strName);
        m_kept.Clear();
        return ok ? 1 : m_ftp.Fail(QStringLiteral("CFTPS.RestoreIndex"));
    }
    return 1;
}

// ---------------------------------------------------------------- folders

long IndexSearch::CheckFolderPermissions(const QString &strPath_p)
{
    const QString folder = strPath_p.isEmpty() ? QStringLiteral("/") : strPath_p;
    const QString first = QStringLiteral("safe_to_remove.txt");
    const QString second = QStringLiteral("safe_to_remove2.txt");
    if (!Upload(L(txtSafeToRemove).toUtf8(), folder, first, true))
        return -1;
    m_boolRestoring = true;
    const auto remove = [&](const QString &name) {
        return AgainAfterLoss(folder, [&] { return m_ftp.Capture(Ftp().DeleteFile(name)); });
    };
    const bool ok = AgainAfterLoss(folder, [&] { return m_ftp.Rename(first, second); }) && remove(second);
    // Whatever cut the test, its file does not stay behind.
    if (!ok && !remove(first))
        remove(second);
    m_boolRestoring = false;
    return ok ? 1 : -1;
}

// ---------------------------------------------------------------- one folder

// The file that a folder's address gives: each page of the folder gets a
// numbered mark in front of its content for a moment and goes back by its
// content afterwards.
long IndexSearch::GetSpecificIndexFile(const QString &strPath_p, QString &strIndex_p)
{
    const SiteRecord site = m_ftp.Record();
    if (!Ftp().Connected() && !m_ftp.Reconnect())
        return 0;
    QString path = strPath_p;
    if (!site.ftproot.isEmpty() && path.startsWith(site.ftproot))
        path = path.mid(site.ftproot.size());
    while (path.endsWith(QLatin1Char('/')))
        path.chop(1);
    path = CFTPS::RemoveTildePart(path);
    QString folder = site.ftproot + path;
    if (site.useremotef == QLatin1String("1"))
        folder = CFTPS::TrimSlashes(site.remotefolder) + QLatin1Char('/') + CFTPS::TrimSlashes(site.ftproot + path);
    if (!folder.startsWith(QLatin1Char('/')))
        folder.prepend(QLatin1Char('/'));
    QStringList names;
    if (!m_ftp.Capture(Ftp().SetRemotePath(folder)) || !m_ftp.ListFileNames(names))
        return m_ftp.Fail(QStringLiteral("CFTPS.GetSpecificIndexFile"));
    const QString address = WithSlash(site.baseaddress) + CFTPS::TrimSlashes(strPath_p.mid(site.ftproot.size()));
    for (const QString &name : names) {
        DIRENTRY entry;
        entry.strName = name;
        entry.strPath = folder;
        const QString lower = name.toLower();
        if (!(lower.endsWith(QStringLiteral(".htm")) || lower.endsWith(QStringLiteral(".html"))
              || lower.endsWith(QStringLiteral(".asp")) || lower.endsWith(QStringLiteral(".shtml"))))
            continue;
        if (MarkedCopyFound(entry, WithSlash(address))) {
            strIndex_p = name;
            return 1;
        }
    }
    return -1;
}

bool IndexSearch::MarkedCopyFound(const DIRENTRY &entry, const QString &strAddress_p)
{
    const QString work = CFTPS::WorkFileName();
    Ftp().LocalFile = work;
    Ftp().RemoteFile = entry.strName;
    Ftp().Overwrite = true;
    const bool fetched = m_ftp.Capture(Ftp().SetRemotePath(entry.strPath)) && m_ftp.Capture(Ftp().Download());
    Ftp().LocalFile.clear();
    QFile local(work);
    const QByteArray original = fetched && local.open(QIODevice::ReadOnly) ? local.readAll() : QByteArray();
    local.remove();
    if (!fetched)
        return false;
    m_strTag = QString::number(QDateTime::currentMSecsSinceEpoch() % 100000000);
    const QByteArray mark = (kMarkStart + m_strTag + QStringLiteral("00000-->")).toLatin1();
    if (!Upload(mark + original, entry.strPath, entry.strName, false))
        return false;
    QByteArray body;
    bool httpFailure = false;
    const bool seen = Get(strAddress_p, body, httpFailure) && body.contains(mark);
    Upload(original, entry.strPath, entry.strName, false);
    return seen;
}

// ---------------------------------------------------------------- empty site

long IndexSearch::ListAllLevels(DIRDATA &all)
{
    DIRDATA level;
    for (long n = 1; n <= DirListing::kDeepestLevel; ++n) {
        if (m_ftp.GetDirLevel(level, n) != 1)
            break;
        DirSort::SortDIR(level);
        all.Entries += level.Entries;
    }
    DIRENTRY root;
    root.strName = QStringLiteral("/");
    root.lType = 1;
    all.Entries.prepend(root);
    return 1;
}

bool IndexSearch::ProbeFolder(const QString &strFolder_p, const QString &strBase_p)
{
    const QString probe = QStringLiteral("shalala.htm");
    if (!Upload(QByteArrayLiteral("shalala"), strFolder_p, probe, true))
        return false;
    QByteArray body;
    bool httpFailure = false;
    // A 404 is the usual answer: this was not the folder.
    const bool seen = Get(strBase_p + probe, body, httpFailure) && body.startsWith("shalala");
    m_ftp.Capture(Ftp().DeleteFile(probe));
    return seen;
}

// The first page of the folder the web server serves. A page of that name
// that stands there already is the site's own and is never written over.
bool IndexSearch::WriteFirstPage(const QString &strFolder_p)
{
    const QString name = QStringLiteral("index.htm");
    QStringList names;
    if (!m_ftp.Capture(Ftp().SetRemotePath(strFolder_p)) || !m_ftp.ListFileNames(names))
        return false;
    if (names.contains(name))
        return true;
    QString host = m_ftp.Record().baseaddress;
    host = host.mid(host.indexOf(QStringLiteral("//")) + 2);
    const QByteArray page = "<HTML><HEAD></HEAD><BODY bgColor=#5f5f5f><FONT color=#c0c0c0 size=7 face=arial>"
                            "<STRONG><EM><P align=center>Welcome to "
                            + host.toUtf8() + "</P></EM></STRONG></FONT></BODY></HTML>";
    return Upload(page, strFolder_p, name, true);
}

long IndexSearch::CreateIndexFile(QString &strIndexFile_p, QString &strFTPRoot_p)
{
    if (m_ftp.Logon() != 1)
        return 0;
    DIRDATA all;
    ListAllLevels(all);
    const QString base = WithSlash(m_ftp.Record().baseaddress);
    for (const DIRENTRY &entry : all.Entries) {
        if (entry.lType == 0 || Cancelled())
            continue;
        const QString folder = entry.strName == QLatin1String("/") ? m_ftp.LoginFolderMark().mid(1)
                                                                   : Join(entry.strPath, entry.strName);
        if (!ProbeFolder(folder, base))
            continue;
        if (!WriteFirstPage(folder))
            return m_ftp.Fail(QStringLiteral("CFTPS.CreateIndexFile"));
        strIndexFile_p = QStringLiteral("index.htm");
        strFTPRoot_p = folder;
        return 1;
    }
    return -1;
}
