#include "transfer/CFTPS.h"

#include "platform/CReg.h"
#include "platform/CurlErrorMap.h"
#include "platform/LocalFolders.h"
#include "support/ErrorLog.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/StringIds.h"
#include "support/UserQuestions.h"
#include "transfer/CertificateTrust.h"
#include "transfer/FailureText.h"
#include "transfer/FtpAddress.h"
#include "transfer/HostKeyTrust.h"
#include "transfer/RemotePathMapper.h"
#include "transfer/SafeReplace.h"

#include <QDateTime>
#include <QDir>
#include <QHash>
#include <QFile>
#include <QFileInfo>

namespace {
// Ids of the texts in the string table.
enum Text : long {
    txtIncorrectAddress = 16000,
    txtFailedToConnect = 16001,
    txtUnableToConnectStart = 16002,
    txtUnableToConnectEnd = 16003,
    txtIncorrectUser = 16004,
    txtIncorrectAddressDot = 16005,
    txtNoInternet = 16006,
    txtWriteRefused = 16020,
    txtPage = 16021,
    txtTheFolder = 16022,
    txtNotCreated = 16023,
    txtNoSuchFile = 16024,
    txtCreatedBy = 16025,
    txtCaption = 16010,
    txtDataSent = 16011,
    txtBy = 16012,
    txtHundredOf = 16013,
    txtPercentOf = 16014,
    txtBatchCaption = 16015,
    txtSendingFile = 16016,
    txtAbortQuestion = 16018,
    txtAbortTitle = 16019,
    txtKilobytes = 16026,
    txtOldPageStands = 22127,
    txtKeptAside = 22129,
    txtOldFileStands = 22133
};

// A single file shows the window from this size on, a batch from the other.
constexpr double kSingleFileThreshold = 2000;
constexpr double kBatchThreshold = 200;


// Error numbers of the FTP control.
constexpr long errProtocol = 20142;
constexpr long errDataConnection = 20302;
constexpr long errNoInternet = 25066;
constexpr long errRefused = 25061;
constexpr long errNoSuchFile = 65547;
constexpr int kFtpPort = 21;

// A rename that keeps answering "553 Error renaming file" is tried this many
// times in all: enough to ride out a server that is still closing the file.
constexpr int kRenameTries = 3;

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// Passphrases of key files typed at a logon, by key file, for the rest of
// the run: each new session would otherwise ask again.
QHash<QString, QString> &typedPassphrases()
{
    static QHash<QString, QString> typed;
    return typed;
}

bool StartsWith(const QString &text, const char *prefix)
{
    return text.startsWith(QLatin1String(prefix));
}

// Marks an operation of this client as running for its events, and clears
// the mark on every way out.
class Running
{
public:
    explicit Running(bool &flag) : m_flag(flag), m_was(flag) { m_flag = true; }
    ~Running() { m_flag = m_was; }
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;

private:
    bool &m_flag;
    bool m_was;
};
} // namespace

bool CFTPS::g_boolCancelActivation = false;

CFTPS::CFTPS()
{
    UseSession(std::make_shared<FtpSession>(QString()));
    m_frmTransferStatus = TransferStatusWindow::Create();
    if (m_frmTransferStatus)
        m_frmTransferStatus->onCancel = [this] { OnCancel(); };
}

// The connection goes with the last client that holds it (FtpSession).
CFTPS::~CFTPS()
{
    if (m_frmTransferStatus)
        m_frmTransferStatus->HideWindow();
}

void CFTPS::UseSession(std::shared_ptr<FtpSession> session)
{
    if (m_session)
        disconnect(&m_session->control, nullptr, this, nullptr);
    m_session = std::move(session);
    FtpControl *control = &m_session->control;
    connect(control, &FtpControl::StartTransfer, this, [this] { OnStartTransfer(); });
    connect(control, &FtpControl::Transfer, this,
            [this](qint64 bytes, const QByteArray &text) { OnTransfer(bytes, text); });
    connect(control, &FtpControl::EndTransfer, this, [this] { OnEndTransfer(); });
}

// ---------------------------------------------------------------- session

bool CFTPS::Connected() const
{
    return Ftp().Connected();
}

QString CFTPS::LoginFolderMark() const
{
    return m_session->loginFolderMark;
}

SiteRecord CFTPS::Record() const
{
    const auto &sites = MGlobalProjectObjects::URLDATA;
    long index = m_lRecord >= 0 ? m_lRecord : MGlobalProjectObjects::lCurrentURL;
    if (index >= 0 && index < static_cast<long>(sites.size()))
        return sites[static_cast<size_t>(index)];
    return SiteRecord();
}

// Keeps the control's failure for the trap of the operation.
bool CFTPS::Capture(long lResult)
{
    const bool boolOk = lResult == 1;
    if (!boolOk)
        m_failure = {Ftp().ErrorNumber(), Ftp().ErrorDescription()};
    return boolOk;
}

long CFTPS::Fail(const QString &strPosition)
{
    return Tell(strPosition, false, QString());
}

// The pending error for the control's failure, unless one is pending: in
// the user's words where FailureText knows the failure (a refusal read as
// a refusal to write only for a write), the control's own text then going
// to the error log; a server's reply is shown as it came. strAfter_p
// follows the text as a paragraph of its own.
long CFTPS::Tell(const QString &strPosition_p, bool boolWriting_p, const QString &strAfter_p)
{
    if (MError::ErrorNumber() != 0)
        return 0;
    long number = 0;
    QString text;
    if (FailureText::Describe(m_failure.number, m_failure.description, ServerTimeout(), boolWriting_p, number,
                              text)) {
        if (m_failure.number != ControlError::Protocol) // a server's reply is in the text itself
            ErrorLog::Append(m_failure.number, m_failure.description, strPosition_p);
    } else {
        number = m_failure.number;
        text = m_failure.description;
    }
    if (!strAfter_p.isEmpty())
        text += QStringLiteral("\r\n\r\n") + strAfter_p;
    MError::SetError(number, text, strPosition_p);
    return 0;
}

