#pragma once

#include <QDateTime>
#include <QNetworkProxy>
#include <QString>

class QSslCertificate;

// What the user is shown of a server's certificate before he trusts it, and
// what is kept of it once he does.
struct TlsCertificateInfo
{
    QString subject;
    QString issuer;
    QDateTime notBefore;
    QDateTime notAfter;
    QString fingerprint; // SHA-256 of the certificate, "AB:CD:..."
    QString keyPin;      // "sha256//<base64>" of its public key, as libcurl pins it
};

// Fetches the certificate an FTP server shows, without checking it and
// without logging on: explicit TLS sends only AUTH TLS, implicit TLS not one
// command. Runs on a worker thread while the caller's events go on.
class TlsCertificateProbe
{
public:
    QString host;
    int port = 21;
    bool implicitTls = false;
    int timeoutSeconds = 30;
    QNetworkProxy proxy = QNetworkProxy(QNetworkProxy::NoProxy);

    // True with info filled, or false with error saying why.
    bool fetch(TlsCertificateInfo &info, QString &error) const;
    // What is shown and kept of a certificate.
    static TlsCertificateInfo Describe(const QSslCertificate &certificate);

private:
    bool fetchHere(TlsCertificateInfo &info, QString &error) const;
};
