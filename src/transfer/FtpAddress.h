#pragma once

#include <QString>

class FtpControl;

// The FTP address of a site (its baseurl, or the address given to Init):
// the host with its port, and how the connection is protected, which the
// scheme says. A scheme keeps the record as it is stored and lets the user
// see the choice in the address itself:
//   "host", "host:port", "ftp://host"  plain FTP, port 21
//   "ftpes://host"                      explicit TLS (AUTH TLS) on both
//                                       channels, required: no plain fallback
//   "ftps://host"                       implicit TLS, port 990
//   "sftp://host"                       SFTP over SSH, port 22
// A scheme is read in any case of letters when anyCase is set, else only as
// written (Init's addresses).
class FtpAddress
{
public:
    enum Security { Plain, ExplicitTls, ImplicitTls, Sftp };

    static FtpAddress Parse(const QString &address, bool anyCase);

    Security security = Plain;
    QString host; // "host" or "host:port", without the scheme

    // The host as sessions are told apart by: a plain and a protected
    // session to one host are never shared.
    QString AccountHost() const;
    // Host, port (the scheme's own when none is given) and protection onto
    // the control.
    void ApplyTo(FtpControl &control) const;
};
