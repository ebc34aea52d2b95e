#include "FtpControl.h"

#include "CurlErrorMap.h"
#include "FirewallFailure.h"
#include "FtpListParser.h"
#include "MlsdParser.h"
#include "SftpCommands.h"
#include "SshHostKeys.h"
#include "TraceScrubber.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QMetaMethod>
#include <QPointer>
#include <QRegularExpression>
#include <QSaveFile>
#include <QUrl>

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include <sys/select.h>

// The state of one call, shared with libcurl's callbacks on the worker thread.
struct FtpControl::Call
{
    FtpControl *self = nullptr;
    bool ascii = false;
    bool deliverData = true;      // Transfer events carry the data
    bool tracing = false;         // someone listens to the protocol's lines
    bool listing = false;
    bool longListing = false;
    bool machineListing = false;  // MLSD: facts and a name on each line
    bool skippingLine = false;    // the rest of an over-long listing line
    std::unique_ptr<QSaveFile> saveFile; // the local file of a Download by name
    QIODevice *target = nullptr;  // where a Download's bytes go
    std::unique_ptr<QFile> source;     // the local file of an Upload
    QByteArray pending;           // a listing line not yet ended
    bool pendingCr = false;       // ASCII download: a CR at the end of a chunk
    qint64 bytes = 0;
    bool started = false;
    bool startUnsaid = false;     // started, with no bytes sent on yet
    bool dataPhase = false;       // a data connection was asked for
    QString lastCommand;
    // The transfer type the connection is left in, as far as this call set
    // it: a login starts a connection without one, a TYPE command sets it.
    bool typeChanged = false;
    char type = 0;
    int code = 0;                 // libcurl's result
    QString errorReply;           // the last reply of 400 and above
    QString firstErrorReply;      // the first reply of 400 and above
    qint64 sizeReply = -1;        // the number of the last 213 reply (SIZE)
    QString lastPwd;              // the folder of the last 257 reply
    QByteArray replyBuffer;
    char detail[CURL_ERROR_SIZE] = {0};
    long osErrno = 0;
    QDateTime now = QDateTime::currentDateTime(); // dates the entries of a listing
    curl_slist *quote = nullptr;  // raw commands sent before the call's own
    bool statusListing = false;   // the entries of a STAT reply are wanted
    QList<FtpListEntry> statusEntries;
    // SFTP: what the call does, shown in the trail as the line sent, and
    // the reply shown when it worked (SFTP has no reply lines of its own).
    QString sftpAction;
    QString sftpSuccess;
    // An HTTP tunnel's last CONNECT and the proxy's answer to it.
    QString connectTarget;
    QString connectReply;
    long socksError = 0;          // libcurl's CURLproxycode of the call
    QString trustedKey;           // the fingerprint trusted in this program
    enum { KeyFine, KeyUnknown, KeyChanged } hostKey = KeyFine;
    QString keyType;
    QString keyFingerprint;
    QRegularExpression mask;      // the names a listing keeps; SFTP lists all
    bool folderLookup = false;    // a folder is looked up: its time says it is there

    ~Call() { curl_slist_free_all(quote); }
};

// libcurl's callbacks: they run on the worker thread and only post events.
struct FtpCallbacks
{
    // The start goes out with the first bytes, in one event: each event
    // wakes the caller's thread, and a small file has one chunk.
    static void started(FtpControl::Call &call)
    {
        if (call.started)
            return;
        call.started = true;
        call.startUnsaid = true;
    }

    static void transferred(FtpControl::Call &call, const QByteArray &text)
    {
        call.bytes += text.size();
        FtpControl *self = call.self;
        const qint64 total = call.bytes;
        const QByteArray shown = call.deliverData ? text : QByteArray();
        const bool first = std::exchange(call.startUnsaid, false);
        self->post([self, first, total, shown] {
            if (first)
                emit self->StartTransfer();
            emit self->Transfer(total, shown);
        });
    }

    static QByteArray fromAscii(FtpControl::Call &call, const char *data, size_t size)
    {
        QByteArray out;
        out.reserve(qsizetype(size) + 1);
        if (call.pendingCr) {
            if (size == 0 || data[0] != '\n')
                out.append('\r');
            call.pendingCr = false;
        }
        for (size_t i = 0; i < size; ++i) {
            if (data[i] == '\r') {
                if (i + 1 == size) {
                    call.pendingCr = true;
                    continue;
                }
                if (data[i + 1] == '\n')
                    continue;
            }
            out.append(data[i]);
        }
        return out;
    }

    // Entries go to the caller in one event per chunk received: a folder of
    // thousands of files must not cost thousands of cross-thread events.
    static void listLines(FtpControl::Call &call, const char *data, size_t size, bool last)
    {
        call.pending.append(data, qsizetype(size));
        QList<FtpListEntry> entries;
        qsizetype start = 0;
        for (;;) {
            qsizetype end = call.pending.indexOf('\n', start);
            if (end < 0)
                break;
            if (!call.skippingLine)
                listLine(call, call.pending.mid(start, end - start), entries);
            call.skippingLine = false;
            start = end + 1;
        }
        call.pending.remove(0, start);
        cutLongLine(call, entries);
        if (last && !call.pending.isEmpty()) {
            listLine(call, call.pending, entries);
            call.pending.clear();
        }
        if (entries.isEmpty())
            return;
        FtpControl *self = call.self;
        self->post([self, entries] {
            for (const FtpListEntry &entry : entries) {
                self->m_fileSize = entry.size;
                self->m_fileTime = entry.time;
                emit self->DirList(entry.entry, entry.fileName, entry.isDir, entry.size, entry.time);
            }
        });
    }

    // A line that goes on past any real name is not kept whole: its start
    // goes to the caller, who refuses it by its length, and the rest up to
    // the next line end is dropped.
    static void cutLongLine(FtpControl::Call &call, QList<FtpListEntry> &entries)
    {
        if (call.pending.size() <= FtpListParser::kLongestLine)
            return;
        if (!call.skippingLine) {
            FtpListEntry entry;
            entry.entry = FtpListParser::decodeLine(call.pending.left(FtpListParser::kLongestLine + 1));
            entries.append(entry);
        }
        call.skippingLine = true;
        call.pending.clear();
    }

