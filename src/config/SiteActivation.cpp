#include "config/SiteActivation.h"

#include "platform/CurlErrorMap.h"
#include "platform/HttpControl.h"
#include "platform/LocalFolders.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"
#include "transfer/FtpAddress.h"

#include <QFile>
#include <QUrl>

namespace {
enum Text : long {
    txtHttpIncorrect = 14605,
    txtCannotConnect = 14606,
    txtIncorrectLogon = 14607,
    txtNoRoute = 14608,
    txtNoIndexFile = 14609,
    txtResume = 14610,
    txtTimeOut = 14611,
    txtFtpIncorrect = 14612,
    txtNoResponse = 14613,
    txtNoStartFolderName = 14615,
    txtStartFolderNamed = 14616,
    txtNeedRemotePath = 14617,
    txtCheckAddress = 14626,
    txtAborted = 14628,
    txtStartFolderMissing = 14629,
    txtNoAdminRights = 14630,
    txtDoubleSlash = 14631,
    txtConnecting = 14632,
    txtCheckingRights = 14633,
    txtSearching = 14634,
    txtTesting = 14635,
    txtCheckingHttp = 14636
};

// Codes of the steps' own refusals, translated by the trap of the run.
constexpr long errFtpAddressDot = 26003;
constexpr long errRemoteFolder = 21042;
constexpr long errDoubleSlash = -21042;
constexpr long errShown = -26003;

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

const QString kPosition = QStringLiteral("frmActivateHow.cmdAutoActivate_Click");
} // namespace

SiteActivation::SiteActivation(long lIndex_p) : m_lIndex(lIndex_p) {}

SiteRecord &SiteActivation::Record()
{
    return MGlobalProjectObjects::URLDATA[static_cast<size_t>(m_lIndex)];
}

void SiteActivation::Progress(long id, const QString &detail)
{
    if (onProgress)
        onProgress(L(id) + detail);
}

long SiteActivation::Manual(long lIndex_p)
{
    MGlobalProjectObjects::URLDATA[static_cast<size_t>(lIndex_p)].isactive = QStringLiteral("1");
    return 1;
}

void SiteActivation::Cancel()
{
    m_CFTPS.CancelActivation();
}

QString SiteActivation::NormalisedAddress(const QString &strAddress_p, const QString &strScheme_p)
{
    QString address = strAddress_p.trimmed();
    const qsizetype schemeEnd = address.indexOf(QStringLiteral("://"));
    if (schemeEnd < 0)
        address.prepend(strScheme_p + QStringLiteral("://"));
    const qsizetype hostStart = address.indexOf(QStringLiteral("://")) + 3;
    qsizetype hostEnd = address.indexOf(QLatin1Char('/'), hostStart);
    if (hostEnd < 0)
        hostEnd = address.size();
    return address.left(hostEnd).toLower() + address.mid(hostEnd);
}

// Whatever happens, the record is inactive unless the run proved it.
long SiteActivation::Run()
{
    CFTPS::g_boolCancelActivation = false;
    long result = Failed;
    int step = 0;
    do {
        m_boolAgain = false;
        m_boolStop = false;
        result = Steps(step);
    } while (m_boolAgain && !CFTPS::g_boolCancelActivation);
    QFile::remove(LocalFolders::tempFolder() + QStringLiteral("/t.tmp"));
    m_CFTPS.CloseDown();
    if (result == Activated)
        Record().isactive = QStringLiteral("1");
    else
        Record().isactive = QStringLiteral("0");
    if (result == Cancelled || (CFTPS::g_boolCancelActivation && result == Failed)) {
        MError::ClearError();
        UserQuestions::MsgBox(L(txtAborted), UserQuestions::vbOKOnly | UserQuestions::vbInformation);
        return Cancelled;
    }
    return result == Failed ? Translate(step) : result;
}

