#include "platform/TlsCertificateProbe.h"

#include "platform/BlockingCall.h"

#include <QCryptographicHash>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>

namespace {

// The last line of an FTP reply ("220 ready" after any "220-..." lines).
bool readReply(QSslSocket &socket, int msecs, QByteArray &reply)
{
    for (;;) {
        while (!socket.canReadLine()) {
            if (!socket.waitForReadyRead(msecs))
                return false;
        }
        reply = socket.readLine().trimmed();
        if (reply.size() >= 4 && reply.at(3) == ' ')
            return true;
    }
}

QString names(const QSslCertificate &certificate, bool issuer)
{
    const QStringList parts = issuer ? certificate.issuerDisplayName().split(QLatin1Char('\n'))
                                     : certificate.subjectDisplayName().split(QLatin1Char('\n'));
    return parts.join(QStringLiteral(", "));
}

} // namespace

TlsCertificateInfo TlsCertificateProbe::Describe(const QSslCertificate &certificate)
{
    TlsCertificateInfo info;
    info.subject = names(certificate, false);
    info.issuer = names(certificate, true);
    info.notBefore = certificate.effectiveDate();
    info.notAfter = certificate.expiryDate();
    info.fingerprint = QString::fromLatin1(certificate.digest(QCryptographicHash::Sha256).toHex(':').toUpper());
    // The public key as DER SubjectPublicKeyInfo, the form libcurl hashes.
    const QByteArray key = QCryptographicHash::hash(certificate.publicKey().toDer(), QCryptographicHash::Sha256);
    info.keyPin = QStringLiteral("sha256//") + QString::fromLatin1(key.toBase64());
    return info;
}

bool TlsCertificateProbe::fetch(TlsCertificateInfo &info, QString &error) const
{
    bool ok = false;
    BlockingCall::run([&] { ok = fetchHere(info, error); });
    return ok;
}

bool TlsCertificateProbe::fetchHere(TlsCertificateInfo &info, QString &error) const
{
    const int msecs = timeoutSeconds * 1000;
    QSslSocket socket;
    socket.setProxy(proxy);
    // Unchecked on purpose: the certificate is shown to the user, who
    // decides; nothing else travels over this connection.
    socket.setPeerVerifyMode(QSslSocket::QueryPeer);
    QByteArray reply;
    if (implicitTls) {
        socket.connectToHostEncrypted(host, quint16(port));
    } else {
        socket.connectToHost(host, quint16(port));
        if (!socket.waitForConnected(msecs) || !readReply(socket, msecs, reply) || !reply.startsWith("220")) {
            error = reply.isEmpty() ? socket.errorString() : QString::fromUtf8(reply);
            return false;
        }
        socket.write("AUTH TLS\r\n");
        if (!readReply(socket, msecs, reply) || !reply.startsWith("234")) {
            error = reply.isEmpty() ? socket.errorString() : QString::fromUtf8(reply);
            return false;
        }
        socket.startClientEncryption();
    }
    if (!socket.waitForEncrypted(msecs) || socket.peerCertificate().isNull()) {
        error = socket.errorString();
        return false;
    }
    info = Describe(socket.peerCertificate());
    socket.abort();
    return true;
}