    static void listLine(FtpControl::Call &call, QByteArray line, QList<FtpListEntry> &entries)
    {
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.isEmpty())
            return;
        FtpListEntry entry;
        const QString text = FtpListParser::decodeLine(line);
        if (call.machineListing) {
            if (!MlsdParser::parseLine(text, entry))
                return;
        } else if (call.longListing) {
            if (!FtpListParser::parseLine(text, entry, call.now))
                return;
        } else {
            entry.entry = text;
            entry.fileName = text;
        }
        // An SFTP folder lists itself and its parent, and has no server-side
        // mask: both are left out here, as an FTP server leaves them out.
        if (call.self->Sftp
            && (entry.fileName == QLatin1String(".") || entry.fileName == QLatin1String("..")
                || (call.mask.isValid() && !call.mask.pattern().isEmpty() && !call.mask.match(entry.fileName).hasMatch())))
            return;
        entries.append(entry);
    }

    static size_t write(char *data, size_t, size_t size, void *user)
    {
        auto &call = *static_cast<FtpControl::Call *>(user);
        if (call.self->m_abort)
            return 0;
        if (call.listing) {
            listLines(call, data, size, false);
            return size;
        }
        started(call);
        const QByteArray text = call.ascii ? fromAscii(call, data, size)
                                           : QByteArray(data, qsizetype(size));
        if (call.target && call.target->write(text) != text.size())
            return 0;
        transferred(call, text);
        return size;
    }

    static size_t discard(char *, size_t, size_t size, void *)
    {
        return size;
    }

    static size_t read(char *buffer, size_t, size_t size, void *user)
    {
        auto &call = *static_cast<FtpControl::Call *>(user);
        if (call.self->m_abort)
            return CURL_READFUNC_ABORT;
        started(call);
        // In ASCII mode a lone LF goes out as CRLF, so reading leaves room.
        const qint64 want = call.ascii ? qint64(size / 2) : qint64(size);
        QByteArray chunk = call.source->read(want);
        if (chunk.isEmpty())
            return 0;
        QByteArray wire = chunk;
        if (call.ascii) {
            wire.clear();
            for (qsizetype i = 0; i < chunk.size(); ++i) {
                if (chunk[i] == '\n' && (i == 0 ? !call.pendingCr : chunk[i - 1] != '\r'))
                    wire.append('\r');
                wire.append(chunk[i]);
            }
            call.pendingCr = chunk.endsWith('\r');
        }
        memcpy(buffer, wire.constData(), size_t(wire.size()));
        transferred(call, chunk);
        return size_t(wire.size());
    }

    static int progress(void *user, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
    {
        auto &call = *static_cast<FtpControl::Call *>(user);
        return call.self->m_abort ? 1 : 0;
    }

    static void trail(FtpControl::Call &call, int direction, const QString &line)
    {
        if (line.isEmpty())
            return;
        noteTunnel(call, direction, line);
        if (direction == 0) {
            call.lastCommand = line.section(QLatin1Char(' '), 0, 0).toUpper();
            noteType(call, line);
            static const QStringList dataCommands = {QStringLiteral("PASV"), QStringLiteral("EPSV"),
                                                     QStringLiteral("PORT"), QStringLiteral("EPRT")};
            if (dataCommands.contains(call.lastCommand))
                call.dataPhase = true;
        } else {
            reply(call, line);
        }
        // Each event wakes the caller's thread, which a batch of small
        // files would pay several times per file for a trace nobody reads.
        if (!call.tracing)
            return;
        // The trace may be shown or logged: no password, proxy credentials
        // (an HTTP tunnel's CONNECT comes through here too) or cookie in it.
        const QString shown = TraceScrubber::scrub(line);
        FtpControl *self = call.self;
        self->post([self, direction, shown] { emit self->PITrail(direction, shown); });
    }

    // FTP has no HTTP lines of its own: those in the trail are a tunnel's.
    static void noteTunnel(FtpControl::Call &call, int direction, const QString &line)
    {
        if (direction == 0 && line.startsWith(QLatin1String("CONNECT ")))
            call.connectTarget = line.section(QLatin1Char(' '), 1, 1);
        else if (direction == 1 && line.startsWith(QLatin1String("HTTP/")))
            call.connectReply = line;
    }

    // A login starts a connection in no transfer type; TYPE sets one.
    static void noteType(FtpControl::Call &call, const QString &line)
    {
        if (call.lastCommand == QLatin1String("USER")) {
            call.typeChanged = true;
            call.type = 0;
        } else if (call.lastCommand == QLatin1String("TYPE")) {
            const QString type = line.section(QLatin1Char(' '), 1, 1);
            call.typeChanged = true;
            call.type = type.isEmpty() ? 0 : type.at(0).toLatin1();
        }
    }

    static void reply(FtpControl::Call &call, const QString &line)
    {
        static const QRegularExpression final(QStringLiteral("^(\\d{3}) "));
        const QRegularExpressionMatch m = final.match(line);
        if (!m.hasMatch()) {
            statusLine(call, line);
            return;
        }
        const int code = m.captured(1).toInt();
        if (code >= 400) {
            call.errorReply = line;
            if (call.firstErrorReply.isEmpty())
                call.firstErrorReply = line;
        }
        if (code == 213) {
            bool ok = false;
            const qint64 size = line.mid(4).trimmed().toLongLong(&ok);
            call.sizeReply = ok ? size : -1;
        }
        if (code == 257) {
            static const QRegularExpression quoted(QStringLiteral("^257 \"((?:[^\"]|\"\")*)\""));
            const QRegularExpressionMatch q = quoted.match(line);
            if (q.hasMatch())
                call.lastPwd = q.captured(1).replace(QStringLiteral("\"\""), QStringLiteral("\""));
        }
    }

    // A line inside a multi-line reply of STAT: an entry of the listing,
    // as LIST would give it (some servers indent it by a space).
    static void statusLine(FtpControl::Call &call, const QString &line)
    {
        static const QRegularExpression opening(QStringLiteral("^\\d{3}-"));
        if (!call.statusListing || opening.match(line).hasMatch())
            return;
        FtpListEntry entry;
        const QString text = line.startsWith(QLatin1Char(' ')) ? line.mid(1) : line;
        if (FtpListParser::parseLine(text, entry, call.now) && entry.fileName != QLatin1String(".")
            && entry.fileName != QLatin1String(".."))
            call.statusEntries.append(entry);
    }

    static QString keyTypeName(int type)
    {
        switch (type) {
        case CURLKHTYPE_RSA1: return QStringLiteral("rsa1");
        case CURLKHTYPE_RSA: return QStringLiteral("ssh-rsa");
        case CURLKHTYPE_DSS: return QStringLiteral("ssh-dss");
        case CURLKHTYPE_ECDSA: return QStringLiteral("ecdsa-sha2");
        case CURLKHTYPE_ED25519: return QStringLiteral("ssh-ed25519");
        default: return QStringLiteral("unknown");
        }
    }

    // The server's host key, with what the user's known_hosts says of it.
    // A key that file does not know is taken only when it is the one the
    // user trusted in this program; the logon fails before any password.
    static int hostKey(CURL *, const curl_khkey *, const curl_khkey *found, curl_khmatch match, void *user)
    {
        auto &call = *static_cast<FtpControl::Call *>(user);
        const QByteArray raw = found->len ? QByteArray(found->key, qsizetype(found->len))
                                          : QByteArray::fromBase64(QByteArray(found->key));
        call.keyType = keyTypeName(found->keytype);
        call.keyFingerprint = QStringLiteral("SHA256:")
                              + QString::fromLatin1(QCryptographicHash::hash(raw, QCryptographicHash::Sha256)
                                                        .toBase64(QByteArray::OmitTrailingEquals));
        if (match == CURLKHMATCH_OK)
            return CURLKHSTAT_FINE;
        if (match == CURLKHMATCH_MISSING && call.trustedKey == call.keyFingerprint)
            return CURLKHSTAT_FINE;
        const bool known = match == CURLKHMATCH_MISMATCH || !call.trustedKey.isEmpty();
        call.hostKey = known ? FtpControl::Call::KeyChanged : FtpControl::Call::KeyUnknown;
        return CURLKHSTAT_REJECT;
    }

    static int debug(CURL *, curl_infotype type, char *data, size_t size, void *user)
    {
        if (type != CURLINFO_HEADER_IN && type != CURLINFO_HEADER_OUT)
            return 0;
        auto &call = *static_cast<FtpControl::Call *>(user);
        const int direction = type == CURLINFO_HEADER_OUT ? 0 : 1;
        const QByteArray text(data, qsizetype(size));
        for (const QByteArray &line : text.split('\n')) {
            QByteArray clean = line;
            if (clean.endsWith('\r'))
                clean.chop(1);
            trail(call, direction, QString::fromUtf8(clean));
        }
        return 0;
    }
};

