#pragma once

#include <QString>

// The few values of the settings store's section "Environment" that this
// folder reads: the language and the address of the error-report service.
class EnvironmentSettings
{
public:
    // "Lang": the language id, 1033 when unset or not a number.
    static long Lang();
    static void SetLang(long language);

    // "ErrorReportService": scheme, host and port of the service that takes
    // error reports, without a path. The default is the maker's own service.
    static QString ErrorReportService();
    static void SetErrorReportService(const QString &address);
};