int CFTPS::ServerTimeout()
{
    CReg reg;
    reg.KeyRoot = CReg::AppKey();
    reg.Subkey = QStringLiteral("Environment");
    const int seconds = reg.GetRegistryValue(QStringLiteral("ServerTimeout"), QVariant()).toInt();
    return seconds > 0 ? seconds : 30;
}

// The proxy block of the settings says whether FTP goes through a
// firewall, and which. The session remembers it: a connection that went
// another way is not used once the settings changed.
void CFTPS::FirewallSetUp()
{
    const ProxySettings &proxy = MGlobalProjectObjects::Proxy;
    Ftp().FirewallType = 0;
    if (proxy.useFTP) {
        const QString &kind = proxy.serverSOCKSServerType;
        Ftp().FirewallType = kind == QStringLiteral("4") ? 2 : kind == QStringLiteral("6") ? 1 : 3;
        Ftp().FirewallHost = proxy.serverSOCKSname;
        Ftp().FirewallPort = proxy.serverSOCKSPort.toInt();
    }
    Ftp().FirewallUser = proxy.usesockspassword ? proxy.serverSOCKSUser : QString();
    Ftp().FirewallPassword = proxy.usesockspassword ? proxy.serverSOCKSPassWord : QString();
    m_session->route = FirewallRoute();
}

// What FirewallSetUp would give the control, as one text to compare.
QString CFTPS::FirewallRoute()
{
    const ProxySettings &proxy = MGlobalProjectObjects::Proxy;
    if (!proxy.useFTP)
        return QString();
    QStringList parts = {proxy.serverSOCKSServerType, proxy.serverSOCKSname, proxy.serverSOCKSPort};
    if (proxy.usesockspassword)
        parts << proxy.serverSOCKSUser << proxy.serverSOCKSPassWord;
    return parts.join(QLatin1Char('\n'));
}

// A connection that logged on before the proxy settings changed goes on
// the old way, past a firewall the user has just turned on or through one
// he left: it is closed, for every client that shares it, so the change
// takes effect at the next call, which logs on again the new way.
void CFTPS::LeaveOldRoute()
{
    if (Ftp().Connected() && m_session->route != FirewallRoute())
        Ftp().Logoff();
}

// Takes the live connection of another client of the same account when
// there is one, else a session of this account of its own.
void CFTPS::SessionFor(const QString &strAccount_p)
{
    LeaveOldRoute();
    if (std::shared_ptr<FtpSession> shared = FtpSession::FindConnected(strAccount_p, FirewallRoute()))
        UseSession(shared);
    else if (m_session->Account() != strAccount_p)
        UseSession(std::make_shared<FtpSession>(strAccount_p));
}

long CFTPS::Init(const QString &strHTTPURL_p, const QString &strFTPURL_p,
                 const QString &strUsername_p, const QString &strPassword)
{
    m_lRecord = -1;
    m_boolInitSession = true;
    const FtpAddress address = FtpAddress::Parse(strFTPURL_p, false);
    SessionFor(FtpSession::AccountKey(address.AccountHost(), strUsername_p, strPassword));
    FirewallSetUp();
    address.ApplyTo(Ftp());
    Ftp().User = strUsername_p;
    Ftp().Password = strPassword;
    Ftp().Timeout = ServerTimeout();

    // The control reads the folder only on an open connection, so Init logs
    // on here; its failures are the ones the table below turns into words.
    bool ok = Ftp().Connected() || Capture(Ftp().Logon());
    if (ok && m_session->loginFolderMark.isEmpty())
        m_session->loginFolderMark = QLatin1Char('#') + Ftp().RemotePath();
    if (ok) {
        FtpSession::Publish(m_session);
        const QString folder = m_session->loginFolderMark.mid(1);
        m_strStartFolder = folder != QStringLiteral("/") ? folder : QString();
    }
    Ftp().Overwrite = true;
    m_strHTTPURL = strHTTPURL_p;
    m_boolHideDialog = false;
    if (ok)
        return 1;

    struct Row { long number; QString message; };
    const Row rows[] = {
        {26002, L(txtIncorrectAddress)},
        {25061, L(txtFailedToConnect)},
        {26005, L(txtUnableToConnectStart) + strFTPURL_p + L(txtUnableToConnectEnd)},
        {errProtocol, L(txtIncorrectUser)},
        {25050, L(txtIncorrectAddressDot)},
        {errNoInternet, L(txtNoInternet)},
    };
    for (const Row &row : rows) {
        if (row.number == m_failure.number) {
            MError::SetErrorIfClear(-row.number, row.message, QStringLiteral("CFTPS.Init"));
            return -row.number;
        }
    }
    Fail(QStringLiteral("CFTPS.Init"));
    return m_failure.number;
}

long CFTPS::Logon()
{
    return LogonRecord(MGlobalProjectObjects::lCurrentURL, QStringLiteral("CFTPS.Logon"));
}

long CFTPS::LogonEx(const QVariant &lIndex)
{
    return LogonRecord(static_cast<long>(lIndex.toLongLong()), QStringLiteral("CFTPS.LogonEx"));
}