// Each step ends at once on a Cancel; the next one does not begin.
long SiteActivation::Steps(int &step)
{
    SiteRecord &site = Record();
    const auto cancelled = [] { return CFTPS::g_boolCancelActivation; };
    step = 2;
    if (Prepare(site) != 1 || cancelled())
        return Failed;
    step = 10;
    if (LogOn(site) != 1 || cancelled())
        return Failed;
    step = 11;
    Progress(txtCheckingRights);
    const QString folder = site.useremotef == QLatin1String("1") ? site.remotefolder : QStringLiteral("/");
    if (CheckFTP_Rights(folder) != 1 || cancelled())
        return Failed;
    step = 12;
    // The search has proved the pair by itself; a file the user named is
    // proved by the test.
    if (site.usesubindex != QLatin1String("0"))
        return SearchIndex(site);
    step = 14;
    Progress(txtTesting);
    return m_CFTPS.SendTest(m_lIndex) == 1 ? Activated : Failed;
}

// Steps 2 to 9: the fields the search fills are emptied, the addresses
// normalised and checked before any connection to the FTP server.
long SiteActivation::Prepare(SiteRecord &site)
{
    if (site.usesubindex != QLatin1String("0")) {
        site.indexfile.clear();
        site.ftproot.clear();
    }
    site.subindex = {QString()};
    site.baseaddress = NormalisedAddress(site.baseaddress, QStringLiteral("http"));
    QString ftp = NormalisedAddress(site.baseurl, QStringLiteral("ftp"));
    if (ftp.endsWith(QLatin1Char('/')))
        ftp.chop(1);
    site.baseurl = ftp;
    bool valid = false;
    Progress(txtCheckingHttp);
    if (IsValidUrl(site.baseaddress, valid) != 1 || !valid)
        return Failed;
    if (QUrl(ftp).host().endsWith(QLatin1Char('.')) || ftp.endsWith(QLatin1Char('.'))) {
        MError::SetErrorIfClear(errFtpAddressDot, QString(), kPosition);
        return Failed;
    }
    QString remote = site.remotefolder.trimmed();
    if (site.useremotef != QLatin1String("1") || remote.isEmpty() || remote == QLatin1String("/")) {
        remote.clear();
        site.useremotef = QStringLiteral("0");
    } else {
        remote = (remote.startsWith(QLatin1Char('/')) ? remote : QLatin1Char('/') + remote);
        remote += remote.endsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/");
        if (remote.contains(QStringLiteral("//"))) {
            MError::SetErrorIfClear(errDoubleSlash, QString(), kPosition);
            return Failed;
        }
    }
    site.remotefolder = remote;
    return 1;
}

// Step 10. The log-on goes by the record, so that a certificate trusted
// for the site (or trusted now, at the question) is the one checked.
long SiteActivation::LogOn(SiteRecord &site)
{
    Progress(txtConnecting);
    const QVariant index = QVariant::fromValue<qlonglong>(m_lIndex);
    // A protected connection logs on by the record first: a certificate
    // the system does not vouch for is shown there, and once trusted its
    // key is what the test of the transfer mode checks too.
    if (FtpAddress::Parse(site.baseurl, true).security != FtpAddress::Plain && m_CFTPS.LogonEx(index) != 1)
        return Failed;
    if (site.automode == QLatin1String("1")) {
        site.passivemode = true;
        bool passive = true;
        const long status = m_CFTPS.CanUsePassiveMode(m_lIndex, passive);
        if (status != 1) {
            if (status == -26002 || status == -20142 || status == -25066)
                MError::SetErrorIfClear(status, status == -26002 ? L(txtCannotConnect)
                                                : status == -20142 ? L(txtIncorrectLogon) : L(txtNoRoute),
                                        kPosition);
            return Failed;
        }
        if (CFTPS::g_boolCancelActivation)
            return Failed;
        Record().passivemode = passive;
    }
    return m_CFTPS.LogonEx(index);
}

// Step 12: the index search, with the resume of a search that was cut.
long SiteActivation::SearchIndex(SiteRecord &site)
{
    Progress(txtSearching);
    QString index, root, folder;
    const long found = m_CFTPS.GetIndexFile(index, root, folder);
    if (found == 1) {
        SiteRecord &record = Record();
        record.indexfile = index;
        record.ftproot = root;
        if (!folder.isEmpty()) {
            record.remotefolder = folder;
            record.useremotef = QStringLiteral("1");
        }
        m_boolChanged = true;
        return Activated;
    }
    if (found == -1) {
        UserQuestions::MsgBox(L(txtNoIndexFile), UserQuestions::vbOKOnly | UserQuestions::vbExclamation);
        return NotFound;
    }
    if (found == -2) {
        const long answer = UserQuestions::MsgBox(L(txtResume), UserQuestions::vbYesNoCancel | UserQuestions::vbQuestion);
        if (answer == UserQuestions::vbNo)
            return Ended;
        if (m_CFTPS.RestoreIndex() != 1)
            return Failed;
        m_boolAgain = answer == UserQuestions::vbYes;
        return Ended;
    }
    (void)site;
    return found == -3 ? Cancelled : Failed;
}

