#pragma once

#include <QString>

// The one pending error of the program. A procedure that fails stores its
// number, description and position here (only when nothing is pending yet,
// so the innermost place survives the way up) and returns status 0; the
// top-level event that started the work shows or logs it and clears it.
class MError
{
public:
    static void SetError(long number, const QString &description, const QString &position);
    static long ErrorNumber();
    static QString ErrorDescription();
    static QString ErrorSource();
    static void ClearError();

    // Stores the error only when none is pending; the usual call in a trap.
    static void SetErrorIfClear(long number, const QString &description, const QString &position);
};
