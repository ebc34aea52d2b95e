#include "support/ErrorReportSender.h"

#include "config/MGlobalProjectObjects.h"
#include "platform/HttpControl.h"
#include "support/EnvironmentSettings.h"
#include "support/MError.h"
#include "support/MGlobalProjectFunctions.h"

namespace {
const QString Position = QStringLiteral("ErrorReportSender.Post");
} // namespace

QString ErrorReportSender::Subject(const QString &position, const QString &signature)
{
    if (signature.isEmpty())
        return position;
    return position + QStringLiteral(": ") + signature.left(30);
}

QString ErrorReportSender::Data(const QString &report, const QString &browserDescription)
{
    const qsizetype at = report.indexOf(QStringLiteral("WINSYS"));
    if (at < 0)
        return report;
    QString data = report;
    return data.replace(at, 7, browserDescription + QStringLiteral("\r\n"));
}

QString ErrorReportSender::Address(const QString &service, const QString &subject, const QString &data)
{
    QString base = service;
    while (base.endsWith(QLatin1Char('/')))
        base.chop(1);
    return base + QStringLiteral("/_services/_error_report.asp?subject=") + subject
           + QStringLiteral("&data=") + data;
}

long ErrorReportSender::Send(const QString &report, const QString &position, const QString &signature,
                             const QString &browserDescription)
{
    QString data;
    QString subject;
    if (MGlobalProjectFunctions::URLEncode(Data(report, browserDescription), data) != 1
        || MGlobalProjectFunctions::URLEncode(Subject(position, signature), subject) != 1) {
        MError::SetErrorIfClear(-1, QStringLiteral("The report could not be encoded."),
                                QStringLiteral("ErrorReportSender.Send"));
        return 0;
    }
    return Post(Address(EnvironmentSettings::ErrorReportService(), subject, data));
}

// Through the program's HTTP control, and through the HTTP proxy when the
// settings say so, as every other request of the program goes.
long ErrorReportSender::Post(const QString &address)
{
    HttpControl http;
    http.ContentType = QStringLiteral("application/x-www-form-urlencoded");
    http.Timeout = 120;
    MGlobalProjectObjects::ApplyHttpProxy(http);
    if (http.Post(address) == 1)
        return 1;
    MError::SetErrorIfClear(http.ErrorNumber(), http.ErrorDescription(), Position);
    return 0;
}
