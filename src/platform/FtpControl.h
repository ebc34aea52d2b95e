#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QIODevice>
#include <QObject>
#include <QString>
#include <QList>
#include <QSet>
#include <QStringList>

#include "WorkerThread.h"

#include <atomic>
#include <functional>

typedef void CURL;

// The FTP control: one persistent control connection per object, blocking
// calls that keep the caller's event loop running, events on the caller's
// thread. Results are 1 for success and 0 for failure; the failure is then in
// ErrorNumber/ErrorDescription/ErrorSource.
class FtpControl : public QObject
{
    Q_OBJECT

public:
    explicit FtpControl(QObject *parent = nullptr);
    ~FtpControl() override;

    // Read at Logon (and by libcurl when it has to reconnect).
    QString RemoteHost;
    int RemotePort = 21;
    QString User;
    QString Password;
    bool Passive = true;
    // Seconds a reply may take, and a transfer may move no byte, before the
    // call fails with ControlError::TimedOut; also the limit of a connect.
    // 0 lets a call wait as long as the server takes.
    int Timeout = 0;
    // When above 0, no call waits longer than this, whatever Timeout says:
    // set for a while by work that has only so much time left.
    int TimeoutLimit = 0;
    bool Overwrite = false;
    // 0 default and 2 binary move the bytes unchanged: a UNIX server keeps a
    // file as it was sent, so a page comes back byte for byte. 1 is ASCII:
    // TYPE A on the wire with LF line ends in the local file or event text.
    int TransferMode = 0;
    int FirewallType = 0; // 1 tunnel (HTTP CONNECT), 2 SOCKS4, 3 SOCKS5
    QString FirewallHost;
    int FirewallPort = 0;
    QString FirewallUser;
    QString FirewallPassword;
    QString LocalFile;
    QString RemoteFile; // a name within RemotePath, or a mask for a listing
    // Explicit TLS on both channels with the server's certificate checked;
    // TlsCaFile adds a certificate authority to the system's.
    bool UseTls = false;
    QString TlsCaFile;
    // Implicit TLS: the connection is TLS from its first byte (the ftps
    // scheme, port 990 as a rule), data connections too.
    bool ImplicitTls = false;
    // "sha256//<base64>" of the public key of a certificate the user chose
    // to trust: the key is compared during the handshake, before the login,
    // instead of the system's verification, which such a certificate fails.
    QString TlsPinnedKey;
    // SFTP instead of FTP (the sftp scheme, port 22 as a rule), through
    // libcurl's SSH layer, with the same calls, events and error numbers.
    // The server's host key is checked against the user's OpenSSH file
    // (SshKnownHosts, only read) and the keys trusted in this program
    // (SshTrustedKeys, see SshHostKeys); any other key fails the logon with
    // ControlError::HostKeyUnknown or HostKeyChanged, before the password
    // is sent. With SshPrivateKey set the login is by that key file, and
    // Password is its passphrase (and the password, where the server asks
    // one instead).
    bool Sftp = false;
    QString SshKnownHosts;
    QString SshTrustedKeys;
    QString SshPrivateKey;
    // The host key the server showed at the last connection: its type
    // ("ssh-ed25519") and its SHA-256 fingerprint ("SHA256:<base64>").
    QString HostKeyType() const { return m_hostKeyType; }
    QString HostKeyFingerprint() const { return m_hostKeyFingerprint; }

    bool Connected() const { return m_connected; }
    bool Idle() const { return !m_busy; }
    QString RemotePath() const { return m_path; }
    // Changes folder (relative to the current one, or from the root);
    // nothing goes to the server when the connection already stands there.
    long SetRemotePath(const QString &path);
    // Takes the folder for the current one without asking the server; the
    // next call that needs it goes there.
    void SetRemotePathUnchecked(const QString &path);
    long Command(const QString &command);
    qint64 FileSize() const { return m_fileSize; }
    // The size of a file of the current folder, from the server's SIZE.
    long QuerySize(const QString &name, qint64 &size);
    QDateTime FileTime() const { return m_fileTime; }
    // The current folder's entries as DirList events, from the server's
    // STAT reply on the control connection; fails where the server gives
    // none (the caller then uses ListDirectoryLong).
    long ListByStatus();
    // ListByStatus, else ListDirectoryLong.
    long ListEntries();

    long ErrorNumber() const { return m_errorNumber; }
    QString ErrorDescription() const { return m_errorDescription; }
    QString ErrorSource() const { return QStringLiteral("FtpControl"); }