FtpControl::FtpControl(QObject *parent)
    : QObject(parent)
{
    SshKnownHosts = QDir::homePath() + QStringLiteral("/.ssh/known_hosts");
    SshTrustedKeys = SshHostKeys::DefaultFile();
    resetHandle();
    instances().append(this);
}

FtpControl::~FtpControl()
{
    instances().removeOne(this);
    // Closing the connection says QUIT to the server.
    curl_multi_cleanup(static_cast<CURLM *>(m_multi));
    curl_easy_cleanup(m_curl);
}

void FtpControl::resetHandle()
{
    if (m_multi)
        curl_multi_cleanup(static_cast<CURLM *>(m_multi));
    if (m_curl)
        curl_easy_cleanup(m_curl);
    m_multi = curl_multi_init();
    m_curl = curl_easy_init();
    m_type = 0;
    m_statusRefused = false;
}

// Drives the call through the object's own multi handle, which keeps the
// control connection open after the call. libcurl does not always name a
// socket to wait on: between the server's answer to EPSV/PASV and the start
// of the data connection it names none, and its own wait would then sleep up
// to a second. So when it names none, the wait is a short sleep that doubles
// from 20 microseconds up to 1 ms: on a fast road (a server on the same
// machine or the same network) that gap is over in tens of microseconds, and
// a fixed 1 ms there cost a tenth of the time of a small file. When it names
// a socket, the wait ends as soon as that socket is ready, and is capped at
// 1 ms all the same for the sockets it does not name while data flows.
int FtpControl::run()
{
    auto *multi = static_cast<CURLM *>(m_multi);
    curl_multi_add_handle(multi, m_curl);
    int running = 1;
    int blindWaits = 0;
    while (running) {
        if (curl_multi_perform(multi, &running) != CURLM_OK)
            break;
        if (!running)
            break;
        if (NamesASocket(multi)) {
            blindWaits = 0;
            curl_multi_poll(multi, nullptr, 0, 1, nullptr);
        } else {
            std::this_thread::sleep_for(std::chrono::microseconds(std::min(20 << std::min(blindWaits++, 6), 1000)));
        }
    }
    CURLcode code = CURLE_FAILED_INIT;
    int left = 0;
    while (CURLMsg *message = curl_multi_info_read(multi, &left))
        if (message->msg == CURLMSG_DONE && message->easy_handle == m_curl)
            code = message->data.result;
    curl_multi_remove_handle(multi, m_curl);
    return code;
}

// Whether libcurl names a socket it waits on. A socket above the select
// limit is not named: the call then falls back to the short sleeps, which
// are never longer than the capped wait.
bool FtpControl::NamesASocket(void *multi)
{
    fd_set read, write, error;
    FD_ZERO(&read);
    FD_ZERO(&write);
    FD_ZERO(&error);
    int highest = -1;
    curl_multi_fdset(static_cast<CURLM *>(multi), &read, &write, &error, &highest);
    return highest >= 0;
}

void FtpControl::post(std::function<void()> event)
{
    QPointer<FtpControl> guard(this);
    QMetaObject::invokeMethod(
        this, [guard, event] { if (guard) event(); }, Qt::QueuedConnection);
}

// The signals are emitted on the caller's thread, whichever thread the
// call runs on: their receivers are windows.
void FtpControl::announce(void (FtpControl::*signal)())
{
    if (!onWorker()) {
        emit(this->*signal)();
        return;
    }
    post([this, signal] { emit(this->*signal)(); });
}

void FtpControl::RunBatch(const std::function<void()> &calls)
{
    m_abort = false;
    m_batch = true;
    m_worker.run(calls);
    m_batch = false;
    m_abort = false;
}

QString FtpControl::folderPath(const QString &folder) const
{
    QString path = folder.isEmpty() ? QStringLiteral("/") : folder;
    if (!path.startsWith(QLatin1Char('/')))
        path.prepend(QLatin1Char('/'));
    return path;
}

// Every URL names its folder from the root ("%2F" is the leading slash), so
// libcurl changes to it with one CWD whatever the login folder is, and skips
// the CWD when the previous call already stood there.
QString FtpControl::urlFor(const QString &folder, const QString &file) const
{
    // An SFTP URL's path is taken from the root as it stands.
    QString url = base() + (Sftp ? QString() : QStringLiteral("%2F"));
    const QStringList parts = folderPath(folder).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QStringList encoded;
    for (const QString &part : parts)
        encoded << QString::fromLatin1(QUrl::toPercentEncoding(part));
    url += encoded.join(QLatin1Char('/'));
    if (!encoded.isEmpty())
        url += QLatin1Char('/');
    if (!file.isEmpty())
        url += QString::fromLatin1(QUrl::toPercentEncoding(file));
    return url;
}