long CFTPS::LogonRecord(long lIndex, const QString &strPosition)
{
    m_lRecord = lIndex;
    m_boolInitSession = false;
    const SiteRecord site = Record();
    const FtpAddress address = FtpAddress::Parse(site.baseurl, true);
    // Another key file is another account, even with the same passphrase.
    const QString account = FtpSession::AccountKey(address.AccountHost(), site.userid, site.password + site.sshkey);
    // A second logon of this client starts its session over; a first one
    // takes over another client's live connection to the account.
    if (Ftp().Connected() && m_session->Account() == account) {
        FirewallSetUp();
        Ftp().Logoff();
    } else {
        SessionFor(account);
        if (Ftp().Connected()) {
            Ftp().Passive = site.passivemode;
            m_strHTTPURL = site.baseaddress;
            return 1;
        }
    }
    FirewallSetUp();
    ApplyAccount(site);
    Ftp().Passive = site.passivemode;
    Ftp().DoEvents();
    if (!KeyFileReadable(site, strPosition))
        return Fail(strPosition);
    if (!Capture(Ftp().Logon()) && !TrustCertificate(lIndex, strPosition) && !LogonWithPassphrase()) {
        if (m_failure.number == errNoInternet)
            MError::SetError(m_failure.number, m_failure.description, strPosition);
        return Fail(strPosition);
    }
    m_session->loginFolderMark = QLatin1Char('#') + Ftp().RemotePath();
    m_strHTTPURL = site.baseaddress;
    FtpSession::Publish(m_session);
    return 1;
}

// A logon that failed on a certificate the system does not vouch for: the
// user sees it and may trust it for the site, and the logon is tried once
// more with it pinned. True when that logon went through; otherwise the
// pending error says what happened to the certificate, if that was it.
bool CFTPS::TrustCertificate(long lIndex, const QString &strPosition)
{
    // An SFTP server's host key is asked about the same way.
    HostKeyTrust hostKey(Ftp(), Record().baseaddress);
    if (m_failure.number == ControlError::HostKeyUnknown && hostKey.Ask())
        return Capture(Ftp().Logon());
    hostKey.Tell(m_failure.number, strPosition);
    CertificateTrust trust(Ftp(), lIndex);
    if (m_failure.number == ControlError::CertificateUntrusted && trust.Ask())
        return Capture(Ftp().Logon());
    trust.Tell(m_failure.number, strPosition);
    return false;
}

// The site's account on the control: the address, the certificate pinned
// for it, the user and his password, or for SFTP his key file with its
// passphrase in the password.
void CFTPS::ApplyAccount(const SiteRecord &site)
{
    const FtpAddress address = FtpAddress::Parse(site.baseurl, true);
    address.ApplyTo(Ftp());
    Ftp().TlsPinnedKey = site.tlskeypin;
    Ftp().SshPrivateKey = Ftp().Sftp ? site.sshkey : QString();
    Ftp().User = site.userid;
    Ftp().Password = typedPassphrases().value(Ftp().SshPrivateKey, site.password);
    Ftp().Timeout = ServerTimeout();
}

// A key file that is gone or unreadable would let the logon fall back to
// the password quietly and fail with a refusal that names the wrong cause.
bool CFTPS::KeyFileReadable(const SiteRecord &site, const QString &strPosition)
{
    const QString &path = Ftp().SshPrivateKey;
    if (path.isEmpty())
        return true;
    QFile key(path);
    if (key.open(QIODevice::ReadOnly))
        return true;
    m_failure = {ControlError::LoginRefused,
                 MResources::LoadResourceString(StringIds::SshKeyUnreadable).arg(path, site.baseaddress, key.errorString())};
    MError::SetErrorIfClear(m_failure.number, m_failure.description, strPosition);
    return false;
}

// The server refused the logon by key file: the passphrase in the site's
// password field was wrong or left empty on purpose, so that it is kept
// nowhere. It is asked for, three times at most as ssh does; what is typed
// serves this run only and is never written to the settings.
bool CFTPS::LogonWithPassphrase()
{
    if (!Ftp().Sftp || Ftp().SshPrivateKey.isEmpty())
        return false;
    const QString prompt = MResources::LoadResourceString(StringIds::SshKeyPassphrase)
                               .arg(QDir::toNativeSeparators(Ftp().SshPrivateKey), Record().baseaddress);
    const QString title = MResources::LoadResourceString(StringIds::SshKeyPassphraseTitle);
    for (int tries = 0; tries < 3 && StartsWith(m_failure.description, "530"); ++tries) {
        QString typed;
        if (UserQuestions::InputBox(prompt, title, true, typed) != UserQuestions::vbOK)
            return false;
        Ftp().Password = typed;
        if (Capture(Ftp().Logon())) {
            typedPassphrases().insert(Ftp().SshPrivateKey, typed);
            return true;
        }
    }
    return false;
}

long CFTPS::CloseDown()
{
    if (Ftp().Connected())
        Ftp().Logoff();
    Ftp().Interrupt();
    return 1;
}