    long Logon();
    long Logoff();
    long ListDirectory();
    long ListDirectoryLong();
    // The listing by MLSD, for servers that offer it (FEAT names MLST): the
    // same DirList events, from a form that needs no guessing.
    long ListDirectoryMachine();
    long Upload();
    long Download();
    // The file's bytes go straight into the device, written on the worker
    // thread; the Transfer events tell only the count. Meant for a batch
    // (RunBatch), whose caller then owns the device on that thread too.
    long Download(QIODevice &into);
    // Runs a series of calls on the control's worker thread in one piece:
    // the calls inside follow one another without a hop to the caller's
    // thread and back, which on a batch of small files costs more than
    // their own work. The caller's thread keeps its event loop meanwhile
    // and gets the events as usual; no call from it runs until the series
    // is over (it fails as busy). An Abort in between ends the series'
    // next call at once.
    void RunBatch(const std::function<void()> &calls);
    // An Abort was asked of the series running now, or of the call.
    bool AbortAsked() const { return m_abort; }
    // Ends the running call with an error; the call returns at once after.
    void Abort();
    // Ends the running call of every control: the Cancel of a wait dialog,
    // which does not know which client is waiting. Only the calls running
    // now are ended; the caller's next call (a repair, a put-back) runs.
    static void AbortRunning();
    // Counts the calls of AbortRunning: a multi-step operation that notes it
    // at its start sees a Cancel that came between two of its calls.
    static quint64 AbortSerial();
    void Interrupt();
    void DoEvents();
    long DeleteFile(const QString &name);
    // RNFR and RNTO on one command line each, with nothing between them.
    long Rename(const QString &from, const QString &to);
    long MakeDirectory(const QString &name);
    long RemoveDirectory(const QString &name);

signals:
    void DirList(const QString &DirEntry, const QString &FileName, bool IsDir, qint64 FileSize,
                 const QDateTime &FileTime);
    // Direction 0: a line sent to the server; 1: a line received.
    void PITrail(int Direction, const QString &Message);
    void StartTransfer();
    void EndTransfer();
    void Transfer(qint64 BytesTransferred, const QByteArray &Text);

private:
    struct Call;
    friend struct FtpCallbacks;

    long perform(Call &call, const QString &url, const std::function<void(CURL *)> &configure);
    void setCommonOptions(Call &call, const QString &url);
    void setTlsOptions();
    void setSshOptions(Call &call);
    long sftpCommand(const QString &command);
    long sftpStat(const QString &action, const QString &name, bool time, qint64 &size);
    int sftpAnswer(Call &call, int code);
    long confirmSftpRefusal();
    QString base() const;
    long finish(Call &call, int code);
    static long tlsFailure(int code);
    QString firewallFailure(const Call &call) const;
    void rememberType(const Call &call);
    long prepareType(bool ascii, const QString &file);
    long fail(long number, const QString &description);
    long sendQuoted(const QStringList &commands, Call &call);
    long list(bool longForm, bool machine = false);
    QString urlFor(const QString &folder, const QString &file = QString()) const;
    QString folderPath(const QString &folder) const;
    QString resolvedPath(const QString &path) const;
    void post(std::function<void()> event);
    void announce(void (FtpControl::*signal)());
    long download(Call &call);
    bool onWorker() const { return m_worker.IsCurrent(); }
    void resetHandle();
    int run();
    static bool NamesASocket(void *multi);

    static QList<FtpControl *> &instances();
    static quint64 s_abortSerial;
    // Log-ons the server refused in this run of the program, by a digest of
    // host, port, user and password: they are never tried again, as servers
    // lock an account after a few failed log-ons. Calls of a series run on
    // a worker thread while other controls log on: hence the lock.
    static bool logonRefused(const QByteArray &key);
    static void refuseLogon(const QByteArray &key);
    QByteArray logonKey() const;

    // Every call of the control runs on this one thread.
    WorkerThread m_worker;
    CURL *m_curl = nullptr;
    void *m_multi = nullptr; // holds the open connection between calls
    bool m_connected = false;
    long m_newConnections = 0; // connections the last call had to open
    bool m_statusRefused = false; // STAT gives no listing on this connection
    char m_type = 0; // the connection's transfer type, 'A' or 'I'; 0 unknown
    std::atomic<bool> m_busy{false};
    std::atomic<bool> m_batch{false}; // a RunBatch series is running
    std::atomic<bool> m_abort{false};
    QString m_path;
    qint64 m_fileSize = 0;
    QDateTime m_fileTime;
    long m_errorNumber = 0;
    QString m_errorDescription;
    QString m_hostKeyType;
    QString m_hostKeyFingerprint;
};