void FtpControl::setCommonOptions(Call &call, const QString &url)
{
    CURL *h = m_curl;
    curl_easy_setopt(h, CURLOPT_URL, url.toUtf8().constData());
    curl_easy_setopt(h, CURLOPT_USERNAME, User.toUtf8().constData());
    curl_easy_setopt(h, CURLOPT_PASSWORD, Password.toUtf8().constData());
    curl_easy_setopt(h, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(h, CURLOPT_FTP_FILEMETHOD, long(CURLFTPMETHOD_SINGLECWD));
    curl_easy_setopt(h, CURLOPT_ERRORBUFFER, call.detail);
    curl_easy_setopt(h, CURLOPT_VERBOSE, 1L);
    curl_easy_setopt(h, CURLOPT_DEBUGFUNCTION, &FtpCallbacks::debug);
    curl_easy_setopt(h, CURLOPT_DEBUGDATA, &call);
    curl_easy_setopt(h, CURLOPT_WRITEFUNCTION, &FtpCallbacks::write);
    curl_easy_setopt(h, CURLOPT_WRITEDATA, &call);
    curl_easy_setopt(h, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(h, CURLOPT_XFERINFOFUNCTION, &FtpCallbacks::progress);
    curl_easy_setopt(h, CURLOPT_XFERINFODATA, &call);
    curl_easy_setopt(h, CURLOPT_TRANSFERTEXT, call.ascii ? 1L : 0L);
    if (!Passive)
        curl_easy_setopt(h, CURLOPT_FTPPORT, "-");
    const int timeout = TimeoutLimit > 0 && (Timeout <= 0 || Timeout > TimeoutLimit) ? TimeoutLimit : Timeout;
    if (timeout > 0) {
        curl_easy_setopt(h, CURLOPT_CONNECTTIMEOUT, long(timeout));
        curl_easy_setopt(h, CURLOPT_SERVER_RESPONSE_TIMEOUT, long(timeout));
        curl_easy_setopt(h, CURLOPT_LOW_SPEED_LIMIT, 1L);
        curl_easy_setopt(h, CURLOPT_LOW_SPEED_TIME, long(timeout));
    }
    setTlsOptions();
    setSshOptions(call);
    static const char *const schemes[] = {nullptr, "http", "socks4", "socks5h"};
    if (FirewallType >= 1 && FirewallType <= 3) {
        const QString proxy = QStringLiteral("%1://%2:%3")
                                  .arg(QLatin1String(schemes[FirewallType]), FirewallHost)
                                  .arg(FirewallPort);
        curl_easy_setopt(h, CURLOPT_PROXY, proxy.toUtf8().constData());
        // The firewall set here holds for every host, whatever no_proxy says.
        curl_easy_setopt(h, CURLOPT_NOPROXY, "");
        curl_easy_setopt(h, CURLOPT_HTTPPROXYTUNNEL, FirewallType == 1 ? 1L : 0L);
        if (!FirewallUser.isEmpty()) {
            curl_easy_setopt(h, CURLOPT_PROXYUSERNAME, FirewallUser.toUtf8().constData());
            curl_easy_setopt(h, CURLOPT_PROXYPASSWORD, FirewallPassword.toUtf8().constData());
        }
    } else {
        curl_easy_setopt(h, CURLOPT_PROXY, "");
    }
}

// Both channels are protected (PROT P) or the call fails: there is no
// falling back to plain FTP. The data connection resumes the TLS session of
// the control connection, as many servers demand; libcurl's session cache
// does this and is on by default (curl_easy_reset keeps it on). AUTH TLS is
// asked for by name: no AUTH SSL first.
void FtpControl::setTlsOptions()
{
    if (!UseTls && !ImplicitTls)
        return;
    CURL *h = m_curl;
    curl_easy_setopt(h, CURLOPT_USE_SSL, long(CURLUSESSL_ALL));
    curl_easy_setopt(h, CURLOPT_FTPSSLAUTH, long(CURLFTPAUTH_TLS));
    // TLS 1.2 exactly: under 1.3 the server hands out a new session ticket
    // on each data connection, and libcurl loses the one it keeps when it
    // closes an upload's connection, so the next data connection starts a
    // session of its own, which servers that demand the resumption refuse.
    // Under 1.2 every data connection resumes the login's session.
    curl_easy_setopt(h, CURLOPT_SSLVERSION, long(CURL_SSLVERSION_TLSv1_2) | long(CURL_SSLVERSION_MAX_TLSv1_2));
    if (!TlsCaFile.isEmpty())
        curl_easy_setopt(h, CURLOPT_CAINFO, TlsCaFile.toUtf8().constData());
    if (!TlsPinnedKey.isEmpty()) {
        // The pinned key stands in for the verification, which a
        // self-signed certificate fails; a different key fails the handshake.
        curl_easy_setopt(h, CURLOPT_SSL_VERIFYPEER, 0L);
        curl_easy_setopt(h, CURLOPT_SSL_VERIFYHOST, 0L);
        curl_easy_setopt(h, CURLOPT_PINNEDPUBLICKEY, TlsPinnedKey.toLatin1().constData());
    }
}

// The key callback is always set: without it libcurl would take any key.
// Password logins are tried by both of SSH's ways (keyboard-interactive is
// how many servers ask for a password); a key file is tried first.
void FtpControl::setSshOptions(Call &call)
{
    if (!Sftp)
        return;
    CURL *h = m_curl;
    call.trustedKey = SshHostKeys(SshTrustedKeys).Trusted(RemoteHost, RemotePort);
    curl_easy_setopt(h, CURLOPT_SSH_KNOWNHOSTS, SshKnownHosts.toUtf8().constData());
    curl_easy_setopt(h, CURLOPT_SSH_KEYFUNCTION, &FtpCallbacks::hostKey);
    curl_easy_setopt(h, CURLOPT_SSH_KEYDATA, &call);
    long auth = CURLSSH_AUTH_PASSWORD | CURLSSH_AUTH_KEYBOARD;
    if (!SshPrivateKey.isEmpty()) {
        auth |= CURLSSH_AUTH_PUBLICKEY;
        curl_easy_setopt(h, CURLOPT_SSH_PRIVATE_KEYFILE, SshPrivateKey.toUtf8().constData());
        // The public key is worked out from the private one.
        curl_easy_setopt(h, CURLOPT_SSH_PUBLIC_KEYFILE, "");
        curl_easy_setopt(h, CURLOPT_KEYPASSWD, Password.toUtf8().constData());
    }
    curl_easy_setopt(h, CURLOPT_SSH_AUTH_TYPES, auth);
}

// The scheme, host and port of every URL of this control.
QString FtpControl::base() const
{
    if (Sftp)
        return QStringLiteral("sftp://%1:%2/").arg(RemoteHost).arg(RemotePort);
    const QString scheme = ImplicitTls ? QStringLiteral("ftps") : QStringLiteral("ftp");
    return QStringLiteral("%1://%2:%3/").arg(scheme, RemoteHost).arg(RemotePort);
}

long FtpControl::perform(Call &call, const QString &url,
                         const std::function<void(CURL *)> &configure)
{
    if (m_busy || (m_batch && !onWorker()))
        return fail(ControlError::Busy, QStringLiteral("Another call is running."));
    if (!Passive && FirewallType != 0)
        return fail(ControlError::FirewallRefused, FirewallFailure::ActiveModeRefused());
    if (logonRefused(logonKey())) {
        m_connected = false;
        return fail(ControlError::LoginRefused,
                    QStringLiteral("530 This user name and password were refused before; they are not tried again."));
    }
    m_busy = true;
    // In a series an Abort asked between two calls ends the next one.
    if (!m_batch)
        m_abort = false;
    m_errorNumber = 0;
    m_errorDescription.clear();
    call.self = this;
    call.tracing = isSignalConnected(QMetaMethod::fromSignal(&FtpControl::PITrail));
    // A reset keeps the open connection, so the next call reuses the login.
    curl_easy_reset(m_curl);
    setCommonOptions(call, url);
    configure(m_curl);
    if (Sftp)
        FtpCallbacks::trail(call, 0, call.sftpAction);
    CURLcode code = CURLE_OK;
    if (onWorker())
        code = CURLcode(run());
    else
        m_worker.run([this, &code] { code = CURLcode(run()); });
    if (Sftp)
        code = CURLcode(sftpAnswer(call, code));
    curl_easy_getinfo(m_curl, CURLINFO_NUM_CONNECTS, &m_newConnections);
    // Nothing of this call may be reached from the handle once it is over.
    long osErrno = 0;
    curl_easy_getinfo(m_curl, CURLINFO_OS_ERRNO, &osErrno);
    call.osErrno = osErrno;
    curl_easy_getinfo(m_curl, CURLINFO_PROXY_ERROR, &call.socksError);
    curl_easy_reset(m_curl);
    if (call.listing)
        FtpCallbacks::listLines(call, nullptr, 0, true);
    if (call.startUnsaid) // a file of no bytes
        announce(&FtpControl::StartTransfer);
    if (call.started)
        announce(&FtpControl::EndTransfer);
    m_busy = false;
    // Events the last callbacks posted reach the caller before the result.
    // In a series they reach it in their order while the series goes on.
    if (!onWorker())
        QCoreApplication::sendPostedEvents(this);
    call.code = code;
    rememberType(call);
    return finish(call, code);
}

// What libcurl now holds as the connection's transfer type. A call that
// failed in any other way than a missing file may have cost the connection:
// the type is then unknown.
void FtpControl::rememberType(const Call &call)
{
    if (call.code != CURLE_OK && call.code != CURLE_REMOTE_FILE_NOT_FOUND)
        m_type = 0;
    else if (call.typeChanged)
        m_type = call.type;
}

// libcurl sends the TYPE of a transfer after its PASV when the connection
// is not in that type yet, and the strictest servers refuse a transfer that
// does not follow its PASV at once. A call without a body asks for the type
// before anything else: libcurl then sends CWD, TYPE, SIZE and REST, and
// the transfer that follows finds the type set. The file named need not
// exist (a listing names none of its own); the SIZE of a missing one fails,
// which is all right here.
long FtpControl::prepareType(bool ascii, const QString &file)
{
    const char wanted = ascii ? 'A' : 'I';
    if (m_type == wanted)
        return 1;
    Call call;
    call.ascii = ascii;
    const QString name = file.isEmpty() ? QStringLiteral("kelda-type") : file;
    const long result = perform(call, urlFor(m_path, name), [](CURL *h) {
        curl_easy_setopt(h, CURLOPT_NOBODY, 1L);
        // What libcurl tells of the file (its size as a header) is no data
        // of the caller's.
        curl_easy_setopt(h, CURLOPT_WRITEFUNCTION, &FtpCallbacks::discard);
        curl_easy_setopt(h, CURLOPT_HEADERFUNCTION, &FtpCallbacks::discard);
    });
    // libcurl asks SIZE only once the type stands (it sends TYPE only when
    // the connection is in another one), so a file not found there is no
    // failure of the type, whether this call sent TYPE or not.
    if (result == 1 || call.code == CURLE_REMOTE_FILE_NOT_FOUND) {
        m_type = wanted;
        m_errorNumber = 0;
        m_errorDescription.clear();
        return 1;
    }
    return result;
}

long FtpControl::fail(long number, const QString &description)
{
    m_errorNumber = number;
    m_errorDescription = description;
    return 0;
}

// A failure of the TLS layer ends the session before any login.
long FtpControl::tlsFailure(int result)
{
    switch (CURLcode(result)) {
    case CURLE_PEER_FAILED_VERIFICATION: return ControlError::CertificateUntrusted;
    case CURLE_SSL_PINNEDPUBKEYNOTMATCH: return ControlError::CertificateChanged;
    case CURLE_USE_SSL_FAILED: return ControlError::TlsRefused;
    default: return 0;
    }
}

long FtpControl::finish(Call &call, int result)
{
    const auto code = CURLcode(result);
    if (code == CURLE_OK)
        return 1;
    if (m_abort) {
        // libcurl closes a connection whose call was ended under it.
        m_connected = false;
        return fail(ControlError::Aborted, QStringLiteral("Aborted by the caller."));
    }
    if (call.hostKey != Call::KeyFine) {
        m_connected = false;
        const long number = call.hostKey == Call::KeyUnknown ? ControlError::HostKeyUnknown : ControlError::HostKeyChanged;
        return fail(number, QStringLiteral("The host key of %1 (%2 %3) is not the one trusted.")
                                .arg(RemoteHost, call.keyType, call.keyFingerprint));
    }
    if (const QString firewall = firewallFailure(call); !firewall.isEmpty()) {
        // A refused data tunnel leaves the control connection standing.
        m_connected = m_connected && call.dataPhase;
        return fail(ControlError::FirewallRefused, firewall);
    }
    if (const long tls = tlsFailure(code)) {
        m_connected = false;
        return fail(tls, CurlErrorMap::describe(code, call.detail));
    }
    if (code == CURLE_LOGIN_DENIED) {
        m_connected = false;
        refuseLogon(logonKey());
        // A refused user name is the login refusal proper; a refused
        // password comes as a protocol failure that starts with the reply.
        const long number = call.lastCommand == QLatin1String("USER") ? ControlError::LoginRefused
                                                                      : ControlError::Protocol;
        return fail(number, call.errorReply.isEmpty() ? QStringLiteral("530 Login refused.")
                                                      : call.errorReply);
    }
    if (!call.errorReply.isEmpty())
        return fail(ControlError::Protocol, call.errorReply);
    if (Sftp && code == CURLE_SSH) {
        // The SSH session broke: the next call logs on afresh.
        m_connected = false;
        return fail(ControlError::NoConnection, CurlErrorMap::describe(code, call.detail));
    }
    const long osErrno = call.osErrno;
    const QString description = CurlErrorMap::describe(code, call.detail);
    if (code == CURLE_OPERATION_TIMEDOUT) {
        m_connected = false;
        return fail(ControlError::TimedOut, description);
    }
    if (call.dataPhase)
        return fail(ControlError::DataConnection, description);
    if (const long network = CurlErrorMap::networkError(code, osErrno)) {
        m_connected = false;
        return fail(network, description);
    }
    return fail(ControlError::Protocol, description);
}

QString FtpControl::firewallFailure(const Call &call) const
{
    FirewallFailure::Seen seen;
    seen.firewallType = FirewallType;
    seen.host = FirewallHost;
    seen.port = FirewallPort;
    seen.serverPort = RemotePort;
    seen.connectReply = call.connectReply;
    seen.connectCode = call.connectReply.section(QLatin1Char(' '), 1, 1).toLong();
    seen.connectTarget = call.connectTarget;
    seen.socksError = int(call.socksError);
    seen.loggedOn = m_connected;
    return FirewallFailure::Describe(seen);
}

long FtpControl::Logon()
{
    // A second Logon starts a fresh session: host or user may have changed,
    // and the login folder is only learnt on a new login.
    if (m_connected && Logoff() != 1)
        return 0;
    Call call;
    call.sftpAction = QStringLiteral("login ") + User;
    call.sftpSuccess = QStringLiteral("257 \"{entry}\" is the login folder.");
    // No path: the session stays in the login folder, whatever it is.
    const QString url = base();
    const long result =
        perform(call, url, [](CURL *h) { curl_easy_setopt(h, CURLOPT_NOBODY, 1L); });
    if (result != 1)
        return result;
    m_connected = true;
    // libcurl asks PWD right after the login: its answer is the login folder.
    m_path = call.lastPwd.isEmpty() ? QStringLiteral("/") : call.lastPwd;
    return 1;
}

long FtpControl::Logoff()
{
    if (m_busy || m_batch)
        return fail(ControlError::Busy, QStringLiteral("Another call is running."));
    if (!m_connected)
        return 1;
    // The handle sends QUIT as it closes; a new one waits for the next Logon.
    Call call;
    call.self = this;
    curl_easy_setopt(m_curl, CURLOPT_VERBOSE, 1L);
    curl_easy_setopt(m_curl, CURLOPT_DEBUGFUNCTION, &FtpCallbacks::debug);
    curl_easy_setopt(m_curl, CURLOPT_DEBUGDATA, &call);
    m_busy = true;
    m_worker.run([this] { resetHandle(); });
    m_busy = false;
    QCoreApplication::sendPostedEvents(this);
    m_connected = false;
    m_path.clear();
    return 1;
}

// Sends raw commands in the current folder. They go after libcurl has
// changed to the call's folder (which it skips when the connection already
// stands there), so names without a path mean what the caller meant. Each
// is marked so that a refusal does not make libcurl drop the connection;
// the first refusal is the call's failure all the same.
long FtpControl::sendQuoted(const QStringList &commands, Call &call)
{
    // An SFTP quote command that fails keeps the session, so it needs no
    // mark; a marked one would fail without a word.
    const QString mark = Sftp ? QString() : QStringLiteral("*");
    for (const QString &command : commands)
        call.quote = curl_slist_append(call.quote, (mark + command).toUtf8().constData());
    call.sftpAction = commands.join(QStringLiteral("; "));
    call.sftpSuccess = QStringLiteral("250 Done.");
    const long result = perform(call, urlFor(m_path), [&call](CURL *h) {
        curl_easy_setopt(h, CURLOPT_POSTQUOTE, call.quote);
        curl_easy_setopt(h, CURLOPT_NOBODY, 1L);
    });
    if (result == 1 && !call.firstErrorReply.isEmpty())
        return fail(ControlError::Protocol, call.firstErrorReply);
    if (Sftp && result != 1 && m_errorNumber == ControlError::Protocol)
        return confirmSftpRefusal();
    return result;
}

// libssh2 words a failed SFTP request with the status of the last answer
// the server gave: a request whose connection broke looks refused, with
// the status of some earlier request. Taken for a refusal, a rename cut
// that way would be thought never done. A refusal holds only when the
// session still answers a look at the folder on its own connection.
long FtpControl::confirmSftpRefusal()
{
    const long number = m_errorNumber;
    const QString description = m_errorDescription;
    qint64 size = -1;
    const long alive = sftpStat(QStringLiteral("stat"), QStringLiteral("."), false, size);
    if (alive == 1 && m_newConnections == 0)
        return fail(number, description);
    m_connected = false;
    if (alive != 1 && m_errorNumber != ControlError::Protocol)
        return 0; // the look's own failure says what happened to the connection
    return fail(ControlError::NoConnection, QStringLiteral("The connection to the server was lost during the request."));
}

// The folder, from the root, that a path names when taken from the current
// folder: "." and ".." resolved, no slash at the end.
QString FtpControl::resolvedPath(const QString &path) const
{
    QStringList parts;
    const QString whole = path.startsWith(QLatin1Char('/')) ? path : folderPath(m_path) + QLatin1Char('/') + path;
    for (const QString &part : whole.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (part == QLatin1String(".."))
            parts.removeLast();
        else if (part != QLatin1String("."))
            parts.append(part);
    }
    return QLatin1Char('/') + parts.join(QLatin1Char('/'));
}

// One absolute CWD, sent by libcurl only when the connection does not
// already stand in the folder; no PWD, as the folder is known. A folder the
// server refuses leaves the connection and the current folder as they were.
long FtpControl::SetRemotePath(const QString &path)
{
    const QString target = resolvedPath(path);
    Call call;
    // SFTP has no current folder: the folder is only looked up, by its
    // name without the closing slash (with it libcurl would not look).
    QString url = urlFor(target);
    if (Sftp && target != QLatin1String("/"))
        url.chop(1);
    call.sftpAction = QStringLiteral("cd ") + target;
    call.sftpSuccess = QStringLiteral("250 Folder found.");
    call.folderLookup = Sftp;
    const long result = perform(call, url, [](CURL *h) {
        curl_easy_setopt(h, CURLOPT_NOBODY, 1L);
        curl_easy_setopt(h, CURLOPT_FILETIME, 1L);
    });
    if (result == 1)
        m_path = target;
    return result;
}

// The folder is taken as it is, without a word to the server: for a folder
// that is known to be there (the root of the session), the next call that
// needs it changes to it.
void FtpControl::SetRemotePathUnchecked(const QString &path)
{
    m_path = resolvedPath(path);
}

long FtpControl::Command(const QString &command)
{
    const QString verb = command.section(QLatin1Char(' '), 0, 0).toUpper();
    if (verb == QLatin1String("CWD"))
        return SetRemotePath(command.section(QLatin1Char(' '), 1));
    if (Sftp)
        return sftpCommand(command);
    Call call;
    return sendQuoted({command}, call);
}

long FtpControl::DeleteFile(const QString &name)
{
    return Command(QStringLiteral("DELE ") + name);
}

long FtpControl::Rename(const QString &from, const QString &to)
{
    Call call;
    if (Sftp)
        return sendQuoted({SftpCommands::Rename(from, to, folderPath(m_path))}, call);
    return sendQuoted({QStringLiteral("RNFR ") + from, QStringLiteral("RNTO ") + to}, call);
}

long FtpControl::MakeDirectory(const QString &name)
{
    return Command(QStringLiteral("MKD ") + name);
}

long FtpControl::RemoveDirectory(const QString &name)
{
    return Command(QStringLiteral("RMD ") + name);
}

long FtpControl::list(bool longForm, bool machine)
{
    Call call;
    call.listing = true;
    call.longListing = longForm;
    call.machineListing = machine && !Sftp;
    QString mask = RemoteFile;
    if (Sftp) {
        // SFTP lists a whole folder in one form: the mask is applied here.
        call.mask = QRegularExpression(QRegularExpression::wildcardToRegularExpression(mask.isEmpty() ? QStringLiteral("*") : mask));
        call.sftpAction = QStringLiteral("ls ") + folderPath(m_path);
        call.sftpSuccess = QStringLiteral("226 Listed.");
        machine = false;
        mask.clear();
    } else if (prepareType(true, QString()) != 1) {
        return 0;
    }
    return perform(call, urlFor(m_path), [longForm, machine, mask](CURL *h) {
        curl_easy_setopt(h, CURLOPT_DIRLISTONLY, longForm ? 0L : 1L);
        QString request = machine ? QStringLiteral("MLSD") : QString();
        if (!mask.isEmpty())
            request = (machine ? QStringLiteral("MLSD ") : longForm ? QStringLiteral("LIST ") : QStringLiteral("NLST ")) + mask;
        if (!request.isEmpty())
            curl_easy_setopt(h, CURLOPT_CUSTOMREQUEST, request.toUtf8().constData());
    });
}

long FtpControl::ListDirectoryMachine()
{
    return list(true, true);
}

// SFTP's counterparts of the FTP commands callers send: SIZE and MDTM by
// a look at the file, the commands that change the server by SFTP's own
// requests, and no others.
long FtpControl::sftpCommand(const QString &command)
{
    const QString verb = command.section(QLatin1Char(' '), 0, 0).toUpper();
    const QString name = command.section(QLatin1Char(' '), 1);
    qint64 size = -1;
    if (verb == QLatin1String("SIZE"))
        return sftpStat(QStringLiteral("size"), name, false, size);
    if (verb == QLatin1String("MDTM"))
        return sftpStat(QStringLiteral("mtime"), name, true, size);
    QString refusal;
    const QString quote = SftpCommands::Translate(command, folderPath(m_path), refusal);
    if (quote.isEmpty()) {
        emit PITrail(1, refusal);
        return fail(ControlError::Protocol, refusal);
    }
    Call call;
    return sendQuoted({quote}, call);
}

// The size or the time of a file, which libcurl learns as it opens it.
long FtpControl::sftpStat(const QString &action, const QString &name, bool time, qint64 &size)
{
    Call call;
    const QString path = SftpCommands::Absolute(name, folderPath(m_path));
    call.sftpAction = action + QLatin1Char(' ') + path;
    call.sftpSuccess = time ? QStringLiteral("213 {time}") : QStringLiteral("213 {size}");
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    const long result = perform(call, urlFor(path.left(slash), path.mid(slash + 1)), [time](CURL *h) {
        curl_easy_setopt(h, CURLOPT_NOBODY, 1L);
        curl_easy_setopt(h, CURLOPT_FILETIME, time ? 1L : 0L);
        curl_easy_setopt(h, CURLOPT_WRITEFUNCTION, &FtpCallbacks::discard);
        curl_easy_setopt(h, CURLOPT_HEADERFUNCTION, &FtpCallbacks::discard);
    });
    size = call.sizeReply;
    return result;
}

// SFTP answers with status codes only: the trail shows the FTP reply the
// call stands for, which the reply parser then reads as from a server.
// A folder looked up is there when libcurl could read its time, whether or
// not the server then let it open the folder as a file (servers differ).
int FtpControl::sftpAnswer(Call &call, int result)
{
    if (!call.keyFingerprint.isEmpty()) {
        m_hostKeyType = call.keyType;
        m_hostKeyFingerprint = call.keyFingerprint;
    }
    long time = -1;
    curl_easy_getinfo(m_curl, CURLINFO_FILETIME, &time);
    const auto code = call.folderLookup && time >= 0 ? CURLE_OK : CURLcode(result);
    if (code != CURLE_OK) {
        if (call.hostKey == Call::KeyFine)
            FtpCallbacks::trail(call, 1, SftpCommands::Reply(code, QString::fromUtf8(call.detail)));
        return code;
    }
    curl_off_t size = -1;
    curl_easy_getinfo(m_curl, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &size);
    const char *entry = nullptr;
    curl_easy_getinfo(m_curl, CURLINFO_FTP_ENTRY_PATH, &entry);
    QString reply = call.sftpSuccess;
    reply.replace(QLatin1String("{size}"), QString::number(qint64(size)));
    reply.replace(QLatin1String("{time}"), QDateTime::fromSecsSinceEpoch(time, Qt::UTC).toString(QStringLiteral("yyyyMMddHHmmss")));
    reply.replace(QLatin1String("{entry}"), entry ? QString::fromUtf8(entry) : QStringLiteral("/"));
    FtpCallbacks::trail(call, 1, reply);
    return code;
}

// The cheapest listing the server offers: STAT where it answers with one,
// LIST otherwise (and for an empty folder, which STAT can't tell from a
// server that answers STAT with its own status). A server whose STAT gave
// nothing where LIST finds entries is not asked STAT again.
long FtpControl::ListEntries()
{
    if (ListByStatus() == 1)
        return 1;
    if (!m_connected)
        return 0;
    m_errorNumber = 0;
    m_errorDescription.clear();
    int listed = 0;
    const QMetaObject::Connection counting = connect(this, &FtpControl::DirList, this, [&listed] { ++listed; });
    const long result = ListDirectoryLong();
    disconnect(counting);
    if (listed > 0)
        m_statusRefused = true;
    return result;
}

long FtpControl::ListDirectory()
{
    return list(false);
}

long FtpControl::ListDirectoryLong()
{
    return list(true);
}

long FtpControl::Upload()
{
    Call call;
    // SFTP moves bytes as they are: the server's files have the local line
    // ends, and there is no text mode to ask for.
    call.ascii = TransferMode == 1 && !Sftp;
    call.deliverData = false;
    call.source = std::make_unique<QFile>(LocalFile);
    if (!call.source->open(QIODevice::ReadOnly))
        return fail(ControlError::LocalFile, QStringLiteral("Cannot open ") + LocalFile);
    const qint64 size = call.ascii ? -1 : call.source->size();
    call.sftpAction = QStringLiteral("put ") + SftpCommands::Absolute(RemoteFile, folderPath(m_path));
    call.sftpSuccess = QStringLiteral("226 Sent.");
    if (!Sftp && prepareType(call.ascii, RemoteFile) != 1)
        return 0;
    return perform(call, urlFor(m_path, RemoteFile), [&call, size](CURL *h) {
        curl_easy_setopt(h, CURLOPT_UPLOAD, 1L);
        curl_easy_setopt(h, CURLOPT_READFUNCTION, &FtpCallbacks::read);
        curl_easy_setopt(h, CURLOPT_READDATA, &call);
        curl_easy_setopt(h, CURLOPT_INFILESIZE_LARGE, curl_off_t(size));
    });
}

long FtpControl::Download()
{
    Call call;
    if (!LocalFile.isEmpty()) {
        if (!Overwrite && QFile::exists(LocalFile))
            return fail(ControlError::LocalFile, QStringLiteral("Local file exists: ") + LocalFile);
        // Written aside and put in place only when the whole file came, so
        // a failed download leaves the local file as it was.
        call.saveFile = std::make_unique<QSaveFile>(LocalFile);
        if (!call.saveFile->open(QIODevice::WriteOnly))
            return fail(ControlError::LocalFile, QStringLiteral("Cannot write ") + LocalFile);
        call.target = call.saveFile.get();
    }
    const long result = download(call);
    if (call.saveFile && result == 1 && !call.saveFile->commit())
        return fail(ControlError::LocalFile, QStringLiteral("Cannot write ") + LocalFile);
    return result;
}

long FtpControl::Download(QIODevice &into)
{
    Call call;
    call.target = &into;
    call.deliverData = false;
    return download(call);
}

long FtpControl::download(Call &call)
{
    call.ascii = TransferMode == 1 && !Sftp;
    call.sftpAction = QStringLiteral("get ") + SftpCommands::Absolute(RemoteFile, folderPath(m_path));
    call.sftpSuccess = QStringLiteral("226 Received.");
    // libcurl would ask the SIZE between the PASV and the RETR; the end of
    // the data connection and the server's final reply tell a whole file.
    const long result = !Sftp && prepareType(call.ascii, RemoteFile) != 1
                            ? 0
                            : perform(call, urlFor(m_path, RemoteFile), [](CURL *h) {
                                  curl_easy_setopt(h, CURLOPT_IGNORE_CONTENT_LENGTH, 1L);
                              });
    if (call.target && call.pendingCr)
        call.target->write("\r");
    return result;
}

// The size of a file as it lies on the server, which only binary mode
// tells. With the connection in binary mode that is one raw SIZE; else
// libcurl sets the type first (TYPE I, SIZE, REST 0). size is -1 when the
// server names none.
long FtpControl::QuerySize(const QString &name, qint64 &size)
{
    size = -1;
    Call call;
    long result = 0;
    if (Sftp) {
        return sftpStat(QStringLiteral("size"), name, false, size);
    } else if (m_type == 'I') {
        result = sendQuoted({QStringLiteral("SIZE ") + name}, call);
    } else {
        result = perform(call, urlFor(m_path, name), [](CURL *h) {
            curl_easy_setopt(h, CURLOPT_NOBODY, 1L);
            curl_easy_setopt(h, CURLOPT_WRITEFUNCTION, &FtpCallbacks::discard);
            curl_easy_setopt(h, CURLOPT_HEADERFUNCTION, &FtpCallbacks::discard);
        });
    }
    if (result != 1)
        return result;
    size = call.sizeReply;
    return 1;
}

// STAT with a path answers with the folder's listing on the control
// connection: one command, no data connection, no change of the transfer
// type (libcurl lists in ASCII only, and the type must then be set back
// before the next binary transfer). A server that answers with its own
// status instead, or refuses, fails the call; the caller then lists.
long FtpControl::ListByStatus()
{
    if (Sftp)
        return ListDirectoryLong(); // one request lists the folder whole
    if (m_statusRefused)
        return fail(ControlError::Protocol, QStringLiteral("500 The server refused STAT before."));
    Call call;
    call.statusListing = true;
    if (sendQuoted({QStringLiteral("STAT ") + folderPath(m_path)}, call) != 1) {
        m_statusRefused = m_connected && !call.firstErrorReply.isEmpty();
        return 0;
    }
    if (call.statusEntries.isEmpty())
        return fail(ControlError::Protocol, QStringLiteral("500 The server gave no listing with STAT."));
    for (const FtpListEntry &entry : call.statusEntries) {
        m_fileSize = entry.size;
        m_fileTime = entry.time;
        emit DirList(entry.entry, entry.fileName, entry.isDir, entry.size, entry.time);
    }
    return 1;
}

void FtpControl::Abort()
{
    if (m_busy || m_batch)
        m_abort = true;
}

// Controls live on the main thread only, so the list needs no lock.
QList<FtpControl *> &FtpControl::instances()
{
    static QList<FtpControl *> list;
    return list;
}

quint64 FtpControl::s_abortSerial = 0;

namespace {
std::mutex g_refusedLock;
QSet<QByteArray> g_refused;
} // namespace

bool FtpControl::logonRefused(const QByteArray &key)
{
    const std::lock_guard<std::mutex> lock(g_refusedLock);
    return g_refused.contains(key);
}

void FtpControl::refuseLogon(const QByteArray &key)
{
    const std::lock_guard<std::mutex> lock(g_refusedLock);
    g_refused.insert(key);
}

QByteArray FtpControl::logonKey() const
{
    // Another key file with the same passphrase is another logon.
    const QString key = RemoteHost + QLatin1Char('\n') + QString::number(RemotePort) + QLatin1Char('\n') + User
                        + QLatin1Char('\n') + Password + QLatin1Char('\n') + SshPrivateKey;
    return QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha256);
}

quint64 FtpControl::AbortSerial()
{
    return s_abortSerial;
}

void FtpControl::AbortRunning()
{
    ++s_abortSerial;
    for (FtpControl *control : instances())
        control->Abort();
}

void FtpControl::Interrupt()
{
    Abort();
}

void FtpControl::DoEvents()
{
    QCoreApplication::processEvents();
}
