#pragma once

#include <QString>

// The SSH host keys the user trusted in this program, kept in a file of
// its own beside the settings (the user's ~/.ssh/known_hosts is read by the
// SSH layer itself and never written): one line per server,
//   <host>:<port> <key type> SHA256:<base64>
// the fingerprint written as OpenSSH's tools show it, so the user can
// compare it with what the hosting company publishes.
class SshHostKeys
{
public:
    explicit SshHostKeys(QString file = DefaultFile());

    static QString DefaultFile();

    // The fingerprint trusted for the server, or an empty string.
    QString Trusted(const QString &host, int port) const;
    // Keeps the key as the one trusted for the server, over any other.
    bool Trust(const QString &host, int port, const QString &type, const QString &fingerprint) const;

private:
    static QString Name(const QString &host, int port);

    QString m_file;
};