long CFTPS::CanUsePassiveMode(long lIndex_p, bool &boolPassive_p)
{
    const QString position = QStringLiteral("CFTPS.CanUsePassiveMode");
    if (m_session.use_count() == 1 && Ftp().Connected())
        Ftp().Logoff();
    // The test logs on and off by itself: on a connection of its own, never
    // on one that other clients share.
    UseSession(std::make_shared<FtpSession>(QString()));
    FirewallSetUp();
    const auto &sites = MGlobalProjectObjects::URLDATA;
    if (lIndex_p < 0 || lIndex_p >= static_cast<long>(sites.size())) {
        MError::SetErrorIfClear(9, QStringLiteral("Subscript out of range"), position);
        return 0;
    }
    const SiteRecord &site = sites[static_cast<size_t>(lIndex_p)];
    ApplyAccount(site);
    Ftp().Passive = true;
    if (!KeyFileReadable(site, position))
        return Fail(position);

    // Logon, then a listing, which needs a data connection. A data
    // connection that fails in passive mode is tried once more in active.
    const std::function<long()> steps[] = {[this] { return Ftp().Logon(); },
                                           [this] { return Ftp().ListDirectory(); }};
    bool triedActive = false;
    for (size_t step = 0; step < std::size(steps); ++step) {
        if (step > 0 && g_boolCancelActivation)
            return 1;
        if (Capture(steps[step]()))
            continue;
        const QString &text = m_failure.description;
        switch (m_failure.number) {
        case errDataConnection:
            Ftp().Interrupt();
            Ftp().Logoff();
            Ftp().Passive = false;
            if (g_boolCancelActivation)
                return 1;
            if (triedActive)
                return Fail(position);
            triedActive = true;
            if (!Capture(Ftp().Logon()))
                return Fail(position);
            --step;
            continue;
        case 26002:
            return -26002;
        case errNoInternet:
            return -25066;
        case errProtocol:
            if (StartsWith(text, "550"))
                continue; // a refused listing tells nothing of the data connection
            if (StartsWith(text, "426")) {
                boolPassive_p = false;
                return 1;
            }
            return StartsWith(text, "530") ? -20142 : 0;
        default:
            return Fail(position);
        }
    }
    if (g_boolCancelActivation)
        return 1;
    boolPassive_p = Ftp().Passive;
    Ftp().Logoff();
    return 1;
}

long CFTPS::LetUSERID(const QString &strNewUser_p)
{
    Ftp().User = strNewUser_p;
    return 1;
}

long CFTPS::LetPASSWORD(const QString &strNewPassword_p)
{
    Ftp().Password = strNewPassword_p;
    return 1;
}

long CFTPS::GetBASEURL(QString &strBaseURL_p)
{
    strBaseURL_p = Ftp().RemoteHost;
    if (Ftp().RemotePort != kFtpPort)
        strBaseURL_p += QLatin1Char(':') + QString::number(Ftp().RemotePort);
    return 1;
}

long CFTPS::LetBASEURL(const QString &strNewBaseURL_p)
{
    FtpAddress::Parse(strNewBaseURL_p, true).ApplyTo(Ftp());
    return 1;
}

long CFTPS::SetHideTransferDialog(bool bHide_p)
{
    m_boolHideDialog = bHide_p;
    return 1;
}

// ---------------------------------------------------------------- folders

// The first steps of every operation. A connection that the server dropped
// since the last operation shows only when it is used: then the client logs
// on again and goes on, so a dropped session costs the user nothing.
long CFTPS::Connect()
{
    LeaveOldRoute();
    if (!Ftp().Connected() && !Reconnect())
        return 0;
    if (RootFolder().isEmpty())
        return ChangeToRootFolder();
    // The server's root is always there: the operation's own folder change
    // or transfer goes where it needs, with one command or none.
    if (RootFolder() == QLatin1String("/")) {
        Ftp().SetRemotePathUnchecked(RootFolder());
        return 1;
    }
    if (Capture(Ftp().SetRemotePath(RootFolder())))
        return 1;
    if (!ConnectionLost() || !Reconnect())
        return Fail(QStringLiteral("CFTPS.ChangeToRootFolder"));
    return ChangeToRootFolder();
}

// Whether the last failure was the loss of the control connection. The
// control does not always notice a connection closed under a reply it was
// waiting for, so a reply that could not be read counts too; the session is
// then closed on this side as well, ready to log on again.
bool CFTPS::ConnectionLost()
{
    // A call the user cancelled closed its connection too, but what he
    // cancelled must not go on with a new one.
    // A server that did not answer in time is not waited for once more.
    if (m_failure.number == ControlError::Aborted || m_failure.number == ControlError::TimedOut)
        return false;
    if (!Ftp().Connected())
        return true;
    const bool lost = m_failure.number == errNoInternet || m_failure.number == errRefused
                      || m_failure.description.startsWith(QStringLiteral("response reading failed"));
    if (lost)
        Ftp().Logoff();
    return lost;
}

// Logs on again with what the session was made from: Init's address and
// account, else the site record. Another client's live connection to the
// same account is taken over instead when there is one.
bool CFTPS::Reconnect()
{
    if (!m_boolInitSession)
        return LogonRecord(m_lRecord >= 0 ? m_lRecord : MGlobalProjectObjects::lCurrentURL,
                           QStringLiteral("CFTPS.Logon")) == 1;
    if (std::shared_ptr<FtpSession> shared = FtpSession::FindConnected(m_session->Account(), FirewallRoute())) {
        UseSession(shared);
        return true;
    }
    FirewallSetUp();
    if (!Capture(Ftp().Logon())) {
        Fail(QStringLiteral("CFTPS.Logon"));
        return false;
    }
    FtpSession::Publish(m_session);
    return true;
}

// A connection lost at the change of folder is logged on again once.
long CFTPS::GoToFile(const QString &strURL_p, QString &strFolder_p, QString &strFile_p)
{
    const bool wasClear = MError::ErrorNumber() == 0;
    for (int attempt = 0;; ++attempt) {
        if (Connect() != 1)
            return 0;
        BuildRemoteFolder(strURL_p, strFolder_p, strFile_p);
        if (ChangeFolder(strFolder_p) == 1)
            return 1;
        if (attempt > 0 || !ConnectionLost())
            return 0;
        if (wasClear)
            MError::ClearError();
    }
}

QString CFTPS::RootFolder() const
{
    const SiteRecord site = Record();
    return site.useabsol ? site.remotefolder : QStringLiteral("/");
}

