#pragma once

#include <QString>

// Says in the user's words what a failure of the FTP control means and what
// to do about it. The control's own texts ("response reading failed (errno:
// 115)") are for the error log only.
class FailureText
{
public:
    // The number the pending error gets for a failure, and its text; false
    // when the failure is none of those known here (the caller keeps it: a
    // server's reply speaks for itself). A refusal is read as a refusal to
    // write only for a write (writing): 550 to a read means no such file.
    static bool Describe(long number, const QString &description, int timeoutSeconds, bool writing,
                         long &shownNumber, QString &text);
};
