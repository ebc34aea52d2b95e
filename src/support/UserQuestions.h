#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

// The one door through which the program asks or tells the user anything:
// message boxes and every modal dialog. In the program the GUI library
// installs a presenter that shows real Qt dialogs; in tests a script gives
// the answers in order and every text shown is recorded, so a test can check
// the exact words and never blocks on a window.
class UserQuestions
{
public:
    // Styles and answers keep the classic message-box numbers, which the
    // flows of the program test against.
    enum Style : long {
        vbOKOnly = 0, vbOKCancel = 1, vbAbortRetryIgnore = 2, vbYesNoCancel = 3, vbYesNo = 4,
        vbRetryCancel = 5, vbCritical = 16, vbQuestion = 32, vbExclamation = 48,
        vbInformation = 64, vbDefaultButton2 = 256, vbDefaultButton3 = 512
    };
    enum Answer : long { vbOK = 1, vbCancel = 2, vbAbort = 3, vbRetry = 4, vbIgnore = 5, vbYes = 6, vbNo = 7 };

    struct Shown
    {
        QString kind;  // "MsgBox", or the name of the dialog
        QString title;
        QString text;
        long style = 0;
    };

    using MsgBoxPresenter = std::function<long(const QString &prompt, long style, const QString &title)>;
    // Asks for one line of text; returns vbOK with text filled in, or vbCancel.
    using InputPresenter = std::function<long(const QString &prompt, const QString &title, bool secret, QString &text)>;

    // A message box; returns the answer (vbOK... vbNo).
    static long MsgBox(const QString &prompt, long style = vbOKOnly, const QString &title = QString());

    // A line of text asked for, hidden as typed when secret (a password).
    // Returns vbOK with text filled in, or vbCancel. Under a script the next
    // scripted answer decides, and on vbOK the next scripted text is typed.
    static long InputBox(const QString &prompt, const QString &title, bool secret, QString &text);

    // A modal dialog: show() runs it and returns its result. Under a script
    // the dialog is not shown; the next scripted answer is returned instead.
    static long RunDialog(const QString &name, const QString &text, const std::function<long()> &show);

    // Installed once by the GUI library at start.
    static void SetPresenter(MsgBoxPresenter presenter);
    static void SetInputPresenter(InputPresenter presenter);

    // Test support: answers given in order; a question beyond them gets the
    // default answer of its style and counts as unanswered.
    static void Script(const QList<long> &answers);
    static void ScriptTexts(const QStringList &texts);
    static void EndScript();
    static bool Scripted();
    static QList<Shown> ShownSoFar();
    static int Unanswered();

    // The buttons of a message-box style, left to right, as answers, and the
    // answer of its default button.
    static QList<long> Buttons(long style);
    static long DefaultAnswer(long style);

private:
    static long NextScripted(long fallback);
};