// An absolute start folder that is empty is refused like a folder the
// server refuses, rather than leaving the session where it happens to be.
long CFTPS::ChangeToRootFolder()
{
    if (RootFolder().isEmpty()) {
        m_failure = {errProtocol, QStringLiteral("550 No folder to change to.")};
        return Fail(QStringLiteral("CFTPS.ChangeToRootFolder"));
    }
    if (Capture(Ftp().SetRemotePath(RootFolder())))
        return 1;
    return Fail(QStringLiteral("CFTPS.ChangeToRootFolder"));
}

// A relative folder that the server refuses gets one try as an absolute one.
long CFTPS::ChangeFolder(const QString &strPath)
{
    if (Capture(Ftp().SetRemotePath(strPath)))
        return 1;
    if (m_failure.number != errProtocol)
        return Fail(QStringLiteral("CFTPS.ChangeFolder"));
    const QString absolute = strPath.startsWith(QLatin1Char('/')) ? strPath : QLatin1Char('/') + strPath;
    if (Capture(Ftp().SetRemotePath(absolute)))
        return 1;
    Fail(QStringLiteral("CFTPS.ChangeFolder"));
    return ExpectedFailure;
}

long CFTPS::BuildRemoteFolder(const QString &strDocumentURL_p, QString &strRemoteFolder_p,
                              QString &strRemoteFile_p)
{
    const SiteRecord site = Record();
    RemotePathMapper::BuildRemoteFolder({site.ftproot, site.remotefolder, site.useremotef},
                                        Ftp().RemotePath(), strDocumentURL_p, strRemoteFolder_p,
                                        strRemoteFile_p);
    return 1;
}

QString CFTPS::TrimSlashes(const QString &s)
{
    return RemotePathMapper::TrimSlashes(s);
}

QString CFTPS::RemoveTildePart(const QString &strPath)
{
    return RemotePathMapper::RemoveTildePart(strPath);
}

long CFTPS::RemoveFTPPath(const QString &strPath, QString &strResult, long lStart)
{
    strResult = RemotePathMapper::RemoveFTPPath(strPath, lStart);
    return 1;
}

long CFTPS::RemoveLocalPath(const QString &strPath, QString &strResult, long lLength)
{
    strResult = RemotePathMapper::RemoveLocalPath(strPath, lLength);
    return 1;
}

// ---------------------------------------------------------------- pages

long CFTPS::GetASCIIFile(const QString &strURL_p, QByteArray &strFileData_p)
{
    Running running(m_boolRunning);
    m_strReceiveBuffer.clear();
    Ftp().LocalFile = QString();
    QString folder, file;
    if (GoToFile(strURL_p, folder, file) != 1)
        return Fail(QStringLiteral("CFTPS.GetASCIIFile"));
    Ftp().RemoteFile = file;
    m_strTransferName = file;
    m_dblTransferSize = 0;
    m_boolCollect = true;
    const bool ok = Fetch();
    m_boolCollect = false;
    if (!ok)
        return Fail(QStringLiteral("CFTPS.GetASCIIFile"));
    strFileData_p = m_strReceiveBuffer;
    m_strReceiveBuffer.clear();
    return 1;
}

// The download of Ftp().RemoteFile. A file that is missing because a
// replace was cut between its two renames for good (the server gone) has
// its last version kept aside beside it: that copy is put back, then read,
// so that no reader takes the file for lost.
bool CFTPS::Fetch()
{
    const QString folder = Ftp().RemotePath();
    if (Capture(Ftp().Download()))
        return true;
    // A connection the server dropped since the last operation shows only
    // now, as no command went before the download: log on again once.
    const QString wanted = Ftp().RemoteFile;
    if (ConnectionLost() && Reconnect() && ChangeFolder(folder) == 1) {
        Ftp().RemoteFile = wanted;
        m_strReceiveBuffer.clear();
        if (Capture(Ftp().Download()))
            return true;
    }
    if (m_failure.number != errProtocol || !StartsWith(m_failure.description, "550"))
        return false;
    const Failure missing = m_failure;
    const QString file = Ftp().RemoteFile;
    QStringList names;
    if (ListFileNames(names) && !names.contains(file)) {
        for (const QString &name : names) {
            QString target;
            bool oldCopy = false;
            if (SafeReplace::IsTemporaryName(name, target, oldCopy) && oldCopy && target == file
                && Rename(name, file)) {
                Ftp().RemoteFile = file;
                m_strReceiveBuffer.clear();
                return Capture(Ftp().Download());
            }
        }
    }
    Ftp().RemoteFile = file;
    m_failure = missing;
    return false;
}

QString CFTPS::WorkFileName()
{
    QString name;
    qint64 tick = QDateTime::currentMSecsSinceEpoch() & 0x7fffffff;
    do {
        name = LocalFolders::tempFolder() + QStringLiteral("/~%1_p.ptx").arg(tick++);
    } while (QFile::exists(name));
    return name;
}

bool CFTPS::Rename(const QString &strFrom_p, const QString &strTo_p)
{
    for (int attempt = 1;; ++attempt) {
        if (Capture(Ftp().Rename(strFrom_p, strTo_p)))
            return true;
        if (attempt >= kRenameTries || !StartsWith(m_failure.description, "553 Error renaming file"))
            return false;
    }
}

// The names of the files in the current folder.
bool CFTPS::ListFileNames(QStringList &names_p)
{
    names_p.clear();
    const QMetaObject::Connection collect = connect(
        &Ftp(), &FtpControl::DirList, this,
        [&names_p](const QString &, const QString &FileName, bool IsDir, qint64, const QDateTime &) {
            if (!IsDir)
                names_p.append(FileName);
        });
    Ftp().RemoteFile.clear();
    const bool ok = Capture(Ftp().ListEntries());
    disconnect(collect);
    return ok;
}

