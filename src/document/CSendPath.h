#pragma once

#include "config/MGlobalProjectObjects.h"

#include <QString>

// Where on the FTP server a page is saved: a pure function of the site
// record and the page's address, so Save and its tests share one rule.
class CSendPath
{
public:
    // The server path of a page. strURL is the document's own path when it
    // has one (it wins as it is); otherwise strPathname, the address's
    // location.pathname, is decoded (every escape; see AddressPath::Decode,
    // charset is the page's) and loses the site's subfolder levels. The case
    // stays as it is. Always 1.
    static long GetPreparedSendPath(const SiteRecord &site, const QString &strURL,
                                    const QString &strPathname, QString &strCorrectedPath,
                                    const QString &charset = QString());

    // "/~anna/page.htm" becomes "/page.htm": a user's home part goes from
    // the "/~" to the next "/". Without a "/" behind it the path stays.
    static QString RemoveTildePart(const QString &strPath);

    // Puts the FTP root in front of a path unless the path already begins
    // with it (by whole segments: "/www2/a.htm" does not begin with "/www"),
    // with exactly one "/" between them.
    static QString JoinRoot(const QString &root, const QString &strPath);
};
