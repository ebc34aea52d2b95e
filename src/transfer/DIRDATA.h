#pragma once

#include "transfer/DIRENTRY.h"

#include <QList>

// The listing buffer of the transfer client.
struct DIRDATA
{
    long lMaxLevel = 0;
    long lCount = 0;
    QList<DIRENTRY> Entries;

    void Clear()
    {
        lMaxLevel = 0;
        lCount = 0;
        Entries.clear();
    }
};
