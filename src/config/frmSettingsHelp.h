#pragma once

#include <QString>

class QWidget;

// The help that every form shares. Its pages open in the system's browser,
// which the user already knows how to search, print and keep; the base of
// the pages is the setting HelpBase of the Environment section, else the
// address of the current language in the string table.
class frmSettingsHelp
{
public:
    static QString HelpBase();
    // strURL_p is a page name ("010104.htm") under the help base, or a
    // whole address. lLangCode_p is kept for the callers' form: the base is
    // already the current language's.
    static long ShowHelpOn(const QString &strURL_p, long lLangCode_p = 0);
    // The window the help is to stay above: the browser is a window of its
    // own, so nothing is kept.
    static long SetParentWindowHnd(QWidget *lHwndParentWin_p);
};
