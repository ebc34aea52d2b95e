#pragma once

#include <QString>

// Which active site an address on screen belongs to.
class CSiteOfAddress
{
public:
    // Looks through the active records of URLDATA, last first, for one whose
    // baseaddress holds the address: both without their "http://", the base
    // ending in "/", the address cut to the base's length (or given a "/"
    // when shorter), compared exactly. On a match found is True and
    // lCurrentURL the record's index. Returns 1.
    static long GetCurrentURLIndex(const QString &strURL_p, bool &found);
};
