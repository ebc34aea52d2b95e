#pragma once

#include <QString>

// The two looks of a shown error and the text of the report that the full
// look offers to send.
class ErrorReport
{
public:
    // Connection and server errors that the user can act on get the short
    // look: the message and a Close button, no report.
    static bool IsShortLook(long number);

    // The message of the short look: the pending description, except for
    // the two FTP server faults that have a friendlier text of their own.
    static QString ShortLookMessage(long number, const QString &description);

    // The report, CRLF after every line. Takes the text of error.log into
    // the report and empties the log.
    static QString Build(long number, const QString &description, const QString &position);

    // "VindrellVer: 0.01.0000:Build AABE" for version 0.1.0.
    static QString VersionLine();

    // The address of the site in use, without any user name or password
    // that may be written into it.
    static QString SiteAddress();
};
