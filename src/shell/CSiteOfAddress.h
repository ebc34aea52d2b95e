#pragma once

#include <QString>

// Which active site an address on screen belongs to.
class CSiteOfAddress
{
public:
    // Looks through the active records of URLDATA, last first, for one that
    // holds the address (see SiteAddressMatch). On a match found is True and
    // lCurrentURL the record's index. Returns 1.
    static long GetCurrentURLIndex(const QString &strURL_p, bool &found);
};
