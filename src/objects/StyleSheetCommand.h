#pragma once

#include <QString>

class CDocument;

// The text menu's "Insert style sheet": the address of a style sheet of
// the site, copied to the clipboard from the site tree, is linked into the
// page's head. 1 linked (the document is marked), -1 refused or nothing
// done (said to the user), 0 failed with the error pending.
class StyleSheetCommand
{
public:
    static long InsertStyleSheet(CDocument &document);

    // Whether the address names a .css file on the site's own host.
    static bool IsSiteStyleSheet(const QString &strAddress_p, const QString &strSiteAddress_p);

private:
    static bool Answers(const QString &strAddress_p);
    static long LinkIntoHead(CDocument &document, const QString &strAddress_p);
};
