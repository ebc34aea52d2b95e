#pragma once

#include <QString>

// error.log in the temporary folder: the errors that were logged rather
// than shown, one line each, until a full error report takes them along.
class ErrorLog
{
public:
    static QString Path();

    // Appends "date time: number, description, position". A log that can't
    // be written is passed over: logging must never fail the caller.
    static void Append(long number, const QString &description, const QString &position);

    // The whole text of the log, and the log emptied. exists tells whether
    // the file was there at all.
    static QString Take(bool &exists);
};
