#pragma once

#include "fileviews/ServerTreeDialog.h"

// Asks for a folder on the server, for pictures and other files that a
// page takes along. The form is made once and kept until the program ends,
// with its tree: a second use for the same site reads nothing anew. It
// can't be closed from the title bar, only by OK or Cancel (or Escape,
// which is a Cancel).
class frmSiteTree : public ServerTreeDialog
{
    Q_OBJECT

public:
    static frmSiteTree &Instance();

    // The path from the folder of the page (its location's pathname) to
    // the chosen folder. 1 chosen, -1 cancelled, 0 failure.
    long GetPath(const QString &strPathname_p, QString &strRes_p);
    // The chosen folder on the FTP server. 1 chosen, -1 cancelled, 0 failure.
    long GetUpLoadPath(QString &strUpLoadPath_p);

    void reject() override;

private:
    frmSiteTree();
    // Shows the form and waits; 1 with a folder chosen, -1 cancelled, 0 failure.
    long Choose();
    void Form_Paint();
};
