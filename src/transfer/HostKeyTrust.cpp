#include "transfer/HostKeyTrust.h"

#include "platform/CurlErrorMap.h"
#include "platform/FtpControl.h"
#include "platform/SshHostKeys.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/StringIds.h"
#include "support/UserQuestions.h"

namespace {
QString L(long id)
{
    return MResources::LoadResourceString(id);
}
} // namespace

HostKeyTrust::HostKeyTrust(FtpControl &control, QString siteName)
    : m_control(control), m_site(siteName.isEmpty() ? control.RemoteHost : std::move(siteName))
{
}

bool HostKeyTrust::Ask()
{
    if (m_control.ErrorNumber() != ControlError::HostKeyUnknown || m_control.HostKeyFingerprint().isEmpty())
        return false;
    const QString text = L(StringIds::HostKeyQuestion).arg(m_site, m_control.HostKeyType(), m_control.HostKeyFingerprint());
    // No is the default: a key is trusted only by a deliberate Yes.
    const long style = UserQuestions::vbYesNo | UserQuestions::vbExclamation | UserQuestions::vbDefaultButton2;
    if (UserQuestions::MsgBox(text, style, L(StringIds::HostKeyQuestionTitle)) != UserQuestions::vbYes)
        return false;
    return SshHostKeys(m_control.SshTrustedKeys)
        .Trust(m_control.RemoteHost, m_control.RemotePort, m_control.HostKeyType(), m_control.HostKeyFingerprint());
}

void HostKeyTrust::Tell(long number, const QString &position)
{
    QString text;
    if (number == ControlError::HostKeyUnknown)
        text = L(StringIds::HostKeyNotTrusted).arg(m_site);
    else if (number == ControlError::HostKeyChanged)
        text = L(StringIds::HostKeyChanged).arg(m_site, m_control.HostKeyType(), m_control.HostKeyFingerprint());
    else
        return;
    MError::SetErrorIfClear(number, text, position);
}
