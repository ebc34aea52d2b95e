#pragma once

#include <QString>
#include <QStringList>

// What Edit does on a page that belongs to no active site: offer the active
// sites to go to, or, with none, offer to activate one.
class CSiteChoice
{
public:
    // The addresses of the active sites, last record first.
    static QStringList ActiveSites();

    // Returns 1; strNavigate_p gets the address the user picked, empty when
    // there is nowhere to go. The Edit press ends here either way.
    static long OfferSites(QString &strNavigate_p);
};