long CFTPS::WriteWorkFile(const QByteArray &bytes_p, QString &strWork_p, const QString &strPosition_p)
{
    strWork_p = WorkFileName();
    QFile local(strWork_p);
    if (!local.open(QIODevice::WriteOnly) || local.write(bytes_p) != bytes_p.size() || !local.flush()) {
        MError::SetErrorIfClear(75, QStringLiteral("Path/File access error: ") + strWork_p, strPosition_p);
        local.remove();
        return 0;
    }
    return 1;
}

// The file goes in place by the safe replace (SafeReplace). A failure is
// told in the user's words, with which copy now stands on the server; the
// control's own text goes to the error log.
long CFTPS::Replace(const QString &strLocalFile_p, const QString &strFolder_p, const QString &strFile_p,
                    const QString &strPosition_p, bool boolPage_p, bool boolFreshName_p)
{
    SafeReplace replace(*this, strFolder_p, strFile_p, strLocalFile_p);
    if (boolFreshName_p)
        replace.SetFreshName();
    if (replace.Run())
        return 1;
    const QString state = replace.Result() == SafeReplace::Outcome::OldKeptAside
                              ? L(txtKeptAside).arg(replace.KeptCopy())
                              : L(boolPage_p ? txtOldPageStands : txtOldFileStands);
    return Tell(strPosition_p, true, state);
}

long CFTPS::SendPage(const QByteArray &strASCII_p, const QString &strURL_p)
{
    Running running(m_boolRunning);
    const QString position = QStringLiteral("CFTPS.SendPage Page: ") + strURL_p;
    QString work;
    if (WriteWorkFile(strASCII_p, work, position) != 1)
        return 0;
    m_dblTransferSize = static_cast<double>(strASCII_p.size());
    QString folder, file;
    long result = GoToFile(strURL_p, folder, file) == 1 ? 1 : Fail(position);
    if (result == 1) {
        m_strTransferName = file;
        result = Replace(work, folder, file, position, true);
    }
    QFile::remove(work);
    return result;
}

