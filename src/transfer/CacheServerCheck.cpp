#include "transfer/CacheServerCheck.h"

#include "config/MGlobalProjectObjects.h"
#include "platform/CurlErrorMap.h"
#include "platform/HttpControl.h"
#include "platform/LocalFolders.h"
#include "support/ErrorLog.h"
#include "support/MError.h"
#include "transfer/CFTPS.h"
#include "transfer/DIRDATA.h"
#include "transfer/DirListing.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

namespace {
const QString kPosition = QStringLiteral("CFTPS.CheckCacheInOneFolder");

// Waits with the window alive.
void Pause(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

// Failures of one request that cost an attempt, not the test.
bool PassedOver(long number)
{
    return number == ControlError::HttpStatus || number == ControlError::Refused
        || number == ControlError::ProxyNotFound || number == ControlError::HostNotFound
        || number == ControlError::TimedOut;
}
} // namespace

CacheServerCheck::CacheServerCheck(CFTPS &ftp)
    : m_ftp(ftp)
{
}

QByteArray CacheServerCheck::TestPage(const QDateTime &now)
{
    return "<html><head><meta http-equiv=\"pragma\" content=\"no-cache\"><meta http-equiv=\"expires\" "
           "content=\"0\"></head><body><!--kelda"
           + now.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")).toLatin1() + "--></body></html>";
}

// The start folder first, then the folders of the site level by level,
// until one shows the page by its plain address.
long CacheServerCheck::CheckForCacheServers(long lCurrentURL_p)
{
    if (m_ftp.LogonEx(QVariant::fromValue(qlonglong(lCurrentURL_p))) != 1)
        return 0;
    const auto &sites = MGlobalProjectObjects::URLDATA;
    const QString base = sites.at(size_t(lCurrentURL_p)).baseaddress;
    const long first = CheckCacheInOneFolder(m_ftp.Ftp().RemotePath(), base);
    if (first != -1)
        return first;
    // A link that leads back up makes levels without end; the depth ends them.
    DIRDATA level;
    for (long n = 1; n <= DirListing::kDeepestLevel; ++n) {
        if (m_ftp.GetDirLevel(level, n) != 1)
            return MError::ErrorNumber() != 0 ? 0 : -1;
        for (const DIRENTRY &entry : std::as_const(level.Entries)) {
            if (entry.lType != 1)
                continue;
            const QString folder = entry.strPath.endsWith(QLatin1Char('/')) ? entry.strPath + entry.strName
                                                                            : entry.strPath + QLatin1Char('/') + entry.strName;
            const long result = CheckCacheInOneFolder(folder, base);
            if (result != -1)
                return result;
        }
    }
    return -1;
}

long CacheServerCheck::CheckCacheInOneFolder(const QString &strFolder_p, const QString &strCurrentBaseUrl)
{
    const QString local = LocalFolders::tempFolder() + QStringLiteral("/cachefiletest");
    QFile::remove(local);
    const QDateTime now = QDateTime::currentDateTime();
    const QByteArray page = TestPage(now);
    QFile file(local);
    if (!file.open(QIODevice::WriteOnly) || file.write(page) != page.size() || !file.flush()) {
        MError::SetErrorIfClear(75, QStringLiteral("Path/File access error: ") + local, kPosition);
        return 0;
    }
    file.close();
    const QString name = now.toString(QStringLiteral("ddhhmmss")) + QStringLiteral(".html");
    const QString back = m_ftp.Ftp().RemotePath();
    long result = Upload(strFolder_p, name, local);
    if (result == 1) {
        QString address = strCurrentBaseUrl;
        if (!address.endsWith(QLatin1Char('/')))
            address += QLatin1Char('/');
        result = Probe(address + name, page);
    }
    // Whatever came of it, the test file goes, and the session goes back.
    m_ftp.Ftp().DoEvents();
    RemoveTestFile(strFolder_p, name);
    if (!back.isEmpty())
        m_ftp.Ftp().SetRemotePath(back);
    QFile::remove(local);
    return result;
}

long CacheServerCheck::Upload(const QString &folder, const QString &name, const QString &local)
{
    FtpControl &ftp = m_ftp.Ftp();
    if (!ftp.Connected() && m_ftp.Connect() != 1)
        return 0;
    ftp.LocalFile = local;
    ftp.RemoteFile = name;
    const bool ok = m_ftp.Capture(ftp.SetRemotePath(folder)) && m_ftp.Capture(ftp.Upload());
    ftp.DoEvents();
    ftp.LocalFile.clear();
    ftp.RemoteFile.clear();
    if (ok)
        return 1;
    // A folder that can't be entered or written can't show the page.
    if (m_ftp.m_failure.number == ControlError::Protocol && m_ftp.m_failure.description.startsWith(QLatin1String("55"))) {
        ErrorLog::Append(m_ftp.m_failure.number, m_ftp.m_failure.description, kPosition + QLatin1Char(' ') + folder);
        return -1;
    }
    return m_ftp.Fail(kPosition);
}

// Up to 20 addresses with a query no cache has seen; the first that shows
// the page is followed by the plain address, whose answer decides.
long CacheServerCheck::Probe(const QString &address, const QByteArray &page)
{
    HttpControl http;
    MGlobalProjectObjects::ApplyHttpProxy(http);
    http.Timeout = CFTPS::ServerTimeout();
    QByteArray response;
    QObject::connect(&http, &HttpControl::Transfer,
                     [&response](int, qint64, const QByteArray &text) { response.append(text); });
    const auto get = [&](const QString &url) {
        response.clear();
        if (http.Get(url) == 1 || PassedOver(http.ErrorNumber()))
            return true;
        MError::SetErrorIfClear(http.ErrorNumber(), http.ErrorDescription(), kPosition);
        return false;
    };
    for (int n = 0; n < kAttempts; ++n) {
        if (!get(address + QStringLiteral("?000") + QString::number(n)))
            return 0;
        if (response.contains(page)) {
            if (!get(address))
                return 0;
            return response.contains(page) ? 1 : -1;
        }
        Pause(kPauseMs);
    }
    return -1;
}

// After a cancelled or cut upload the connection may be gone: a new one is
// taken for the delete. A file that is not there is no failure here.
void CacheServerCheck::RemoveTestFile(const QString &folder, const QString &name)
{
    FtpControl &ftp = m_ftp.Ftp();
    const bool wasClear = MError::ErrorNumber() == 0;
    if ((ftp.Connected() || m_ftp.Connect() == 1) && ftp.SetRemotePath(folder) == 1)
        ftp.Command(QStringLiteral("DELE ") + name);
    if (wasClear)
        MError::ClearError();
}
