#pragma once

#include <QString>

class FtpControl;
struct TlsCertificateInfo;

// The certificates of a site's FTP server that the system's store does not
// vouch for (self-signed, or from an authority it does not know). The user
// sees such a certificate once, and may trust it for the site: it is then
// kept with the site record and its key is pinned, so that the password only
// ever travels over a connection whose certificate was verified or pinned.
// A certificate that changed after that is refused, never trusted anew
// without the user.
class CertificateTrust
{
public:
    // siteIndex: the record in URLDATA; out of range for a session bound to
    // no record, whose certificates can only be refused.
    CertificateTrust(FtpControl &control, long siteIndex);

    // After a logon failed on an untrusted certificate: shows it and asks.
    // True when the user trusted it; it is then stored with the site and
    // pinned on the control, ready to log on again.
    bool Ask();
    // The pending error for a failure of the TLS layer (a certificate not
    // trusted or changed, no TLS offered); nothing for any other number.
    void Tell(long number, const QString &position);

private:
    bool Fetch(TlsCertificateInfo &info);
    bool HasRecord() const;
    QString SiteName() const;

    FtpControl &m_control;
    long m_index;
    QString m_fetchError;
};
