#include "history/HistoryFolderGuard.h"

#include "config/MGlobalProjectObjects.h"
#include "platform/CReg.h"
#include "platform/HttpControl.h"
#include "platform/LocalFolders.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/StringIds.h"
#include "support/UserQuestions.h"
#include "transfer/CFTPS.h"

#include <QFile>
#include <QTemporaryDir>

namespace {
const QString kSection = QStringLiteral("HistoryFolders");
// Where a folder stands: made by the program and not checked yet; given
// out by the web server (the user was told); closed to web visitors.
const QString kCheckDue = QStringLiteral("check");
const QString kOpen = QStringLiteral("open");
const QString kClosed = QStringLiteral("closed");

QString L(long id)
{
    return MResources::LoadResourceString(id);
}
} // namespace

QByteArray HistoryFolderGuard::HtaccessText()
{
    // Apache 2.4 knows "Require"; 2.2 only "Order" and "Deny". Each block
    // is read only by the server it is for, so neither trips the other.
    return "# Revisions of the site's pages: not for web visitors.\n"
           "<IfModule mod_authz_core.c>\n"
           "    Require all denied\n"
           "</IfModule>\n"
           "<IfModule !mod_authz_core.c>\n"
           "    Order allow,deny\n"
           "    Deny from all\n"
           "</IfModule>\n";
}

QByteArray HistoryFolderGuard::WebConfigText()
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<!-- Revisions of the site's pages: not for web visitors. -->\n"
           "<configuration>\n"
           "  <system.webServer>\n"
           "    <security>\n"
           "      <requestFiltering>\n"
           "        <hiddenSegments>\n"
           "          <add segment=\"_resetp\" />\n"
           "        </hiddenSegments>\n"
           "      </requestFiltering>\n"
           "      <authorization>\n"
           "        <remove users=\"*\" roles=\"\" verbs=\"\" />\n"
           "        <add accessType=\"Deny\" users=\"*\" />\n"
           "      </authorization>\n"
           "    </security>\n"
           "  </system.webServer>\n"
           "</configuration>\n";
}

QString HistoryFolderGuard::Key(const SiteRecord &site, const QString &strFolder_p)
{
    return site.baseurl + QLatin1Char('|') + strFolder_p;
}

QString HistoryFolderGuard::State(const SiteRecord &site, const QString &strFolder_p)
{
    return CReg::GetSetting(kSection, Key(site, strFolder_p));
}

void HistoryFolderGuard::SetState(const SiteRecord &site, const QString &strFolder_p, const QString &strState_p)
{
    CReg::SaveSetting(kSection, Key(site, strFolder_p), strState_p);
}

long HistoryFolderGuard::MakeFolder(CFTPS &ftp, const SiteRecord &site, const QString &strFolder_p)
{
    bool made = false;
    const long status = ftp.CreateFolder(QStringLiteral("/"), strFolder_p, &made);
    if (status != 1 || !made)
        return status;
    WriteDenyFiles(ftp, strFolder_p);
    // A folder once found open has been told; made anew, it is not told twice.
    if (State(site, strFolder_p) != kOpen)
        SetState(site, strFolder_p, kCheckDue);
    return 1;
}

// Each file goes up by the safe replace like any other, from a folder of
// its own, as the upload keeps the local file's name.
void HistoryFolderGuard::WriteDenyFiles(CFTPS &ftp, const QString &strFolder_p)
{
    QTemporaryDir work(LocalFolders::tempFolder() + QStringLiteral("/deny-XXXXXX"));
    const QList<QPair<QString, QByteArray>> files = {{QStringLiteral("web.config"), WebConfigText()},
                                                     {QStringLiteral(".htaccess"), HtaccessText()}};
    for (const auto &[name, text] : files) {
        QFile local(work.filePath(name));
        const bool written = local.open(QIODevice::WriteOnly) && local.write(text) == text.size();
        local.close();
        if (!written)
            MError::SetErrorIfClear(75, QStringLiteral("Path/File access error: ") + local.fileName(),
                                    QStringLiteral("HistoryFolderGuard.WriteDenyFiles"));
        if (!written || ftp.SendFile(local.fileName(), strFolder_p) != 1)
            MError::LogError();
    }
}

bool HistoryFolderGuard::CheckDue(const SiteRecord &site, const QString &strFolder_p)
{
    return State(site, strFolder_p) == kCheckDue;
}

void HistoryFolderGuard::CheckRevision(const SiteRecord &site, const QString &strFolder_p,
                                       const QString &strAddress_p, const QByteArray &bytes_p)
{
    if (!CheckDue(site, strFolder_p))
        return;
    HttpControl http;
    MGlobalProjectObjects::ApplyHttpProxy(http);
    http.Timeout = CFTPS::ServerTimeout();
    QByteArray body;
    QObject::connect(&http, &HttpControl::Transfer, [&body](int direction, qint64, const QByteArray &text) {
        if (direction == 1)
            body += text;
    });
    const bool got = http.Get(strAddress_p) == 1;
    const long status = http.StatusCode();
    // A redirect, a server fault or no answer at all tells nothing yet.
    if (got && body == bytes_p) {
        SetState(site, strFolder_p, kOpen);
        Warn(site, strFolder_p, strAddress_p);
    } else if (got || (status >= 400 && status < 500)) {
        SetState(site, strFolder_p, kClosed);
    }
}

void HistoryFolderGuard::Warn(const SiteRecord &site, const QString &strFolder_p, const QString &strAddress_p)
{
    const QString root = site.ftproot.isEmpty() ? QStringLiteral("/") : site.ftproot;
    UserQuestions::MsgBox(L(StringIds::HistoryOpenText).arg(strFolder_p, strAddress_p, root),
                          UserQuestions::vbExclamation, L(StringIds::HistoryOpenTitle));
}
