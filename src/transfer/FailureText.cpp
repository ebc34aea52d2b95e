#include "transfer/FailureText.h"

#include "platform/CurlErrorMap.h"
#include "support/MResources.h"

#include <QRegularExpression>

namespace {
enum Text : long {
    txtTimedOut = 22120,
    txtLost = 22121,
    txtRefused = 22122,
    txtHostNotFound = 22123,
    txtLoginRefused = 22124,
    txtWriteRefused = 22125,
    txtDiskFull = 22126,
    txtCancelled = 22130,
    txtNoNetwork = 22131,
    txtServerSaid = 22132
};

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// The three digits of a server's reply, or 0.
int ReplyCode(const QString &description)
{
    static const QRegularExpression code(QStringLiteral("^(\\d{3})[ -]"));
    const QRegularExpressionMatch match = code.match(description);
    return match.hasMatch() ? match.captured(1).toInt() : 0;
}

// A failure that cost the connection, or the bytes of a transfer.
bool IsConnectionFault(long number, const QString &description)
{
    switch (number) {
    case ControlError::TimedOut:
    case ControlError::NoConnection:
    case ControlError::DataConnection:
    case ControlError::Refused:
    case ControlError::NetworkDown:
        return true;
    case ControlError::Protocol:
        return ReplyCode(description) == 421 || ReplyCode(description) == 0;
    default:
        return false;
    }
}

} // namespace

bool FailureText::Describe(long number, const QString &description, int timeoutSeconds, bool writing,
                           long &shownNumber, QString &text)
{
    const int reply = ReplyCode(description);
    const QString said = QStringLiteral("\r\n\r\n") + L(txtServerSaid) + QLatin1Char(' ') + description;
    shownNumber = -number;
    if (number == ControlError::TimedOut) {
        text = L(txtTimedOut).arg(timeoutSeconds);
    } else if (number == ControlError::Aborted) {
        text = L(txtCancelled);
    } else if (number == ControlError::Refused) {
        text = L(txtRefused);
    } else if (number == ControlError::HostNotFound) {
        text = L(txtHostNotFound);
    } else if (number == ControlError::NetworkDown) {
        text = L(txtNoNetwork);
    } else if (number == ControlError::LoginRefused || reply == 530) {
        shownNumber = -530;
        text = L(txtLoginRefused) + said;
    } else if (writing && (reply == 452 || reply == 552)) {
        shownNumber = -552;
        text = L(txtDiskFull) + said;
    } else if (writing && (reply == 550 || reply == 553)) {
        shownNumber = -550;
        text = L(txtWriteRefused) + said;
    } else if (IsConnectionFault(number, description)) {
        shownNumber = -ControlError::NoConnection;
        text = L(txtLost);
    } else {
        return false;
    }
    return true;
}
