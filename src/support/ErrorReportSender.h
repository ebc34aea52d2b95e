#pragma once

#include <QString>

// Sends an error report to the maker's service: a POST of
// <service>/_services/_error_report.asp?subject=...&data=..., the whole form
// in the query of the address, as the service expects it.
class ErrorReportSender
{
public:
    // The position, and when a signature was given ": " and its first 30
    // characters.
    static QString Subject(const QString &position, const QString &signature);

    // The report as sent: its "WINSYS:" line gives way to the description
    // of the page engine, so the report read by the user and the one sent
    // differ in that line. A report without "WINSYS" is sent unchanged.
    static QString Data(const QString &report, const QString &browserDescription);

    // The address posted to.
    static QString Address(const QString &service, const QString &subject, const QString &data);

    // Posts to the service of the settings. 1 on success; 0 with the
    // pending error set from the HTTP control's fault.
    static long Send(const QString &report, const QString &position, const QString &signature,
                     const QString &browserDescription);

private:
    static long Post(const QString &address);
};