long SiteActivation::IsValidUrl(const QString &strURL, bool &bValid)
{
    bValid = false;
    HttpControl http;
    http.Timeout = CFTPS::ServerTimeout();
    MGlobalProjectObjects::ApplyHttpProxy(http);
    const QString url = strURL.endsWith(QLatin1Char('/')) ? strURL : strURL + QLatin1Char('/');
    if (http.Get(url) != 1) {
        // Whatever the web server or the network said, it is the HTTP
        // address the user has to look at.
        MError::SetErrorIfClear(-26005, http.ErrorDescription(), kPosition);
        return 0;
    }
    bValid = true;
    return 1;
}

// Everything the program will do on the server, tried once on a file and
// a folder of no use to anybody, which go again at once.
long SiteActivation::CheckFTP_Rights(const QString &strFolder)
{
    const QString position = QStringLiteral("frmActivateHow.CheckFTP_Rights");
    const QString local = LocalFolders::tempFolder() + QStringLiteral("/safe_to_remove.txt");
    QFile file(local);
    if (!file.open(QIODevice::WriteOnly)) {
        MError::SetErrorIfClear(75, QStringLiteral("Path/File access error: ") + local, position);
        return 0;
    }
    file.close();
    QStringList folders;
    m_CFTPS.GetSubFolders(QStringLiteral("/"), folders);
    MError::ClearError(); // a root without folders is no fault
    const bool ok = m_CFTPS.SendFile(local, QString(), true) == 1
                    && m_CFTPS.RenameFile(QStringLiteral("safe_to_remove.txt"), QStringLiteral("safe_to_remove_.txt")) == 1
                    && m_CFTPS.RemoveFile(QStringLiteral("safe_to_remove_.txt")) == 1
                    && m_CFTPS.CreateFolder(QStringLiteral("/"), QStringLiteral("_safe_to_remove")) == 1
                    && m_CFTPS.RemoveDir(QStringLiteral("_safe_to_remove")) == 1;
    QFile::remove(local);
    (void)strFolder; // the session already stands in the start folder
    if (ok)
        return 1;
    MError::SetError(errRemoteFolder, MError::ErrorDescription(), position);
    return 0;
}

// The trap of the run: the pending error in words the user can act on.
long SiteActivation::Translate(int step)
{
    const SiteRecord &site = Record();
    const long number = MError::ErrorNumber();
    const QString ftp = site.baseurl;
    QString message;
    if (number == ControlError::DataConnection)
        message = L(txtTimeOut);
    else if (number == 26002 || number == 26005 || number == -26005)
        message = L(txtHttpIncorrect) + site.baseaddress + L(txtCheckAddress);
    else if (number == errFtpAddressDot)
        message = L(txtFtpIncorrect) + ftp + L(txtCheckAddress);
    else if (number == ControlError::NoConnection || number == -25066 || number == ControlError::Refused
             || number == -25061)
        message = L(txtNoResponse) + ftp + QStringLiteral(").");
    else if (number == errRemoteFolder && site.useremotef == QLatin1String("1"))
        message = site.remotefolder.isEmpty() ? L(txtNoStartFolderName)
                                              : L(txtStartFolderNamed) + QLatin1Char(' ') + site.remotefolder
                                                    + QLatin1Char(' ') + L(txtStartFolderMissing);
    else if (number == errRemoteFolder)
        message = L(txtNeedRemotePath) + ftp + L(txtNoAdminRights);
    else if (number == errDoubleSlash)
        message = L(txtDoubleSlash);
    if (message.isEmpty())
        return Failed;
    const long code = number == ControlError::DataConnection ? number : errShown;
    MError::ClearError();
    MError::SetError(code, message, kPosition + QStringLiteral(" {line: %1} URL: ").arg(step) + site.baseaddress);
    return Failed;
}
