#include "support/ErrorReportSender.h"

#include "support/EnvironmentSettings.h"
#include "support/MError.h"
#include "support/MGlobalProjectFunctions.h"

#include <curl/curl.h>

namespace {
const QString Position = QStringLiteral("ErrorReportSender.Post");

size_t discardBody(char *, size_t size, size_t count, void *)
{
    return size * count;
}
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

// The one place that talks to the network here; it is to move onto the
// program's HTTP control once that is in. Fault numbers: 20000 plus the
// transfer library's code, or the HTTP status of a refusal.
long ErrorReportSender::Post(const QString &address)
{
    CURL *curl = curl_easy_init();
    if (!curl) {
        MError::SetErrorIfClear(20002, QStringLiteral("The HTTP client could not start."), Position);
        return 0;
    }
    const QByteArray url = address.toLatin1();
    curl_slist *headers = curl_slist_append(nullptr, "Content-Type: application/x-www-form-urlencoded");
    curl_easy_setopt(curl, CURLOPT_URL, url.constData());
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, "");
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, 0L);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, discardBody);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, 30L);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT, 120L);
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    const CURLcode code = curl_easy_perform(curl);
    long status = 0;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    curl_slist_free_all(headers);
    curl_easy_cleanup(curl);
    if (code != CURLE_OK) {
        MError::SetErrorIfClear(20000 + long(code), QString::fromUtf8(curl_easy_strerror(code)), Position);
        return 0;
    }
    if (status >= 400) {
        MError::SetErrorIfClear(status, QStringLiteral("The error report service answered with status ")
                                            + QString::number(status) + QLatin1Char('.'),
                                Position);
        return 0;
    }
    return 1;
}