QByteArray CFTPS::NewPageText(const QString &strDocTitle_p)
{
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    const QStringList lines = {
        QStringLiteral("<HTML>"),
        QStringLiteral("<HEAD>"),
        QStringLiteral("<TITLE>") + strDocTitle_p + QStringLiteral("</TITLE>"),
        QStringLiteral("\t<META http-equiv=\"Content-Type\" content=\"text/html; charset=windows-1252\">"),
        QStringLiteral("\t<META name=\"vs_targetSchema\" content=\"http://schemas.microsoft.com/intellisense/ie5\">"),
        QStringLiteral("\t<META content=\"MSHTML 6.00.2719.2200\" name=\"GENERATOR\">"),
        QStringLiteral("</HEAD>"),
        QStringLiteral("<BODY bgcolor=\"#ffffff\">"),
        QStringLiteral("\t<P>") + L(txtCreatedBy) + now + QStringLiteral("</P>"),
        QStringLiteral("</BODY>"),
        QStringLiteral("</HTML>"),
    };
    // The page declares windows-1252; Latin-1 is its common part.
    return (lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toLatin1();
}

// An existing file of that name is replaced (the dialogs that offer a new
// page check first), by the safe replace like every other write.
long CFTPS::SendNewPage(const QString &strDocTitle_p, const QString &strURL_p)
{
    Running running(m_boolRunning);
    const QString position = QStringLiteral("CFTPS.SendNewPage");
    const QByteArray text = NewPageText(strDocTitle_p);
    QString work;
    if (WriteWorkFile(text, work, position) != 1)
        return 0;
    m_dblTransferSize = static_cast<double>(text.size());
    QString folder, file;
    long result = GoToFile(strURL_p, folder, file) == 1 ? 1 : Fail(position);
    if (result == 1) {
        m_strTransferName = file;
        result = Replace(work, folder, file, position, true);
    }
    QFile::remove(work);
    return result;
}

// ---------------------------------------------------------------- files

long CFTPS::SendFile(const QString &strFileToSend_p, const QString &strServerFolder_p, bool boolFreshName_p)
{
    Running running(m_boolRunning);
    int step = 1;
    const auto fail = [&] {
        return Fail(QStringLiteral("CFTPS.SendFile{line:%1} file: ").arg(step) + strFileToSend_p
                    + QStringLiteral(" ToFolder: ") + strServerFolder_p);
    };
    const QFileInfo info(strFileToSend_p);
    if (!info.isFile()) {
        m_failure = {errNoSuchFile, L(txtNoSuchFile)};
        return fail();
    }
    step = 2;
    m_dblTransferSize = static_cast<double>(info.size());
    const QString name = strFileToSend_p.mid(
        qMax(strFileToSend_p.lastIndexOf(QLatin1Char('\\')), strFileToSend_p.lastIndexOf(QLatin1Char('/'))) + 1);
    m_strTransferName = name;
    step = 3;
    if (Connect() != 1)
        return fail();
    step = 4;
    QString path = strServerFolder_p;
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    QString folder, file;
    BuildRemoteFolder(path + name, folder, file);
    if (ChangeFolder(folder) != 1)
        return fail();
    step = 5;
    return Replace(strFileToSend_p, folder, file,
                   QStringLiteral("CFTPS.SendFile{line:5} file: ") + strFileToSend_p + QStringLiteral(" ToFolder: ")
                       + strServerFolder_p,
                   false, boolFreshName_p);
}

long CFTPS::SendNewFile(const QString &strLocalFile_p, const QString &strURL_p)
{
    Running running(m_boolRunning);
    const QString position = QStringLiteral("CFTPS.SendNewFile");
    m_dblTransferSize = static_cast<double>(QFileInfo(strLocalFile_p).size());
    QString folder, file;
    if (GoToFile(strURL_p, folder, file) != 1)
        return Fail(position);
    m_strTransferName = file;
    if (Replace(strLocalFile_p, folder, file, position, false) == 1)
        return 1;
    // A transfer the user cancelled is no failure to show; it is logged.
    const bool cancelled = m_frmTransferStatus && m_frmTransferStatus->CancelPressed();
    if (cancelled && m_failure.number == ControlError::Aborted) {
        m_frmTransferStatus->ClearCancelPressed();
        MError::LogError();
        return ExpectedFailure;
    }
    return 0;
}

long CFTPS::SaveFile(const QString &strURL_p, const QString &strLocalFilePath_p, bool boolBinaryTransfer)
{
    Running running(m_boolRunning);
    int step = 1;
    const auto fail = [&] {
        return Fail(QStringLiteral("CFTPS.SaveFile{line: %1} ").arg(step) + strURL_p
                    + QStringLiteral(", ") + strLocalFilePath_p);
    };
    QString folder, file;
    if (GoToFile(strURL_p, folder, file) != 1)
        return fail();
    step = 2;
    m_strTransferName = file;
    m_dblTransferSize = 0;
    Ftp().RemoteFile = file;
    if (boolBinaryTransfer)
        Ftp().TransferMode = 2;
    Ftp().LocalFile = strLocalFilePath_p;
    Ftp().Overwrite = true;
    step = 3;
    const bool ok = Fetch();
    Ftp().TransferMode = 0;
    if (ok)
        return 1;
    const QString &text = m_failure.description;
    if (m_failure.number == errProtocol
        && (text.contains(QStringLiteral("450")) || text.contains(QStringLiteral("452"))
            || text.contains(QStringLiteral("550"))))
        return ExpectedFailure;
    return fail();
}

long CFTPS::CopyFile(const QString &strURL_p, const QString &strCopyFile_p)
{
    Running running(m_boolRunning);
    const QString position = QStringLiteral("CFTPS.CopyFile");
    const QString work = LocalFolders::tempFolder() + QStringLiteral("/cpyfile.tmp");
    QString folder, file;
    if (GoToFile(strURL_p, folder, file) != 1)
        return Fail(position);
    m_strTransferName = file;
    m_dblTransferSize = 0;
    Ftp().RemoteFile = file;
    Ftp().LocalFile = work;
    Ftp().Overwrite = true;
    long result = Capture(Ftp().Download()) ? 1 : Fail(position);
    if (result == 1) {
        m_dblTransferSize = static_cast<double>(QFileInfo(work).size());
        result = Replace(work, folder, strCopyFile_p, position, false);
    }
    QFile::remove(work);
    return result;
}

long CFTPS::RenameFile(const QString &strURL_p, const QString &strNewFileName_p)
{
    Running running(m_boolRunning);
    QString folder, file;
    if (GoToFile(strURL_p, folder, file) != 1)
        return Fail(QStringLiteral("CFTPS.RenameFile"));
    Ftp().RemoteFile = file;
    return Rename(file, strNewFileName_p) ? 1 : Fail(QStringLiteral("CFTPS.RenameFile"));
}

// Goes to the file and runs one command of the control on its name. A
// refusal the caller expects (isExpected_p) gives -1 and leaves no error.
long CFTPS::OnFile(const QString &strURL_p, const QString &strPosition_p,
                   const std::function<long(const QString &)> &command_p,
                   const std::function<bool(const Failure &)> &isExpected_p)
{
    Running running(m_boolRunning);
    QString folder, file;
    if (GoToFile(strURL_p, folder, file) != 1)
        return Fail(strPosition_p);
    Ftp().RemoteFile = file;
    if (Capture(command_p(file)))
        return 1;
    return isExpected_p(m_failure) ? ExpectedFailure : Fail(strPosition_p);
}

long CFTPS::RemoveFile(const QString &strURL_p)
{
    return OnFile(strURL_p, QStringLiteral("CFTPS.RemoveFile"),
                  [this](const QString &name) { return Ftp().DeleteFile(name); },
                  [](const Failure &failure) { return failure.number == errProtocol; });
}

long CFTPS::ListFolderFiles(const QString &strURL_p, QStringList &names_p)
{
    Running running(m_boolRunning);
    QString folder, file;
    if (GoToFile(strURL_p, folder, file) != 1 || !ListFileNames(names_p))
        return Fail(QStringLiteral("CFTPS.ListFolderFiles"));
    return 1;
}

long CFTPS::RemoveDir(const QString &strURL_p)
{
    return OnFile(strURL_p, QStringLiteral("CFTPS.RemoveDir"),
                  [this](const QString &name) { return Ftp().RemoveDirectory(name); },
                  [](const Failure &failure) { return StartsWith(failure.description, "550"); });
}

long CFTPS::CreateDir(const QString &strURL_p)
{
    return OnFile(strURL_p, QStringLiteral("CFTPS.CreateDir"),
                  [this](const QString &name) { return Ftp().MakeDirectory(name); },
                  [](const Failure &failure) { return StartsWith(failure.description, "550"); });
}

// Makes sure a control folder exists. A folder change that the server
// refuses means the folder is missing; any other failure of that change is
// reported as it is rather than taken for a folder that exists. The
// folder's name stands between spaces in the message, so that it reads as a
// word of its own.
long CFTPS::CreateFolder(const QString &strPath_p, const QString &strFolderName_p, bool *boolMade_p)
{
    if (boolMade_p)
        *boolMade_p = false;
    Running running(m_boolRunning);
    const QString position = QStringLiteral("CFTPS.CreateFolder");
    // From the session's root, as every operation maps its paths.
    if (Connect() != 1)
        return 0;
    QString folder, file;
    BuildRemoteFolder(strFolderName_p + QStringLiteral("/dummy.htm"), folder, file);
    const long found = ChangeFolder(folder);
    if (found == 1)
        return 1;
    if (found != ExpectedFailure)
        return 0;
    MError::ClearError();
    QString path = strPath_p;
    if (!path.isEmpty() && !path.startsWith(QLatin1Char('/')))
        path.prepend(QLatin1Char('/'));
    const SiteRecord site = Record();
    if (site.useremotef == QStringLiteral("1"))
        path = site.remotefolder + TrimSlashes(path);
    if (path.isEmpty())
        path = RootFolder();
    bool ok = Capture(Ftp().SetRemotePath(path));
    Ftp().RemoteFile = folder;
    ok = ok && Capture(Ftp().MakeDirectory(folder));
    if (ok && boolMade_p)
        *boolMade_p = true;
    if (ok)
        return 1;
    const QString &text = m_failure.description;
    if (text.contains(QStringLiteral("550")) || text.contains(QStringLiteral("553"))) {
        MError::SetErrorIfClear(WriteRefused, L(txtTheFolder) + QLatin1Char(' ') + strFolderName_p + QLatin1Char(' ') + L(txtNotCreated), position);
        return WriteRefused;
    }
    return Fail(position);
}

// ---------------------------------------------------------------- status window

void CFTPS::SetBatch(bool boolBatch_p, double dblTotal_p)
{
    m_boolBatch = boolBatch_p;
    m_dblBatchTotal = dblTotal_p;
    m_dblBatchPosition = 0;
}

void CFTPS::OnStartTransfer()
{
    if (!m_boolRunning || m_boolHideDialog || !m_frmTransferStatus)
        return;
    TransferStatusWindow &window = *m_frmTransferStatus;
    if (m_boolBatch) {
        window.SetCaption(L(txtBatchCaption));
        window.SetStatusLine(L(txtSendingFile) + m_strTransferName);
        if (m_dblBatchTotal >= kBatchThreshold && !window.IsVisible())
            window.ShowWindow();
        return;
    }
    window.SetCaption(L(txtCaption));
    window.SetStatusLine(m_strTransferName);
    window.SetPercentage(L(txtHundredOf));
    window.SetProgress(0);
    if (m_dblTransferSize >= kSingleFileThreshold)
        window.ShowWindow();
}

// BytesTransferred counts the bytes of this transfer so far.
void CFTPS::OnTransfer(qint64 BytesTransferred, const QByteArray &Text)
{
    if (!m_boolRunning)
        return;
    if (m_boolCollect)
        m_strReceiveBuffer.append(Text);
    if (m_boolHideDialog || !m_frmTransferStatus)
        return;
    TransferStatusWindow &window = *m_frmTransferStatus;
    const double bytes = static_cast<double>(BytesTransferred);
    const int maximum = window.ProgressMaximum();
    if (m_boolBatch) {
        if (m_dblBatchTotal < kBatchThreshold)
            return;
        // The position runs ahead by a share of each event and holds back
        // short of the total, so the bar never shows done before the last
        // file has ended.
        m_dblBatchPosition += 0.4 * bytes;
        if (m_dblBatchPosition >= m_dblBatchTotal)
            m_dblBatchPosition = m_dblBatchTotal - 3000;
        window.SetStatusLine(L(txtDataSent) + QLatin1Char(' ')
                             + QString::number(qRound64(m_dblBatchPosition / 1000)) + QLatin1Char(' ')
                             + L(txtBy) + QLatin1Char(' ') + QString::number(qRound64(m_dblBatchTotal / 1000))
                             + QLatin1Char(' ') + L(txtKilobytes));
        window.SetProgress(qMax(1, static_cast<int>(maximum * m_dblBatchPosition / (m_dblBatchTotal + 1))));
        return;
    }
    if (m_dblTransferSize < kSingleFileThreshold)
        return;
    window.SetStatusLine(L(txtDataSent) + QLatin1Char(' ') + QString::number(qRound64(bytes / 1000))
                         + QLatin1Char(' ') + L(txtBy) + QLatin1Char(' ')
                         + QString::number(qRound64(m_dblTransferSize / 1000)) + QLatin1Char(' ')
                         + L(txtKilobytes));
    window.SetProgress(static_cast<int>(maximum * bytes / m_dblTransferSize));
    window.SetPercentage(QString::number(static_cast<int>(100 * bytes / m_dblTransferSize))
                         + L(txtPercentOf));
}

void CFTPS::OnEndTransfer()
{
    if (m_boolRunning && !m_boolBatch && m_frmTransferStatus && m_frmTransferStatus->IsVisible())
        m_frmTransferStatus->HideWindow();
}

// Runs inside the transfer's message pumping: the question, then Abort,
// the one call into the control allowed from here. The running call then
// fails with the control's error.
void CFTPS::OnCancel()
{
    const long answer = UserQuestions::MsgBox(
        L(txtAbortQuestion),
        UserQuestions::vbYesNo | UserQuestions::vbQuestion | UserQuestions::vbDefaultButton2,
        L(txtAbortTitle));
    if (answer == UserQuestions::vbYes)
        Ftp().Abort();
    else if (m_frmTransferStatus)
        m_frmTransferStatus->ClearCancelPressed();
}
