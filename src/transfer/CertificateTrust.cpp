#include "transfer/CertificateTrust.h"

#include "config/CPublicSettings.h"
#include "platform/CurlErrorMap.h"
#include "platform/FtpControl.h"
#include "platform/TlsCertificateProbe.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/StringIds.h"
#include "support/UserQuestions.h"

#include <QLocale>

namespace {

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

QString dateText(const QDateTime &time)
{
    return QLocale::system().toString(time.toLocalTime(), QLocale::ShortFormat);
}

SiteRecord &site(long index)
{
    return MGlobalProjectObjects::URLDATA[static_cast<size_t>(index)];
}

} // namespace

CertificateTrust::CertificateTrust(FtpControl &control, long siteIndex)
    : m_control(control), m_index(siteIndex)
{
}

bool CertificateTrust::HasRecord() const
{
    return m_index >= 0 && m_index < static_cast<long>(MGlobalProjectObjects::URLDATA.size());
}

QString CertificateTrust::SiteName() const
{
    return HasRecord() ? site(m_index).baseaddress : m_control.RemoteHost;
}

// The probe goes the way the control goes: through the same firewall.
bool CertificateTrust::Fetch(TlsCertificateInfo &info)
{
    TlsCertificateProbe probe;
    probe.host = m_control.RemoteHost;
    probe.port = m_control.RemotePort;
    probe.implicitTls = m_control.ImplicitTls;
    if (m_control.Timeout > 0)
        probe.timeoutSeconds = m_control.Timeout;
    if (m_control.FirewallType == 1 || m_control.FirewallType == 3) {
        const auto type = m_control.FirewallType == 1 ? QNetworkProxy::HttpProxy : QNetworkProxy::Socks5Proxy;
        probe.proxy = QNetworkProxy(type, m_control.FirewallHost, quint16(m_control.FirewallPort),
                                    m_control.FirewallUser, m_control.FirewallPassword);
    }
    return probe.fetch(info, m_fetchError);
}

bool CertificateTrust::Ask()
{
    TlsCertificateInfo info;
    if (!HasRecord() || !Fetch(info))
        return false;
    const QString text = L(StringIds::CertificateQuestion)
                             .arg(SiteName(), info.subject, info.issuer, dateText(info.notBefore),
                                  dateText(info.notAfter), info.fingerprint);
    const long style = UserQuestions::vbYesNo | UserQuestions::vbExclamation | UserQuestions::vbDefaultButton2;
    if (UserQuestions::MsgBox(text, style, L(StringIds::CertificateQuestionTitle)) != UserQuestions::vbYes)
        return false;
    SiteRecord &record = site(m_index);
    record.tlsfingerprint = info.fingerprint;
    record.tlskeypin = info.keyPin;
    CPublicSettings::SaveTrustedCertificate(m_index);
    m_control.TlsPinnedKey = info.keyPin;
    return true;
}

void CertificateTrust::Tell(long number, const QString &position)
{
    QString text;
    if (number == ControlError::CertificateUntrusted) {
        text = L(StringIds::CertificateNotTrusted).arg(SiteName());
        if (!m_fetchError.isEmpty())
            text += QStringLiteral("\r\n\r\n") + m_fetchError;
    } else if (number == ControlError::CertificateChanged) {
        TlsCertificateInfo now;
        const QString trusted = HasRecord() ? site(m_index).tlsfingerprint : QString();
        text = L(StringIds::CertificateChanged)
                   .arg(SiteName(), trusted, Fetch(now) ? now.fingerprint : m_fetchError);
    } else if (number == ControlError::TlsRefused) {
        text = L(StringIds::TlsNotOffered).arg(SiteName());
    } else {
        return;
    }
    MError::SetErrorIfClear(number, text, position);
}
