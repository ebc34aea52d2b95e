#pragma once

#include <QString>

#include <functional>

// The one pending error of the program. A procedure that fails stores its
// number, description and position here (only when nothing is pending yet,
// so the innermost place survives the way up) and returns status 0; the
// top-level event that started the work shows or logs it and clears it.
//
// A position is "Class.Procedure", optionally followed by " {line: n}" and
// more pieces; "{" is the separator the error report splits on.
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

    // For top-level work whose failure should not bother the user: appends
    // one line to error.log in the temporary folder and clears. Number 1 is
    // a breadcrumb: nothing is written, the pending error is cleared all the
    // same.
    static void LogError();

    // For top-level events: shows the error dialog and clears. Errors the
    // user can act on (connection and server faults) get the short look with
    // a Close button; every other number gets the full look, which offers to
    // send a report and takes the lines of error.log into it (emptying it).
    static void ShowError();

    // What the error dialog is asked to show.
    struct DialogRequest
    {
        long number = 0;
        QString message;
        QString position;
        bool enableSendError = false;
        QString report;
    };
    using DialogPresenter = std::function<void(const DialogRequest &)>;

    // MError lives in the core library, which has no windows: the GUI
    // library installs the dialog here at start. Without a presenter (a
    // program without a display) ShowError logs the error and says it on
    // the console instead, so error.log keeps it.
    static void SetDialogPresenter(DialogPresenter presenter);
};
