#pragma once

#include <QString>

class FtpControl;

// The host keys of SFTP servers that neither the user's known_hosts nor the
// program's own trusted keys hold. The user sees such a key once (type and
// SHA-256 fingerprint) and may trust the host: the key is then kept for the
// server's host and port, in the program's file, not with one site record,
// as several sites may live on one server. A key that differs from the one
// trusted is refused with a warning, never trusted anew from here: the user
// has to remove the old key himself, having asked his hosting company.
class HostKeyTrust
{
public:
    explicit HostKeyTrust(FtpControl &control, QString siteName);

    // After a logon failed on an unknown host key: shows it and asks. True
    // when the user trusted it; the next logon takes it.
    bool Ask();
    // The pending error for a host key refused (unknown and not trusted, or
    // changed); nothing for any other number.
    void Tell(long number, const QString &position);

private:
    FtpControl &m_control;
    QString m_site;
};
